// See deflater.h: zlib.
#include <zlib.h>

#include <array>
#include <new>

#include "common/tool_error.h"
#include "render/deflater.h"

namespace qm {

namespace {

class ZlibDeflater final : public Deflater {
  public:
    explicit ZlibDeflater(int level) : level_(level) {
        if (deflateInit(&stream_, level) != Z_OK) throw std::bad_alloc();
    }
    ~ZlibDeflater() override { deflateEnd(&stream_); }

    void Begin() override {
        deflateReset(&stream_);
        StartPiece();
    }
    void SetDense(bool dense, OutputSink& sink) override {
        int status = Z_BUF_ERROR;
        while (status == Z_BUF_ERROR) {
            status = deflateParams(&stream_, level_, dense ? Z_RLE : Z_DEFAULT_STRATEGY);
            if (status == Z_STREAM_ERROR) throw PageError("compression failed");
            HandOn(sink);
        }
    }

  private:
    void Run(std::string_view bytes, bool last, OutputSink& sink) override {
        // The library does not write to its input.
        stream_.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));
        stream_.avail_in = static_cast<uInt>(bytes.size());
        int status = Z_OK;
        do {
            status = deflate(&stream_, last ? Z_FINISH : Z_NO_FLUSH);
            if (status == Z_STREAM_ERROR) throw PageError("compression failed");
            if (stream_.avail_out == 0 || last) HandOn(sink);
        } while (last ? status != Z_STREAM_END : stream_.avail_in > 0);
    }
    void HandOn(OutputSink& sink) {
        const std::size_t ready = kPieceBytes - stream_.avail_out;
        if (ready == 0) return;
        sink.Write({reinterpret_cast<const char*>(out_.data()), ready});
        StartPiece();
    }
    void StartPiece() {
        stream_.next_out = out_.data();
        stream_.avail_out = static_cast<uInt>(kPieceBytes);
    }

    int level_;
    z_stream stream_{};
    std::array<Bytef, kPieceBytes> out_;
};

}  // namespace

std::unique_ptr<Deflater> MakeZlibDeflater(int level) {
    return std::make_unique<ZlibDeflater>(level);
}

#ifndef QM_HAS_ISAL
std::unique_ptr<Deflater> MakeFastDeflater(int level) { return MakeZlibDeflater(level); }
#endif

}  // namespace qm
