/// What the exact simplex knows at its end, written down as a certificate and in doubles.
#include "Nuv/Exact/ExactSimplex.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

/// All columns over one denominator. The resting values need the bounds' divisor besides the
/// denominator of the basic ones.
void ExactSimplex::WritePoint(ExactVector& point) const
{
    const Integer& factor = m_exact.BoundDivisor();
    point.denominator = m_values.denominator * factor;
    point.numerator.assign(m_form.columns, Integer(0));
    for (Index j = 0; j < m_form.columns; ++j)
    {
        // same bits (always, never): what is 0 adds nothing
        if (NonbasicValue(j).Sign() != 0)
            point.numerator[j] = m_exact.ScaledBound(NonbasicValue(j)) * m_values.denominator;
    }
    for (Index k = 0; k < m_form.rows; ++k)
    {
        if (!m_form.IsLogical(m_head[k]))
            point.numerator[m_head[k]] = m_values.numerator[k] * factor;
    }
    Reduce(point, factor);
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
    if (m_farkasSign < 0)  // same bits (-> <=): it is not 0
    {
        for (Integer& numerator : multipliers.numerator)
            numerator = -numerator;
    }
}

Rational ExactSimplex::Objective(const ExactVector& point) const
{
    const Integer& divisor = m_exact.CostDivisor();
    Integer sum(0);
    for (Index j = 0; j < m_form.columns; ++j)
    {
        const Rational& cost = m_exact.cost[j];
        // same bits (always, never): what is 0 adds nothing
        if (cost.Sign() != 0 && point.numerator[j] != 0)
            sum.AddProduct(cost.Numerator() * (divisor / cost.Denominator()), point.numerator[j]);
    }
    return Rational(sum, Integer(point.denominator * divisor)) + m_form.ExactConstant();
}

void ExactSimplex::WriteDoubles(CertifiedResult& proof) const
{
    proof.record.value.assign(m_form.Variables(), 0.0);
    proof.record.reduced.assign(m_form.Variables(), 0.0);
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if (m_status[v] == BasisStatus::AtLower)
            proof.record.value[v] = m_form.Lower(v);
        else if (m_status[v] == BasisStatus::AtUpper)
            proof.record.value[v] = m_form.Upper(v);
    }
    std::vector<double>& values = m_evaluation.valueInDouble;
    for (Index k = static_cast<Index>(values.size()); k < m_form.rows; ++k)
        values.push_back(m_values.Approximately(k));
    for (Index k = 0; k < m_form.rows; ++k)
        proof.record.value[m_head[k]] = values[k];
    if (proof.certificate.status == Status::Infeasible)
    {
        for (Index v = 0; v < m_form.Variables(); ++v)
            proof.record.reduced[v] = m_exact.ReducedCostInDouble(v, proof.certificate.dual, false);
    }
    if (proof.certificate.status != Status::Optimal)
        return;
    std::vector<double>& reduced = m_evaluation.reducedInDouble;
    for (Index v = static_cast<Index>(reduced.size()); v < m_form.Variables(); ++v)
    {
        if (m_status[v] == BasisStatus::Basic)
            reduced.push_back(0.0);
        else if (m_evaluation.reducedSign[v] == ExactEvaluation::kSignUnknown)
            reduced.push_back(m_exact.ReducedCostInDouble(v, m_duals, true));
        else
            reduced.push_back(m_exact.InDouble(v, m_evaluation.reduced[v], m_duals));
    }
    proof.record.reduced = reduced;
    proof.record.objectiveValue = ToDouble(proof.certificate.objective);
}

}  // namespace nuv
