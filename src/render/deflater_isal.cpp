// See deflater.h: ISA-L.
#include <immintrin.h>
#include <isa-l/igzip_lib.h>

#include <array>

#include "common/tool_error.h"
#include "render/deflater.h"

namespace qm {

namespace {

// Level 3 would be a little faster and smaller, but differs from processor to processor.
constexpr std::uint32_t kIsalLevel = 2;

// The library leaves values in the upper halves of the wide registers. As long as they are there,
// the processor takes several times as long for all other arithmetic.
__attribute__((target("avx"))) void ClearUpperHalves() { _mm256_zeroupper(); }

int Deflate(isal_zstream& stream) {
    const int status = isal_deflate(&stream);
    if (__builtin_cpu_supports("avx")) ClearUpperHalves();
    return status;
}

class IsalDeflater final : public Deflater {
  public:
    // The library fills its 600 KB of work space itself.
    IsalDeflater();
    void Begin() override {
        isal_deflate_init(&stream_);
        stream_.level = kIsalLevel;
        stream_.level_buf = level_.data();
        stream_.level_buf_size = static_cast<std::uint32_t>(level_.size());
        stream_.gzip_flag = IGZIP_ZLIB;
        StartPiece();
    }

  private:
    void Run(std::string_view bytes, bool last, OutputSink& sink) override {
        // The library does not write to its input.
        stream_.next_in =
            const_cast<std::uint8_t*>(reinterpret_cast<const std::uint8_t*>(bytes.data()));
        stream_.avail_in = static_cast<std::uint32_t>(bytes.size());
        stream_.end_of_stream = last ? 1 : 0;
        bool more = true;
        while (more) {
            if (Deflate(stream_) != COMP_OK) throw PageError("compression failed");
            const bool ended = stream_.internal_state.state == ZSTATE_END;
            if (stream_.avail_out == 0 || ended) HandOn(sink);
            more = last ? !ended : stream_.avail_in > 0;
        }
    }
    void HandOn(OutputSink& sink) {
        const std::size_t ready = kPieceBytes - stream_.avail_out;
        if (ready > 0) sink.Write({reinterpret_cast<const char*>(out_.data()), ready});
        StartPiece();
    }
    void StartPiece() {
        stream_.next_out = out_.data();
        stream_.avail_out = static_cast<std::uint32_t>(kPieceBytes);
    }

    isal_zstream stream_{};
    std::array<std::uint8_t, ISAL_DEF_LVL2_DEFAULT> level_;
    std::array<std::uint8_t, kPieceBytes> out_;
};

IsalDeflater::IsalDeflater() = default;

}  // namespace

std::unique_ptr<Deflater> MakeFastDeflater(int) { return std::make_unique<IsalDeflater>(); }

}  // namespace qm
