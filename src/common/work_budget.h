// WorkBudget: how much of one kind of work a plot may still cause.
//
// A few bytes can ask for the work of hours and can ask for it again and again. A budget grows with
// the bytes read, so that no real plot meets it, and what goes beyond it is left out or drawn
// coarser. docs/limits.md lists all of them. Tests: tests/interpreter/limits_test.cpp.
#pragma once

#include <cstdint>

namespace qm {

class WorkBudget {
  public:
    explicit WorkBudget(std::int64_t units = INT64_MAX) : left_(units) {}
    // `base` and `perByte` for each of `bytes`, without end where that is more than 63 bits hold.
    static WorkBudget For(std::int64_t base, std::int64_t perByte, std::uint64_t bytes) {
        const auto rest = static_cast<std::uint64_t>(INT64_MAX - base);
        if (perByte > 0 && bytes > rest / static_cast<std::uint64_t>(perByte)) return WorkBudget();
        return WorkBudget(base + perByte * static_cast<std::int64_t>(bytes));
    }

    // `units` of 0 or more. False, and nothing taken, when less is left.
    bool Take(std::int64_t units) {
        if (units > left_) {
            met_ = true;
            return false;
        }
        left_ -= units;
        return true;
    }
    std::int64_t Left() const { return left_; }
    // Something was left out.
    bool Met() const { return met_; }
    void Meet() { met_ = true; }

  private:
    std::int64_t left_;
    bool met_ = false;
};

}  // namespace qm
