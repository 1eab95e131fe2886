// Several things timed in turns: each gets a share of every round, so that a disturbance meets all
// alike, and the median of the rounds counts.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "bench/Stopwatch.hpp"

namespace bench
{
/// What is timed: `run` does `count` of something.
struct Turn
{
    std::string name;
    double count;
    std::function<void()> run;
    std::size_t repeats = 1;
    std::vector<double> seconds = {};
};

struct TurnEffort
{
    /// What a share is filled up to with repeated runs.
    double sampleSeconds;
    std::size_t rounds;
};

/// Fills in the seconds that one of something takes, by round.
inline void TakeTurns(std::vector<Turn>* turns, const TurnEffort& effort)
{
    for (Turn& turn : *turns)
    {
        turn.run();
        const Stopwatch watch;
        turn.run();
        const double seconds = std::max(watch.Seconds(), 1e-8);
        turn.repeats =
            static_cast<std::size_t>(std::clamp(effort.sampleSeconds / seconds, 1.0, 1e6));
    }
    for (std::size_t round = 0; round != effort.rounds; ++round)
        for (std::size_t i = 0; i != turns->size(); ++i)
        {
            Turn& turn = (*turns)[(round + i) % turns->size()];
            const Stopwatch watch;
            for (std::size_t k = 0; k != turn.repeats; ++k)
                turn.run();
            turn.seconds.push_back(watch.Seconds() /
                                   (static_cast<double>(turn.repeats) * turn.count));
        }
}
}  // namespace bench
