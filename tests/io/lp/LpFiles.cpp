// Real files: those of other programs' tests, each read or refused as it should be, and the models
// of the textbooks.
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/TextFile.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace nuv
{
namespace
{

struct File
{
    const char* name;
    const char* error;    ///< "code line:column"; empty if it is read
    const char* relaxed;  ///< with integers relaxed: "rows variables entries", or the error
};

constexpr File kFiles[] = {
    {"highs_1448.lp", "lp.no-objective 1:1", "lp.no-objective 1:1"},
    {"highs_1449b.lp", "", "1 1 1"},
    {"highs_2122.lp", "lp.refused-section 1562:1", "lp.refused-section 1821:1"},
    {"highs_garbage.lp", "lp.no-objective 2:1", "lp.no-objective 2:1"},
    {"highs_issue-2585.lp", "lp.refused-section 14:1", "6 4 15"},
    {"highs_qcqp.lp", "lp.quadratic 2:10", "lp.quadratic 2:10"},
    {"highs_qjh_uncon.lp", "lp.quadratic 4:17", "lp.quadratic 4:17"},
    {"highs_qptestnw.lp", "lp.quadratic 2:15", "lp.quadratic 2:15"},
    {"highs_semi-continuous.lp", "lp.refused-section 11:1", "lp.refused-section 11:1"},
    {"lpp_1obj_1cons_all_variables_with_bounds.lp", "lp.refused-section 10:1", "1 3 3"},
    {"lpp_2obj_2cons_only_binary_vars.lp", "lp.several-objectives 5:2",
     "lp.several-objectives 5:2"},
    {"lpp_AmericanSteelProblem.lp", "lp.refused-section 53:1", "9 14 28"},
    {"lpp_ComputerPlantProblem.lp", "lp.refused-section 54:1", "8 20 36"},
    {"lpp_afiro.lp", "lp.several-objectives 5:2", "lp.several-objectives 5:2"},
    {"lpp_blank_lines.lp", "lp.refused-section 8:1", "1 3 2"},
    {"lpp_boeing2.lp", "", "140 162 1215"},
    {"lpp_corrupt.lp", "lp.text-after-end 7:1", "lp.text-after-end 7:1"},
    {"lpp_diet.lp", "", "7 16 64"},
    {"lpp_infile_comments.lp", "lp.refused-section 7:1", "1 7 6"},
    {"lpp_invalid.lp", "lp.text-after-end 7:1", "lp.text-after-end 7:1"},
    {"lpp_limbo.lp", "lp.refused-section 12:1", "2 4 4"},
    {"lpp_milo1.lp", "lp.refused-section 9:1", "2 2 4"},
    {"lpp_model.lp", "lp.refused-section 11:1", "lp.refused-section 13:1"},
    {"lpp_mosek.lp", "", "1 13 4"},
    {"lpp_no_end_section.lp", "lp.several-objectives 3:2", "lp.several-objectives 3:2"},
    {"lpp_output.lp", "", "2 5 5"},
    {"lpp_output2_2.lp", "", "6 9 9"},
    {"lpp_output2_4.lp", "", "15 15 27"},
    {"lpp_pulp.lp", "lp.refused-section 78:1", "49 62 199"},
    {"lpp_sc50a.lp", "", "49 48 130"},
    {"lpp_scientific_notation_2.lp", "", "2 2 4"},
    {"lpp_sos.lp", "lp.refused-section 17:1", "lp.refused-section 21:1"},
    {"lpp_test.lp", "lp.double-colon 8:3", "lp.double-colon 8:3"},
    {"lpp_test_copy.lp", "lp.double-colon 8:3", "lp.double-colon 8:3"},
    {"moi_example_lo1.lp", "", "3 4 9"},
    {"moi_invalid_bound_2.lp", "lp.bad-bound 6:5", "lp.bad-bound 6:5"},
    {"moi_invalid_sos_constraint.lp", "lp.refused-section 8:1", "lp.refused-section 8:1"},
    {"moi_invalid_variable_name.lp", "lp.name-starts-with-digit 3:8",
     "lp.name-starts-with-digit 3:8"},
    {"moi_model1_tricky.lp", "lp.quadratic 9:11", "lp.quadratic 9:11"},
    {"moi_tricky_quadratic.lp", "lp.quadratic 2:6", "lp.quadratic 2:6"},
    {"pyomo_opt_test2.lp", "lp.refused-section 6:1", "2 2 4"},
    {"pyomo_step.lp", "lp.refused-section 75:1", "10 11 23"},
    {"pyomo_test2.lp", "lp.refused-section 6:1", "2 2 4"},
    {"scip_3047.lp", "", "3 4 12"},
    {"scip_3499.lp", "lp.refused-section 65:1", "11 43 53"},
    {"scip_3787.lp", "lp.refused-section 18:1", "lp.refused-section 20:1"},
    {"scip_simple.lp", "lp.refused-section 10:1", "3 4 9"},
    {"zimpl_chvatal_diet.lp", "lp.other-dialect 1:1", "lp.other-dialect 1:1"},
};

std::string Outcome(const ReadResult& reading, bool sizes)
{
    if (!reading.Ok())
    {
        const Error& error = reading.GetError();
        return error.code + " " + std::to_string(error.line) + ":" + std::to_string(error.column);
    }
    const Model& model = *reading.model;
    return sizes ? std::to_string(model.RowCount()) + " " + std::to_string(model.VariableCount()) +
                       " " + std::to_string(model.NonzeroCount())
                 : "";
}

ReadResult ReadFile(const std::string& path, bool relax)
{
    const Result<std::string> text = ReadTextFile(path);
    EXPECT_TRUE(text.Ok()) << path;
    ReadOptions options;
    options.relax = relax;
    return text.Ok() ? ReadLp(*text, path, options) : ReadResult();
}

const std::string kModels = NUV_TEST_MODELS;

TEST(LpFiles, OfOtherProgramsAreReadOrRefusedAsDecided)
{
    for (const File& file : kFiles)
    {
        const std::string path = kModels + "/lpformat/" + file.name;
        EXPECT_EQ(Outcome(ReadFile(path, false), false), file.error) << file.name;
        EXPECT_EQ(Outcome(ReadFile(path, true), true), file.relaxed) << file.name;
    }
}

TEST(LpFiles, OfOtherProgramsAllHaveADecision)
{
    std::set<std::string> decided;
    for (const File& file : kFiles)
        decided.insert(file.name);
    for (const auto& entry : std::filesystem::directory_iterator(kModels + "/lpformat"))
    {
        const bool known = decided.count(entry.path().filename().string()) == 1;
        EXPECT_TRUE(known || entry.path().extension() != ".lp") << entry.path();
    }
}

TEST(LpFiles, OfTextbooksAreReadInSilenceAsCanonicalModels)
{
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kModels + "/textbook"))
    {
        if (entry.path().extension() != ".lp")
            continue;
        ++count;
        const ReadResult reading = ReadFile(entry.path().string(), false);
        ASSERT_TRUE(reading.Ok()) << entry.path();
        EXPECT_TRUE(reading.diagnostics.empty()) << Render(reading.diagnostics.front());
        const Model& model = *reading.model;
        EXPECT_EQ(model.ObjectiveSense(), Sense::Maximize) << entry.path();
        const auto isInfinite = [](double bound) { return bound == -Infinity; };
        EXPECT_TRUE(std::all_of(model.RowLower().begin(), model.RowLower().end(), isInfinite))
            << entry.path();
    }
    EXPECT_EQ(count, 53u);
}

TEST(LpFiles, CutOffAnywhereAreNeverACrashAndNeverReadAsMoreThanTheyHold)
{
    // A shorter file may be a model too, but never one with more rows than the whole.
    for (const char* name :
         {"lpp_model.lp", "lpp_output.lp", "moi_model1_tricky.lp", "lpp_test.lp", "pyomo_step.lp"})
    {
        const Result<std::string> text = ReadTextFile(kModels + "/lpformat/" + name);
        ASSERT_TRUE(text.Ok());
        for (std::size_t size = 0; size <= text->size(); ++size)
        {
            const ReadResult reading = ReadLp(std::string_view(*text).substr(0, size), name);
            EXPECT_NE(reading.Ok(),
                      std::any_of(reading.diagnostics.begin(), reading.diagnostics.end(),
                                  [](const Diagnostic& diagnostic)
                                  { return diagnostic.severity == Severity::Error; }));
            EXPECT_TRUE(!reading.Ok() || reading.model->RowCount() <= 30u);
        }
    }
}

}  // namespace
}  // namespace nuv
