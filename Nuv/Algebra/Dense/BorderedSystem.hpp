/// A dense square system in integers with a right side and a cost row,
///
///     M x = r,   y M = c,
///
/// solved exactly for both by fraction-free elimination (Bareiss, Sylvester's identity and
/// multistep integer-preserving Gaussian elimination, 1968) in machine words.
///
/// Why it is exact: each number that the elimination leaves is a minor of the bordered matrix, and
/// by Hadamard's inequality a minor is at most the product of its rows' Euclidean norms. The words
/// are as many as these bounds need, so arithmetic modulo a power of two loses nothing.
#pragma once

#include "Nuv/Algebra/Dense/Words.hpp"

#include <vector>

namespace nuv
{

class BorderedSystem
{
public:
    /// The words of a number put in.
    static constexpr unsigned kEntryWidth = 4;
    /// No number has more words; what needs more is left to others.
    static constexpr unsigned kMostWords = 64;

    /// Begins a system of this order, all zeros.
    void Begin(unsigned order);

    /// Row i of M, or c for i = order; column j of M, or r for j = order. kEntryWidth words.
    [[nodiscard]] Word* Entry(unsigned i, unsigned j) noexcept
    {
        return m_entries.data() + (static_cast<std::size_t>(i) * (m_order + 1) + j) * kEntryWidth;
    }

    /// Solves both systems.
    /// @return false if M is singular, or numbers are too long.
    [[nodiscard]] bool Solve();

    // After Solve, each of Width() words: the denominator, which is positive, and the numerators of
    // x by columns and of y by rows.
    [[nodiscard]] unsigned Width() const noexcept
    {
        return m_width;
    }
    [[nodiscard]] const Word* Denominator() const noexcept
    {
        return m_denominator.data();
    }
    [[nodiscard]] const Word* X(unsigned j) const noexcept
    {
        return m_x.data() + static_cast<std::size_t>(j) * m_width;
    }
    [[nodiscard]] const Word* Y(unsigned i) const noexcept
    {
        return m_y.data() + static_cast<std::size_t>(i) * m_width;
    }

private:
    [[nodiscard]] bool ChooseWidths();
    [[nodiscard]] bool ChoosePivot(unsigned step);
    [[nodiscard]] bool Eliminate();
    [[nodiscard]] bool EliminateWith(unsigned step);
    template <unsigned kWidth>
    void Update(unsigned step, unsigned width, unsigned quotientWidth);
    [[nodiscard]] bool Substitute();
    [[nodiscard]] bool SubstituteRow(unsigned step, bool isPrimal, std::vector<Word>& solved);
    void WriteResult(const std::vector<Word>& solved, bool isByRow, bool isNegated,
                     std::vector<Word>& result) const;
    [[nodiscard]] unsigned BitsAfter(unsigned step) const noexcept;

    [[nodiscard]] Word* At(unsigned i, unsigned j) noexcept
    {
        return m_words.data() +
               (static_cast<std::size_t>(m_rows[i]) * (m_order + 1) + j) * m_stride;
    }

    unsigned m_order = 0;  // same bits: Begin sets it
    /// Words for each number.
    unsigned m_stride = 0;  // same bits: Solve sets it
    /// Words that the results need.
    unsigned m_width = 0;  // same bits: Solve sets it
    std::vector<Word> m_entries;
    std::vector<Word> m_words;
    std::vector<unsigned> m_rows;     ///< the row at each place of the elimination
    std::vector<unsigned> m_rowBits;  ///< by row: bits of its largest number
    std::vector<unsigned> m_widths;   ///< by step: the words in which its pivot row and column are
    /// Of the rows of all pivots so far, together.
    unsigned m_pivotBits = 0;  // same bits: Solve sets it

    // The pivot before: 2^shift times an odd number, whose lowest word has this inverse.
    std::vector<Word> m_divisor;
    unsigned m_shift = 0;  // same bits: Solve sets it
    Word m_inverse = 1;    // same bits: the first pivot sets it

    std::vector<Word> m_left;  ///< of the row in work, or a divisor
    std::vector<Word> m_sum;
    std::vector<Word> m_denominator;
    std::vector<Word> m_x;
    std::vector<Word> m_y;
    std::vector<Word> m_solvedX;
    std::vector<Word> m_solvedY;
};

}  // namespace nuv
