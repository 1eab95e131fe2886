/// @file
/// The doubly linked list: a ring of nodes through a sentinel that is part of the list's record, so
/// that a list must not be moved bit by bit. Needs NUV_SELF and NUV_ELEMENT.
///
/// Every node is one block. A position stays valid until its element is erased; splicing moves
/// nodes, never elements. An element's copy that fails inside is not reported: the node is linked
/// all the same, its names left empty.
#include "Nuv/Templates/NuvTemplateBegin.h"

#define NUV_LINK NUV_OF_ELEMENT(NuvListNodeBase__)
#define NUV_LINK_POINTER NUV_OF_ELEMENT(NuvListNodePtr__)
#define NUV_NODE NUV_OF_ELEMENT(NuvListNode__)

typedef struct NUV_LINK NUV_LINK;
typedef struct NUV_NODE NUV_NODE;
typedef union NUV_LINK_POINTER NUV_LINK_POINTER;

/// One word, read as a node (`n`) or, for the sentinel, as a link record alone (`b`).
union NUV_LINK_POINTER
{
    NUV_NODE* n;  ///< as a node
    NUV_LINK* b;  ///< as a link record
};

/// What a node and the sentinel have in common.
struct NUV_LINK
{
    NUV_LINK_POINTER prev;  ///< the one before, round the ring
    NUV_LINK_POINTER next;  ///< the one behind
};

/// An element in the ring.
struct NUV_NODE
{
    NUV_LINK b;       ///< its neighbours
    NUV_ELEMENT obj;  ///< the element
};

typedef struct NUV_SELF NUV_SELF;

/// The list's record; the nodes point to it.
struct NUV_SELF
{
    /// The sentinel: `node.next` is the first node, `node.prev` the last one; both are the sentinel
    /// while the list is empty.
    NUV_LINK node;
    /// Of the nodes.
    NuvAllocator* allocator;
};

///@{
/// A position; valid until its element is erased.
typedef NUV_LINK* NUV_OP(Iterator);
typedef const NUV_LINK* NUV_OP(ConstIterator);
typedef NUV_LINK* NUV_OP(ReverseIterator);
typedef const NUV_LINK* NUV_OP(ConstReverseIterator);
///@}

#define NUV_ITERATOR NUV_OP(Iterator)
#define NUV_CONTENT NUV_ELEMENT
#include "Nuv/Templates/NuvListIterator.decl.h"

#define NUV_ITERATOR NUV_OP(ConstIterator)
#define NUV_CONTENT const NUV_ELEMENT
#include "Nuv/Templates/NuvListIterator.decl.h"

#define NUV_ITERATOR NUV_OP(ReverseIterator)
#define NUV_CONTENT NUV_ELEMENT
#include "Nuv/Templates/NuvListIterator.decl.h"

#define NUV_ITERATOR NUV_OP(ConstReverseIterator)
#define NUV_CONTENT const NUV_ELEMENT
#include "Nuv/Templates/NuvListIterator.decl.h"

/// Makes an empty list.
/// @return `l_`.
NUV_API NUV_SELF* NUV_OP(ConstructDefault)(NUV_SELF* l_, NuvAllocator* a_);
/// Makes `n_` copies of `*t_`.
/// @return `l_`, or null when a node is refused; `l_` is then empty.
NUV_API NUV_SELF* NUV_OP(ConstructN)(NUV_SELF* l_, NuvSizeT n_, const NUV_ELEMENT* t_,
                                     NuvAllocator* a_);
/// Copies [first_, last_).
/// @return `l_`, or null when a node is refused; `l_` is then empty.
NUV_API NUV_SELF* NUV_OP(ConstructRange)(NUV_SELF* l_, NUV_OP(ConstIterator) first_,
                                         NUV_OP(ConstIterator) last_, NuvAllocator* a_);
/// Copies the elements of `src_`, on the allocator of `src_`.
/// @return `l_`, or null when a node is refused; `l_` is then empty.
NUV_API NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* l_, const NUV_SELF* src_);
/// Destroys every element and frees every node, front to back.
NUV_API void NUV_OP(Destruct)(NUV_SELF* l_);
/// Gives `l_` the elements of `src_`: assigned to the elements that `l_` has, appended or erased
/// for the rest.
/// @return `l_`, or null when a node is refused; what was appended stays.
NUV_API NUV_SELF* NUV_OP(Assign)(NUV_SELF* l_, const NUV_SELF* src_);
/// Exchanges the nodes and the allocators of two lists.
/// @return true.
NUV_API NuvBool NUV_OP(Swap)(NUV_SELF* a_, NUV_SELF* b_);

/// @return the allocator of the nodes.
NUV_API NuvAllocator* NUV_OP(GetAllocator)(const NUV_SELF* l_);
/// @return the bytes of one node.
NUV_API NuvSizeT NUV_OP(GetNodeSize)(void);

