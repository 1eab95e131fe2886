// The JSON of a result: its shape for each verdict, read back by the strict reader.
#include "Nuv/Report/JsonReader.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/Utils/NuvVersion.h"
#include "tests/io/lp/LpText.hpp"
#include "tests/report/JsonSchema.hpp"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace nuv::test
{
namespace
{

std::string ReportOf(std::string_view text, const SolveOptions& options = {})
{
    const ReadResult reading = ReadText(text);
    std::string json =
        JsonReport(*reading.model, Solve(*reading.model, options), reading.diagnostics);
    ExpectValid(json);
    return json;
}

/// With 0 for what a clock tells.
std::string WithoutTimes(const std::string& json)
{
    return std::regex_replace(json, std::regex("\"seconds\":[^,}]+"), "\"seconds\":0");
}

JsonValue Parsed(const std::string& json)
{
    DiagnosticLog log("report", json);
    std::optional<JsonValue> value = ReadJson(json, log);
    EXPECT_TRUE(value) << json;
    return value ? std::move(*value) : JsonValue();
}

/// The keys of an object, with blanks between them.
std::string Keys(const JsonValue* object)
{
    std::string text;
    for (const std::string& key : object ? object->keys : std::vector<std::string>())
        text.append(text.empty() ? "" : " ").append(key);
    return text;
}

TEST(JsonReport, IsOneObjectInOneLine)
{
    EXPECT_EQ(WithoutTimes(ReportOf("max 3 x + y st a: x + y <= 4 end")),
              "{\"schema\":\"nuvlp/result/1\",\"version\":\"" NUV_VERSION "\","
              "\"model\":{\"name\":null,\"sense\":\"maximise\",\"rows\":1,\"variables\":2,"
              "\"nonzeros\":2},\"status\":\"optimal\",\"stop_reason\":null,\"objective\":12,"
              "\"numbers\":\"written\","
              "\"proof\":{\"outcome\":\"proved\",\"objective\":\"12\"},\"seconds\":0,\"stages\":{"
              "\"single_precision\":{\"ran\":true,\"pivots\":1,\"seconds\":0,"
              "\"outcome\":\"optimal\"},"
              "\"double_precision\":{\"ran\":true,\"pivots\":0,\"seconds\":0},"
              "\"exact\":{\"ran\":true,\"pivots\":0,\"seconds\":0},"
              "\"check\":{\"ran\":true,\"seconds\":0}},"
              "\"variables\":[{\"name\":\"x\",\"value\":4,\"reduced_cost\":0,\"basis\":\"basic\"},"
              "{\"name\":\"y\",\"value\":0,\"reduced_cost\":-2,\"basis\":\"lower\"}],"
              "\"rows\":[{\"name\":\"a\",\"activity\":4,\"lower\":null,\"upper\":4,\"slack\":0,"
              "\"dual\":3,\"basis\":\"upper\"}],"
              "\"iis\":[],\"farkas\":[],\"point\":[],\"ray\":[],\"warnings\":[]}\n");
}

TEST(JsonReport, HasTheSameKeysForEveryVerdict)
{
    const char* const keys =
        "schema version model status stop_reason objective numbers proof seconds stages variables "
        "rows iis farkas point ray warnings";
    SolveOptions stopped;
    stopped.limits.seconds = 0.0;
    for (const auto& [json, status] :
         {std::pair(ReportOf("max x st a: x <= 4 end"), "optimal"),
          std::pair(ReportOf("max x st a: x <= 4 b: x >= 5 end"), "infeasible"),
          std::pair(ReportOf("max x st a: x >= 4 end"), "unbounded"),
          std::pair(ReportOf("max x st a: x <= 4 end", stopped), "stopped"),
          std::pair(ReportOf("max 5 st end"), "optimal")})
    {
        const JsonValue value = Parsed(json);
        EXPECT_EQ(Keys(&value), keys) << status;
        ASSERT_TRUE(value.Find("status"));
        EXPECT_EQ(value.Find("status")->text, status);
    }
}

TEST(JsonReport, NamesWhatContradicts)
{
    const JsonValue value = Parsed(ReportOf("max x st a: x <= 4 b: x >= 5 c: y <= 2 end"));
    EXPECT_EQ(value.Find("objective")->kind, JsonValue::Kind::Null);
    ASSERT_EQ(value.Find("iis")->items.size(), 2U);
    EXPECT_EQ(value.Find("iis")->items[0].Find("row")->text, "a");
    EXPECT_EQ(value.Find("iis")->items[0].Find("side")->text, "upper");
    ASSERT_EQ(value.Find("farkas")->items.size(), 2U);
    EXPECT_EQ(value.Find("farkas")->items[0].Find("multiplier")->text, "-1");
    EXPECT_EQ(value.Find("farkas")->items[1].Find("multiplier")->text, "1");
}

TEST(JsonReport, NamesTheDirectionThatImproves)
{
    const JsonValue value = Parsed(ReportOf("max x + y st a: x - y <= 4 b: z <= 3 end"));
    for (const JsonValue& entry : value.Find("ray")->items)
        EXPECT_NE(entry.Find("name")->text, "z");
    EXPECT_FALSE(value.Find("ray")->items.empty());
}

/// x - y = 3 is kept by the point, x = y by the ray.
TEST(JsonReport, NamesAPointWhereTheRayStarts)
{
    const JsonValue value = Parsed(ReportOf("max x st a: x - y = 3 b: z <= 3 bounds y >= 0.5 end"));
    double x = 0.0;
    double y = 0.0;
    for (const JsonValue& entry : value.Find("point")->items)
        (entry.Find("name")->text == "x" ? x : y) = std::stod(entry.Find("value")->text);
    EXPECT_EQ(x - y, 3.0);
    EXPECT_GE(y, 0.5);
    EXPECT_EQ(value.Find("ray")->items.size(), 2U);
}

TEST(JsonReport, SaysWhatEndedTheSolve)
{
    SolveOptions options;
    options.limits.seconds = 0.0;
    EXPECT_EQ(Parsed(ReportOf("max x st a: x <= 4 end", options)).Find("stop_reason")->text,
              "time-limit");
    options.limits.seconds = 1e6;
    options.limits.keepGoing = [](const Progress&) { return false; };
    EXPECT_EQ(Parsed(ReportOf("max x st a: x <= 4 end", options)).Find("stop_reason")->text,
              "interrupt");
}

TEST(JsonReport, TellsOfTheStagesThatRan)
{
    SolveOptions options;
    options.useSinglePrecision = false;
    const JsonValue value = Parsed(ReportOf("max x st a: x <= 4 end", options));
    const JsonValue& stages = *value.Find("stages");
    EXPECT_EQ(Keys(&stages), "single_precision double_precision exact check");
    EXPECT_EQ(Keys(stages.Find("exact")), "ran pivots seconds");
    EXPECT_EQ(stages.Find("single_precision")->Find("outcome")->text, "skipped");
    EXPECT_EQ(stages.Find("single_precision")->Find("pivots")->text, "0");
    EXPECT_EQ(stages.Find("double_precision")->Find("pivots")->text, "1");
}

TEST(JsonReport, HasRangesWhereTheyWereAskedFor)
{
    SolveOptions options;
    options.sensitivity = true;
    const JsonValue value = Parsed(ReportOf("max 3 x + y st a: x + y <= 4 end", options));
    EXPECT_EQ(Keys(&value.Find("variables")->items[0]),
              "name value reduced_cost basis objective_range");
    const JsonValue* const range = value.Find("variables")->items[1].Find("objective_range");
    EXPECT_EQ(range->items[0].kind, JsonValue::Kind::Null)
        << "y may be worth as little as it likes";
    EXPECT_EQ(range->items[1].text, "3");
    const JsonValue* const side = value.Find("rows")->items[0].Find("rhs_range");
    EXPECT_EQ(side->items[0].text, "0");
    EXPECT_EQ(side->items[1].kind, JsonValue::Kind::Null);
}

TEST(JsonReport, StatesViolationsWhereNothingIsProved)
{
    SolveOptions options;
    options.useSinglePrecision = false;
    options.limits.doublePivots = 0;
    options.limits.exactPivots = 0;
    const JsonValue value = Parsed(ReportOf("max x st a: x <= 4 b: x >= 1 end", options));
    EXPECT_EQ(Keys(value.Find("proof")), "outcome primal_violation dual_violation");
    EXPECT_EQ(value.Find("proof")->Find("outcome")->text, "not proved");
    EXPECT_EQ(value.Find("proof")->Find("primal_violation")->text, "1");
}

TEST(JsonReport, LeavesOutWhatSinglePrecisionDoesNotKnow)
{
    const Model model = *ReadText("max 3 x + y st a: x + y <= 4 end").model;
    SolveOptions options;
    options.singlePrecisionOnly = true;
    const std::string json = JsonReport(model, Solve(model, options), {});
    ExpectValid(json);
    const JsonValue value = Parsed(json);
    EXPECT_EQ(value.Find("proof")->Find("outcome")->text, "not proved");
    EXPECT_EQ(Keys(&value.Find("variables")->items[0]), "name value");
    EXPECT_EQ(Keys(&value.Find("rows")->items[0]), "name activity lower upper slack");
}

TEST(JsonReport, SaysHowFarOffBelievedDoublesAre)
{
    const Model model = *ReadText("max 3 x + y st a: x + y <= 4 end").model;
    SolveOptions options;
    options.doublePrecisionOnly = true;
    options.exact = true;
    const std::string json = JsonReport(model, Solve(model, options), {});
    ExpectValid(json);
    const JsonValue value = Parsed(json);
    EXPECT_EQ(value.Find("status")->text, "optimal");
    EXPECT_EQ(value.Find("objective")->kind, JsonValue::Kind::Number);
    EXPECT_EQ(Keys(value.Find("proof")), "outcome primal_violation dual_violation");
    EXPECT_EQ(value.Find("proof")->Find("outcome")->text, "not proved");
    EXPECT_EQ(Keys(&value.Find("variables")->items[0]), "name value reduced_cost basis");
    EXPECT_EQ(value.Find("stages")->Find("exact")->Find("ran")->text, "false");
}

TEST(JsonReport, CarriesTheWarningsOfTheReader)
{
    const JsonValue value = Parsed(ReportOf("max x\nst\n x <= 4\nbounds\n x <= -3\nend"));
    const JsonValue* const warnings = value.Find("warnings");
    ASSERT_EQ(warnings->items.size(), 1U);
    EXPECT_EQ(Keys(&warnings->items[0]), "severity code text hint file line column");
    EXPECT_EQ(warnings->items[0].Find("line")->text, "5");
    EXPECT_EQ(warnings->items[0].Find("column")->text, "7");
    EXPECT_EQ(warnings->items[0].Find("code")->text, "lp.negative-upper-bound");
}

TEST(JsonReport, IsUtf8WhateverTheNames)
{
    const std::string json = ReportOf("max \xFF\"x st a: \xFF\"x <= 4 end");
    EXPECT_NE(json.find("{\"name\":\"\xEF\xBF\xBD\\\"x\","), std::string::npos) << json;
    (void)Parsed(json);
}

}  // namespace
}  // namespace nuv::test
