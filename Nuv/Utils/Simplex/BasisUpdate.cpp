// The update of the basis inverse as a function of its own, as it is defined, for any numbers.
#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Utils/Kernels/DenseAlgebra.h"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Simplex/DenseIteration.h"

namespace nuv
{
namespace
{
/// The working storage of an update, and the block that it retains.
struct UpdateStorage
{
    Workspace workspace;
    Workspace retained;
    NuvFloat32* column;     /// [m]
    NuvFloat32* direction;  /// [m]
    NuvMatrix_NuvFloat32 eta;
};

NuvSizeT PlaceArrays(UpdateStorage* x, NuvUint m, void* block)
{
    WorkspaceLayout layout(block);
    layout.Place(m, &x->column, &x->direction);
    layout.Place(static_cast<NuvSizeT>(m) * m, &x->eta.data);
    return layout.BytesNeeded();
}

bool AllocateUpdate(UpdateStorage* x, NuvUint m, NuvAllocator* allocator)
{
    const NuvSizeT square = static_cast<NuvSizeT>(m) * m * sizeof(NuvFloat32);
    if (!AllocateWorkspace(&x->retained, allocator, square))
        return false;
    if (!AllocateWorkspace(&x->workspace, allocator, PlaceArrays(x, m, nullptr)))
    {
        FreeWorkspace(&x->retained);
        return false;
    }
    (void)PlaceArrays(x, m, x->workspace.block);
    x->eta.allocator = allocator;
    x->eta.nr = m;
    x->eta.nc = m;
    return true;
}

bool HasShapes(const NuvMatrix_NuvFloat32* A, const NuvMatrix_NuvFloat32* inverse, NuvUint k,
               NuvUint i)
{
    return IsStored(A) && IsStored(inverse) && inverse->nr == inverse->nc && i < inverse->nr &&
           inverse->nr <= A->nr && k < A->nc;
}
}  // namespace
}  // namespace nuv

NuvBool NuvRevisedSimplexAlogirthmBasisUpdate(const NuvMatrix_NuvFloat32* A,
                                              const NuvMatrix_NuvFloat32* Ab_inv, NuvUint k,
                                              NuvUint i, NuvUint, NuvMatrix_NuvFloat32* result)
{
    const NuvUint m = Ab_inv->nr;
    nuv::UpdateStorage storage;
    if (!nuv::HasShapes(A, Ab_inv, k, i) || !nuv::AllocateUpdate(&storage, m, Ab_inv->allocator))
        return NUV_FALSE;
    for (NuvUint row = 0; row != m; ++row)
        storage.column[row] = nuv::RowOf(A, row)[k];
    nuv::Multiply(Ab_inv->data, storage.column, storage.direction, m, m, 1);
    nuv::FormEtaMatrix(storage.direction, i, m, storage.eta.data);
    NuvMatrix_NuvFloat32Multiply(&storage.eta, Ab_inv, result);
    nuv::FreeWorkspace(&storage.workspace);
    const bool isUpdated = nuv::IsStored(result);
    if (!isUpdated)
        nuv::FreeWorkspace(&storage.retained);
    return isUpdated ? NUV_TRUE : NUV_FALSE;
}
