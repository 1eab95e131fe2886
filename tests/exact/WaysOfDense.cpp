/// Ways of the dense dictionary with all that it shows before each pivot, and of the proofs in
/// words of bases and of what is none.
#include "Nuv/Exact/Dense/DenseProof.hpp"
#include "Nuv/Exact/Dense/DenseSimplex.hpp"
#include "Nuv/Exact/Dense/SolveSmall.hpp"
#include "tests/exact/Drawing.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

#include <vector>

namespace nuv::test
{
namespace
{

/// The dense dictionary before each pivot, and what is proved of its end.
void PivotDense(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    DenseForm dense;
    TakeForm(form, dense);
    DenseSimplex simplex;
    const auto look = [&](bool isFeasible)
    {
        way.Add(isFeasible);
        AddNumbers(way, simplex.Point());
        for (const BasisStatus status : simplex.Status())
            way.Add(static_cast<int>(status));
        for (const signed char violation : simplex.Violations())
            way.Add(violation);
    };
    SolveControl control(way.Watched());
    const auto end = simplex.Run(dense, control, look);
    way.Add(static_cast<int>(end));
    look(false);
    DenseProof proof;
    way.Add(proof.ProveInfeasible(dense, simplex.Status(), simplex.Violations()));
    if (end == DenseSimplex::End::Unbounded)
        way.Add(proof.ProveUnbounded(dense, simplex.Status(), simplex.Moving(), simplex.MovesUp()));
    way.Add(proof.ProveOptimal(dense, simplex.Status()));
    const Basis drawn = DrawBasis(random, form);
    std::vector<BasisStatus> start = drawn.columns;
    start.insert(start.end(), drawn.rows.begin(), drawn.rows.end());
    way.Add(static_cast<int>(simplex.RunFrom(dense, start, control)));
    look(false);
    // Of any statuses, which may be those of no basis.
    for (BasisStatus& status : start)
        status = random.OneIn(4) ? static_cast<BasisStatus>(random.Between(0, 3)) : status;
    const Index moving = Between(random, 0, form.Variables() - 1);
    way.Add(proof.ProveUnbounded(dense, start, moving, random.OneIn(2)));
    way.Add(proof.ProveOptimal(dense, start));
    std::vector<signed char> violations;
    for (Index v = 0; v < form.Variables(); ++v)
        violations.push_back(static_cast<signed char>(random.Between(-1, 1)));
    way.Add(proof.ProveInfeasible(dense, start, violations));
}

/// Here the rule of the largest coefficient goes round in a circle (Marshall and Suurballe).
void PivotInACircle(Random& random, Way& way)
{
    const Interval atMostZero{-kInf, 0.0};
    PivotDense(MakeForm({-10, 57, 9, 24}, {{{0.5, -5.5, -2.5, 9}, atMostZero},
                                           {{0.5, -1.5, -0.5, 1}, atMostZero},
                                           {{1, 0, 0, 0}, {-kInf, 1.0}}}),
               random, way);
}

}  // namespace

std::vector<Kind> KindsOfDense()
{
    const Drawing scaled{.rows = 5, .columns = 6, .boxed = 3, .exponents = 20};
    const Drawing longer{.rows = 5, .columns = 6, .boxed = 3, .exponents = 32};
    const Drawing farScaled{.rows = 5, .columns = 6, .boxed = 3, .exponents = 100};
    return {
        OfSmall("dense pivots of small", 300, PivotDense),
        OfDrawn("dense pivots of tied", 60, kTied, PivotDense),
        OfDrawn("dense pivots of scaled", 60, scaled, PivotDense),
        OfDrawn("dense pivots of far scaled", 30, farScaled, PivotDense),
        {"dense pivots in a circle", PivotInACircle},
        OfDrawn("dense pivots of longer", 60, longer, PivotDense),
        {"dense pivots of edges", Repeated(400, [](Random& random, Way& way)
                                           { PivotDense(DrawAtTolerances(random), random, way); })},
    };
}

}  // namespace nuv::test
