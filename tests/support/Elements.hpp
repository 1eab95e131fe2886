// Numbered elements: for every element type of the containers, how a test makes element number i,
// and how it reads the number back. The number goes into every field, so that a field that was lost
// or mixed up is noticed: such an element has the number -1.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <ostream>
#include <string>

#include "Nuv/Utils/NuvLinearProgramming.h"
#include "tests/support/Names.hpp"

inline constexpr int kNoNumber = -1;

/// Make, NumberOf, Destruct, and whether a copy takes blocks, which can be refused.
template <class T>
struct Numbered;

template <>
struct Numbered<NuvUint>
{
    static constexpr bool kTakesBlocks = false;

    static bool Make(NuvUint* x, int number, NuvAllocator*)
    {
        *x = static_cast<NuvUint>(number);
        return true;
    }

    static int NumberOf(NuvUint x)
    {
        return static_cast<int>(x);
    }

    static void Destruct(NuvUint*) {}
};

template <>
struct Numbered<NuvFloat32>
{
    static constexpr bool kTakesBlocks = false;

    static bool Make(NuvFloat32* x, int number, NuvAllocator*)
    {
        *x = static_cast<NuvFloat32>(number);
        return true;
    }

    static int NumberOf(NuvFloat32 x)
    {
        return static_cast<int>(x);
    }

    static void Destruct(NuvFloat32*) {}
};

template <>
struct Numbered<NuvString>
{
    static constexpr bool kTakesBlocks = true;

    static bool Make(NuvString* x, int number, NuvAllocator* allocator)
    {
        return NuvStringConstructFormatted(x, allocator, "number %d", number) != nullptr;
    }

    static int NumberOf(const NuvString& x)
    {
        const std::string text(TextOf(x));
        const std::string lead = "number ";
        return text.starts_with(lead) ? std::stoi(text.substr(lead.size())) : kNoNumber;
    }

    static void Destruct(NuvString* x)
    {
        NuvStringDestruct(x);
    }
};

template <>
struct Numbered<NuvLinearProgrammingVariable>
{
    static constexpr bool kTakesBlocks = true;

    static bool Make(NuvLinearProgrammingVariable* x, int number, NuvAllocator* allocator)
    {
        const Name name("number " + std::to_string(number));
        return NuvLinearProgrammingVariableConstruct(
                   x, TypeOf(number), static_cast<NuvUint>(number), name, allocator) != nullptr;
    }

    static int NumberOf(const NuvLinearProgrammingVariable& x)
    {
        const int number = Numbered<NuvString>::NumberOf(x.name);
        return number >= 0 && x.index == static_cast<NuvUint>(number) && x.type == TypeOf(number)
                   ? number
                   : kNoNumber;
    }

    static void Destruct(NuvLinearProgrammingVariable* x)
    {
        NuvLinearProgrammingVariableDestruct(x);
    }

private:
    static NuvLinearProgrammingVariableType TypeOf(int number)
    {
        return static_cast<NuvLinearProgrammingVariableType>(number % 3);
    }
};

/// Odd ones name their variables, even ones give them by index.
template <>
struct Numbered<NuvLinearProgrammingConstraint>
{
    static constexpr bool kTakesBlocks = true;

    static bool Make(NuvLinearProgrammingConstraint* x, int number, NuvAllocator* allocator)
    {
        const auto value = static_cast<NuvFloat32>(number);
        if (number % 2 == 0)
            return NuvLinearProgrammingConstraintConstructIndex(
                       x, IndexedCoefficients(IndexedTerms(number)), value, allocator) != nullptr;
        return NuvLinearProgrammingConstraintConstruct(x, NamedCoefficients(NamedTerms(number)),
                                                       value, allocator) != nullptr;
    }

