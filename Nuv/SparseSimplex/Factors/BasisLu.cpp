/// The factors, their solves and their updates.
#include "Nuv/SparseSimplex/Factors/BasisLu.hpp"

#include "Nuv/Algebra/RealField.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

std::vector<Replacement> BasisLu::Factorise(const SparseVectors<double>& columns,
                                            std::vector<Index>& position)
{
    m_size = columns.Count();
    const RealField field;
    SparseElimination<RealField> elimination(field, columns);
    elimination.Run();

    position.assign(m_size, kNoIndex);
    m_pivot.assign(m_size, -1.0);
    for (std::size_t step = 0; step < elimination.pivotRow.size(); ++step)
    {
        position[elimination.pivotColumn[step]] = elimination.pivotRow[step];
        m_pivot[elimination.pivotRow[step]] = elimination.pivotValue[step];
    }
    // A replaced column met no elimination: the logical of a row that never pivoted is untouched by
    // the multipliers, and what the dropped column left in U goes with it.
    SparseVectors<double> upper;
    upper.start.reserve(std::size_t{m_size} + 1);
    upper.index.reserve(elimination.upper.index.size());
    upper.value.reserve(elimination.upper.index.size());
    for (Index step = 0; step < elimination.upper.Count(); ++step)
    {
        for (const auto [column, entry] : elimination.upper[step])
        {
            if (position[column] != kNoIndex)
                upper.Append(position[column], entry);
        }
        upper.Close();
    }
    m_lowerOrder = elimination.pivotRow;
    std::vector<Replacement> replacements = elimination.PairLeftovers(position);
    for (const Replacement& replacement : replacements)
    {
        m_lowerOrder.push_back(replacement.row);
        upper.Close();
        elimination.lower.Close();
    }
    m_upperRows.Load(upper, m_lowerOrder);
    m_upperColumns.LoadTransposed(m_upperRows);
    m_lowerColumns.Load(elimination.lower, m_lowerOrder);
    m_lowerRows.LoadTransposed(m_lowerColumns);
    m_factorEntries = upper.index.size() + elimination.lower.index.size() + m_size;

    m_upperOrder = m_lowerOrder;
    m_upperStep.resize(m_size);
    for (Index step = 0; step < m_size; ++step)
        m_upperStep[m_upperOrder[step]] = step;
    m_etaRow.clear();
    m_etas.Clear();
    m_updates = 0;
    m_spikeEntries = 0;
    m_unitPosition = kNoIndex;
    m_work.Reset(m_size);
    m_search.Resize(m_size);
    return replacements;
}

void BasisLu::SolveLower(Substitution& kind, WorkVector& vector)
{
    kind.Run(m_lowerColumns, m_lowerOrder, nullptr, m_search, vector);
}

void BasisLu::SolveUpper(Substitution& kind, WorkVector& vector)
{
    kind.Run(m_upperColumns, m_upperOrder, m_pivot.data(), m_search, vector);
}

void BasisLu::SolveUpperTransposed(Substitution& kind, WorkVector& vector)
{
    kind.Run(m_upperRows, m_upperOrder, m_pivot.data(), m_search, vector);
}

void BasisLu::SolveLowerTransposed(Substitution& kind, WorkVector& vector)
{
    kind.Run(m_lowerRows, m_lowerOrder, nullptr, m_search, vector);
}

void BasisLu::SolveForward(WorkVector& vector)
{
    SolveLower(m_lowerForward, vector);
    ApplyEtasForward(vector);
    SolveUpper(m_upperForward, vector);
}

void BasisLu::SolveEntering(WorkVector& vector)
{
    SolveLower(m_lowerEntering, vector);
    ApplyEtasForward(vector);
    m_spikeIndex.clear();
    m_spikeValue.clear();
    for (const Index at : vector.touched)
    {
        m_spikeIndex.push_back(at);
        m_spikeValue.push_back(vector.value[at]);
    }
    SolveUpper(m_upperEntering, vector);
}

void BasisLu::SolveBackward(WorkVector& vector)
{
    SolveUpperTransposed(m_upperBackward, vector);
    ApplyEtasBackward(vector);
    SolveLowerTransposed(m_lowerBackward, vector);
}

