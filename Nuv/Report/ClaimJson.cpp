// The JSON of a result, key by key; what is not known is passed over, as the schema may grow.
#include "Nuv/Report/ClaimJson.hpp"

#include "Nuv/Algebra/RationalText.hpp"
#include "Nuv/Report/ClaimReader.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/NamedReader.hpp"
#include "Nuv/Report/Words.hpp"

#include <fmt/core.h>

#include <utility>

namespace nuv::claim
{
namespace
{

class ResultReader : NamedReader
{
public:
    using NamedReader::NamedReader;

    bool Read(const JsonValue& result, bool needsStatus, bool readsNumbers, Claim& claim)
    {
        if (result.kind != JsonValue::Kind::Object)
            return m_log.Fail(result.at, "claim.schema", "this is no result of a solve",
                              "give what nuvlp solve --json wrote, or lines of: name value");
        return ReadSchema(result) && ReadStatus(result, needsStatus, claim) &&
               ReadMeaning(result, readsNumbers, claim.meaning) && ReadObjectives(result, claim) &&
               ReadVariables(result, claim) && ReadRows(result, claim) &&
               ReadVectors(result, claim) && ReadIis(result, claim);
    }

private:
    using Kind = JsonValue::Kind;

    CoefficientMeaning m_meaning = CoefficientMeaning::ShortestDecimal;

    bool ReadSchema(const JsonValue& result)
    {
        const JsonValue* const schema = result.Find("schema");
        return (schema && schema->text == kResultSchema) ||
               m_log.Fail(schema ? schema->at : result.at, "claim.schema",
                          fmt::format("the schema is not \"{}\"", kResultSchema),
                          "give what nuvlp solve --json wrote");
    }

    bool ReadStatus(const JsonValue& result, bool isNeeded, Claim& claim)
    {
        const JsonValue* const status = result.Find("status");
        const std::string_view word = status ? std::string_view(status->text) : "";
        const std::optional<ClaimedStatus> claimed = FromWord<ClaimedStatus>(word);
        if (claimed)
            claim.status = *claimed;
        else if (isNeeded)
            return m_log.Fail(status ? status->at : result.at, "claim.status",
                              word.empty() ? std::string("the file states no status")
                                           : fmt::format("the status '{}' claims nothing", word),
                              "--claim says what is to be proved");
        return true;
    }

    /// Everything that is read later is taken as this says.
    bool ReadMeaning(const JsonValue& result, bool isAsked, CoefficientMeaning& meaning)
    {
        const JsonValue* const word = isAsked ? result.Find("numbers") : nullptr;
        const std::optional<CoefficientMeaning> found =
            word ? FromWord<CoefficientMeaning>(word->text) : std::optional(meaning);
        if (found)
            m_meaning = meaning = *found;
        return found || m_log.Fail(word->at, "claim.numbers", "no numbers are called that",
                                   "write \"written\" or \"stored\"");
    }

    bool ReadObjectives(const JsonValue& result, Claim& claim)
    {
        const JsonValue* const proof = result.Find("proof");
        return ReadNumber(result, "objective", claim.objective) &&
               (!proof || ReadNumber(*proof, "objective", claim.exactObjective));
    }

    bool ReadVariables(const JsonValue& result, Claim& claim)
    {
        Basis basis;
        const bool isGood = ForEachNamed(
            result, "variables", What::Variable,
            [&](const JsonValue& entry, std::uint32_t j)
            {
                return ReadInto(entry, "value", claim.values, What::Variable, j) &&
                       ReadInto(entry, "reduced_cost", claim.reducedCosts, What::Variable, j) &&
                       ReadBasis(entry, basis.columns, m_model.VariableCount(), j);
            });
        if (isGood && !basis.columns.empty())
            claim.basis = std::move(basis);
        return isGood;
    }

    bool ReadRows(const JsonValue& result, Claim& claim)
    {
        std::vector<BasisStatus> rows;
        const bool isGood =
            ForEachNamed(result, "rows", What::Row,
                         [&](const JsonValue& entry, std::uint32_t i)
                         {
                             return ReadInto(entry, "activity", claim.activities, What::Row, i) &&
                                    ReadInto(entry, "dual", claim.duals, What::Row, i) &&
                                    ReadBasis(entry, rows, m_model.RowCount(), i);
                         });
        if (claim.basis && rows.size() == m_model.RowCount())
            claim.basis->rows = std::move(rows);
        else
            claim.basis.reset();
        return isGood;
    }

