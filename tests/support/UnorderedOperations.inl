// The operations of one map and of its buckets under common names. An include template, as those of
// the library: NUV_TEST_NAME is the type to define, NUV_TEST_LIST the operations of the map's list,
// NUV_KEY and NUV_VALUE are the instantiation's. Include it through Instantiations.hpp.
#include "Nuv/Templates/NuvTemplateBegin.h"
#define NUV_SELF NUV_OF_KEY_AND_VALUE(NuvUnordered_)
#define NUV_BUCKET_OP(name) NUV_JOIN(NUV_OF_KEY_AND_VALUE(NuvUnorderedBucket_), name)

struct NUV_TEST_NAME
{
    using Container = NUV_SELF;
    using Key = NUV_OP(KeyType);
    using Element = NUV_OP(ValueType);
    using Value = NUV_VALUE;
    using SizeType = NUV_OP(SizeType);
    using Iterator = NUV_OP(Iterator);
    using ConstIterator = NUV_OP(ConstIterator);
    using HashFunctionType = NUV_OP(HashFunctionType);
    using Statistics = NUV_OF_KEY_AND_VALUE(NuvUnorderedStatistics_);
    using Bucket = NUV_OF_KEY_AND_VALUE(NuvUnorderedBucket_);
    using List = NUV_TEST_LIST;
    using Node = NUV_TEST_LIST::Node;

    static constexpr auto Construct = NUV_OP(Construct);
    static constexpr auto ConstructCopy = NUV_OP(ConstructCopy);
    static constexpr auto Destruct = NUV_OP(Destruct);
    static constexpr auto Assign = NUV_OP(Assign);
    static constexpr auto Swap = NUV_OP(Swap);
    static constexpr auto Begin = NUV_OP(Begin);
    static constexpr auto BeginConst = NUV_OP(BeginConst);
    static constexpr auto End = NUV_OP(End);
    static constexpr auto EndConst = NUV_OP(EndConst);
    static constexpr auto Empty = NUV_OP(Empty);
    static constexpr auto Size = NUV_OP(Size);
    static constexpr auto MaxSize = NUV_OP(MaxSize);
    static constexpr auto Count = NUV_OP(Count);
    static constexpr auto Find = NUV_OP(Find);
    static constexpr auto FindConst = NUV_OP(FindConst);
    static constexpr auto EqualRange = NUV_OP(EqualRange);
    static constexpr auto EqualRangeConst = NUV_OP(EqualRangeConst);
    static constexpr auto Insert = NUV_OP(Insert);
    static constexpr auto InsertDuplicate = NUV_OF_KEY_AND_VALUE(NuvUnorderedInsert__);
    static constexpr auto Erase = NUV_OP(Erase);
    static constexpr auto EraseRange = NUV_OP(EraseRange);
    static constexpr auto EraseKey = NUV_OP(EraseKey);
    static constexpr auto Clear = NUV_OP(Clear);
    static constexpr auto Resize = NUV_OP(Resize);
    static constexpr auto GetStatistics = NUV_OP(GetStatistics);
    static constexpr auto BucketCount = NUV_OP(BucketCount);
    static constexpr auto GetNodeSize = NUV_OP(GetNodeSize);
    static constexpr auto GetBucketAllocator = NUV_OP(GetBucketAllocator);
    static constexpr auto GetNodeAllocator = NUV_OP(GetNodeAllocator);
    static constexpr auto HashFunction = NUV_OP(HashFunction);
    static constexpr auto Dump = NUV_OP(Dump);

    static constexpr auto BucketConstructCopy = NUV_BUCKET_OP(ConstructCopy);
    static constexpr auto BucketDestruct = NUV_BUCKET_OP(Destruct);
    static constexpr auto BucketAssign = NUV_BUCKET_OP(Assign);
    static constexpr auto BucketEqual = NUV_BUCKET_OP(Equal);
    static constexpr auto BucketLess = NUV_BUCKET_OP(Less);
};

#undef NUV_TEST_NAME
#undef NUV_TEST_LIST
#undef NUV_BUCKET_OP
#include "Nuv/Templates/NuvTemplateEnd.h"
