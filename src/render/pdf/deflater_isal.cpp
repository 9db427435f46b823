// See deflater.h: ISA-L.
#include <isa-l/igzip_lib.h>

#include <array>

#include "common/tool_error.h"
#include "render/pdf/deflater.h"

namespace qm::pdf {

namespace {

// Level 3 would be a little faster and smaller, but differs from processor to processor.
constexpr std::uint32_t kLevel = 2;
constexpr std::size_t kOutBytes = std::size_t{1} << 16;

}  // namespace

struct Deflater::State {
    isal_zstream stream{};
    std::array<std::uint8_t, ISAL_DEF_LVL2_DEFAULT> level;
    std::array<std::uint8_t, kOutBytes> out;
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

void Deflater::Begin() {
    isal_zstream& stream = state_->stream;
    isal_deflate_init(&stream);
    stream.level = kLevel;
    stream.level_buf = state_->level.data();
    stream.level_buf_size = static_cast<std::uint32_t>(state_->level.size());
    stream.gzip_flag = IGZIP_ZLIB;
}

void Deflater::Run(std::string_view bytes, bool last, OutputSink& sink) {
    isal_zstream& stream = state_->stream;
    // The library does not write to its input.
    stream.next_in = const_cast<std::uint8_t*>(reinterpret_cast<const std::uint8_t*>(bytes.data()));
    stream.avail_in = static_cast<std::uint32_t>(bytes.size());
    stream.end_of_stream = last ? 1 : 0;
    bool more = true;
    while (more) {
        stream.next_out = state_->out.data();
        stream.avail_out = static_cast<std::uint32_t>(kOutBytes);
        if (isal_deflate(&stream) != COMP_OK) throw PageError("PDF compression failed");
        const std::size_t ready = kOutBytes - stream.avail_out;
        if (ready > 0) sink.Write({reinterpret_cast<const char*>(state_->out.data()), ready});
        more = last ? stream.internal_state.state != ZSTATE_END : stream.avail_in > 0;
    }
}

}  // namespace qm::pdf
