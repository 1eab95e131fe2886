// Damaged files: cut off anywhere, with bits flipped, lines lost, doubled and swapped. Whatever
// comes out is a model or an error with a place, never a crash or a wait; what is read can be
// written and read again.
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "tests/model/Generator.hpp"
#include "tests/io/mps/MpsText.hpp"
#include "tests/model/SameModel.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

using namespace nuv;
using namespace nuv::test;

/// The line around a place, with its end.
std::pair<std::size_t, std::size_t> LineAt(const std::string& text, std::size_t at)
{
    const std::size_t before = at == 0 ? std::string::npos : text.rfind('\n', at - 1);
    const std::size_t begin = before == std::string::npos ? 0 : before + 1;
    const std::size_t end = text.find('\n', at);
    return {begin, end == std::string::npos ? text.size() : end + 1};
}

std::string Damaged(std::string text, std::uint64_t seed)
{
    Generator generator(seed);
    for (std::size_t blows = 1 + generator.Below(3); blows > 0 && !text.empty(); --blows)
    {
        const std::size_t at = generator.Below(text.size());
        const auto [begin, end] = LineAt(text, at);
        switch (generator.Below(7))
        {
        case 0:
            text.resize(at);
            break;
        case 1:
            text[at] = static_cast<char>(text[at] ^ (1 << generator.Below(8)));
            break;
        case 2:
            text[at] = static_cast<char>(generator.Next());
            break;
        case 3:
            text.erase(begin, end - begin);
            break;
        case 4:
            text.insert(begin, text.substr(begin, end - begin));
            break;
        case 5:
            text.erase(at, 1 + generator.Below(20));
            break;
        default:
            text.insert(generator.Below(text.size()), text.substr(begin, end - begin));
            break;
        }
    }
    return text;
}

/// A model or an error with its place; and a model is one that can be written and read again.
void Check(const std::string& text, const std::string& what, const ReadOptions& options)
{
    const ReadResult reading = ReadMps(text, what, options);
    if (!reading.Ok())
    {
        const Error& error = reading.GetError();
        ASSERT_FALSE(error.code.empty()) << what;
        ASSERT_GT(error.line, 0u) << what;
        ASSERT_GT(error.column, 0u) << what;
        return;
    }
    for (std::size_t at = 0; at + 1 < reading.model->RowStarts().size(); ++at)
        ASSERT_LE(reading.model->RowStarts()[at], reading.model->RowStarts()[at + 1]) << what;
    const WriteResult writing = WriteMps(*reading.model);
    if (!writing.Ok())
        return;
    const ReadResult again = ReadMps(*writing.text, what);
    ASSERT_TRUE(again.Ok()) << what << Said(again);
    ASSERT_EQ(again.model->NonzeroCount(), reading.model->NonzeroCount()) << what;
    (void)WriteLp(*reading.model);
}

std::vector<std::string> Files()
{
    std::vector<std::string> files;
    for (const char* const folder : {"mpsodd", "infeas", "netlib"})
    {
        for (const auto& entry :
             std::filesystem::directory_iterator(std::string(NUV_TEST_MODELS "/") + folder))
        {
            const std::uintmax_t most = std::string(folder) == "mpsodd" ? 60000 : 25000;
            if (entry.path().extension() == ".mps" && entry.file_size() < most)
                files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST(MpsDamage, DamagedFilesGiveAModelOrAnError)
{
    constexpr std::uint64_t kCasesPerFile = 60;
    const std::vector<std::string> files = Files();
    ASSERT_GT(files.size(), 75u);
    for (const std::string& file : files)
    {
        const std::string text = *ReadTextFile(file);
        for (std::uint64_t seed = 0; seed < kCasesPerFile; ++seed)
        {
            ReadOptions options;
            options.relax = seed % 2 == 0;
            options.mpsForm = seed % 8 == 3   ? MpsForm::Fixed
                              : seed % 8 == 5 ? MpsForm::Free
                                              : MpsForm::ByContent;
            const std::string what =
                std::filesystem::path(file).filename().string() + " seed " + std::to_string(seed);
            ASSERT_NO_FATAL_FAILURE(Check(Damaged(text, seed), what, options));
        }
    }
}

TEST(MpsDamage, EveryPrefixOfAFileGivesAModelOrAnError)
{
    for (const char* const name :
         {"/mpsodd/moi_stacked_data.mps", "/mpsodd/highs_comment.mps",
          "/mpsodd/scip_forplan_begin.mps", "/mpsodd/lpp_cplex.mps", "/infeas/itest2.mps"})
    {
        const std::string text = *ReadTextFile(std::string(NUV_TEST_MODELS) + name);
        for (std::size_t length = 0; length <= text.size(); ++length)
        {
            const std::string what = std::string(name) + " cut at " + std::to_string(length);
            ASSERT_NO_FATAL_FAILURE(Check(text.substr(0, length), what, Relaxed()));
        }
    }
}

TEST(MpsDamage, LongLinesAndManyColumnsAreRead)
{
    std::string text = "ROWS\n N  c\n L  l\nCOLUMNS\n    x" + std::string(1000000, ' ') + "l  1\n";
    EXPECT_TRUE(ReadMpsText(text + "ENDATA\n").Ok());
    text = "ROWS\n N  c\n L  " + std::string(1000000, 'l') + "\nCOLUMNS\nENDATA\n";
    EXPECT_TRUE(ReadMpsText(text).Ok());
    EXPECT_FALSE(ReadMpsText(std::string(1000000, ' ').append("x")).Ok());
    EXPECT_FALSE(ReadMpsText(std::string(1000000, '\0')).Ok());
    EXPECT_FALSE(ReadMpsText("ROWS\n N  c\nCOLUMNS\n" + std::string(100000, '1')).Ok());
}

}  // namespace
