/// When integers with GMP take memory: a number of one word never does, nor does what is done to
/// it while the result is one too, and a number that became longer keeps what it has.
#include "Nuv/Algebra/Integer.hpp"

#include <gmp.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace nuv::test
{
namespace
{

/// Of all tests of the program: what they take is given back in the end.
class Balance : public testing::Environment
{
public:
    void SetUp() override
    {
        mp_get_memory_functions(&s_allocate, &s_reallocate, &s_release);
        mp_set_memory_functions(Take, s_reallocate, GiveBack);
    }
    void TearDown() override
    {
        mp_set_memory_functions(s_allocate, s_reallocate, s_release);
        EXPECT_EQ(s_held, 0) << "numbers that nobody released";
    }

private:
    static void* Take(std::size_t bytes)
    {
        ++s_held;
        return s_allocate(bytes);
    }
    static void GiveBack(void* memory, std::size_t bytes)
    {
        --s_held;
        s_release(memory, bytes);
    }

    static inline void* (*s_allocate)(std::size_t) = nullptr;
    static inline void* (*s_reallocate)(void*, std::size_t, std::size_t) = nullptr;
    static inline void (*s_release)(void*, std::size_t) = nullptr;
    static inline long s_held = 0;
};

[[maybe_unused]] testing::Environment* const g_balance =
    testing::AddGlobalTestEnvironment(new Balance);

void* (*g_allocate)(std::size_t) = nullptr;
void* (*g_reallocate)(void*, std::size_t, std::size_t) = nullptr;
void (*g_release)(void*, std::size_t) = nullptr;
int g_taken = 0;
int g_held = 0;

void* Allocate(std::size_t bytes)
{
    ++g_taken;
    ++g_held;
    return g_allocate(bytes);
}

void* Reallocate(void* memory, std::size_t old, std::size_t bytes)
{
    ++g_taken;
    return g_reallocate(memory, old, bytes);
}

void Release(void* memory, std::size_t bytes)
{
    --g_held;
    g_release(memory, bytes);
}

/// How often GMP asks for memory while something is done.
template <class Action>
int Taken(const Action& action)
{
    mp_get_memory_functions(&g_allocate, &g_reallocate, &g_release);
    mp_set_memory_functions(Allocate, Reallocate, Release);
    g_taken = 0;
    g_held = 0;
    action();
    mp_set_memory_functions(g_allocate, g_reallocate, g_release);
    return g_taken;
}

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

/// Words among which sums, differences and products just fit a word, and just do not.
std::vector<std::int64_t> Edges()
{
    std::vector<std::int64_t> edges;
    for (const std::int64_t middle :
         {std::int64_t{0}, std::int64_t{3037000499}, std::int64_t{1} << 32, std::int64_t{1} << 62})
    {
        for (int offset = -2; offset <= 2; ++offset)
        {
            edges.push_back(middle + offset);
            edges.push_back(-middle + offset);
        }
    }
    for (int offset = 0; offset <= 2; ++offset)
    {
        edges.push_back(kLeast + offset);
        edges.push_back(kMost - offset);
    }
    return edges;
}

TEST(IntegerMemory, IsNotTakenForResultsOfOneWord)
{
    for (const std::int64_t a : Edges())
    {
        for (const std::int64_t b : Edges())
        {
            SCOPED_TRACE(std::to_string(a) + " and " + std::to_string(b));
            const Integer x = a;
            const Integer y = b;
            const Integer three = 3;
            std::int64_t word = 0;
            const bool sumFits = !__builtin_add_overflow(a, b, &word);
            EXPECT_EQ(Taken([&] { (void)(x + y); }) == 0, sumFits);
            const bool differenceFits = !__builtin_sub_overflow(a, b, &word);
            EXPECT_EQ(Taken([&] { (void)(x - y); }) == 0, differenceFits);
            const bool productFits = !__builtin_mul_overflow(a, b, &word);
            EXPECT_EQ(Taken([&] { (void)(x * y); }) == 0, productFits);
            EXPECT_EQ(Taken([&] { (void)(x * b); }) == 0, productFits);
            EXPECT_EQ(Taken([&] { Integer(x) *= y; }) == 0, productFits);
            const bool bothFit = productFits && !__builtin_add_overflow(word, 3, &word);
            EXPECT_EQ(Taken([&] { Integer(three).AddProduct(x, y); }) == 0, bothFit);
            const bool restFits =
                !__builtin_mul_overflow(a, b, &word) && !__builtin_sub_overflow(3, word, &word);
            EXPECT_EQ(Taken([&] { Integer(three).SubtractProduct(x, y); }) == 0, restFits);
            const bool isDivided = b != 0 && (a != kLeast || b != -1);
            if (b != 0)
            {
                EXPECT_EQ(Taken([&] { (void)(x / y); }) == 0, isDivided);
                EXPECT_EQ(Taken([&] { (void)(x % y); }) == 0, isDivided);
                Integer quotient;
                Integer rest;
                EXPECT_EQ(Taken([&] { Divide(x, y, quotient, rest); }) == 0, isDivided);
            }
            const bool isLeastAlone = (a == kLeast || a == 0) && (b == kLeast || b == 0);
            EXPECT_EQ(Taken([&] { (void)Gcd(x, y); }) == 0, !isLeastAlone || (a == 0 && b == 0));
            EXPECT_EQ(Taken([&] { (void)(x < y && x == b && x < b); }), 0);
        }
    }
}

TEST(IntegerMemory, IsNotTakenForAWordItself)
{
    for (const std::int64_t a : Edges())
    {
        SCOPED_TRACE(a);
        const Integer x = a;
        const std::string digits = x.ToString();
        EXPECT_EQ(Taken([&] { (void)Integer(a); }), 0);
        EXPECT_EQ(Taken([&] { (void)Integer(digits); }), 0);
        EXPECT_EQ(Taken([&] { (void)Integer(x); }), 0);
        EXPECT_EQ(Taken([&] { (void)(-x); }) == 0, a != kLeast);
        EXPECT_EQ(Taken([&] { (void)(x.ToString() == digits && BitLength(x) == 64); }), 0);
        EXPECT_EQ(Taken([&] { (void)(Integer(x) >>= 3); }), 0);
        for (const unsigned bits : {0U, 1U, 31U, 60U, 61U, 62U})
        {
            const bool fits = BitLength(x) + bits <= 63;
            EXPECT_EQ(Taken([&] { (void)(x << bits); }) == 0, fits) << bits;
        }
    }
    EXPECT_EQ(Taken([] { (void)Integer(static_cast<std::uint64_t>(kMost)); }), 0);
    EXPECT_GT(Taken([] { (void)Integer(static_cast<std::uint64_t>(kMost) + 1); }), 0);
    // However it was computed.
    const Integer power = Power(Integer(3), 39);
    EXPECT_EQ(Taken([&] { (void)(power + power - power); }), 0);
}

TEST(IntegerMemory, IsGivenBack)
{
    const auto use = []
    {
        const Integer large(std::string(60, '7'));
        Integer copy = large;
        Integer moved = std::move(copy);
        copy = large;
        copy = 5;
        moved = copy;
        Integer product = large * large;
        product = std::move(moved);
    };
    EXPECT_GT(Taken(use), 0);
    EXPECT_EQ(g_held, 0);
}

/// A long number is given others without asking anew, is not copied as long once it is short, and
/// is compared where it lies.
TEST(IntegerMemory, IsKeptByANumberThatBecameLonger)
{
    Integer large = Power(Integer(7), 50);
    const Integer other = Power(Integer(7), 40);
    const Integer word = 5;
    Integer quotient = large;
    Integer rest = large;
    EXPECT_EQ(Taken([&] { large = other; }), 0);
    EXPECT_EQ(Taken([&] { large = word; }), 0);
    EXPECT_EQ(Taken([&] { (void)Integer(large); }), 0);
    EXPECT_EQ(Taken([&] { (void)(large += word); }), 0);
    EXPECT_EQ(Taken([&] { Divide(word, word, quotient, rest); }), 0);
    EXPECT_EQ(quotient, 1);
    EXPECT_EQ(rest, 0);
    EXPECT_EQ(Taken([&] { (void)(large < other && other == large && large == 5); }), 0);
    Integer moved;
    EXPECT_EQ(Taken([&] { moved = std::move(large); }), 0);
    EXPECT_EQ(moved, 10);
    EXPECT_EQ(Taken([&] { swap(moved, quotient); }), 0);
    // A number grows into room of 128 bits, whatever it needs at first.
    Integer growing = kMost;
    EXPECT_EQ(Taken([&] { growing += growing; }), 1);
    EXPECT_EQ(Taken([&] { growing <<= 60; }), 0);
}

}  // namespace
}  // namespace nuv::test
