/// Ways of the program that refinement solves, from bases and with values that are drawn.
#include "Nuv/Exact/Refinement.hpp"
#include "Nuv/Exact/ExactFactors.hpp"
#include "tests/exact/Drawing.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

#include <cstddef>
#include <vector>

namespace nuv::test
{
namespace
{

/// The program that refinement solves, from a basis that is drawn and from where that leads.
void Refine(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    const ScaledForm scaled(form);
    const ExactForm exact(form);
    Refinement refinement(exact, scaled);
    Basis basis = DrawBasis(random, form);
    for (int round = 0; round < 3; ++round)
    {
        std::vector<BasisStatus> status;
        std::vector<Index> head;
        for (Index v = 0; v < form.Variables(); ++v)
        {
            status.push_back(basis[v]);
            if (basis[v] == BasisStatus::Basic)
                head.push_back(v);
        }
        ExactFactors factors(exact);
        if (!factors.Factorise(head).empty())
            return;
        // Any numbers will do for the values and the duals of the basis.
        const auto draw = [&](Index count)
        {
            ExactVector vector{{}, random.Between(1, 99)};
            for (Index k = 0; k < count; ++k)
                vector.numerator.emplace_back(random.Between(-300, 300));
            return vector;
        };
        const ExactVector values = draw(form.rows);
        const ExactVector duals = draw(form.rows);
        SolveControl control(way.Watched());
        BlockedRow blocked;
        way.Add(static_cast<int>(
            refinement.Run({status, head, values, duals}, control, status, blocked)));
        way.Add(blocked.variable);
        way.Add(blocked.basis);
        SolveLimits none;
        none.seconds = 0.0;
        SolveControl stopped(none);
        way.Add(refinement.EnlargeEquation(blocked, stopped));
        way.Add(refinement.EnlargeEquation(blocked, control));
        for (Index v = 0; v < form.Variables(); ++v)
        {
            basis[v] = status[v];
            way.Add(static_cast<int>(status[v]));
        }
        FitBasis(form, basis);
    }
}

/// Some rows that are drawn, and sums of them that are off by 1e-11 or so.
BoundedForm DrawDependentRows(Random& random)
{
    constexpr std::size_t kColumns = 7;
    std::vector<DenseRow> rows(6);
    std::vector<Interval> bounds(kColumns);
    for (Interval& interval : bounds)
    {
        const double at = random.Between(0, 3);
        interval = {at, random.OneIn(3) ? at : at + random.Between(1, 9)};
    }
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        for (std::size_t j = 0; j < kColumns; ++j)
        {
            double entry = random.Between(-3, 3);
            if (i >= 3)
                entry = rows[i - 3].coefficients[j] + 2.0 * rows[i - 2].coefficients[j] +
                        (random.OneIn(2) ? entry * 0x1p-36 : 0.0);
            rows[i].coefficients.push_back(entry);
        }
        const double side = random.Between(-9, 20);
        rows[i].bounds = {side, random.OneIn(3) ? side + 4.0 : side};
    }
    return MakeForm(std::vector<double>(kColumns, 1.0), rows, bounds);
}

/// Equations that follow from others but for a little, where their logicals are basic, and what is
/// solved with the rows that take their places.
void Enlarge(Random& random, Way& way)
{
    const BoundedForm form = DrawDependentRows(random);
    const ScaledForm scaled(form);
    const ExactForm exact(form);
    for (Index v = form.columns; v < form.Variables(); ++v)
    {
        const Basis basis = DrawBasis(random, form);
        if (basis[v] != BasisStatus::Basic)
            continue;
        Refinement refinement(exact, scaled);
        SolveControl control(way.Watched());
        way.Add(refinement.EnlargeEquation({basis, v}, control));
        std::vector<BasisStatus> status = basis.columns;
        status.insert(status.end(), basis.rows.begin(), basis.rows.end());
        std::vector<Index> head;
        for (Index u = 0; u < form.Variables(); ++u)
        {
            if (status[u] == BasisStatus::Basic)
                head.push_back(u);
        }
        const ExactVector values{std::vector<Integer>(form.rows, 7), 3};
        const ExactVector duals{std::vector<Integer>(form.rows, -2), 5};
        const std::vector<BasisStatus> before = status;
        BlockedRow blocked;
        way.Add(static_cast<int>(
            refinement.Run({before, head, values, duals}, control, status, blocked)));
        for (const BasisStatus at : status)
            way.Add(static_cast<int>(at));
        way.Add(control.Pivots(Stage::Double));
        way.Add(blocked.variable);
    }
}

}  // namespace

std::vector<Kind> KindsOfRefinement()
{
    const Drawing dependent{
        .rows = 7, .columns = 10, .entries = 8, .boxed = 3, .equations = 2, .nearness = 1e-11};
    return {
        OfSmall("refined small", 150, Refine),
        OfDependent("refined nearly dependent", 60, Refine),
        OfDrawn("refined dependent", 40, dependent, Refine),
        {"enlarged equations", Repeated(100, Enlarge)},
    };
}

}  // namespace nuv::test
