/// What may end a solve early, and where the solve stands: limits, clock, progress and cancelling,
/// in one object for all stages of a solve and for what follows it. The pivots of a stage are
/// counted over the whole solve, whichever program they are made in. A stop by time or by the
/// caller is final; a stage whose pivots are used up makes no more of them. The clock says only
/// whether to go on, never which pivot comes next: a solve that ends before its limits is the same
/// on any machine.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace nuv
{

/// The stages of a solve, each starting from the basis of the one before.
enum class Stage : std::uint8_t
{
    SinglePrecision,  ///< the core
    Double,           ///< the sparse simplex, also where the exact stage calls it
    Exact,            ///< evaluation of a basis, and simplex, in rationals
};
/// How many stages there are.
inline constexpr std::size_t kStages = 3;

/// Why a solve ended without a verdict.
enum class StopReason : std::uint8_t
{
    None,        ///< it did not
    TimeLimit,   ///< SolveLimits::seconds
    PivotLimit,  ///< one of the limits of pivots
    Cancelled,   ///< by SolveLimits::keepGoing
};

/// Where a solve stands, before a pivot.
struct Progress
{
    Stage stage = Stage::SinglePrecision;  ///< that is about to pivot
    std::uint64_t pivots = 0;              ///< of this stage, since the solve began
    double seconds = 0.0;                  ///< since the solve began
    bool feasible = false;                 ///< whether the current basis is primal feasible
    /// Of the current basis, in the sense and with the constant of the model; the sum of violations
    /// while that is not feasible. NaN where it is not known: in the single-precision and the exact
    /// stage, in the first phase of the dual simplex, while another program than the model is
    /// solved on the way to a proof, and where SolveLimits::reportObjective forgoes it.
    double objective = std::numeric_limits<double>::quiet_NaN();
};

/// When a solve has to end, and who is told how it goes. What a limit ends has the status Stopped.
struct SolveLimits
{
    /// As many as it takes.
    static constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

    /// Of wall time, for all stages together.
    double seconds = std::numeric_limits<double>::infinity();
    std::uint64_t singlePrecisionPivots = kNoLimit;  ///< of the core
    std::uint64_t doublePivots = kNoLimit;  ///< of the sparse simplex, wherever it is called
    std::uint64_t exactPivots = kNoLimit;   ///< of the simplex in rationals
    /// Whether Progress::objective is wanted, which costs a walk over all variables per pivot.
    bool reportObjective = true;
    /// Asked before each pivot, and now and then in what takes long; returning false ends the
    /// solve.
    std::function<bool(const Progress&)> keepGoing;
    /// Told in a line, without a line feed, what each stage came to.
    std::function<void(std::string_view)> log;
};

/// The clock, the limits and the callbacks of one solve, which all its stages share; a stop is
/// final.
class SolveControl
{
public:
    /// The clock starts here.
    explicit SolveControl(SolveLimits limits = {});
    SolveControl(const SolveControl&) = delete;
    SolveControl& operator=(const SolveControl&) = delete;

    /// Since it was made.
    [[nodiscard]] double Seconds() const
    {
        return ClockSeconds() - m_start;
    }

    /// From now on the solve may take so many seconds more, unless its limit comes first.
    void EndWithin(double seconds)
    {
        m_mostSeconds = std::fmin(m_mostSeconds, Seconds() + seconds);
    }

    /// Whether the solve is over, by time or by the caller. For what takes long between pivots.
    [[nodiscard]] bool IsStopped()
    {
        return TimeIsUp() || !CallerGoesOn();
    }

    /// Whether the next pivot of a stage may be made; asked before each. `objective` is that of the
    /// minimisation form without its constant.
    [[nodiscard]] bool MayPivot(Stage stage, bool feasible, double objective)
    {
        if (TimeIsUp())
            return false;
        if (Pivots(stage) >= Most(stage))
        {
            m_usedUp = true;
            return false;
        }
        const bool known = m_asides == 0;
        m_progress.stage = stage;
        m_progress.pivots = Pivots(stage);
        m_progress.feasible = feasible && known;
        m_progress.objective = !known     ? std::numeric_limits<double>::quiet_NaN()
                               : feasible ? m_sign * (objective + m_constant)
                                          : objective;
        return CallerGoesOn();
    }

    /// One more pivot of a stage was made.
    void CountPivot(Stage stage) noexcept
    {
        ++m_pivots[static_cast<std::size_t>(stage)];
    }
    /// How many pivots a stage has made.
    [[nodiscard]] std::uint64_t Pivots(Stage stage) const noexcept
    {
        return m_pivots[static_cast<std::size_t>(stage)];
    }

    /// Whether it is worth knowing the objective before a pivot.
    [[nodiscard]] bool AsksForObjective() const noexcept
    {
        return m_limits.keepGoing && m_limits.reportObjective && m_asides == 0;
    }
    /// How the objective of the form becomes the model's: sign * (objective + constant).
    void ReportObjectiveAs(double sign, double constant) noexcept
    {
        m_sign = sign;
        m_constant = constant;
    }

    /// Tells the caller of the solve "<stage>: <what it came to>, <seconds> s", unless another
    /// program than the model's is being solved. `came` makes the text, where somebody hears it.
    template <class Came>
    void Log([[maybe_unused]] std::string_view stage, [[maybe_unused]] const Came& came) const
    {
#ifndef NUV_WITHOUT_LOGS
        if (m_limits.log && m_asides == 0)
            Tell(stage, came());
#endif
    }

    /// Why something was ended early; PivotLimit if nothing worse happened than that.
    [[nodiscard]] StopReason Reason() const noexcept
    {
        return m_reason == StopReason::None && m_usedUp ? StopReason::PivotLimit : m_reason;
    }

    /// Stands for as long as another program than the model's is solved.
    class Aside
    {
    public:
        /// For as long as it lives.
        explicit Aside(SolveControl& control) noexcept : m_control(control)
        {
            ++m_control.m_asides;
        }
        ~Aside()
        {
            --m_control.m_asides;
        }
        Aside(const Aside&) = delete;
        Aside& operator=(const Aside&) = delete;

    private:
        SolveControl& m_control;
    };

private:
    void Tell(std::string_view stage, std::string_view came) const;

    /// Of a clock that never goes back. A double tells microseconds apart for a hundred years.
    [[nodiscard]] static double ClockSeconds() noexcept;

    [[nodiscard]] std::uint64_t Most(Stage stage) const noexcept
    {
        const std::array<std::uint64_t, kStages> most = {
            m_limits.singlePrecisionPivots, m_limits.doublePivots, m_limits.exactPivots};
        return most[static_cast<std::size_t>(stage)];
    }
    [[nodiscard]] bool TimeIsUp()
    {
        if (m_reason == StopReason::None && std::isfinite(m_mostSeconds) &&
            Seconds() >= m_mostSeconds)
            m_reason = StopReason::TimeLimit;
        return m_reason != StopReason::None;
    }
    [[nodiscard]] bool CallerGoesOn()
    {
        if (!m_limits.keepGoing)
            return true;
        m_progress.seconds = Seconds();
        if (!m_limits.keepGoing(m_progress))
            m_reason = StopReason::Cancelled;
        return m_reason == StopReason::None;
    }

    SolveLimits m_limits;
    double m_start;
    double m_mostSeconds;
    StopReason m_reason = StopReason::None;  ///< TimeLimit or Cancelled, and then for good
    bool m_usedUp = false;                   ///< a stage wanted more pivots than it had
    std::array<std::uint64_t, kStages> m_pivots{};
    Progress m_progress;
    double m_sign = 1.0;
    double m_constant = 0.0;
    int m_asides = 0;
};

}  // namespace nuv
