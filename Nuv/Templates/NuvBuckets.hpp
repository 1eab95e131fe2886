// What the maps share below their operations: the table of sizes, finding a bucket, and keeping the
// runs together. Written for any record of the shape {size, hash, l, v}. Invariant: the entries of
// a bucket are `count` links of `l` from `first` on, and an empty bucket's `first` is the end of
// `l`. A map whose table was refused has no buckets and finds nothing.
#pragma once

#include "Nuv/Templates/NuvArray.hpp"
#include "Nuv/Templates/NuvRing.hpp"

namespace nuv
{
/// The numbers of buckets that a map may have, mostly primes near powers of two.
inline constexpr NuvSizeT kBucketCounts[] = {
    2,        3,        7,         17,        31,        61,         127,        257,
    509,      1021,     2053,      4093,      8191,      16381,      32771,      65537,
    131071,   262147,   524287,    1048573,   2097143,   4194301,    8388617,    16777213,
    33554467, 67108859, 134217757, 268435459, 536870909, 1073741827, 2147483647, 4294967291};

/// @return the smallest allowed number of buckets that is at least `n`, or 0 beyond the table.
inline NuvSizeT ChooseBucketCount(NuvSizeT n)
{
    for (const NuvSizeT count : kBucketCounts)
        if (count >= n)
            return count;
    return 0;
}

template <class Map>
inline NuvSizeT BucketCountOf(const Map* x)
{
    return SizeOf(&x->v);
}

/// @return the key of the entry that the link belongs to.
template <class Map, class Link>
inline const auto* KeyAt(const Map* x, const Link* link)
{
    using Node = std::remove_pointer_t<decltype(x->l.node.next.n)>;
    return &reinterpret_cast<const Node*>(link)->obj.first;
}

/// The bucket of a key; there must be buckets.
template <class Map, class Key>
inline auto* BucketOf(const Map* x, const Key* key)
{
    return x->v.begin + x->hash(key) % BucketCountOf(x);
}

/// @return the first of the bucket's entries with that key, or the link after the run.
template <class Map, class Bucket, class Key>
inline auto* SeekInRun(const Map* x, const Bucket* bucket, const Key* key)
{
    auto* link = bucket->first;
    for (NuvSizeT left = bucket->count; left != 0 && !Equal(KeyAt(x, link), key); --left)
        link = link->next.b;
    return link;
}

/// @return the first entry with that key, or the end.
template <class Map, class Key>
inline auto* Seek(const Map* x, const Key* key)
{
    using Link = std::remove_pointer_t<decltype(x->l.node.next.b)>;
    Link* const end = const_cast<Link*>(&x->l.node);
    if (BucketCountOf(x) == 0)
        return end;
    const auto* const bucket = BucketOf(x, key);
    Link* link = bucket->first;
    for (NuvSizeT left = bucket->count; left != 0; --left, link = link->next.b)
        if (Equal(KeyAt(x, link), key))
            return link;
    return end;
}

/// @return the first link from `link` on that is the end or has another key.
template <class Map, class Link, class Key>
inline Link* SkipEqual(const Map* x, Link* link, const Key* key)
{
    while (link != &x->l.node && Equal(KeyAt(x, link), key))
        link = link->next.b;
    return link;
}

/// Links a new entry before `pos`, which is in the bucket's run or ends it. An entry whose key
/// could not be copied has an empty key, and belongs to the bucket of that.
template <class Map, class Link, class Bucket, class Key>
inline void LinkEntry(Map* x, Link* entry, Bucket* bucket, Link* pos, const Key* key)
{
    // same bits: the key of the entry is `key`, whose place is found again
    if (!Equal(KeyAt(x, entry), key))
    {
        bucket = BucketOf(x, KeyAt(x, entry));
        pos = SeekInRun(x, bucket, KeyAt(x, entry));
    }
    entry->next.b = pos;
    entry->prev.b = pos->prev.b;
    pos->prev.b->next.b = entry;
    pos->prev.b = entry;
    if (pos == bucket->first)
        bucket->first = entry;
    ++bucket->count;
    ++x->size;
}

/// Corrects the bucket of an entry that has left the list; `following` came after it.
template <class Map, class Bucket, class Link>
inline void ForgetEntry(Map* x, Bucket* bucket, const Link* entry, Link* following)
{
    --bucket->count;
    if (bucket->count == 0)
        bucket->first = &x->l.node;
    else if (bucket->first == entry)
        bucket->first = following;
}

template <class Map>
inline void EmptyBuckets(Map* x)
{
    for (auto* bucket = x->v.begin; bucket != x->v.end; ++bucket)
        *bucket = {&x->l.node, 0};
}

/// Counts the runs of the list anew into the table as it is. Entries keep their order; only one
/// that stands outside its bucket's run, because a copy of its key was refused, moves to the end of
/// that run.
template <class Map>
inline void RebuildBuckets(Map* x)
{
    EmptyBuckets(x);
    x->size = 0;
    ElementOf<decltype(x->v)>* current = nullptr;
    for (auto* link = x->l.node.next.b; link != &x->l.node;)
    {
        auto* const following = link->next.b;
        auto* const bucket = BucketOf(x, KeyAt(x, link));
        if (bucket->count == 0)
        {
            bucket->first = link;
            current = bucket;
        }
        // same bits: the end of the current run is the entry itself, which is moved to before
        // itself; copies of numbers cannot fail, so that none stands outside its bucket's run
        else if (bucket != current)
        {
            auto* endOfRun = bucket->first;
            // same bits: copies of numbers cannot fail, so that none stands outside its bucket's
            // run
            for (NuvSizeT i = 0; i != bucket->count; ++i)
                endOfRun = endOfRun->next.b;
            Transfer(endOfRun, link, following);
        }
        ++bucket->count;
        ++x->size;
        link = following;
    }
}

/// Hangs all entries into a table of empty buckets: one run of equal keys after another, each
/// before its bucket's earlier runs, the first of an empty bucket at the back of the list.
template <class Map>
inline void Rehash(Map* x)
{
    std::remove_reference_t<decltype(x->l.node)> held;
    CloseRing(&held);
    TransferAll(&held, &x->l.node);
    EmptyBuckets(x);
    x->size = 0;
    while (!IsLone(&held))
    {
        auto* const first = held.next.b;
        auto* last = first->next.b;
        NuvSizeT length = 1;
        for (; last != &held && Equal(KeyAt(x, last), KeyAt(x, first)); last = last->next.b)
            ++length;
        auto* const bucket = BucketOf(x, KeyAt(x, first));
        Transfer(bucket->first, first, last);
        bucket->first = first;
        bucket->count += length;
        x->size += length;
    }
}
}  // namespace nuv
