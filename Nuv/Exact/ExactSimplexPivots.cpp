/// The pivots of the exact simplex. Ratios are compared by products of integers: all basic values
/// share one denominator, and so do all entries of a column or row, so both drop out.
#include "Nuv/Exact/ExactSimplex.hpp"

#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

/// Degenerate pivots in a row after which Bland's rule takes over.
constexpr int kPatience = 20;  // same bits: any number of them ends in time

/// About the binary logarithm of |number| * scale; enough to prefer the larger of two.
long SizeOf(const Integer& number, Scale scale)
{
    return static_cast<long>(BitLength(number)) + scale.two + scale.five * 7 / 3;
}

}  // namespace

std::optional<Status> ExactSimplex::PrimalStep(bool phaseOne)
{
    m_entering = ChooseEntering(phaseOne, m_direction);
    if (m_entering == kNoIndex)
    {
        m_farkasSign = 0;
        return Status::Infeasible;
    }
    if (!m_control.MayPivot(Stage::Exact, !phaseOne, std::nan("")))
        return Status::Stopped;

    ScaledVector column{std::vector<Integer>(m_form.rows), m_exact.ColumnScale(m_entering),
                        m_exact.ColumnDivisor(m_entering)};
    for (const auto [row, entry] : m_exact.byVariable[m_entering])
        column.value[row] += Scaled(entry, -column.scale);
    if (!m_factors.SolveForward(column, m_column, m_control))
        return Status::Stopped;

    const Blocking blocking = TestRatios(m_direction);
    if (FlipsFirst(m_entering, blocking))
    {
        // same bits (-> >=): it is 1 or -1
        m_status[m_entering] = m_direction > 0 ? BasisStatus::AtUpper : BasisStatus::AtLower;
        NoteStep(false);
        return std::nullopt;
    }
    if (blocking.position == kNoIndex)
        return Status::Unbounded;
    NoteStep(blocking.room == 0);
    Exchange(blocking.position, m_entering, blocking.atUpper);
    return std::nullopt;
}

/// The largest reduced cost, or Bland's: the first with the right sign.
Index ExactSimplex::ChooseEntering(bool phaseOne, int& direction) const
{
    Index best = kNoIndex;
    long bestSize = 0;
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if (m_status[v] == BasisStatus::Basic || m_form.IsFixed(v))
            continue;
        const Integer reduced = m_exact.ReducedCost(v, m_duals, !phaseOne);
        const int improving = ImprovingDirection(v, reduced.Sign());
        if (improving == 0)
            continue;
        const long size = SizeOf(reduced, m_exact.ColumnScale(v));
        if (best == kNoIndex || size > bestSize)
        {
            best = v;
            bestSize = size;
            direction = improving;
        }
        if (m_degenerate > kPatience)
            break;
    }
    return best;
}

Integer ExactSimplex::RoomTo(Index position, bool atUpper) const
{
    const Index v = m_head[position];
    Integer room = m_values.numerator[position] * m_exact.BoundDivisor();
    room.SubtractProduct(m_exact.ScaledBound(atUpper ? m_exact.upper[v] : m_exact.lower[v]),
                         m_values.denominator);
    return Abs(std::move(room));
}

/// The basic variable that is first to reach a bound: one that it would violate, or, in phase one,
/// the one that it violates now. Ties go to the larger pivot, or by Bland's rule to the smaller
/// index.
ExactSimplex::Blocking ExactSimplex::TestRatios(int direction) const
{
    Blocking best;
    for (Index k = 0; k < m_form.rows; ++k)
    {
        const int rate = -direction * m_column.numerator[k].Sign();
        if (rate == 0 || m_violation[k] == rate)
            continue;
        const Index v = m_head[k];
        const bool recovers = m_violation[k] == -rate;
        // same bits (-> >=): it is 1 or -1
        const bool atUpper = (rate > 0) != recovers;
        if (!std::isfinite(atUpper ? m_form.Upper(v) : m_form.Lower(v)))
            continue;
        const Integer room = RoomTo(k, atUpper);
        const Integer speed = Abs(m_column.numerator[k]);
        if (best.position != kNoIndex)
        {
            const int order = Integer(room * best.speed).Compare(Integer(best.room * speed));
            const bool preferred =
                m_degenerate > kPatience ? v < m_head[best.position] : speed > best.speed;
            if (order > 0 || (order == 0 && !preferred))
                continue;
        }
        best = {k, atUpper, room, speed};
    }
    return best;
}

