// Every instantiation of the containers, each as a type that binds the operations' common names to
// its own, so that a typed test is written once and runs for all.
#pragma once

#include <gtest/gtest.h>

#include "Nuv/Utils/NuvLinearProgramming.h"

// Pairs -----------------------------------------------------------------------------------------

#define NUV_TEST_NAME IndexAndFloatPair
#define NUV_SELF NuvPair_NuvUint__NuvFloat32
#define NUV_FIRST NuvUint
#define NUV_SECOND NuvFloat32
#include "tests/support/PairOperations.inl"

#define NUV_TEST_NAME NameAndFloatPair
#define NUV_SELF NuvPair_NuvString__NuvFloat32
#define NUV_FIRST NuvString
#define NUV_SECOND NuvFloat32
#include "tests/support/PairOperations.inl"

#define NUV_TEST_NAME NameAndVariablePair
#define NUV_SELF NuvPair_NuvString__NuvLinearProgrammingVariable
#define NUV_FIRST NuvString
#define NUV_SECOND NuvLinearProgrammingVariable
#include "tests/support/PairOperations.inl"

#define NUV_TEST_NAME NumberAndConstraintPair
#define NUV_SELF NuvPair_NuvUint__NuvLinearProgrammingConstraint
#define NUV_FIRST NuvUint
#define NUV_SECOND NuvLinearProgrammingConstraint
#include "tests/support/PairOperations.inl"

// Growable arrays -------------------------------------------------------------------------------

#define NUV_TEST_NAME IndexAndFloatVector
#define NUV_SELF NuvVector_NuvPair_NuvUint__NuvFloat32
#define NUV_ELEMENT NuvPair_NuvUint__NuvFloat32
#include "tests/support/VectorOperations.inl"

#define NUV_TEST_NAME NameAndFloatVector
#define NUV_SELF NuvVector_NuvPair_NuvString__NuvFloat32
#define NUV_ELEMENT NuvPair_NuvString__NuvFloat32
#include "tests/support/VectorOperations.inl"

#define NUV_TEST_NAME VariableBucketVector
#define NUV_SELF NuvVector_NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable
#define NUV_ELEMENT NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable
#include "tests/support/VectorOperations.inl"

#define NUV_TEST_NAME ConstraintBucketVector
#define NUV_SELF NuvVector_NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint
#define NUV_ELEMENT NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint
#include "tests/support/VectorOperations.inl"

// Lists -----------------------------------------------------------------------------------------

#define NUV_TEST_NAME VariableList
#define NUV_SELF NuvList_NuvPair_NuvString__NuvLinearProgrammingVariable
#define NUV_ELEMENT NuvPair_NuvString__NuvLinearProgrammingVariable
#include "tests/support/ListOperations.inl"

#define NUV_TEST_NAME ConstraintList
#define NUV_SELF NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraint
#define NUV_ELEMENT NuvPair_NuvUint__NuvLinearProgrammingConstraint
#include "tests/support/ListOperations.inl"

// Maps ------------------------------------------------------------------------------------------

#define NUV_TEST_NAME VariableMap
#define NUV_TEST_LIST VariableList
#define NUV_KEY NuvString
#define NUV_VALUE NuvLinearProgrammingVariable
#include "tests/support/UnorderedOperations.inl"

#define NUV_TEST_NAME ConstraintMap
#define NUV_TEST_LIST ConstraintList
#define NUV_KEY NuvUint
#define NUV_VALUE NuvLinearProgrammingConstraint
#include "tests/support/UnorderedOperations.inl"

// Typed tests over them -------------------------------------------------------------------------

using PairTypes = ::testing::Types<IndexAndFloatPair, NameAndFloatPair, NameAndVariablePair,
                                   NumberAndConstraintPair>;
#ifdef NUV_QUICK_TESTS
// All are the same templates; a name is an element that owns memory.
using VectorTypes = ::testing::Types<NameAndFloatVector>;
using ListTypes = ::testing::Types<VariableList>;
using MapTypes = ::testing::Types<VariableMap>;
#else
using VectorTypes = ::testing::Types<IndexAndFloatVector, NameAndFloatVector, VariableBucketVector,
                                     ConstraintBucketVector>;
using ListTypes = ::testing::Types<VariableList, ConstraintList>;
using MapTypes = ::testing::Types<VariableMap, ConstraintMap>;
#endif

/// One kind of iterator of one container.
template <class Instantiation, class IteratorKind>
struct KindOf
{
    using Container = Instantiation;
    using Kind = IteratorKind;
};

/// All four kinds of each of the containers.
template <class... Containers>
struct KindsOf;

template <class Container>
struct KindsOf<Container>
{
    using Types = ::testing::Types<KindOf<Container, typename Container::ForwardKind>,
                                   KindOf<Container, typename Container::ConstForwardKind>,
                                   KindOf<Container, typename Container::ReverseKind>,
                                   KindOf<Container, typename Container::ConstReverseKind>>;
};

template <class First, class Second>
struct JoinedTypes;

template <class... First, class... Second>
struct JoinedTypes<::testing::Types<First...>, ::testing::Types<Second...>>
{
    using Types = ::testing::Types<First..., Second...>;
};

template <class Container, class... Others>
struct KindsOf<Container, Others...>
    : JoinedTypes<typename KindsOf<Container>::Types, typename KindsOf<Others...>::Types>
{
};

using VectorIteratorTypes = KindsOf<IndexAndFloatVector, NameAndFloatVector, VariableBucketVector,
                                    ConstraintBucketVector>::Types;
using ListIteratorTypes = KindsOf<VariableList, ConstraintList>::Types;
