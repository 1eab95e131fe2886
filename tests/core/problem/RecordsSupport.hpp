// What the tests of the two records share: records that a test holds, and what a constraint holds.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/Names.hpp"
#include "tests/support/RefusedAllocations.hpp"
#include "tests/support/TestAllocator.hpp"

using Variable = NuvLinearProgrammingVariable;
using Constraint = NuvLinearProgrammingConstraint;
using IndexedTerms = IndexedCoefficients::Terms;
using NamedTerms = NamedCoefficients::Terms;

/// A variable, and a constraint of either kind, for the length of a scope.
struct HeldVariable
{
    HeldVariable(NuvAllocator* allocator, NuvLinearProgrammingVariableType type, NuvUint index,
                 const char* name)
    {
        EXPECT_EQ(
            NuvLinearProgrammingVariableConstruct(&record, type, index, Name(name), allocator),
            &record);
    }

    ~HeldVariable()
    {
        NuvLinearProgrammingVariableDestruct(&record);
    }

    HeldVariable(const HeldVariable&) = delete;
    HeldVariable& operator=(const HeldVariable&) = delete;

    Variable record;
};

struct HeldConstraint
{
    HeldConstraint(NuvAllocator* allocator, const IndexedTerms& terms, NuvFloat32 rhs)
    {
        EXPECT_EQ(NuvLinearProgrammingConstraintConstructIndex(&record, IndexedCoefficients(terms),
                                                               rhs, allocator),
                  &record);
    }

    HeldConstraint(NuvAllocator* allocator, const NamedTerms& terms, NuvFloat32 rhs)
    {
        EXPECT_EQ(NuvLinearProgrammingConstraintConstruct(&record, NamedCoefficients(terms), rhs,
                                                          allocator),
                  &record);
    }

    ~HeldConstraint()
    {
        NuvLinearProgrammingConstraintDestruct(&record);
    }

    HeldConstraint(const HeldConstraint&) = delete;
    HeldConstraint& operator=(const HeldConstraint&) = delete;

    Constraint record;
};

inline constexpr auto kContinuous = NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32;
inline constexpr auto kInteger = NUV_LINEARPROGRAMMINGVARIABLETYPE_INTEGER;
inline constexpr auto kBoolean = NUV_LINEARPROGRAMMINGVARIABLETYPE_BOOLEAN;

inline const IndexedTerms kIndexed = {{1, 2.0F}, {3, -0.5F}};
inline const NamedTerms kNamed = {{"X1", 2.0F}, {"a name", -0.5F}, {"", 3.0F}};

inline void ExpectHolds(const Constraint& x, const IndexedTerms& terms, NuvFloat32 rhs)
{
    const auto* const array = NuvLinearProgrammingConstraintGetVariablesCoefficientsByIndex(&x);
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(TermsOf(*array), terms);
    EXPECT_EQ(NuvLinearProgrammingConstraintGetVariablesCoefficientsByName(&x), nullptr);
    EXPECT_EQ(NuvLinearProgrammingConstraintGetVariableAccessType(&x),
              NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX);
    EXPECT_EQ(NuvLinearProgrammingConstraintGetRhs(&x), rhs);
}

inline void ExpectHolds(const Constraint& x, const NamedTerms& terms, NuvFloat32 rhs)
{
    const auto* const array = NuvLinearProgrammingConstraintGetVariablesCoefficientsByName(&x);
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(TermsOf(*array), terms);
    EXPECT_EQ(NuvLinearProgrammingConstraintGetVariablesCoefficientsByIndex(&x), nullptr);
    EXPECT_EQ(NuvLinearProgrammingConstraintGetVariableAccessType(&x),
              NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME);
    EXPECT_EQ(NuvLinearProgrammingConstraintGetRhs(&x), rhs);
}
