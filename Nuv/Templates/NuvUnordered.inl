// The hash map, defined.
#include "Nuv/Templates/NuvBuckets.hpp"
#include "Nuv/Templates/NuvTemplateBegin.h"
#define NUV_SELF NUV_OF_KEY_AND_VALUE(NuvUnordered_)
#define NUV_LIST NUV_OF_KEY_AND_VALUE(NuvList_NuvPair_)
#define NUV_TABLE NUV_OF_KEY_AND_VALUE(NuvVector_NuvUnorderedBucket_)
#define NUV_BUCKET NUV_OF_KEY_AND_VALUE(NuvUnorderedBucket_)
#define NUV_STATISTICS NUV_OF_KEY_AND_VALUE(NuvUnorderedStatistics_)
#define NUV_LIST_OP(name) NUV_JOIN(NUV_LIST, name)
#define NUV_TABLE_OP(name) NUV_JOIN(NUV_TABLE, name)

NUV_SELF* NUV_OP(Construct)(NUV_SELF* x, NUV_OP(HashFunctionType) hash, NUV_OP(SizeType) buckets,
                            NuvAllocator* bucketAllocator, NuvAllocator* nodeAllocator)
{
    x->size = 0;
    NUV_LIST_OP(ConstructDefault)(&x->l, nodeAllocator);
    NUV_TABLE_OP(ConstructDefault)(&x->v, bucketAllocator);
    const NuvSizeT count = nuv::ChooseBucketCount(buckets);
    const NUV_BUCKET empty = {&x->l.node, 0};
    if (count == 0 || !NUV_TABLE_OP(ConstructN)(&x->v, count, &empty, bucketAllocator))
        return nullptr;
    x->hash = hash;
    return x;
}

NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y)
{
    x->size = 0;
    NUV_TABLE_OP(ConstructDefault)(&x->v, y->v.allocator);
    if (!NUV_LIST_OP(ConstructCopy)(&x->l, &y->l) || !NUV_TABLE_OP(ConstructCopy)(&x->v, &y->v))
        return nullptr;
    x->hash = y->hash;
    nuv::RebuildBuckets(x);
    return x;
}

void NUV_OP(Destruct)(NUV_SELF* x)
{
    NUV_LIST_OP(Destruct)(&x->l);
    NUV_TABLE_OP(Destruct)(&x->v);
    x->size = 0;
}

NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y)
{
    // same bits: the runs of a map assigned to itself are counted anew, and are as they were
    if (x == y)
        return x;
    if (!NUV_LIST_OP(Assign)(&x->l, &y->l) || !NUV_TABLE_OP(Assign)(&x->v, &y->v))
    {
        // The old buckets know nothing of the new keys: without a table the map can be walked and
        // gets one later.
        NUV_TABLE_OP(Destruct)(&x->v);
        x->size = NUV_LIST_OP(Size)(&x->l);
        return nullptr;
    }
    x->hash = y->hash;
    nuv::RebuildBuckets(x);
    return x;
}

NuvBool NUV_OP(Swap)(NUV_SELF* x, NUV_SELF* y)
{
    if (x->v.allocator != y->v.allocator || x->l.allocator != y->l.allocator)
        return NUV_FALSE;
    (void)NUV_TABLE_OP(Swap)(&x->v, &y->v);  // on one allocator it cannot fail
    NUV_LIST_OP(Swap)(&x->l, &y->l);
    nuv::Exchange(&x->size, &y->size);
    nuv::Exchange(&x->hash, &y->hash);
    for (NUV_BUCKET* bucket = x->v.begin; bucket != x->v.end; ++bucket)
        if (bucket->first == &y->l.node)
            bucket->first = &x->l.node;
    for (NUV_BUCKET* bucket = y->v.begin; bucket != y->v.end; ++bucket)
        if (bucket->first == &x->l.node)
            bucket->first = &y->l.node;
    return NUV_TRUE;
}

NUV_OP(Iterator) NUV_OP(Begin)(NUV_SELF* x)
{
    return x->l.node.next.b;
}

NUV_OP(ConstIterator) NUV_OP(BeginConst)(const NUV_SELF* x)
{
    return x->l.node.next.b;
}

