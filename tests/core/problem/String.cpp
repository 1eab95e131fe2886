// The string of names: its seven operations, on one allocator and on two, and under one that
// refuses.
#include <memory>
#include <string>
#include <string_view>

#include "tests/support/Names.hpp"
#include "tests/support/RefusedAllocations.hpp"
#include "tests/support/TestAllocator.hpp"

namespace
{
/// A string of any bytes, NULs among them.
class Bytes
{
public:
    Bytes(NuvAllocator* allocator, std::string_view bytes)
    {
        const std::string blank(bytes.size(), ' ');
        EXPECT_EQ(NuvStringConstructFormatted(&string, allocator, "%s", blank.c_str()), &string);
        for (std::size_t i = 0; i < bytes.size(); ++i)
            string.buf[i] = bytes[i];
    }

    ~Bytes()
    {
        NuvStringDestruct(&string);
    }

    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;

    operator const NuvString*() const
    {
        return &string;
    }

    operator NuvString*()
    {
        return &string;
    }

    NuvString string;
};

/// The characters end in a NUL, and the block, if there is one, is that of the capacity.
void ExpectSound(const NuvString& string, const TestAllocator& allocator)
{
    ASSERT_NE(string.buf, nullptr);
    EXPECT_EQ(string.buf[string.size], '\0');
    EXPECT_LE(string.size, string.capacity);
    if (allocator.Owns(string.buf))
    {
        EXPECT_EQ(allocator.SizeOf(string.buf), string.capacity + 1);
    }
    allocator.CheckGuards();
}

// Construction -------------------------------------------------------------------------------

TEST(String, ConstructDefaultIsEmptyAndReadableAndTakesNoBlock)
{
    TestAllocator allocator;
    NuvString string;
    EXPECT_EQ(NuvStringConstructDefault(&string, allocator), &string);
    EXPECT_EQ(string.allocator, allocator.operator NuvAllocator*());
    EXPECT_EQ(string.size, 0u);
    EXPECT_STREQ(string.buf, "");
    ExpectSound(string, allocator);
    EXPECT_EQ(allocator.Requests(), 0u);
    NuvStringDestruct(&string);
}

TEST(String, ConstructFormattedWritesWhatPrintfWritesAtEveryLength)
{
    TestAllocator allocator;
    for (int length = 0; length <= 100; ++length)
    {
        NuvString string;
        ASSERT_EQ(NuvStringConstructFormatted(&string, allocator, "%0*d%c", length, 0, 'x'),
                  &string);
        const std::string zeros(static_cast<std::size_t>(length > 0 ? length : 1), '0');
        EXPECT_EQ(TextOf(string), zeros + 'x');
        EXPECT_EQ(string.allocator, allocator.operator NuvAllocator*());
        ExpectSound(string, allocator);
        NuvStringDestruct(&string);
    }
    EXPECT_EQ(allocator.LiveBlocks(), 0u);
}

TEST(String, ConstructFormattedTakesItsArguments)
{
    TestAllocator allocator;
    NuvString string;
    ASSERT_EQ(NuvStringConstructFormatted(&string, allocator, "%s%u%%", "X", 4294967295u), &string);
    EXPECT_EQ(TextOf(string), "X4294967295%");
    NuvStringDestruct(&string);
    ASSERT_EQ(NuvStringConstructFormatted(&string, allocator, "%g and %g", 0.5, -3.0), &string);
    EXPECT_EQ(TextOf(string), "0.5 and -3");
    NuvStringDestruct(&string);
    ASSERT_EQ(NuvStringConstructFormatted(&string, allocator, "%s", ""), &string);
    EXPECT_EQ(TextOf(string), "");
    ExpectSound(string, allocator);
    NuvStringDestruct(&string);
}

TEST(String, ConstructFormattedAnswersNullForWhatPrintfCannotWrite)
{
    TestAllocator allocator;
    NuvString x;
    // No character of the C locale.
    const wchar_t none[] = {0x7FFFFFFF, 0};
    EXPECT_EQ(NuvStringConstructFormatted(&x, allocator, "%ls", none), nullptr);
    EXPECT_EQ(TextOf(x), "");
    EXPECT_EQ(allocator.Requests(), 0u);
}

TEST(String, ConstructCopyIsIndependentAndOnTheAllocatorOfItsSource)
{
    TestAllocator allocator;
    Bytes source(allocator, "a name");
    NuvString copy;
    ASSERT_EQ(NuvStringConstructCopy(&copy, source), &copy);
    EXPECT_EQ(copy.allocator, allocator.operator NuvAllocator*());
    EXPECT_EQ(TextOf(copy), "a name");
    EXPECT_NE(copy.buf, source.string.buf);
    ExpectSound(copy, allocator);
    copy.buf[0] = 'A';
    EXPECT_EQ(TextOf(source), "a name");
    NuvStringDestruct(&copy);
    EXPECT_EQ(TextOf(source), "a name");
}

TEST(String, ConstructCopyKeepsEveryByte)
{
    TestAllocator allocator;
    using namespace std::string_view_literals;
    const std::string_view bytes = "\0a\0\xFF\x80 \n"sv;
    const Bytes source(allocator, bytes);
    NuvString copy;
    ASSERT_EQ(NuvStringConstructCopy(&copy, source), &copy);
    EXPECT_EQ(TextOf(copy), bytes);
    ExpectSound(copy, allocator);
    NuvStringDestruct(&copy);
}

// Assignment ---------------------------------------------------------------------------------

TEST(String, AssignGivesTheValueAndKeepsTheAllocator)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    const std::string_view values[] = {"", "a", "ten bytes.", "a name of thirty characters, ok"};
    for (const std::string_view from : values)
        for (const std::string_view to : values)
        {
            const Bytes source(elsewhere, from);
            Bytes string(allocator, to);
            EXPECT_EQ(NuvStringAssign(string, source), &string.string);
            EXPECT_EQ(TextOf(string), from);
            EXPECT_EQ(string.string.allocator, allocator.operator NuvAllocator*());
            EXPECT_FALSE(elsewhere.Owns(string.string.buf));
            EXPECT_EQ(TextOf(source), from);
            ExpectSound(string.string, allocator);
        }
}

