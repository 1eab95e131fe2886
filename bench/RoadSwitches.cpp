// What the library compiled with NUV_SWITCHES needs beside its own sources: the switches, and the
// inversion by rows of a dense matrix, which the library itself has no use for on finite data.
#include <vector>

#include "Nuv/Utils/Kernels/DenseAlgebra.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/Simplex/BasisInversion.h"

namespace nuv
{
Switches switches;

bool InvertDensely(BasisInverse* inverse, const StandardForm* form, const NuvUint* labels,
                   const NuvFloat32* b)
{
    const NuvSizeT m = inverse->m;
    std::vector<NuvFloat32> columns(m * m);
    std::vector<NuvFloat32> found(m * m);
    for (NuvSizeT i = 0; i != m; ++i)
    {
        found[i * m + i] = 1.0F;
        for (NuvSizeT k = 0; k != m; ++k)
            columns[i * m + k] = ElementOf(form, i, labels[k]);
    }
    (void)ReduceToIdentity(inverse->kernels, columns.data(), found.data(), m);
    SetToIdentity(inverse, b);
    NuvFloat32 doubt = 0.0F;
    for (NuvUint k = 0; k != m; ++k)
    {
        bool isUnit = true;
        for (NuvSizeT i = 0; i != m; ++i)
        {
            doubt += found[i * m + k] * 0.0F;
            isUnit = isUnit && found[i * m + k] == (i == k ? 1.0F : 0.0F);
        }
        if (isUnit)
            continue;
        NuvFloat32* const column = StoreColumn(inverse, k);
        for (NuvSizeT i = 0; i != m; ++i)
            column[i] = found[i * m + k];
    }
    return doubt == 0.0F;
}
}  // namespace nuv
