#include "Nuv/Vipr/Check.hpp"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

namespace nuv::vipr
{
namespace
{

int DirectionOf(Relation relation)
{
    return static_cast<int>(relation) - static_cast<int>(Relation::Equal);
}

/// Whether `value` stands in this relation to `side`.
bool Holds(const Rational& value, Relation relation, const Rational& side)
{
    if (relation == Relation::Equal)
        return value == side;
    return relation == Relation::AtMost ? value <= side : value >= side;
}

/// 0 >= 1 and its like: no point satisfies it, and everything follows from it.
bool IsAbsurd(const Constraint& constraint)
{
    return constraint.terms.empty() && !Holds(0, constraint.relation, constraint.side);
}

/// Whether every point that satisfies `strong` satisfies `weak`, as far as that shows at sight.
bool Dominates(const Constraint& strong, const Constraint& weak)
{
    if (IsAbsurd(strong))
        return true;
    return strong.terms == weak.terms &&
           (strong.relation == weak.relation || strong.relation == Relation::Equal) &&
           Holds(strong.side, weak.relation, weak.side);
}

/// The sum of products; both sparse, both in the order of their indices.
Rational Product(const Terms& left, const Terms& right)
{
    Rational sum = 0;
    auto at = right.begin();
    for (const Term& term : left)
    {
        at = std::find_if(at, right.end(),
                          [&](const Term& other) { return other.index >= term.index; });
        if (at != right.end() && at->index == term.index)
            sum += term.value * at->value;
    }
    return sum;
}

class Checker
{
public:
    explicit Checker(const Certificate& certificate)
        : m_certificate(certificate), m_problem(certificate.problem)
    {
        for (const Constraint& constraint : m_problem.constraints)
            m_constraints.push_back(&constraint);
    }

    std::string Run()
    {
        for (const Terms& point : m_certificate.points)
            CheckPoint(point);
        for (const Terms& ray : m_certificate.rays)
            CheckRay(ray);
        for (const Derivation& derivation : m_certificate.derivations)
            Derive(derivation);
        switch (m_certificate.goal)
        {
        case Goal::Infeasible:
            CheckContradiction();
            break;
        case Goal::Range:
            CheckRange();
            break;
        case Goal::Unbounded:
            CheckUnbounded();
            break;
        }
        return m_defect;
    }

private:
    void Demand(bool holds, std::string_view defect)
    {
        if (!holds && m_defect.empty())
            m_defect = defect;
    }

    void CheckPoint(const Terms& point)
    {
        for (const Constraint& constraint : m_problem.constraints)
            Demand(Holds(Product(constraint.terms, point), constraint.relation, constraint.side),
                   "a solution violates " + constraint.label);
    }

    /// From a feasible point a ray leads to feasible points alone if no constraint limits it.
    void CheckRay(const Terms& ray)
    {
        for (const Constraint& constraint : m_problem.constraints)
            Demand(Holds(Product(constraint.terms, ray), constraint.relation, 0),
                   "a ray leads out of " + constraint.label);
    }

    void Derive(const Derivation& derivation)
    {
        const std::size_t index = m_constraints.size();
        const std::string& label = derivation.constraint.label;
        bool isAssumed = derivation.reason == Reason::Assumption;
        for (const Term& multiplier : derivation.multipliers)
        {
            isAssumed = isAssumed || m_assumed.contains(multiplier.index);
            const auto last = m_lastUser.find(multiplier.index);
            Demand(last == m_lastUser.end() || last->second >= index,
                   label + " uses a constraint after the last use stated for it");
        }
        // Without integer variables nothing can be rounded and no case split.
        const bool follows = derivation.reason == Reason::Assumption ||
                             (derivation.reason == Reason::Combination && Follows(derivation));
        Demand(follows, label + " does not follow");
        if (isAssumed)
            m_assumed.insert(index);
        if (derivation.lastUser)
            m_lastUser[index] = *derivation.lastUser;
        m_constraints.push_back(&derivation.constraint);
    }

    /// Adds up constraints, over one denominator for the multipliers, so that the sums need not
    /// look for common divisors of large numbers.
    bool Follows(const Derivation& derivation)
    {
        Integer scale = 1;
        for (const Term& multiplier : derivation.multipliers)
            scale = LeastCommonMultiple(scale, multiplier.value.Denominator());
        std::map<std::size_t, Rational> sums;
        Constraint sum;
        bool directions[3] = {};
        for (const Term& multiplier : derivation.multipliers)
        {
            const Constraint& constraint = *m_constraints[multiplier.index];
            const Rational weight =
                multiplier.value.Numerator() * (scale / multiplier.value.Denominator());
            for (const Term& term : constraint.terms)
                sums[term.index] += term.value * weight;
            sum.side += constraint.side * weight;
            const int direction = DirectionOf(constraint.relation) * weight.Sign();
            directions[direction + 1] = true;
        }
        if (directions[0] && directions[2])
            return false;
        if (directions[0] || directions[2])
            sum.relation = directions[0] ? Relation::AtMost : Relation::AtLeast;
        sum.side /= scale;
        for (auto& [index, value] : sums)
            if (value.Sign() != 0)
                sum.terms.push_back({index, value / scale});
        return Dominates(sum, derivation.constraint);
    }

