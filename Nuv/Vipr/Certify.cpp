#include "Nuv/Vipr/Certify.hpp"

#include "Nuv/Vipr/Statement.hpp"

#include <algorithm>

namespace nuv::vipr
{
namespace
{

/// A proof speaks of the minimisation form; multipliers turn their sign where the model maximises.
class Certifier
{
public:
    Certifier(const Model& model, CoefficientMeaning numbers, const nuv::Certificate& claim)
        : m_statement(StatementOf(model, numbers)),
          m_model(model),
          m_numbers(numbers),
          m_claim(claim),
          m_sign(model.ObjectiveSense() == Sense::Maximize ? -1 : 1)
    {
    }

    Certificate Certify()
    {
        Certificate certificate;
        certificate.problem = m_statement.problem;
        switch (m_claim.status)
        {
        case Status::Optimal:
            CertifyOptimal(certificate);
            break;
        case Status::Infeasible:
            CertifyInfeasible(certificate);
            break;
        case Status::Unbounded:
            certificate.goal = Goal::Unbounded;
            certificate.points.push_back(TermsOf(m_claim.primal));
            certificate.rays.push_back(TermsOf(m_claim.ray));
            break;
        case Status::Stopped:
        case Status::Invalid:
            break;
        }
        return certificate;
    }

private:
    static Terms TermsOf(const ExactVector& vector)
    {
        Terms terms;
        for (Index k = 0; k < vector.numerator.size(); ++k)
            if (vector.numerator[k] != 0)
                terms.push_back({k, vector.At(k)});
        return terms;
    }

    /// The multipliers of all bounds and rows times the denominator of the duals: the duals
    /// themselves and cost - A' y, with or without the cost.
    [[nodiscard]] std::vector<Rational> Multipliers(bool withCost) const
    {
        const Problem& problem = m_statement.problem;
        std::vector<Rational> multipliers(m_statement.sides.size());
        const std::size_t columns = problem.variables.size();
        if (withCost)
            for (const Term& term : problem.objective)
                multipliers[term.index] = term.value * Rational(m_claim.dual.denominator * m_sign);
        for (std::uint32_t i = 0; i < m_model.RowCount(); ++i)
        {
            const Rational dual(m_claim.dual.numerator[i]);
            multipliers[columns + i] = dual;
            if (dual == 0)
                continue;
            const std::span<const std::uint32_t> indices = m_model.RowColumns(i);
            for (std::size_t k = 0; k < indices.size(); ++k)
                multipliers[indices[k]] -=
                    NumberAt(m_model, m_numbers, {NumberPlace::Of::Entry, i, indices[k]},
                             m_model.RowCoefficients(i)[k]) *
                    dual;
        }
        return multipliers;
    }

    /// Each multiplier at the side that its sign names, times `factor`.
    [[nodiscard]] Terms AtSides(const std::vector<Rational>& multipliers,
                                const Rational& factor) const
    {
        Terms terms;
        for (std::size_t v = 0; v < multipliers.size(); ++v)
        {
            const Sides& sides = m_statement.sides[v];
            if (multipliers[v] != 0)
                terms.push_back({multipliers[v] > 0 ? sides.lower : sides.upper,
                                 Rational(multipliers[v] * factor)});
        }
        std::ranges::sort(terms, {}, &Term::index);
        return terms;
    }

    void CertifyOptimal(Certificate& certificate) const
    {
        const Rational constant = NumberAt(m_model, m_numbers, {NumberPlace::Of::ObjectiveConstant},
                                           m_model.ObjectiveConstant());
        const Rational value = m_claim.objective * Rational(m_sign) - constant;
        certificate.goal = Goal::Range;
        certificate.lower = value;
        certificate.upper = value;
        certificate.points.push_back(TermsOf(m_claim.primal));
        Derivation bound;
        bound.constraint.label = "bound";
        bound.constraint.relation = m_sign < 0 ? Relation::AtMost : Relation::AtLeast;
        bound.constraint.side = value;
        bound.constraint.terms = certificate.problem.objective;
        bound.multipliers =
            AtSides(Multipliers(true), Rational(Integer(m_sign), m_claim.dual.denominator));
        certificate.derivations.push_back(std::move(bound));
    }

    void CertifyInfeasible(Certificate& certificate) const
    {
        certificate.goal = Goal::Infeasible;
        Derivation contradiction;
        contradiction.constraint.label = "contradiction";
        contradiction.constraint.relation = Relation::AtLeast;
        contradiction.constraint.side = 1;
        contradiction.multipliers =
            m_claim.contradiction != kNoIndex ? CrossedBounds() : AtSides(Multipliers(false), 1);
        // Divided by the sum of the sides, the combination is 0 >= 1.
        Rational sum = 0;
        for (const Term& term : contradiction.multipliers)
            sum += term.value * certificate.problem.constraints[term.index].side;
        for (Term& term : contradiction.multipliers)
            term.value /= sum;
        certificate.derivations.push_back(std::move(contradiction));
    }

    /// lower <= v <= upper < lower.
    [[nodiscard]] Terms CrossedBounds() const
    {
        const Sides& sides = m_statement.sides[m_claim.contradiction];
        return {{sides.lower, Rational(1)}, {sides.upper, Rational(-1)}};
    }

    Statement m_statement;
    const Model& m_model;
    CoefficientMeaning m_numbers;
    const nuv::Certificate& m_claim;
    int m_sign;
};

}  // namespace

Certificate CertificateOf(const Model& model, CoefficientMeaning numbers,
                          const nuv::Certificate& claim)
{
    return Certifier(model, numbers, claim).Certify();
}

}  // namespace nuv::vipr
