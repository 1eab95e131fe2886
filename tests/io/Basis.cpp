// MPS basis files: what they mean, that they come back as they were written, and what is refused.
#include "Nuv/Io/Basis/MpsBasisReader.hpp"
#include "Nuv/Io/Basis/MpsBasisWriter.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "tests/solve/SmallModels.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <string>

namespace nuv::test
{
namespace
{

/// Three rows and four variables with bounds of every kind.
Model FourByThree()
{
    Model model;
    model.SetName("small");
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y", {1, 4});
    const Variable z = model.AddVariable("z", {-Infinity, 3});
    const Variable free = model.AddVariable("free", {-Infinity, Infinity});
    model.Add("a", Range(1, x + y, 8));
    model.Add("b", x - z + free <= 5);
    model.Add("open", Range(-Infinity, x + free, Infinity));
    return model;
}

/// One letter for each: basic, lower, upper, free.
std::string Letters(const std::vector<BasisStatus>& statuses)
{
    std::string letters;
    for (const BasisStatus status : statuses)
        letters += "BLUF"[static_cast<std::size_t>(status)];
    return letters;
}

/// What a text says of that model: letters of columns and rows, then messages.
std::string Read(const std::string& text)
{
    const BasisReadResult result = ReadMpsBasis(text, "b.bas", FourByThree());
    std::string said;
    if (result.basis)
        said = Letters(result.basis->columns) + " " + Letters(result.basis->rows);
    for (const Diagnostic& diagnostic : result.diagnostics)
    {
        const Error& error = diagnostic.error;
        said += "|" + std::to_string(error.line) + ":" + std::to_string(error.column) + " " +
                error.code + ": " + error.text;
    }
    return said;
}

TEST(BasisFile, WhatIsNotSaidRestsAtItsLowerBoundAndRowsAreBasic)
{
    EXPECT_EQ(Read("NAME\nENDATA\n"), "LLUF BBB");
    EXPECT_EQ(Read("ENDATA"), "LLUF BBB");
    EXPECT_EQ(Read("\xEF\xBB\xBFNAME small\n* a comment\n\nENDATA\nbehind the end"), "LLUF BBB");
}

TEST(BasisFile, EachKindOfLine)
{
    EXPECT_EQ(Read("NAME\n XU x a\n XL y b\n UL z\nENDATA\n"), "BBUF UUB")
        << "the row b has no lower side to rest at";
    EXPECT_EQ(Read("NAME\n XL free a\n UL y\n LL x\n LL z\nENDATA\n"), "LUUB LBB");
    EXPECT_EQ(Read("NAME\n XU x open\nENDATA\n"), "BLUF BBF");
    EXPECT_EQ(Read("NAME\r\n XU free open\r\n BS a\r\nENDATA\r\n"), "LLUB BBF");
    EXPECT_EQ(Read("NAME\n BS x\n XL y a\nENDATA\n"),
              "BBUF LBB|4:7 basis.count: 4 columns and rows are basic where the model has 3 rows");
}

TEST(BasisFile, IsRefusedAtThePlaceThatIsWrong)
{
    EXPECT_EQ(Read("NAME\n XU q a\nENDATA\n"),
              "|2:5 basis.unknown-variable: the model has no variable 'q'");
    EXPECT_EQ(Read("NAME\n XU x x\nENDATA\n"), "|2:7 basis.unknown-row: the model has no row 'x'");
    EXPECT_EQ(Read("NAME\n BS q\nENDATA\n"), "|2:5 basis.unknown-row: the model has no row 'q'");
    EXPECT_EQ(Read("NAME\n UL y\n LL y\nENDATA\n"),
              "|3:5 basis.variable-twice: the variable 'y' is named a second time");
    EXPECT_EQ(Read("NAME\n XU x a\n XU y a\nENDATA\n"),
              "|3:7 basis.row-twice: the row 'a' is named a second time");
    EXPECT_EQ(Read("NAME\n XX x a\nENDATA\n"),
              "|2:2 basis.unknown-type: 'XX' is no kind of line of a basis file");
    EXPECT_EQ(Read("NAME\n XU x\nENDATA\n"), "|2:1 basis.wrong-count: XU takes a column and a row");
    EXPECT_EQ(Read("NAME\n UL x a\nENDATA\n"),
              "|2:5 basis.unknown-variable: the model has no variable 'x a'");
    EXPECT_EQ(Read("NAME\n LL\nENDATA\n"), "|2:1 basis.wrong-count: LL takes one name");
    EXPECT_EQ(Read("ROWS\n"), "|1:1 basis.unknown-section: 'ROWS' is no section of a basis file");
    EXPECT_EQ(Read("NAME\n UL y\n"), "|2:6 basis.no-end: the file ends without ENDATA");
    EXPECT_EQ(Read(""), "|1:1 basis.no-end: the file ends without ENDATA");
    EXPECT_EQ(Read("NAME\n UL x\nENDATA\n"),
              "LLUF BBB|2:5 basis.no-bound: the variable 'x' has no upper bound to rest at");
}

TEST(BasisFile, IsWrittenAsOthersReadIt)
{
    const Model model = FourByThree();
    Basis basis;
    basis.columns = {BasisStatus::Basic, BasisStatus::AtUpper, BasisStatus::AtUpper,
                     BasisStatus::Basic};
    basis.rows = {BasisStatus::AtLower, BasisStatus::Basic, BasisStatus::Free};
    const Result<std::string> text = WriteMpsBasis(model, basis);
    ASSERT_TRUE(text.Ok());
    EXPECT_EQ(*text,
              "NAME          small\n XL x         a\n UL y\n UL z\n XL free      open\nENDATA\n");
    EXPECT_EQ(Read(*text), "BUUB LBF");
    basis.rows[1] = BasisStatus::AtUpper;
    EXPECT_EQ(WriteMpsBasis(model, basis).GetError().code, "basis.none");
    EXPECT_EQ(WriteMpsBasis(model, Basis()).GetError().code, "basis.none");
}

TEST(BasisFile, NamesWithBlanksStandInColumns)
{
    Model model;
    const Variable x = model.AddVariable("a b");
    const Variable y = model.AddVariable("y", {0, 3});
    model.Add("row 1", x + y <= 4);
    model.Maximize(2 * x + 3 * y);
    const Solution solution = model.Solve();
    const Result<std::string> text = WriteMpsBasis(model, solution.basis);
    ASSERT_TRUE(text.Ok());
    EXPECT_EQ(*text, "NAME\n XU a b       row 1\n UL y\nENDATA\n");
    EXPECT_EQ(ReadMpsBasis(*text, "b.bas", model).basis, solution.basis);
    Model longer;
    (void)longer.AddVariable("longer than eight", {0, 1});
    longer.Maximize(longer.VariableAt(0));
    EXPECT_EQ(WriteMpsBasis(longer, longer.Solve().basis).GetError().code, "basis.name");
}

TEST(BasisFile, OfAnySolutionComesBackAndNeedsNoPivot)
{
    std::mt19937 random(11);
    int written = 0;
    for (int round = 0; round < ShareOf(500); ++round)
    {
        SCOPED_TRACE(round);
        const unsigned rows = 1 + Pick(random, 7);
        const Model model = SmallModel(random, rows, 1 + Pick(random, 7));
        SolveOptions options;
        options.iisWork = 0;
        const Solution solution = model.Solve(options);
        if (solution.status != Status::Optimal)
            continue;
        const Result<std::string> text = WriteMpsBasis(model, solution.basis);
        ASSERT_TRUE(text.Ok());
        const BasisReadResult read = ReadMpsBasis(*text, "b.bas", model);
        ASSERT_TRUE(read.basis.has_value());
        ++written;
        options.start = read.basis;
        const Solution again = model.Solve(options);
        EXPECT_EQ(again.exactObjective, solution.exactObjective);
        EXPECT_EQ(again.stages[Stage::Double].pivots, 0u);
        EXPECT_EQ(again.values, solution.values);
        if (HasFailure())
            return;
    }
    EXPECT_GT(written, ShareOf(500) / 8);
}

}  // namespace
}  // namespace nuv::test
