// What the tests of the lists share: a list that a test holds, its elements as numbers, and the
// invariant.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "tests/support/Elements.hpp"
#include "tests/support/Instantiations.hpp"
#include "tests/support/RefusedAllocations.hpp"
#include "tests/support/TestAllocator.hpp"

using Numbers = std::vector<int>;

template <class Instantiation>
using ElementOf = Sample<typename Instantiation::Element>;

/// The numbers of a list's elements, front to back.
template <class List>
Numbers NumbersOf(const List& x)
{
    Numbers numbers;
    for (auto link = x.node.next; link.b != &x.node; link = link.b->next)
        numbers.push_back(NumberOf(link.n->obj));
    return numbers;
}

/// Every link's neighbours point back at it, and every node is one block of the node's size.
template <class List>
void ExpectSound(const List& x, const TestAllocator& allocator)
{
    const auto* link = &x.node;
    do
    {
        ASSERT_EQ(link->next.b->prev.b, link);
        link = link->next.b;
        if (link != &x.node)
        {
            ASSERT_EQ(allocator.SizeOf(link), sizeof(*link->prev.n));
        }
    } while (link != &x.node);
    allocator.CheckGuards();
}

/// A list for the length of a scope; it converts to the pointer of a call. Its elements lie on the
/// same allocator.
template <class Operations>
class HeldList
{
public:
    using Container = typename Operations::Container;
    using Element = typename Operations::Element;
    using Iterator = typename Operations::Iterator;

    explicit HeldList(NuvAllocator* allocator, std::initializer_list<int> numbers = {})
    {
        Operations::ConstructDefault(&list, allocator);
        for (const int number : numbers)
            if (!Operations::PushBack(&list, Sample<Element>(number, allocator)))
                ADD_FAILURE() << "no room for element number " << number;
    }

    ~HeldList()
    {
        Operations::Destruct(&list);
    }

    HeldList(const HeldList&) = delete;
    HeldList& operator=(const HeldList&) = delete;

    operator Container*()
    {
        return &list;
    }

    operator const Container*() const
    {
        return &list;
    }

    Numbers operator*() const
    {
        return NumbersOf(list);
    }

    /// The link `n` steps from the first; the sentinel after the last.
    Iterator Place(int n)
    {
        Iterator link = list.node.next.b;
        for (; n > 0; --n)
            link = link->next.b;
        return link;
    }

    /// The element `n` steps from the first.
    const Element* At(int n)
    {
        return &Place(n)->next.b->prev.n->obj;
    }

    Container list;
};

template <class Instantiation>
class ListTest : public ::testing::Test
{
protected:
    TestAllocator allocator;
};
