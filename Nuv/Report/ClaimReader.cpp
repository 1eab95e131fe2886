// Both formats, by name: every number finds its variable or row, or the file is refused there.
#include "Nuv/Report/ClaimReader.hpp"

#include "Nuv/Io/NumberText.hpp"
#include "Nuv/Report/ClaimJson.hpp"
#include "Nuv/Report/JsonReader.hpp"
#include "Nuv/Report/NamedReader.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace claim
{
namespace
{

constexpr std::string_view kBlanks = " \t\r";
/// Longer integers are no one's solution, and take time with the square of their length.
constexpr std::size_t kMostDigits = 10'000;

std::string_view Trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos)
        return text.substr(0, 0);
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

bool IsInteger(std::string_view text)
{
    if (text.starts_with('-'))
        text.remove_prefix(1);
    // A leading zero would make an octal number of it.
    return !text.empty() && text.size() <= kMostDigits && (text[0] != '0' || text.size() == 1) &&
           std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

class TextReader : NamedReader
{
public:
    using NamedReader::NamedReader;

    bool Read(std::string_view text, Claim& claim)
    {
        for (std::size_t begin = 0; begin < text.size();)
        {
            const std::size_t end = std::min(text.find('\n', begin), text.size());
            if (!ReadLine(text.substr(begin, end - begin), claim))
                return false;
            begin = end + 1;
        }
        return !claim.values.empty() || m_model.VariableCount() == 0 ||
               m_log.Fail(text.data(), "claim.empty", "there is no value in this file",
                          "write a name and a value in each line, or give the JSON of a solve");
    }

private:
    bool ReadLine(std::string_view line, Claim& claim)
    {
        const std::size_t comment = std::min(line.find(" #"), line.find("\t#"));
        line = Trimmed(line.substr(0, comment));
        if (line.empty() || line.front() == '#')
            return true;
        const std::size_t gap = line.find_last_of(kBlanks);
        if (gap == std::string_view::npos)
            return m_log.Fail(line.data(), "claim.line", "a line holds a name and a value",
                              "write: name value");
        const std::string_view number = line.substr(gap + 1);
        std::string_view name = Trimmed(line.substr(0, gap));
        if (name.ends_with('=') && name.size() > 1)
            name = Trimmed(name.substr(0, name.size() - 1));
        std::optional<Rational> value = ReadExactNumber(number);
        if (!value)
            return m_log.Fail(number.data(), "claim.number",
                              fmt::format("'{}' is no finite number", number.substr(0, 40)),
                              "write a decimal or a quotient such as 3/7; the tables that solve "
                              "prints are for people, its --json is for this");
        const std::optional<std::uint32_t> index = Find(What::Variable, name, line.data());
        return index && Set(claim.values, What::Variable, *index, std::move(*value), line.data());
    }
};

bool ReadEither(std::string_view text, const Model& model, bool needsStatus, DiagnosticLog& log,
                Claim& claim)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    const bool isJson =
        first != std::string_view::npos && (text[first] == '{' || text[first] == '[');
    if (!isJson)
        return TextReader(model, log).Read(text, claim);
    const std::optional<JsonValue> value = ReadJson(text, log);
    return value && ReadResultJson(*value, needsStatus, model, log, claim);
}

}  // namespace

std::optional<std::uint32_t> NamedReader::Find(What what, std::string_view name, const char* at)
{
    if (what == What::Variable)
    {
        if (const std::optional<Variable> variable = m_model.FindVariable(name))
            return variable->Index();
        (void)m_log.Fail(at, "claim.unknown-variable",
                         fmt::format("the model has no variable '{}'", name),
                         "is this the solution of another model?");
        return std::nullopt;
    }
    if (const std::optional<Row> row = m_model.FindRow(name))
        return row->Index();
    (void)m_log.Fail(at, "claim.unknown-row", fmt::format("the model has no row '{}'", name),
                     "is this the solution of another model?");
    return std::nullopt;
}

bool NamedReader::Set(Claim::Numbers& numbers, What what, std::uint32_t index, Rational value,
                      const char* at)
{
    numbers.resize(what == What::Variable ? m_model.VariableCount() : m_model.RowCount());
    if (numbers[index])
        return m_log.Fail(at, "claim.repeated",
                          fmt::format("a second number for '{}'", what == What::Variable
                                                                      ? m_model.VariableName(index)
                                                                      : m_model.RowName(index)));
    numbers[index] = std::move(value);
    return true;
}

}  // namespace claim

std::optional<Rational> ReadExactNumber(std::string_view text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    const std::size_t bar = text.find('/');
    if (bar != std::string_view::npos)
    {
        const std::string_view above = text.substr(0, bar);
        const std::string_view below = text.substr(bar + 1);
        if (!claim::IsInteger(above) || !claim::IsInteger(below))
            return std::nullopt;
        const Integer denominator{std::string(below)};
        if (denominator == 0)
            return std::nullopt;
        return Rational(Integer(std::string(above)), denominator);
    }
    double value = 0.0;
    const auto [end, error] = ReadDouble(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return ToRational(value);
}

ClaimReadResult ReadClaim(std::string_view text, const std::string& file, const Model& model,
                          std::optional<ClaimedStatus> status)
{
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    DiagnosticLog log(file, text);
    Claim found;
    ClaimReadResult reading;
    if (claim::ReadEither(text, model, !status, log, found))
    {
        found.status = status.value_or(found.status);
        reading.claim = std::move(found);
    }
    reading.diagnostics = log.Take();
    return reading;
}

}  // namespace nuv
