// Time as the benchmarks measure it, less what reading the clock costs.
//
// Nothing measured here waits, runs in more than one thread or writes files, so a thread's
// processor time is its time on an idle machine; other programs disturb it least. Reading that
// clock costs a system call, though. What is shorter than twenty microseconds is read off the
// monotonic clock, many times over, and the median passes over the samples in which the thread was
// interrupted.
#pragma once

#include <algorithm>
#include <array>
#include <ctime>
#include <vector>

namespace bench
{
/// @return the median, between two values for an even number of them; 0 for none.
inline double MedianOf(std::vector<double> samples)
{
    if (samples.empty())
        return 0.0;
    std::sort(samples.begin(), samples.end());
    const std::size_t half = samples.size() / 2;
    return samples.size() % 2 == 1 ? samples[half] : (samples[half - 1] + samples[half]) / 2.0;
}

enum class Clock
{
    Monotonic,
    Processor
};

/// @return the clock for something that takes so long.
inline Clock ClockFor(double seconds)
{
    return seconds < 20e-6 ? Clock::Monotonic : Clock::Processor;
}

class Stopwatch
{
public:
    explicit Stopwatch(Clock which = Clock::Processor) : clock(which), start(Now(which)) {}

    /// @return seconds since the construction or the last restart.
    double Seconds() const
    {
        return std::max(Now(clock) - start - ReadingCost(clock), 0.0);
    }

    void Restart()
    {
        start = Now(clock);
    }

private:
    Clock clock;
    double start;

    static double Now(Clock which)
    {
        std::timespec now = {};
        clock_gettime(which == Clock::Monotonic ? CLOCK_MONOTONIC : CLOCK_THREAD_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
    }

    static double MeasureReadingCost(Clock which)
    {
        std::vector<double> samples(1001);
        for (double& sample : samples)
        {
            const double first = Now(which);
            sample = Now(which) - first;
        }
        return MedianOf(samples);
    }

    static double ReadingCost(Clock which)
    {
        static const std::array<double, 2> kCosts = {MeasureReadingCost(Clock::Monotonic),
                                                     MeasureReadingCost(Clock::Processor)};
        return kCosts[static_cast<std::size_t>(which)];
    }
};
}  // namespace bench
