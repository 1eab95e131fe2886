/// What the exact simplex knows at its end, written down as a certificate and in doubles.
#include "Nuv/Model/ExactSimplex.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

/// All columns over one denominator. The resting values need 2^BoundShift besides the denominator
/// of the basic ones.
void ExactSimplex::WritePoint(ExactVector& point) const
{
    const int shift = m_columns.BoundShift();
    point.denominator = m_values.denominator << static_cast<unsigned>(shift);
    point.numerator.assign(m_form.columns, Integer(0));
    for (Index j = 0; j < m_form.columns; ++j)
    {
        if (m_status[j] != BasisStatus::Basic && RestingValue(j) != 0.0)
            point.numerator[j] = ScaledInteger(RestingValue(j), shift) * m_values.denominator;
    }
    for (Index k = 0; k < m_form.rows; ++k)
    {
        if (!m_form.IsLogical(m_head[k]))
            point.numerator[m_head[k]] = m_values.numerator[k] << static_cast<unsigned>(shift);
    }
    ReducePowersOfTwo(point);
}

void ExactSimplex::WriteRay(ExactVector& ray) const
{
    ray.denominator = m_column.denominator;
    ray.numerator.assign(m_form.columns, Integer(0));
    if (!m_form.IsLogical(m_entering))
        ray.numerator[m_entering] = m_column.denominator * m_direction;
    for (Index k = 0; k < m_form.rows; ++k)
    {
        if (!m_form.IsLogical(m_head[k]))
            ray.numerator[m_head[k]] = m_column.numerator[k] * -m_direction;
    }
}

void ExactSimplex::WriteFarkas(ExactVector& multipliers) const
{
    if (m_farkasSign == 0)
    {
        multipliers = m_duals;
        return;
    }
    multipliers = m_row;
    if (m_farkasSign < 0)
    {
        for (Integer& numerator : multipliers.numerator)
            numerator = -numerator;
    }
}

Rational ExactSimplex::Objective(const ExactVector& point) const
{
    int lowest = 0;
    for (const double cost : m_form.cost)
        lowest = std::min(lowest, TakeApart(cost).exponent);
    Integer sum(0);
    for (Index j = 0; j < m_form.columns; ++j)
    {
        if (m_form.cost[j] != 0.0 && point.numerator[j] != 0)
            sum += ScaledInteger(m_form.cost[j], -lowest) * point.numerator[j];
    }
    return Rational(sum, point.denominator << static_cast<unsigned>(-lowest)) +
           ToRational(m_form.constant);
}

void ExactSimplex::WriteDoubles(Proof& proof) const
{
    proof.value.assign(m_form.Variables(), 0.0);
    proof.reduced.assign(m_form.Variables(), 0.0);
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if (m_status[v] != BasisStatus::Basic)
            proof.value[v] = RestingValue(v);
    }
    for (Index k = 0; k < m_form.rows; ++k)
        proof.value[m_head[k]] = m_values.Approximately(k);
    if (proof.status == ProofStatus::Unbounded)
        return;
    const bool optimal = proof.status == ProofStatus::Optimal;
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if (optimal && m_status[v] == BasisStatus::Basic)
            continue;
        const Integer reduced = m_columns.ReducedCost(v, proof.dual, optimal);
        proof.reduced[v] =
            std::ldexp(QuotientToDouble(reduced, proof.dual.denominator), m_columns.Exponent(v));
    }
    if (optimal)
        proof.objectiveValue = ToDouble(proof.objective);
}

}  // namespace nuv
