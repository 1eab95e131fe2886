// Short ways to make what the library's functions take: names and arrays of coefficients. Each
// object here owns its record for the length of a scope. Without an allocator they lie on the heap,
// where a test's own allocator neither counts nor refuses them.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Nuv/Utils/NuvLinearProgramming.h"

/// An allocator over malloc and free, one for all tests.
inline NuvAllocator* Heap()
{
    static NuvAllocator heap = {[](NuvAllocator*, NuvSizeT size)
                                { return std::malloc(size ? size : 1); },
                                [](NuvAllocator*, void* memory, NuvSizeT) { std::free(memory); },
                                std::numeric_limits<NuvSizeT>::max(), nullptr};
    return &heap;
}

inline std::string_view TextOf(const NuvString& string)
{
    return {string.buf, static_cast<std::size_t>(string.size)};
}

inline std::string_view TextOf(const NuvString* string)
{
    return TextOf(*string);
}

/// A name: `Name("X1")`, or `Name("X1", allocator)`. Converts to the `const NuvString*` of a call.
class Name
{
public:
    explicit Name(const std::string& text, NuvAllocator* allocator = Heap())
    {
        if (!NuvStringConstructFormatted(&string, allocator, "%s", text.c_str()))
            ADD_FAILURE() << "no room for the name " << text;
    }

    ~Name()
    {
        NuvStringDestruct(&string);
    }

    Name(const Name&) = delete;
    Name& operator=(const Name&) = delete;

    operator const NuvString*() const
    {
        return &string;
    }

    NuvString string;
};

/// Coefficients by index: `IndexedCoefficients({{1, 2.0f}, {3, -1.0f}})`.
class IndexedCoefficients
{
public:
    using Vector = NuvVector_NuvPair_NuvUint__NuvFloat32;
    using Terms = std::vector<std::pair<NuvUint, NuvFloat32>>;

    explicit IndexedCoefficients(const Terms& terms, NuvAllocator* allocator = Heap())
    {
        NuvVector_NuvPair_NuvUint__NuvFloat32ConstructDefault(&vector, allocator);
        for (const auto& [index, coefficient] : terms)
        {
            const NuvPair_NuvUint__NuvFloat32 pair = {index, coefficient};
            if (!NuvVector_NuvPair_NuvUint__NuvFloat32PushBack(&vector, &pair))
                ADD_FAILURE() << "no room for the coefficient of variable " << index;
        }
    }

    ~IndexedCoefficients()
    {
        NuvVector_NuvPair_NuvUint__NuvFloat32Destruct(&vector);
    }

    IndexedCoefficients(const IndexedCoefficients&) = delete;
    IndexedCoefficients& operator=(const IndexedCoefficients&) = delete;

    operator const Vector*() const
    {
        return &vector;
    }

    Vector vector;
};

/// Coefficients by name: `NamedCoefficients({{"X1", 2.0f}, {"X3", -1.0f}})`.
class NamedCoefficients
{
public:
    using Vector = NuvVector_NuvPair_NuvString__NuvFloat32;
    using Terms = std::vector<std::pair<std::string, NuvFloat32>>;

    explicit NamedCoefficients(const Terms& terms, NuvAllocator* allocator = Heap())
    {
        NuvVector_NuvPair_NuvString__NuvFloat32ConstructDefault(&vector, allocator);
        for (const auto& [text, coefficient] : terms)
        {
            const Name name(text, allocator);
            const NuvPair_NuvString__NuvFloat32 pair = {name.string, coefficient};
            if (!NuvVector_NuvPair_NuvString__NuvFloat32PushBack(&vector, &pair))
                ADD_FAILURE() << "no room for the coefficient of " << text;
        }
    }

    ~NamedCoefficients()
    {
        NuvVector_NuvPair_NuvString__NuvFloat32Destruct(&vector);
    }

    NamedCoefficients(const NamedCoefficients&) = delete;
    NamedCoefficients& operator=(const NamedCoefficients&) = delete;

    operator const Vector*() const
    {
        return &vector;
    }

    Vector vector;
};

/// What an array of coefficients by index holds, in its order.
inline IndexedCoefficients::Terms TermsOf(const IndexedCoefficients::Vector& vector)
{
    IndexedCoefficients::Terms terms;
    for (const auto* pair = vector.begin; pair != vector.end; ++pair)
        terms.emplace_back(pair->first, pair->second);
    return terms;
}

/// What an array of coefficients by name holds, in its order.
inline NamedCoefficients::Terms TermsOf(const NamedCoefficients::Vector& vector)
{
    NamedCoefficients::Terms terms;
    for (const auto* pair = vector.begin; pair != vector.end; ++pair)
        terms.emplace_back(TextOf(pair->first), pair->second);
    return terms;
}
