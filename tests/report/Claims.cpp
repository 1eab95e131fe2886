// What a solution file claims, read and judged.
#include "Nuv/Report/CheckClaim.hpp"
#include "Nuv/Report/ClaimReader.hpp"
#include "Nuv/Report/ClaimText.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "tests/io/lp/LpText.hpp"
#include "tests/report/JsonSchema.hpp"

#include <gtest/gtest.h>

#include <string>

namespace nuv::test
{
namespace
{

constexpr const char* kFactory = "max profit: 30 chairs + 70 tables st\n"
                                 "wood: 2 chairs + 5 tables <= 300\n"
                                 "labour: 4 chairs + 3 tables <= 240\nend";

const Model& Factory()
{
    static const Model kModel = *ReadText(kFactory).model;
    return kModel;
}

/// The codes of all disagreements, or "confirmed" or "undecided", or the error in the file.
std::string Judged(const Model& model, std::string_view text,
                   std::optional<ClaimedStatus> status = {}, const ClaimOptions& options = {})
{
    const ClaimReadResult reading = ReadClaim(text, "claim", model, status);
    if (!reading.claim)
        return reading.diagnostics.front().error.code + " " +
               std::to_string(reading.diagnostics.front().error.line) + ":" +
               std::to_string(reading.diagnostics.front().error.column);
    const ClaimReport report = CheckClaim(model, *reading.claim, options);
    ExpectValid(ClaimJson(model, report));
    if (report.judgement != Judgement::Refuted)
        return report.judgement == Judgement::Confirmed ? "confirmed" : "undecided";
    std::string codes;
    for (const Disagreement& disagreement : report.disagreements)
        codes += (codes.empty() ? "" : " ") + disagreement.code;
    return codes;
}

std::string Judged(const char* model, std::string_view text,
                   std::optional<ClaimedStatus> status = {}, const ClaimOptions& options = {})
{
    return Judged(*ReadText(model).model, text, status, options);
}

ClaimReport ReportOf(const Model& model, std::string_view text)
{
    const ClaimReadResult reading = ReadClaim(text, "claim", model, std::nullopt);
    ClaimReport report = CheckClaim(model, reading.claim.value(), {});
    ExpectValid(ClaimJson(model, report));
    return report;
}

std::string Result(std::string_view rest)
{
    return "{\"schema\":\"nuvlp/result/1\"," + std::string(rest) + "}";
}

ClaimOptions Exactly()
{
    ClaimOptions options;
    options.tolerance = 0.0;
    return options;
}

TEST(ExactNumber, IsADecimalOrAQuotient)
{
    for (const CoefficientMeaning numbers :
         {CoefficientMeaning::ShortestDecimal, CoefficientMeaning::StoredDouble})
    {
        EXPECT_EQ(ReadExactNumber("3", numbers).value(), 3);
        EXPECT_EQ(ReadExactNumber("+2.5e-1", numbers).value(), Rational(1, 4));
        EXPECT_EQ(ReadExactNumber("-6/4", numbers).value(), Rational(-3, 2));
        EXPECT_EQ(ReadExactNumber("1/10", numbers).value(), Rational(1, 10));
    }
    EXPECT_EQ(ReadExactNumber("0.1", CoefficientMeaning::ShortestDecimal).value(), Rational(1, 10));
    EXPECT_EQ(ReadExactNumber("0.1", CoefficientMeaning::StoredDouble).value(), ToRational(0.1));
    EXPECT_EQ(ReadExactNumber("9007199254740993", CoefficientMeaning::ShortestDecimal).value(),
              Rational(Integer("9007199254740993")));
    EXPECT_EQ(ReadExactNumber("9007199254740993", CoefficientMeaning::StoredDouble).value(),
              Rational(Integer("9007199254740992")));
    for (const char* wrong : {"", "x", "inf", "nan", "1e999", "1/0", "1/", "/2", "1/2/3", "1.5/2",
                              "0x10", "010/3", "1 ", "--1"})
        for (const CoefficientMeaning numbers :
             {CoefficientMeaning::ShortestDecimal, CoefficientMeaning::StoredDouble})
            EXPECT_FALSE(ReadExactNumber(wrong, numbers)) << wrong;
}

TEST(TextClaim, HasANameAndAValueInEachLine)
{
    EXPECT_EQ(Judged(Factory(), "chairs 150/7\ntables 360/7\n"), "confirmed");
    EXPECT_EQ(Judged(Factory(), "# the best plan\r\n\r\n  tables = 51.42857142857143 # many\r\n"
                                "\tchairs\t21.428571428571427"),
              "confirmed");
}

TEST(TextClaim, IsRefusedWithItsPlace)
{
    EXPECT_EQ(Judged(Factory(), "chairs 1\nstools 2\n"), "claim.unknown-variable 2:1");
    EXPECT_EQ(Judged(Factory(), "chairs 1\n\n chairs 2"), "claim.repeated 3:2");
    EXPECT_EQ(Judged(Factory(), "status     optimal\n"), "claim.number 1:12");
    EXPECT_EQ(Judged(Factory(), "chairs"), "claim.line 1:1");
    EXPECT_EQ(Judged(Factory(), ""), "claim.empty 1:1");
    EXPECT_EQ(Judged(Factory(), "# nothing\n"), "claim.empty 1:1");
}

TEST(JsonClaim, IsRefusedWithItsPlace)
{
    EXPECT_EQ(Judged(Factory(), "[1]"), "claim.schema 1:1");
    EXPECT_EQ(Judged(Factory(), "{\"status\":\"optimal\"}"), "claim.schema 1:1");
    EXPECT_EQ(Judged(Factory(), "{\"schema\":\"other\"}"), "claim.schema 1:11");
    EXPECT_EQ(Judged(Factory(), "{\"schema\":"), "json.syntax 1:11");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"stopped\"")), "claim.status 1:37");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"optimal\",\"variables\":3")),
              "claim.kind 1:59");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"optimal\",\"variables\":[{}]")),
              "claim.name 1:60");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"optimal\",\"rows\":[{\"name\":\"x\"}]")),
              "claim.unknown-row 1:63");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"optimal\",\"variables\":[{\"name\":\"chairs\","
                                       "\"value\":true}]")),
              "claim.number 1:85");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"optimal\",\"variables\":[{\"name\":\"chairs\","
                                       "\"basis\":\"no\"}]")),
              "claim.basis 1:85");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"infeasible\",\"iis\":[{\"row\":\"wood\"}]")),
              "claim.iis 1:57");
}