TEST(String, AssignWithinTheCapacityTakesNoBlock)
{
    TestAllocator allocator;
    Bytes string(allocator, "a long name");
    const Name shorter("short");
    const Name longer("a long n@me");
    const std::size_t requests = allocator.Requests();
    EXPECT_EQ(NuvStringAssign(string, shorter), &string.string);
    EXPECT_EQ(TextOf(string), "short");
    ExpectSound(string.string, allocator);
    EXPECT_EQ(NuvStringAssign(string, longer), &string.string);
    EXPECT_EQ(TextOf(string), "a long n@me");
    ExpectSound(string.string, allocator);
    EXPECT_EQ(allocator.Requests(), requests);
}

TEST(String, AssignToItselfChangesNothing)
{
    TestAllocator allocator;
    for (const std::string_view value : {"", "a name"})
    {
        Bytes string(allocator, value);
        EXPECT_EQ(NuvStringAssign(string, string), &string.string);
        EXPECT_EQ(TextOf(string), value);
        ExpectSound(string.string, allocator);
    }
}

// Comparison ---------------------------------------------------------------------------------

TEST(String, EqualComparesAllBytesAndNothingElse)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    using namespace std::string_view_literals;
    const std::string_view values[] = {""sv, "a"sv, "b"sv, "ab"sv, "a\0"sv, "a\0b"sv, "a\0c"sv};
    for (const std::string_view first : values)
        for (const std::string_view second : values)
        {
            const Bytes x(allocator, first);
            const Bytes y(elsewhere, second);
            EXPECT_EQ(NuvStringEqual(x, y), first == second ? 1 : 0);
        }
}

TEST(String, EqualIgnoresTheCapacity)
{
    TestAllocator allocator;
    Bytes roomy(allocator, "a long name");
    const Name plain("a");
    ASSERT_NE(NuvStringAssign(roomy, plain), nullptr);
    EXPECT_EQ(NuvStringEqual(roomy, plain), 1);
    EXPECT_EQ(NuvStringHash(roomy), NuvStringHash(plain));
}

