// What is made of the float loops without regard to the machine.
#include "Nuv/Utils/Kernels/DenseAlgebra.h"

#include "Nuv/Utils/Kernels/FloatContract.h"

namespace nuv
{
namespace
{
/// The magnitude as the search for a pivot forms it: −0 stays −0, and a NaN stays itself.
NuvFloat32 Magnitude(NuvFloat32 value)
{
    return value < 0.0F ? -value : value;
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
}  // namespace

void Multiply(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT rows,
              NuvSizeT inner, NuvSizeT cols)
{
    KernelsOfThisMachine()->multiply(x, y, result, rows, inner, cols);
}

void Multiply(const NuvUint* x, const NuvUint* y, NuvUint* result, NuvSizeT rows, NuvSizeT inner,
              NuvSizeT cols)
{
    for (NuvSizeT i = 0; i != rows; ++i)
    {
        NuvUint* const sums = result + i * cols;
        for (NuvSizeT j = 0; j != cols; ++j)
            sums[j] = 0;
        for (NuvSizeT k = 0; k != inner; ++k)
        {
            const NuvUint multiplier = x[i * inner + k];
            const NuvUint* const row = y + k * cols;
            for (NuvSizeT j = 0; j != cols; ++j)
                sums[j] = sums[j] + multiplier * row[j];
        }
    }
}

NuvSizeT FindPivotRow(const NuvFloat32* column, NuvSizeT stride, NuvSizeT first, NuvSizeT end)
{
    NuvSizeT pivotRow = first;
    for (NuvSizeT i = first + 1; i < end; ++i)
        if (Magnitude(column[i * stride]) > Magnitude(column[pivotRow * stride]))
            pivotRow = i;
    return pivotRow;
}

bool ReduceToIdentity(const Kernels* kernels, NuvFloat32* y, NuvFloat32* result, NuvSizeT n)
{
    for (NuvSizeT k = 0; k != n; ++k)
    {
        const NuvSizeT pivotRow = FindPivotRow(y + k, n, k, n);
        const NuvFloat32 pivot = y[pivotRow * n + k];
        if (pivot == 0.0F)
            return false;
        // same bits: exchanging a row with itself changes nothing
        if (pivotRow != k)
        {
            ExchangeRows(y + k * n, y + pivotRow * n, n);
            ExchangeRows(result + k * n, result + pivotRow * n, n);
        }
        kernels->divide(y + k * n, pivot, n);
        kernels->divide(result + k * n, pivot, n);
        for (NuvSizeT i = 0; i != n; ++i)
        {
            if (i == k)
                continue;
            const NuvFloat32 multiplier = y[i * n + k];
            kernels->subtractMultiple(y + i * n, y + k * n, multiplier, n);
            kernels->subtractMultiple(result + i * n, result + k * n, multiplier, n);
        }
    }
    return true;
}
}  // namespace nuv
