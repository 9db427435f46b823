#include "render/bitmap/page_bands.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

#include "render/bitmap/blending.h"
#include "render/bitmap/page_painter.h"
#include "render/bitmap/page_work.h"

namespace qm::bitmap {

namespace {

// Each band reads the list once more, which for a long one costs more than dots that come from
// beyond a core's cache: lines have them fetched in time. So a band takes so many times the list's
// memory, between these, of which the larger one is that of all threads together.
constexpr std::size_t kBytesPerByte = 16;
constexpr std::size_t kLeastBytes = std::size_t{1} << 20;
constexpr std::size_t kPlainBytes = std::size_t{16} << 20;
constexpr std::size_t kFewestRows = 64;
// The bands of a very long list may add so much to the memory that it has, all threads together.
constexpr std::size_t kPartOfList = 8;
constexpr std::size_t kMostByList = std::size_t{24} << 20;
constexpr std::size_t kBytesPerDot = sizeof(BandDot);

constexpr std::uint32_t kWhitePaper = 0xFFFFFF;

std::int32_t RowsOfBand(const PageRaster& raster, std::size_t bandBytes) {
    const std::size_t row = static_cast<std::size_t>(raster.width) * kBytesPerDot;
    const std::size_t fitting = std::min<std::size_t>(bandBytes / row, 1 << 20);
    return std::clamp(static_cast<std::int32_t>(fitting), 1, raster.height);
}

// What is seen of the paper through a dot shows where the paper is white once and black once.
void MarkOpacity(Band& onWhite, const Band& onBlack) {
    for (std::int32_t y = onWhite.Top(); y < onWhite.Bottom(); ++y) {
        BandDot* const dots = onWhite.Row(y);
        const BandDot* const others = onBlack.Row(y);
        for (std::int32_t x = 0; x < onWhite.Width(); ++x) {
            const auto part = [](std::uint32_t colour, int shift) {
                return static_cast<int>(colour >> shift & 0xFF);
            };
            int seen = 255;
            for (const int shift : {0, 8, 16}) {
                seen = std::min(seen, part(dots[x].colour, shift) - part(others[x].colour, shift));
            }
            const int opacity = 255 - std::max(seen, 0);
            std::uint32_t colour = 0;
            for (const int shift : {0, 8, 16}) {
                if (opacity == 0) break;
                const int own = (part(others[x].colour, shift) * 255 + opacity / 2) / opacity;
                colour |= static_cast<std::uint32_t>(std::min(own, 255)) << shift;
            }
            dots[x] = {colour, static_cast<std::uint32_t>(opacity)};
        }
    }
}

class BandDrawer {
  public:
    BandDrawer(const PageSource& page, const PageOptions& options, const PageRaster& raster,
               const std::function<void(const Band&)>& take, std::size_t bandBytes)
        : page_(page), options_(options), raster_(raster), take_(take) {
        rows_ = RowsOfBand(raster, bandBytes);
        bands_ = (raster.height + rows_ - 1) / rows_;
        if (options.smooth) letters_.emplace(page.drawing->Shapes(), raster.ToDots());
    }

    void Run() {
        std::vector<std::thread> others;
        const std::int32_t threads = std::min(std::max(options_.threads, 1), bands_);
        try {
            for (std::int32_t i = 1; i < threads; ++i) others.emplace_back([this] { Work(); });
        } catch (const std::system_error&) {
            // The system gives no more threads: those that run do the work.
        }
        Work();
        for (std::thread& other : others) other.join();
        if (failure_) std::rethrow_exception(failure_);
    }

  private:
    void Work() {
        try {
            PaintSettings settings = Settings();
            PagePainter painter(*page_.drawing, settings, raster_.width, rows_);
            std::optional<PagePainter> onBlack;
            if (options_.background.kind == Background::Kind::kNone) {
                settings.paper = 0;
                settings.progress = nullptr;
                onBlack.emplace(*page_.drawing, settings, raster_.width, rows_);
            }
            for (std::int32_t band = next_++; band < bands_; band = next_++) {
                const std::int32_t top = band * rows_;
                const std::int32_t bottom = std::min(top + rows_, raster_.height);
                Band& drawn = painter.Draw(top, bottom);
                if (onBlack) MarkOpacity(drawn, onBlack->Draw(top, bottom));
                if (!WaitForTurn(band)) return;
                take_(drawn);
                EndTurn();
            }
        } catch (...) {
            Fail();
        }
    }
    PaintSettings Settings() {
        PaintSettings settings;
        settings.toDots = raster_.ToDots();
        settings.dotsPerUnit = raster_.dotsPerUnit;
        settings.hairline = raster_.hairline;
        settings.smooth = options_.smooth;
        settings.letters = letters_ ? &*letters_ : nullptr;
        settings.whiteIsClear = page_.whiteIsClear;
        const Background& background = options_.background;
        settings.paper = background.kind == Background::Kind::kColour ? DotColour(background.colour)
                                                                      : kWhitePaper;
        settings.checkpoint = [this] {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (failure_) throw Stopped();
            if (options_.checkpoint) options_.checkpoint();
        };
        if (bands_ == 1) settings.progress = options_.progress;
        return settings;
    }
    // False when another thread failed.
    bool WaitForTurn(std::int32_t band) {
        std::unique_lock<std::mutex> lock(mutex_);
        turned_.wait(lock, [&] { return turn_ == band || failure_; });
        return !failure_;
    }
    void EndTurn() {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++turn_;
        if (options_.progress && bands_ > 1) options_.progress(turn_ * 100 / bands_);
        turned_.notify_all();
    }
    void Fail() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!failure_) failure_ = std::current_exception();
        turned_.notify_all();
    }
    // Ends a thread because another one failed.
    struct Stopped {};

    const PageSource& page_;
    const PageOptions& options_;
    const PageRaster& raster_;
    const std::function<void(const Band&)>& take_;
    std::optional<FrequentLetters> letters_;
    std::int32_t rows_ = 0;
    std::int32_t bands_ = 0;
    std::atomic<std::int32_t> next_{0};
    std::mutex mutex_;  // guards what follows
    std::condition_variable turned_;
    std::int32_t turn_ = 0;  // the band that is handed on next
    std::exception_ptr failure_;
};

}  // namespace

std::size_t BandBytesFor(const PageSource& page, const PageOptions& options,
                         const PageRaster& raster) {
    const auto threads = static_cast<std::size_t>(std::max(options.threads, 1));
    const std::size_t list = page.drawing->UsedBytes();
    const std::size_t plain = std::min(list * kBytesPerByte, kPlainBytes / threads);
    const std::size_t byList = std::min(list / kPartOfList / threads, kMostByList);
    return std::max({kLeastBytes, plain, byList,
                     kBytesPerDot * static_cast<std::size_t>(raster.width) * kFewestRows});
}

void DrawBands(const PageSource& page, const PageOptions& options, const PageRaster& raster,
               const std::function<void(const Band&)>& take, std::size_t bandBytes) {
    // However many threads draw, the same part is drawn.
    PageOptions alone = options;
    alone.threads = 1;
    const std::int32_t rows = RowsOfBand(raster, BandBytesFor(page, alone, raster));
    const std::optional<DisplayList> part = AffordablePart(page, options, raster, rows);
    PageSource drawn = page;
    if (part) drawn.drawing = &*part;
    BandDrawer(drawn, options, raster, take, bandBytes).Run();
}

}  // namespace qm::bitmap
