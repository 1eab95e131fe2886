/// @file
/// The growable array: elements side by side in one block. Needs NUV_SELF and NUV_ELEMENT.
///
/// The elements are [begin, end), the block is [begin, endBuf); an array without a block holds
/// three null pointers. A block has exactly the capacity that was asked for. Positions and indices
/// are not checked. An element given to PushBack, Insert, InsertN, InsertRange or Resize may be one
/// of the array's own.
#include "Nuv/Templates/NuvTemplateBegin.h"

typedef struct NUV_SELF NUV_SELF;

/// The array's record, with the invariants above.
struct NUV_SELF
{
    NuvAllocator* allocator;  ///< of the block
    NUV_ELEMENT* begin;       ///< the first element
    NUV_ELEMENT* end;         ///< behind the last element
    NUV_ELEMENT* endBuf;      ///< behind the block
};

///@{
/// Of counts and indices, and of distances between positions.
typedef NuvSizeT NUV_OP(SizeType);
typedef NuvDistanceT NUV_OP(DifferenceType);
///@}
///@{
/// A position; valid until the array grows, or loses an element before it.
typedef NUV_ELEMENT* NUV_OP(Iterator);
typedef const NUV_ELEMENT* NUV_OP(ConstIterator);
typedef NUV_ELEMENT* NUV_OP(ReverseIterator);
typedef const NUV_ELEMENT* NUV_OP(ConstReverseIterator);
///@}

#define NUV_ITERATOR NUV_OP(Iterator)
#define NUV_CONTENT NUV_ELEMENT
#include "Nuv/Templates/NuvArrayIterator.decl.h"

#define NUV_ITERATOR NUV_OP(ConstIterator)
#define NUV_CONTENT const NUV_ELEMENT
#include "Nuv/Templates/NuvArrayIterator.decl.h"

#define NUV_ITERATOR NUV_OP(ReverseIterator)
#define NUV_CONTENT NUV_ELEMENT
#include "Nuv/Templates/NuvArrayIterator.decl.h"

#define NUV_ITERATOR NUV_OP(ConstReverseIterator)
#define NUV_CONTENT const NUV_ELEMENT
#include "Nuv/Templates/NuvArrayIterator.decl.h"

/// Makes an empty array without a block.
/// @return `x`.
NUV_API NUV_SELF* NUV_OP(ConstructDefault)(NUV_SELF* x, NuvAllocator* a);

/// Makes `n` copies of `*t`, in a block of exactly that many.
/// @return `x`, or null when the block or a copy is refused; `x` is then empty.
NUV_API NUV_SELF* NUV_OP(ConstructN)(NUV_SELF* x, NUV_OP(SizeType) n, const NUV_ELEMENT* t,
                                     NuvAllocator* a);

/// Copies [first, last), in a block of exactly that many.
/// @return `x`, or null when the block or a copy is refused; `x` is then empty.
NUV_API NUV_SELF* NUV_OP(ConstructRange)(NUV_SELF* x, NUV_OP(ConstIterator) first,
                                         NUV_OP(ConstIterator) last, NuvAllocator* a);

/// Copies the elements of `y`, on the allocator of `y`, in a block of exactly that many.
/// @return `x`, or null when the block or a copy is refused; `x` is then empty.
NUV_API NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y);

/// Destroys the elements, the last one first, and gives the block back.
NUV_API void NUV_OP(Destruct)(NUV_SELF* x);

/// Gives `x` the elements of `y`. `x` keeps its allocator, and its block when that is large enough.
/// @return `x`, or null when a block or a copy is refused; `x` is then empty, without a block.
NUV_API NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y);

/// Exchanges the elements. Arrays on one allocator exchange their blocks; otherwise each keeps its
/// allocator, and a new block is taken from that of `x` for the longer sequence, whichever array
/// holds it then.
/// @return false when that block is refused; nothing has changed then.
NUV_API NuvBool NUV_OP(Swap)(NUV_SELF* x, NUV_SELF* y);

/// Destroys all elements; the block stays.
NUV_API void NUV_OP(Clear)(NUV_SELF* x);

/// @return the allocator of the block.
NUV_API NuvAllocator* NUV_OP(GetAllocator)(const NUV_SELF* x);
/// @return whether there is no element.
NUV_API NuvBool NUV_OP(Empty)(const NUV_SELF* x);
/// @return the number of elements.
NUV_API NUV_OP(SizeType) NUV_OP(Size)(const NUV_SELF* x);
/// @return how many elements the block has room for.
NUV_API NUV_OP(SizeType) NUV_OP(Capacity)(const NUV_SELF* x);
/// @return the largest count whose bytes can be counted in 32 bits.
NUV_API NUV_OP(SizeType) NUV_OP(MaxSize)(void);

