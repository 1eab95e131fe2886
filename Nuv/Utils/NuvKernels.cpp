// The float loops.
#include "Nuv/Utils/NuvKernels.h"

#include "Nuv/Utils/NuvFloatContract.h"

namespace nuv
{
namespace
{
template <class T>
void MultiplyInOrder(const T* x, const T* y, T* result, NuvSizeT rows, NuvSizeT inner,
                     NuvSizeT cols)
{
    for (NuvSizeT i = 0; i != rows; ++i)
    {
        T* const sums = result + i * cols;
        for (NuvSizeT j = 0; j != cols; ++j)
            sums[j] = T(0);
        for (NuvSizeT k = 0; k != inner; ++k)
        {
            const T multiplier = x[i * inner + k];
            const T* const row = y + k * cols;
            for (NuvSizeT j = 0; j != cols; ++j)
                sums[j] = sums[j] + multiplier * row[j];
        }
    }
}

/// The magnitude as the pivot search forms it: −0 stays −0, and a NaN stays itself.
NuvFloat32 Magnitude(NuvFloat32 value)
{
    return value < 0.0F ? -value : value;
}

NuvSizeT FindPivotRow(const NuvFloat32* y, NuvSizeT n, NuvSizeT k, NuvFloat32* magnitude)
{
    NuvSizeT pivotRow = k;
    *magnitude = Magnitude(y[k * n + k]);
    for (NuvSizeT i = k + 1; i < n; ++i)
    {
        const NuvFloat32 candidate = Magnitude(y[i * n + k]);
        if (candidate > *magnitude)
        {
            pivotRow = i;
            *magnitude = candidate;
        }
    }
    return pivotRow;
}

void ExchangeRows(NuvFloat32* x, NuvFloat32* y, NuvSizeT n)
{
    for (NuvSizeT j = 0; j != n; ++j)
    {
        const NuvFloat32 held = x[j];
        x[j] = y[j];
        y[j] = held;
    }
}

void DivideRow(NuvFloat32* row, NuvFloat32 divisor, NuvSizeT n)
{
    for (NuvSizeT j = 0; j != n; ++j)
        row[j] = row[j] / divisor;
}

void SubtractMultiple(NuvFloat32* row, const NuvFloat32* pivotRow, NuvFloat32 multiplier,
                      NuvSizeT n)
{
    for (NuvSizeT j = 0; j != n; ++j)
        row[j] = row[j] - pivotRow[j] * multiplier;
}
}  // namespace

void Multiply(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT rows,
              NuvSizeT inner, NuvSizeT cols)
{
    MultiplyInOrder(x, y, result, rows, inner, cols);
}

void Multiply(const NuvUint* x, const NuvUint* y, NuvUint* result, NuvSizeT rows, NuvSizeT inner,
              NuvSizeT cols)
{
    MultiplyInOrder(x, y, result, rows, inner, cols);
}

bool ReduceToIdentity(NuvFloat32* y, NuvFloat32* result, NuvSizeT n)
{
    for (NuvSizeT k = 0; k != n; ++k)
    {
        NuvFloat32 magnitude;
        const NuvSizeT pivotRow = FindPivotRow(y, n, k, &magnitude);
        if (magnitude == 0.0F)
            return false;
        if (pivotRow != k)
        {
            ExchangeRows(y + k * n, y + pivotRow * n, n);
            ExchangeRows(result + k * n, result + pivotRow * n, n);
        }
        const NuvFloat32 pivot = y[k * n + k];
        DivideRow(y + k * n, pivot, n);
        DivideRow(result + k * n, pivot, n);
        for (NuvSizeT i = 0; i != n; ++i)
        {
            if (i == k)
                continue;
            const NuvFloat32 multiplier = y[i * n + k];
            SubtractMultiple(y + i * n, y + k * n, multiplier, n);
            SubtractMultiple(result + i * n, result + k * n, multiplier, n);
        }
    }
    return true;
}
}  // namespace nuv
