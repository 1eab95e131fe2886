// The operations of both matrix types under common names, so that a typed test is written once.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>
#include <vector>

#include "Nuv/Utils/NuvLinearProgramming.h"
#include "tests/support/TestAllocator.hpp"

struct FloatMatrix
{
    using Matrix = NuvMatrix_NuvFloat32;
    using Element = NuvFloat32;
    static constexpr auto ConstructDefault = NuvMatrix_NuvFloat32ConstructDefault;
    static constexpr auto Construct = NuvMatrix_NuvFloat32Construct;
    static constexpr auto ConstructIdentity = NuvMatrix_NuvFloat32ConstructIdentity;
    static constexpr auto ConstructCopy = NuvMatrix_NuvFloat32ConstructCopy;
    static constexpr auto ConstructCopyRange = NuvMatrix_NuvFloat32ConstructCopyRange;
    static constexpr auto Reset = NuvMatrix_NuvFloat32Reset;
    static constexpr auto Destruct = NuvMatrix_NuvFloat32Destruct;
    static constexpr auto Assign = NuvMatrix_NuvFloat32Assign;
    static constexpr auto CopyRange = NuvMatrix_NuvFloat32CopyRange;
    static constexpr auto Resize = NuvMatrix_NuvFloat32Resize;
    static constexpr auto Swap = NuvMatrix_NuvFloat32Swap;
    static constexpr auto SwapRow = NuvMatrix_NuvFloat32SwapRow;
    static constexpr auto SwapColumn = NuvMatrix_NuvFloat32SwapColumn;
    static constexpr auto At = NuvMatrix_NuvFloat32At;
    static constexpr auto SetVal = NuvMatrix_NuvFloat32SetVal;
    static constexpr auto GetNumRows = NuvMatrix_NuvFloat32GetNumRows;
    static constexpr auto GetNumColumns = NuvMatrix_NuvFloat32GetNumColumns;
    static constexpr auto GetAllocator = NuvMatrix_NuvFloat32GetAllocator;
    static constexpr auto Equal = NuvMatrix_NuvFloat32Equal;
    static constexpr auto Less = NuvMatrix_NuvFloat32Less;
    static constexpr auto Dump = NuvMatrix_NuvFloat32Dump;
    static constexpr auto Add = NuvMatrix_NuvFloat32Add;
    static constexpr auto Multiply = NuvMatrix_NuvFloat32Multiply;
    static constexpr auto MultiplyScalar = NuvMatrix_NuvFloat32MultiplyScalar;
    static constexpr auto Transpose = NuvMatrix_NuvFloat32Transpose;
};

struct UintMatrix
{
    using Matrix = NuvMatrix_NuvUint;
    using Element = NuvUint;
    static constexpr auto ConstructDefault = NuvMatrix_NuvUintConstructDefault;
    static constexpr auto Construct = NuvMatrix_NuvUintConstruct;
    static constexpr auto ConstructIdentity = NuvMatrix_NuvUintConstructIdentity;
    static constexpr auto ConstructCopy = NuvMatrix_NuvUintConstructCopy;
    static constexpr auto ConstructCopyRange = NuvMatrix_NuvUintConstructCopyRange;
    static constexpr auto Reset = NuvMatrix_NuvUintReset;
    static constexpr auto Destruct = NuvMatrix_NuvUintDestruct;
    static constexpr auto Assign = NuvMatrix_NuvUintAssign;
    static constexpr auto CopyRange = NuvMatrix_NuvUintCopyRange;
    static constexpr auto Resize = NuvMatrix_NuvUintResize;
    static constexpr auto Swap = NuvMatrix_NuvUintSwap;
    static constexpr auto SwapRow = NuvMatrix_NuvUintSwapRow;
    static constexpr auto SwapColumn = NuvMatrix_NuvUintSwapColumn;
    static constexpr auto At = NuvMatrix_NuvUintAt;
    static constexpr auto SetVal = NuvMatrix_NuvUintSetVal;
    static constexpr auto GetNumRows = NuvMatrix_NuvUintGetNumRows;
    static constexpr auto GetNumColumns = NuvMatrix_NuvUintGetNumColumns;
    static constexpr auto GetAllocator = NuvMatrix_NuvUintGetAllocator;
    static constexpr auto Equal = NuvMatrix_NuvUintEqual;
    static constexpr auto Less = NuvMatrix_NuvUintLess;
    static constexpr auto Dump = NuvMatrix_NuvUintDump;
    static constexpr auto Add = NuvMatrix_NuvUintAdd;
    static constexpr auto Multiply = NuvMatrix_NuvUintMultiply;
    static constexpr auto MultiplyScalar = NuvMatrix_NuvUintMultiplyScalar;
    static constexpr auto Transpose = NuvMatrix_NuvUintTranspose;
};

#ifdef NUV_QUICK_TESTS
using MatrixTypes = ::testing::Types<FloatMatrix>;
#else
using MatrixTypes = ::testing::Types<FloatMatrix, UintMatrix>;
#endif

/// A matrix that a test holds: made from its elements row after row, and destructed with its scope.
template <class Operations>
class Held
{
public:
    using Matrix = typename Operations::Matrix;
    using Element = typename Operations::Element;

    explicit Held(NuvAllocator* allocator)
    {
        Operations::ConstructDefault(&matrix, allocator);
    }

    Held(NuvAllocator* allocator, NuvUint rows, NuvUint columns,
         std::initializer_list<int> elements)
    {
        EXPECT_EQ(Operations::Construct(&matrix, rows, columns, allocator), &matrix);
        Element* to = matrix.data;
        for (const int element : elements)
            *to++ = static_cast<Element>(element);
    }

    ~Held()
    {
        Operations::Destruct(&matrix);
    }

    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    Matrix* get()
    {
        return &matrix;
    }

    std::vector<Element> Elements() const
    {
        const std::size_t count = static_cast<std::size_t>(matrix.nr) * matrix.nc;
        return matrix.data ? std::vector<Element>(matrix.data, matrix.data + count)
                           : std::vector<Element>();
    }

    bool HasShape(NuvUint rows, NuvUint columns) const
    {
        return matrix.nr == rows && matrix.nc == columns;
    }

    Matrix matrix;
};

/// Notes what is given back, and gives nothing.
struct NotingAllocator
{
    NuvAllocator allocator = {
        nullptr,
        [](NuvAllocator* self, void* memory, NuvSizeT size) {
            static_cast<NotingAllocator*>(self->userData)->returns.push_back({memory, size});
        },
        0, this};
    std::vector<std::pair<void*, NuvSizeT>> returns;
};

/// What a test compares elements with.
template <class Element>
std::vector<Element> ElementsOf(std::initializer_list<int> values)
{
    std::vector<Element> elements;
    for (const int value : values)
        elements.push_back(static_cast<Element>(value));
    return elements;
}
