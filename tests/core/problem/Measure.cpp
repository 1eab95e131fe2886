// How good the values of a model are, in double precision.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "Nuv/Utils/NuvLinearProgramming.hpp"
#include "Nuv/Utils/NuvLinearProgrammingMeasure.h"

namespace
{
/// x + 2y ≤ 6 and −x ≤ −1, worth 3x + y, at a point of the test's own.
nuv::LinearProgram At(float x, float y)
{
    nuv::LinearProgram program(2);
    program.SetConstraint(1, {{1, 1.0F}, {2, 2.0F}}, 6.0F);
    program.SetConstraint(2, {{1, -1.0F}}, -1.0F);
    program.SetObjective({{1, 3.0F}, {2, 1.0F}});
    program.Record()->variableValues.begin[0].second = x;
    program.Record()->variableValues.begin[1].second = y;
    return program;
}

TEST(Measure, PointThatKeepsAllRowsViolatesNothing)
{
    nuv::LinearProgram program = At(2.0F, 2.0F);
    NuvLinearProgrammingMeasurement found = {1, 1, 1};
    ASSERT_TRUE(NuvLinearProgrammingMeasure(program.Record(), &found));
    EXPECT_EQ(found.rowViolation, 0.0);
    EXPECT_EQ(found.signViolation, 0.0);
    EXPECT_EQ(found.objective, 8.0);
}

TEST(Measure, LargestViolationOfARowAndOfASignAreTold)
{
    nuv::LinearProgram program = At(-0.5F, 5.0F);
    NuvLinearProgrammingMeasurement found;
    ASSERT_TRUE(NuvLinearProgrammingMeasure(program.Record(), &found));
    EXPECT_EQ(found.rowViolation, 3.5);
    EXPECT_EQ(found.signViolation, 0.5);
    EXPECT_EQ(found.objective, 3.5);
}

TEST(Measure, IsInDoublePrecision)
{
    nuv::LinearProgram program = At(0x1.000002p0F, 0x1.000002p-30F);
    NuvLinearProgrammingMeasurement found;
    ASSERT_TRUE(NuvLinearProgrammingMeasure(program.Record(), &found));
    EXPECT_EQ(found.objective, 3.0 * 0x1.000002p0 + 0x1.000002p-30);
}

TEST(Measure, LaterTermOfAVariableReplacesTheEarlierOne)
{
    nuv::LinearProgram program = At(2.0F, 2.0F);
    program.SetConstraint(1, {{1, 100.0F}, {2, 2.0F}, {1, 1.0F}}, 6.0F);
    const std::vector<nuv::NamedTerm> named = {{"X2", 9.0F}, {"X2", -1.0F}};
    program.SetConstraint(2, named, -3.0F);
    NuvLinearProgrammingMeasurement found;
    ASSERT_TRUE(NuvLinearProgrammingMeasure(program.Record(), &found));
    EXPECT_EQ(found.rowViolation, 1.0);
}

TEST(Measure, WhatIsNoNumberStaysSeen)
{
    nuv::LinearProgram program = At(NAN, 2.0F);
    NuvLinearProgrammingMeasurement found;
    ASSERT_TRUE(NuvLinearProgrammingMeasure(program.Record(), &found));
    EXPECT_TRUE(std::isnan(found.rowViolation));
    EXPECT_TRUE(std::isnan(found.signViolation));
    EXPECT_TRUE(std::isnan(found.objective));
}

TEST(Measure, UnknownVariableIsRefused)
{
    nuv::LinearProgram program = At(2.0F, 2.0F);
    program.SetConstraint(3, {{3, 1.0F}}, 6.0F);
    NuvLinearProgrammingMeasurement found;
    EXPECT_FALSE(NuvLinearProgrammingMeasure(program.Record(), &found));
    program.RemoveConstraint(3);
    program.SetObjective({{0, 1.0F}});
    EXPECT_FALSE(NuvLinearProgrammingMeasure(program.Record(), &found));
}
}  // namespace
