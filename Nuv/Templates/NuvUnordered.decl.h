/// @file
/// The hash map: all entries in one list, and a table of buckets that know where their run of
/// entries begins and how long it is. Needs NUV_KEY and NUV_VALUE, and the pair, list, bucket and
/// bucket array of the same two types.
///
/// The bucket of a key is its hash modulo the number of buckets. The entries of a bucket stand
/// together in the list, equal keys side by side; walking the map is walking the list. The number
/// of buckets comes from a fixed table of sizes and never falls. A position stays valid until its
/// entry is erased.
#include "Nuv/Templates/NuvTemplateBegin.h"
#define NUV_SELF NUV_OF_KEY_AND_VALUE(NuvUnordered_)
#define NUV_LIST NUV_OF_KEY_AND_VALUE(NuvList_NuvPair_)
#define NUV_TABLE NUV_OF_KEY_AND_VALUE(NuvVector_NuvUnorderedBucket_)
#define NUV_STATISTICS NUV_OF_KEY_AND_VALUE(NuvUnorderedStatistics_)

/// A key.
typedef NUV_KEY NUV_OP(KeyType);
/// An entry: `first` is the key, `second` the value.
typedef NUV_OF_KEY_AND_VALUE(NuvPair_) NUV_OP(ValueType);
/// Of counts of entries and buckets.
typedef NuvSizeT NUV_OP(SizeType);
///@{
/// A position in the list of entries; valid until its entry is erased.
typedef NUV_JOIN(NUV_LIST, Iterator) NUV_OP(Iterator);
typedef NUV_JOIN(NUV_LIST, ConstIterator) NUV_OP(ConstIterator);
///@}
/// Equal keys have equal hashes.
typedef NuvSizeT (*NUV_OP(HashFunctionType))(const NUV_KEY* key);

typedef struct NUV_SELF NUV_SELF;

/// The map's record. It must not be moved bit by bit, as its list must not.
struct NUV_SELF
{
    /// The number of entries.
    NuvSizeT size;
    /// Of the keys, for life.
    NUV_OP(HashFunctionType) hash;
    /// The entries; its allocator is the map's node allocator.
    NUV_LIST l;
    /// The buckets; its allocator is the map's bucket allocator.
    NUV_TABLE v;
};

/// The shortest and the longest run.
typedef struct NUV_STATISTICS
{
    NuvSizeT loadingMin;  ///< entries in the emptiest bucket
    NuvSizeT loadingMax;  ///< entries in the fullest bucket
} NUV_STATISTICS;

/// What an insertion answers: the entry, and whether it is new.
typedef struct NUV_OP(InsertResult)
{
    NUV_OP(Iterator) first;  ///< the entry
    NuvBool second;          ///< whether it is new
} NUV_OP(InsertResult);

/// The entries of one key, [first, second).
typedef struct NUV_OP(Range)
{
    NUV_OP(Iterator) first;   ///< the first of them
    NUV_OP(Iterator) second;  ///< behind the last of them
} NUV_OP(Range);

/// The same, to be read only.
typedef struct NUV_OP(ConstRange)
{
    NUV_OP(ConstIterator) first;   ///< the first of them
    NUV_OP(ConstIterator) second;  ///< behind the last of them
} NUV_OP(ConstRange);

/// Makes an empty map with at least `buckets` buckets, at least 2.
/// @return `x`, or null when the table is refused or larger than 4294967291 buckets.
NUV_API NUV_SELF* NUV_OP(Construct)(NUV_SELF* x, NUV_OP(HashFunctionType) hash,
                                    NUV_OP(SizeType) buckets, NuvAllocator* bucketAllocator,
                                    NuvAllocator* nodeAllocator);
/// Copies `y`, in the same order, with as many buckets, on the allocators of `y`.
/// @return `x`, or null when a node or the table is refused. After a refused node `x` holds
/// nothing; after a refused table it still holds its entries.
NUV_API NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y);
/// Destroys the entries, and gives nodes and table back.
NUV_API void NUV_OP(Destruct)(NUV_SELF* x);
/// Gives `x` the entries, the number of buckets and the hash function of `y`; `x` keeps its
/// allocators.
/// @return `x`, or null when a node or the table is refused; `x` can then be walked, cleared,
/// destructed and assigned to, and finds its entries again after the next insertion.
NUV_API NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y);
/// Exchanges two maps on the same allocators.
/// @return false when their allocators differ; nothing has changed then.
NUV_API NuvBool NUV_OP(Swap)(NUV_SELF* x, NUV_SELF* y);