/// @return the position of the first element, or behind the last one; R... in the opposite
///@{
/// direction. Both are the same in an empty list.
NUV_API NUV_OP(Iterator) NUV_OP(Begin)(NUV_SELF* l_);
NUV_API NUV_OP(ConstIterator) NUV_OP(BeginConst)(const NUV_SELF* l_);
NUV_API NUV_OP(Iterator) NUV_OP(End)(NUV_SELF* l_);
NUV_API NUV_OP(ConstIterator) NUV_OP(EndConst)(const NUV_SELF* l_);
NUV_API NUV_OP(ReverseIterator) NUV_OP(RBegin)(NUV_SELF* l_);
NUV_API NUV_OP(ConstReverseIterator) NUV_OP(RBeginConst)(const NUV_SELF* l_);
NUV_API NUV_OP(ReverseIterator) NUV_OP(REnd)(NUV_SELF* l_);
NUV_API NUV_OP(ConstReverseIterator) NUV_OP(REndConst)(const NUV_SELF* l_);
///@}

/// @return the number of elements, counted by a walk.
NUV_API NuvSizeT NUV_OP(Size)(const NUV_SELF* l_);
/// @return the largest NuvSizeT.
NUV_API NuvSizeT NUV_OP(MaxSize)(const NUV_SELF* l_);
/// @return whether there is no element.
NUV_API NuvBool NUV_OP(Empty)(const NUV_SELF* l_);

/// @return the first element; not checked.
///@{
NUV_API NUV_ELEMENT* NUV_OP(Front)(NUV_SELF* l_);
NUV_API const NUV_ELEMENT* NUV_OP(FrontConst)(const NUV_SELF* l_);
///@}
/// @return the last element; not checked.
///@{
NUV_API NUV_ELEMENT* NUV_OP(Back)(NUV_SELF* l_);
NUV_API const NUV_ELEMENT* NUV_OP(BackConst)(const NUV_SELF* l_);
///@}

/// Links a copy of `*t_` before `pos_`.
/// @return the new node, or the exceptional iterator when it is refused.
NUV_API NUV_OP(Iterator) NUV_OP(Insert)(NUV_SELF* l_, NUV_OP(Iterator) pos_, const NUV_ELEMENT* t_);
/// Links `n` copies of `*t_` before `pos_`.
/// @return false when a node is refused; those already linked stay.
NUV_API NuvBool NUV_OP(InsertN)(NUV_SELF* l_, NUV_OP(Iterator) pos_, NuvSizeT n,
                                const NUV_ELEMENT* t_);
/// Links copies of [first_, last_) before `pos_`, in order.
/// @return false when a node is refused; those already linked stay.
NUV_API NuvBool NUV_OP(InsertRange)(NUV_SELF* l_, NUV_OP(Iterator) pos_,
                                    NUV_OP(ConstIterator) first_, NUV_OP(ConstIterator) last_);
/// Removes one element.
/// @return the node that followed it.
NUV_API NUV_OP(Iterator) NUV_OP(Erase)(NUV_SELF* l_, NUV_OP(Iterator) pos_);
/// Removes [first_, last_).
/// @return `last_`.
NUV_API NUV_OP(Iterator)
    NUV_OP(EraseRange)(NUV_SELF* l_, NUV_OP(Iterator) first_, NUV_OP(Iterator) last_);
/// Destroys every element and frees every node, front to back.
NUV_API void NUV_OP(Clear)(NUV_SELF* l_);
/// Makes the size `n_`: copies of `*t_` are appended, or the elements from position `n_` on erased.
/// @return false when a node is refused; those already appended stay.
NUV_API NuvBool NUV_OP(Resize)(NUV_SELF* l_, NuvSizeT n_, const NUV_ELEMENT* t_);
/// @return false when the node is refused.
NUV_API NuvBool NUV_OP(PushFront)(NUV_SELF* l_, const NUV_ELEMENT* t_);
/// @return false when the node is refused.
NUV_API NuvBool NUV_OP(PushBack)(NUV_SELF* l_, const NUV_ELEMENT* t_);
/// Removes the first element; not checked.
NUV_API void NUV_OP(PopFront)(NUV_SELF* l_);
/// Removes the last element; not checked.
NUV_API void NUV_OP(PopBack)(NUV_SELF* l_);
/// Moves the nodes [first_, last_) of `src_`, which may be `l_`, to before `pos`; the nodes keep
/// their block and allocator. Nothing happens when the range is empty or `pos` is one of its two
/// ends.
NUV_API void NUV_OP(Splice)(NUV_SELF* l_, NUV_OP(Iterator) pos, NUV_SELF* src_,
                            NUV_OP(Iterator) first_, NUV_OP(Iterator) last_);
/// Moves the one node `it_` of `src_` to before `pos`.
NUV_API void NUV_OP(SpliceOne)(NUV_SELF* l_, NUV_OP(Iterator) pos, NUV_SELF* src_,
                               NUV_OP(Iterator) it_);
/// Does nothing: the place for a diagnostic printer.
NUV_API void NUV_OP(Dump)(const NUV_SELF* l_, const char* name, unsigned int tabStop);

/// Makes a node that is not linked yet; internal.
/// @return the node, or null when it is refused.
NUV_API NUV_NODE* NUV_OP(CreateNode_)(NUV_SELF* l_, const NUV_ELEMENT* t_);
/// Links `node` before `pos`; internal.
NUV_API void NUV_OP(HookNode_)(NUV_LINK* node, NUV_LINK* pos);
/// Takes `node` out of its ring; its own links stay as they were; internal.
NUV_API void NUV_OP(UnhookNode_)(NUV_LINK* node);

#undef NUV_LINK
#undef NUV_LINK_POINTER
#undef NUV_NODE
#include "Nuv/Templates/NuvTemplateEnd.h"
