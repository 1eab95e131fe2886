// What the tests of the growable arrays share: an array that a test holds, its elements as numbers,
// and the invariant.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "tests/support/Elements.hpp"
#include "tests/support/Instantiations.hpp"
#include "tests/support/RefusedAllocations.hpp"
#include "tests/support/TestAllocator.hpp"

using Numbers = std::vector<int>;

/// The numbers of an array's elements, in order.
template <class Vector>
Numbers NumbersOf(const Vector& x)
{
    Numbers numbers;
    for (const auto* element = x.begin; element != x.end; ++element)
        numbers.push_back(NumberOf(*element));
    return numbers;
}

/// An array for the length of a scope; it converts to the pointer of a call. Its elements lie on
/// the same allocator, in a block without a spare place.
template <class Operations>
class HeldVector
{
public:
    using Container = typename Operations::Container;
    using Element = typename Operations::Element;

    explicit HeldVector(NuvAllocator* allocator, std::initializer_list<int> numbers = {})
    {
        Operations::ConstructDefault(&vector, allocator);
        if (!Operations::Reserve(&vector, numbers.size()))
            ADD_FAILURE() << "no room for " << numbers.size() << " elements";
        for (const int number : numbers)
            if (!Operations::PushBack(&vector, Sample<Element>(number, allocator)))
                ADD_FAILURE() << "no room for element number " << number;
    }

    ~HeldVector()
    {
        Operations::Destruct(&vector);
    }

    HeldVector(const HeldVector&) = delete;
    HeldVector& operator=(const HeldVector&) = delete;

    operator Container*()
    {
        return &vector;
    }

    operator const Container*() const
    {
        return &vector;
    }

    Container* operator->()
    {
        return &vector;
    }

    Numbers operator*() const
    {
        return NumbersOf(vector);
    }

    NuvSizeT Capacity() const
    {
        return Operations::Capacity(&vector);
    }

    Container vector;
};

/// The block is that of the capacity, to the byte, or there is none.
template <class Vector>
void ExpectSound(const Vector& x, const TestAllocator& allocator)
{
    if (!x.begin)
    {
        EXPECT_EQ(x.end, nullptr);
        EXPECT_EQ(x.endBuf, nullptr);
        return;
    }
    EXPECT_LE(x.begin, x.end);
    EXPECT_LE(x.end, x.endBuf);
    EXPECT_EQ(allocator.SizeOf(x.begin),
              static_cast<NuvSizeT>(x.endBuf - x.begin) * sizeof(*x.begin));
    allocator.CheckGuards();
}

template <class Instantiation>
using ElementOf = Sample<typename Instantiation::Element>;

template <class Instantiation>
class VectorTest : public ::testing::Test
{
protected:
    TestAllocator allocator;
};
