// The yardstick's matrices: products, the inverse, the update of a basis, each element by element.
#include "tests/reference/NaiveSimplex.hpp"

#include <utility>

namespace reference
{
Matrix::Matrix(std::size_t rowCount, std::size_t columnCount)
    : rows(rowCount), columns(columnCount), elements(rowCount * columnCount, 0.0F)
{
}

float& Matrix::at(std::size_t row, std::size_t column)
{
    return elements[row * columns + column];
}

float Matrix::at(std::size_t row, std::size_t column) const
{
    return elements[row * columns + column];
}

Matrix Multiply(const Matrix& x, const Matrix& y)
{
    Matrix result(x.rows, y.columns);
    for (std::size_t i = 0; i < x.rows; ++i)
        for (std::size_t j = 0; j < y.columns; ++j)
        {
            float sum = 0.0F;
            for (std::size_t k = 0; k < x.columns; ++k)
            {
                const float product = x.at(i, k) * y.at(k, j);
                sum = sum + product;
            }
            result.at(i, j) = sum;
        }
    return result;
}

Matrix Subtract(const Matrix& x, const Matrix& y)
{
    Matrix result(x.rows, x.columns);
    for (std::size_t i = 0; i < x.rows; ++i)
        for (std::size_t j = 0; j < x.columns; ++j)
            result.at(i, j) = x.at(i, j) - y.at(i, j);
    return result;
}

Matrix MultiplyScalar(const Matrix& x, float factor)
{
    Matrix result(x.rows, x.columns);
    for (std::size_t i = 0; i < x.rows; ++i)
        for (std::size_t j = 0; j < x.columns; ++j)
            result.at(i, j) = x.at(i, j) * factor;
    return result;
}

Matrix Transpose(const Matrix& x)
{
    Matrix result(x.columns, x.rows);
    for (std::size_t i = 0; i < x.rows; ++i)
        for (std::size_t j = 0; j < x.columns; ++j)
            result.at(j, i) = x.at(i, j);
    return result;
}

Matrix Identity(std::size_t dimension)
{
    Matrix result(dimension, dimension);
    for (std::size_t i = 0; i < dimension; ++i)
        result.at(i, i) = 1.0F;
    return result;
}

Inverse Invert(const Matrix& x)
{
    const std::size_t n = x.rows;
    Matrix y = x;
    Inverse inverse;
    inverse.matrix = Identity(n);
    Matrix& result = inverse.matrix;
    for (std::size_t k = 0; k < n; ++k)
    {
        std::size_t pivotRow = k;
        float largest = y.at(k, k) < 0.0F ? -y.at(k, k) : y.at(k, k);
        for (std::size_t i = k + 1; i < n; ++i)
        {
            const float magnitude = y.at(i, k) < 0.0F ? -y.at(i, k) : y.at(i, k);
            if (magnitude > largest)
            {
                pivotRow = i;
                largest = magnitude;
            }
        }
        if (largest == 0.0F)
            return inverse;
        for (std::size_t j = 0; j < n; ++j)
        {
            std::swap(y.at(k, j), y.at(pivotRow, j));
            std::swap(result.at(k, j), result.at(pivotRow, j));
        }
        const float pivot = y.at(k, k);
        for (std::size_t j = 0; j < n; ++j)
        {
            y.at(k, j) = y.at(k, j) / pivot;
            result.at(k, j) = result.at(k, j) / pivot;
        }
        for (std::size_t i = 0; i < n; ++i)
        {
            if (i == k)
                continue;
            const float multiplier = y.at(i, k);
            for (std::size_t j = 0; j < n; ++j)
            {
                const float ofY = y.at(k, j) * multiplier;
                y.at(i, j) = y.at(i, j) - ofY;
                const float ofResult = result.at(k, j) * multiplier;
                result.at(i, j) = result.at(i, j) - ofResult;
            }
        }
    }
    inverse.exists = true;
    return inverse;
}

Matrix ColumnOf(const Matrix& A, std::size_t k, std::size_t rows)
{
    Matrix column(rows, 1);
    for (std::size_t i = 0; i < rows; ++i)
        column.at(i, 0) = A.at(i, k);
    return column;
}

Matrix UpdateBasis(const Matrix& A, const Matrix& inverse, std::size_t k, std::size_t i)
{
    const std::size_t m = inverse.rows;
    const Matrix ak = Multiply(inverse, ColumnOf(A, k, m));
    const float reciprocal = 1.0F / ak.at(i, 0);
    Matrix ei(m, 1);
    ei.at(i, 0) = 1.0F;
    const Matrix product = Multiply(Subtract(ak, ei), Transpose(ei));
    const Matrix eta = Subtract(Identity(m), MultiplyScalar(product, reciprocal));
    return Multiply(eta, inverse);
}
}  // namespace reference
