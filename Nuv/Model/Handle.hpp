/// The handles by which a program speaks of the variables and rows of a model: an index, and where
/// the model got the thing of that index from. A model that is copied keeps what it has made so far
/// in common with the copy, so that a handle made before serves both; what either of them adds
/// later is its own. So a handle of another model is told from one of this model even where its
/// index is one of this model too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace nuv
{

/// A variable (`Variable`) or row (`Row`) of one model. A handle that a model could not make is not
/// valid, and using it is an error of the model. Since `==` between variables states an equation,
/// handles are compared by Same.
template <class Kind>
class Handle
{
public:
    static constexpr std::uint32_t NoIndex = 0xFFFFFFFFu;

    Handle() = default;

    [[nodiscard]] std::uint32_t Index() const noexcept
    {
        return m_index;
    }
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

using Variable = Handle<struct VariableKind>;
using Row = Handle<struct RowKind>;

/// Same as the equality of a container: `std::unordered_map<Variable, double, std::hash<Variable>,
/// SameHandle>`.
struct SameHandle
{
    template <class Kind>
    [[nodiscard]] bool operator()(const Handle<Kind>& left,
                                  const Handle<Kind>& right) const noexcept
    {
        return Same(left, right);
    }
};

/// The origins of one model's variables, or of its rows. Every index belongs to one stretch of
/// indices, and every stretch has a number that no other in the program has (but for 2^32 stretches
/// having been opened in between); a copy opens a stretch of its own when it first adds something.
class HandleOrigins
{
public:
    HandleOrigins() = default;
    HandleOrigins(const HandleOrigins& other)
        : m_stretches(other.m_stretches), m_count(other.m_count)
    {
    }
    HandleOrigins(HandleOrigins&& other) noexcept
        : m_stretches(std::exchange(other.m_stretches, {})),
          m_count(std::exchange(other.m_count, 0)),
          m_isOpen(std::exchange(other.m_isOpen, false))
    {
    }
    HandleOrigins& operator=(HandleOrigins other) noexcept
    {
        m_stretches.swap(other.m_stretches);
        m_count = other.m_count;
        m_isOpen = other.m_isOpen;
        return *this;
    }
    ~HandleOrigins() = default;

    /// One more index.
    void Add()
    {
        if (!m_isOpen)
            m_stretches.push_back({m_count, NewOrigin()});
        m_isOpen = true;
        ++m_count;
    }

    /// The handle of an index; not valid if there is no such index.
    template <class Kind>
    [[nodiscard]] Handle<Kind> Make(std::uint32_t index) const noexcept
    {
        return index < m_count ? Handle<Kind>(OriginOf(index), index) : Handle<Kind>();
    }

    template <class Kind>
    [[nodiscard]] bool Contain(const Handle<Kind>& handle) const noexcept
    {
        return Same(handle, Make<Kind>(handle.m_index)) && handle.Valid();
    }

private:
    struct Stretch
    {
        std::uint32_t begin;
        std::uint32_t origin;
    };

    [[nodiscard]] static std::uint32_t NewOrigin() noexcept;
    /// Of an index below the count: most often of the last stretch, which in most models is the
    /// only one.
    [[nodiscard]] std::uint32_t OriginOf(std::uint32_t index) const noexcept
    {
        const Stretch& last = m_stretches.back();
        return index >= last.begin ? last.origin : OriginOfEarlier(index);
    }
    [[nodiscard]] std::uint32_t OriginOfEarlier(std::uint32_t index) const noexcept;

    std::vector<Stretch> m_stretches;
    std::uint32_t m_count = 0;
    bool m_isOpen = false;  ///< the last stretch is this object's own
};

}  // namespace nuv

template <class Kind>
struct std::hash<nuv::Handle<Kind>>
{
    [[nodiscard]] std::size_t operator()(const nuv::Handle<Kind>& handle) const noexcept
    {
        return std::hash<std::uint64_t>()(std::uint64_t{handle.m_origin} << 32 | handle.m_index);
    }
};
