#include "Nuv/Exact/Dense/DenseSimplex.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace nuv
{
namespace
{

constexpr double kFeasibility = 1e-9;
constexpr double kOptimality = 1e-9;
constexpr double kPivot = 1e-9;

double SlackOf(double bound)
{
    return kFeasibility * std::fmax(1.0, std::fabs(bound));
}

}  // namespace

DenseSimplex::End DenseSimplex::Run(const DenseForm& form, SolveControl& control,
                                    const std::function<void(bool isFeasible)>& observe)
{
    Begin(form);
    ComputeValues();
    return Iterate(control, observe);
}

DenseSimplex::End DenseSimplex::RunFrom(const DenseForm& form,
                                        const std::vector<BasisStatus>& start,
                                        SolveControl& control)
{
    Begin(form);
    GoTo(start);
    ComputeValues();
    return Iterate(control, {});
}

DenseSimplex::End DenseSimplex::Iterate(SolveControl& control,
                                        const std::function<void(bool isFeasible)>& observe)
{
    const std::uint64_t mostSteps = 20 * (std::uint64_t{m_form->Variables()} + 5);
    for (std::uint64_t step = 0;; ++step)
    {
        const bool isFeasible = PriceInfeasibilities();
        const std::vector<double>& prices = isFeasible ? m_prices : m_gradients;
        const Index entering = ChooseEntering(prices);
        if (entering == kNoIndex)
            return isFeasible ? End::Optimal : End::Infeasible;
        // same bits (-> <=): what enters has a price
        m_movesUp = prices[entering] < 0.0;
        const double direction = m_movesUp ? 1.0 : -1.0;
        const Step chosen = ChooseStep(entering, direction);
        m_moving = m_nonbasic[entering];
        if (chosen.length >= kNone)
            return isFeasible ? End::Unbounded : End::GaveUp;
        if (step == mostSteps)
            return End::GaveUp;
        const double objective = control.AsksForObjective() ? Objective(isFeasible) : std::nan("");
        if (!control.MayPivot(Stage::Double, isFeasible, objective))
            return End::Stopped;
        if (observe)
            observe(isFeasible);
        control.CountPivot(Stage::Double);
        const double value = ValueOf(m_nonbasic[entering]) + direction * chosen.length;
        Move(entering, direction, chosen.length);
        const bool endsAtUpper = chosen.row == kNoIndex ? m_movesUp : chosen.toUpper;
        const Index rests = chosen.row == kNoIndex ? m_moving : m_basic[chosen.row];
        if (chosen.row != kNoIndex)
        {
            Exchange(chosen.row, entering);
            m_values[chosen.row] = value;
        }
        m_status[rests] = endsAtUpper ? BasisStatus::AtUpper : BasisStatus::AtLower;
    }
}

void DenseSimplex::Begin(const DenseForm& form)
{
    m_form = &form;
    const Index n = form.columns;
    m_table.resize(form.matrix.size());
    std::transform(form.matrix.begin(), form.matrix.end(), m_table.begin(),
                   [](double entry) { return -entry; });
    m_prices = form.cost;
    double largest = 0.0;
    for (const double cost : form.cost)
        largest = std::fmax(largest, std::fabs(cost));
    m_priceTolerance = kOptimality * largest;
    m_nonbasic.resize(n);
    std::iota(m_nonbasic.begin(), m_nonbasic.end(), Index{0});
    m_basic.resize(form.rows);
    std::iota(m_basic.begin(), m_basic.end(), n);
    m_status.assign(form.Variables(), BasisStatus::Basic);
    for (Index j = 0; j < n; ++j)
        m_status[j] = DefaultNonbasicStatus(form.lower[j], form.upper[j]);
}

/// Brings every basic column of the start into the basis, in exchange for variables that are not
/// basic there, each with the largest pivot that there is; then nonbasic ones rest where it says.
void DenseSimplex::GoTo(const std::vector<BasisStatus>& start)
{
    for (Index j = 0; j < m_form->columns; ++j)
    {
        // Columns enter at their own places, which no other exchange changes.
        const Index row = start[j] == BasisStatus::Basic ? RowToLeave(j, start) : kNoIndex;
        if (row == kNoIndex)
            continue;
        const Index leaving = m_basic[row];
        Exchange(row, j);
        m_status[leaving] = start[leaving];
    }
    for (const Index variable : m_nonbasic)
    {
        if (start[variable] != BasisStatus::Basic)
            m_status[variable] = start[variable];
    }
}

/// Of the variables that are to leave, the row of the one with the largest pivot; none if all are
/// too small.
Index DenseSimplex::RowToLeave(Index entering, const std::vector<BasisStatus>& start) const
{
    Index row = kNoIndex;
    double pivot = kPivot;
    for (Index i = 0; i < m_form->rows; ++i)
    {
        const double entry = std::fabs(Row(i)[entering]);
        if (start[m_basic[i]] != BasisStatus::Basic && entry > pivot)
        {
            pivot = entry;
            row = i;
        }
    }
    return row;
}

/// Those of the basic variables, out of where the others rest.
void DenseSimplex::ComputeValues()
{
    m_values.assign(m_form->rows, 0.0);
    for (Index j = 0; j < m_form->columns; ++j)
    {
        const double value = ValueOf(m_nonbasic[j]);
        for (Index i = 0; i < m_form->rows && value != 0.0; ++i)
            m_values[i] -= Row(i)[j] * value;
    }
}

double DenseSimplex::ValueOf(Index variable) const noexcept
{
    switch (m_status[variable])
    {
    case BasisStatus::AtLower:
        return m_form->lower[variable];
    case BasisStatus::AtUpper:
        return m_form->upper[variable];
    default:
        return 0.0;
    }
}

std::vector<double> DenseSimplex::Point() const
{
    std::vector<double> values(m_form->Variables());
    for (const Index variable : m_nonbasic)
        values[variable] = ValueOf(variable);
    for (Index i = 0; i < m_form->rows; ++i)
        values[m_basic[i]] = m_values[i];
    values.resize(m_form->columns);
    return values;
}

/// The derivatives of the sum of infeasibilities. @return whether there are none.
bool DenseSimplex::PriceInfeasibilities()
{
    const Index n = m_form->columns;
    bool isFeasible = true;
    for (Index i = 0; i < m_form->rows; ++i)
    {
        const double lower = m_form->lower[m_basic[i]];
        const double upper = m_form->upper[m_basic[i]];
        const bool isBelow = m_values[i] < lower - SlackOf(lower);
        if (!isBelow && !(m_values[i] > upper + SlackOf(upper)))
            continue;
        if (isFeasible)
            m_gradients.assign(n, 0.0);
        isFeasible = false;
        const double* const row = Row(i);
        for (Index j = 0; j < n; ++j)
            m_gradients[j] += isBelow ? row[j] : -row[j];
    }
    return isFeasible;
}

std::vector<signed char> DenseSimplex::Violations() const
{
    std::vector<signed char> violations(m_form->Variables(), 0);
    for (Index i = 0; i < m_form->rows; ++i)
    {
        const double lower = m_form->lower[m_basic[i]];
        const double upper = m_form->upper[m_basic[i]];
        if (m_values[i] < lower - SlackOf(lower))
            violations[m_basic[i]] = -1;
        else if (m_values[i] > upper + SlackOf(upper))
            violations[m_basic[i]] = 1;
    }
    return violations;
}

/// That of the basis, or the sum of infeasibilities while there are some.
double DenseSimplex::Objective(bool isFeasible) const
{
    double sum = 0.0;
    if (isFeasible)
    {
        const auto add = [&](Index variable, double value)
        {
            if (!m_form->IsLogical(variable))
                sum += m_form->cost[variable] * value;
        };
        for (const Index variable : m_nonbasic)
            add(variable, ValueOf(variable));
        for (Index i = 0; i < m_form->rows; ++i)
            add(m_basic[i], m_values[i]);
        return sum;
    }
    for (Index i = 0; i < m_form->rows; ++i)
        sum += std::fmax(0.0, std::fmax(m_form->lower[m_basic[i]] - m_values[i],
                                        m_values[i] - m_form->upper[m_basic[i]]));
    return sum;
}

/// The one that improves fastest.
Index DenseSimplex::ChooseEntering(const std::vector<double>& prices) const
{
    double best = &prices == &m_prices ? m_priceTolerance : kOptimality;
    Index entering = kNoIndex;
    for (Index j = 0; j < m_form->columns; ++j)
    {
        const double infeasibility = DualInfeasibility(m_status[m_nonbasic[j]], prices[j]);
        if (infeasibility > best && m_form->lower[m_nonbasic[j]] != m_form->upper[m_nonbasic[j]])
        {
            best = infeasibility;
            entering = j;
        }
    }
    return entering;
}

/// Where a basic variable that moves at this rate is stopped; one that is infeasible at the bound
/// that it comes back to. `slack` is how far beyond its bound it may go. @return whether it is.
bool DenseSimplex::Blocks(Index row, double rate, double slack, double& distance,
                          bool& toUpper) const
{
    const double lower = m_form->lower[m_basic[row]];
    const double upper = m_form->upper[m_basic[row]];
    const double value = m_values[row];
    const bool grows = rate > 0.0;  // same bits (-> >=): what moves has a rate
    toUpper = grows ? !(value < lower - SlackOf(lower)) : value > upper + SlackOf(upper);
    const double bound = toUpper ? upper : lower;
    if (std::isinf(bound))
        return false;
    // Beyond it already, and on its way out: it stops nothing.
    if (grows ? toUpper && value > upper + SlackOf(upper)
              : !toUpper && value < lower - SlackOf(lower))
        return false;
    distance = std::fmax(0.0, (grows ? bound - value : value - bound) + slack * SlackOf(bound));
    return true;
}

/// Harris's ratio test: of the rows that stop the step within the tolerance, the one with the
/// largest pivot.
DenseSimplex::Step DenseSimplex::ChooseStep(Index entering, double direction) const
{
    const Index variable = m_nonbasic[entering];
    const double range = m_form->upper[variable] - m_form->lower[variable];
    double distance = 0.0;
    bool toUpper = false;
    double farthest = kNone;
    for (Index i = 0; i < m_form->rows; ++i)
    {
        const double rate = -direction * Row(i)[entering];
        if (std::fabs(rate) > kPivot && Blocks(i, rate, 1.0, distance, toUpper))
            farthest = std::fmin(farthest, distance / std::fabs(rate));
    }
    Step step;
    double pivot = 0.0;
    for (Index i = 0; i < m_form->rows; ++i)
    {
        const double rate = -direction * Row(i)[entering];
        if (std::fabs(rate) > std::fmax(kPivot, pivot) && Blocks(i, rate, 0.0, distance, toUpper) &&
            distance / std::fabs(rate) <= farthest)
        {
            pivot = std::fabs(rate);
            step = {i, toUpper, distance / pivot};
        }
    }
    if (range <= step.length)
        step = {kNoIndex, false, range};
    return step;
}

void DenseSimplex::Move(Index entering, double direction, double length)
{
    for (Index i = 0; i < m_form->rows; ++i)
        m_values[i] -= direction * length * Row(i)[entering];
}

/// The dictionary solved for the entering variable in the row of the leaving one.
void DenseSimplex::Exchange(Index row, Index entering)
{
    const Index n = m_form->columns;
    double* const pivotRow = Row(row);
    const double pivot = pivotRow[entering];
    pivotRow[entering] = 1.0;
    for (Index j = 0; j < n; ++j)
        pivotRow[j] /= pivot;
    const auto eliminate = [&](double* numbers)
    {
        const double factor = numbers[entering];
        if (factor == 0.0)  // same bits (always, never): nothing changes by 0
            return;
        numbers[entering] = 0.0;
        for (Index j = 0; j < n; ++j)
            numbers[j] -= factor * pivotRow[j];
    };
    for (Index i = 0; i < m_form->rows; ++i)
    {
        if (i != row)
            eliminate(Row(i));
    }
    eliminate(m_prices.data());
    m_status[m_nonbasic[entering]] = BasisStatus::Basic;
    std::swap(m_basic[row], m_nonbasic[entering]);
}

}  // namespace nuv
