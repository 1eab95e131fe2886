// The doubly linked list, defined.
#include "Nuv/Templates/NuvElement.hpp"
#include "Nuv/Templates/NuvRing.hpp"
#include "Nuv/Templates/NuvTemplateBegin.h"
#include "Nuv/Templates/NuvStep.hpp"
#include "Nuv/Utils/NuvAllocatorInline.h"

#define NUV_LINK NUV_OF_ELEMENT(NuvListNodeBase__)
#define NUV_NODE NUV_OF_ELEMENT(NuvListNode__)

#define NUV_ITERATOR NUV_OP(Iterator)
#define NUV_CONTENT NUV_ELEMENT
#define NUV_STEP nuv::RingStep<nuv::Direction::Forward, NUV_NODE>
#include "Nuv/Templates/NuvListIterator.inl"

#define NUV_ITERATOR NUV_OP(ConstIterator)
#define NUV_CONTENT const NUV_ELEMENT
#define NUV_STEP nuv::RingStep<nuv::Direction::Forward, NUV_NODE>
#include "Nuv/Templates/NuvListIterator.inl"

#define NUV_ITERATOR NUV_OP(ReverseIterator)
#define NUV_CONTENT NUV_ELEMENT
#define NUV_STEP nuv::RingStep<nuv::Direction::Reverse, NUV_NODE>
#include "Nuv/Templates/NuvListIterator.inl"

#define NUV_ITERATOR NUV_OP(ConstReverseIterator)
#define NUV_CONTENT const NUV_ELEMENT
#define NUV_STEP nuv::RingStep<nuv::Direction::Reverse, NUV_NODE>
#include "Nuv/Templates/NuvListIterator.inl"

NUV_SELF* NUV_OP(ConstructDefault)(NUV_SELF* l_, NuvAllocator* a_)
{
    nuv::CloseRing(&l_->node);
    l_->allocator = a_;
    return l_;
}

NUV_SELF* NUV_OP(ConstructN)(NUV_SELF* l_, NuvSizeT n_, const NUV_ELEMENT* t_, NuvAllocator* a_)
{
    NUV_OP(ConstructDefault)(l_, a_);
    if (NUV_OP(InsertN)(l_, &l_->node, n_, t_))
        return l_;
    NUV_OP(Clear)(l_);
    return nullptr;
}

NUV_SELF* NUV_OP(ConstructRange)(NUV_SELF* l_, NUV_OP(ConstIterator) first_,
                                 NUV_OP(ConstIterator) last_, NuvAllocator* a_)
{
    NUV_OP(ConstructDefault)(l_, a_);
    if (NUV_OP(InsertRange)(l_, &l_->node, first_, last_))
        return l_;
    NUV_OP(Clear)(l_);
    return nullptr;
}

NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* l_, const NUV_SELF* src_)
{
    return NUV_OP(ConstructRange)(l_, src_->node.next.b, &src_->node, src_->allocator);
}

void NUV_OP(Destruct)(NUV_SELF* l_)
{
    NUV_OP(Clear)(l_);
}

NUV_SELF* NUV_OP(Assign)(NUV_SELF* l_, const NUV_SELF* src_)
{
    // same bits: assigning each element to itself changes nothing and asks for nothing
    if (l_ == src_)
        return l_;
    NUV_LINK* to = l_->node.next.b;
    const NUV_LINK* from = src_->node.next.b;
    while (to != &l_->node && from != &src_->node)
    {
        NUV_JOIN(NUV_ELEMENT, Assign)
        (NUV_OP(IteratorContentOf)(&to),
         NUV_OP(ConstIteratorContentOf)(&from));  // a failed copy is unreported by contract
        to = to->next.b;
        from = from->next.b;
    }
    NUV_OP(EraseRange)(l_, to, &l_->node);
    return NUV_OP(InsertRange)(l_, &l_->node, from, &src_->node) ? l_ : nullptr;
}

