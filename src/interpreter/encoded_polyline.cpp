// See encoded_polyline.h. Handler: PE.
#include "interpreter/encoded_polyline.h"

#include "interpreter/attributes/fill.h"
#include "interpreter/attributes/labels.h"
#include "interpreter/attributes/pens.h"
#include "interpreter/handlers.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

namespace qm {

bool EncodedNumbers::IsOpenDigit(std::uint8_t c) const {
    // An open digit holds `shift` bits above 63 in either mode; 8-bit data has a gap from 127 to
    // 190.
    return c >= 63 && c < 63 + digits_.encodedBase && c < 127;
}

namespace {

// A plain coordinate, as most are: so many digits at most, which fill 48 bits and whose sum is
// exact in any order, with a fraction with which no product is rounded.
constexpr std::ptrdiff_t kMostPlain = 8;
constexpr double kSmallestFraction = 0x1p-100;

}  // namespace

// Takes a coordinate with digits of kShift bits at `p`, where there must be kMostPlain bytes.
// False: it is not plain.
template <unsigned kShift>
bool EncodedNumbers::TakePlain(const std::uint8_t*& p, const Weights& weights, double& value) {
    constexpr unsigned kMask = (1U << kShift) - 1;
    constexpr unsigned kTerminator =
        kShift == kSevenBit.shift ? kSevenBit.encodedTerminator : kEightBit.encodedTerminator;
    unsigned c = *p++;
    if (c < kLowestDigit) return false;
    const double weight = weights[c % 2];  // the lowest bit is the sign, 0 of negative numbers
    std::uint64_t sum = (c + 1) & (kMask - 1);
    for (unsigned shift = kShift; c < kTerminator; shift += kShift) {
        if (shift == kShift * kMostPlain) return false;
        c = *p++;
        if (c < kLowestDigit) return false;
        sum |= std::uint64_t{(c + 1) & kMask} << shift;
    }
    value = weight * static_cast<double>(static_cast<std::int64_t>(sum));
    return true;
}

template <unsigned kShift>
std::size_t EncodedNumbers::TakePlainPoints(PointD at, PointD* points, std::size_t most) {
    const Weights weights{-encodedFraction_, encodedFraction_};
    const std::uint8_t* p = input_.Cursor();
    std::size_t count = 0;
    while (count < most && input_.Limit() - p >= 2 * kMostPlain && StartsNumber(*p)) {
        const std::uint8_t* next = p;
        PointD step;
        if (!TakePlain<kShift>(next, weights, step.x) || !TakePlain<kShift>(next, weights, step.y))
            break;
        p = next;
        at = at + step;
        points[count++] = at;
    }
    input_.Advance(p);
    return count;
}

std::size_t EncodedNumbers::ReadPlainPoints(PointD at, PointD* points, std::size_t most) {
    if (encodedFraction_ < kSmallestFraction) return 0;
    if (digits_.shift == kSevenBit.shift) return TakePlainPoints<kSevenBit.shift>(at, points, most);
    return TakePlainPoints<kEightBit.shift>(at, points, most);
}

// False: not a plain coordinate, and nothing is consumed.
bool EncodedNumbers::ReadPlainCoordinate(double& value) {
    const std::uint8_t* p = input_.Cursor();
    if (input_.Limit() - p < kMostPlain || encodedFraction_ < kSmallestFraction) return false;
    const Weights weights{-encodedFraction_, encodedFraction_};
    const bool plain = digits_.shift == kSevenBit.shift
                           ? TakePlain<kSevenBit.shift>(p, weights, value)
                           : TakePlain<kEightBit.shift>(p, weights, value);
    if (plain) input_.Advance(p);
    return plain;
}

EncodedEnd EncodedNumbers::ReadCoordinate(double& value) {
    if (ReadPlainCoordinate(value)) return EncodedEnd::kNo;
    std::uint8_t c = input_.GetCooked();
    if (c == '<') c = input_.GetCooked();
    if (c == '=') c = input_.GetCooked();
    if (c == '7') return EncodedEnd::kInside;
    while (c <= 32 && !input_.Over()) c = input_.GetCooked();
    if (c == ';' || input_.Over()) return EncodedEnd::kOrdinary;
    const bool negative = c % 2 == 0;
    if (negative) --c;
    double weight = encodedFraction_;
    double sum = weight * ((c + 1) & digits_.encodedMask);
    while (c < digits_.encodedTerminator) {
        c = input_.GetCooked();
        if (c == ';') return EncodedEnd::kInsideAtEnd;
        if (c < digits_.encodedMask || c == '7' || input_.Over()) return EncodedEnd::kInside;
        weight *= digits_.encodedBase;
        sum += weight * ((c + 1) & digits_.encodedMask);
    }
    value = negative ? -sum : sum;
    return EncodedEnd::kNo;
}

bool EncodedNumbers::ReadInteger(std::int32_t& value) {
    std::uint32_t bits = 0;
    for (int digit = 0; digit <= digits_.maxOpenDigits; ++digit) {
        const std::uint8_t c = input_.GetCooked();
        const unsigned shift = static_cast<unsigned>(digit) * digits_.shift;
        if (IsFinalDigit(c)) {
            bits |= static_cast<std::uint32_t>(c - digits_.encodedTerminator) << shift;
            const auto magnitude = static_cast<std::int32_t>(bits >> 1);
            value = (bits & 1U) != 0 ? -magnitude : magnitude;
            return true;
        }
        if (!IsOpenDigit(c) || digit == digits_.maxOpenDigits) return false;
        bits |= (c - 63U) << shift;
    }
    return false;
}

void EncodedNumbers::SetFractionBits(std::int32_t bits) {
    encodedFraction_ = 1.0;
    for (std::int32_t i = 0; i <= bits && encodedFraction_ > 0.0; ++i) encodedFraction_ /= 2.0;
}

namespace {

// One run of PE: the pending list of points and the flags that hold for the next pair.
class EncodedPolyline {
  public:
    EncodedPolyline(InputReader& input, EncodedState& encoded, Drawing& drawing, PenState& pens,
                    const FillState& fill, const LabelState& label)
        : input_(input),
          encoded_(encoded),
          drawing_(drawing),
          pens_(pens),
          fill_(fill),
          label_(label),
          numbers_(input) {
        Append(drawing.motion.penPos);
    }

