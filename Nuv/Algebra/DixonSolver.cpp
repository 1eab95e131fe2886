/// The first half of Dixon's method: the matrix in integers, and the digits of the solution, each
/// from one solve modulo the prime and an exact division of the residual by it.
#include "Nuv/Algebra/DixonSolver.hpp"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

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
        // same bits (-> <=): minus 0 is 0
        return v < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(v)
                     : static_cast<std::uint64_t>(v);
    };
    const WideProduct product = MultiplyWide(magnitude(x), magnitude(y));
    const unsigned bit = shift % 64;
    const std::uint64_t parts[3] = {product.low << bit,
                                    bit == 0 ? product.high
                                             : (product.high << bit) | (product.low >> (64 - bit)),
                                    bit == 0 ? 0 : product.high >> (64 - bit)};
    const bool add = (x < 0) != (y < 0);  // same bits (-> <=): 0 has no sign
    std::uint64_t carry = 0;
    std::size_t word = shift / 64;
    // same bits: where nothing is carried further words stay as they are
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

}  // namespace

DixonSolver::DixonSolver(const SparseVectors<ExactNumber>& unknowns,
                         const SparseLu<PrimeField>& factors, Side side, std::vector<Scale> scales)
    : m_factors(factors),
      m_side(side),
      m_size(unknowns.Count()),
      m_scale(std::move(scales)),
      m_unscale(m_size),
      m_product(factors.GetField())
{
    m_scale.resize(m_size);
    for (std::size_t at = 0; at < unknowns.index.size(); ++at)
    {
        Scale& scale = m_scale[unknowns.index[at]];
        scale.two = std::max(scale.two, -unknowns.value[at].scale.two);
        scale.five = std::max(scale.five, -unknowns.value[at].scale.five);
    }
    std::vector<std::size_t> bits(m_size, 0);  // same bits: each equation has one or more
    std::vector<std::size_t> count(m_size, 0);
    m_equation.reserve(unknowns.index.size());
    m_mantissa.reserve(unknowns.index.size());
    m_shift.reserve(unknowns.index.size());
    for (Index k = 0; k < m_size; ++k)
    {
        m_start.push_back(m_equation.size());
        for (std::size_t at = unknowns.start[k]; at < unknowns.start[k + 1]; ++at)
        {
            const Index equation = unknowns.index[at];
            bits[equation] = std::max(bits[equation], AppendEntry(equation, unknowns.value[at]));
            ++count[equation];
        }
    }
    m_start.push_back(m_equation.size());
    const PrimeField& field = m_factors.GetField();
    for (Index i = 0; i < m_size; ++i)
    {
        m_unscale[i] = field.Product(field.PowerOf(-m_scale[i]), field.Square());
        m_entryBits = std::max(m_entryBits, bits[i] + BitsOf(count[i]));
    }
    // same bits (-> <=, -> 65): there is room for 64 bits, of which the count of entries has one
    if (m_entryBits < 64)
        ShortenEntries();
}

/// Each coefficient is less than 2^63, and so is what is appended for it: no shift is needed.
void DixonSolver::ShortenEntries()
{
    for (std::size_t at = 0; at < m_shift.size(); ++at)
        m_mantissa[at] *= std::int64_t{1} << std::exchange(m_shift[at], 0U);
}

/// @return the bits of the coefficient times the equation's scale.
std::size_t DixonSolver::AppendEntry(Index equation, const ExactNumber& coefficient)
{
    const auto append = [this, equation](std::int64_t mantissa, unsigned shift)
    {
        m_equation.push_back(equation);
        m_mantissa.push_back(mantissa);
        m_shift.push_back(shift);
    };
    const Scale left = coefficient.scale + m_scale[equation];
    unsigned shift = static_cast<unsigned>(left.two);
    // same bits (never): the long way comes to the same
    if (left.five == 0)
    {
        append(coefficient.mantissa, shift);
        return shift + BitsOf(static_cast<std::size_t>(std::abs(coefficient.mantissa)));
    }
    Integer magnitude = PowerOf({0, left.five}) * std::abs(coefficient.mantissa);
    const std::size_t bits = shift + BitLength(magnitude);
    constexpr std::uint64_t kMask = (std::uint64_t{1} << 62) - 1;
    for (; magnitude != 0; magnitude >>= 62, shift += 62)
    {
        const std::int64_t word = static_cast<std::int64_t>(magnitude.LowWord() & kMask);
        append(coefficient.mantissa < 0 ? -word : word, shift);
    }
    return bits;
}

bool DixonSolver::Solve(const ScaledVector& rightSide, ExactVector& solution,
                        const StopPredicate& stop)
{
    std::vector<Integer> scaled(m_size);
    for (Index i = 0; i < m_size; ++i)
    {
        // same bits (always, never): what is 0 adds nothing
        if (rightSide.value[i] != 0)
            scaled[i] = rightSide.value[i] * PowerOf(m_scale[i]);
    }
    if (!SolveIntegers(std::move(scaled), solution, stop))
        return false;
    MultiplyBy(rightSide.scale, rightSide.divisor, solution);
    return true;
}