// Published values of the 64-bit FNV-1a hash.
TEST(String, HashIsFnv1aOf64Bits)
{
    TestAllocator allocator;
    EXPECT_EQ(NuvStringHash(Name("")), 0xcbf29ce484222325u);
    EXPECT_EQ(NuvStringHash(Name("a")), 0xaf63dc4c8601ec8cu);
    EXPECT_EQ(NuvStringHash(Name("foobar")), 0x85944171f73967e8u);
}

TEST(String, HashTakesBytesAsUnsignedAndCountsNuls)
{
    TestAllocator allocator;
    using namespace std::string_view_literals;
    for (const std::string_view bytes : {"\xFF"sv, "\x80\x7F"sv, "\0"sv, "a\0"sv, "\0\0\xFE"sv})
    {
        NuvSizeT expected = 0xcbf29ce484222325u;
        for (const char byte : bytes)
        {
            expected ^= static_cast<NuvSizeT>(byte) & 0xFFu;
            expected *= 0x100000001b3u;
        }
        EXPECT_EQ(NuvStringHash(Bytes(allocator, bytes)), expected);
    }
}

// Destruction --------------------------------------------------------------------------------

TEST(String, DestructGivesTheBlockBack)
{
    TestAllocator allocator;
    NuvString string;
    ASSERT_EQ(NuvStringConstructFormatted(&string, allocator, "a name"), &string);
    EXPECT_EQ(allocator.LiveBlocks(), 1u);
    NuvStringDestruct(&string);
    EXPECT_EQ(allocator.LiveBlocks(), 0u);
    EXPECT_EQ(allocator.NullsGivenBack(), 0u);
}

// Refused memory -----------------------------------------------------------------------------

TEST(StringRefused, ConstructionsAnswerNullAndLeaveAnEmptyString)
{
    for (const char* const text : {"a", "a name that is longer than any buffer on the stack"})
        ForEachRefusedAllocation(
            [text](TestAllocator& allocator)
            {
                NuvString string;
                const bool isMade =
                    NuvStringConstructFormatted(&string, allocator, "%s", text) == &string;
                EXPECT_EQ(isMade, allocator.Refusals() == 0);
                EXPECT_EQ(TextOf(string), isMade ? text : "");
                ExpectSound(string, allocator);

                const std::size_t refusals = allocator.Refusals();
                NuvString copy;
                const Name source(text);
                NuvString view = source.string;
                view.allocator = allocator;
                const bool isCopied = NuvStringConstructCopy(&copy, &view) == &copy;
                EXPECT_EQ(isCopied, allocator.Refusals() == refusals);
                EXPECT_EQ(TextOf(copy), isCopied ? text : "");
                ExpectSound(copy, allocator);
                NuvStringDestruct(&copy);
                NuvStringDestruct(&string);
            });
}

TEST(StringRefused, EmptyStringsNeedNoMemory)
{
    TestAllocator allocator;
    allocator.RefuseFrom(1);
    NuvString string;
    const Name empty("");
    ASSERT_EQ(NuvStringConstructFormatted(&string, allocator, "%s", ""), &string);
    EXPECT_EQ(NuvStringAssign(&string, empty), &string);
    NuvString copy;
    EXPECT_EQ(NuvStringConstructCopy(&copy, &string), &copy);
    EXPECT_EQ(TextOf(copy), "");
    EXPECT_EQ(allocator.Requests(), 0u);
}

TEST(StringRefused, AssignAnswersNullAndKeepsTheValue)
{
    for (const std::string_view value : {"", "a name"})
        ForEachRefusedAllocation(
            [value](TestAllocator& allocator)
            {
                const Name longer("a longer name");
                const auto string = [&]
                {
                    const auto spared = allocator.Spare();
                    return std::make_unique<Bytes>(allocator, value);
                }();
                const char* const buf = string->string.buf;
                const bool isDone = NuvStringAssign(*string, longer) == &string->string;
                EXPECT_EQ(isDone, allocator.Refusals() == 0);
                EXPECT_EQ(TextOf(*string), isDone ? "a longer name" : value);
                if (!isDone)
                {
                    EXPECT_EQ(string->string.buf, buf);
                }
                ExpectSound(string->string, allocator);
            });
}
}  // namespace
