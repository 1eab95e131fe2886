#include "Nuv/Algebra/Singletons/PeeledSolver.hpp"

#include <algorithm>
#include <utility>

namespace nuv
{

PeeledMatrix::PeeledMatrix(SparseVectors<ExactNumber> columnsByPivotRow,
                           const SingletonOrder& order)
    : columns(std::move(columnsByPivotRow)), bump(order.bumpRows)
{
    for (const auto [row, column] : order.rowSingletons)
        rowSingletons.push_back(row);
    for (const auto [row, column] : order.columnSingletons)
        columnSingletons.push_back(row);
}

PeeledSolver::PeeledSolver(const PeeledMatrix& matrix, const SparseLu<PrimeField>& factors,
                           DixonSolver::Side side)
    : m_bump(matrix.bump)
{
    const Index size = matrix.columns.Count();
    // By rows the row singletons come first, and the column singletons in reverse last; by columns,
    // transposed, the other way round.
    const bool isForward = side == DixonSolver::Side::Forward;
    m_first = isForward ? matrix.rowSingletons : matrix.columnSingletons;
    m_last = isForward ? matrix.columnSingletons : matrix.rowSingletons;
    std::ranges::reverse(m_last);
    const SparseVectors<ExactNumber> rows = Transposed(matrix.columns, size);
    std::vector<Index> place(size, kNoIndex);
    for (Index k = 0; k < m_bump.size(); ++k)
        place[m_bump[k]] = k;
    SparseVectors<ExactNumber> unknowns;
    for (const Index k : m_bump)
    {
        for (const auto [equation, entry] : isForward ? matrix.columns[k] : rows[k])
        {
            if (place[equation] != kNoIndex)
                unknowns.Append(place[equation], entry);
        }
        unknowns.Close();
    }
    TakeEquations(isForward ? rows : matrix.columns);
    std::vector<Scale> scales;
    for (const Index k : m_bump)
        scales.push_back(m_scale[k]);
    m_lifting = std::make_unique<DixonSolver>(unknowns, factors, side, std::move(scales));
}

void PeeledSolver::TakeEquations(const SparseVectors<ExactNumber>& equations)
{
    m_equations.start = equations.start;
    m_equations.index = equations.index;
    m_entries.Reserve(equations.value.size());
    m_scale.resize(m_equations.Count());
    m_pivot.resize(m_equations.Count());
    for (Index e = 0; e < m_equations.Count(); ++e)
    {
        Scale& scale = m_scale[e];
        for (std::size_t at = m_equations.start[e]; at < m_equations.start[e + 1]; ++at)
        {
            scale.two = std::max(scale.two, -equations.value[at].scale.two);
            scale.five = std::max(scale.five, -equations.value[at].scale.five);
        }
        for (std::size_t at = m_equations.start[e]; at < m_equations.start[e + 1]; ++at)
        {
            m_entries.Append(equations.value[at], scale);
            if (m_equations.index[at] == e)
                m_entries.AddProduct(at, 1, m_pivot[e]);
        }
    }
}

bool PeeledSolver::Solve(const ScaledVector& rightSide, ExactVector& solution,
                         const StopPredicate& stop)
{
    if (stop())
        return false;
    const std::size_t size = m_scale.size();
    m_numerator.assign(size, Integer());
    m_denominator = 1;
    m_enlarged.assign(1, Integer(1));  // same bits (-> 2): one more factor of 1
    m_enlargedOf.assign(size, 0);
    for (const Index equation : m_first)
        Substitute(equation, rightSide);
    const Integer before = m_denominator;
    if (!SolveBump(rightSide, stop))
        return false;
    for (std::size_t k = 0; k < m_last.size(); ++k)
    {
        // same bits: how often is asked
        if (k % 256 == 255 && stop())
            return false;
        Substitute(m_last[k], rightSide);
    }
    BringToOneDenominator();
    solution.numerator = std::move(m_numerator);
    solution.denominator = m_denominator;
    // The bump may not need what the equations before it did.
    // same bits (always, never, -> 0): a factor of 1
    if (before != 1)
        Reduce(solution, before);
    MultiplyBy(rightSide.scale, rightSide.divisor, solution);
    return true;
}

bool PeeledSolver::SolveBump(const ScaledVector& rightSide, const StopPredicate& stop)
{
    if (m_bump.empty())
        return true;
    std::vector<Integer> sums;
    sums.reserve(m_bump.size());
    for (const Index equation : m_bump)
        sums.push_back(Remainder(equation, rightSide));
    ExactVector solution;
    if (!m_lifting->SolveIntegers(std::move(sums), solution, stop))
        return false;
    Enlarge(solution.denominator);
    for (Index k = 0; k < m_bump.size(); ++k)
    {
        m_numerator[m_bump[k]] = std::move(solution.numerator[k]);
        m_enlargedOf[m_bump[k]] = m_enlarged.size() - 1;
    }
    return true;
}

/// What the unknowns found so far, the others being zero, leave of the right side of an equation,
/// times its scale and the denominator.
Integer PeeledSolver::Remainder(Index equation, const ScaledVector& rightSide) const
{
    Integer sum;
    for (std::size_t at = m_equations.start[equation]; at < m_equations.start[equation + 1]; ++at)
    {
        const Index unknown = m_equations.index[at];
        // same bits (always, never): what is 0 adds nothing
        if (m_numerator[unknown].Sign() == 0)
            continue;
        const std::size_t enlarged = m_enlargedOf[unknown];
        // same bits (always, never, -> 0): a factor of 1
        if (enlarged + 1 == m_enlarged.size())
            m_entries.AddProduct(at, m_numerator[unknown], sum);
        else
            m_entries.AddProduct(at, m_numerator[unknown] * m_enlarged[enlarged], sum);
    }
    sum.Negate();
    const Integer& right = rightSide.value[equation];
    // same bits (always, never): what is 0 adds nothing
    if (right.Sign() != 0)
        sum.AddProduct(right * PowerOf(m_scale[equation]), m_denominator);
    return sum;
}

/// Finds the unknown that pivots in this equation, all others in it being known.
void PeeledSolver::Substitute(Index equation, const ScaledVector& rightSide)
{
    Integer sum = Remainder(equation, rightSide);
    // same bits: its numerator is 0 already
    if (sum.Sign() == 0)
        return;
    const Integer& pivot = m_pivot[equation];
    Integer quotient;
    Integer rest;
    Divide(sum, pivot, quotient, rest);
    if (rest.Sign() != 0)  // same bits: without a remainder the factor is 1
    {
        const Integer factor = Abs(pivot / Gcd(rest, pivot));
        Enlarge(factor);
        quotient = sum * factor / pivot;
    }
    m_numerator[equation] = std::move(quotient);
    m_enlargedOf[equation] = m_enlarged.size() - 1;
}

/// Multiplies the denominator, and in effect all numerators.
void PeeledSolver::Enlarge(const Integer& factor)
{
    // same bits (always, never, -> 0): a factor of 1
    if (factor == 1)
        return;
    m_denominator *= factor;
    for (Integer& enlarged : m_enlarged)
        enlarged *= factor;
    m_enlarged.emplace_back(1);
}

void PeeledSolver::BringToOneDenominator()
{
    for (std::size_t k = 0; k < m_numerator.size(); ++k)
    {
        // same bits (always, never, -> 0): a factor of 1
        if (m_enlargedOf[k] + 1 != m_enlarged.size())
            m_numerator[k] *= m_enlarged[m_enlargedOf[k]];
    }
}

}  // namespace nuv