bool DixonSolver::SolveIntegers(std::vector<Integer> rightSide, ExactVector& solution,
                                const StopPredicate& stop)
{
    LoadResidual(std::move(rightSide));
    m_digits.clear();
    m_combination.clear();
    m_steps = 0;
    m_fewestSteps = 0;
    m_guessSteps = m_denominator == 1 ? std::numeric_limits<std::size_t>::max()
                                      : BitsFor(m_denominator) / 61 + 1;
    std::size_t attempt = 1;  // same bits (-> 0): after a first digit in either case
    for (;;)
    {
        // same bits: how often is asked
        if (m_steps % 16 == 15 && stop())
            return false;
        AppendDigits();
        if (m_steps < attempt && !m_exhausted)
            continue;
        if (Reconstruct(solution, stop))
            break;
        if (stop())  // same bits (jne never): it is asked again soon
            return false;
        attempt = NextAttempt();
    }
    m_denominator = solution.denominator;
    m_digits = {};
    return true;
}

void DixonSolver::LoadResidual(std::vector<Integer> rightSide)
{
    m_rightBits = 0;
    for (const Integer& right : rightSide)
        m_rightBits = std::max(m_rightBits, BitLength(right));
    m_residualBits = std::max(m_rightBits, m_entryBits);
    m_words = m_residualBits / 64 + 1;  // same bits (-> 2, -> 63): a word more
    m_residual.assign(m_size * m_words, 0);
    for (Index i = 0; i < m_size; ++i)
    {
        const bool negative = rightSide[i] < 0;  // same bits (-> <=): minus 0 is 0
        if (negative)
            rightSide[i].Negate();
        std::uint64_t carry = negative ? 1 : 0;
        // same bits: of what is 0 all words are
        for (std::size_t w = 0; w < m_words && (rightSide[i] != 0 || negative); ++w)
        {
            const std::uint64_t word = rightSide[i].LowWord();
            rightSide[i] >>= 64;
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
        m_digits.push_back(field.ToSigned(m_work[k]));
    AppendCombination();
    ++m_steps;
    SubtractDigits();
    DivideResidual();
}

/// Subtracts M d from the residual r. The next residual is (r - M d) / p with |d| < p / 2, M of row
/// sums below 2^e and 2^k <= p, so if |r| < 2^b it is below 2^(b - k) + 2^(e - 1), which is at most
/// 2^max(b - k + 1, e). It fits in words that many bits and a sign need, and since dividing by p is
/// multiplying by its inverse modulo 2^64, no word of r - M d above these is needed either.
void DixonSolver::SubtractDigits()
{
    const std::size_t primeBits = BitsOf(m_factors.GetField().Prime()) - 1;
    m_residualBits =
        std::max(m_residualBits - std::min(m_residualBits, primeBits - 1), m_entryBits);
    // same bits (-> 2, -> 63, -> *): of more words none is needed
    CutResidual(m_residualBits / 64 + 1);
    const std::int64_t* const digits = m_digits.data() + (m_digits.size() - m_size);
    const bool isShort = m_words == 1;
    for (Index k = 0; k < m_size; ++k)
    {
        // same bits (always, never): what is 0 adds nothing
        if (digits[k] == 0)
            continue;
        const std::size_t end = m_start[k + 1];
        if (isShort)
        {
            const auto digit = static_cast<std::uint64_t>(digits[k]);
            for (std::size_t at = m_start[k]; at < end; ++at)
                m_residual[m_equation[at]] -= static_cast<std::uint64_t>(m_mantissa[at]) * digit;
            continue;
        }
        for (std::size_t at = m_start[k]; at < end; ++at)
            SubtractShifted(&m_residual[m_equation[at] * m_words], m_words, m_mantissa[at],
                            digits[k], m_shift[at]);
    }
}

/// Keeps so many of the words of each equation, or all if there are no more.
void DixonSolver::CutResidual(std::size_t words)
{
    if (words >= m_words)  // same bits (-> >): copied to where it is
        return;
    for (Index i = 0; i < m_size; ++i)
    {
        for (std::size_t w = 0; w < words; ++w)
            m_residual[i * words + w] = m_residual[i * m_words + w];
    }
    m_words = words;
}

/// A combination of all unknowns with small pseudo-random coefficients. Its denominator is almost
/// always the common one, so it alone tells whether there are digits enough.
void DixonSolver::AppendCombination()
{
    std::uint64_t random = 0x9E3779B97F4A7C15u;
    WideDigit sum{0, 0};
    for (std::size_t at = m_digits.size() - m_size; at < m_digits.size(); ++at)
    {
        random ^= random << 13;  // same bits: any small coefficients do
        random ^= random >> 7;   // same bits: any small coefficients do
        random ^= random << 17;  // same bits: any small coefficients do
        // same bits: any small coefficients do
        const std::int64_t coefficient = static_cast<std::int64_t>(random >> 61) + 1;
        sum.high += coefficient * (m_digits[at] >> 31);
        sum.low += coefficient * (m_digits[at] & 0x7FFFFFFF);
    }
    m_combination.push_back(sum);
}

void MultiplyBy(Scale scale, const Integer& divisor, ExactVector& vector)
{
    const Integer up = PowerOf({std::max(scale.two, 0), std::max(scale.five, 0)});
    const Integer down = PowerOf({std::max(-scale.two, 0), std::max(-scale.five, 0)}) * divisor;
    vector.denominator *= down;
    if (up != 1)  // same bits: a product with 1
    {
        for (Integer& numerator : vector.numerator)
            numerator *= up;
    }
    // The factors brought in, and powers of two from the lifting, may cancel.
    // same bits (-> 1, -> 63, -> 65): of a factor that cannot cancel there may be more
    Reduce(vector, Gcd(vector.denominator, PowerOf({64, 0}) * down * up));
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
