// Running the self-test: what it says where all is well, and where the host is not as promised.
#include "Nuv/Corpus/Families.hpp"
#include "Nuv/SelfTest/SelfTest.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace nuv::selftest
{
using corpus::FamilyAt;
using corpus::FamilyCount;

namespace
{
/// What `print` prints.
std::string Printed(const std::function<void(FILE*)>& print)
{
    FILE* const file = std::tmpfile();
    if (!file)
        return {};
    print(file);
    std::string text(static_cast<std::size_t>(std::ftell(file)), '\0');
    std::rewind(file);
    const std::size_t read = std::fread(text.data(), 1, text.size(), file);
    (void)std::fclose(file);
    text.resize(read);
    return text;
}

struct Report
{
    int exitCode = -1;
    std::string text;
};

Report Reported(const char* loops)
{
    Report report;
    report.text = Printed([&](FILE* out) { report.exitCode = RunByName(loops, out); });
    return report;
}

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// The family whose results are smaller than the smallest normal number.
uint32_t SubnormalFamily()
{
    uint32_t family = 0;
    while (std::string(FamilyAt(family).name) != "subnormal")
        ++family;
    return family;
}

TEST(SelfTest, FindsThePromisedBitsOnEveryInstructionSetOfThisMachine)
{
    const Report report = Reported("all");
    EXPECT_EQ(report.exitCode, 0) << report.text;
    for (const Loops loops :
         {Loops::OfThisMachine, Loops::Plain, Loops::Baseline, Loops::Avx2, Loops::Avx512})
        EXPECT_EQ(Contains(report.text, std::string("instruction set: ") + NameOf(loops) + "\n"),
                  Has(loops));
    EXPECT_TRUE(Has(Loops::Plain));
}

TEST(SelfTest, PrintsALineForEachFamilyAndATotal)
{
    const Report report = Reported("plain");
    EXPECT_EQ(std::count(report.text.begin(), report.text.end(), '\n'), FamilyCount() + 2)
        << report.text;
    EXPECT_TRUE(Contains(report.text, "\n  total                  10016 models  10"));
    EXPECT_TRUE(Contains(report.text, "the promised bits\n"));
}

TEST(SelfTest, AnswersToNamesItKnowsAlone)
{
    EXPECT_EQ(Reported("sse9").exitCode, 64);
    EXPECT_EQ(Reported("").exitCode, 64);
    EXPECT_EQ(Reported("sse9").text, "");
}

TEST(SelfTest, SaysWhichInstructionSetIsMissing)
{
    if (Has(Loops::Avx512))
        GTEST_SKIP() << "this machine has them all";
    const Report report = Reported("avx512");
    EXPECT_EQ(report.exitCode, 70);
    EXPECT_EQ(report.text, "instruction set: avx512 is not in this build or not on this machine\n");
}

TEST(SelfTest, PrintsTheTableOfHashesAsItStandsInItsFile)
{
    std::ifstream file(NUV_TEST_GOLDEN);
    const std::string table{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(Printed([](FILE* out) { PrintHashes(Loops::OfThisMachine, out); }), table);
}

TEST(SelfTest, PrintsAHashForEachModel)
{
    const std::string models = Printed([](FILE* out) { PrintModels(Loops::OfThisMachine, out); });
    EXPECT_EQ(std::count(models.begin(), models.end(), '\n'), 10016);
    EXPECT_EQ(models.substr(0, 18), "fixed 0: 3 x 2 ok ");
}

TEST(SelfTestHost, IsAsPromisedHere)
{
    const Host host = InspectHost();
    EXPECT_FALSE(host.flushesResults);
    EXPECT_FALSE(host.flushesOperands);
    EXPECT_TRUE(host.roundsToNearest);
}

#if defined(__SSE2__)
/// Sets bits of the control register for as long as it lives.
class ControlBits
{
public:
    explicit ControlBits(unsigned bits) : before(_mm_getcsr())
    {
        _mm_setcsr(before | bits);
    }
    ~ControlBits()
    {
        _mm_setcsr(before);
    }
    ControlBits(const ControlBits&) = delete;
    ControlBits& operator=(const ControlBits&) = delete;

private:
    unsigned before;
};

constexpr unsigned kFlushResults = 0x8000U;
constexpr unsigned kFlushOperands = 0x0040U;

TEST(SelfTestHost, IsCaughtFlushingResults)
{
    const ControlBits control(kFlushResults);
    EXPECT_TRUE(InspectHost().flushesResults);
    EXPECT_FALSE(InspectHost().flushesOperands);
    EXPECT_NE(RunFamily(SubnormalFamily(), Loops::OfThisMachine).hash,
              corpus::GoldenHash("subnormal"));
    const Report report = Reported("machine");
    EXPECT_EQ(report.exitCode, 70);
    EXPECT_TRUE(Contains(report.text, "flushes denormals to zero (results): "));
    EXPECT_TRUE(Contains(report.text, "DIFFERENT\n"));
    EXPECT_TRUE(Contains(report.text, "families differ\n"));
}

TEST(SelfTestHost, IsCaughtFlushingOperands)
{
    const ControlBits control(kFlushOperands);
    EXPECT_FALSE(InspectHost().flushesResults);
    EXPECT_TRUE(InspectHost().flushesOperands);
}
#endif

#if defined(FE_UPWARD) && defined(FE_DOWNWARD) && defined(FE_TOWARDZERO)
TEST(SelfTestHost, IsCaughtRoundingElsewhere)
{
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO})
    {
        ASSERT_EQ(std::fesetround(mode), 0);
        const bool isCaught = !InspectHost().roundsToNearest;
        (void)std::fesetround(FE_TONEAREST);
        EXPECT_TRUE(isCaught) << mode;
    }
}
#endif

}  // namespace
}  // namespace nuv::selftest
