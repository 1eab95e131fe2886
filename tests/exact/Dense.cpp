/// The short way of small dense forms against the general one, exactly.
#include "Nuv/Exact/Dense/DenseProof.hpp"
#include "Nuv/Exact/Dense/DenseSimplex.hpp"
#include "Nuv/Exact/Dense/SolveDense.hpp"
#include "Nuv/Exact/Dense/SolveSmall.hpp"
#include "tests/exact/Certified.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace nuv::test
{
namespace
{

double DrawNumber(Random& random, int kind)
{
    if (kind == 0)
        return random.Between(-9, 9);
    if (kind == 1)
        return random.Between(-999, 999) / 100.0;
    return static_cast<double>(random.Next() >> 11) * 0x1p-52 - 0.5;
}

/// Rows and bounds of all kinds; integers, decimals of two places, or numbers of all digits.
BoundedForm DrawForm(Random& random)
{
    const int kind = random.Between(0, 2);
    const auto rows = static_cast<Index>(random.Between(0, 7));
    const auto columns = static_cast<Index>(random.Between(1, 7));
    const auto interval = [&](bool isRow)
    {
        Interval bounds{isRow ? -kInf : 0.0, kInf};
        if (!random.OneIn(isRow ? 8 : 2))
            bounds.upper = std::fabs(DrawNumber(random, kind));
        if (random.OneIn(3))
            bounds.lower = -std::fabs(DrawNumber(random, kind));
        if (random.OneIn(isRow ? 4 : 12))
            bounds.lower = bounds.upper == kInf ? -kInf : bounds.upper;
        return bounds;
    };
    std::vector<double> cost(columns);
    for (double& number : cost)
        number = DrawNumber(random, kind);
    std::vector<Interval> bounds(columns);
    for (Interval& both : bounds)
        both = interval(false);
    std::vector<DenseRow> dense(rows);
    for (DenseRow& row : dense)
    {
        for (Index j = 0; j < columns; ++j)
            row.coefficients.push_back(random.OneIn(4) ? 0 : DrawNumber(random, kind));
        row.bounds = interval(true);
    }
    BoundedForm form = MakeForm(cost, dense, bounds);
    form.constant = DrawNumber(random, kind);
    form.numbers =
        random.OneIn(2) ? CoefficientMeaning::StoredDouble : CoefficientMeaning::ShortestDecimal;
    return form;
}

/// What the general way comes to, which no start keeps from refining and pivoting.
CertifiedResult InGeneral(const BoundedForm& form)
{
    return CertifiedFrom(form, SlackBasis(form));
}

TEST(Dense, ProvesTheOptimaOfTheGeneralWay)
{
    Random random(1);
    int optimal = 0;
    for (int round = 0; round < ShareOf(6000); ++round)
    {
        const BoundedForm form = DrawForm(random);
        const CertifiedResult general = InGeneral(form);
        ASSERT_TRUE(general.record.proved);
        SolveControl control;
        CertifiedResult result;
        if (!SolveSmall(form, nullptr, control, result))
            continue;
        ++optimal;
        ASSERT_EQ(general.certificate.status, Status::Optimal) << round;
        ASSERT_EQ(result.certificate.objective, general.certificate.objective) << round;
        ASSERT_EQ(CheckCertificate(form, result.certificate), "") << round;
        // The numbers in doubles are those of the certificate, each the nearest.
        ASSERT_TRUE(result.record.proved);
        ASSERT_EQ(result.record.objectiveValue, ToDouble(result.certificate.objective));
        for (Index v = 0; v < form.Variables(); ++v)
        {
            Rational value;
            Rational reduced =
                form.IsLogical(v) ? result.certificate.dual.At(form.RowOf(v)) : form.ExactCost(v);
            if (!form.IsLogical(v))
            {
                value = result.certificate.primal.At(v);
                for (const auto [row, entry] : form.matrix.Column(v))
                    reduced -= result.certificate.dual.At(row) * form.ExactEntry(row, v, entry);
            }
            else
            {
                for (Index j = 0; j < form.columns; ++j)
                    for (const auto [row, entry] : form.matrix.Column(j))
                        if (row == form.RowOf(v))
                            value +=
                                result.certificate.primal.At(j) * form.ExactEntry(row, j, entry);
            }
            ASSERT_EQ(result.record.value[v], ToDouble(value));
            ASSERT_EQ(result.record.reduced[v], ToDouble(reduced));
        }
        // And the basis is that of the solution: from it nothing is left to do.
        SolveControl again;
        CertifiedResult from;
        ASSERT_TRUE(SolveSmall(form, &result.record.basis, again, from));
        ASSERT_EQ(from.record.basis, result.record.basis);
        ASSERT_EQ(from.certificate.objective, result.certificate.objective);
        ASSERT_EQ(again.Pivots(Stage::Double), 0u);
    }
    EXPECT_GT(optimal, ShareOf(6000) / 4);
}

/// The points between pivots are the bases', up to the one that is proved.
TEST(Dense, ShowsEachPointBeforeItsPivot)
{
    Random random(4);
    DenseForm dense;
    DenseSimplex simplex;
    int shown = 0;
    for (int round = 0; round < ShareOf(1000); ++round)
    {
        const BoundedForm form = DrawForm(random);
        if (FindCrossedBounds(form) != kNoIndex)
            continue;
        TakeForm(form, dense);
        SolveControl control;
        std::uint64_t calls = 0;
        const auto observe = [&](bool isFeasible)
        {
            ++calls;
            if (!isFeasible)
                return;
            ++shown;
            const std::vector<double> point = simplex.Point();
            for (Index i = 0; i < form.rows; ++i)
            {
                double activity = 0.0;
                for (const auto [column, entry] : form.matrix.Row(i))
                    activity += entry * point[column];
                const double room = 1e-6 * (1.0 + std::fabs(activity));
                ASSERT_GE(activity, form.rowLower[i] - room) << round;
                ASSERT_LE(activity, form.rowUpper[i] + room) << round;
            }
        };
        const DenseSimplex::End end = simplex.Run(dense, control, observe);
        ASSERT_EQ(calls, control.Pivots(Stage::Double)) << round;
        const CertifiedResult result = InGeneral(form);
        if (end != DenseSimplex::End::Optimal || result.certificate.status != Status::Optimal)
            continue;
        double objective = form.constant;
        const std::vector<double> point = simplex.Point();
        for (Index j = 0; j < form.columns; ++j)
            objective += form.cost[j] * point[j];
        ASSERT_NEAR(objective, ToDouble(result.certificate.objective),
                    1e-6 * (1.0 + std::fabs(objective)))
            << round;
    }
    EXPECT_GT(shown, ShareOf(1000));
}

/// From any start, one with dependent columns too, to the optimum of the form, and from the basis
/// of a neighbour in fewer pivots than from the slack basis.
TEST(Dense, GoesOnFromAStart)
{
    Random random(7);
    int optimal = 0;
    int alike = 0;
    std::uint64_t anew = 0;
    std::uint64_t onwards = 0;
    for (int round = 0; round < ShareOf(3000); ++round)
    {
        BoundedForm form = DrawForm(random);
        if (FindCrossedBounds(form) != kNoIndex)
            continue;
        SolveControl before;
        CertifiedResult neighbour;
        const bool hasNeighbour = SolveSmall(form, nullptr, before, neighbour);
        const Index changed =
            static_cast<Index>(random.Between(0, static_cast<int>(form.columns) - 1));
        form.cost[changed] += random.Between(-2, 2);
        const CertifiedResult expected = InGeneral(form);
        if (expected.certificate.status != Status::Optimal)
            continue;
        Basis drawn;
        for (Index v = 0; v < form.Variables(); ++v)
        {
            const auto status = static_cast<BasisStatus>(random.Between(0, 2));
            (form.IsLogical(v) ? drawn.rows : drawn.columns).push_back(status);
        }
        for (const Basis* start : {&drawn, hasNeighbour ? &neighbour.record.basis : nullptr})
        {
            SolveControl control;
            CertifiedResult result;
            if (!SolveSmall(form, start, control, result))
                continue;
            ++optimal;
            ASSERT_EQ(result.certificate.objective, expected.certificate.objective) << round;
            ASSERT_EQ(CheckCertificate(form, result.certificate), "") << round;
            SolveControl cold;
            CertifiedResult slack;
            if (start != &neighbour.record.basis || !SolveSmall(form, nullptr, cold, slack))
                continue;
            ++alike;
            anew += cold.Pivots(Stage::Double);
            onwards += control.Pivots(Stage::Double);
        }
    }
    EXPECT_GT(optimal, ShareOf(3000));
    EXPECT_GT(alike, ShareOf(3000) / 5);
    EXPECT_LT(2 * onwards, anew);
}

/// Infeasible by a point of the dual for the sum of violations.
TEST(Dense, ProvesThatThereIsNoPoint)
{
    Random random(2);
    DenseForm dense;
    DenseSimplex simplex;
    DenseProof proof;
    int ended = 0;
    int proved = 0;
    for (int round = 0; round < ShareOf(6000); ++round)
    {
        const BoundedForm form = DrawForm(random);
        if (FindCrossedBounds(form) != kNoIndex)
            continue;
        TakeForm(form, dense);
        SolveControl control;
        if (simplex.Run(dense, control) != DenseSimplex::End::Infeasible)
            continue;
        ++ended;
        if (!proof.ProveInfeasible(dense, simplex.Status(), simplex.Violations()))
            continue;
        ++proved;
        ASSERT_EQ(InGeneral(form).certificate.status, Status::Infeasible) << round;
    }
    EXPECT_GT(proved, ShareOf(6000) / 20);
    EXPECT_EQ(proved, ended);
}

TEST(Dense, ProvesThatThereIsNoEnd)
{
    Random random(3);
    DenseForm dense;
    DenseSimplex simplex;
    DenseProof proof;
    int ended = 0;
    int proved = 0;
    for (int round = 0; round < ShareOf(12000); ++round)
    {
        const BoundedForm form = DrawForm(random);
        if (FindCrossedBounds(form) != kNoIndex)
            continue;
        TakeForm(form, dense);
        SolveControl control;
        if (simplex.Run(dense, control) != DenseSimplex::End::Unbounded)
            continue;
        ++ended;
        if (!proof.ProveUnbounded(dense, simplex.Status(), simplex.Moving(), simplex.MovesUp()))
            continue;
        ++proved;
        ASSERT_EQ(InGeneral(form).certificate.status, Status::Unbounded) << round;
        ASSERT_FALSE(
            proof.ProveUnbounded(dense, simplex.Status(), simplex.Moving(), !simplex.MovesUp()));
    }
    EXPECT_GT(proved, ShareOf(12000) / 100);
    EXPECT_EQ(proved, ended);
}

/// Near a point that there is, and with numbers that weights have no room for.
TEST(Dense, DoesNotTakeRoundingForAContradiction)
{
    DenseForm dense;
    DenseSimplex simplex;
    DenseProof proof;
    const auto prove = [&](const BoundedForm& form)
    {
        TakeForm(form, dense);
        SolveControl control;
        EXPECT_EQ(simplex.Run(dense, control), DenseSimplex::End::Infeasible);
        return proof.ProveInfeasible(dense, simplex.Status(), simplex.Violations());
    };
    const Interval atLeastOne{1, kInf};
    EXPECT_TRUE(prove(MakeForm({0}, {{{-1}, atLeastOne}})));
    EXPECT_FALSE(prove(MakeForm({0}, {{{0x1p-60}, atLeastOne}}))) << "x = 2^60";
    EXPECT_FALSE(prove(MakeForm({0}, {{{-0x1p-100}, {0x1p30, kInf}}, {{-1}, atLeastOne}})))
        << "a number of 130 bits";
    EXPECT_FALSE(prove(MakeForm({0}, {{{-0x1p-126}, atLeastOne}, {{-1}, atLeastOne}})))
        << "a weight of 127 bits";
    EXPECT_FALSE(prove(MakeForm({0}, {{{-0x1p-124}, atLeastOne}, {{-1}, atLeastOne}})))
        << "a weight and numbers of 125 bits";
}

TEST(Dense, LeavesToOthersWhatItDoesNotKnow)
{
    const BoundedForm form = MakeForm({-1, -1}, {{{1, 2}, {-kInf, 4}}, {{3, 1}, {-kInf, 6}}});
    SolveControl control;
    CertifiedResult result;
    BoundedForm withExact = form;
    withExact.exact.Set({FormPlace::Of::Cost, 0}, Rational(-1, 3));
    EXPECT_FALSE(SolveSmall(withExact, nullptr, control, result));
    EXPECT_FALSE(SolveSmall(MakeForm({1}, {{{1}, {1, 0x1p200}}}), nullptr, control, result));
    EXPECT_FALSE(SolveSmall(MakeForm({-1}, {{{-1}, {-kInf, 1}}}), nullptr, control, result));
    EXPECT_FALSE(SolveSmall(MakeForm({1}, {{{1}, {-kInf, -1}}}), nullptr, control, result));
    std::vector<DenseRow> sparse(10, {std::vector<double>(10, 0.0), {-kInf, 1}});
    EXPECT_FALSE(
        SolveSmall(MakeForm(std::vector<double>(10, 0.0), sparse), nullptr, control, result));
    SolveLimits limits;
    limits.doublePivots = 1;
    SolveControl limited(limits);
    EXPECT_FALSE(SolveSmall(form, nullptr, limited, result));
    const Basis slacks = SlackBasis(form);
    SolveControl fromThere(limits);
    EXPECT_FALSE(SolveSmall(form, &slacks, fromThere, result)) << "not optimal there";
    EXPECT_TRUE(result.record.basis.columns.empty());
    limits.seconds = 0;
    SolveControl late(limits);
    EXPECT_FALSE(SolveSmall(form, nullptr, late, result));
    EXPECT_TRUE(SolveSmall(form, nullptr, control, result));
    EXPECT_EQ(ToString(result.certificate.objective), "-14/5");
    CertifiedResult none;
    EXPECT_FALSE(SolveSmall(form, &result.record.basis, late, none)) << "it needs no pivot";
}

/// Numbers that are short one by one and not in a proof.
TEST(Dense, LeavesToOthersWhatIsTooLong)
{
    SolveControl control;
    CertifiedResult result;
    for (const int exponent : {-115, -130})
    {
        const BoundedForm form =
            MakeForm({1, 1, 1}, {{{std::ldexp(1.0, exponent), 1, 1}, {1, kInf}}});
        EXPECT_FALSE(SolveSmall(form, nullptr, control, result)) << exponent;
        EXPECT_EQ(ToString(Certified(form).certificate.objective), "1");
    }
    EXPECT_FALSE(SolveSmall(MakeForm({1}, {{{1}, {1, kInf}}}, {{std::ldexp(1.0, -130), kInf}}),
                            nullptr, control, result));
}

TEST(Dense, TakesOfABasisThatIsNoneWhatIsIndependent)
{
    // Two columns that are the same.
    const BoundedForm twice = MakeForm({1, 1}, {{{1, 1}, {1, kInf}}, {{2, 2}, {2, kInf}}});
    Basis basis = SlackBasis(twice);
    basis.columns.assign(2, BasisStatus::Basic);
    basis.rows.assign(2, BasisStatus::AtLower);
    SolveControl control;
    CertifiedResult result;
    EXPECT_TRUE(SolveSmall(twice, &basis, control, result));
    EXPECT_EQ(ToString(result.certificate.objective), "1");
    EXPECT_EQ(control.Pivots(Stage::Double), 0u);
    DenseForm dense;
    TakeForm(twice, dense);
    DenseProof proof;
    EXPECT_FALSE(proof.ProveOptimal(dense, std::vector<BasisStatus>(4, BasisStatus::Basic)))
        << "more columns than rows";
}

/// Bases and violations as no simplex leaves them, and numbers that are too long one by one, as
/// weights, and in a ray.
TEST(DenseProof, RefusesWhatItCannotState)
{
    DenseForm dense;
    DenseProof proof;
    const std::vector<BasisStatus> allBasic(4, BasisStatus::Basic);
    const std::vector<signed char> violations(4, 1);
    TakeForm(MakeForm({0, 0}, {{{1, 1}, {1, kInf}}, {{2, 2}, {2, kInf}}}), dense);
    EXPECT_FALSE(proof.ProveInfeasible(dense, allBasic, violations)) << "more columns than rows";
    EXPECT_FALSE(proof.ProveUnbounded(dense, allBasic, 0, true));
    std::vector<BasisStatus> columns(4, BasisStatus::AtLower);
    columns[0] = columns[1] = BasisStatus::Basic;
    EXPECT_FALSE(proof.ProveInfeasible(dense, columns, violations)) << "singular";
    EXPECT_FALSE(proof.ProveUnbounded(dense, columns, 2, true));
    const std::vector<BasisStatus> slacks = {BasisStatus::AtLower, BasisStatus::Basic};
    TakeForm(MakeForm({-1}, {{{-0x1p-1000}, {-kInf, 0}}}), dense);
    EXPECT_FALSE(proof.ProveInfeasible(dense, slacks, {0, 1})) << "a weight of 1000 bits";
    EXPECT_FALSE(proof.ProveUnbounded(dense, {BasisStatus::Basic, BasisStatus::AtUpper}, 1, false));
    TakeForm(MakeForm({-1, 0}, {{{-0x1p-130, 1}, {-kInf, 0}}}), dense);
    const std::vector<BasisStatus> both = {BasisStatus::AtLower, BasisStatus::AtLower,
                                           BasisStatus::Basic};
    EXPECT_FALSE(proof.ProveInfeasible(dense, both, {0, 0, 1}));
    EXPECT_FALSE(proof.ProveUnbounded(dense, both, 0, true));
}

/// A basic column may be what is violated: x >= 5 where x is at most 1, and the other way round.
TEST(DenseProof, ProvesByAColumnThatIsBasic)
{
    DenseForm dense;
    DenseProof proof;
    for (const double sign : {1.0, -1.0})
    {
        const bool up = sign > 0.0;
        TakeForm(MakeForm({0}, {{{1}, up ? Interval{5, kInf} : Interval{-kInf, -5}}},
                          {up ? Interval{0, 1} : Interval{-1, 0}}),
                 dense);
        const std::vector<BasisStatus> basic = {BasisStatus::Basic,
                                                up ? BasisStatus::AtLower : BasisStatus::AtUpper};
        EXPECT_TRUE(proof.ProveInfeasible(dense, basic, {static_cast<signed char>(sign), 0}));
        EXPECT_FALSE(proof.ProveInfeasible(dense, basic, {static_cast<signed char>(-sign), 0}));
    }
}

/// The basis itself is short enough: 37 odd numbers of 103 bits, for the rows are multiplied by
/// 5^27 (1.34217728e-19 is 5^-27). Those of the moving column have 63 bits, or 110.
TEST(DenseProof, RefusesARayThatIsTooLong)
{
    constexpr Index kOrder = 37;
    for (const double rate : {1.0, 0x1p47})
    {
        std::vector<DenseRow> rows(kOrder, {std::vector<double>(kOrder + 2, 0.0), {-kInf, 1}});
        for (Index k = 0; k < kOrder; ++k)
        {
            rows[k].coefficients[k] = 0x1p40 + 1.0;
            rows[k].coefficients[kOrder] = 1.34217728e-19;
            rows[k].coefficients[kOrder + 1] = -rate;
        }
        std::vector<double> cost(kOrder + 2, 0.0);
        cost.back() = -1.0;
        BoundedForm form = MakeForm(cost, rows);
        form.numbers = CoefficientMeaning::ShortestDecimal;
        DenseForm dense;
        TakeForm(form, dense);
        std::vector<BasisStatus> status(dense.Variables(), BasisStatus::AtUpper);
        std::fill_n(status.begin(), kOrder, BasisStatus::Basic);
        status[kOrder] = status[kOrder + 1] = BasisStatus::AtLower;
        DenseProof proof;
        EXPECT_EQ(proof.ProveUnbounded(dense, status, kOrder + 1, true), rate == 1.0);
    }
}

/// The short way is for forms of at most 2500 entries, of which a fourth at least is there.
TEST(Dense, IsForFormsThatAreSmallAndDense)
{
    const auto isShort = [](Index rows, Index columns, Index present)
    {
        std::vector<DenseRow> dense(rows, {std::vector<double>(columns, 0.0), {-kInf, 1}});
        for (Index at = 0; at < present; ++at)
            dense[at % rows].coefficients[at / rows] = 1.0;
        std::vector<double> cost(columns, 0.0);
        cost[0] = -1.0;
        SolveControl control;
        CertifiedResult result;
        return SolveSmall(MakeForm(cost, dense), nullptr, control, result);
    };
    EXPECT_TRUE(isShort(50, 50, 2500));
    EXPECT_TRUE(isShort(50, 50, 625));
    EXPECT_FALSE(isShort(50, 50, 624));
    EXPECT_FALSE(isShort(41, 61, 2501));
}

/// A point that is feasible within the tolerance of doubles and not exactly.
TEST(Dense, ClaimsNothingThatTheCheckRefuses)
{
    const BoundedForm form = MakeForm(
        {-1, 0}, {{{1, 0}, {-kInf, 1}}, {{1, 1e-10}, {1.00000000005, kInf}}}, {{0, kInf}, {0, 0}});
    SolveControl control;
    CertifiedResult result;
    EXPECT_FALSE(SolveSmall(form, nullptr, control, result));
    EXPECT_EQ(Certified(form).certificate.status, Status::Infeasible);
}

/// Here the rule of the largest coefficient goes round in a circle (Marshall and Suurballe).
TEST(Dense, GivesUpWhatDoesNotEnd)
{
    const Interval atMostZero{-kInf, 0.0};
    const BoundedForm form = MakeForm({-10, 57, 9, 24}, {{{0.5, -5.5, -2.5, 9}, atMostZero},
                                                         {{0.5, -1.5, -0.5, 1}, atMostZero},
                                                         {{1, 0, 0, 0}, {-kInf, 1.0}}});
    DenseForm dense;
    TakeForm(form, dense);
    SolveControl control;
    DenseSimplex simplex;
    EXPECT_EQ(simplex.Run(dense, control), DenseSimplex::End::GaveUp);
    const CertifiedResult result = Certified(form);
    EXPECT_EQ(result.certificate.status, Status::Optimal);
    EXPECT_EQ(ToString(result.certificate.objective), "-1");
}

}  // namespace
}  // namespace nuv::test
