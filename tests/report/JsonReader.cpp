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
        {"", "json.syntax 1:1"},
        {"[1,\n 2,]", "json.syntax 2:4"},
        {"[1 2]", "json.syntax 1:4"},
        {"[1", "json.syntax 1:3"},
        {"[1}", "json.syntax 1:3"},
        {"{\"a\":1,}", "json.syntax 1:8"},
        {"{a:1}", "json.syntax 1:2"},
        {"{\"a\" 1}", "json.syntax 1:6"},
        {"{\"a\":}", "json.syntax 1:6"},
        {"{\"a\":1", "json.syntax 1:7"},
        {"{\"a\":1,\"b\":2,\"a\":3}", "json.repeated-key 1:1"},
        {"[{},{\"a\":{\"b\":2, \"b\" :3}}]", "json.repeated-key 1:10"},
        {"{} {}", "json.syntax 1:4"},
        {"nul", "json.syntax 1:4"},
        {"NaN", "json.syntax 1:1"},
        {"-", "json.syntax 1:2"},
        {"01", "json.syntax 1:2"},
        {"-01", "json.syntax 1:3"},
        {"1.", "json.syntax 1:3"},
        {".5", "json.syntax 1:1"},
        {"+1", "json.syntax 1:1"},
        {"1e", "json.syntax 1:3"},
        {"1e+", "json.syntax 1:4"},
        {"1e400", "json.syntax 1:5"},
        {"\"abc", "json.syntax 1:5"},
        {"\"a\nb\"", "json.syntax 1:3"},
        {"\"\xff\"", "json.syntax 1:2"},
        {R"("\x")", "json.syntax 1:3"},
        {R"("\u12G4")", "json.syntax 1:6"},
        {R"("\u12)", "json.syntax 1:6"},
        {R"("\ud834")", "json.syntax 1:8"},
        {R"("\ud834\u0041")", "json.syntax 1:13"},
        {R"("\udd1e")", "json.syntax 1:7"},
        {"// x\n1", "json.syntax 1:1"},
    };
    for (const auto& [text, refusal] : refusals)
        EXPECT_EQ(Read(text), refusal) << text;
}

TEST(JsonReader, SaysWhatItExpected)
{
    const std::string text = "{\"a\":1,}";
    DiagnosticLog log("x.json", text);
    EXPECT_FALSE(ReadJson(text, log));
    EXPECT_EQ(log.Take().front().error.text,
              "syntax error while parsing object key - unexpected '}'; expected string literal");
}

/// Where each value of the tree begins, in the order of the text.
std::string Places(const JsonValue& value, const char* begin)
{
    std::string places = std::to_string(value.at - begin) + " ";
    for (const JsonValue& item : value.items)
        places += Places(item, begin);
    return places;
}

TEST(JsonReader, KnowsWhereEachValueBegins)
{
    const std::string text =
        " { \"a,b\" : [ 1,-2.5 , [ ] ,[{}], \"]\\\"[\", true ],\"b\":{\"c\":null}, \"d\" :7 }";
    DiagnosticLog log("x.json", text);
    const std::optional<JsonValue> value = ReadJson(text, log);
    ASSERT_TRUE(value);
    EXPECT_EQ(Places(*value, text.data()), "1 11 13 15 22 27 28 33 41 52 57 69 ");
}

TEST(JsonReader, KeepsNumbersAsTheyAreWritten)
{
    for (const char* number : {"0.1", "0.1000000000000000055511151231257827021181583404541015625",
                               "1E5", "-0.0", "9007199254740993", "18446744073709551615",
                               "-9223372036854775808", "123456789012345678901234567890"})
        EXPECT_EQ(Read(number), number);
}

TEST(JsonReader, ReadsSomeLevelsAndRefusesMore)
{
    const std::string shallow = std::string(100, '[') + std::string(100, ']');
    EXPECT_EQ(Read(shallow), shallow);
    EXPECT_EQ(Read(std::string(1'000'000, '[')), "json.depth 1:101");
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
