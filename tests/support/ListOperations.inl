// The operations of one list under common names. An include template, as those of the library:
// NUV_TEST_NAME is the type to define, NUV_SELF and NUV_ELEMENT are the instantiation's. Include it
// through Instantiations.hpp.
#include "Nuv/Templates/NuvTemplateBegin.h"

#define NUV_KIND_OP(name) NUV_JOIN(NUV_SELF, NUV_JOIN(NUV_KIND, name))

struct NUV_TEST_NAME
{
    using Container = NUV_SELF;
    using Element = NUV_ELEMENT;
    using Iterator = NUV_OP(Iterator);
    using ConstIterator = NUV_OP(ConstIterator);
    using Node = NUV_OF_ELEMENT(NuvListNode__);
    using Link = NUV_OF_ELEMENT(NuvListNodeBase__);
    using LinkPointer = NUV_OF_ELEMENT(NuvListNodePtr__);

    static constexpr auto ConstructDefault = NUV_OP(ConstructDefault);
    static constexpr auto ConstructN = NUV_OP(ConstructN);
    static constexpr auto ConstructRange = NUV_OP(ConstructRange);
    static constexpr auto ConstructCopy = NUV_OP(ConstructCopy);
    static constexpr auto Destruct = NUV_OP(Destruct);
    static constexpr auto Assign = NUV_OP(Assign);
    static constexpr auto Swap = NUV_OP(Swap);
    static constexpr auto GetAllocator = NUV_OP(GetAllocator);
    static constexpr auto GetNodeSize = NUV_OP(GetNodeSize);
    static constexpr auto Begin = NUV_OP(Begin);
    static constexpr auto BeginConst = NUV_OP(BeginConst);
    static constexpr auto End = NUV_OP(End);
    static constexpr auto EndConst = NUV_OP(EndConst);
    static constexpr auto RBegin = NUV_OP(RBegin);
    static constexpr auto RBeginConst = NUV_OP(RBeginConst);
    static constexpr auto REnd = NUV_OP(REnd);
    static constexpr auto REndConst = NUV_OP(REndConst);
    static constexpr auto Size = NUV_OP(Size);
    static constexpr auto MaxSize = NUV_OP(MaxSize);
    static constexpr auto Empty = NUV_OP(Empty);
    static constexpr auto Front = NUV_OP(Front);
    static constexpr auto FrontConst = NUV_OP(FrontConst);
    static constexpr auto Back = NUV_OP(Back);
    static constexpr auto BackConst = NUV_OP(BackConst);
    static constexpr auto Insert = NUV_OP(Insert);
    static constexpr auto InsertN = NUV_OP(InsertN);
    static constexpr auto InsertRange = NUV_OP(InsertRange);
    static constexpr auto Erase = NUV_OP(Erase);
    static constexpr auto EraseRange = NUV_OP(EraseRange);
    static constexpr auto Clear = NUV_OP(Clear);
    static constexpr auto Resize = NUV_OP(Resize);
    static constexpr auto PushFront = NUV_OP(PushFront);
    static constexpr auto PushBack = NUV_OP(PushBack);
    static constexpr auto PopFront = NUV_OP(PopFront);
    static constexpr auto PopBack = NUV_OP(PopBack);
    static constexpr auto Splice = NUV_OP(Splice);
    static constexpr auto SpliceOne = NUV_OP(SpliceOne);
    static constexpr auto Dump = NUV_OP(Dump);
    static constexpr auto CreateNode_ = NUV_OP(CreateNode_);
    static constexpr auto HookNode_ = NUV_OP(HookNode_);
    static constexpr auto UnhookNode_ = NUV_OP(UnhookNode_);

#define NUV_KIND Iterator
    struct ForwardKind
    {
        static constexpr bool isReverse = false;
#include "tests/support/ListIteratorOperations.inl"
    };

#define NUV_KIND ConstIterator
    struct ConstForwardKind
    {
        static constexpr bool isReverse = false;
#include "tests/support/ListIteratorOperations.inl"
    };

#define NUV_KIND ReverseIterator
    struct ReverseKind
    {
        static constexpr bool isReverse = true;
#include "tests/support/ListIteratorOperations.inl"
    };

#define NUV_KIND ConstReverseIterator
    struct ConstReverseKind
    {
        static constexpr bool isReverse = true;
#include "tests/support/ListIteratorOperations.inl"
    };
};

#undef NUV_TEST_NAME
#undef NUV_KIND_OP
#include "Nuv/Templates/NuvTemplateEnd.h"
