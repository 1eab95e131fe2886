/// @file
/// The dense matrix, row after row in one block. Needs NUV_SELF and NUV_ELEMENT.
///
/// Element (row, col) is data[row * nc + col]; the count nr × nc is formed in 32 bits. An empty
/// matrix (0 × 0) holds no block. A matrix whose block was refused keeps its shape with null data:
/// it may be resized, assigned to and destructed, and operations on it change nothing. Copies and
/// assignments carry the source's allocator with them.
#include "Nuv/Templates/NuvTemplateBegin.h"

typedef struct NUV_SELF NUV_SELF;

/// The matrix's record.
struct NUV_SELF
{
    /// Of the block.
    NuvAllocator* allocator;
    /// Rows.
    NuvUint nr;
    /// Columns.
    NuvUint nc;
    /// nr × nc elements, row after row; null where there are none, or storage was refused.
    NUV_ELEMENT* data;
};

/// Makes an empty matrix.
/// @return `x`.
NUV_API NUV_SELF* NUV_OP(ConstructDefault)(NUV_SELF* x, NuvAllocator* a);
/// Makes a matrix whose elements are not set.
/// @return `x`, or null when exactly one dimension is 0 (`x` is then untouched) or the block is
/// refused.
NUV_API NUV_SELF* NUV_OP(Construct)(NUV_SELF* x, NuvUint numRows, NuvUint numCols, NuvAllocator* a);
/// @return `x`, or null when `dimension` is 0 (`x` is then untouched) or the block is refused.
NUV_API NUV_SELF* NUV_OP(ConstructIdentity)(NUV_SELF* x, NuvUint dimension, NuvAllocator* a);
/// Copies `y`, on the allocator of `y`.
/// @return `x`, or null when the block is refused.
NUV_API NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y);
/// Copies the block of `y` that starts at (sourceRow, sourceCol), on the allocator of `y`; `a` is
/// not used. An empty block may keep one dimension.
/// @return `x`, or null when the block reaches beyond `y` (`x` is then untouched) or storage is
/// refused.
NUV_API NUV_SELF* NUV_OP(ConstructCopyRange)(NUV_SELF* x, const NUV_SELF* y, NuvUint sourceRow,
                                             NuvUint sourceCol, NuvUint numRows, NuvUint numCols,
                                             NuvAllocator* a);
/// Sets every element to 0.
NUV_API void NUV_OP(Reset)(NUV_SELF* x);
/// Gives the block back; `x` is then an empty matrix on the same allocator.
NUV_API void NUV_OP(Destruct)(NUV_SELF* x);
/// Gives `x` the shape, the elements and the allocator of `y`. A block of the right shape is kept;
/// another is given back through the allocator of `y`.
/// @return `x`, or null when the block is refused.
NUV_API NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y);
/// Copies the block of `y` that starts at (ySourceRow, ySourceCol) to (xSourceRow, xSourceCol) in
/// `x`, row by row.
/// @return `x`, or null when the block reaches beyond either matrix; nothing is copied then.
NUV_API NUV_SELF* NUV_OP(CopyRange)(NUV_SELF* x, const NUV_SELF* y, NuvUint xSourceRow,
                                    NuvUint xSourceCol, NuvUint ySourceRow, NuvUint ySourceCol,
                                    NuvUint numRows, NuvUint numCols);
/// Sets the shape. The elements stay when the shape does; otherwise they are not set.
/// @return `x`, or null when exactly one dimension is 0 (`x` is then untouched) or the block is
/// refused.
NUV_API NUV_SELF* NUV_OP(Resize)(NUV_SELF* x, NuvUint rows, NuvUint cols);
/// Exchanges two matrices of one shape, allocators included, by way of a copy.
/// @return false when the shapes differ; nothing has changed then.
NUV_API NuvBool NUV_OP(Swap)(NUV_SELF* x, NUV_SELF* y);
/// Exchanges row `rowX` of `x` with row `rowY` of `y`.
/// @return false when the widths differ or a row does not exist; nothing has changed then.
NUV_API NuvBool NUV_OP(SwapRow)(NUV_SELF* x, NUV_SELF* y, NuvUint rowX, NuvUint rowY);
/// Exchanges column `columnX` of `x` with column `columnY` of `y`.
/// @return false when the heights differ or a column does not exist; nothing has changed then.
NUV_API NuvBool NUV_OP(SwapColumn)(NUV_SELF* x, NUV_SELF* y, NuvUint columnX, NuvUint columnY);
/// @return the element; indices are not checked; 0 where storage was refused.
NUV_API NUV_ELEMENT NUV_OP(At)(const NUV_SELF* x, NuvUint row, NuvUint col);
/// Stores `val`; indices are not checked.
NUV_API void NUV_OP(SetVal)(NUV_SELF* x, NuvUint row, NuvUint col, NUV_ELEMENT val);
/// @return the number of rows.
NUV_API NuvUint NUV_OP(GetNumRows)(const NUV_SELF* x);
/// @return the number of columns.
NUV_API NuvUint NUV_OP(GetNumColumns)(const NUV_SELF* x);
/// @return the allocator of the block.
NUV_API NuvAllocator* NUV_OP(GetAllocator)(const NUV_SELF* x);
/// @return whether shapes and elements agree, bit for bit.
NUV_API NuvBool NUV_OP(Equal)(const NUV_SELF* x, const NUV_SELF* y);
/// @return false: matrices have no order.
NUV_API NuvBool NUV_OP(Less)(const NUV_SELF* x, const NUV_SELF* y);
/// result = x + y; `result` may be an operand.
/// @return false when the shapes differ; `result` is then untouched.
NUV_API NuvBool NUV_OP(Add)(const NUV_SELF* x, const NUV_SELF* y, NUV_SELF* result);
/// result = x · y. Each element is summed from +0 in increasing index of the inner dimension, every
/// product rounded before it is added. `result` must not be an operand.
/// @return false when x.nc is not y.nr; `result` is then untouched.
NUV_API NuvBool NUV_OP(Multiply)(const NUV_SELF* x, const NUV_SELF* y, NUV_SELF* result);
/// result = x · y for a number y; `result` may be `x`.
/// @return true.
NUV_API NuvBool NUV_OP(MultiplyScalar)(const NUV_SELF* x, NUV_ELEMENT y, NUV_SELF* result);
/// result = xᵀ; `result` must not be `x`.
/// @return true.
NUV_API NuvBool NUV_OP(Transpose)(const NUV_SELF* x, NUV_SELF* result);
/// Does nothing: the place for a diagnostic printer.
NUV_API void NUV_OP(Dump)(const NUV_SELF* x, const char* name, unsigned int tabStop);

#include "Nuv/Templates/NuvTemplateEnd.h"
