// The instances of the comparison, in the order of its table.
#pragma once

#include <array>

#include "bench/Families.hpp"

namespace bench
{
struct Case
{
    Family family;
    std::size_t rows;
    std::size_t columns;
    /// Whether the quick comparison has it too.
    bool isQuick;
};

inline constexpr std::uint64_t kCaseSeed = 1;

inline constexpr std::array kCases = {
    Case{Family::ProductionMix, 2, 3, true},
    Case{Family::ProductionMix, 15, 10, true},
    Case{Family::Diet, 10, 20, true},
    Case{Family::Diet, 50, 50, true},
    Case{Family::Diet, 100, 100, false},
    Case{Family::MixedSigns, 5, 5, true},
    Case{Family::MixedSigns, 10, 10, true},
    Case{Family::MixedSigns, 20, 20, true},
    Case{Family::MixedSigns, 50, 50, true},
    Case{Family::MixedSigns, 100, 100, true},
    Case{Family::MixedSigns, 200, 200, true},
    Case{Family::MixedSigns, 500, 500, false},
    Case{Family::Positive, 20, 20, true},
    Case{Family::Positive, 50, 50, false},
    Case{Family::Positive, 100, 100, true},
    Case{Family::Positive, 200, 200, false},
    Case{Family::Positive, 500, 500, false},
    Case{Family::Positive, 1000, 1000, true},
    Case{Family::Positive, 200, 1000, false},
    Case{Family::Positive, 1000, 200, false},
    Case{Family::PhaseI, 20, 20, true},
    Case{Family::PhaseI, 50, 50, false},
    Case{Family::PhaseI, 100, 100, true},
    Case{Family::PhaseI, 200, 200, false},
    Case{Family::PhaseI, 500, 500, false},
    Case{Family::Sparse, 50, 50, true},
    Case{Family::Sparse, 100, 100, false},
    Case{Family::Sparse, 200, 200, true},
    Case{Family::Sparse, 500, 500, false},
    Case{Family::Assignment, 20, 100, true},
    Case{Family::Assignment, 50, 250, false},
    Case{Family::Assignment, 100, 500, false},
    Case{Family::Assignment, 200, 1000, true},
    Case{Family::Transport, 20, 100, true},
    Case{Family::Transport, 50, 250, false},
    Case{Family::Transport, 100, 500, false},
    Case{Family::Transport, 200, 1000, true},
    Case{Family::NonDegenerate, 200, 200, true},
    Case{Family::NonDegenerate, 1000, 200, false},
};
}  // namespace bench
