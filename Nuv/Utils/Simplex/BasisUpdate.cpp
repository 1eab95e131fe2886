// The update of the basis inverse as a function of its own. It takes the definition by its word,
// for any numbers.
#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Simplex/DenseIteration.h"
#include "Nuv/Utils/Simplex/Phases.h"

namespace nuv
{
namespace
{
/// The working storage of an update, and the block that stays.
struct UpdateStorage
{
    Workspace workspace;
    Workspace leftover;
    NuvFloat32* column;
    NuvFloat32* direction;
    NuvMatrix_NuvFloat32 eta;
};

NuvSizeT LayOut(UpdateStorage* x, NuvUint m, void* block)
{
    Cutter cutter(block);
    cutter.Take(&x->column, m);
    cutter.Take(&x->direction, m);
    cutter.Take(&x->eta.data, static_cast<NuvSizeT>(m) * m);
    return cutter.BytesNeeded();
}

bool TakeStorage(UpdateStorage* x, NuvUint m, NuvAllocator* allocator)
{
    const NuvSizeT square = static_cast<NuvSizeT>(m) * m * sizeof(NuvFloat32);
    if (!TakeWorkspace(&x->leftover, allocator, square))
        return false;
    if (!TakeWorkspace(&x->workspace, allocator, LayOut(x, m, nullptr)))
    {
        GiveBack(&x->leftover);
        return false;
    }
    (void)LayOut(x, m, x->workspace.block);
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
    if (!nuv::HasShapes(A, Ab_inv, k, i) || !nuv::TakeStorage(&storage, m, Ab_inv->allocator))
        return NUV_FALSE;
    for (NuvUint row = 0; row != m; ++row)
        storage.column[row] = nuv::RowOf(A, row)[k];
    nuv::Multiply(Ab_inv->data, storage.column, storage.direction, m, m, 1);
    nuv::FormEtaMatrix(storage.direction, i, m, storage.eta.data);
    NuvMatrix_NuvFloat32Multiply(&storage.eta, Ab_inv, result);
    nuv::GiveBack(&storage.workspace);
    const bool isUpdated = nuv::IsStored(result);
    if (!isUpdated)
        nuv::GiveBack(&storage.leftover);
    return isUpdated ? NUV_TRUE : NUV_FALSE;
}