    void Run();

  private:
    bool TakeFlag(std::uint8_t flag);
    void TakePlainPoints();
    EncodedEnd TakePair();
    EncodedEnd DrawRectangle(PointD corner);
    void PlotPoint(PointD point);
    void SelectPenFlag();
    // Short, so that it stands in line: every point passes here.
    void Append(PointD point) {
        if (count_ == kMaxEncodedPoints) BeginNextRun();
        encoded_.encodedPoints[count_++] = point;
    }
    void BeginNextRun();
    void Flush();
    void Finish(EncodedEnd end);

    InputReader& input_;
    EncodedState& encoded_;
    Drawing& drawing_;
    PenState& pens_;
    const FillState& fill_;
    const LabelState& label_;
    EncodedNumbers numbers_;
    std::size_t count_ = 0;
    bool penDownNext_ = true;
    bool penUpPending_ = false;
    bool absoluteNext_ = false;
    bool rectangleMode_ = false;
};

void EncodedPolyline::Run() {
    EncodedEnd end = EncodedEnd::kNo;
    while (end == EncodedEnd::kNo) {
        TakePlainPoints();
        if (input_.Cursor() < input_.Limit() && EncodedNumbers::StartsNumber(*input_.Cursor())) {
            end = TakePair();
            continue;
        }
        const std::uint8_t c = input_.GetCooked();
        if (c == ';' || input_.Over()) {
            end = EncodedEnd::kOrdinary;
        } else if (c > 32 && !TakeFlag(c & 0x7FU)) {
            input_.UngetChar();
            end = TakePair();
        }
    }
    Finish(end);
}

// Acts on a flag byte (its top bit is left out); false when it is none.
bool EncodedPolyline::TakeFlag(std::uint8_t flag) {
    std::int32_t bits = 0;
    switch (flag) {
        case '7':
            numbers_.UseSevenBits();
            return true;
        case '9':
            Flush();
            rectangleMode_ = true;
            return true;
        case ':':
            SelectPenFlag();
            return true;
        case '<':
            penUpPending_ = true;
            penDownNext_ = false;
            rectangleMode_ = false;
            return true;
        case '=':
            absoluteNext_ = true;
            return true;
        case '>':
            if (numbers_.ReadInteger(bits)) numbers_.SetFractionBits(bits);
            return true;
        default:
            return false;
    }
}

void EncodedPolyline::SelectPenFlag() {
    std::int32_t pen = 0;
    numbers_.ReadInteger(pen);
    if (drawing_.polygon.mode) return;
    Flush();
    pens_.Select(pen, drawing_.lines, drawing_.out);
    Append(drawing_.motion.penPos);
}

// The same as TakePair for the points that are just drawn to, as most are.
void EncodedPolyline::TakePlainPoints() {
    if (penUpPending_ || absoluteNext_ || rectangleMode_ || drawing_.polygon.mode ||
        label_.SymbolChar != 0) {
        return;
    }
    PointD* const points = encoded_.encodedPoints.data();
    const std::size_t count = numbers_.ReadPlainPoints(drawing_.motion.penPos, points + count_,
                                                       kMaxEncodedPoints - count_);
    if (count == 0) return;
    count_ += count;
    penDownNext_ = true;
    drawing_.motion.penPos = points[count_ - 1];
}

EncodedEnd EncodedPolyline::TakePair() {
    PointD point;
    EncodedEnd end = numbers_.ReadCoordinate(point.x);
    if (end == EncodedEnd::kNo) end = numbers_.ReadCoordinate(point.y);
    if (end != EncodedEnd::kNo) return end;
    if (penUpPending_) {
        penUpPending_ = false;
    } else {
        penDownNext_ = true;
    }
    if (!absoluteNext_) point = point + drawing_.motion.penPos;
    absoluteNext_ = false;
    if (rectangleMode_) return DrawRectangle(point);
    PlotPoint(point);
    return EncodedEnd::kNo;
}

// Quirk: filled whatever the fill type, or only its outline, as by RA.
EncodedEnd EncodedPolyline::DrawRectangle(PointD corner) {
    PointD size;
    EncodedEnd end = numbers_.ReadCoordinate(size.x);
    if (end == EncodedEnd::kNo) end = numbers_.ReadCoordinate(size.y);
    if (end != EncodedEnd::kNo) return end;
    if (drawing_.reading.fillsByType) {
        drawing_.MoveTo(corner);
        if (BufferRectangle(drawing_, corner + size)) FillBuffer(drawing_, pens_, fill_, false);
        penDownNext_ = false;
        return EncodedEnd::kNo;
    }
    const CoordinateState& c = drawing_.coordinates;
    const BoxI box{c.ToPlotter(corner), c.ToPlotter(corner + size)};
    if (fill_.DrawsRectangleOutline()) {
        drawing_.out.Rectangle(box);
    } else {
        drawing_.out.FilledRectangle(box);
    }
    drawing_.MoveTo(corner);
    penDownNext_ = false;
    return EncodedEnd::kNo;
}

void EncodedPolyline::PlotPoint(PointD point) {
    if (!drawing_.polygon.mode) {
        if (!penDownNext_) Flush();
        Append(point);
        drawing_.motion.penPos = point;
    } else if (penDownNext_) {
        drawing_.DrawTo(point);
    } else {
        drawing_.MoveTo(point);
    }
    if (label_.SymbolChar != 0) DrawSymbol(label_, drawing_);
}

void EncodedPolyline::BeginNextRun() {
    const PointD last = encoded_.encodedPoints[count_ - 1];
    Flush();
    if (drawing_.reading.joinsRuns) encoded_.encodedPoints[count_++] = last;
}

void EncodedPolyline::Flush() {
    if (count_ >= 2) {
        const CoordinateState& c = drawing_.coordinates;
        for (std::size_t i = 0; i < count_; ++i) {
            encoded_.plotterPoints[i] = c.ToPlotter(encoded_.encodedPoints[i]);
        }
        drawing_.EmitPolyline(count_, encoded_.plotterPoints.data());
    }
    count_ = 0;
}

void EncodedPolyline::Finish(EncodedEnd end) {
    drawing_.motion.penDown = penDownNext_;
    if (end == EncodedEnd::kOrdinary) {
        Flush();
        drawing_.out.MarkDrawn();
        return;
    }
    // A broken number drops the pending list.
    while (end == EncodedEnd::kInside && !input_.Over()) {
        if (input_.GetCooked() == ';') break;
    }
}

}  // namespace

namespace handlers {

// PE [flag [value] | x, y] ... ;
void PolylineEncoded(InputReader& input, EncodedState& encoded, Drawing& drawing, PenState& pens,
                     const FillState& fill, const LabelState& label) {
    EncodedPolyline(input, encoded, drawing, pens, fill, label).Run();
}

}  // namespace handlers
}  // namespace qm
