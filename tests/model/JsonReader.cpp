// JSON read by the letter of its standard, with the place of whatever does not keep to it.
#include "Nuv/Report/JsonReader.hpp"
#include "Nuv/Report/JsonWriter.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nuv::test
{
namespace
{

std::string Written(const JsonValue& value)
{
    std::string text;
    switch (value.kind)
    {
    case JsonValue::Kind::Null:
        return "null";
    case JsonValue::Kind::Boolean:
    case JsonValue::Kind::Number:
        return value.text;
    case JsonValue::Kind::String:
        return JsonString(value.text);
    case JsonValue::Kind::Array:
        for (const JsonValue& item : value.items)
            text += (text.empty() ? "" : ",") + Written(item);
        return "[" + text + "]";
    case JsonValue::Kind::Object:
        break;
    }
    for (std::size_t k = 0; k < value.items.size(); ++k)
        text +=
            (text.empty() ? "" : ",") + JsonString(value.keys[k]) + ":" + Written(value.items[k]);
    return "{" + text + "}";
}

/// The value written out again, or "code line:column" of the error.
std::string Read(std::string_view text)
{
    DiagnosticLog log("x.json", text);
    const std::optional<JsonValue> value = ReadJson(text, log);
    if (value)
        return Written(*value);
    const std::vector<Diagnostic> said = log.Take();
    if (said.size() != 1)
        return "said " + std::to_string(said.size()) + " things";
    const Error& error = said.front().error;
    return error.code + " " + std::to_string(error.line) + ":" + std::to_string(error.column);
}

TEST(JsonReader, ReadsEveryKindOfValue)
{
    EXPECT_EQ(Read(" {\"a\" : [1, -2.5e+3, 0, 0.5, true, false, null, \"x\", {}, []]}\r\n\t"),
              "{\"a\":[1,-2.5e+3,0,0.5,true,false,null,\"x\",{},[]]}");
    EXPECT_EQ(Read("3"), "3");
    EXPECT_EQ(Read("-0E1"), "-0E1");
}

TEST(JsonReader, ReadsEscapesIntoUtf8)
{
    EXPECT_EQ(Read(R"("\"\\\/\b\f\n\r\t")"), JsonString("\"\\/\b\f\n\r\t"));
    EXPECT_EQ(Read(R"("\u0041\u00e9\u20AC\uD834\udd1e")"), "\"A\u00e9\u20ac\U0001d11e\"");
}

TEST(JsonReader, RefusesWhatIsNoJsonAndSaysWhere)
{
    const std::pair<const char*, const char*> refusals[] = {
        {"", "json.incomplete 1:1"},
        {"[1,\n 2,]", "json.value 2:4"},
        {"[1 2]", "json.bracket 1:4"},
        {"[1", "json.bracket 1:3"},
        {"[1}", "json.bracket 1:3"},
        {"{\"a\":1,}", "json.key 1:8"},
        {"{a:1}", "json.key 1:2"},
        {"{\"a\" 1}", "json.colon 1:6"},
        {"{\"a\":}", "json.value 1:6"},
        {"{\"a\":1", "json.bracket 1:7"},
        {"{\"a\":1,\"b\":2,\"a\":3}", "json.repeated-key 1:1"},
        {"{} {}", "json.after-end 1:4"},
        {"nul", "json.value 1:1"},
        {"NaN", "json.value 1:1"},
        {"-", "json.number 1:1"},
        {"01", "json.number 1:1"},
        {"-01", "json.number 1:1"},
        {"1.", "json.number 1:1"},
        {".5", "json.value 1:1"},
        {"+1", "json.value 1:1"},
        {"1e", "json.number 1:1"},
        {"1e+", "json.number 1:1"},
        {"\"abc", "json.open-string 1:1"},
        {"\"a\nb\"", "json.control-character 1:3"},
        {R"("\x")", "json.escape 1:2"},
        {R"("\u12G4")", "json.escape 1:2"},
        {R"("\u12)", "json.escape 1:2"},
        {R"("\ud834")", "json.escape 1:2"},
        {R"("\ud834\u0041")", "json.escape 1:2"},
        {R"("\udd1e")", "json.escape 1:2"},
        {"// x\n1", "json.value 1:1"},
    };
    for (const auto& [text, refusal] : refusals)
        EXPECT_EQ(Read(text), refusal) << text;
}

TEST(JsonReader, ReadsSomeLevelsAndRefusesMore)
{
    const std::string shallow = std::string(100, '[') + std::string(100, ']');
    EXPECT_EQ(Read(shallow), shallow);
    EXPECT_EQ(Read(std::string(1'000'000, '[')), "json.depth 1:102");
}

TEST(JsonReader, FindsByKey)
{
    const std::string text = "{\"a\":1,\"b\":\"two\"}";
    DiagnosticLog log("x.json", text);
    const std::optional<JsonValue> value = ReadJson(text, log);
    ASSERT_TRUE(value);
    ASSERT_NE(value->Find("b"), nullptr);
    EXPECT_EQ(value->Find("b")->text, "two");
    EXPECT_EQ(value->Find("b")->at - text.data(), 11);
    EXPECT_EQ(value->Find("c"), nullptr);
    EXPECT_EQ(value->items[0].Find("a"), nullptr) << "a number has no keys";
}

TEST(JsonWriter, WritesStringsOfAnyBytes)
{
    EXPECT_EQ(JsonString("a\"b\\c\n\t\r\x01"), R"("a\"b\\c\n\t\r\u0001")");
    EXPECT_EQ(JsonString("\xC3\xA9 \xE2\x82\xAC"), "\"\u00e9 \u20ac\"");
    // Overlong forms, surrogates, truncated sequences, bytes that begin nothing.
    EXPECT_EQ(JsonString("\xC0\x80|\xED\xA0\x80|\xE2\x82|\xFF"),
              "\"\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD|\uFFFD\"");
}

TEST(JsonWriter, WritesShortestNumbersAndNullForOthers)
{
    EXPECT_EQ(JsonNumber(0.1), "0.1");
    EXPECT_EQ(JsonNumber(-0.0), "0");
    EXPECT_EQ(JsonNumber(1e300), "1e+300");
    EXPECT_EQ(JsonNumber(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(JsonNumber(std::numeric_limits<double>::quiet_NaN()), "null");
}

}  // namespace
}  // namespace nuv::test
