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
constexpr std::size_t kSlack = 128;  // same bits: a guess

/// The representative of least magnitude.
Integer Symmetric(const Integer& value, const Integer& modulus)
{
    Integer residue = value % modulus;
    // same bits: of an odd modulus nothing is the half, and one that is not the least asks for more
    // digits
    if (residue * 2 > modulus)
        residue -= modulus;
    // same bits: as above
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
    while ((kLeaf << m_powers.size()) <= count)  // same bits (-> <): one more than is needed
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
    sum *= m_powers[level];
    return sum + Assemble(digit, first, half);
}

Integer DixonSolver::AssembleUnknown(Index unknown, std::size_t count) const
{
    return Assemble([this, unknown](std::size_t k) { return m_digits[k * m_size + unknown]; }, 0,
                    count);
}

Integer DixonSolver::AssembleCombination() const
{
    const auto digit = [this](std::size_t k)
    { return Integer((Integer(m_combination[k].high) << 31) + m_combination[k].low); };
    return Assemble(digit, 0, m_steps);
}

/// After a third more digits again, but once where a right guess would do.
std::size_t DixonSolver::NextAttempt() const
{
    const std::size_t next = std::max(m_steps + 1 + m_steps / 3, m_fewestSteps);
    return m_steps < m_guessSteps ? std::min(next, m_guessSteps) : next;
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
    if (!FindDenominator(solution.denominator))
        return false;
    // Should the denominator or a numerator have been underestimated, the digits used may be too
    // few for a proof, and are enough the next time. The last resort is to use all.
    // same bits: all digits are always enough, and too few are tried again
    for (int pass = 0; pass < 3; ++pass)
    {
        std::size_t fewest = m_steps;
        // same bits (!=, 1, 3): as above
        if (!ReconstructAll(solution, stop, fewest, pass == 2))
            return false;
        if (SizesProve(solution, ModulusOf(fewest)))
            return true;
    }
    return false;
}

/// The denominator of the combination, which the last one found may be a multiple or a divisor of:
/// if so, what remains of it shows in fewer digits.
bool DixonSolver::FindDenominator(Integer& denominator)
{
    const Integer& modulus = ModulusOf(m_steps);
    const Integer residue = Symmetric(AssembleCombination(), modulus);
    const std::size_t bits = BitLength(modulus);
    Integer numerator;
    bool isFound = false;
    if (m_steps >= m_guessSteps)
    {
        isFound = ReconstructRational(Symmetric(residue * m_denominator, modulus), modulus,
                                      Margin(), bits, numerator, denominator);
        if (isFound)
        {
            denominator *= m_denominator;
            const Integer common = Gcd(denominator, numerator);
            denominator /= common;
            numerator /= common;
        }
    }
    if (!isFound && !ReconstructRational(residue, modulus, Margin(), bits, numerator, denominator))
        return false;
    m_largestNumerator = BitLength(numerator);
    // same bits: too few digits are seen by the sizes
    const std::size_t needed =
        std::max(BitLength(denominator) + m_rightBits, m_largestNumerator + m_entryBits) + 2;
    if (needed <= bits)
        return true;
    m_fewestSteps = BitsFor(denominator) / 61 + 1;
    return false;
}

/// How many bits a candidate must be smaller than its modulus to be believed, for now.
std::size_t DixonSolver::Margin() const noexcept
{
    return m_entryBits + 4;  // same bits (-> 3, -> 5): a matter of chance
}

/// Of a modulus by which numerators like those seen so far, over this denominator, are proved.
std::size_t DixonSolver::BitsFor(const Integer& denominator) const
{
    return std::max(BitLength(denominator) + m_rightBits, m_largestNumerator + m_entryBits) +
           m_entryBits + kSlack;
}

/// So many digits that they prove such numerators. That is about half of what finding the
/// denominator took.
std::size_t DixonSolver::DigitsFor(const Integer& denominator) const
{
    // same bits: the sizes prove a solution from however many digits, and too few are tried again
    return std::min(m_steps, BitsFor(denominator) / 61 + 1);
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

/// All unknowns over the denominator, which may grow meanwhile.
bool DixonSolver::ReconstructAll(ExactVector& solution, const StopPredicate& stop,
                                 std::size_t& fewestDigits, bool useAll)
{
    m_common.assign(1, solution.denominator);
    m_product.SetFactor(solution.denominator, 0);
    m_commonOf.resize(m_size);
    for (Index k = 0; k < m_size; ++k)
    {
        const std::size_t digits = useAll ? m_steps : DigitsFor(solution.denominator);
        fewestDigits = std::min(fewestDigits, digits);
        if (!ReconstructOne(k, digits, solution) || (k % 16 == 15 && stop()))
            return false;
    }
    std::vector<Integer> factors;
    for (const Integer& common : m_common)
        factors.push_back(solution.denominator / common);
    for (Index k = 0; k < m_size; ++k)
    {
        // same bits: the last factor is 1
        if (m_commonOf[k] + 1 != m_common.size())
            solution.numerator[k] *= factors[m_commonOf[k]];
    }
    return true;
}

/// The unknown times the denominator: the residue of least magnitude, which is the same by either
/// way.
Integer DixonSolver::NumeratorOf(Index unknown, std::size_t digits, const Integer& denominator)
{
    Integer residue;
    // same bits: the same by either way
    if (digits <= PadicProduct::kMostDigits)
    {
        if (m_product.Count() < digits)  // same bits: made again it is the same
            m_product.SetFactor(denominator, digits);
        if (m_product.Multiply(&m_digits[unknown], m_size, digits, residue))
            return residue;
    }
    residue = AssembleUnknown(unknown, digits);
    // same bits (always, never, -> 0): a factor of 1
    if (denominator != 1)
        residue *= denominator;
    return Symmetric(residue, ModulusOf(digits));
}

/// Finds one unknown as a fraction over the common denominator so far, which grows by whatever this
/// one needs beyond it.
bool DixonSolver::ReconstructOne(Index unknown, std::size_t digits, ExactVector& solution)
{
    const Integer& modulus = ModulusOf(digits);
    const std::size_t modulusBits = BitLength(modulus);
    Integer& numerator = solution.numerator[unknown];
    m_commonOf[unknown] = m_common.size() - 1;
    Integer residue = NumeratorOf(unknown, digits, solution.denominator);
    if (BitLength(residue) + Margin() <= modulusBits)  // same bits (-> <): a matter of chance
    {
        numerator = std::move(residue);
    }
    else
    {
        const bool all = digits == m_steps;
        Integer denominator;
        if (!ReconstructRational(residue, modulus, Margin(), all ? modulusBits : kSlack, numerator,
                                 denominator))
            return !all && ReconstructOne(unknown, m_steps, solution);
        solution.denominator *= denominator;
        m_common.push_back(solution.denominator);
        m_product.SetFactor(solution.denominator, 0);
        m_commonOf[unknown] = m_common.size() - 1;
    }
    m_largestNumerator = std::max(m_largestNumerator, BitLength(numerator));
    return BitLength(solution.denominator) < modulusBits;  // same bits: the sizes say so at the end
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
            const bool negative = cofactor1 < 0;  // same bits (-> <=, -> 1): none is 0
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
