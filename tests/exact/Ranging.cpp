/// Ranges mean what they say: checked by moving the data and solving again.
#include "tests/exact/Certified.hpp"
#include "tests/support/Forms.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Exact/Ranging.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace nuv::test::ranging
{
namespace
{

CertifiedResult Solve(const BoundedForm& form)
{
    return Certified(form);
}

/// Whether the basis is optimal for the form as it is, without a pivot.
bool StaysOptimal(const BoundedForm& form, const Basis& basis)
{
    SolveControl control;
    const CertifiedResult proof = CertifyBasis(form, basis, control);
    return proof.record.proved && proof.certificate.status == Status::Optimal;
}

constexpr double kStep = 0x1p-20;

/// Within the range the basis stays optimal, a step beyond an end it does not.
template <class Move>
void CheckRange(const BoundedForm& form, const Basis& basis, AllowedRange range, Move move)
{
    for (const bool up : {false, true})
    {
        const double end = up ? range.upper : range.lower;
        const double outwards = up ? kStep : -kStep;
        BoundedForm moved = form;
        if (std::isinf(end))
        {
            move(moved, up ? 1e6 : -1e6);
            EXPECT_TRUE(StaysOptimal(moved, basis));
            continue;
        }
        if (range.lower + 2.0 * kStep < range.upper)
        {
            move(moved, end - outwards);
            EXPECT_TRUE(StaysOptimal(moved, basis)) << "inside " << end;
        }
        move(moved, end + outwards);
        EXPECT_FALSE(StaysOptimal(moved, basis)) << "outside " << end;
    }
}

TEST(Sensitivity, WyndorGlassAsInTheTextbook)
{
    const BoundedForm form =
        MakeForm({-3, -5}, {{{1, 0}, {-kInf, 4}}, {{0, 2}, {-kInf, 12}}, {{3, 2}, {-kInf, 18}}});
    const Sensitivity ranges = RangesOf(form, Solve(form));
    EXPECT_EQ(ranges.cost[0], (AllowedRange{-7.5, 0.0}));
    EXPECT_EQ(ranges.cost[1], (AllowedRange{-kInf, -2.0}));
    EXPECT_EQ(ranges.rowUpper[0], (AllowedRange{2.0, kInf}));
    EXPECT_EQ(ranges.rowUpper[1], (AllowedRange{6.0, 18.0}));
    EXPECT_EQ(ranges.rowUpper[2], (AllowedRange{12.0, 24.0}));
    EXPECT_EQ(ranges.rowLower[0], (AllowedRange{-kInf, 2.0}));
}

TEST(Sensitivity, CostRangesEndWhereTheBasisStopsBeingOptimal)
{
    int optimal = 0;
    for (std::uint64_t seed = 1; seed <= ShareOf(1200U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSmallForm(random, 3, 4);
        const CertifiedResult proof = Solve(form);
        if (proof.certificate.status != Status::Optimal)
            continue;
        ++optimal;
        const Sensitivity ranges = RangesOf(form, proof);
        for (Index j = 0; j < form.columns; ++j)
        {
            CheckRange(form, proof.record.basis, ranges.cost[j],
                       [j](BoundedForm& moved, double to) { moved.cost[j] = to; });
        }
        if (HasFailure())
            return;
    }
    EXPECT_GT(optimal, ShareOf(200));
}

TEST(Sensitivity, SideRangesEndWhereTheBasisStopsBeingFeasible)
{
    for (std::uint64_t seed = 1; seed <= ShareOf(1200U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSmallForm(random, 3, 4);
        const CertifiedResult proof = Solve(form);
        if (proof.certificate.status != Status::Optimal)
            continue;
        const Sensitivity ranges = RangesOf(form, proof);
        for (Index i = 0; i < form.rows; ++i)
        {
            const bool equation = form.rowLower[i] == form.rowUpper[i];
            if (std::isfinite(form.rowUpper[i]))
            {
                CheckRange(form, proof.record.basis, ranges.rowUpper[i],
                           [i, equation](BoundedForm& moved, double to)
                           {
                               moved.rowUpper[i] = to;
                               if (equation)
                                   moved.rowLower[i] = to;
                           });
            }
            if (std::isfinite(form.rowLower[i]) && !equation)
            {
                CheckRange(form, proof.record.basis, ranges.rowLower[i],
                           [i](BoundedForm& moved, double to) { moved.rowLower[i] = to; });
            }
        }
        if (HasFailure())
            return;
    }
}

TEST(Sensitivity, SaysWhetherItIsExact)
{
    for (const Index rows : {40U, 41U})
    {
        const std::vector<DenseRow> same(rows, DenseRow{{1, 1}, {-kInf, 1}});
        const BoundedForm form = MakeForm({-1, -2}, same);
        EXPECT_EQ(RangesOf(form, Solve(form)).exact, rows == 40U);
    }
}

/// More rows than are done in rationals: the same form, padded with rows that never matter.
TEST(Sensitivity, DoublesAgreeWithRationals)
{
    for (std::uint64_t seed = 1; seed <= ShareOf(200U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSmallForm(random, 3, 4);
        const CertifiedResult proof = Solve(form);
        if (proof.certificate.status != Status::Optimal)
            continue;
        BoundedForm padded = form;
        SparseVectors<double> rows = form.matrix.Rows();
        for (int extra = 0; extra < 60; ++extra)
        {
            padded.rowLower.push_back(-kInf);
            padded.rowUpper.push_back(kInf);
            rows.Append(0, 1.0);
            rows.Close();
            ++padded.rows;
        }
        padded.matrix = SparseMatrix<double>::FromRows(rows, padded.columns);
        Basis basis = proof.record.basis;
        basis.rows.resize(padded.rows, BasisStatus::Basic);
        const CertifiedResult same = CertifiedFrom(padded, basis);
        ASSERT_EQ(same.record.stages[Stage::Exact].pivots, 0u);
        const Sensitivity exact = RangesOf(form, proof);
        const Sensitivity doubles = RangesOf(padded, same);
        const auto near = [](double x, double y)
        { return x == y || std::fabs(x - y) < 1e-12 * (1.0 + std::fabs(x)); };
        for (Index j = 0; j < form.columns; ++j)
        {
            EXPECT_TRUE(near(exact.cost[j].lower, doubles.cost[j].lower));
            EXPECT_TRUE(near(exact.cost[j].upper, doubles.cost[j].upper));
        }
        for (Index i = 0; i < form.rows; ++i)
        {
            EXPECT_TRUE(near(exact.rowUpper[i].lower, doubles.rowUpper[i].lower));
            EXPECT_TRUE(near(exact.rowUpper[i].upper, doubles.rowUpper[i].upper));
            EXPECT_TRUE(near(exact.rowLower[i].upper, doubles.rowLower[i].upper));
        }
    }
}

/// Of two equal equations one holds the basis, and may not move without the other; a row without
/// sides has none to move, whether it is in the basis or not.
TEST(Sensitivity, KnowsRowsThatCannotMove)
{
    const BoundedForm twice =
        MakeForm({1, 2}, {{{1, 1}, {4, 4}}, {{1, 1}, {4, 4}}, {{1, -1}, {-kInf, kInf}}});
    const CertifiedResult proof = Solve(twice);
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    const Sensitivity ranges = RangesOf(twice, proof);
    const Index idle = proof.record.basis.rows[0] == BasisStatus::Basic ? 0 : 1;
    EXPECT_EQ(ranges.rowUpper[idle], (AllowedRange{4.0, 4.0}));
    EXPECT_EQ(ranges.rowLower[idle], (AllowedRange{4.0, 4.0}));
    EXPECT_EQ(ranges.rowUpper[2], (AllowedRange{4.0, kInf}));
    EXPECT_EQ(ranges.rowLower[2], (AllowedRange{-kInf, 4.0}));

    const BoundedForm open = MakeForm({1, 0}, {{{1, -1}, {-kInf, kInf}}}, {{0, 5}, {0, 5}});
    Basis basis = SlackBasis(open);
    basis.columns[1] = BasisStatus::Basic;
    basis.rows[0] = BasisStatus::Free;
    const CertifiedResult kept = CertifiedFrom(open, basis);
    ASSERT_EQ(kept.record.basis.rows[0], BasisStatus::Free);
    ASSERT_EQ(kept.certificate.status, Status::Optimal);
    EXPECT_EQ(RangesOf(open, kept).rowUpper[0], (AllowedRange{0.0, kInf}));
    EXPECT_EQ(RangesOf(open, kept).rowLower[0], (AllowedRange{-kInf, 0.0}));
}

}  // namespace
}  // namespace nuv::test::ranging