    bool ReadVectors(const JsonValue& result, Claim& claim)
    {
        return ForEachNamed(result, "ray", What::Variable,
                            [&](const JsonValue& entry, std::uint32_t j)
                            { return ReadInto(entry, "value", claim.ray, What::Variable, j); }) &&
               ForEachNamed(result, "farkas", What::Row,
                            [&](const JsonValue& entry, std::uint32_t i)
                            { return ReadInto(entry, "multiplier", claim.farkas, What::Row, i); });
    }

    /// Under the key that it has, or had in results of old.
    [[nodiscard]] static const JsonValue* FindIis(const JsonValue& result)
    {
        const JsonValue* const list = result.Find("iis");
        return list ? list : result.Find("conflict");
    }

    bool ReadIis(const JsonValue& result, Claim& claim)
    {
        const JsonValue* const list = FindIis(result);
        if (!list)
            return true;
        if (!Is(*list, Kind::Array, "iis"))
            return false;
        for (const JsonValue& entry : list->items)
        {
            const JsonValue* const row = entry.Find("row");
            const JsonValue* const name = row ? row : entry.Find("variable");
            const JsonValue* const side = entry.Find("side");
            if (!name || !side || (side->text != "upper" && side->text != "lower"))
                return m_log.Fail(
                    entry.at, "claim.iis",
                    "a member of an infeasible subsystem is a row or a variable and its side", "");
            const What what = row ? What::Row : What::Variable;
            const std::optional<std::uint32_t> index = Find(what, name->text, name->at);
            if (!index)
                return false;
            claim.iis.push_back(
                {*index + (row ? m_model.VariableCount() : 0), side->text == "upper"});
        }
        return true;
    }

    /// Calls `use(entry, index)` for each object of the array `key`, by the name in it.
    template <class Use>
    bool ForEachNamed(const JsonValue& result, std::string_view key, What what, Use use)
    {
        const JsonValue* const list = result.Find(key);
        if (!list)
            return true;
        if (!Is(*list, Kind::Array, key))
            return false;
        for (const JsonValue& entry : list->items)
        {
            const JsonValue* const name = entry.Find("name") || what == What::Variable
                                              ? entry.Find("name")
                                              : entry.Find("row");
            if (!name || name->kind != Kind::String)
                return m_log.Fail(entry.at, "claim.name", "this has no name", "");
            const std::optional<std::uint32_t> index = Find(what, name->text, name->at);
            if (!index || !use(entry, *index))
                return false;
        }
        return true;
    }

    bool ReadInto(const JsonValue& entry, std::string_view key, Claim::Numbers& numbers, What what,
                  std::uint32_t index)
    {
        std::optional<Rational> value;
        if (!ReadNumber(entry, key, value))
            return false;
        return !value || Set(numbers, what, index, std::move(*value), entry.at);
    }

    /// A number, or an exact one in a string; null and a missing key say nothing.
    bool ReadNumber(const JsonValue& object, std::string_view key, std::optional<Rational>& number)
    {
        const JsonValue* const value = object.Find(key);
        if (!value || value->kind == Kind::Null)
            return true;
        if (value->kind == Kind::Number || value->kind == Kind::String)
            number = value->kind == Kind::String ? ReadRational(value->text)
                                                 : ReadExactNumber(value->text, m_meaning);
        return number || m_log.Fail(value->at, "claim.number",
                                    fmt::format("{} is no finite number", KindWords(value->kind)),
                                    "write a number, or a quotient in quotes such as \"3/7\"");
    }

    bool ReadBasis(const JsonValue& entry, std::vector<BasisStatus>& basis, std::uint32_t count,
                   std::uint32_t index)
    {
        const JsonValue* const word = entry.Find("basis");
        if (!word)
            return true;
        basis.resize(count, BasisStatus::Basic);
        const std::optional<BasisStatus> status = FromWord<BasisStatus>(word->text);
        if (status)
        {
            basis[index] = *status;
            return true;
        }
        return m_log.Fail(word->at, "claim.basis", "this is no part of a basis",
                          "write \"basic\", \"lower\", \"upper\" or \"free\"");
    }

    bool Is(const JsonValue& value, Kind kind, std::string_view key)
    {
        return value.kind == kind || m_log.Fail(value.at, "claim.kind",
                                                fmt::format("\"{}\" is {}, not {}", key,
                                                            KindWords(value.kind), KindWords(kind)),
                                                "");
    }
};

}  // namespace

bool ReadResultJson(const JsonValue& result, bool needsStatus, bool readsNumbers,
                    const Model& model, DiagnosticLog& log, Claim& claim)
{
    return ResultReader(model, log).Read(result, needsStatus, readsNumbers, claim);
}

}  // namespace nuv::claim