TEST(JsonClaim, SaysWhichNumbersItIsAbout)
{
    const char* const model = "min x st c: 10 x >= 1 end";
    const std::string rest = "\"status\":\"optimal\",\"variables\":[{\"name\":\"x\",\"value\":";
    // The double next to a tenth is above it.
    for (const char* const numbers : {"", "\"numbers\":\"written\","})
    {
        EXPECT_EQ(Judged(model, Result(numbers + rest + "0.1}]"), {}, Exactly()), "confirmed");
        EXPECT_EQ(Judged(model, Result(numbers + rest + "\"1/10\"}]"), {}, Exactly()), "confirmed");
    }
    const std::string stored = "\"numbers\":\"stored\",";
    EXPECT_EQ(Judged(model, Result(stored + rest + "0.1}]"), {}, Exactly()), "claim.not-optimal");
    EXPECT_EQ(Judged(model, Result(stored + rest + "\"1/10\"}]"), {}, Exactly()), "confirmed");
    EXPECT_EQ(Judged(model, Result("\"status\":\"optimal\",\"numbers\":\"best\"")),
              "claim.numbers 1:57");
}

TEST(Claim, OfTheSolverItselfIsConfirmed)
{
    for (const char* text :
         {kFactory, "max x st a: x <= 4 b: x >= 5 end", "max x + y st a: x - y <= 3 end",
          "min 3 x + 2 y - z st a: x + y = 4 b: -2 <= x - z <= 7 bounds y free z <= 5 end",
          "max 0.1 x + 0.7 y + 3 st 0.3 x + 0.9 y <= 0.77 0.7 x + 0.2 y <= 0.31 end",
          "min x st a: x >= 1 bounds x <= -3 end", "max 5 st end"})
    {
        const Model model = *ReadText(text).model;
        const std::string json = JsonReport(model, Solve(model), {});
        EXPECT_EQ(Judged(model, json), "confirmed") << text << json;
    }
}