    /// Whether the last constraint derived is there and holds without assumptions.
    bool IsProved() const
    {
        return !m_certificate.derivations.empty() && !m_assumed.contains(m_constraints.size() - 1);
    }

    void CheckContradiction()
    {
        Demand(IsProved() && IsAbsurd(*m_constraints.back()),
               "the last constraint is no contradiction");
    }

    void CheckRange()
    {
        const bool isOneValue = m_certificate.lower && m_certificate.lower == m_certificate.upper;
        Demand(isOneValue, "the range is not one value");
        if (!isOneValue)
            return;
        Constraint bound;
        bound.relation = m_problem.maximize ? Relation::AtMost : Relation::AtLeast;
        bound.side = *m_certificate.lower;
        bound.terms = m_problem.objective;
        Demand(IsProved() && Dominates(*m_constraints.back(), bound),
               "the last constraint does not bound the objective");
        const bool isReached =
            std::ranges::any_of(m_certificate.points, [&](const Terms& point)
                                { return Product(m_problem.objective, point) == bound.side; });
        Demand(isReached, "no solution has the value of the range");
    }

    void CheckUnbounded()
    {
        const bool improves =
            std::ranges::any_of(m_certificate.rays,
                                [&](const Terms& ray)
                                {
                                    const Rational rate = Product(m_problem.objective, ray);
                                    return m_problem.maximize ? rate > 0 : rate < 0;
                                });
        Demand(improves && !m_certificate.points.empty(), "no ray from a solution improves");
    }

    const Certificate& m_certificate;
    const Problem& m_problem;
    std::vector<const Constraint*> m_constraints;
    std::set<std::size_t> m_assumed;
    std::map<std::size_t, std::size_t> m_lastUser;
    std::string m_defect;
};

/// The order of the constraints of one problem that two listings of it share.
bool ComesBefore(const Constraint& left, const Constraint& right)
{
    if (left.relation != right.relation)
        return left.relation < right.relation;
    if (left.side != right.side)
        return left.side < right.side;
    return std::ranges::lexicographical_compare(left.terms, right.terms,
                                                [](const Term& a, const Term& b) {
                                                    return a.index != b.index ? a.index < b.index
                                                                              : a.value < b.value;
                                                });
}

/// The place of each variable in the alphabet of all.
std::vector<std::size_t> PlacesByName(const std::vector<std::string>& names)
{
    std::vector<std::size_t> order(names.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {}, [&](std::size_t k) -> const std::string& { return names[k]; });
    std::vector<std::size_t> place(names.size());
    for (std::size_t k = 0; k < order.size(); ++k)
        place[order[k]] = k;
    return place;
}

/// The objective and the constraints, in an order that does not depend on how they are listed.
std::vector<Constraint> Sorted(const Problem& problem)
{
    std::vector<Constraint> constraints = problem.constraints;
    constraints.push_back({{}, Relation::Equal, 0, problem.objective});
    const std::vector<std::size_t> place = PlacesByName(problem.variables);
    for (Constraint& constraint : constraints)
    {
        for (Term& term : constraint.terms)
            term.index = place[term.index];
        std::ranges::sort(constraint.terms, {}, &Term::index);
    }
    std::sort(constraints.begin(), constraints.end() - 1, ComesBefore);
    return constraints;
}

}  // namespace

bool IsSameProblem(const Problem& left, const Problem& right)
{
    std::vector<std::string> names = left.variables;
    std::vector<std::string> others = right.variables;
    std::ranges::sort(names);
    std::ranges::sort(others);
    if (left.maximize != right.maximize || names != others ||
        std::ranges::adjacent_find(names) != names.end())
        return false;
    return std::ranges::equal(Sorted(left), Sorted(right),
                              [](const Constraint& a, const Constraint& b) {
                                  return a.relation == b.relation && a.side == b.side &&
                                         a.terms == b.terms;
                              });
}

std::string FindDefect(const Certificate& certificate)
{
    return Checker(certificate).Run();
}

}  // namespace nuv::vipr
