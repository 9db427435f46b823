// The detection pass: HPGLRead::Detect, "is this a plot file?". Tests:
// tests/interpreter/detect_test.cpp.
#include "common/units.h"
#include "interpreter/command_table.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"
#include "interpreter/plotter.h"

namespace qm {

namespace {

constexpr std::uint8_t kControlSequence = 0x9B;
constexpr int kEnoughInARow = 6;
constexpr int kMaxControlBytes = 5;
constexpr int kMaxLineFeeds = 35;
constexpr std::uint8_t kControlBelow = 10;

class Detector {
  public:
    explicit Detector(Plotter& plotter) : plotter_(plotter), input_(plotter.in.input) {}

    int Run();

  private:
    enum class Verdict { kOpen, kPlot, kNoPlot };

    Verdict TakeLetter(std::uint8_t first);
    Verdict TakePair(std::uint8_t first, std::uint8_t second);
    bool TakeOther(std::uint8_t c);
    void CountControl(std::uint8_t c);

    Plotter& plotter_;
    InputReader& input_;
    int controlBytes_ = 0;
    // Quirk: cooked reading never gives a line feed, so this limit never ends the pass.
    int lineFeeds_ = 0;
    int run_ = 0;      // recognised items in a row
    int unknown_ = 0;  // unrecognised letter pairs
};

void Detector::CountControl(std::uint8_t c) {
    if (c == '\n') {
        ++lineFeeds_;
    } else if (c < kControlBelow) {
        ++controlBytes_;
    }
}

int Detector::Run() {
    while (!input_.Over() && controlBytes_ < kMaxControlBytes && lineFeeds_ < kMaxLineFeeds) {
        const std::uint8_t c = FoldToUpper(input_.GetCooked());
        CountControl(c);
        if (c == kEscape || c == kControlSequence) {
            ++run_;
            DoEscape(plotter_, input_.GetCooked());
        } else if (IsUpper(c)) {
            const Verdict verdict = TakeLetter(c);
            if (verdict != Verdict::kOpen) return verdict == Verdict::kPlot ? 1 : 0;
        } else if (!TakeOther(c)) {
            break;
        }
    }
    const int framed = input_.framedInput ? 1 : 0;
    if (run_ < kEnoughInARow) return framed;
    // Enough, but counted by items that do not look at the threshold.
    return unknown_ == 0 ? 1 : framed;
}

Detector::Verdict Detector::TakeLetter(std::uint8_t first) {
    const std::uint8_t second = FoldToUpper(input_.GetCooked());
    if (IsUpper(second)) return TakePair(first, second);
    CountControl(second);
    if (second == '@') {
        input_.UngetChar();
    } else {
        run_ = 0;
    }
    return Verdict::kOpen;
}

Detector::Verdict Detector::TakePair(std::uint8_t first, std::uint8_t second) {
    const auto is = [first, second](const char* name) {
        return first == static_cast<std::uint8_t>(name[0]) &&
               second == static_cast<std::uint8_t>(name[1]);
    };
    if (is("PE")) {
        ++run_;
        while (!input_.Over() && input_.GetCooked() != ';') {
        }
        if (input_.aborted) return Verdict::kNoPlot;
    } else if (is("CO")) {
        handlers::Comment(input_);
    } else if (is("BP")) {
        ++run_;
        handlers::BeginPlot(input_);
    } else if (is("BE")) {
        ++run_;
        SkipBegBlock(input_);
    } else if (CountsInDetection(first, second)) {
        if (++run_ >= kEnoughInARow) return Verdict::kPlot;
    } else {
        run_ = 0;
        ++unknown_;
    }
    return Verdict::kOpen;
}

// False ends the pass.
bool Detector::TakeOther(std::uint8_t c) {
    if (c == '@') {
        ReadPjlLine(input_, plotter_.job, true);
    } else if (c == '*') {
        SkipVendorBlock(input_);
    } else if (c == kFramingByte) {
        SkipFramingHeader(input_);
    } else if (c >= 127) {
        return false;
    } else if (c >= 'A') {
        run_ = 0;  // a byte such as '[' or '~'
    }
    return true;
}

}  // namespace

int HPGLRead::Detect() {
    plotter_->detecting = true;
    return Detector(*plotter_).Run();
}

}  // namespace qm
