// How long something took.
#pragma once

#include <chrono>

namespace nuvlp
{

/// Runs from the moment that it is made.
class Stopwatch
{
public:
    [[nodiscard]] double Seconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

}  // namespace nuvlp
