// The yardstick: the whole solve once more, evaluated step by step from the method's description
// with plain vectors and triple loops, in exactly the order that fixes the bits. It shares no code
// with the library and is never made faster.
//
// Invariant: every value is a float, every product is rounded before it is added, every sum starts
// at +0 and runs in increasing index. Compile with -ffp-contract=off.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace reference
{
/// A dense matrix, row after row.
struct Matrix
{
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::vector<float> elements;

    Matrix() = default;
    Matrix(std::size_t rowCount, std::size_t columnCount);

    float& at(std::size_t row, std::size_t column);
    float at(std::size_t row, std::size_t column) const;
};

/// x · y; the shapes must match.
Matrix Multiply(const Matrix& x, const Matrix& y);
Matrix Subtract(const Matrix& x, const Matrix& y);
Matrix MultiplyScalar(const Matrix& x, float factor);
Matrix Transpose(const Matrix& x);
Matrix Identity(std::size_t dimension);
/// The first elements of column `k`, as a matrix of one column.
Matrix ColumnOf(const Matrix& A, std::size_t k, std::size_t rows);

/// What Gauss-Jordan elimination with partial pivoting makes of a square matrix.
struct Inverse
{
    /// False when a pivot column was exactly zero; `matrix` then holds what was reached.
    bool exists = false;
    Matrix matrix;
};
Inverse Invert(const Matrix& x);

/// The inverse of the basis after column `k` of A, counted from 0, has entered in row `i`.
Matrix UpdateBasis(const Matrix& A, const Matrix& inverse, std::size_t k, std::size_t i);

/// maximise cᵀx subject to A x ≤ b, x ≥ 0; A is m × n, b has m elements and c has n.
struct Problem
{
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::vector<float> A;
    std::vector<float> b;
    std::vector<float> c;
};

/// The problem with a slack column per row, and the labels (column numbers from 1) of its basis.
struct StandardForm
{
    Matrix A;
    Matrix b;
    Matrix c;
    std::vector<std::uint32_t> basic;
    std::vector<std::uint32_t> independent;
};
StandardForm MakeStandardForm(const Problem& problem);

/// The numbers are those of the library's results.
enum class Status : int
{
    Ok = 0,
    InvalidInput = 1,
    Unbounded = 2,
    Infeasible = 3,
    Stopped = 4
};

/// One pivot, as it stood before it was made. Label 0 is the artificial variable of Phase I.
struct Pivot
{
    unsigned phase = 0;
    std::uint32_t entering = 0;
    std::uint32_t leaving = 0;
    std::vector<std::uint32_t> basic;
    std::vector<float> values;
};

/// The results of a solve. `objective` and `values` are read as those of an earlier solve and
/// written where the method writes them: a variable outside the basis keeps its earlier value.
struct Solution
{
    Status status = Status::InvalidInput;
    /// InvalidInput when Phase I was not run.
    Status statusOfPhaseI = Status::InvalidInput;
    float objective = 0.0F;
    std::vector<float> values;
    std::vector<Pivot> pivots;
};

/// No limit on the number of pivots.
constexpr std::size_t kUnlimited = static_cast<std::size_t>(-1);

/// Solves from the slack basis, with earlier results of 0. A problem without rows or without
/// columns is InvalidInput. Stopped when one more pivot than `maxPivots` is to be made.
Solution Solve(const Problem& problem, std::size_t maxPivots = kUnlimited);

/// The phases by themselves, from the labels that `form` holds; they add their pivots to those of
/// `solution` and set its status. Phase I changes the labels of `form` when it hands over.
void SolvePhaseI(StandardForm* form, Solution* solution, std::size_t maxPivots = kUnlimited);
void SolvePhaseII(const StandardForm& form, Solution* solution, std::size_t maxPivots = kUnlimited);
}  // namespace reference
