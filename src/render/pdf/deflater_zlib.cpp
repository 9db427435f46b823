// See deflater.h: zlib.
#include <zlib.h>

#include <array>

#include "common/tool_error.h"
#include "render/pdf/deflater.h"

namespace qm::pdf {

namespace {

// Level 6 makes files a tenth smaller and takes six times as long.
constexpr int kLevel = 1;
constexpr std::size_t kOutBytes = std::size_t{1} << 16;

}  // namespace

struct Deflater::State {
    State() {
        if (deflateInit(&stream, kLevel) != Z_OK) throw std::bad_alloc();
    }
    ~State() { deflateEnd(&stream); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    z_stream stream{};
    std::array<Bytef, kOutBytes> out;
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

void Deflater::Begin() { deflateReset(&state_->stream); }

void Deflater::Run(std::string_view bytes, bool last, OutputSink& sink) {
    z_stream& stream = state_->stream;
    // The library does not write to its input.
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    int status = Z_OK;
    bool more = true;
    while (more) {
        stream.next_out = state_->out.data();
        stream.avail_out = static_cast<uInt>(kOutBytes);
        status = deflate(&stream, last ? Z_FINISH : Z_NO_FLUSH);
        if (status == Z_STREAM_ERROR) throw PageError("PDF compression failed");
        const std::size_t ready = kOutBytes - stream.avail_out;
        if (ready > 0) sink.Write({reinterpret_cast<const char*>(state_->out.data()), ready});
        more = last ? status != Z_STREAM_END : stream.avail_out == 0;
    }
}

}  // namespace qm::pdf
