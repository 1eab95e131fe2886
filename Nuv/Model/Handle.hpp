/// The handles by which a program speaks of the variables and rows of a model: an index, and where
/// the model got the thing of that index from. A model that is copied keeps what it has made so far
/// in common with the copy, so that a handle made before serves both; what either of them adds
/// later is its own. So a handle of another model is told from one of this model even where its
/// index is one of this model too. What is removed takes its handle with it; the handles of all
/// others stay good, although their places in the arrays of the model change (HandleOrigins::Find).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace nuv
{

/// A variable (`Variable`) or row (`Row`) of one model. A handle that a model could not make is not
/// valid, and using it is an error of the model. Since `==` between variables states an equation,
/// handles are compared by Same; they have a hash and an equality for containers, so that
/// `std::unordered_map<Variable, double>` is one.
template <class Kind>
class Handle
{
public:
    /// Of a handle that is not valid, and of what is not there.
    static constexpr std::uint32_t NoIndex = 0xFFFFFFFFu;

    /// A handle of nothing.
    Handle() = default;

    /// Which of the model's variables or rows this was when it was made. As long as nothing is
    /// removed that is its place in arrays by variable or row too; Model::IndexOf always knows it.
    [[nodiscard]] std::uint32_t Index() const noexcept
    {
        return m_index;
    }
    /// Whether a model made it; not whether what it stands for is still there, which Model::Owns
    /// says.
    [[nodiscard]] bool Valid() const noexcept
    {
        return m_index != NoIndex;
    }

private:
    friend class HandleOrigins;
    friend struct std::hash<Handle>;

    Handle(std::uint32_t origin, std::uint32_t index) : m_origin(origin), m_index(index) {}

    /// Whether both are the same thing of the same model, or of models that have it in common.
    friend bool Same(const Handle& left, const Handle& right) noexcept
    {
        return left.m_origin == right.m_origin && left.m_index == right.m_index;
    }

    std::uint32_t m_origin = 0;
    std::uint32_t m_index = NoIndex;
};

/// A variable of a model.
using Variable = Handle<struct VariableKind>;
/// A row of a model.
using Row = Handle<struct RowKind>;

/// The origins of one model's variables, or of its rows, and where they stand now. Every index of a
/// handle belongs to one stretch of indices, and every stretch has a number that no other in the
/// program has (but for 2^32 stretches having been opened in between); a copy opens a stretch of
/// its own when it first adds something. An index is never given twice, so after a removal the
/// indices run ahead of the places; until then both are the same and neither is stored.
class HandleOrigins
{
public:
    /// Without places.
    HandleOrigins() = default;
    /// What both have from now on in common; the next addition to the copy is its own.
    HandleOrigins(const HandleOrigins& other)
        : m_stretches(other.m_stretches),
          m_count(other.m_count),
          m_made(other.m_made),
          m_indexAt(other.m_indexAt),
          m_placeOf(other.m_placeOf)
    {
    }
    ///@{
    /// Leaves the other without places, its stretch with this one.
    HandleOrigins(HandleOrigins&& other) noexcept
        : m_stretches(std::exchange(other.m_stretches, {})),
          m_count(std::exchange(other.m_count, 0)),
          m_made(std::exchange(other.m_made, 0)),
          m_isOpen(std::exchange(other.m_isOpen, false)),
          m_indexAt(std::exchange(other.m_indexAt, {})),
          m_placeOf(std::exchange(other.m_placeOf, {}))
    {
    }
    HandleOrigins& operator=(HandleOrigins other) noexcept
    {
        m_stretches.swap(other.m_stretches);
        m_count = other.m_count;
        m_made = other.m_made;
        m_isOpen = other.m_isOpen;
        m_indexAt.swap(other.m_indexAt);
        m_placeOf.swap(other.m_placeOf);
        return *this;
    }
    ///@}
    ~HandleOrigins() = default;

    /// One more place, the last.
    void Add()
    {
        if (!m_isOpen)
            m_stretches.push_back({m_made, NewOrigin()});
        m_isOpen = true;
        if (m_count != m_made)
        {
            m_indexAt.push_back(m_made);
            m_placeOf.push_back(m_count);
        }
        ++m_count;
        ++m_made;
    }

    /// Takes the places away that are marked, one mark by place; the others move up.
    void Remove(const std::vector<bool>& marked);

    /// Takes back the last places, all but `count`, which were added since anything was removed.
    /// Their handles are refused from then on.
    void TakeBack(std::uint32_t count) noexcept;

    /// The handle of what stands at a place; not valid if there is no such place.
    template <class Kind>
    [[nodiscard]] Handle<Kind> Make(std::uint32_t place) const noexcept
    {
        if (place >= m_count)
            return {};
        const std::uint32_t index = m_count == m_made ? place : m_indexAt[place];
        return Handle<Kind>(OriginOf(index), index);
    }

    /// The place of what the handle stands for; NoIndex if that is not here, or no longer.
    template <class Kind>
    [[nodiscard]] std::uint32_t Find(const Handle<Kind>& handle) const noexcept
    {
        if (handle.m_index >= m_made || OriginOf(handle.m_index) != handle.m_origin)
            return Handle<Kind>::NoIndex;
        return m_count == m_made ? handle.m_index : m_placeOf[handle.m_index];
    }

    /// Whether the handle stands for what has a place here.
    template <class Kind>
    [[nodiscard]] bool Contain(const Handle<Kind>& handle) const noexcept
    {
        return Find(handle) != Handle<Kind>::NoIndex;
    }

private:
    struct Stretch
    {
        std::uint32_t begin;
        std::uint32_t origin;
    };

    [[nodiscard]] static std::uint32_t NewOrigin() noexcept;
    /// Of an index that was given: most often of the last stretch, which in most models is the
    /// only one.
    [[nodiscard]] std::uint32_t OriginOf(std::uint32_t index) const noexcept
    {
        const Stretch& last = m_stretches.back();
        return index >= last.begin ? last.origin : OriginOfEarlier(index);
    }
    [[nodiscard]] std::uint32_t OriginOfEarlier(std::uint32_t index) const noexcept;

    std::vector<Stretch> m_stretches;
    std::uint32_t m_count = 0;  ///< of places
    std::uint32_t m_made = 0;   ///< of indices
    bool m_isOpen = false;      ///< the last stretch is this object's own
    // Empty as long as every index is a place.
    std::vector<std::uint32_t> m_indexAt;  ///< by place
    std::vector<std::uint32_t> m_placeOf;  ///< by index; NoIndex of what was removed
};

}  // namespace nuv

/// @cond
// For containers of handles; equal for handles that are the same.
template <class Kind>
struct std::hash<nuv::Handle<Kind>>
{
    [[nodiscard]] std::size_t operator()(const nuv::Handle<Kind>& handle) const noexcept
    {
        return std::hash<std::uint64_t>()(std::uint64_t{handle.m_origin} << 32 | handle.m_index);
    }
};

// Since `==` between variables states an equation.
template <class Kind>
struct std::equal_to<nuv::Handle<Kind>>
{
    [[nodiscard]] bool operator()(const nuv::Handle<Kind>& left,
                                  const nuv::Handle<Kind>& right) const noexcept
    {
        return Same(left, right);
    }
};
/// @endcond
