// Certificates as text: what is written, what is read back, and what is no certificate.
#include "Nuv/Vipr/Text.hpp"

#include <gtest/gtest.h>

namespace nuv::vipr::test::text
{
namespace
{

/// min x + y st 2 <= x + 2 y, 0 <= x, 0 <= y <= 3, in the words of the format.
const std::string kHead = "VER 1.0\nVAR 2\nx\nsecond%20y\nINT 0\nOBJ min\n2  0 1  1 1\n"
                          "CON 4 3\n"
                          "lower(x) G 0  1  0 1\n"
                          "lower(y) G 0  1  1 1\n"
                          "upper(y) L 3  1  1 1\n"
                          "row(r) G 2  2  0 1  1 2\n";
const std::string kOptimal = kHead + "RTP range 1 1\nSOL 1\npoint 1  1 1\nDER 1\n"
                                     "bound G 1  OBJ  { lin 2  0 1/2  3 1/2 } -1\n";

TEST(ViprText, ReadsWhatItWrites)
{
    const std::string unbounded = kHead + "RTP unbounded\nSOL 1\npoint 0\nRAY 1\nray 1  0 -1\n"
                                          "DER 0\n";
    const std::string infeasible = kHead + "RTP infeas\nSOL 0\nDER 3\n"
                                           "a G 1/3  1  0 1  { asm } -1\n"
                                           "b G 1  1  0 1  { rnd 1  4 1 } 6\n"
                                           "c G 1  0  { uns 4 5 4 5 } -1\n";
    for (const std::string& text : {kOptimal, unbounded, infeasible})
    {
        const Result<Certificate> certificate = Read(text, "c.vipr");
        ASSERT_TRUE(certificate) << certificate.GetError().text;
        EXPECT_EQ(Write(*certificate), text);
    }
}

TEST(ViprText, ReadsNamesAndNumbersOfAnyForm)
{
    const Result<Certificate> certificate =
        Read("% by hand\n% of two lines\nVER 1.0 VAR 2 a%2Bb 50%25%x INT 0 OBJ max 0 CON 1 0 r L\n"
             "-007.250 2 1 010/4 0 0 RTP range -inf inf SOL 0 DER 0",
             "c.vipr");
    ASSERT_TRUE(certificate) << certificate.GetError().text;
    EXPECT_EQ(certificate->problem.variables, (std::vector<std::string>{"a+b", "50%%x"}));
    const Constraint& row = certificate->problem.constraints[0];
    EXPECT_EQ(row.side, Rational(-29, 4));
    EXPECT_EQ(row.terms, (Terms{{1, Rational(5, 2)}})) << "a zero is no entry";
    EXPECT_FALSE(certificate->lower.has_value());
    EXPECT_FALSE(certificate->upper.has_value());
}

TEST(ViprText, EncodesNamesThatWouldFallApart)
{
    Certificate certificate;
    certificate.problem.variables = {"a b", "100%", std::string("\t\x7F", 2), "ä", "{"};
    const std::string text = Write(certificate);
    EXPECT_NE(text.find("VAR 5\na%20b\n100%25\n%09%7F\nä\n{\n"), std::string::npos) << text;
    const Result<Certificate> again = Read(text, "c.vipr");
    ASSERT_TRUE(again) << again.GetError().text;
    EXPECT_EQ(again->problem.variables, certificate.problem.variables);
}

struct Malformed
{
    std::string_view from;  ///< stands once in kOptimal
    std::string_view to;
    std::size_t line;
    std::string_view text;
};

TEST(ViprText, SaysWhatIsNoCertificate)
{
    const Malformed cases[] = {
        {"VER 1.0", "VER 2.0", 1, "'2.0' is out of place"},
        {"VAR 2", "VAR 3", 5, "'0' is out of place"},
        {"INT 0", "INT 1", 5, "'1' is out of place"},
        {"OBJ min", "OBJ least", 6, "'least' is out of place"},
        {"2  0 1  1 1\nCON", "2  0 1  2 1\nCON", 7, "the index 2 is too large"},
        {"2  0 1  1 1\nCON", "2  1 1  1 1\nCON", 7, "an index stands twice"},
        {"2  0 1  1 1\nCON", "2  0 1/0  1 1\nCON", 7, "'1/0' is out of place"},
        {"2  0 1  1 1\nCON", "2  0 1e5  1 1\nCON", 7, "'1e5' is out of place"},
        {"2  0 1  1 1\nCON", "2  0 1.  1 1\nCON", 7, "'1.' is out of place"},
        {"2  0 1  1 1\nCON", "2  0 +1  1 1\nCON", 7, "'+1' is out of place"},
        {"CON 4 3", "CON 99999999999999999999 3", 8, "'99999999999999999999' is out of place"},
        {"(x) G 0", "(x) < 0", 9, "'<' is out of place"},
        {"RTP range 1 1", "RTP range 1 one", 13, "'one' is out of place"},
        {"RTP range 1 1", "RTP optimal", 13, "'optimal' is out of place"},
        {"{ lin", "{ sum", 17, "'sum' is out of place"},
        {"3 1/2 } -1", "4 1/2 } -1", 17, "the index 4 is too large"},
        {"} -1", "} -2", 17, "'-2' is out of place"},
        {"} -1", "}", 18, "it ends too early"},
        {"} -1\n", "} -1 more\n", 17, "'more' is out of place"},
    };
    for (const Malformed& damage : cases)
    {
        std::string text = kOptimal;
        ASSERT_NE(text.find(damage.from), std::string::npos) << damage.from;
        text.replace(text.find(damage.from), damage.from.size(), damage.to);
        const Result<Certificate> certificate = Read(text, "c.vipr");
        ASSERT_FALSE(certificate) << damage.to;
        const Error& error = certificate.GetError();
        EXPECT_EQ(error.code, "vipr.malformed");
        EXPECT_EQ(error.file, "c.vipr");
        EXPECT_EQ(error.text, damage.text) << damage.to;
        EXPECT_EQ(error.line, damage.line) << damage.to;
    }
    for (const char* text : {"", "%", "% nothing else\n", "VER"})
        EXPECT_FALSE(Read(text, "c.vipr")) << text;
}

}  // namespace
}  // namespace nuv::vipr::test::text
