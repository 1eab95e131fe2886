// How places and lines are shown: what a person sees on the terminal, byte by byte.
#include "Nuv/Io/Diagnostics.hpp"

#include <gtest/gtest.h>

namespace nuv
{
namespace
{

/// The one error about the place where `mark` stands in `text`, rendered.
std::string Shown(std::string_view text, std::string_view mark)
{
    DiagnosticLog log("f.lp", text);
    (void)log.Fail(text.data() + text.find(mark), "x.code", "wrong", "do right");
    return Render(log.Take().front());
}

TEST(Diagnostics, ShowFilePlaceTextLineCaretAndHint)
{
    EXPECT_EQ(Shown("one\n two three\nfour", "three"), "f.lp:2:6: error: wrong [x.code]\n"
                                                       "   two three\n"
                                                       "       ^\n"
                                                       "  hint: do right\n");
}

TEST(Diagnostics, PutTheCaretUnderTheFirstAndBehindTheLastCharacter)
{
    EXPECT_EQ(Shown("abc", "abc"),
              "f.lp:1:1: error: wrong [x.code]\n  abc\n  ^\n  hint: do right\n");
    DiagnosticLog log("f.lp", "abc");
    const std::string_view text = "abc";
    DiagnosticLog behind("f.lp", text);
    (void)behind.Warn(text.data() + 3, "x.code", "wrong");
    EXPECT_EQ(Render(behind.Take().front()), "f.lp:1:4: warning: wrong [x.code]\n  abc\n     ^\n");
}

TEST(Diagnostics, ExpandTabsAndCountThemAsOneColumn)
{
    EXPECT_EQ(Shown("\ta\tb", "b"),
              "f.lp:1:4: error: wrong [x.code]\n      a    b\n           ^\n  hint: do right\n");
}

TEST(Diagnostics, PutTheCaretUnderWideAndAccentedLetters)
{
    EXPECT_EQ(Shown("größe x", "x"),
              "f.lp:1:7: error: wrong [x.code]\n  größe x\n        ^\n  hint: do right\n");
    // Two columns each for the first two, none for the accent that sits on the e.
    EXPECT_EQ(
        Shown("重さ e\xCC\x81 x", "x"),
        "f.lp:1:7: error: wrong [x.code]\n  重さ e\xCC\x81 x\n         ^\n  hint: do right\n");
}

TEST(Diagnostics, ReplaceWhatCannotBePrinted)
{
    const std::string bytes("a\0\x1B[31m\xFF x", 10);
    EXPECT_EQ(Shown(bytes, "x"), "f.lp:1:10: error: wrong [x.code]\n"
                                 "  a\xEF\xBF\xBD\xEF\xBF\xBD[31m\xEF\xBF\xBD x\n"
                                 "           ^\n  hint: do right\n");
}

TEST(Diagnostics, ShowAWindowOfALongLine)
{
    std::string text(2001, 'b');
    text.replace(0, 1000, 1000, 'a');
    text[1000] = 'X';
    const std::string shown = Shown(text, "X");
    EXPECT_EQ(shown, "f.lp:1:1001: error: wrong [x.code]\n  …" + std::string(50, 'a') + "X" +
                         std::string(25, 'b') + "…\n  " + std::string(51, ' ') +
                         "^\n  hint: do right\n");
}

TEST(Diagnostics, CountLinesByAnyLineEnd)
{
    EXPECT_EQ(Shown("a\r\nb\rc\nX", "X").substr(0, 9), "f.lp:4:1:");
    EXPECT_EQ(Shown("a\r\n X\r\n", "X"),
              "f.lp:2:2: error: wrong [x.code]\n   X\n   ^\n  hint: do right\n");
}

TEST(Diagnostics, MayComeInAnyOrder)
{
    const std::string_view text = "a\nb\nc";
    DiagnosticLog log("f.lp", text);
    EXPECT_EQ(log.LineOf(text.data() + 4), 3u);
    EXPECT_EQ(log.LineOf(text.data()), 1u);
    EXPECT_EQ(log.LineOf(text.data() + 2), 2u);
}

TEST(Diagnostics, KeepTheFirstOfEachCodeAndCountTheOthers)
{
    const std::string_view text = "abc";
    DiagnosticLog log("f.lp", text);
    for (int i = 0; i < 25; ++i)
        (void)log.Warn(text.data(), "many", "again");
    (void)log.Note(text.data(), "one", "once");
    const std::vector<Diagnostic> all = log.Take();
    ASSERT_EQ(all.size(), DiagnosticLog::kKeptPerCode + 2);
    EXPECT_EQ(Render(all.back()), "f.lp: note: 15 more like these [many]\n");
}

TEST(Diagnostics, AreShownWithoutAPlaceWhereThereIsNone)
{
    EXPECT_EQ(Render(WithoutPlace(
                  {"file.missing", "there is no such file", "check the path", "a.lp", 0, 0})),
              "a.lp: error: there is no such file [file.missing]\n  hint: check the path\n");
}

TEST(Diagnostics, AreColouredOnRequest)
{
    EXPECT_EQ(Render(WithoutPlace({"", "wrong", "", "", 0, 0}), true),
              "\x1B[1;31merror:\x1B[0m wrong\n");
}

}  // namespace
}  // namespace nuv