/// Whether the entering variable reaches its other bound before, or when, the blocking one blocks.
bool ExactSimplex::FlipsFirst(Index entering, const Blocking& blocking) const
{
    if (!std::isfinite(m_form.Lower(entering)) || !std::isfinite(m_form.Upper(entering)))
        return false;
    if (blocking.position == kNoIndex)
        return true;
    const Integer width =
        m_exact.ScaledBound(m_exact.upper[entering]) - m_exact.ScaledBound(m_exact.lower[entering]);
    return Integer(width * m_values.denominator * blocking.speed) <=
           Integer(blocking.room * m_column.denominator);
}

std::optional<Status> ExactSimplex::DualStep()
{
    if (!m_control.MayPivot(Stage::Exact, false, std::nan("")))
        return Status::Stopped;
    const Index position = ChooseLeaving();
    ScaledVector unit{std::vector<Integer>(m_form.rows), {}, 1};
    unit.value[position] = 1;
    // same bits (always): a stop is final, and asked about again before the next pivot
    if (!m_factors.SolveBackward(unit, m_row, m_control))
        return Status::Stopped;
    const bool toLower = m_violation[position] < 0;  // same bits (-> <=): it is not 0
    bool degenerate = false;
    const Index entering = ChooseDualEntering(toLower, degenerate);
    if (entering == kNoIndex)
    {
        m_farkasSign = toLower ? -1 : 1;
        return Status::Infeasible;
    }
    NoteStep(degenerate);
    Exchange(position, entering, !toLower);
    return std::nullopt;
}

/// The largest violation, or Bland's: the variable of smallest index.
Index ExactSimplex::ChooseLeaving() const
{
    Index best = kNoIndex;
    Integer largest;
    for (Index k = 0; k < m_form.rows; ++k)
    {
        if (m_violation[k] == 0)
            continue;
        const Index v = m_head[k];
        if (m_degenerate > kPatience)
        {
            if (best == kNoIndex || v < m_head[best])
                best = k;
            continue;
        }
        Integer room = RoomTo(k, m_violation[k] > 0);  // same bits (-> >=): it is not 0
        // same bits: any violated variable may leave
        if (best == kNoIndex || room > largest)
        {
            best = k;
            largest = std::move(room);
        }
    }
    return best;
}

/// The dual ratio test: among the nonbasic variables that can push the leaving one towards its
/// bound, the one whose reduced cost reaches zero first. Column and cost of a variable share an
/// exponent, so their ratio is one of integers.
Index ExactSimplex::ChooseDualEntering(bool toLower, bool& degenerate)
{
    Index best = kNoIndex;
    Integer bestReduced;
    Integer bestEntry;
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if (m_status[v] == BasisStatus::Basic || m_form.IsFixed(v))
            continue;
        Integer entry = m_exact.Dot(v, m_row.numerator);
        // The leaving variable changes by -entry per unit of this one.
        const int wanted = toLower ? -entry.Sign() : entry.Sign();
        const bool helps = m_status[v] == BasisStatus::Free      ? wanted != 0
                           : m_status[v] == BasisStatus::AtLower ? wanted > 0
                                                                 : wanted < 0;
        if (!helps)
            continue;
        entry = Abs(entry);
        Integer reduced = Abs(m_exact.ReducedCost(v, m_duals, true));
        if (best != kNoIndex)
        {
            const int order = Integer(reduced * bestEntry).Compare(Integer(bestReduced * entry));
            const bool larger = SizeOf(entry, m_exact.ColumnScale(v)) >
                                SizeOf(bestEntry, m_exact.ColumnScale(best));
            if (order > 0 || (order == 0 && (m_degenerate > kPatience || !larger)))
                continue;
        }
        best = v;
        bestReduced = std::move(reduced);
        bestEntry = std::move(entry);
    }
    degenerate = bestReduced == 0;
    return best;
}

}  // namespace nuv
