// Files of every kind that a path may lead to.
#include "Nuv/Io/TextFile.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include <unistd.h>
#include <zlib.h>

namespace nuv
{
namespace
{

class TextFile : public testing::Test
{
protected:
    void SetUp() override
    {
        m_directory =
            std::filesystem::temp_directory_path() / ("nuv-text-file-" + std::to_string(getpid()));
        std::filesystem::create_directories(m_directory);
    }
    void TearDown() override
    {
        std::filesystem::remove_all(m_directory);
    }

    std::string Path(const std::string& name) const
    {
        return (m_directory / name).string();
    }

    std::string Write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }

    /// The code of the error, or "" and the text in `text`.
    static std::string Read(const std::string& path, std::string* text = nullptr)
    {
        Result<std::string> result = ReadTextFile(path);
        if (!result)
            return result.GetError().code;
        if (text != nullptr)
            *text = *result;
        return "";
    }

    std::filesystem::path m_directory;
};

std::string Packed(const std::string& text)
{
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
    std::string input = text;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    EXPECT_EQ(deflateEnd(&stream), Z_OK);
    return packed;
}

/// Lines that do not pack to nothing.
std::string LongText(std::size_t size)
{
    std::mt19937 random(1);
    std::string text;
    while (text.size() < size)
        text += std::to_string(random()) + "\n";
    return text;
}

TEST_F(TextFile, IsReadByteForByte)
{
    std::string text;
    EXPECT_EQ(Read(Write("a.lp", std::string("a\r\n\0b", 5)), &text), "");
    EXPECT_EQ(text, std::string("a\r\n\0b", 5));
}

TEST_F(TextFile, MayBeEmpty)
{
    std::string text = "before";
    EXPECT_EQ(Read(Write("a.lp", ""), &text), "");
    EXPECT_EQ(text, "");
}

TEST_F(TextFile, ThatIsLargeIsReadWhole)
{
    const std::string written = LongText(5000000);
    std::string text;
    EXPECT_EQ(Read(Write("a.lp", written), &text), "");
    EXPECT_TRUE(text == written);
}

TEST_F(TextFile, ThatIsMissingOrADirectoryIsAnError)
{
    EXPECT_EQ(Read(Path("none.lp")), "file.missing");
    EXPECT_EQ(Read(Write("a.lp", "x") + "/b.lp"), "file.missing");
    EXPECT_EQ(Read(m_directory.string()), "file.directory");
    EXPECT_EQ(Read(""), "file.missing");
}

TEST_F(TextFile, ThatMayNotBeReadIsAnError)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "the superuser may read everything";
    const std::string path = Write("a.lp", "x");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    EXPECT_EQ(Read(path), "file.permission");
}

TEST_F(TextFile, ThatIsPackedIsUnpackedWhateverItsName)
{
    const std::string written = LongText(3000000);
    std::string text;
    EXPECT_EQ(Read(Write("a.lp", Packed(written)), &text), "");
    EXPECT_TRUE(text == written);
    EXPECT_EQ(Read(Write("plain.lp.gz", "max x"), &text), "");
    EXPECT_EQ(text, "max x");
}

TEST_F(TextFile, OfSeveralPackedMembersIsTheirSequence)
{
    std::string text;
    EXPECT_EQ(Read(Write("a.lp.gz", Packed("one ") + Packed("") + Packed("two")), &text), "");
    EXPECT_EQ(text, "one two");
}

TEST_F(TextFile, ThatIsPackedAndCutOffOrDamagedIsAnError)
{
    const std::string packed = Packed(LongText(100000));
    for (const std::size_t size :
         {std::size_t{2}, std::size_t{10}, packed.size() / 2, packed.size() - 1})
        EXPECT_EQ(Read(Write("cut.gz", packed.substr(0, size))), "file.damaged") << size;
    std::string damaged = packed;
    damaged[damaged.size() / 2] ^= 0x55;
    EXPECT_EQ(Read(Write("damaged.gz", damaged)), "file.damaged");
    EXPECT_EQ(Read(Write("tail.gz", packed + "no member")), "file.damaged");
}

TEST_F(TextFile, NamesStandardInputInMessages)
{
    EXPECT_EQ(DisplayName("-"), "<stdin>");
    EXPECT_EQ(DisplayName("a.lp"), "a.lp");
}

}  // namespace
}  // namespace nuv
