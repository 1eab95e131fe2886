// What the command says of itself: help, shell completion and the manual, all from one table.
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <vector>

namespace nuvlp::test
{
namespace
{

/// All that the first group of `pattern` matches, line by line.
std::vector<std::string> Matches(const std::string& text, const char* pattern)
{
    std::vector<std::string> found;
    const std::regex expression(pattern, std::regex::multiline);
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
        found.push_back((*at)[1]);
    return found;
}

std::vector<std::string> Verbs()
{
    const std::string help = RunNuvlp("--help").out;
    return Matches(help.substr(help.find("\nVerbs:\n")), "^  ([a-z]+) ");
}

/// The part of `text` from `begin` to the next `end` behind it.
std::string Between(const std::string& text, const std::string& begin, const std::string& end)
{
    const std::size_t at = text.find(begin);
    if (at == std::string::npos)
        return {};
    return text.substr(at, text.find(end, at + begin.size()) - at);
}

TEST(Completion, KnowsEveryOptionOfEveryVerb)
{
    const std::string bash = RunNuvlp("completion bash").out;
    const std::string zsh = RunNuvlp("completion zsh").out;
    const std::string fish = RunNuvlp("completion fish").out;
    std::string manual = RunNuvlp("man").out;
    manual = std::regex_replace(manual, std::regex("\\\\-"), "-");
    std::size_t options = 0;
    ASSERT_GE(Verbs().size(), 8u);
    for (const std::string& verb : Verbs())
    {
        const std::string inBash = Between(bash, "    " + verb + ")\n", "esac ;;");
        const std::string inZsh = Between(zsh, "        " + verb + ") ", " ;;");
        const std::string inManual = Between(manual, ".SS nuvlp " + verb + "\n", "\n.S");
        EXPECT_NE(fish.find(" -a " + verb + " -d "), std::string::npos) << verb;
        for (const std::string& option :
             Matches(RunNuvlp(verb + " --help").out, "^  (?:-[a-z],)?--([a-z-]+)"))
        {
            ++options;
            EXPECT_TRUE(std::regex_search(inBash, std::regex("--" + option + "[ \"|)]")))
                << verb << option;
            EXPECT_TRUE(std::regex_search(inZsh, std::regex("--" + option + "['}\\[]")))
                << verb << option;
            EXPECT_NE(inManual.find("\\fB--" + option + "\\fR"), std::string::npos)
                << verb << option;
            EXPECT_TRUE(std::regex_search(
                fish, std::regex("seen_subcommand_from " + verb + "'[^\n]* -l " + option + " ")))
                << verb << option;
        }
    }
    EXPECT_GT(options, 40u);
}

/// What bash offers at the end of `words`.
std::string Offered(const std::string& words)
{
    const std::string script =
        WriteScratch("complete.bash", "source <('" NUVLP_COMMAND "' completion bash)\n"
                                      "COMP_WORDS=(" +
                                          words +
                                          ")\n"
                                          "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                                          "_nuvlp\n"
                                          "echo \"${COMPREPLY[*]}\"\n");
    const std::string out = Scratch("offered");
    EXPECT_EQ(std::system(
                  ("cd '" NUV_TEST_MODELS "/textbook' && bash '" + script + "' >'" + out + "' 2>&1")
                      .c_str()),
              0);
    return ReadFile(out);
}

TEST(Completion, OffersVerbsOptionsWordsAndFilesInBash)
{
    EXPECT_EQ(Offered("nuvlp so"), "solve\n");
    EXPECT_EQ(Offered("nuvlp solve --ma"), "--max-pivots\n");
    EXPECT_EQ(Offered("nuvlp convert --to mps-f"), "mps-fixed mps-free\n");
    EXPECT_EQ(Offered("nuvlp convert --to = mps-fi"), "mps-fixed\n");
    EXPECT_EQ(Offered("nuvlp solve wyndor_u"), "wyndor_unbounded.lp\n");
    EXPECT_EQ(Offered("nuvlp solve --max-pivots ''"), "\n");
    EXPECT_EQ(Offered("nuvlp completion f"), "fish\n");
}

TEST(Completion, RefusesOtherShells)
{
    EXPECT_EQ(RunNuvlp("completion tcsh").exitCode, 64);
    EXPECT_EQ(RunNuvlp("completion").exitCode, 64);
    EXPECT_EQ(RunNuvlp("completion bash >/dev/full").exitCode, 73);
}

TEST(Manual, NamesEveryExitCodeOfTheHelp)
{
    const std::string manual = RunNuvlp("man").out;
    EXPECT_EQ(manual.substr(0, manual.find('\n', 10)).find(".TH NUVLP 1"), 0u);
    const std::vector<std::string> codes = Matches(RunNuvlp("--help").out, "^  ([0-9]+) ");
    EXPECT_EQ(codes.size(), 10u);
    for (const std::string& code : codes)
        EXPECT_NE(manual.find(".TP\n" + code + "\n"), std::string::npos) << code;
}

TEST(Help, SaysWhatIsWrongWithACallAndWhatToWrite)
{
    const std::string verbs = "nuvlp --help lists them.\n";
    const std::string solve = "nuvlp solve --help says more.\n";
    const std::string convert = "nuvlp convert --help says more.\n";
    const std::pair<const char*, std::string> calls[] = {
        {"", "a verb is missing\n" + verbs},
        {"sovle a.lp", "there is no verb 'sovle'; did you mean solve?\n" + verbs},
        {"paint a.lp", "there is no verb 'paint'\n" + verbs},
        {"model.lp", "a verb is missing before 'model.lp'\n"
                     "Write nuvlp solve model.lp, or another verb: " +
                         verbs},
        {"--json a.lp", "a verb is missing before --json\n"
                        "Write nuvlp solve --json FILE, or another verb: " +
                            verbs},
        {"solve", "FILE is required\n" + solve},
        {"solve a.lp b.lp", "'b.lp' is one argument too many\n" + solve},
        {"solve --max-pivot 3 a.lp",
         "solve has no option --max-pivot; did you mean --max-pivots?\n" + solve},
        {"solve --sens=3 a.lp",
         "solve has no option --sens; did you mean --sensitivity?\n" + solve},
        {"solve -x a.lp", "solve has no option -x\n" + solve},
        {"solve --time-limit -1 a.lp",
         "--time-limit takes a number that is 0 or more, not '-1'\n" + solve},
        {"solve --time-limit nan a.lp",
         "--time-limit takes a number that is 0 or more, not 'nan'\n" + solve},
        {"solve --max-pivots 1.5 a.lp",
         "--max-pivots takes a whole number that is 0 or more, not '1.5'\n" + solve},
        {"solve --max-pivots 99999999999999999999 a.lp",
         "--max-pivots takes a whole number that is 0 or more, not '99999999999999999999'\n" +
             solve},
        {"solve --max-pivots", "--max-pivots needs a value: N\n" + solve},
        {"solve --json=yes a.lp", "--json takes no value\n" + solve},
        {"solve -o a -o b a.lp", "--output is given twice\n" + solve},
        {"solve --max-pivots= a.lp", "--max-pivots needs a value: N\n" + solve},
        {"solve --numbers= a.lp", "--numbers needs a value: written|stored\n" + solve},
        {"solve -o '' a.lp", "--output needs a value: RESULT\n" + solve},
        {"solve --json= a.lp", "--json takes no value\n" + solve},
        {"solve --sensitivity --float-only a.lp",
         "--sensitivity excludes --float-only: what it shows comes with the proof\n" + solve},
        {"solve --exact --no-proof a.lp",
         "--exact excludes --no-proof: what it shows comes with the proof\n" + solve},
        {"solve --no-proof --uniqueness a.lp",
         "--uniqueness excludes --no-proof: what it shows comes with the proof\n" + solve},
        {"solve --float-only --basis-in a.bas a.lp",
         "--basis-in excludes --float-only: single precision starts from a basis of its own\n" +
             solve},
        {"convert --to mpsfixed a.lp", "--to takes lp, mps, mps-fixed, mps-free or smt2, not "
                                       "'mpsfixed'; did you mean mps-fixed?\n" +
                                           convert},
    };
    for (const auto& [call, said] : calls)
    {
        const Outcome outcome = RunNuvlp(call);
        EXPECT_EQ(outcome.err, "nuvlp: " + said) << call;
        EXPECT_EQ(outcome.out, "") << call;
        EXPECT_EQ(outcome.exitCode, 64) << call;
    }
}

TEST(Help, AnEqualsSignTakesNotTheWordBehindItForAValue)
{
    std::size_t options = 0;
    for (const std::string& verb : Verbs())
        for (const std::string& option :
             Matches(RunNuvlp(verb + " --help").out, "^  (?:-[a-z],)?(--[a-z-]+) [^ ]"))
        {
            ++options;
            const Outcome outcome = RunNuvlp(verb + " " + option + "= 1 1");
            EXPECT_TRUE(outcome.err.starts_with("nuvlp: " + option + " needs a value: "))
                << verb << " " << outcome.err;
            EXPECT_EQ(outcome.exitCode, 64) << verb << option;
        }
    EXPECT_GT(options, 25u);
}

TEST(Help, FitsATerminal)
{
    for (const std::string& verb : Verbs())
        for (const std::string& line : Matches(RunNuvlp(verb + " --help").out, "^(.*)$"))
            EXPECT_LE(line.size(), 80U) << line;
}

TEST(Help, SaysWhatAnOptionTakesAndWhatHoldsWithoutIt)
{
    const std::string help = RunNuvlp("plot --help").out;
    EXPECT_NE(
        help.find("\n  --time-limit SECONDS        Stop solving after so many seconds (60)\n"),
        std::string::npos)
        << help;
    EXPECT_NE(help.find("\n  --mps-objective-constant plus|minus\n"), std::string::npos) << help;
}

}  // namespace
}  // namespace nuvlp::test
