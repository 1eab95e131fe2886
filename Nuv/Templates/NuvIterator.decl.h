/// @file
/// What every kind of iterator can do. A container includes this once per kind, with NUV_ITERATOR,
/// the kind's name, and NUV_CONTENT, its element type (const for the read-only kinds). An iterator
/// is a plain pointer; null is the exceptional one, which stands for no position.
#define NUV_ITERATOR_OP(name) NUV_JOIN(NUV_ITERATOR, name)

/// Does nothing: an iterator owns nothing.
NUV_API void NUV_ITERATOR_OP(Destruct)(NUV_ITERATOR* x);
/// @return `x`.
NUV_API NUV_ITERATOR* NUV_ITERATOR_OP(ConstructCopy)(NUV_ITERATOR* x, const NUV_ITERATOR* y);
/// Makes `x` exceptional.
/// @return `x`.
NUV_API NUV_ITERATOR* NUV_ITERATOR_OP(ConstructExceptional)(NUV_ITERATOR* x);
/// @return whether `x` stands for no position.
NUV_API NuvBool NUV_ITERATOR_OP(IsExceptional)(const NUV_ITERATOR* x);
/// @return `x`.
NUV_API NUV_ITERATOR* NUV_ITERATOR_OP(Assign)(NUV_ITERATOR* x, const NUV_ITERATOR* y);
/// Exchanges two positions.
/// @return true.
NUV_API NuvBool NUV_ITERATOR_OP(Swap)(NUV_ITERATOR* x, NUV_ITERATOR* y);
/// @return whether both are the same position.
NUV_API NuvBool NUV_ITERATOR_OP(Equal)(const NUV_ITERATOR* a, const NUV_ITERATOR* b);
/// In an array: whether `a` comes before `b` in the direction of the walk. In a list: an order of
/// addresses, by identity only.
NUV_API NuvBool NUV_ITERATOR_OP(Less)(const NUV_ITERATOR* a, const NUV_ITERATOR* b);
/// @return the element at the position.
///@{
NUV_API NUV_CONTENT* NUV_ITERATOR_OP(ContentOf)(const NUV_ITERATOR* it);
NUV_API const NUV_ELEMENT* NUV_ITERATOR_OP(ContentOfConst)(const NUV_ITERATOR* it);
///@}
/// Goes one element on in the direction of the walk.
NUV_API void NUV_ITERATOR_OP(Increment)(NUV_ITERATOR* it);
/// Goes one element back.
NUV_API void NUV_ITERATOR_OP(Decrement)(NUV_ITERATOR* it);
