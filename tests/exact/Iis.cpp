/// Irreducible infeasible subsystems mean what they say: checked by enumeration of what is left
/// when a member goes.
#include "tests/exact/Certified.hpp"
#include "tests/support/BruteForce.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include "Nuv/Exact/Iis.hpp"

#include <gtest/gtest.h>

namespace nuv::test
{
namespace
{

TEST(Iis, BoundsThatCrossAreAnIisOfTwo)
{
    const BoundedForm form = MakeForm({0, 0}, {{{1, 1}, {0, 1}}}, {{0, 1}, {3, 2}});
    const InfeasibleBounds iis = IisOf(form, Certified(form));
    EXPECT_TRUE(iis.minimal);
    EXPECT_EQ(iis.members, (std::vector<BoundOfVariable>{{1, false}, {1, true}}));
}

TEST(Iis, NamesTheRowsAndBoundsThatMatter)
{
    // x + y <= 3 against x >= 2 and y >= 2; the other row has nothing to do with it.
    const BoundedForm form = MakeForm({1, 1, 1}, {{{0, 0, 1}, {1, 5}}, {{1, 1, 0}, {-kInf, 3}}},
                                      {{2, 9}, {2, kInf}, {0, kInf}});
    const InfeasibleBounds iis = IisOf(form, Certified(form));
    EXPECT_TRUE(iis.minimal);
    EXPECT_EQ(iis.members, (std::vector<BoundOfVariable>{{0, false}, {1, false}, {4, true}}));
}

TEST(Iis, IsInfeasibleAndLosesThatWithAnyMember)
{
    int infeasible = 0;
    for (std::uint64_t seed = 1; seed <= ShareOf(3000U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form =
            RandomSmallForm(random, 3, static_cast<Index>(random.Between(1, 4)));
        const CertifiedResult proof = Certified(form);
        if (proof.certificate.status != Status::Infeasible)
            continue;
        ++infeasible;
        const InfeasibleBounds iis = IisOf(form, proof);
        ASSERT_TRUE(iis.minimal);
        ASSERT_EQ(SolveByEnumeration(RestrictedTo(form, iis.members)).verdict, Verdict::Infeasible);
        for (std::size_t left = 0; left < iis.members.size(); ++left)
        {
            std::vector<BoundOfVariable> others = iis.members;
            others.erase(others.begin() + static_cast<std::ptrdiff_t>(left));
            ASSERT_NE(SolveByEnumeration(RestrictedTo(form, others)).verdict, Verdict::Infeasible);
        }
    }
    EXPECT_GT(infeasible, ShareOf(500));
}

/// Twenty sources and thirty sinks, of which one wants more than all sources have. All rows
/// together contradict each other even without x >= 0; with it, the sources and that one sink do.
TEST(Iis, LeavesDefaultBoundsInForceAndNamesNone)
{
    constexpr Index kSources = 20;
    constexpr Index kSinks = 30;
    std::vector<DenseRow> rows;
    for (Index i = 0; i < kSources + kSinks; ++i)
    {
        const bool isSource = i < kSources;
        DenseRow row{std::vector<double>(kSources * kSinks, 0.0), {-kInf, 10.0}};
        if (!isSource)
            row.bounds = {i == kSources + 7 ? 201.0 : 1.0, kInf};
        for (Index k = 0; k < (isSource ? kSinks : kSources); ++k)
            row.coefficients[isSource ? i * kSinks + k : k * kSinks + i - kSources] = 1.0;
        rows.push_back(row);
    }
    const BoundedForm form = MakeForm(std::vector<double>(kSources * kSinks, 1.0), rows);
    const InfeasibleBounds iis = IisOf(form, Certified(form));
    EXPECT_TRUE(iis.minimal);
    std::vector<BoundOfVariable> expected;
    for (Index i = 0; i < kSources; ++i)
        expected.push_back({form.columns + i, true});
    expected.push_back({form.columns + kSources + 7, false});
    EXPECT_EQ(iis.members, expected);
}

TEST(Iis, OfABoundAgainstTheDefaultOneIsThatBound)
{
    const BoundedForm form = MakeForm({0}, {{{1}, {-kInf, 4}}}, {{0, -1}});
    const InfeasibleBounds iis = IisOf(form, Certified(form));
    EXPECT_TRUE(iis.minimal);
    EXPECT_EQ(iis.members, (std::vector<BoundOfVariable>{{0, true}}));
}

/// Three disjoint contradictions, and a certificate that adds them up: the filter has to part them.
TEST(Iis, PartsACertificateThatMixesContradictions)
{
    const BoundedForm form = MakeForm(
        {0, 0, 0}, {{{1, 0, 0}, {2, kInf}}, {{0, 1, 0}, {3, kInf}}, {{0, 0, 1}, {4, kInf}}},
        {{0, 1}, {0, 1}, {0, 1}});
    CertifiedResult proof = Certified(form);
    proof.certificate.dual.denominator = 1;
    proof.certificate.dual.numerator = {1, 2, 3};
    ASSERT_EQ(CheckCertificate(form, proof.certificate), "");
    const InfeasibleBounds iis = IisOf(form, proof);
    EXPECT_TRUE(iis.minimal);
    EXPECT_EQ(iis.members.size(), 2u);
    SolveLimits none;
    none.seconds = 0.0;
    const InfeasibleBounds unfinished = IisOf(form, proof, none);
    EXPECT_FALSE(unfinished.minimal);
    EXPECT_EQ(unfinished.members.size(), 6u);
    EXPECT_GT(iis.work, 0u);
    SolveControl control;
    const InfeasibleBounds unbegun = FindIis(form, proof.certificate, control, 0);
    EXPECT_FALSE(unbegun.minimal);
    EXPECT_EQ(unbegun.members.size(), 6u);
    EXPECT_EQ(unbegun.work, 0u);
    EXPECT_EQ(control.Reason(), StopReason::None) << "it is the budget that ended it";
    const InfeasibleBounds begun = FindIis(form, proof.certificate, control, 1);
    EXPECT_LT(begun.members.size(), 6u) << "one solve, which parts a contradiction";
    EXPECT_EQ(FindIis(form, proof.certificate, control, iis.work).work, iis.work);
}

}  // namespace
}  // namespace nuv::test