/// @return the position of the first element, or behind the last one; R... in the opposite
///@{
/// direction. Both are the same in an empty array.
NUV_API NUV_OP(Iterator) NUV_OP(Begin)(NUV_SELF* x);
NUV_API NUV_OP(ConstIterator) NUV_OP(BeginConst)(const NUV_SELF* x);
NUV_API NUV_OP(Iterator) NUV_OP(End)(NUV_SELF* x);
NUV_API NUV_OP(ConstIterator) NUV_OP(EndConst)(const NUV_SELF* x);
NUV_API NUV_OP(ReverseIterator) NUV_OP(RBegin)(NUV_SELF* x);
NUV_API NUV_OP(ConstReverseIterator) NUV_OP(RBeginConst)(const NUV_SELF* x);
NUV_API NUV_OP(ReverseIterator) NUV_OP(REnd)(NUV_SELF* x);
NUV_API NUV_OP(ConstReverseIterator) NUV_OP(REndConst)(const NUV_SELF* x);
///@}

/// @return the element at index `n`, from 0; not checked.
///@{
NUV_API NUV_ELEMENT* NUV_OP(At)(NUV_SELF* x, NUV_OP(SizeType) n);
NUV_API const NUV_ELEMENT* NUV_OP(AtConst)(const NUV_SELF* x, NUV_OP(SizeType) n);
///@}
/// @return the first or the last element; not checked.
///@{
NUV_API NUV_ELEMENT* NUV_OP(Front)(NUV_SELF* x);
NUV_API const NUV_ELEMENT* NUV_OP(FrontConst)(const NUV_SELF* x);
NUV_API NUV_ELEMENT* NUV_OP(Back)(NUV_SELF* x);
NUV_API const NUV_ELEMENT* NUV_OP(BackConst)(const NUV_SELF* x);
///@}

/// Makes room for `capacity` elements in all, exactly; never shrinks.
/// @return false when the block is refused; nothing has changed then.
NUV_API NuvBool NUV_OP(Reserve)(NUV_SELF* x, NUV_OP(SizeType) capacity);

/// Appends a copy of `*t`. A full array doubles first; one without a block takes room for 2.
/// @return false when the allocator has no room or the copy fails; `x` then holds what it held.
NUV_API NuvBool NUV_OP(PushBack)(NUV_SELF* x, const NUV_ELEMENT* t);

/// Removes the last element.
NUV_API void NUV_OP(PopBack)(NUV_SELF* x);

/// Inserts a copy of `*t` before `pos`, growing as PushBack does.
/// @return the position of the new element, or the exceptional iterator when a block or the copy is
/// refused.
NUV_API NUV_OP(Iterator) NUV_OP(Insert)(NUV_SELF* x, NUV_OP(Iterator) pos, const NUV_ELEMENT* t);

/// Inserts `n` copies of `*t` before `pos`. An array without room grows to the larger of what is
/// needed and twice its capacity (2 × `n` when it had none).
/// @return false when a block or a copy is refused; `x` then holds what it held.
NUV_API NuvBool NUV_OP(InsertN)(NUV_SELF* x, NUV_OP(Iterator) pos, NUV_OP(SizeType) n,
                                const NUV_ELEMENT* t);

/// Inserts copies of [first, last) before `pos`, growing as InsertN does.
/// @return false when a block or a copy is refused; `x` then holds what it held.
NUV_API NuvBool NUV_OP(InsertRange)(NUV_SELF* x, NUV_OP(Iterator) pos, NUV_OP(ConstIterator) first,
                                    NUV_OP(ConstIterator) last);

/// Removes the element at `pos`; those behind it move down.
/// @return `pos`, where the next element stands now.
NUV_API NUV_OP(Iterator) NUV_OP(Erase)(NUV_SELF* x, NUV_OP(Iterator) pos);

/// Removes [first, last); the elements behind move down.
/// @return `last`, as it was given.
NUV_API NUV_OP(Iterator)
    NUV_OP(EraseRange)(NUV_SELF* x, NUV_OP(Iterator) first, NUV_OP(Iterator) last);

/// Makes the size `n`, with copies of `*t` at the end when it grows; growing first reserves room
/// for the old and the new size together.
/// @return false when the block or a copy is refused; `x` then holds what it held.
NUV_API NuvBool NUV_OP(Resize)(NUV_SELF* x, NUV_OP(SizeType) n, const NUV_ELEMENT* t);

/// Does nothing: the place for a diagnostic printer.
NUV_API void NUV_OP(Dump)(const NUV_SELF* x, const char* name, unsigned int tabStop);

#include "Nuv/Templates/NuvTemplateEnd.h"
