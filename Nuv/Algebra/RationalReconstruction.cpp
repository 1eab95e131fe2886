/// The second half of Dixon's method: from digits to residues, from residues to fractions over one
/// denominator by rational reconstruction (Wang 1981), and the comparison of sizes that proves them
/// right.
#include "Nuv/Algebra/DixonSolver.hpp"

#include <algorithm>

namespace nuv
{
namespace
{

constexpr std::size_t kLeaf = 8;

/// Bits by which a denominator may grow beyond the common one before all digits are looked at.
constexpr std::size_t kSlack = 128;

/// The representative of least magnitude.
Integer Symmetric(const Integer& value, const Integer& modulus)
{
    Integer residue = value % modulus;
    if (residue * 2 > modulus)
        residue -= modulus;
    else if (residue * 2 <= -modulus)
        residue += modulus;
    return residue;
}

}  // namespace

void DixonSolver::ExtendPowers(std::size_t count)
{
    if (m_powers.empty())
    {
        const Integer prime(m_factors.GetField().Prime());
        m_powers.push_back(Power(prime, kLeaf));
    }
    while ((kLeaf << m_powers.size()) <= count)
        m_powers.push_back(m_powers.back() * m_powers.back());
}

/// The number with the digits digit(first), ..., digit(first + count - 1), by halves.
template <class Digit>
Integer DixonSolver::Assemble(const Digit& digit, std::size_t first, std::size_t count) const
{
    if (count <= kLeaf)  // same bits: it may be put together from whatever parts
    {
        const Integer prime(m_factors.GetField().Prime());
        Integer sum(0);
        for (std::size_t k = first + count; k-- > first;)
        {
            if (sum != 0)
                sum *= prime;
            sum += digit(k);
        }
        return sum;
    }
    std::size_t level = 0;
    while ((kLeaf << (level + 1)) < count)  // same bits: from whatever parts
        ++level;
    const std::size_t half = kLeaf << level;
    Integer sum = Assemble(digit, first + half, count - half);
    if (sum != 0)
        sum *= m_powers[level];
    return sum + Assemble(digit, first, half);
}

Integer DixonSolver::AssembleUnknown(Index unknown, std::size_t count) const
{
    return Assemble([this, unknown](std::size_t k) { return m_digits[k * m_size + unknown]; }, 0,
                    count);
}

/// A combination of all unknowns with small pseudo-random coefficients. Its denominator is almost
/// always the common one, so it alone tells whether there are digits enough.
Integer DixonSolver::AssembleCombination() const
{
    const auto digit = [this](std::size_t k)
    {
        std::uint64_t random = 0x9E3779B97F4A7C15u;
        std::int64_t high = 0;
        std::int64_t low = 0;
        for (Index i = 0; i < m_size; ++i)
        {
            random ^= random << 13;
            random ^= random >> 7;
            random ^= random << 17;
            const std::int64_t coefficient = static_cast<std::int64_t>(random >> 61) + 1;
            const std::int64_t value = m_digits[k * m_size + i];
            high += coefficient * (value >> 31);
            low += coefficient * (value & 0x7FFFFFFF);
        }
        return Integer((Integer(high) << 31) + low);
    };
    return Assemble(digit, 0, m_steps);
}

bool DixonSolver::Reconstruct(ExactVector& solution, const StopPredicate& stop)
{
    ExtendPowers(m_steps);
    solution.numerator.assign(m_size, Integer(0));
    solution.denominator = 1;
    if (m_exhausted)
    {
        for (Index k = 0; k < m_size; ++k)
            solution.numerator[k] = AssembleUnknown(k, m_steps);
        return true;
    }
    const Integer& modulus = ModulusOf(m_steps);
    Integer combined;
    if (!ReconstructRational(Symmetric(AssembleCombination(), modulus), modulus, Margin(),
                             BitLength(modulus), combined, solution.denominator))
        return false;
    m_largestNumerator = BitLength(combined);
    // Should the denominator or a numerator have been underestimated, the digits used may be too
    // few for a proof, and are enough the next time. The last resort is to use all.
    for (int pass = 0; pass < 3; ++pass)
    {
        std::size_t fewest = m_steps;
        std::vector<Integer> denominators(m_size);
        for (Index k = 0; k < m_size; ++k)
        {
            // same bits (!=, 1, 3): all digits are always enough, and too few are tried again
            const std::size_t digits = pass == 2 ? m_steps : DigitsFor(solution.denominator);
            fewest = std::min(fewest, digits);
            if (!ReconstructOne(k, digits, solution, denominators) || (k % 16 == 15 && stop()))
                return false;
        }
        for (Index k = 0; k < m_size; ++k)
        {
            if (denominators[k] != solution.denominator)
                solution.numerator[k] *= solution.denominator / denominators[k];
        }
        if (SizesProve(solution, ModulusOf(fewest)))
            return true;
    }
    return false;
}

/// How many bits a candidate must be smaller than its modulus to be believed, for now.
std::size_t DixonSolver::Margin() const noexcept
{
    return m_entryBits + 4;
}

/// So many digits that numerators like those seen so far, over this denominator, are proved by
/// them. That is about half of what finding the denominator took.
std::size_t DixonSolver::DigitsFor(const Integer& denominator) const
{
    // same bits: the sizes prove a solution from however many digits, and too few are tried again
    const std::size_t bits =
        std::max(BitLength(denominator) + m_rightBits, m_largestNumerator + m_entryBits) +
        m_entryBits + kSlack;
    return std::min(m_steps, bits / 61 + 1);
}

const Integer& DixonSolver::ModulusOf(std::size_t digits)
{
    if (m_modulusDigits != digits)
    {
        m_modulusDigits = digits;
        m_modulus = Power(Integer(m_factors.GetField().Prime()), static_cast<unsigned>(digits));
    }
    return m_modulus;
}

/// Finds one unknown as a fraction over the common denominator so far, which grows by whatever this
/// one needs beyond it; denominators[k] remembers over what the numerator was found.
bool DixonSolver::ReconstructOne(Index unknown, std::size_t digits, ExactVector& solution,
                                 std::vector<Integer>& denominators)
{
    const Integer& modulus = ModulusOf(digits);
    const std::size_t modulusBits = BitLength(modulus);
    Integer& numerator = solution.numerator[unknown];
    denominators[unknown] = solution.denominator;
    Integer residue = AssembleUnknown(unknown, digits);
    if (solution.denominator != 1)
        residue *= solution.denominator;
    residue = Symmetric(residue, modulus);
    if (BitLength(residue) + Margin() <= modulusBits)
    {
        numerator = std::move(residue);
    }
    else
    {
        const bool all = digits == m_steps;
        Integer denominator;
        if (!ReconstructRational(residue, modulus, Margin(), all ? modulusBits : kSlack, numerator,
                                 denominator))
            return !all && ReconstructOne(unknown, m_steps, solution, denominators);
        solution.denominator *= denominator;
        denominators[unknown] = solution.denominator;
    }
    m_largestNumerator = std::max(m_largestNumerator, BitLength(numerator));
    return BitLength(solution.denominator) < modulusBits;
}

/// With x = N / D, the integers M N - D b are multiples of the modulus by construction. If their
/// size is less than it they are zero, and the solution is exact.
bool DixonSolver::SizesProve(const ExactVector& solution, const Integer& modulus) const
{
    std::size_t bits = BitLength(solution.denominator) + m_rightBits;
    for (const Integer& numerator : solution.numerator)
        bits = std::max(bits, BitLength(numerator) + m_entryBits);
    return bits + 2 <= BitLength(modulus);
}

bool ReconstructRational(const Integer& residue, const Integer& modulus, std::size_t margin,
                         std::size_t denominatorBits, Integer& numerator, Integer& denominator)
{
    // Euclid's remainders and cofactors satisfy r_i = t_i * residue modulo the modulus; the pair
    // sought shows by the huge quotient that follows it (Monagan 2004).
    if (residue == 0)
    {
        numerator = 0;
        denominator = 1;
        return true;
    }
    Integer remainder0 = modulus;
    Integer remainder1 = residue < 0 ? Integer(residue + modulus) : residue;
    Integer cofactor0 = 0;
    Integer cofactor1 = 1;
    Integer quotient;
    Integer next;
    while (remainder1 != 0 && BitLength(cofactor1) <= denominatorBits)
    {
        Divide(remainder0, remainder1, quotient, next);
        if (BitLength(quotient) > margin)  // same bits (>=): the margin is a matter of chance
        {
            const bool negative = cofactor1 < 0;
            numerator = negative ? Integer(-remainder1) : remainder1;
            denominator = negative ? Integer(-cofactor1) : cofactor1;
            return true;
        }
        swap(remainder0, remainder1);
        swap(remainder1, next);
        cofactor0.SubtractProduct(quotient, cofactor1);
        swap(cofactor0, cofactor1);
    }
    return false;
}

}  // namespace nuv