TEST(Claim, IsProvedByWhatTheFileHas)
{
    const std::string json = JsonReport(Factory(), Solve(Factory()), {});
    EXPECT_EQ(ReportOf(Factory(), json).evidence, Evidence::Basis) << "its decimals are rounded";
    EXPECT_EQ(ReportOf(Factory(), json).pivots, 0U);
    EXPECT_EQ(ReportOf(Factory(), "chairs 150/7\ntables 360/7").evidence, Evidence::Solve);
    const std::string exact = Result(
        "\"status\":\"optimal\",\"variables\":[{\"name\":\"chairs\",\"value\":\"150/7\"},{\"name\":"
        "\"tables\",\"value\":\"360/7\"}],\"rows\":[{\"name\":\"wood\",\"dual\":\"95/7\"},{"
        "\"name\":\"labour\",\"dual\":\"5/7\"}]");
    EXPECT_EQ(Judged(Factory(), exact, {}, Exactly()), "confirmed");
    EXPECT_EQ(ReportOf(Factory(), exact).evidence, Evidence::Certificate);
    EXPECT_EQ(ReportOf(Factory(), exact).pivots, 0U);

    const Model infeasible = *ReadText("max x st a: x <= 4 b: x >= 5 c: x >= 0 end").model;
    const auto evidence = [&](const std::string& rest) {
        return ReportOf(infeasible, Result(std::string("\"status\":\"infeasible\"") + rest))
            .evidence;
    };
    EXPECT_EQ(evidence(""), Evidence::Solve);
    EXPECT_EQ(evidence(",\"farkas\":[{\"name\":\"a\",\"multiplier\":\"-1\"},{\"name\":\"b\","
                       "\"multiplier\":1}]"),
              Evidence::Certificate);
    for (const std::string key : {"iis", "conflict"})
        EXPECT_EQ(evidence(",\"" + key +
                           "\":[{\"row\":\"a\",\"side\":\"upper\"},{\"row\":\"b\",\"side\":"
                           "\"lower\"}]"),
                  Evidence::Iis)
            << "conflict is what it was called in results of old";

    const Model unbounded = *ReadText("max x + y st a: x - y <= 3 end").model;
    EXPECT_EQ(
        ReportOf(unbounded,
                 Result("\"status\":\"unbounded\",\"variables\":[{\"name\":\"x\",\"value\":0},"
                        "{\"name\":\"y\",\"value\":0}],\"ray\":[{\"name\":\"y\",\"value\":1}]"))
            .evidence,
        Evidence::Certificate);
}

TEST(Claim, IsRefutedByRowsAndBounds)
{
    EXPECT_EQ(Judged(Factory(), "chairs 30\ntables 50"), "claim.row claim.row");
    EXPECT_EQ(Judged(Factory(), "chairs -1\ntables 0"), "claim.bound claim.not-optimal");
    EXPECT_EQ(Judged(Factory(), "chairs -1", ClaimedStatus::Feasible), "claim.bound");
    EXPECT_EQ(Judged(Factory(), "chairs 1", ClaimedStatus::Feasible), "confirmed");
    const ClaimReport report = ReportOf(Factory(), "chairs 30\ntables 50");
    EXPECT_EQ(report.violated, "row 'labour'");
    EXPECT_EQ(report.violation, 30.0);
    EXPECT_EQ(report.disagreements[0].text, "row 'wood' is above 300 by 10");
    EXPECT_EQ(report.objective, 4400);
}

