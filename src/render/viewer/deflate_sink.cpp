#include "render/viewer/deflate_sink.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <new>

#include "common/tool_error.h"

namespace qm {

namespace {

constexpr std::size_t kChunkBytes = std::size_t{1} << 16;
// What comes first is compressed well, for most plots are small. How that goes decides about the
// rest: coordinates of scattered lines hardly get smaller, compressing them would take longer than
// all else that qmplot does, and stored they are read faster too.
constexpr std::size_t kTrialBytes = std::size_t{1} << 18;
constexpr double kWorthwhile = 0.7;
constexpr int kTrialLevel = 6;
constexpr int kFastLevel = 1;
constexpr int kStoredLevel = 0;
constexpr int kWindowBits = -15;  // negative: no wrapper
constexpr int kMemoryLevel = 9;

}  // namespace

struct DeflateSink::Stream {
    Stream() {
        if (deflateInit2(&z, kTrialLevel, Z_DEFLATED, kWindowBits, kMemoryLevel,
                         Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Stream() { deflateEnd(&z); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    z_stream z{};
    bool onTrial = true;
    std::array<Bytef, kChunkBytes> out{};
};

DeflateSink::DeflateSink(OutputSink& target)
    : target_(target), stream_(std::make_unique<Stream>()) {}

DeflateSink::~DeflateSink() = default;

void DeflateSink::Run(int flush) {
    z_stream& z = stream_->z;
    do {
        z.next_out = stream_->out.data();
        z.avail_out = static_cast<uInt>(kChunkBytes);
        if (deflate(&z, flush) == Z_STREAM_ERROR) throw PageError("compression failed");
        PassOn();
    } while (z.avail_out == 0);
}

void DeflateSink::PassOn() {
    const std::size_t ready = kChunkBytes - stream_->z.avail_out;
    if (ready > 0) target_.Write({reinterpret_cast<const char*>(stream_->out.data()), ready});
}

void DeflateSink::Write(std::string_view bytes) {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;  // zlib counts in 32 bits
    while (!bytes.empty()) {
        const std::string_view part = bytes.substr(0, kMostAtOnce);
        // zlib does not write through next_in, which is not const for historical reasons.
        stream_->z.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(part.data()));
        stream_->z.avail_in = static_cast<uInt>(part.size());
        Run(Z_NO_FLUSH);
        bytes.remove_prefix(part.size());
        if (stream_->onTrial && stream_->z.total_in >= kTrialBytes) EndTrial();
    }
}

void DeflateSink::EndTrial() {
    z_stream& z = stream_->z;
    stream_->onTrial = false;
    Run(Z_BLOCK);  // so that the count is complete, and nothing is left to be written
    const auto in = static_cast<double>(z.total_in);
    const bool worthwhile = static_cast<double>(z.total_out) < kWorthwhile * in;
    z.next_out = stream_->out.data();
    z.avail_out = static_cast<uInt>(kChunkBytes);
    deflateParams(&z, worthwhile ? kFastLevel : kStoredLevel, Z_DEFAULT_STRATEGY);
    PassOn();
}

void DeflateSink::Finish() { Run(Z_FINISH); }

}  // namespace qm