/// @return the position of the first entry of the walk, or behind the last one.
///@{
NUV_API NUV_OP(Iterator) NUV_OP(Begin)(NUV_SELF* x);
NUV_API NUV_OP(ConstIterator) NUV_OP(BeginConst)(const NUV_SELF* x);
NUV_API NUV_OP(Iterator) NUV_OP(End)(NUV_SELF* x);
NUV_API NUV_OP(ConstIterator) NUV_OP(EndConst)(const NUV_SELF* x);
///@}
/// @return whether there is no entry.
NUV_API NuvBool NUV_OP(Empty)(const NUV_SELF* x);
/// @return the number of entries.
NUV_API NUV_OP(SizeType) NUV_OP(Size)(const NUV_SELF* x);
/// @return 268435455.
NUV_API NUV_OP(SizeType) NUV_OP(MaxSize)(const NUV_SELF* x);

/// @return the number of entries with that key.
NUV_API NUV_OP(SizeType) NUV_OP(Count)(const NUV_SELF* x, const NUV_KEY* key);
/// @return the first entry with that key, or the end.
///@{
NUV_API NUV_OP(Iterator) NUV_OP(Find)(NUV_SELF* x, const NUV_KEY* key);
NUV_API NUV_OP(ConstIterator) NUV_OP(FindConst)(const NUV_SELF* x, const NUV_KEY* key);
///@}
/// @return the entries with that key as [first, second); both the end when there is none.
///@{
NUV_API NUV_OP(Range) NUV_OP(EqualRange)(NUV_SELF* x, const NUV_KEY* key);
NUV_API NUV_OP(ConstRange) NUV_OP(EqualRangeConst)(const NUV_SELF* x, const NUV_KEY* key);
///@}

/// Adds a copy of `*value` unless its key is there already. The table grows first, so that no more
/// entries than buckets stand in it; a refused growth is ignored.
/// @return the new entry and true, the old one and false, or the exceptional iterator and false
/// when the node is refused.
NUV_API NUV_OP(InsertResult) NUV_OP(Insert)(NUV_SELF* x, const NUV_OP(ValueType) * value);
/// Adds a copy of `*value`, before the entries with the same key if there are any.
/// @return the new entry, or the exceptional iterator when the node is refused.
NUV_API NUV_OP(Iterator)
    NUV_OF_KEY_AND_VALUE(NuvUnorderedInsert__)(NUV_SELF* x, const NUV_OP(ValueType) * value);
/// Removes one entry.
/// @return the one that followed it.
NUV_API NUV_OP(Iterator) NUV_OP(Erase)(NUV_SELF* x, NUV_OP(Iterator) pos);
/// Removes [f, l).
/// @return `l`.
NUV_API NUV_OP(Iterator) NUV_OP(EraseRange)(NUV_SELF* x, NUV_OP(Iterator) f, NUV_OP(Iterator) l);
/// Removes every entry with that key, which may be the key of one of them.
/// @return how many.
NUV_API NUV_OP(SizeType) NUV_OP(EraseKey)(NUV_SELF* x, const NUV_KEY* key);
/// Removes every entry; the buckets stay.
NUV_API void NUV_OP(Clear)(NUV_SELF* x);
/// Makes at least `n` buckets.
/// @return false when the table is refused or larger than 4294967291 buckets; nothing has changed
/// then.
NUV_API NuvBool NUV_OP(Resize)(NUV_SELF* x, NUV_OP(SizeType) n);

/// Writes how long the shortest and the longest run are.
NUV_API void NUV_OP(GetStatistics)(const NUV_SELF* x, NUV_STATISTICS* stats);
/// @return the number of buckets.
NUV_API NUV_OP(SizeType) NUV_OP(BucketCount)(const NUV_SELF* x);
/// @return the bytes of one node of the list.
NUV_API NUV_OP(SizeType) NUV_OP(GetNodeSize)(void);
/// @return the allocator of the table, or of the entries.
///@{
NUV_API NuvAllocator* NUV_OP(GetBucketAllocator)(const NUV_SELF* x);
NUV_API NuvAllocator* NUV_OP(GetNodeAllocator)(const NUV_SELF* x);
///@}
/// @return the hash function.
NUV_API NUV_OP(HashFunctionType) NUV_OP(HashFunction)(const NUV_SELF* x);
/// Does nothing: the place for a diagnostic printer.
NUV_API void NUV_OP(Dump)(const NUV_SELF* x, const char* name, unsigned int tabStop);

#undef NUV_LIST
#undef NUV_TABLE
#undef NUV_STATISTICS
#include "Nuv/Templates/NuvTemplateEnd.h"