TEST(Claim, IsRefutedByABetterPoint)
{
    EXPECT_EQ(Judged(Factory(), "chairs 20\ntables 50"), "claim.not-optimal");
    EXPECT_EQ(ReportOf(Factory(), "chairs 20").disagreements[0].text,
              "the objective of these values is 600, the maximum is 4242.857142857143");
    EXPECT_EQ(ReportOf(Factory(), "chairs 20").unnamed, 1U);
    EXPECT_EQ(Judged("min x + y st a: x + 2 y >= 3 end", "x 3"), "claim.not-optimal");
    EXPECT_EQ(Judged("min x + y st a: x + 2 y >= 3 end", "y 1.5"), "confirmed");
}

TEST(Claim, IsRefutedByWhatItStatesItself)
{
    const std::string values = "\"variables\":[{\"name\":\"chairs\",\"value\":\"150/7\"},{\"name\":"
                               "\"tables\",\"value\":\"360/7\"}]";
    const auto judged = [&](const std::string& rest)
    { return Judged(Factory(), Result("\"status\":\"optimal\"," + values + rest)); };
    EXPECT_EQ(judged(""), "confirmed");
    EXPECT_EQ(judged(",\"objective\":4243"), "claim.objective");
    EXPECT_EQ(judged(",\"proof\":{\"objective\":\"29700/7\"}"), "confirmed");
    EXPECT_EQ(judged(",\"proof\":{\"objective\":\"29701/7\"}"), "claim.exact-objective");
    EXPECT_EQ(judged(",\"rows\":[{\"name\":\"wood\",\"activity\":299}]"), "claim.activity");
    const auto withDuals = [&](const char* wood, const char* labour)
    {
        return judged(std::string(",\"rows\":[{\"name\":\"wood\",\"dual\":") + wood +
                      "},{\"name\":\"labour\",\"dual\":" + labour + "}]");
    };
    EXPECT_EQ(withDuals("\"95/7\"", "\"5/7\""), "confirmed");
    EXPECT_EQ(withDuals("13.571428571428571", "0.7142857142857143"), "confirmed");
    EXPECT_EQ(withDuals("14", "0.7142857142857143"), "claim.dual claim.dual");
    EXPECT_EQ(withDuals("-1", "30"), "claim.dual claim.dual claim.dual");
}

TEST(Claim, OfReducedCostsIsChecked)
{
    const char* const model = "max 3 x + y st a: x + y <= 4 end";
    const auto judged = [&](const char* reducedCost)
    {
        return Judged(model, Result(std::string("\"status\":\"optimal\",\"variables\":[{\"name\":"
                                                "\"x\",\"value\":4},{\"name\":\"y\",\"value\":0,"
                                                "\"reduced_cost\":") +
                                    reducedCost + "}],\"rows\":[{\"name\":\"a\",\"dual\":3}]"));
    };
    EXPECT_EQ(judged("-2"), "confirmed");
    EXPECT_EQ(judged("2"), "claim.reduced-cost");
}

TEST(Claim, OfAStatusIsRefutedByTheTruth)
{
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"infeasible\"")), "claim.status");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"unbounded\"")), "claim.status");
    EXPECT_EQ(Judged("max x st a: x <= 4 b: x >= 5 end", "x 4"), "claim.row claim.status");
    EXPECT_EQ(Judged("max x st a: x >= 5 end", "x 6"), "claim.status");
}

