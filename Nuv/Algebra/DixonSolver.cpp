/// The first half of Dixon's method: the matrix in integers, and the digits of the solution, each
/// from one solve modulo the prime and an exact division of the residual by it.
#include "Nuv/Algebra/DixonSolver.hpp"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace nuv
{
namespace
{

/// sum -= x * y * 2^shift in two's complement of `words` words.
void SubtractShifted(std::uint64_t* sum, std::size_t words, std::int64_t x, std::int64_t y,
                     unsigned shift) noexcept
{
    const auto magnitude = [](std::int64_t v)
    {
        return v < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(v)
                     : static_cast<std::uint64_t>(v);
    };
    const WideProduct product = MultiplyWide(magnitude(x), magnitude(y));
    const unsigned bit = shift % 64;
    const std::uint64_t parts[3] = {product.low << bit,
                                    bit == 0 ? product.high
                                             : (product.high << bit) | (product.low >> (64 - bit)),
                                    bit == 0 ? 0 : product.high >> (64 - bit)};
    const bool add = (x < 0) != (y < 0);
    std::uint64_t carry = 0;
    std::size_t word = shift / 64;
    for (std::size_t part = 0; word < words && (part < 3 || carry != 0); ++part, ++word)
    {
        const std::uint64_t operand = part < 3 ? parts[part] : 0;
        const std::uint64_t before = sum[word];
        if (add)
        {
            const std::uint64_t partial = before + operand;
            sum[word] = partial + carry;
            carry = static_cast<std::uint64_t>(partial < before) |
                    static_cast<std::uint64_t>(sum[word] < partial);
        }
        else
        {
            const std::uint64_t partial = before - operand;
            sum[word] = partial - carry;
            carry = static_cast<std::uint64_t>(before < operand) |
                    static_cast<std::uint64_t>(partial < carry);
        }
    }
}

std::size_t BitsOf(std::size_t number) noexcept
{
    std::size_t bits = 0;
    for (; number != 0; number >>= 1)
        ++bits;
    return bits;
}

void MultiplyBy(Scale scale, const Integer& divisor, ExactVector& vector)
{
    const Integer up = PowerOf({std::max(scale.two, 0), std::max(scale.five, 0)});
    const Integer down = PowerOf({std::max(-scale.two, 0), std::max(-scale.five, 0)}) * divisor;
    vector.denominator *= down;
    if (up != 1)
    {
        for (Integer& numerator : vector.numerator)
            numerator *= up;
    }
    // The factors brought in, and powers of two from the lifting, may cancel.
    // same bits (-> 1, -> 63, -> 65): of a factor that cannot cancel there may be more
    Reduce(vector, Gcd(vector.denominator, PowerOf({64, 0}) * down * up));
}

}  // namespace

DixonSolver::DixonSolver(const SparseVectors<ExactNumber>& unknowns,
                         const SparseLu<PrimeField>& factors, Side side)
    : m_factors(factors), m_side(side), m_size(unknowns.Count()), m_scale(m_size), m_unscale(m_size)
{
    for (std::size_t at = 0; at < unknowns.index.size(); ++at)
    {
        Scale& scale = m_scale[unknowns.index[at]];
        scale.two = std::max(scale.two, -unknowns.value[at].scale.two);
        scale.five = std::max(scale.five, -unknowns.value[at].scale.five);
    }
    std::vector<std::size_t> bits(m_size, 0);
    std::vector<std::size_t> count(m_size, 0);
    m_entries.reserve(unknowns.index.size());
    for (Index k = 0; k < m_size; ++k)
    {
        m_start.push_back(m_entries.size());
        for (std::size_t at = unknowns.start[k]; at < unknowns.start[k + 1]; ++at)
        {
            const Index equation = unknowns.index[at];
            bits[equation] = std::max(bits[equation], AppendEntry(equation, unknowns.value[at]));
            ++count[equation];
        }
    }
    m_start.push_back(m_entries.size());
    const PrimeField& field = m_factors.GetField();
    for (Index i = 0; i < m_size; ++i)
    {
        m_unscale[i] = field.Product(field.PowerOf(-m_scale[i]), field.Square());
        m_entryBits = std::max(m_entryBits, bits[i] + BitsOf(count[i]));
    }
}

/// @return the bits of the coefficient times the equation's scale.
std::size_t DixonSolver::AppendEntry(Index equation, const ExactNumber& coefficient)
{
    const Scale left = coefficient.scale + m_scale[equation];
    unsigned shift = static_cast<unsigned>(left.two);
    if (left.five == 0)
    {
        m_entries.push_back({equation, shift, coefficient.mantissa});
        return shift + BitsOf(static_cast<std::size_t>(std::abs(coefficient.mantissa)));
    }
    Integer magnitude = PowerOf({0, left.five}) * std::abs(coefficient.mantissa);
    const std::size_t bits = shift + BitLength(magnitude);
    constexpr std::uint64_t kMask = (std::uint64_t{1} << 62) - 1;
    for (; magnitude != 0; magnitude >>= 62, shift += 62)
    {
        const std::int64_t word = static_cast<std::int64_t>(magnitude.LowWord() & kMask);
        m_entries.push_back({equation, shift, coefficient.mantissa < 0 ? -word : word});
    }
    return bits;
}

bool DixonSolver::Solve(const ScaledVector& rightSide, ExactVector& solution,
                        const StopPredicate& stop)
{
    LoadResidual(rightSide);
    m_digits.clear();
    m_steps = 0;
    m_exhausted = false;
    std::size_t attempt = 1;
    for (;;)
    {
        if (m_steps % 16 == 15 && stop())
            return false;
        AppendDigits();
        if (m_steps < attempt && !m_exhausted)
            continue;
        if (Reconstruct(solution, stop))
            break;
        if (stop())
            return false;
        attempt = m_steps + 1 + m_steps / 3;
    }
    MultiplyBy(rightSide.scale, rightSide.divisor, solution);
    return true;
}

void DixonSolver::LoadResidual(const ScaledVector& rightSide)
{
    // The right side's own scale is left out here and multiplied in at the end of Solve.
    m_rightBits = 0;
    std::vector<Integer> scaled(m_size);
    for (Index i = 0; i < m_size; ++i)
    {
        if (rightSide.value[i] == 0)
            continue;
        scaled[i] = rightSide.value[i] * PowerOf(m_scale[i]);
        m_rightBits = std::max(m_rightBits, BitLength(scaled[i]));
    }
    m_words = std::max(m_rightBits, m_entryBits + 62) / 64 + 1;
    m_residual.assign(m_size * m_words, 0);
    for (Index i = 0; i < m_size; ++i)
    {
        const bool negative = scaled[i] < 0;
        if (negative)
            scaled[i] = -scaled[i];
        std::uint64_t carry = negative ? 1 : 0;
        for (std::size_t w = 0; w < m_words && (scaled[i] != 0 || negative); ++w)
        {
            const std::uint64_t word = scaled[i].LowWord();
            scaled[i] >>= 64;
            m_residual[i * m_words + w] = negative ? ~word + carry : word;
            carry = static_cast<std::uint64_t>(carry != 0 && word == 0);
        }
    }
}

std::uint64_t DixonSolver::ResidualModuloPrime(Index equation) const
{
    const PrimeField& field = m_factors.GetField();
    const std::uint64_t* words = &m_residual[equation * m_words];
    const bool negative = (words[m_words - 1] >> 63) != 0;
    // Of a negative number the complement is taken, which is -1 minus it.
    const std::uint64_t mask = negative ? ~std::uint64_t{0} : 0;
    std::uint64_t sum = 0;
    for (std::size_t w = m_words; w-- > 0;)
    {
        const std::uint64_t word = words[w] ^ mask;
        if (sum == 0 && word == 0)  // same bits: nothing would be added to nothing
            continue;
        sum = field.Sum(field.Product(sum, field.Square()), field.Reduced(word));
    }
    return negative ? field.Negated(field.Sum(sum, 1)) : sum;
}

void DixonSolver::AppendDigits()
{
    const PrimeField& field = m_factors.GetField();
    m_work.resize(m_size);
    for (Index i = 0; i < m_size; ++i)
        m_work[i] = field.Product(ResidualModuloPrime(i), m_unscale[i]);
    if (m_side == Side::Forward)
        m_factors.SolveForward(m_work);
    else
        m_factors.SolveBackward(m_work);
    for (Index k = 0; k < m_size; ++k)
    {
        const std::int64_t digit = field.ToSigned(m_work[k]);
        m_digits.push_back(digit);
        if (digit == 0)
            continue;
        for (std::size_t at = m_start[k]; at < m_start[k + 1]; ++at)
        {
            const Entry& entry = m_entries[at];
            SubtractShifted(&m_residual[entry.equation * m_words], m_words, entry.mantissa, digit,
                            entry.shift);
        }
    }
    ++m_steps;
    DivideResidual();
}

/// The residual is a multiple of the prime now; dividing modulo 2^64 word by word is exact, and
/// right for negative numbers too, as the quotient fits.
void DixonSolver::DivideResidual()
{
    const std::uint64_t prime = m_factors.GetField().Prime();
    const std::uint64_t inverse = m_factors.GetField().InverseModuloWord();
    std::uint64_t any = 0;
    for (Index i = 0; i < m_size; ++i)
    {
        std::uint64_t* words = &m_residual[i * m_words];
        std::uint64_t borrow = 0;
        for (std::size_t w = 0; w < m_words; ++w)
        {
            const std::uint64_t under = static_cast<std::uint64_t>(words[w] < borrow);
            const std::uint64_t quotient = (words[w] - borrow) * inverse;
            words[w] = quotient;
            any |= quotient;
            borrow = MultiplyWide(quotient, prime).high + under;
        }
    }
    m_exhausted = any == 0;
}

}  // namespace nuv
