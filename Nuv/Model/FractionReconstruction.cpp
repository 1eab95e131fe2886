/// The second half of p-adic lifting: from digits to residues, from residues to fractions over one
/// denominator, and the comparison of sizes that proves them right.
#include "Nuv/Model/PadicLifting.hpp"

#include <algorithm>

namespace nuv
{
namespace
{

constexpr std::size_t kLeaf = 8;

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

void PadicLifting::ExtendPowers(std::size_t count)
{
    if (m_powers.empty())
    {
        const Integer prime(m_factors.GetField().Prime());
        m_powers.push_back(boost::multiprecision::pow(prime, kLeaf));
    }
    while ((kLeaf << m_powers.size()) <= count)
        m_powers.push_back(m_powers.back() * m_powers.back());
}

/// The number whose digits are `count` of the unknown's from `first` on, by halves.
Integer PadicLifting::Assemble(Index unknown, std::size_t first, std::size_t count) const
{
    if (count <= kLeaf)
    {
        const Integer prime(m_factors.GetField().Prime());
        Integer sum(0);
        for (std::size_t k = first + count; k-- > first;)
        {
            if (sum != 0)
                sum *= prime;
            sum += m_digits[k * m_size + unknown];
        }
        return sum;
    }
    std::size_t level = 0;
    while ((kLeaf << (level + 1)) < count)
        ++level;
    const std::size_t half = kLeaf << level;
    Integer sum = Assemble(unknown, first + half, count - half);
    if (sum != 0)
        sum *= m_powers[level];
    return sum + Assemble(unknown, first, half);
}

bool PadicLifting::Reconstruct(ExactVector& solution, Watch& watch)
{
    ExtendPowers(m_steps);
    const Integer prime(m_factors.GetField().Prime());
    const Integer modulus = boost::multiprecision::pow(prime, static_cast<unsigned>(m_steps));
    solution.numerator.assign(m_size, Integer(0));
    solution.denominator = 1;
    if (m_exhausted)
    {
        for (Index k = 0; k < m_size; ++k)
            solution.numerator[k] = Assemble(k, 0, m_steps);
        return true;
    }
    std::vector<Integer> denominators(m_size);
    for (Index step = 0; step < m_size; ++step)
    {
        // The unknown that failed last time goes first; its place is taken by the first one.
        const Index k = step == 0 ? m_hardest : step == m_hardest ? 0 : step;
        if (!ReconstructOne(k, modulus, solution, denominators) ||
            (step % 16 == 15 && watch.TimeIsUp()))
        {
            m_hardest = k;
            return false;
        }
    }
    for (Index k = 0; k < m_size; ++k)
    {
        if (denominators[k] != solution.denominator)
            solution.numerator[k] *= solution.denominator / denominators[k];
    }
    return SizesProve(solution, modulus);
}

/// Finds one unknown as a fraction over the common denominator so far, which grows by whatever this
/// one needs beyond it; denominators[k] remembers over what the numerator was found.
bool PadicLifting::ReconstructOne(Index unknown, const Integer& modulus, ExactVector& solution,
                                  std::vector<Integer>& denominators) const
{
    const std::size_t margin = m_entryBits + 4;
    const std::size_t modulusBits = BitLength(modulus);
    denominators[unknown] = solution.denominator;
    Integer residue = Assemble(unknown, 0, m_steps);
    if (residue == 0)
        return true;
    residue =
        Symmetric(solution.denominator == 1 ? residue : residue * solution.denominator, modulus);
    if (BitLength(residue) + margin <= modulusBits)
    {
        solution.numerator[unknown] = std::move(residue);
        return true;
    }
    Integer denominator;
    if (!ReconstructFraction(residue, modulus, margin, solution.numerator[unknown], denominator))
        return false;
    solution.denominator *= denominator;
    denominators[unknown] = solution.denominator;
    return BitLength(solution.denominator) < modulusBits;
}

/// With x = N / D, the integers M N - D b are multiples of p^k by construction. If their size is
/// less than p^k they are zero, and the solution is exact.
bool PadicLifting::SizesProve(const ExactVector& solution, const Integer& modulus) const
{
    std::size_t bits = BitLength(solution.denominator) + m_rightBits;
    for (const Integer& numerator : solution.numerator)
        bits = std::max(bits, BitLength(numerator) + m_entryBits);
    return bits + 2 <= BitLength(modulus);
}

bool ReconstructFraction(const Integer& residue, const Integer& modulus, std::size_t margin,
                         Integer& numerator, Integer& denominator)
{
    // Euclid's remainders and cofactors satisfy r_i = t_i * residue modulo the modulus; the pair
    // sought shows by the huge quotient that follows it (Monagan 2004).
    Integer remainder0 = modulus;
    Integer remainder1 = residue < 0 ? Integer(residue + modulus) : residue;
    Integer cofactor0 = 0;
    Integer cofactor1 = 1;
    Integer quotient;
    Integer next;
    while (remainder1 != 0)
    {
        boost::multiprecision::divide_qr(remainder0, remainder1, quotient, next);
        if (BitLength(quotient) > margin)
        {
            const bool negative = cofactor1 < 0;
            numerator = negative ? Integer(-remainder1) : remainder1;
            denominator = negative ? Integer(-cofactor1) : cofactor1;
            return true;
        }
        remainder0.swap(remainder1);
        remainder1.swap(next);
        cofactor0 -= quotient * cofactor1;
        cofactor0.swap(cofactor1);
    }
    return false;
}

}  // namespace nuv