NuvBool NUV_OP(Swap)(NUV_SELF* a_, NUV_SELF* b_)
{
    nuv::ExchangeRings(&a_->node, &b_->node);
    nuv::Exchange(&a_->allocator, &b_->allocator);
    return NUV_TRUE;
}

NuvAllocator* NUV_OP(GetAllocator)(const NUV_SELF* l_)
{
    return l_->allocator;
}

NuvSizeT NUV_OP(GetNodeSize)(void)
{
    return sizeof(NUV_NODE);
}

NUV_OP(Iterator) NUV_OP(Begin)(NUV_SELF* l_)
{
    return l_->node.next.b;
}

NUV_OP(ConstIterator) NUV_OP(BeginConst)(const NUV_SELF* l_)
{
    return l_->node.next.b;
}

NUV_OP(Iterator) NUV_OP(End)(NUV_SELF* l_)
{
    return &l_->node;
}

NUV_OP(ConstIterator) NUV_OP(EndConst)(const NUV_SELF* l_)
{
    return &l_->node;
}

NUV_OP(ReverseIterator) NUV_OP(RBegin)(NUV_SELF* l_)
{
    return &l_->node;
}

NUV_OP(ConstReverseIterator) NUV_OP(RBeginConst)(const NUV_SELF* l_)
{
    return &l_->node;
}

NUV_OP(ReverseIterator) NUV_OP(REnd)(NUV_SELF* l_)
{
    return l_->node.next.b;
}

NUV_OP(ConstReverseIterator) NUV_OP(REndConst)(const NUV_SELF* l_)
{
    return l_->node.next.b;
}

NuvSizeT NUV_OP(Size)(const NUV_SELF* l_)
{
    NuvSizeT size = 0;
    for (const NUV_LINK* node = l_->node.next.b; node != &l_->node; node = node->next.b)
        ++size;
    return size;
}

NuvSizeT NUV_OP(MaxSize)(const NUV_SELF*)
{
    return UINT64_MAX;
}

NuvBool NUV_OP(Empty)(const NUV_SELF* l_)
{
    return nuv::AsNuvBool(nuv::IsLone(&l_->node));
}

NUV_ELEMENT* NUV_OP(Front)(NUV_SELF* l_)
{
    return &l_->node.next.n->obj;
}

const NUV_ELEMENT* NUV_OP(FrontConst)(const NUV_SELF* l_)
{
    return &l_->node.next.n->obj;
}

NUV_ELEMENT* NUV_OP(Back)(NUV_SELF* l_)
{
    return &l_->node.prev.n->obj;
}

const NUV_ELEMENT* NUV_OP(BackConst)(const NUV_SELF* l_)
{
    return &l_->node.prev.n->obj;
}

NUV_OP(Iterator) NUV_OP(Insert)(NUV_SELF* l_, NUV_OP(Iterator) pos_, const NUV_ELEMENT* t_)
{
    NUV_NODE* const node = NUV_OP(CreateNode_)(l_, t_);
    if (!node)
        return nullptr;
    NUV_OP(HookNode_)(&node->b, pos_);
    return &node->b;
}

NuvBool NUV_OP(InsertN)(NUV_SELF* l_, NUV_OP(Iterator) pos_, NuvSizeT n, const NUV_ELEMENT* t_)
{
    for (; n != 0; --n)
        if (!NUV_OP(Insert)(l_, pos_, t_))
            return NUV_FALSE;
    return NUV_TRUE;
}

NuvBool NUV_OP(InsertRange)(NUV_SELF* l_, NUV_OP(Iterator) pos_, NUV_OP(ConstIterator) first_,
                            NUV_OP(ConstIterator) last_)
{
    // The copies gather in a ring of their own: `pos_` may lie inside the range, which must not
    // meet them.
    NUV_LINK copies;
    nuv::CloseRing(&copies);
    bool isDone = true;
    for (; isDone && first_ != last_; first_ = first_->next.b)
        isDone = NUV_OP(Insert)(l_, &copies, NUV_OP(ConstIteratorContentOf)(&first_)) != nullptr;
    nuv::TransferAll(pos_, &copies);
    return nuv::AsNuvBool(isDone);
}

