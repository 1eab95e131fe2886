// Files of other programs, as they are: each is read with the size that it has, or refused at the
// line that is wrong. The netlib models have their sizes beside them.
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "tests/io/mps/MpsText.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace
{

using namespace nuv;
using namespace nuv::test;

const std::string kModels = NUV_TEST_MODELS;

/// "rows columns nonzeros" of a model that was read, or "code line:column" of the error.
std::string Outcome(const std::string& path, const ReadOptions& options = {})
{
    const ReadResult reading = ReadModelFile(path, options);
    std::ostringstream outcome;
    if (reading.Ok())
    {
        outcome << reading.model->RowCount() << ' ' << reading.model->VariableCount() << ' '
                << reading.model->NonzeroCount();
    }
    else
    {
        const Error& error = reading.GetError();
        outcome << error.code << ' ' << error.line << ':' << error.column;
    }
    return outcome.str();
}

struct Expectation
{
    const char* file;
    const char* outcome;
    const char* relaxed = nullptr;  ///< where --relax makes another one
};

// The sizes of the continuous ones are those that other programs report.
constexpr Expectation kOdd[] = {
    {"coin_all_sections.mps", "mps.integer 14:40", "mps.refused-section 39:1"},
    {"coin_conic.mps", "mps.integer 7:40", "mps.refused-section 32:1"},
    {"coin_exmip1.mps", "mps.integer 44:40", "5 8 14"},
    {"coin_hello.mps", "21 53 224"},
    {"coin_p0033.mps", "mps.integer 35:40", "16 33 98"},
    {"coin_scOneInt.mps", "mps.integer 11:40", "6 6 12"},
    {"coin_tp4.mps", "mps.integer 15:40", "4 6 9"},
    {"highs_2171.mps", "mps.integer 104:40", "98 5 490"},
    {"highs_2821-qmatrix.mps", "mps.refused-section 21:1"},
    {"highs_2821-summation.mps", "mps.refused-section 21:1"},
    {"highs_2894.mps", "mps.refused-section 73:1"},
    {"highs_blending.mps", "2 2 4"},
    {"highs_box1.mps", "231 261 651"},
    {"highs_comment.mps", "3 2 6"},
    {"highs_egout-ac.mps", "98 141 282"},
    {"highs_gams10am.mps", "114 61 297"},
    {"highs_garbage.mps", "mps.no-model 2:1"},
    {"highs_infeasible-mip0.mps", "mps.integer 16:40", "11 9 84"},
    {"highs_issue-2204.mps", "mps.integer 17:40", "12 37 52"},
    {"highs_issue-2402.mps", "mps.integer 37:40", "32 36 344"},
    {"highs_model.xyz", "lp.no-objective 1:1"},
    {"highs_nan1.mps", "mps.not-finite 9:52"},
    {"highs_qap04.mps", "104 88 416"},
    {"highs_qjh_qmatrix.mps", "mps.refused-section 13:1"},
    {"highs_qjh_quadobj_qmatrix.mps", "mps.refused-section 13:1"},
    {"highs_sctest.mps", "10 6 29"},
    {"highs_semi-integer.mps", "mps.semi-continuous 20:2"},
    {"highs_small_mip.mps", "mps.integer 61:40", "5 8 14"},
    {"highs_test.mps", "7 7 16"},
    {"lpp_AmericanSteelProblem.mps", "mps.integer 14:40", "9 14 28"},
    {"lpp_ComputerPlantProblem.mps", "mps.integer 13:40", "8 20 36"},
    {"lpp_blank_lines.mps", "mps.integer 6:40", "1 3 2"},
    {"lpp_cplex.mps", "mps.integer 20:40", "3 4 9"},
    {"lpp_empty_bounds.mps", "mps.integer 6:40", "1 2 2"},
    {"lpp_infile_comments2.mps", "mps.integer 5:40", "0 7 0"},
    {"lpp_lol.mps", "3 4 9"},
    {"lpp_missing_signs.mps", "mps.integer 6:40", "1 6 6"},
    {"lpp_model2.mps", "mps.integer 9:40", "4 8 6"},
    {"lpp_mosek_bounds.mps", "1 15 4"},
    {"lpp_output.mps", "2 5 5"},
    {"lpp_output2_2.mps", "6 9 9"},
    {"lpp_output2_4.mps", "15 15 27"},
    {"lpp_pl_mi_only_bounds.mps", "1 2 2"},
    {"lpp_pulp2.mps", "mps.integer 14:40", "7 139 147"},
    {"lpp_sc50a.mps", "49 48 130"},
    {"lpp_scientific_notation_2.mps", "2 2 4"},
    {"lpp_test2.mps", "mps.integer 14:40", "7 139 147"},
    {"moi_failing_bad_objective_sense.mps", "mps.unknown-sense 2:10"},
    {"moi_failing_bounds_invalid_type.mps", "mps.missing-number 7:16"},
    {"moi_failing_bounds_malformed.mps", "mps.unknown-bound-type 7:2"},
    {"moi_failing_bounds_missing_column2.mps", "mps.unknown-column 7:15"},
    {"moi_failing_columns_marker.mps", "mps.integer 6:40", "mps.split-column 9:5"},
    {"moi_failing_malformed_indicator.mps", "mps.integer 14:2", "mps.refused-section 15:1"},
    {"moi_failing_malformed_qcmatrix.mps", "mps.refused-section 11:1"},
    {"moi_failing_malformed_qmatrix.mps", "mps.refused-section 10:1"},
    {"moi_failing_malformed_quadobj.mps", "mps.refused-section 10:1"},
    {"moi_failing_parse_items_single_2.mps", "mps.unknown-row 9:15"},
    {"moi_failing_ranges_malformed.mps", "mps.not-a-number 11:24"},
    {"moi_failing_rhs_malformed.mps", "mps.missing-row 9:8"},
    {"moi_failing_rows_duplicate.mps", "mps.duplicate-row 4:5"},
    {"moi_failing_rows_malformed.mps", "mps.row-name 3:3"},
    {"moi_failing_sos.mps", "mps.refused-section 10:1"},
    {"moi_integer_default_bounds.mps", "mps.integer 6:40", "0 1 0"},
    {"moi_integer_default_bounds_MI.mps", "mps.integer 6:40", "0 1 0"},
    {"moi_stacked_data.mps", "mps.repeated-entry 22:15"},
    {"pulp_continuous.mps", "3 3 6"},
    {"pulp_objsense_max.mps", "2 2 3"},
    {"pulp_write_mps_binary.mps", "mps.integer 9:40", "2 3 3"},
    {"pulp_write_mps_integer.mps", "mps.integer 15:40", "3 3 6"},
    {"pulp_write_mps_rename.mps", "mps.integer 7:40", "1 2 2"},
    {"pyomo_opt_test3.baseline.mps", "9 20 159"},
    {"scip_forplan_begin.mps", "3 6 6"},
    {"scip_oc5_1.mps", "mps.integer 12:40", "5 5 10"},
};

TEST(MpsFiles, OddOnesAreReadOrRefusedWithTheirLine)
{
    for (const Expectation& expected : kOdd)
    {
        const std::string path = kModels + "/mpsodd/" + expected.file;
        EXPECT_EQ(Outcome(path), expected.outcome) << expected.file;
        EXPECT_EQ(Outcome(path, Relaxed()),
                  expected.relaxed != nullptr ? expected.relaxed : expected.outcome)
            << expected.file;
    }
}

TEST(MpsFiles, OfTheOddOnesNoneIsForgotten)
{
    std::set<std::string> listed{"README.md"};
    for (const Expectation& expected : kOdd)
        listed.insert(expected.file);
    for (const auto& entry : std::filesystem::directory_iterator(kModels + "/mpsodd"))
        EXPECT_EQ(listed.count(entry.path().filename().string()), 1u) << entry.path();
}

TEST(MpsFiles, NetlibModelsHaveTheirKnownSizes)
{
    std::ifstream table(kModels + "/netlib/optima.tsv");
    std::string line;
    std::getline(table, line);
    ASSERT_EQ(line.substr(0, 14), "name\tfile\tm\tn\t");
    std::size_t read = 0;
    while (std::getline(table, line))
    {
        std::istringstream fields(line);
        std::string name;
        std::string file;
        std::string size[3];
        fields >> name >> file >> size[0] >> size[1] >> size[2];
        const std::string path = kModels + "/netlib/" + file;
        if (!std::filesystem::exists(path))
            continue;
        EXPECT_EQ(Outcome(path), size[0] + " " + size[1] + " " + size[2]) << file;
        ++read;
    }
    EXPECT_EQ(read, 30u);
}

TEST(MpsFiles, NetlibModelsWithoutAFeasiblePointHaveTheirKnownSizes)
{
    constexpr Expectation kInfeasible[] = {
        {"cplex2.mps", "224 221 1058"}, {"ex72a.mps", "197 215 467"},
        {"itest2.mps", "9 4 17"},       {"itest6.mps", "11 8 20"},
        {"klein1.mps", "54 54 696"},    {"mondou2.mps", "312 604 1208"},
        {"pang.mps", "361 460 2652"},   {"refinery.mps", "323 464 1626"},
        {"vol1.mps", "323 464 1646"},   {"woodinfe.mps", "35 89 140"},
    };
    for (const Expectation& expected : kInfeasible)
        EXPECT_EQ(Outcome(kModels + "/infeas/" + expected.file), expected.outcome) << expected.file;
}

TEST(MpsFiles, CompressedAndPlainAreTheSameModel)
{
    const Result<std::string> text = ReadTextFile(kModels + "/netlib/wood1p.mps.gz");
    ASSERT_TRUE(text.Ok());
    EXPECT_EQ(Outcome(kModels + "/netlib/wood1p.mps.gz"), "244 2594 70215");
    EXPECT_EQ(FormOf(ReadMps(*text, "wood1p.mps")), "both");
}

TEST(MpsFiles, NamesWithBlanksAreToldFromTheFile)
{
    EXPECT_EQ(FormOf(ReadModelFile(kModels + "/netlib/forplan.mps")), "fixed");
    EXPECT_EQ(FormOf(ReadModelFile(kModels + "/mpsodd/highs_blending.mps")), "free");
    EXPECT_EQ(FormOf(ReadModelFile(kModels + "/netlib/afiro.mps")), "both");
    EXPECT_TRUE(ReadModelFile(kModels + "/netlib/forplan.mps").model->FindRow("BR   1 1"));
}

TEST(MpsFiles, TheConstantOfE226IsTheNegativeOfItsRightHandSide)
{
    const ReadResult reading = ReadModelFile(kModels + "/netlib/e226.mps");
    EXPECT_EQ(reading.model->ObjectiveConstant(), 7.113);
    ReadOptions plus;
    plus.mpsConstantPlus = true;
    EXPECT_EQ(ReadModelFile(kModels + "/netlib/e226.mps", plus).model->ObjectiveConstant(), -7.113);
}

}  // namespace