NUV_OP(Iterator) NUV_OP(End)(NUV_SELF* x)
{
    return &x->l.node;
}

NUV_OP(ConstIterator) NUV_OP(EndConst)(const NUV_SELF* x)
{
    return &x->l.node;
}

NuvBool NUV_OP(Empty)(const NUV_SELF* x)
{
    return nuv::AsNuvBool(x->size == 0);
}

NUV_OP(SizeType) NUV_OP(Size)(const NUV_SELF* x)
{
    return x->size;
}

NUV_OP(SizeType) NUV_OP(MaxSize)(const NUV_SELF*)
{
    return 0xFFFFFFF;
}

NUV_OP(SizeType) NUV_OP(Count)(const NUV_SELF* x, const NUV_KEY* key)
{
    const NUV_OP(ConstRange) range = NUV_OP(EqualRangeConst)(x, key);
    NuvSizeT count = 0;
    for (NUV_OP(ConstIterator) entry = range.first; entry != range.second; entry = entry->next.b)
        ++count;
    return count;
}

NUV_OP(Iterator) NUV_OP(Find)(NUV_SELF* x, const NUV_KEY* key)
{
    return nuv::Seek(x, key);
}

NUV_OP(ConstIterator) NUV_OP(FindConst)(const NUV_SELF* x, const NUV_KEY* key)
{
    return nuv::Seek(x, key);
}

NUV_OP(Range) NUV_OP(EqualRange)(NUV_SELF* x, const NUV_KEY* key)
{
    NUV_OP(Iterator) const first = nuv::Seek(x, key);
    return {first, nuv::SkipEqual(x, first, key)};
}

NUV_OP(ConstRange) NUV_OP(EqualRangeConst)(const NUV_SELF* x, const NUV_KEY* key)
{
    NUV_OP(ConstIterator) const first = nuv::Seek(x, key);
    return {first, nuv::SkipEqual(x, first, key)};
}

NUV_OP(InsertResult) NUV_OP(Insert)(NUV_SELF* x, const NUV_OP(ValueType) * value)
{
    (void)NUV_OP(Resize)(x, x->size + 1);  // without growth the entry goes into the table as it is
    if (nuv::BucketCountOf(x) == 0)
        return {nullptr, NUV_FALSE};
    NUV_BUCKET* const bucket = nuv::BucketOf(x, &value->first);
    NUV_OP(Iterator) pos = bucket->first;
    for (NuvSizeT left = bucket->count; left != 0; --left, pos = pos->next.b)
        if (nuv::Equal(nuv::KeyAt(x, pos), &value->first))
            return {pos, NUV_FALSE};
    auto* const node = NUV_LIST_OP(CreateNode_)(&x->l, value);
    if (!node)
        return {nullptr, NUV_FALSE};
    nuv::LinkEntry(x, &node->b, bucket, pos, &value->first);
    return {&node->b, NUV_TRUE};
}

NUV_OP(Iterator)
NUV_OF_KEY_AND_VALUE(NuvUnorderedInsert__)(NUV_SELF* x, const NUV_OP(ValueType) * value)
{
    (void)NUV_OP(Resize)(x, x->size + 1);  // without growth the entry goes into the table as it is
    if (nuv::BucketCountOf(x) == 0)
        return nullptr;
    NUV_BUCKET* const bucket = nuv::BucketOf(x, &value->first);
    NUV_OP(Iterator) const pos = nuv::SeekInRun(x, bucket, &value->first);
    auto* const node = NUV_LIST_OP(CreateNode_)(&x->l, value);
    if (!node)
        return nullptr;
    nuv::LinkEntry(x, &node->b, bucket, pos, &value->first);
    return &node->b;
}

NUV_OP(Iterator) NUV_OP(Erase)(NUV_SELF* x, NUV_OP(Iterator) pos)
{
    NUV_BUCKET* const bucket =
        nuv::BucketCountOf(x) != 0 ? nuv::BucketOf(x, nuv::KeyAt(x, pos)) : nullptr;
    NUV_OP(Iterator) const following = NUV_LIST_OP(Erase)(&x->l, pos);
    --x->size;
    // same bits: without a bucket this is not reached
    if (bucket)
        nuv::ForgetEntry(x, bucket, pos, following);
    return following;
}

