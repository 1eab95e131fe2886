/// What may end a solve early: time, pivots, or the caller. A Watch is started once per solve and
/// asked before every pivot by every stage; once it has said stop it keeps saying so.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>

namespace nuv
{

enum class Stage : std::uint8_t
{
    Double,  ///< the simplex in doubles, also where the exact stage calls it
    Exact,   ///< check and simplex in rationals
};

/// Where a solve stands, before a pivot.
struct Progress
{
    Stage stage = Stage::Double;
    bool feasible = false;     ///< whether the current basis is primal feasible
    std::uint64_t pivots = 0;  ///< of this stage
    /// Of the current basis, without the form's constant; the sum of violations while infeasible.
    /// NaN where a stage does not know it, as the exact one, whose numbers are too long for that.
    double objective = 0.0;
};

struct Limits
{
    double seconds = std::numeric_limits<double>::infinity();
    std::uint64_t doublePivots = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t exactPivots = std::numeric_limits<std::uint64_t>::max();
    /// Called before each pivot if set; returning false stops the solve.
    std::function<bool(const Progress&)> keepGoing;
};

enum class StopReason : std::uint8_t
{
    None,
    TimeLimit,
    PivotLimit,
    Cancelled,
};

class Watch
{
public:
    explicit Watch(const Limits& limits) : m_limits(limits), m_start(Clock::now()) {}

    [[nodiscard]] double Seconds() const
    {
        return std::chrono::duration<double>(Clock::now() - m_start).count();
    }

    /// Whether time is up or the caller has called a halt; cheap enough for inner loops.
    [[nodiscard]] bool TimeIsUp()
    {
        if (m_reason == StopReason::None && m_limits.seconds < kForever &&
            Seconds() >= m_limits.seconds)
            m_reason = StopReason::TimeLimit;
        return m_reason == StopReason::TimeLimit || m_reason == StopReason::Cancelled;
    }

    /// Whether the pivot that would follow `progress` must not be made.
    [[nodiscard]] bool Stops(const Progress& progress)
    {
        if (TimeIsUp())
            return true;
        const std::uint64_t most =
            progress.stage == Stage::Double ? m_limits.doublePivots : m_limits.exactPivots;
        if (progress.pivots >= most)
        {
            m_reason = StopReason::PivotLimit;
            return true;
        }
        if (m_limits.keepGoing && !m_limits.keepGoing(progress))
        {
            m_reason = StopReason::Cancelled;
            return true;
        }
        return false;
    }

    /// Whether a caller asks where the solve stands.
    [[nodiscard]] bool IsAsked() const noexcept
    {
        return static_cast<bool>(m_limits.keepGoing);
    }

    [[nodiscard]] StopReason Reason() const noexcept
    {
        return m_reason;
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr double kForever = std::numeric_limits<double>::infinity();

    const Limits& m_limits;
    Clock::time_point m_start;
    StopReason m_reason = StopReason::None;
};

}  // namespace nuv
