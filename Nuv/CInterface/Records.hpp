/// Records whose first member is their size in bytes, as the caller knows them: shorter ones of
/// earlier versions, longer ones of later versions.
#pragma once

#include "Nuv/CInterface/Handles.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nuv::c
{

/// No version has a record of more bytes: a size beyond it was never set.
inline constexpr std::uint32_t kLargestRecord = 4096;

/// All records have had their present size since the first version.
template <class Record>
void CheckSize(std::uint32_t size)
{
    Require(size >= sizeof(Record) && size <= kLargestRecord && size % alignof(Record) == 0,
            "the size at the start of a record is not that of a record of any version");
}

/// What the caller has filled in.
template <class Record>
[[nodiscard]] Record TakeIn(const Record* given, const char* name)
{
    const std::uint32_t size = Given(given, name).size;
    CheckSize<Record>(size);
    Record record;
    std::memcpy(&record, given, sizeof(Record));
    const auto* bytes = reinterpret_cast<const unsigned char*>(given);
    Require(std::all_of(bytes + sizeof(Record), bytes + size,
                        [](unsigned char byte) { return byte == 0; }),
            "a record asks for what this version of the library does not know");
    return record;
}

/// Fills in a record of the caller's, whose size stays what it is; what this version does not know
/// of it becomes zero.
template <class Record>
void FillIn(Record* target, const char* name, Record content, std::uint32_t size)
{
    (void)Given(target, name);
    CheckSize<Record>(size);
    content.size = size;
    std::memcpy(target, &content, sizeof(Record));
    std::memset(reinterpret_cast<unsigned char*>(target) + sizeof(Record), 0,
                size - sizeof(Record));
}

template <class Record>
void FillIn(Record* target, const char* name, const Record& content)
{
    FillIn(target, name, content, Given(target, name).size);
}

}  // namespace nuv::c
