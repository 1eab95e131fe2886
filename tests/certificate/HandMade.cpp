/// Certificates made by hand, each wrong in one place that nothing else makes up for.
#include "Nuv/Certificate/Certificate.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

namespace nuv::test
{
namespace
{

ExactVector Vector(const std::vector<int>& numerators, int denominator = 1)
{
    ExactVector vector;
    for (const int numerator : numerators)
        vector.numerator.emplace_back(numerator);
    vector.denominator = denominator;
    return vector;
}

Certificate Optimum(const ExactVector& point, const ExactVector& duals, const Rational& objective)
{
    Certificate certificate;
    certificate.status = Status::Optimal;
    certificate.primal = point;
    certificate.dual = duals;
    certificate.objective = objective;
    return certificate;
}

/// x in [0, 3], y in [1, 4], x + y in [2, 6].
BoundedForm Box(const std::vector<double>& cost)
{
    return MakeForm(cost, {{{1, 1}, {2, 6}}}, {{0, 3}, {1, 4}});
}

TEST(HandMade, EveryVariableOfThePointIsHeldToBothItsBounds)
{
    struct Case
    {
        std::vector<int> point;
        std::string message;
    };
    const std::string outside = "the point violates a bound of variable ";
    // Without costs and duals nothing but the point is looked at.
    for (const auto& [point, message] :
         {Case{{1, 1}, ""}, Case{{3, 3}, ""}, Case{{0, 4}, ""}, Case{{4, 1}, outside + "0"},
          Case{{-1, 4}, outside + "0"}, Case{{2, 0}, outside + "1"}, Case{{1, 5}, outside + "1"},
          Case{{0, 1}, outside + "2"}, Case{{3, 4}, outside + "2"}})
        EXPECT_EQ(CheckCertificate(Box({0, 0}), Optimum(Vector(point), Vector({0}), 0)), message)
            << point[0] << ' ' << point[1];
    // By less than any double tells.
    EXPECT_EQ(CheckCertificate(Box({0, 0}), Optimum(Vector({999999999, 1000000000}, 1000000000),
                                                    Vector({0}), 0)),
              outside + "2");
}

TEST(HandMade, EveryReducedCostBelongsToTheBoundThatItsSignNames)
{
    const std::string wrong = "the reduced cost of variable ";
    const std::string sign = " has the wrong sign";
    // Inside all bounds no reduced cost may differ from 0. For the row's, the columns' are priced
    // out by a cost of the same size.
    for (const int side : {-1, 1})
    {
        const ExactVector inside = Vector({1, 2});
        EXPECT_EQ(CheckCertificate(Box({1.0 * side, 0}), Optimum(inside, Vector({0}), side)),
                  wrong + "0" + sign);
        EXPECT_EQ(CheckCertificate(Box({0, 1.0 * side}), Optimum(inside, Vector({0}), 2 * side)),
                  wrong + "1" + sign);
        EXPECT_EQ(CheckCertificate(Box({1.0 * side, 1.0 * side}),
                                   Optimum(inside, Vector({side}), 3 * side)),
                  wrong + "2" + sign);
    }
    // At the lower bounds of x and y, and at the upper bound of y.
    const ExactVector low = Vector({2, 1});
    EXPECT_EQ(CheckCertificate(Box({0, 1}), Optimum(low, Vector({0}), 1)), "");
    EXPECT_EQ(CheckCertificate(Box({0, -1}), Optimum(low, Vector({0}), -1)), wrong + "1" + sign);
    const ExactVector high = Vector({1, 4});
    EXPECT_EQ(CheckCertificate(Box({0, -1}), Optimum(high, Vector({0}), -4)), "");
    EXPECT_EQ(CheckCertificate(Box({0, 1}), Optimum(high, Vector({0}), 4)), wrong + "1" + sign);
    // At the row's own bounds.
    EXPECT_EQ(CheckCertificate(Box({1, 1}), Optimum(Vector({1, 1}), Vector({1}), 2)), "");
    EXPECT_EQ(CheckCertificate(Box({-1, -1}), Optimum(Vector({1, 1}), Vector({-1}), -2)),
              wrong + "2" + sign);
    EXPECT_EQ(CheckCertificate(Box({-1, -1}), Optimum(Vector({3, 3}), Vector({-1}), -6)), "");
    EXPECT_EQ(CheckCertificate(Box({1, 1}), Optimum(Vector({3, 3}), Vector({1}), 6)),
              wrong + "2" + sign);
}

TEST(HandMade, WhatHasNoBoundHasNoReducedCost)
{
    for (const double cost : {-1.0, 1.0})
        for (const Interval& bounds :
             {Interval{-kInf, kInf}, Interval{-kInf, 1}, Interval{-1, kInf}})
            EXPECT_EQ(CheckCertificate(MakeForm({cost}, {}, {bounds}),
                                       Optimum(Vector({0}), Vector({}), 0)),
                      "the reduced cost of variable 0 has the wrong sign");
    EXPECT_EQ(
        CheckCertificate(MakeForm({0}, {}, {{-kInf, kInf}}), Optimum(Vector({0}), Vector({}), 0)),
        "");
}

TEST(HandMade, TheObjectiveIsThatOfThePointWithTheConstant)
{
    BoundedForm form = Box({2, 3});
    form.constant = 0.5;
    const ExactVector point = Vector({1, 1});
    EXPECT_EQ(CheckCertificate(form, Optimum(point, Vector({2}), Rational(11, 2))), "");
    EXPECT_EQ(CheckCertificate(form, Optimum(point, Vector({2}), 5)),
              "the objective is not that of the point");
    // The same as halves.
    EXPECT_EQ(CheckCertificate(form, Optimum(Vector({2, 2}, 2), Vector({6}, 3), Rational(11, 2))),
              "");
}

TEST(HandMade, MultipliersNeedTheBoundsThatTheirSignsName)
{
    Certificate certificate;
    certificate.status = Status::Infeasible;
    certificate.dual = Vector({1});
    // x + y >= 7 with x and y at most 3.
    const auto check = [&certificate](const Interval& row, const Interval& x, const Interval& y) {
        return CheckCertificate(MakeForm({0, 0}, {{{1, 1}, row}}, {x, y}), certificate);
    };
    const std::string lacking = "the multipliers need a bound that variable ";
    EXPECT_EQ(check({7, kInf}, {0, 3}, {0, 3}), "");
    EXPECT_EQ(check({6, kInf}, {0, 3}, {0, 3}), "the multipliers contradict nothing");
    EXPECT_EQ(check({7, kInf}, {0, kInf}, {0, 3}), lacking + "0 lacks");
    EXPECT_EQ(check({7, kInf}, {0, 3}, {0, kInf}), lacking + "1 lacks");
    EXPECT_EQ(check({-kInf, 7}, {0, 3}, {0, 3}), lacking + "2 lacks");
    // x + y <= 1 with x and y at least 1.
    certificate.dual = Vector({-1});
    EXPECT_EQ(check({0, 1}, {1, kInf}, {1, kInf}), "");
    EXPECT_EQ(check({0, 2}, {1, kInf}, {1, kInf}), "the multipliers contradict nothing");
    EXPECT_EQ(check({0, 1}, {-kInf, 3}, {1, kInf}), lacking + "0 lacks");
    EXPECT_EQ(check({0, 1}, {1, kInf}, {-kInf, 3}), lacking + "1 lacks");
    EXPECT_EQ(check({0, kInf}, {1, kInf}, {1, kInf}), lacking + "2 lacks");
    certificate.dual = Vector({1, 1});
    EXPECT_EQ(check({7, kInf}, {0, 3}, {0, 3}), "the multipliers have the wrong length");
}

TEST(HandMade, ARayKeepsToEveryBoundForEver)
{
    // x >= 0, y in [0, 1], x - y <= 5 or free: x may grow while y stands still.
    const auto check = [](const std::vector<int>& ray, double rowUpper)
    {
        Certificate certificate;
        certificate.status = Status::Unbounded;
        certificate.primal = Vector({0, 0});
        certificate.ray = Vector(ray);
        return CheckCertificate(
            MakeForm({-1, 1}, {{{1, -1}, {-kInf, rowUpper}}}, {{0, kInf}, {0, 1}}), certificate);
    };
    const std::string runs = "the ray runs into a bound of variable ";
    EXPECT_EQ(check({1, 0}, kInf), "");
    EXPECT_EQ(check({-1, 0}, kInf), runs + "0");
    EXPECT_EQ(check({2, 1}, kInf), runs + "1");
    EXPECT_EQ(check({2, -1}, kInf), runs + "1");
    EXPECT_EQ(check({1, 0}, 5), runs + "2");
    EXPECT_EQ(check({0, 0}, kInf), "the ray does not improve");
    EXPECT_EQ(check({1}, kInf), "the ray has the wrong length");
}

TEST(Status, HasAWordAndNoneForWhatIsNoStatus)
{
    EXPECT_EQ(WordOf(Status::Optimal), "optimal");
    EXPECT_EQ(WordOf(Status::Infeasible), "infeasible");
    EXPECT_EQ(WordOf(Status::Unbounded), "unbounded");
    EXPECT_EQ(WordOf(Status::Stopped), "stopped");
    EXPECT_EQ(WordOf(Status::Invalid), "invalid");
    EXPECT_EQ(WordOf(static_cast<Status>(7)), "");
}

}  // namespace
}  // namespace nuv::test
