#include "Nuv/CInterface/Arrays.hpp"

#include <algorithm>
#include <cmath>

namespace nuv::c
{
namespace
{

std::string Subject(const char* what, std::uint32_t index)
{
    return std::string(what) + " " + std::to_string(index);
}

[[noreturn]] void BadEntry(std::string code, const char* what, std::uint32_t index,
                           const char* text)
{
    Fail(NUV_MODELRESULT_InvalidModel, std::move(code), Subject(what, index) + text);
}

/// Only vectors whose indices do not increase, as they mostly do, are sorted to find out.
bool HasRepeated(std::span<const std::uint32_t> indices)
{
    const auto doesNotIncrease = [](std::uint32_t a, std::uint32_t b) { return a >= b; };
    if (std::ranges::adjacent_find(indices, doesNotIncrease) == indices.end())
        return false;
    std::vector<std::uint32_t> sorted(indices.begin(), indices.end());
    std::ranges::sort(sorted);
    return std::ranges::adjacent_find(sorted) != sorted.end();
}

}  // namespace

Bounds BoundsAt(const double* lower, const double* upper, std::uint32_t k, Bounds otherwise,
                const char* what, std::uint32_t index)
{
    const Bounds bounds = {At(lower, k, otherwise.lower), At(upper, k, otherwise.upper)};
    if (bounds.lower < Infinity && bounds.upper > -Infinity)
        return bounds;
    if (std::isnan(bounds.lower) || std::isnan(bounds.upper))
        Fail(NUV_MODELRESULT_InvalidModel, "model.not-a-number",
             "a bound of " + Subject(what, index) + " is not a number",
             "check the arithmetic that made it");
    Fail(NUV_MODELRESULT_InvalidModel, "model.impossible-bound",
         "no number can keep the bounds of " + Subject(what, index),
         "a lower bound is finite or minus infinity, an upper bound finite or infinity");
}

double Finite(double value, const char* what, std::uint32_t index)
{
    if (!std::isfinite(value))
        Fail(NUV_MODELRESULT_InvalidModel, "model.not-finite",
             Subject(what, index) + " is not finite", "only bounds may be infinite");
    return value;
}

Names::Names(const char* block, std::uint64_t size, std::uint32_t count)
{
    if (!block)
    {
        Require(size == 0, "there are no names, but they have a size");
        return;
    }
    Require(size <= SIZE_MAX / 2, "the names take more bytes than there are");
    m_rest = {block, static_cast<std::size_t>(size)};
    Require(std::count(m_rest.begin(), m_rest.end(), '\0') >= static_cast<std::ptrdiff_t>(count),
            "there are fewer names than columns or rows: each ends with a NUL");
}

std::string_view Names::Next() noexcept
{
    const std::string_view name = m_rest.substr(0, m_rest.find('\0'));
    m_rest.remove_prefix(std::min(name.size() + 1, m_rest.size()));
    return name;
}

std::span<const std::uint32_t> Vectors::Indices(std::uint32_t k) const noexcept
{
    if (!starts)
        return {};
    return {indices + starts[k], static_cast<std::size_t>(starts[k + 1] - starts[k])};
}

std::span<const double> Vectors::Values(std::uint32_t k) const noexcept
{
    if (!starts)
        return {};
    return {values + starts[k], static_cast<std::size_t>(starts[k + 1] - starts[k])};
}

void Vectors::Check(std::uint32_t indexCount, const char* what, std::uint32_t first) const
{
    if (!starts)
        return;
    Require(starts[0] == 0, "the first start is not 0");
    for (std::uint32_t k = 0; k < count; ++k)
        Require(starts[k] <= starts[k + 1], "the starts do not increase");
    Require(starts[count] <= SIZE_MAX / sizeof(double), "the starts go beyond any memory");
    Require(starts[count] == 0 || (indices && values), "there are starts, but no entries");
    for (std::uint32_t k = 0; k < count; ++k)
    {
        for (const std::uint32_t index : Indices(k))
            Require(index < indexCount, "an entry has an index that is out of range");
        if (HasRepeated(Indices(k)))
            BadEntry("model.repeated-entry", what, first + k, " has two entries at one place");
        for (const double value : Values(k))
            if (!std::isfinite(value))
                BadEntry("model.not-finite", what, first + k,
                         " has a coefficient that is not finite");
    }
}

void CheckIndices(const std::uint32_t* indices, std::uint32_t count, std::uint32_t size,
                  const char* what)
{
    bool isBelow = indices || count <= size;
    if (indices)
        for (std::uint32_t k = 0; k < count; ++k)
            isBelow = isBelow && indices[k] < size;
    if (!isBelow)
        Fail(NUV_MODELRESULT_InvalidArgument, "c.index",
             std::string("there is no ") + what + " of an index that is given");
}

std::vector<BasisStatus> StatusesIn(const std::uint8_t* statuses, std::uint32_t count)
{
    Require(statuses || count == 0, "a basis is null, but has a length");
    std::vector<BasisStatus> taken;
    for (std::uint32_t k = 0; k < count; ++k)
    {
        RequireOneOf(statuses[k], NUV_BASISSTATUS_Free + 1, "status in a basis");
        taken.push_back(static_cast<BasisStatus>(statuses[k]));
    }
    return taken;
}

}  // namespace nuv::c