/// Solves with U alone and keeps what it gives for the next update.
void BasisLu::SolveUnitUpper(Index position, WorkVector& vector)
{
    vector.Reset(m_size);
    vector.Set(position, 1.0);
    SolveUpperTransposed(m_upperUnit, vector);
    m_unitPosition = position;
    m_unitIndex.clear();
    m_unitValue.clear();
    for (const Index at : vector.touched)
    {
        m_unitIndex.push_back(at);
        m_unitValue.push_back(vector.value[at]);
    }
}

void BasisLu::SolveUnitBackward(Index position, WorkVector& vector)
{
    SolveUnitUpper(position, vector);
    ApplyEtasBackward(vector);
    SolveLowerTransposed(m_lowerUnit, vector);
}

void BasisLu::ApplyEtasForward(WorkVector& vector) const
{
    for (Index k = 0; k < m_etas.Count(); ++k)
    {
        double sum = 0.0;
        for (const auto [at, entry] : m_etas[k])
            sum += entry * vector.value[at];
        if (sum != 0.0)
            vector.Add(m_etaRow[k], -sum);
    }
}

void BasisLu::ApplyEtasBackward(WorkVector& vector) const
{
    for (Index k = m_etas.Count(); k-- > 0;)
    {
        const double factor = vector.value[m_etaRow[k]];
        // same bits (-> <=): nothing is as large as that limit
        if (std::fabs(factor) < tolerance::kNegligible)
            continue;
        for (const auto [at, entry] : m_etas[k])
            vector.Add(at, -factor * entry);
    }
}

double BasisLu::Update(Index position, double pivot)
{
    if (m_unitPosition != position)
    {
        SolveUnitUpper(position, m_work);
        m_work.Clear();
    }
    m_unitPosition = kNoIndex;
    // With y' U = e_p, row p of U plus u_pp y_j times each other row j is u_pp e_p.
    const double old = m_pivot[position];
    for (std::size_t k = 0; k < m_unitIndex.size(); ++k)
    {
        if (m_unitIndex[k] == position)
            continue;
        m_etas.Append(m_unitIndex[k], -m_unitValue[k] * old);
    }
    m_etas.Close();
    m_etaRow.push_back(position);

    // The new pivot is that of the spike after the elimination, and det B' / det B = pivot.
    for (std::size_t k = 0; k < m_spikeIndex.size(); ++k)
        m_work.Set(m_spikeIndex[k], m_spikeValue[k]);
    double eliminated = m_work.value[position];
    for (const auto [at, entry] : m_etas[m_updates])
        eliminated -= entry * m_work.value[at];
    m_work.Clear();
    const double expected = old * pivot;

    RemoveFromUpper(position);
    AddSpikeToUpper(position);
    m_pivot[position] = eliminated;
    m_upperOrder[m_upperStep[position]] = kNoIndex;
    m_upperStep[position] = static_cast<Index>(m_upperOrder.size());
    m_upperOrder.push_back(position);
    ++m_updates;
    return std::fabs(eliminated - expected) / std::max(std::fabs(expected), 1e-300);
}

void BasisLu::RemoveFromUpper(Index position)
{
    for (const Index row : m_upperColumns.Indices(position))
        m_upperRows.Remove(row, position);
    m_upperColumns.Empty(position);
    for (const Index column : m_upperRows.Indices(position))
        m_upperColumns.Remove(column, position);
    m_upperRows.Empty(position);
}

void BasisLu::AddSpikeToUpper(Index position)
{
    for (std::size_t k = 0; k < m_spikeIndex.size(); ++k)
    {
        const Index row = m_spikeIndex[k];
        // same bits (-> <=): nothing is as large as that limit
        if (row == position || std::fabs(m_spikeValue[k]) < tolerance::kNegligible)
            continue;
        m_upperColumns.Append(position, row, m_spikeValue[k]);
        m_upperRows.Append(row, position, m_spikeValue[k]);
        ++m_spikeEntries;
    }
}

}  // namespace nuv
