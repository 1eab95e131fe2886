/// Exact solution of a sparse linear system by p-adic lifting (Dixon 1982): with factors modulo one
/// prime, each step solves for one more digit of the solution to the base p, until the rationals
/// can be told from their residues. What is returned satisfies the system exactly: a candidate is
/// accepted only if numbers of its size cannot satisfy it modulo p^k and not over the rationals.
#pragma once

#include "Nuv/Algebra/ExactVector.hpp"
#include "Nuv/Algebra/Lifting/PadicProduct.hpp"
#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"

#include <cstdint>
#include <functional>
#include <vector>

namespace nuv
{

/// Asked now and then by what takes long; true ends it.
using StopPredicate = std::function<bool()>;

/// Integers times a common scale, divided by a positive integer.
struct ScaledVector
{
    std::vector<Integer> value;
    Scale scale;
    Integer divisor = 1;
};

class DixonSolver
{
public:
    enum class Side : std::uint8_t
    {
        Forward,   ///< B x = b
        Backward,  ///< B' y = c
    };

    /// `unknowns` holds for each unknown its coefficients by equation, of which several at one
    /// place count as their sum; `factors` are those of the same matrix. `scales`, if there are
    /// any, are by equation and make it integral: without them the least that do are taken.
    DixonSolver(const SparseVectors<ExactNumber>& unknowns, const SparseLu<PrimeField>& factors,
                Side side, std::vector<Scale> scales = {});

    /// @return false if `stop` ended it.
    [[nodiscard]] bool Solve(const ScaledVector& rightSide, ExactVector& solution,
                             const StopPredicate& stop);
    /// The same for a right side of integers, each already times the scale of its equation.
    [[nodiscard]] bool SolveIntegers(std::vector<Integer> rightSide, ExactVector& solution,
                                     const StopPredicate& stop);

    /// Of the last solution, before the scale of its right side.
    [[nodiscard]] const Integer& Denominator() const noexcept
    {
        return m_denominator;
    }
    /// How many digits that took.
    [[nodiscard]] std::size_t Steps() const noexcept
    {
        return m_steps;
    }
    /// What the next denominator is likely to be, but for small factors: a right guess saves half
    /// of the digits, and no guess changes the solution.
    void ExpectDenominator(const Integer& denominator)
    {
        m_denominator = denominator;
    }

private:
    [[nodiscard]] std::size_t AppendEntry(Index equation, const ExactNumber& coefficient);
    void ShortenEntries();
    void LoadResidual(std::vector<Integer> rightSide);
    void AppendDigits();
    void SubtractDigits();
    void CutResidual(std::size_t words);
    void DivideResidual();
    [[nodiscard]] std::uint64_t ResidualModuloPrime(Index equation) const;
    void AppendCombination();
    [[nodiscard]] std::size_t NextAttempt() const;
    template <class Digit>
    [[nodiscard]] Integer Assemble(const Digit& digit, std::size_t first, std::size_t count) const;
    [[nodiscard]] Integer AssembleUnknown(Index unknown, std::size_t count) const;
    [[nodiscard]] Integer AssembleCombination() const;
    [[nodiscard]] std::size_t Margin() const noexcept;
    void ExtendPowers(std::size_t count);
    [[nodiscard]] bool Reconstruct(ExactVector& solution, const StopPredicate& stop);
    [[nodiscard]] bool FindDenominator(Integer& denominator);
    [[nodiscard]] std::size_t BitsFor(const Integer& denominator) const;
    [[nodiscard]] std::size_t DigitsFor(const Integer& denominator) const;
    [[nodiscard]] const Integer& ModulusOf(std::size_t digits);
    [[nodiscard]] bool ReconstructAll(ExactVector& solution, const StopPredicate& stop,
                                      std::size_t& fewestDigits, bool useAll);
    [[nodiscard]] Integer NumeratorOf(Index unknown, std::size_t digits,
                                      const Integer& denominator);
    [[nodiscard]] bool ReconstructOne(Index unknown, std::size_t digits, ExactVector& solution);
    [[nodiscard]] bool SizesProve(const ExactVector& solution, const Integer& modulus) const;

    const SparseLu<PrimeField>& m_factors;
    Side m_side;
    Index m_size;
    // The coefficients as integers, each a sum of words times powers of two, mostly of one. Those
    // of unknown k are [m_start[k], m_start[k + 1]) of the three.
    std::vector<Index> m_equation;
    std::vector<std::int64_t> m_mantissa;
    std::vector<unsigned> m_shift;
    std::vector<std::size_t> m_start;
    std::vector<Scale> m_scale;            ///< equation i is multiplied by this to be integral
    std::vector<std::uint64_t> m_unscale;  ///< what undoes that modulo p, into Montgomery form
    std::size_t m_entryBits = 0;           ///< of the largest row sum of the scaled matrix

    // Per solve.
    std::size_t m_words = 0;      // same bits: each solve sets it
    std::size_t m_rightBits = 0;  // same bits: each solve sets it
    /// No residual has more.
    std::size_t m_residualBits = 0;         // same bits: each solve sets it
    std::vector<std::uint64_t> m_residual;  ///< two's complement, m_words per equation
    std::vector<std::int64_t> m_digits;     ///< m_size per step
    struct WideDigit
    {
        std::int64_t high;  ///< times 2^31
        std::int64_t low;
    };
    std::vector<WideDigit> m_combination;  ///< per step, see AppendCombination
    std::size_t m_steps = 0;               // same bits: each solve sets it
    /// Before which there are not digits enough for a proof.
    std::size_t m_fewestSteps = 0;  // same bits: each solve sets it
    /// Before which m_denominator is of no use.
    std::size_t m_guessSteps = 0;  // same bits: each solve sets it
    /// The residual is zero: the digits are the solution.
    bool m_exhausted = false;       // same bits: each step sets it
    std::vector<Integer> m_powers;  ///< p^(8 * 2^j)
    /// Bits of the largest numerator found so far.
    std::size_t m_largestNumerator = 0;  // same bits: one bit is no matter
    std::size_t m_modulusDigits = 0;
    Integer m_modulus;                    ///< p^m_modulusDigits, the one used last
    Integer m_denominator = 1;            ///< the last one, or a guess
    std::vector<Integer> m_common;        ///< the denominators that were common for a while
    std::vector<std::size_t> m_commonOf;  ///< by unknown: over which of them its numerator is
    PadicProduct m_product;               ///< with the common denominator
    std::vector<std::uint64_t> m_work;
};

/// Multiplies by 2^scale.two 5^scale.five / divisor.
void MultiplyBy(Scale scale, const Integer& divisor, ExactVector& vector);

/// The fraction n / d with n congruent to d * residue modulo `modulus`, if there is one with d of
/// at most `denominatorBits` bits whose |n| * d is smaller than the modulus by 2^margin: it is
/// unique up to chance of about 2^-margin.
[[nodiscard]] bool ReconstructRational(const Integer& residue, const Integer& modulus,
                                       std::size_t margin, std::size_t denominatorBits,
                                       Integer& numerator, Integer& denominator);

}  // namespace nuv
