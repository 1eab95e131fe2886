// The core under a monitor that counts, watches for bases that come back, and keeps the last
// labels. Everything the solve takes is on a scratch allocator and goes back before the result is
// returned.
#include "Nuv/Solve/SinglePrecisionStage.hpp"

#include "Nuv/Utils/NuvLinearProgramming.hpp"

#include <algorithm>
#include <cmath>
#include <exception>

namespace nuv
{
namespace
{

/// Follows a solve pivot by pivot: keeps the labels, counts, and watches for a basis that comes
/// back.
class Follower
{
public:
    /// `beyond` is the reason to stop where `mostPivots` do not suffice.
    Follower(std::uint64_t mostPivots, SinglePrecisionStop beyond, SolveControl& control,
             const std::function<void(const SinglePrecisionPivot&)>& observe,
             SinglePrecisionResult& result)
        : m_mostPivots(mostPivots),
          m_beyond(beyond),
          m_control(control),
          m_observe(observe),
          m_result(result)
    {
    }

    /// The core, through which no exception can pass, is ended instead; see Rethrow.
    bool operator()(const NuvLinearProgrammingPivot& pivot) noexcept
    {
        try
        {
            return Follow(pivot);
        }
        catch (...)
        {
            m_thrown = std::current_exception();
            return false;
        }
    }

    /// Throws what the caller's functions, or a lack of memory, have thrown within the core.
    void Rethrow() const
    {
        if (m_thrown)
            std::rethrow_exception(m_thrown);
    }

private:
    bool Follow(const NuvLinearProgrammingPivot& pivot)
    {
        const std::span<const Index> basic(pivot.basic, pivot.numBasic);
        m_result.basicLabels.assign(basic.begin(), basic.end());
        if (Returns(pivot, basic))
            return Stop(SinglePrecisionStop::Cycling);
        if (m_result.pivots >= m_mostPivots)
            return Stop(m_beyond);
        if (m_observe)
            m_observe({pivot.phase,
                       pivot.number,
                       pivot.entering,
                       pivot.leaving,
                       basic,
                       {pivot.values, pivot.numBasic}});
        if (!m_control.MayPivot(Stage::SinglePrecision, false, std::nan("")))
            return Stop(m_control.Reason() == StopReason::PivotLimit
                            ? SinglePrecisionStop::PivotLimit
                            : SinglePrecisionStop::Control);
        m_control.CountPivot(Stage::SinglePrecision);
        // What the basis is once the pivot is made.
        std::replace(m_result.basicLabels.begin(), m_result.basicLabels.end(), pivot.leaving,
                     pivot.entering);
        ++m_result.pivots;
        return true;
    }

    bool Stop(SinglePrecisionStop stop)
    {
        m_result.stop = stop;
        return false;
    }

    /// Brent's way to find a period: one remembered basis, replaced at each power of two.
    bool Returns(const NuvLinearProgrammingPivot& pivot, std::span<const Index> basic)
    {
        if (pivot.phase == m_phase && std::ranges::equal(basic, m_remembered))
        {
            m_result.period = m_result.pivots - m_rememberedAt;
            return true;
        }
        if (pivot.phase != m_phase || m_result.pivots - m_rememberedAt >= m_span)
        {
            m_span = pivot.phase != m_phase ? 1 : 2 * m_span;
            m_phase = pivot.phase;
            m_remembered.assign(basic.begin(), basic.end());
            m_rememberedAt = m_result.pivots;
        }
        return false;
    }

    std::uint64_t m_mostPivots;
    SinglePrecisionStop m_beyond;
    SolveControl& m_control;
    const std::function<void(const SinglePrecisionPivot&)>& m_observe;
    SinglePrecisionResult& m_result;
    std::uint32_t m_phase = 0;
    std::uint64_t m_span = 1;
    std::uint64_t m_rememberedAt = 0;
    std::vector<Index> m_remembered;
    std::exception_ptr m_thrown;
};

bool IsFinite(const CanonicalForm& form)
{
    const auto fits = [](double x) { return std::isfinite(static_cast<float>(x)); };
    return std::ranges::all_of(form.cost, fits) && std::ranges::all_of(form.rhs, fits) &&
           std::ranges::all_of(form.byRow.value, fits);
}

/// The pivots that the budget of bytes allows: each leaves a matrix of rows x rows behind.
std::uint64_t AffordablePivots(const CanonicalForm& form, std::size_t bytes)
{
    const std::uint64_t rows = form.rows;
    const std::uint64_t matrices = 4 * rows * (std::uint64_t{form.columns} + 3 * rows + 1) * 2;
    if (matrices > bytes)
        return 0;
    return (bytes - matrices) / (4 * rows * rows + 16 * rows) + 1;
}

bool State(const CanonicalForm& form, LinearProgram& program)
{
    bool isStated = true;
    std::vector<IndexedTerm> terms;
    for (Index i = 0; i < form.rows; ++i)
    {
        terms.clear();
        for (std::size_t at = form.byRow.start[i]; at < form.byRow.start[i + 1]; ++at)
            terms.push_back({form.byRow.index[at] + 1, static_cast<float>(form.byRow.value[at])});
        isStated = isStated && program.SetConstraint(i + 1, terms, static_cast<float>(form.rhs[i]));
    }
    terms.clear();
    for (Index j = 0; j < form.columns; ++j)
        terms.push_back({j + 1, static_cast<float>(form.cost[j])});
    return isStated && program.SetObjective(terms);
}

}  // namespace

Status StatusOf(Verdict verdict)
{
    switch (verdict)
    {
    case Verdict::Ok:
        return Status::Optimal;
    case Verdict::Infeasible:
        return Status::Infeasible;
    case Verdict::Unbounded:
        return Status::Unbounded;
    case Verdict::Stopped:
    case Verdict::InvalidInput:
        break;
    }
    return Status::Stopped;
}

SinglePrecisionResult
RunSinglePrecisionStage(const CanonicalForm& form, const SinglePrecisionBudget& budget,
                        SolveControl& control,
                        const std::function<void(const SinglePrecisionPivot&)>& observe)
{
    SinglePrecisionResult result;
    result.stop = form.rows == 0 || form.columns == 0 ? SinglePrecisionStop::Empty
                  : !IsFinite(form)                   ? SinglePrecisionStop::OutOfRange
                                                      : SinglePrecisionStop::Memory;
    if (result.stop != SinglePrecisionStop::Memory)
        return result;
    const std::uint64_t affordable = AffordablePivots(form, budget.bytes);
    LinearProgram program(form.columns);
    if (affordable == 0 || !program || !State(form, program))
        return result;

    for (Index i = 0; i < form.rows; ++i)
        result.basicLabels.push_back(form.columns + 1 + i);
    const bool isBudgetAffordable = budget.pivots <= affordable;
    Follower follower(std::min(budget.pivots, affordable),
                      isBudgetAffordable ? SinglePrecisionStop::PivotBudget
                                         : SinglePrecisionStop::Memory,
                      control, observe, result);
    const Verdict verdict = program.Solve(follower);
    follower.Rethrow();
    result.status = StatusOf(verdict);
    // InvalidInput is a refusal of storage, since the program was stated as the core wants it, and
    // leaves that reason; Stopped has left its own.
    if (result.status != Status::Stopped)
        result.stop = SinglePrecisionStop::None;
    if (result.status != Status::Optimal)
        return result;
    result.objective = program.Objective();
    for (Index j = 0; j < form.columns; ++j)
        result.values.push_back(program.Value(j + 1));
    return result;
}

}  // namespace nuv