    static int NumberOf(const NuvLinearProgrammingConstraint& x)
    {
        const int number = static_cast<int>(x.rhs);
        const bool isByName = x.type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME;
        if (isByName != (number % 2 == 1))
            return kNoNumber;
        const bool agrees = isByName
                                ? TermsOf(x.u.variableCoefficientsByName) == NamedTerms(number)
                                : TermsOf(x.u.variableCoefficientsByIndex) == IndexedTerms(number);
        return agrees ? number : kNoNumber;
    }

    static void Destruct(NuvLinearProgrammingConstraint* x)
    {
        NuvLinearProgrammingConstraintDestruct(x);
    }

private:
    static IndexedCoefficients::Terms IndexedTerms(int number)
    {
        const auto value = static_cast<NuvFloat32>(number);
        return {{1, value}, {static_cast<NuvUint>(number), -value}};
    }

    static NamedCoefficients::Terms NamedTerms(int number)
    {
        const auto value = static_cast<NuvFloat32>(number);
        return {{"number " + std::to_string(number), value}, {"another", -value}};
    }
};

/// What all pairs share: both fields carry the number.
template <class Pair>
struct NumberedPair
{
    using First = decltype(Pair::first);
    using Second = decltype(Pair::second);
    static constexpr bool kTakesBlocks =
        Numbered<First>::kTakesBlocks || Numbered<Second>::kTakesBlocks;

    static bool Make(Pair* x, int number, NuvAllocator* allocator)
    {
        return Numbered<First>::Make(&x->first, number, allocator) &&
               Numbered<Second>::Make(&x->second, number, allocator);
    }

    static int NumberOf(const Pair& x)
    {
        const int number = Numbered<First>::NumberOf(x.first);
        return Numbered<Second>::NumberOf(x.second) == number ? number : kNoNumber;
    }

    static void Destruct(Pair* x)
    {
        Numbered<First>::Destruct(&x->first);
        Numbered<Second>::Destruct(&x->second);
    }
};

template <>
struct Numbered<NuvPair_NuvUint__NuvFloat32> : NumberedPair<NuvPair_NuvUint__NuvFloat32>
{
};

template <>
struct Numbered<NuvPair_NuvString__NuvFloat32> : NumberedPair<NuvPair_NuvString__NuvFloat32>
{
};

template <>
struct Numbered<NuvPair_NuvString__NuvLinearProgrammingVariable>
    : NumberedPair<NuvPair_NuvString__NuvLinearProgrammingVariable>
{
};

template <>
struct Numbered<NuvPair_NuvUint__NuvLinearProgrammingConstraint>
    : NumberedPair<NuvPair_NuvUint__NuvLinearProgrammingConstraint>
{
};

/// What both kinds of bucket share: the link is the address that the number spells.
template <class Bucket>
struct NumberedBucket
{
    using Link = decltype(Bucket::first);
    static constexpr bool kTakesBlocks = false;

    static bool Make(Bucket* x, int number, NuvAllocator*)
    {
        x->first = std::bit_cast<Link>(static_cast<std::uintptr_t>(number));
        x->count = static_cast<NuvSizeT>(number);
        return true;
    }

    static int NumberOf(const Bucket& x)
    {
        const int number = static_cast<int>(x.count);
        return std::bit_cast<std::uintptr_t>(x.first) == x.count ? number : kNoNumber;
    }

    static void Destruct(Bucket*) {}
};

template <>
struct Numbered<NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable>
    : NumberedBucket<NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable>
{
};

template <>
struct Numbered<NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint>
    : NumberedBucket<NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint>
{
};

template <class T>
int NumberOf(const T& x)
{
    return Numbered<T>::NumberOf(x);
}

/// Element number i for the length of a scope; it converts to the pointer of a call.
template <class T>
class Sample
{
public:
    explicit Sample(int number, NuvAllocator* allocator = Heap())
    {
        if (!Numbered<T>::Make(&value, number, allocator))
            ADD_FAILURE() << "no room for element number " << number;
    }

    ~Sample()
    {
        Numbered<T>::Destruct(&value);
    }

    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    operator const T*() const
    {
        return &value;
    }

    T value;
};