NUV_OP(Iterator) NUV_OP(EraseRange)(NUV_SELF* x, NUV_OP(Iterator) f, NUV_OP(Iterator) l)
{
    while (f != l)
        f = NUV_OP(Erase)(x, f);
    return l;
}

NUV_OP(SizeType) NUV_OP(EraseKey)(NUV_SELF* x, const NUV_KEY* key)
{
    if (nuv::BucketCountOf(x) == 0)
        return 0;
    NUV_BUCKET* const bucket = nuv::BucketOf(x, key);
    // The entries wait in a list of their own until all keys are compared: `key` may be inside one
    // of them.
    NUV_LIST removed;
    NUV_LIST_OP(ConstructDefault)(&removed, x->l.allocator);
    NUV_OP(Iterator) entry = bucket->first;
    NuvSizeT count = 0;
    for (NuvSizeT left = bucket->count; left != 0; --left)
    {
        NUV_OP(Iterator) const following = entry->next.b;
        if (nuv::Equal(nuv::KeyAt(x, entry), key))
        {
            nuv::Transfer(&removed.node, entry, following);
            nuv::ForgetEntry(x, bucket, entry, following);
            ++count;
        }
        entry = following;
    }
    x->size -= count;
    NUV_LIST_OP(Destruct)(&removed);
    return count;
}

void NUV_OP(Clear)(NUV_SELF* x)
{
    NUV_LIST_OP(Clear)(&x->l);
    x->size = 0;
    nuv::EmptyBuckets(x);
}

NuvBool NUV_OP(Resize)(NUV_SELF* x, NUV_OP(SizeType) n)
{
    if (nuv::BucketCountOf(x) >= n)
        return NUV_TRUE;
    const NuvSizeT count = nuv::ChooseBucketCount(n);
    // same bits: the buckets are emptied before they are read
    const NUV_BUCKET empty = {&x->l.node, 0};
    NUV_TABLE table;
    if (count == 0 || !NUV_TABLE_OP(ConstructN)(&table, count, &empty, x->v.allocator))
        return NUV_FALSE;
    nuv::Exchange(&x->v, &table);
    nuv::Rehash(x);
    NUV_TABLE_OP(Destruct)(&table);
    return NUV_TRUE;
}

void NUV_OP(GetStatistics)(const NUV_SELF* x, NUV_STATISTICS* stats)
{
    stats->loadingMin = UINT64_MAX;
    stats->loadingMax = 0;
    for (const NUV_BUCKET* bucket = x->v.begin; bucket != x->v.end; ++bucket)
    {
        // same bits: an extreme that is met again is the same number
        if (bucket->count < stats->loadingMin)
            stats->loadingMin = bucket->count;
        // same bits: an extreme that is met again is the same number
        if (bucket->count > stats->loadingMax)
            stats->loadingMax = bucket->count;
    }
}

NUV_OP(SizeType) NUV_OP(BucketCount)(const NUV_SELF* x)
{
    return nuv::BucketCountOf(x);
}

NUV_OP(SizeType) NUV_OP(GetNodeSize)(void)
{
    return NUV_LIST_OP(GetNodeSize)();
}

NuvAllocator* NUV_OP(GetBucketAllocator)(const NUV_SELF* x)
{
    return x->v.allocator;
}

NuvAllocator* NUV_OP(GetNodeAllocator)(const NUV_SELF* x)
{
    return x->l.allocator;
}

NUV_OP(HashFunctionType) NUV_OP(HashFunction)(const NUV_SELF* x)
{
    return x->hash;
}

void NUV_OP(Dump)(const NUV_SELF*, const char*, unsigned int) {}

#undef NUV_LIST
#undef NUV_TABLE
#undef NUV_BUCKET
#undef NUV_STATISTICS
#undef NUV_LIST_OP
#undef NUV_TABLE_OP
#include "Nuv/Templates/NuvTemplateEnd.h"
