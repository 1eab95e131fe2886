// A model as the corpus makes it: max cᵀx, A x ≤ b, x ≥ 0.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace nuv::corpus
{
/// In arrays of the caller's, which hold +0 before a model is made in them.
struct Problem
{
    uint32_t rows;
    uint32_t columns;
    /// [rows × columns], row after row.
    float* A;
    /// [rows]
    float* b;
    /// [columns]
    float* c;

    [[nodiscard]] size_t NumCoefficients() const
    {
        return size_t{rows} * columns;
    }

    [[nodiscard]] float* Row(uint32_t i) const
    {
        return &A[size_t{i} * columns];
    }
};

/// Draws each number in turn.
template <class Draw>
void Fill(float* values, size_t count, Draw draw)
{
    for (size_t k = 0; k != count; ++k)
        values[k] = draw();
}

/// Draws A, then b, then c.
template <class DrawA, class DrawB, class DrawC>
void Fill(Problem* p, DrawA drawA, DrawB drawB, DrawC drawC)
{
    Fill(p->A, p->NumCoefficients(), drawA);
    Fill(p->b, p->rows, drawB);
    Fill(p->c, p->columns, drawC);
}
}  // namespace nuv::corpus
