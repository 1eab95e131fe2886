// The operations of one growable array under common names. An include template, as those of the
// library: NUV_TEST_NAME is the type to define, NUV_SELF and NUV_ELEMENT are the instantiation's.
// Include it through Instantiations.hpp.
#include "Nuv/Templates/NuvTemplateBegin.h"

#define NUV_KIND_OP(name) NUV_JOIN(NUV_SELF, NUV_JOIN(NUV_KIND, name))

struct NUV_TEST_NAME
{
    using Container = NUV_SELF;
    using Element = NUV_ELEMENT;
    using Iterator = NUV_OP(Iterator);
    using ConstIterator = NUV_OP(ConstIterator);
    using SizeType = NUV_OP(SizeType);
    using DifferenceType = NUV_OP(DifferenceType);

    static constexpr auto ConstructDefault = NUV_OP(ConstructDefault);
    static constexpr auto ConstructN = NUV_OP(ConstructN);
    static constexpr auto ConstructRange = NUV_OP(ConstructRange);
    static constexpr auto ConstructCopy = NUV_OP(ConstructCopy);
    static constexpr auto Destruct = NUV_OP(Destruct);
    static constexpr auto Assign = NUV_OP(Assign);
    static constexpr auto Swap = NUV_OP(Swap);
    static constexpr auto Clear = NUV_OP(Clear);
    static constexpr auto GetAllocator = NUV_OP(GetAllocator);
    static constexpr auto Empty = NUV_OP(Empty);
    static constexpr auto Size = NUV_OP(Size);
    static constexpr auto Capacity = NUV_OP(Capacity);
    static constexpr auto MaxSize = NUV_OP(MaxSize);
    static constexpr auto Begin = NUV_OP(Begin);
    static constexpr auto BeginConst = NUV_OP(BeginConst);
    static constexpr auto End = NUV_OP(End);
    static constexpr auto EndConst = NUV_OP(EndConst);
    static constexpr auto RBegin = NUV_OP(RBegin);
    static constexpr auto RBeginConst = NUV_OP(RBeginConst);
    static constexpr auto REnd = NUV_OP(REnd);
    static constexpr auto REndConst = NUV_OP(REndConst);
    static constexpr auto At = NUV_OP(At);
    static constexpr auto AtConst = NUV_OP(AtConst);
    static constexpr auto Front = NUV_OP(Front);
    static constexpr auto FrontConst = NUV_OP(FrontConst);
    static constexpr auto Back = NUV_OP(Back);
    static constexpr auto BackConst = NUV_OP(BackConst);
    static constexpr auto Reserve = NUV_OP(Reserve);
    static constexpr auto PushBack = NUV_OP(PushBack);
    static constexpr auto PopBack = NUV_OP(PopBack);
    static constexpr auto Insert = NUV_OP(Insert);
    static constexpr auto InsertN = NUV_OP(InsertN);
    static constexpr auto InsertRange = NUV_OP(InsertRange);
    static constexpr auto Erase = NUV_OP(Erase);
    static constexpr auto EraseRange = NUV_OP(EraseRange);
    static constexpr auto Resize = NUV_OP(Resize);
    static constexpr auto Dump = NUV_OP(Dump);

#define NUV_KIND Iterator
    struct ForwardKind
    {
        static constexpr bool isReverse = false;
#include "tests/support/ArrayIteratorOperations.inl"
    };

#define NUV_KIND ConstIterator
    struct ConstForwardKind
    {
        static constexpr bool isReverse = false;
#include "tests/support/ArrayIteratorOperations.inl"
    };

#define NUV_KIND ReverseIterator
    struct ReverseKind
    {
        static constexpr bool isReverse = true;
#include "tests/support/ArrayIteratorOperations.inl"
    };

#define NUV_KIND ConstReverseIterator
    struct ConstReverseKind
    {
        static constexpr bool isReverse = true;
#include "tests/support/ArrayIteratorOperations.inl"
    };
};

#undef NUV_TEST_NAME
#undef NUV_KIND_OP
#include "Nuv/Templates/NuvTemplateEnd.h"
