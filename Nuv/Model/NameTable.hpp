/// The names of a model's rows or columns: an index for each name and a name for each index, both
/// in constant time. All names lie in one block of characters, so that a million of them cost three
/// allocations, not a million. A name was given, or made where none was given; a made one makes
/// room for one that is given. Invariant: a name that is not empty belongs to at most one index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nuv
{

/// The names of one model's rows or of its columns.
class NameTable
{
public:
    /// The index of no name.
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

    /// What a lookup computes from a name: its first bytes, padded with zeros, and the hash of all.
    struct Key
    {
        std::uint64_t head[2];  ///< the first 16 bytes
        std::uint64_t hash;     ///< of all bytes
    };
    /// Where a name is that was looked for and appended if need be.
    struct Interned
    {
        std::uint32_t index;  ///< of the name
        bool isNew;           ///< whether it was appended
    };

    /// How many entries there are, those without a name too.
    [[nodiscard]] std::uint32_t Size() const noexcept
    {
        return static_cast<std::uint32_t>(m_entries.size());
    }

    /// The name at `index`; empty for an entry without one. The view is valid until the next name
    /// is added.
    [[nodiscard]] std::string_view operator[](std::uint32_t index) const noexcept
    {
        const Entry& entry = m_entries[index];
        return {m_characters.data() + entry.offset, entry.length};
    }

    /// @return the index of `name`, or None.
    [[nodiscard]] std::uint32_t Find(std::string_view name) const noexcept;

    /// The index of `name`, appended if it is new. `name` is not empty.
    Interned Intern(std::string_view name);

    ///@{
    /// The same in two steps, for a reader of many names that cannot wait for memory at each: the
    /// key, and soon afterwards the name with its key.
    [[nodiscard]] Key PrepareKey(std::string_view name) const noexcept;
    Interned Intern(std::string_view name, const Key& key);
    [[nodiscard]] std::uint32_t Find(std::string_view name, const Key& key) const noexcept;
    ///@}

    /// A letter and the position that the next entry will have, from 1, with as many underscores
    /// behind as it takes to be a new name.
    [[nodiscard]] std::string MakeName(char letter) const;

    /// Whether the name of an entry was made, so that it gives way to a stated one.
    [[nodiscard]] bool IsMade(std::uint32_t index) const noexcept
    {
        return index < m_isMade.size() && m_isMade[index];
    }

    /// Appends an entry called `name`, which is not empty. An entry whose name was made gets
    /// another if this is its name.
    /// @return the index, or None, and changes nothing, if the name was given to another.
    std::uint32_t Add(std::string_view name, bool isMade = false);

    /// Appends an entry that has no name yet.
    std::uint32_t AddUnnamed();

    /// Names an entry that has no name.
    /// @return false, and changes nothing, if another entry has the name or this one has one.
    bool Name(std::uint32_t index, std::string_view name);

    /// How many characters all names have.
    [[nodiscard]] std::size_t CharacterCount() const noexcept
    {
        return m_characters.size();
    }
    /// Forgets the entries from `size` on. The names of the others have been the first
    /// `characters`, all of them given before any name of those.
    void Truncate(std::uint32_t size, std::size_t characters) noexcept;

private:
    struct Entry
    {
        std::size_t offset;
        std::size_t length;
    };
    static constexpr std::size_t kHead = 16;
    static constexpr std::size_t kFewest = 16;

    /// `index` is None in a free slot. The tag, a part of the hash, spares a look at the rest of
    /// most names that agree in their first bytes only.
    struct Slot
    {
        std::uint64_t head[2];
        std::size_t length;
        std::uint32_t tag;
        std::uint32_t index;
    };

    [[nodiscard]] static Key MakeKey(std::string_view name) noexcept;
    [[nodiscard]] bool Holds(const Slot& slot, std::string_view name,
                             const Key& key) const noexcept;
    [[nodiscard]] std::size_t Probe(std::string_view name, const Key& key) const noexcept;
    void Store(Slot& slot, std::uint32_t index, std::string_view name, const Key& key);
    void GrowIfFull();
    void Rehash(std::size_t slots);

    std::string m_characters;
    std::vector<Entry> m_entries;
    std::vector<bool> m_isMade;  ///< by index, as far as the last made name
    std::vector<Slot> m_slots;
    std::size_t m_used = 0;
};

}  // namespace nuv
