#include "Nuv/Algebra/Dense/BorderedSystem.hpp"

#include <numeric>
#include <utility>

namespace nuv
{
namespace
{

/// Bits of order^(order / 2), or a few more: what Hadamard's bound adds to the largest numbers of
/// the rows.
unsigned HadamardBits(unsigned order)
{
    const auto bits = static_cast<unsigned>(std::bit_width(order - 1));
    return order * bits / 2 + 1;  // same bits (-> 2, -> 1, -> *): more room
}

unsigned WordsFor(unsigned bits)
{
    // One bit more is for the sign.
    return bits / 64 + 1;  // same bits (-> 63, -> 2): more room
}

}  // namespace

void BorderedSystem::Begin(unsigned order)
{
    m_order = order;
    m_entries.assign(std::size_t{order + 1} * (order + 1) * kEntryWidth, 0);
}

bool BorderedSystem::Solve()
{
    if (!ChooseWidths())
        return false;
    const std::size_t side = m_order + 1;
    m_words.resize(side * side * m_stride);
    const unsigned width = std::min(m_widths[0], m_stride);
    for (std::size_t k = 0; k < side * side; ++k)
        CopyWords(m_entries.data() + k * kEntryWidth, kEntryWidth, m_words.data() + k * m_stride,
                  width);
    return Eliminate() && Substitute();
}

/// Sets the rows to their natural order, and the words of a number to what the results need.
bool BorderedSystem::ChooseWidths()
{
    const unsigned side = m_order + 1;
    m_rows.resize(side);
    std::iota(m_rows.begin(), m_rows.end(), 0u);
    m_rowBits.assign(side, 0);  // same bits: a row has a bit, or is all zeros
    for (unsigned i = 0; i < side; ++i)
    {
        for (unsigned j = 0; j < side; ++j)
            m_rowBits[i] = std::max(m_rowBits[i], BitLength(Entry(i, j), kEntryWidth));
    }
    // A result is a minor of all rows but one.
    const unsigned all = std::accumulate(m_rowBits.begin(), m_rowBits.end(), 0u) -
                         *std::min_element(m_rowBits.begin(), m_rowBits.end());
    m_width = WordsFor(all + HadamardBits(side));
    m_stride = m_width + 2;  // same bits (-> 3): more room
    m_left.resize(m_stride);
    m_sum.resize(m_stride);
    m_pivotBits = 0;
    m_widths.resize(side);
    m_widths[0] = WordsFor(BitsAfter(0));
    return m_width <= kMostWords;
}

/// Bits of a number that is left after so many steps: a minor of their rows and one more.
unsigned BorderedSystem::BitsAfter(unsigned step) const noexcept
{
    unsigned largest = 0;  // same bits: a row of zeros makes the matrix singular
    for (unsigned i = step; i <= m_order; ++i)
        largest = std::max(largest, m_rowBits[m_rows[i]]);
    return m_pivotBits + largest + HadamardBits(step + 1);
}

/// The costs, behind the last row, are none of the matrix: where all rows that are left have a
/// zero, it is singular, and only there, since numbers are whole in the words of their step.
bool BorderedSystem::ChoosePivot(unsigned step)
{
    for (unsigned i = step; i < m_order; ++i)
    {
        if (IsZero(At(i, step), m_widths[step]))
            continue;
        std::swap(m_rows[step], m_rows[i]);
        m_pivotBits += m_rowBits[m_rows[step]];
        return true;
    }
    return false;
}

bool BorderedSystem::Eliminate()
{
    m_divisor.resize(m_stride);
    m_denominator.assign(m_stride, 0);
    m_denominator[0] = 1;
    m_shift = 0;
    for (unsigned step = 0; step < m_order; ++step)
    {
        if (!ChoosePivot(step) || (step + 1 < m_order && !EliminateWith(step)))
            return false;
    }
    if (m_order > 0)
        CopyWords(At(m_order - 1, m_order - 1), m_widths[m_order - 1], m_denominator.data(),
                  m_stride);
    return true;
}

/// Brings the rows and columns behind a pivot one order up.
bool BorderedSystem::EliminateWith(unsigned step)
{
    const unsigned bits = BitsAfter(step + 1);
    const unsigned width = WordsFor(bits + m_shift);
    if (width > m_stride)
        return false;
    for (unsigned i = step; i <= m_order; ++i)
    {
        for (unsigned j = step; j <= m_order; ++j)
            Extend(At(i, j), std::min(m_widths[step], width), width);
    }
    const unsigned quotientWidth = WordsFor(bits);
    switch (width)
    {
    case 1:                                     // same bits (-> 0): known later
        Update<1>(step, width, quotientWidth);  // same bits (-> 0): known later
        break;
    case 2:
        Update<2>(step, width, quotientWidth);  // same bits (-> 0): known later
        break;
    case 3:
        Update<3>(step, width, quotientWidth);  // same bits (-> 0): known later
        break;
    default:
        Update<0>(step, width, quotientWidth);
        break;
    }
    m_widths[step] = width;
    m_widths[step + 1] = quotientWidth;
    CopyWords(At(step, step), width, m_divisor.data(), m_stride);
    m_shift = TrailingZeros(m_divisor.data());
    ShiftRight(m_divisor.data(), m_stride, m_shift);
    m_inverse = InverseOf(m_divisor[0]);
    return true;
}

/// Bareiss's step: each number becomes (pivot * number - left * above) / the pivot before. `kWidth`
/// is the width, or 0 where it is not known when this is compiled. Shifted right, the difference is
/// known up to 64 width - shift bits, which the quotient and its sign do not exceed.
template <unsigned kWidth>
void BorderedSystem::Update(unsigned step, unsigned width, unsigned quotientWidth)
{
    const unsigned w = kWidth != 0 ? kWidth : width;
    Word* const left = m_left.data();
    Word* const sum = m_sum.data();
    const Word* const pivot = At(step, step);
    for (unsigned i = step + 1; i <= m_order; ++i)
    {
        std::copy_n(At(i, step), w, left);
        NegateWords(left, w);
        // The corner belongs to neither solution.
        // same bits (#2 -> 0): and may be anything
        for (unsigned j = step + 1; j <= m_order - (i == m_order ? 1 : 0); ++j)
        {
            Word* const entry = At(i, j);
            std::fill_n(sum, w, 0);
            AddProduct(sum, pivot, entry, w);
            AddProduct(sum, At(step, j), left, w);
            if (step > 0)
            {
                if (m_shift > 0)  // same bits (always, never, -> >=, -> 1): a shift by 0
                    ShiftRight(sum, w, m_shift);
                DivideExactly(sum, m_divisor.data(), m_inverse, quotientWidth);
                ExtendFromBit(sum, quotientWidth, 64 * w - m_shift);
            }
            std::copy_n(sum, quotientWidth, entry);
        }
    }
}

/// From the last unknown to the first, of both systems: the pivot rows are a triangle for x, the
/// pivot columns one for y.
bool BorderedSystem::Substitute()
{
    m_solvedX.resize(std::size_t{m_order} * m_stride);
    m_solvedY.resize(m_solvedX.size());
    for (unsigned step = m_order; step-- > 0;)
    {
        // By the same pivot, so there is room for both or for none.
        if (!SubstituteRow(step, true, m_solvedX))
            return false;
        (void)SubstituteRow(step, false, m_solvedY);
    }
    const bool isNegative = IsNegative(m_denominator.data(), m_stride);
    if (isNegative)
        NegateWords(m_denominator.data(), m_stride);
    WriteResult(m_solvedX, false, isNegative, m_x);
    WriteResult(m_solvedY, true, isNegative, m_y);
    return true;
}

/// By Cramer's rule the unknown times the denominator is a minor, so this quotient is exact too:
/// (denominator * right side - sum of later unknowns) / pivot.
bool BorderedSystem::SubstituteRow(unsigned step, bool isPrimal, std::vector<Word>& solved)
{
    Word* const divisor = m_left.data();
    Word* const sum = m_sum.data();
    CopyWords(At(step, step), m_widths[step], divisor, m_stride);
    const unsigned shift = TrailingZeros(divisor);
    const unsigned width = m_width + (shift + 63) / 64;  // same bits (-> 64): more room
    if (width > m_stride)
        return false;
    const auto at = [&](unsigned k)
    {
        Word* const number = isPrimal ? At(step, k) : At(k, step);
        Extend(number, std::min(m_widths[step], width), width);
        return number;
    };
    std::fill_n(sum, width, 0);
    for (unsigned k = step + 1; k < m_order; ++k)
        AddProduct(sum, solved.data() + std::size_t{k} * m_stride, at(k), width);
    NegateWords(sum, width);
    AddProduct(sum, m_denominator.data(), at(m_order), width);
    ShiftRight(sum, width, shift);
    ShiftRight(divisor, m_stride, shift);
    DivideExactly(sum, divisor, InverseOf(divisor[0]), m_width);
    CopyWords(sum, m_width, solved.data() + std::size_t{step} * m_stride, m_stride);
    return true;
}

void BorderedSystem::WriteResult(const std::vector<Word>& solved, bool isByRow, bool isNegated,
                                 std::vector<Word>& result) const
{
    result.resize(std::size_t{m_order} * m_width);
    for (unsigned k = 0; k < m_order; ++k)
    {
        Word* const number = result.data() + std::size_t{isByRow ? m_rows[k] : k} * m_width;
        std::copy_n(solved.data() + std::size_t{k} * m_stride, m_width, number);
        if (isNegated)
            NegateWords(number, m_width);
    }
}

}  // namespace nuv
