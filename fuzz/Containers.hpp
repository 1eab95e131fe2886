// What the steps of the three kinds of container share: numbers of operations and places out of the
// input, and the request of the allocator that is refused during a step.
#pragma once

#include "fuzz/Input.hpp"
#include "tests/support/TestAllocator.hpp"

namespace fuzz
{
/// No input takes a container further: what there is to find is found in small ones.
inline constexpr int kMostElements = 40;
inline constexpr int kMostSteps = 200;

/// One step's first byte: the operation, and for half of the bytes a refused request.
class Step
{
public:
    Step(Input* input, TestAllocator* allocator) : m_allocator(*allocator)
    {
        const int byte = input->Byte();
        m_operation = byte & 15;
        m_refused = byte >> 4;
        m_refusals = m_allocator.Refusals();
    }

    int Operation() const
    {
        return m_operation;
    }

    /// From here on one of the next requests is refused, and for some bytes all after it.
    void Begin()
    {
        if (m_refused >= 12)
            m_allocator.RefuseFrom(static_cast<std::size_t>(m_refused - 11));
        else if (m_refused >= 8)
            m_allocator.RefuseOnly(static_cast<std::size_t>(m_refused - 7));
    }

    /// @return whether a request was refused since the beginning.
    bool End()
    {
        m_allocator.RefuseNothing();
        return m_allocator.Refusals() != m_refusals;
    }

private:
    TestAllocator& m_allocator;
    int m_operation;
    int m_refused;
    std::size_t m_refusals;
};

void RunVectorSteps(Input* input, bool hasNames);
void RunListSteps(Input* input, bool hasNames);
void RunMapSteps(Input* input, bool hasNames);
}  // namespace fuzz