NUV_OP(Iterator) NUV_OP(Erase)(NUV_SELF* l_, NUV_OP(Iterator) pos_)
{
    NUV_LINK* const following = pos_->next.b;
    NUV_OP(UnhookNode_)(pos_);
    nuv::Destruct(NUV_OP(IteratorContentOf)(&pos_));
    NuvAllocatorDeallocate(l_->allocator, pos_, sizeof(NUV_NODE));
    return following;
}

NUV_OP(Iterator) NUV_OP(EraseRange)(NUV_SELF* l_, NUV_OP(Iterator) first_, NUV_OP(Iterator) last_)
{
    while (first_ != last_)
        first_ = NUV_OP(Erase)(l_, first_);
    return last_;
}

void NUV_OP(Clear)(NUV_SELF* l_)
{
    NUV_OP(EraseRange)(l_, l_->node.next.b, &l_->node);
}

NuvBool NUV_OP(Resize)(NUV_SELF* l_, NuvSizeT n_, const NUV_ELEMENT* t_)
{
    NuvSizeT size = 0;
    NUV_LINK* node = l_->node.next.b;
    for (; size != n_ && node != &l_->node; node = node->next.b)
        ++size;
    NUV_OP(EraseRange)(l_, node, &l_->node);
    return NUV_OP(InsertN)(l_, &l_->node, n_ - size, t_);
}

NuvBool NUV_OP(PushFront)(NUV_SELF* l_, const NUV_ELEMENT* t_)
{
    return nuv::AsNuvBool(NUV_OP(Insert)(l_, l_->node.next.b, t_) != nullptr);
}

NuvBool NUV_OP(PushBack)(NUV_SELF* l_, const NUV_ELEMENT* t_)
{
    return nuv::AsNuvBool(NUV_OP(Insert)(l_, &l_->node, t_) != nullptr);
}

void NUV_OP(PopFront)(NUV_SELF* l_)
{
    NUV_OP(Erase)(l_, l_->node.next.b);
}

void NUV_OP(PopBack)(NUV_SELF* l_)
{
    NUV_OP(Erase)(l_, l_->node.prev.b);
}

void NUV_OP(Splice)(NUV_SELF*, NUV_OP(Iterator) pos, NUV_SELF*, NUV_OP(Iterator) first_,
                    NUV_OP(Iterator) last_)
{
    nuv::Transfer(pos, first_, last_);
}

void NUV_OP(SpliceOne)(NUV_SELF*, NUV_OP(Iterator) pos, NUV_SELF*, NUV_OP(Iterator) it_)
{
    nuv::Transfer(pos, it_, it_->next.b);
}

void NUV_OP(Dump)(const NUV_SELF*, const char*, unsigned int) {}

NUV_NODE* NUV_OP(CreateNode_)(NUV_SELF* l_, const NUV_ELEMENT* t_)
{
    NUV_NODE* const node =
        static_cast<NUV_NODE*>(NuvAllocatorAllocate(l_->allocator, sizeof(NUV_NODE)));
    // A failed copy is unreported by contract.
    if (node)
        (void)NUV_JOIN(NUV_ELEMENT, ConstructCopy)(&node->obj, t_);
    return node;
}

void NUV_OP(HookNode_)(NUV_LINK* node, NUV_LINK* pos)
{
    node->next.b = pos;
    node->prev.b = pos->prev.b;
    pos->prev.b->next.b = node;
    pos->prev.b = node;
}

void NUV_OP(UnhookNode_)(NUV_LINK* node)
{
    node->prev.b->next.b = node->next.b;
    node->next.b->prev.b = node->prev.b;
}

#undef NUV_LINK
#undef NUV_NODE
#include "Nuv/Templates/NuvTemplateEnd.h"
