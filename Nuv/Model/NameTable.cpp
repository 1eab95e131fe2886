/// Open addressing with linear probing over a power of two of slots, at most half full.
#include "Nuv/Model/NameTable.hpp"

#include <cstring>

namespace nuv
{
namespace
{

constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15u;

std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) noexcept
{
    hash = (hash ^ word) * kMultiplier;
    return hash ^ (hash >> 29);
}

/// Eight bytes at a time: names are hashed once per occurrence in a file, which is most of what a
/// reader does.
std::uint64_t Hash(std::string_view name) noexcept
{
    std::uint64_t hash = name.size() * kMultiplier;
    const char* p = name.data();
    std::size_t left = name.size();
    for (; left >= 8; p += 8, left -= 8)
    {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        hash = Mix(hash, word);
    }
    std::uint64_t tail = 0;
    for (std::size_t i = 0; i < left; ++i)
        tail |= static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])) << (8 * i);
    hash = Mix(hash, tail);
    return Mix(hash, hash >> 32);
}

std::uint32_t Tag(std::uint64_t hash) noexcept
{
    return static_cast<std::uint32_t>(hash >> 32);
}

}  // namespace

std::size_t NameTable::Probe(std::string_view name, std::uint64_t hash) const noexcept
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = static_cast<std::size_t>(hash) & mask;
    for (; m_slots[at].index != None; at = (at + 1) & mask)
    {
        if (m_slots[at].tag == Tag(hash) && (*this)[m_slots[at].index] == name)
            break;
    }
    return at;
}

std::uint32_t NameTable::Find(std::string_view name) const noexcept
{
    if (m_slots.empty() || name.empty())
        return None;
    return m_slots[Probe(name, Hash(name))].index;
}

NameTable::Interned NameTable::Intern(std::string_view name)
{
    GrowIfFull();
    const std::uint64_t hash = Hash(name);
    Slot& slot = m_slots[Probe(name, hash)];
    if (slot.index != None)
        return {slot.index, false};
    const std::uint32_t index = AddUnnamed();
    slot = {Tag(hash), index};
    Store(index, name);
    return {index, true};
}

std::uint32_t NameTable::AddUnnamed()
{
    const std::uint32_t index = Size();
    m_entries.push_back({0, 0});
    return index;
}

bool NameTable::Name(std::uint32_t index, std::string_view name)
{
    if (name.empty() || m_entries[index].length != 0)
        return false;
    GrowIfFull();
    const std::uint64_t hash = Hash(name);
    Slot& slot = m_slots[Probe(name, hash)];
    if (slot.index != None)
        return false;
    slot = {Tag(hash), index};
    Store(index, name);
    return true;
}

void NameTable::Reserve(std::size_t names, std::size_t characters)
{
    m_entries.reserve(names);
    m_characters.reserve(characters);
    std::size_t slots = 16;
    while (slots < 2 * names)
        slots *= 2;
    if (slots > m_slots.size())
        Rehash(slots);
}

void NameTable::Store(std::uint32_t index, std::string_view name)
{
    m_entries[index] = {m_characters.size(), name.size()};
    m_characters.append(name);
    ++m_used;
}

void NameTable::GrowIfFull()
{
    if (2 * (m_used + 1) > m_slots.size())
        Rehash(m_slots.empty() ? 16 : 2 * m_slots.size());
}

void NameTable::Rehash(std::size_t slots)
{
    m_slots.assign(slots, Slot{0, None});
    for (std::uint32_t index = 0; index < Size(); ++index)
    {
        const std::string_view name = (*this)[index];
        if (name.empty())
            continue;
        const std::uint64_t hash = Hash(name);
        m_slots[Probe(name, hash)] = {Tag(hash), index};
    }
}

}  // namespace nuv
