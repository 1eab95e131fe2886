/// Open addressing with linear probing over a power of two of slots, at most three quarters full.
/// A slot holds the first sixteen bytes of its name: most names are no longer, and a lookup among
/// many names then waits for memory once and not three times.
#include "Nuv/Model/NameTable.hpp"

#include "Nuv/Model/Prefetch.hpp"

#include <algorithm>
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

/// Up to eight bytes as a word, the missing ones zero.
std::uint64_t Word(const char* p, std::size_t bytes) noexcept
{
    std::uint64_t word = 0;
    if (bytes >= 8)
    {
        std::memcpy(&word, p, 8);
        return word;
    }
    for (std::size_t i = 0; i < bytes; ++i)
        word |= static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])) << (8 * i);
    return word;
}

}  // namespace

NameTable::Key NameTable::MakeKey(std::string_view name) noexcept
{
    Key key;
    const char* p = name.data();
    std::size_t left = name.size();
    key.head[0] = Word(p, left);
    key.head[1] = left > 8 ? Word(p + 8, left - 8) : 0;
    std::uint64_t hash = Mix(left * kMultiplier, key.head[0]);
    hash = Mix(hash, key.head[1]);
    for (std::size_t at = kHead; at < left; at += 8)
        hash = Mix(hash, Word(p + at, left - at));
    key.hash = Mix(hash, hash >> 32);
    return key;
}

bool NameTable::Holds(const Slot& slot, std::string_view name, const Key& key) const noexcept
{
    if (slot.head[0] != key.head[0] || slot.head[1] != key.head[1] ||
        slot.tag != static_cast<std::uint32_t>(key.hash >> 32))
        return false;
    if (slot.length != name.size())
        return false;
    return name.size() <= kHead || std::memcmp((*this)[slot.index].data() + kHead,
                                               name.data() + kHead, name.size() - kHead) == 0;
}

std::size_t NameTable::Probe(std::string_view name, const Key& key) const noexcept
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = static_cast<std::size_t>(key.hash) & mask;
    while (m_slots[at].index != kNone && !Holds(m_slots[at], name, key))
        at = (at + 1) & mask;
    return at;
}

std::uint32_t NameTable::Find(std::string_view name) const noexcept
{
    return Find(name, MakeKey(name));
}

std::uint32_t NameTable::Find(std::string_view name, const Key& key) const noexcept
{
    if (m_slots.empty() || name.empty())
        return kNone;
    return m_slots[Probe(name, key)].index;
}

NameTable::Key NameTable::PrepareKey(std::string_view name) const noexcept
{
    const Key key = MakeKey(name);
    if (!m_slots.empty())
        Prefetch(&m_slots[static_cast<std::size_t>(key.hash) & (m_slots.size() - 1)]);
    return key;
}

NameTable::Interned NameTable::Intern(std::string_view name)
{
    return Intern(name, MakeKey(name));
}

NameTable::Interned NameTable::Intern(std::string_view name, const Key& key)
{
    GrowIfFull();
    Slot& slot = m_slots[Probe(name, key)];
    if (slot.index != kNone)
        return {slot.index, false};
    const std::uint32_t index = AddUnnamed();
    Store(slot, index, name, key);
    return {index, true};
}

std::string NameTable::MakeName(char letter) const
{
    std::string name = letter + std::to_string(Size() + 1);
    while (Find(name) != kNone)
        name += '_';
    return name;
}

std::uint32_t NameTable::Add(std::string_view name, bool isMade)
{
    const auto [found, isNew] = Intern(name);
    const std::uint32_t index = isNew ? found : Size();
    if (!isNew)
    {
        if (!IsMade(found))
            return kNone;
        // The new entry takes the characters and the slot of the name over.
        m_entries.push_back(m_entries[found]);
        m_slots[Probe(name, MakeKey(name))].index = index;
        m_entries[found] = {0, 0};
        std::string other = std::string(name) + '_';
        while (!Name(found, other))
            other += '_';
    }
    if (isMade)
    {
        m_isMade.resize(index + 1);
        m_isMade[index] = true;
    }
    return index;
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
    const Key key = MakeKey(name);
    Slot& slot = m_slots[Probe(name, key)];
    if (slot.index != kNone)
        return false;
    Store(slot, index, name, key);
    return true;
}

void NameTable::Truncate(std::uint32_t size, std::size_t characters) noexcept
{
    if (size == Size())
        return;
    m_entries.resize(size);
    m_characters.resize(characters);
    if (m_isMade.size() > size)
        m_isMade.resize(size);
    m_used = 0;
    for (const Entry& entry : m_entries)
        m_used += entry.length != 0;
    // As many slots as before: what is assigned needs no storage.
    Rehash(m_slots.size());
}

void NameTable::Store(Slot& slot, std::uint32_t index, std::string_view name, const Key& key)
{
    m_entries[index] = {m_characters.size(), name.size()};
    m_characters.append(name);
    ++m_used;
    slot = {
        {key.head[0], key.head[1]}, name.size(), static_cast<std::uint32_t>(key.hash >> 32), index};
}

void NameTable::GrowIfFull()
{
    if (4 * (m_used + 1) > 3 * m_slots.size())
        Rehash(std::max(kFewest, 2 * m_slots.size()));
}

void NameTable::Rehash(std::size_t slots)
{
    m_slots.assign(slots, Slot{{0, 0}, 0, 0, kNone});
    for (std::uint32_t index = 0; index < Size(); ++index)
    {
        const std::string_view name = (*this)[index];
        if (name.empty())
            continue;
        const Key key = MakeKey(name);
        m_slots[Probe(name, key)] = {{key.head[0], key.head[1]},
                                     name.size(),
                                     static_cast<std::uint32_t>(key.hash >> 32),
                                     index};
    }
}

}  // namespace nuv
