// Both formats, by name: every number finds its variable or row, or the file is refused there.
#include "Nuv/Report/ClaimReader.hpp"

#include "Nuv/Algebra/RationalText.hpp"
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

std::string_view Trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos)
        return text.substr(0, 0);
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
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
        std::optional<Rational> value = ReadExactNumber(number, claim.meaning);
        if (!value)
            return m_log.Fail(number.data(), "claim.number",
                              fmt::format("'{}' is no finite number", number.substr(0, 40)),
                              "write a decimal or a quotient such as 3/7; the tables that solve "
                              "prints are for people, its --json is for this");
        const std::optional<std::uint32_t> index = Find(What::Variable, name, line.data());
        return index && Set(claim.values, What::Variable, *index, std::move(*value), line.data());
    }
};

/// What the caller knows better than the file.
struct Given
{
    std::optional<ClaimedStatus> status;
    std::optional<CoefficientMeaning> numbers;
};

bool ReadEither(std::string_view text, const Model& model, const Given& given, DiagnosticLog& log,
                Claim& claim)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    const bool isJson =
        first != std::string_view::npos && (text[first] == '{' || text[first] == '[');
    claim.meaning = given.numbers.value_or(claim.meaning);
    if (!isJson)
    {
        claim.status = given.status.value_or(claim.status);
        return TextReader(model, log).Read(text, claim);
    }
    const std::optional<JsonValue> value = ReadJson(text, log);
    if (!value || !ReadResultJson(*value, !given.status, !given.numbers, model, log, claim))
        return false;
    claim.status = given.status.value_or(claim.status);
    return true;
}

}  // namespace

std::optional<std::uint32_t> NamedReader::Find(What what, std::string_view name, const char* at)
{
    if (what == What::Variable)
    {
        if (const std::optional<Variable> variable = m_model.FindVariable(name))
            return m_model.IndexOf(*variable);
        (void)m_log.Fail(at, "claim.unknown-variable",
                         fmt::format("the model has no variable '{}'", name),
                         "is this the solution of another model?");
        return std::nullopt;
    }
    if (const std::optional<Row> row = m_model.FindRow(name))
        return m_model.IndexOf(*row);
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

std::optional<Rational> ReadExactNumber(std::string_view text, CoefficientMeaning numbers)
{
    if (text.find('/') != std::string_view::npos)
        return ReadQuotient(text);
    std::optional<Rational> exact = ReadDecimal(text);
    if (text.starts_with('+'))
        text.remove_prefix(1);
    double value = 0.0;
    const auto [end, error] = ReadDouble(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return numbers == CoefficientMeaning::ShortestDecimal ? exact : ToRational(value);
}

ClaimReadResult ReadClaim(std::string_view text, const std::string& file, const Model& model,
                          std::optional<ClaimedStatus> status,
                          std::optional<CoefficientMeaning> numbers)
{
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    DiagnosticLog log(file, text);
    Claim found;
    ClaimReadResult reading;
    if (claim::ReadEither(text, model, {status, numbers}, log, found))
        reading.claim = std::move(found);
    reading.diagnostics = log.Take();
    return reading;
}

}  // namespace nuv