TEST(Claim, OfACertificateIsRefutedWhereItProvesNothing)
{
    const char* const infeasible = "max x st a: x <= 4 b: x >= 5 c: x >= 1 end";
    const auto judged = [&](const char* rest)
    { return Judged(infeasible, Result(std::string("\"status\":\"infeasible\",") + rest)); };
    EXPECT_EQ(judged("\"farkas\":[{\"name\":\"a\",\"multiplier\":1}]"), "claim.farkas");
    EXPECT_EQ(judged("\"farkas\":[{\"name\":\"a\",\"multiplier\":-1},{\"name\":\"c\","
                     "\"multiplier\":1}]"),
              "claim.farkas");
    EXPECT_EQ(judged("\"iis\":[{\"row\":\"a\",\"side\":\"upper\"},{\"row\":\"c\",\"side\":"
                     "\"lower\"}]"),
              "claim.iis");
    const char* const unbounded = "max x + y st a: x - y <= 3 bounds z <= 4 end";
    const auto along = [&](const char* ray)
    { return Judged(unbounded, Result(std::string("\"status\":\"unbounded\",\"ray\":") + ray)); };
    EXPECT_EQ(along("[{\"name\":\"y\",\"value\":2}]"), "confirmed");
    EXPECT_EQ(along("[{\"name\":\"x\",\"value\":1}]"), "claim.ray");
    EXPECT_EQ(along("[{\"name\":\"y\",\"value\":-1}]"), "claim.ray claim.ray claim.ray");
    EXPECT_EQ(along("[{\"name\":\"y\",\"value\":1},{\"name\":\"z\",\"value\":1}]"), "claim.ray");
}

TEST(Claim, IsRefutedByNumbersBeyondDoubles)
{
    EXPECT_EQ(Judged(Factory(), "chairs 1e308\n", ClaimedStatus::Feasible), "claim.row claim.row");
    EXPECT_EQ(Judged(Factory(), "chairs 1e308\n", ClaimedStatus::Feasible, Exactly()),
              "claim.row claim.row");
    EXPECT_EQ(Judged(Factory(), Result("\"status\":\"optimal\",\"objective\":\"1" +
                                       std::string(400, '0') + "/3\"")),
              "claim.objective claim.not-optimal");
}

TEST(Claim, IsHeldToItsTolerance)
{
    EXPECT_EQ(Judged(Factory(), "chairs 21.428571428571427\ntables 51.42857142857143"),
              "confirmed");
    EXPECT_EQ(Judged(Factory(), "chairs 150/7\ntables 360/7", {}, Exactly()), "confirmed");
    EXPECT_EQ(
        Judged(Factory(), "chairs 21.428571428571427\ntables 51.42857142857143", {}, Exactly()),
        "claim.row");
    ClaimOptions generous;
    generous.tolerance = 0.1;
    EXPECT_EQ(Judged(Factory(), "chairs 22\ntables 51", {}, generous), "confirmed");
    EXPECT_EQ(Judged(Factory(), "chairs 22\ntables 51"), "claim.row claim.not-optimal");
}

TEST(Claim, IsUndecidedWhereTimeRunsOut)
{
    ClaimOptions options;
    options.limits.seconds = 0.0;
    EXPECT_EQ(Judged(Factory(), "chairs 150/7\ntables 360/7", {}, options), "undecided");
    EXPECT_EQ(Judged(Factory(), "chairs 150\ntables 360/7", {}, options), "claim.row claim.row");
}

TEST(Claim, KeepsTheFirstOfManyDisagreements)
{
    std::string text = "min obj: 0 x0 st\n";
    std::string claim;
    for (int k = 0; k < 30; ++k)
    {
        text.append("x").append(std::to_string(k)).append(" + y >= 1\n");
        claim.append("x").append(std::to_string(k)).append(" -1\n");
    }
    const ClaimReport report = ReportOf(*ReadText(text + "end").model, claim);
    EXPECT_EQ(report.disagreements.size(), ClaimReport::kMostKept);
    EXPECT_EQ(report.disagreementCount, 60U);
}

}  // namespace
}  // namespace nuv::test
