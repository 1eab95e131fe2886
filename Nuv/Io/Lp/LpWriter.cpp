/// Section by section. Lines are broken between terms, so that no reader's limit on their length is
/// met.
#include "Nuv/Io/Lp/LpWriter.hpp"

#include "Nuv/Model/WrittenNumber.hpp"
#include "Nuv/Io/LetterCase.hpp"
#include "Nuv/Io/Lp/LpKeywords.hpp"
#include "Nuv/Io/Lp/LpNames.hpp"
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/WrittenNames.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

constexpr std::size_t kLineLength = 78;

bool IsLetter(char c) noexcept
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// What all programs agree to take in names.
bool IsCommonCharacter(char c) noexcept
{
    return IsLetter(c) || (c >= '0' && c <= '9') ||
           std::string_view("!\"#$%&(),.;?@_'`{}~").find(c) != std::string_view::npos;
}

bool IsReserved(std::string_view name) noexcept
{
    if (lp::IsKeyword(name))
        return true;
    for (const std::string_view word : {"free", "inf", "infinity", "nan", "subject", "such"})
    {
        if (EqualsIgnoringCase(name, word))
            return true;
    }
    return false;
}

/// Whether the reader takes a name for what it is, and others do. Only names of uncommon characters
/// are tried out; brackets, which it takes, are the start of quadratic terms to others.
bool LpHolds(std::string_view name)
{
    if (name.empty() || IsReserved(name) || name.front() == '.' ||
        (name.front() >= '0' && name.front() <= '9') || name.back() == ';' ||
        !lp::HasBalancedParentheses(name) || lp::StartsLikePercentage(name) ||
        name.find('[') != std::string_view::npos)
        return false;
    bool isCommon = true;
    for (const char c : name)
        isCommon = isCommon && IsCommonCharacter(c);
    if (isCommon)
        return true;
    std::string text = "Minimize\n";
    text.append(name).append("\nSubject To\n").append(name).append(": ").append(name);
    text.append(" >= 1\nEnd\n");
    const ReadResult reading = ReadLp(text, "");
    return reading.Ok() && reading.model->VariableCount() == 1 &&
           reading.model->VariableName(0) == name && reading.model->RowName(0) == name;
}

constexpr NameRules kRules = {
    .holds = LpHolds, .holdsCharacter = IsCommonCharacter, .lastResort = "()"};

class Writer
{
public:
    explicit Writer(const Model& model);
    WriteResult Run();

private:
    void WriteHead();
    void WriteObjective();
    void WriteRows();
    void WriteRow(std::uint32_t row);
    void WriteBody(std::uint32_t row);
    void WriteRowWithoutVariables(std::string_view row, const WrittenNumber& lower,
                                  const WrittenNumber& upper);
    void WriteBounds();
    void WriteBound(std::uint32_t column);

    [[nodiscard]] bool OrderIsNatural() const;
    /// Appends a term to the current line, or to a new one where that would be too long.
    void WriteTerm(const WrittenNumber& coefficient, std::string_view name, bool isFirst);
    void WriteConstant(const WrittenNumber& value, bool isFirst);
    void Append(std::string_view piece);
    void EndLine();
    /// The number at a place, but for one that no reader takes for finite there.
    WrittenNumber Limit(const WrittenNumber& limit, bool isLower, std::string_view what,
                        std::string_view name)
    {
        const double written =
            WrittenLimit(m_result, "lp.infinite-number", limit.value, isLower, what, name);
        return std::isinf(written) ? WrittenNumber(written) : limit;
    }

    const Model& m_model;
    WrittenNames m_columns;
    WrittenNames m_rows;
    WriteResult m_result;
    std::string m_text;
    std::size_t m_lineBegin = 0;
    std::size_t m_zeros = 0;
};

Writer::Writer(const Model& model)
    : m_model(model), m_columns(VariableNamesOf(model), kRules), m_rows(RowNamesOf(model), kRules)
{
}

WriteResult Writer::Run()
{
    m_columns.Report(m_result, "lp.renamed-variable", "variable");
    m_rows.Report(m_result, "lp.renamed-row", "row");
    WriteHead();
    WriteObjective();
    WriteRows();
    WriteBounds();
    m_text += "End\n";
    if (m_zeros != 0)
    {
        m_result.Report(Severity::Note, "lp.zero-coefficient",
                        fmt::format("{} zero coefficient{} left out of the rows", m_zeros,
                                    m_zeros == 1 ? " is" : "s are"));
    }
    if (!m_result.HasError())
        m_result.text = std::move(m_text);
    return std::move(m_result);
}

void Writer::WriteHead()
{
    // A line of its own, whose end the reader trims.
    std::string name = m_model.Name();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    name.resize(name.find_last_not_of(" \t") + 1);
    ReportModelName(m_result, "lp.renamed-model", m_model.Name(), name);
    if (!name.empty())
        m_text.append("\\Problem name: ").append(name).append("\n\n");
    m_text += m_model.ObjectiveSense() == Sense::Maximize ? "Maximize\n" : "Minimize\n";
}

/// Whether a reader meets the variables in the order of the model, in the objective and the rows.
bool Writer::OrderIsNatural() const
{
    std::uint32_t next = 0;
    for (std::uint32_t column = 0; column < m_model.VariableCount(); ++column)
    {
        if (m_model.Objective()[column] == 0.0)
            continue;
        if (column != next)
            return false;
        ++next;
    }
    for (std::size_t at = 0; at < m_model.NonzeroCount(); ++at)
    {
        const std::uint32_t column = m_model.Columns()[at];
        if (column < next || m_model.Coefficients()[at] == 0.0)
            continue;
        if (column != next)
            return false;
        ++next;
    }
    return next == m_model.VariableCount();
}

void Writer::WriteObjective()
{
    const std::string& name = m_model.ObjectiveName();
    m_lineBegin = m_text.size();
    if (!name.empty())
    {
        const WrittenNames written({std::string_view(name)}, kRules);
        written.Report(m_result, "lp.renamed-objective", "objective");
        m_text.append(" ").append(written[0]).append(":");
    }
    const bool all = !OrderIsNatural();
    bool isFirst = true;
    for (std::uint32_t column = 0; column < m_model.VariableCount(); ++column)
    {
        const double coefficient = m_model.Objective()[column];
        if (coefficient == 0.0 && !all)
            continue;
        WriteTerm(CostOf(m_model, column), m_columns[column], isFirst);
        isFirst = false;
    }
    if (m_model.ObjectiveConstant() != 0.0)
        WriteConstant(ConstantOf(m_model), isFirst);
    EndLine();
}

void Writer::WriteRows()
{
    m_text += "Subject To\n";
    for (std::uint32_t row = 0; row < m_model.RowCount(); ++row)
        WriteRow(row);
}

void Writer::WriteRow(std::uint32_t row)
{
    const std::string_view name = m_rows[row];
    WrittenNumber lower = LowerOf(m_model, m_model.RowAt(row));
    WrittenNumber upper = UpperOf(m_model, m_model.RowAt(row));
    const bool isEquation = lower == upper && std::isfinite(lower.value);
    if (!isEquation)
    {
        lower = Limit(lower, true, "row", name);
        upper = Limit(upper, false, "row", name);
    }
    m_lineBegin = m_text.size();
    m_text.append(" ").append(name).append(":");
    if (m_model.VariableCount() == 0)
        return WriteRowWithoutVariables(name, lower, upper);
    const bool isRange = !isEquation && std::isfinite(lower.value) && std::isfinite(upper.value);
    if (isRange)
        Append(" " + NumberText(lower + 0.0) + " <=");
    WriteBody(row);
    if (isEquation)
        Append(" = " + NumberText(lower + 0.0));
    else if (isRange || std::isfinite(upper.value))
        Append(" <= " + NumberText(upper + 0.0));
    else
        Append(" >= " + NumberText(lower + 0.0));
    EndLine();
}

void Writer::WriteBody(std::uint32_t row)
{
    const std::span<const std::uint32_t> columns = m_model.RowColumns(row);
    const std::span<const double> coefficients = m_model.RowCoefficients(row);
    bool isFirst = true;
    for (std::size_t at = 0; at < columns.size(); ++at)
    {
        if (coefficients[at] == 0.0)
        {
            ++m_zeros;
            continue;
        }
        WriteTerm(NumberAt(m_model, {NumberPlace::Of::Entry, row, columns[at]}, coefficients[at]),
                  m_columns[columns[at]], isFirst);
        isFirst = false;
    }
    // A row needs a variable between its limits; one without any has the first of the model.
    if (isFirst)
        WriteTerm(0.0, m_columns[0], true);
}

/// `5 >= 0` is a row with an upper limit, but neither `1 <= 0 <= 5` nor `0 >= -inf` is one. The
/// limit comes first, since a constant in front of a relation is what the reader takes for it.
void Writer::WriteRowWithoutVariables(std::string_view row, const WrittenNumber& lower,
                                      const WrittenNumber& upper)
{
    const bool hasLower = std::isfinite(lower.value);
    const bool isEquation = lower == upper && hasLower;
    if (isEquation || hasLower != std::isfinite(upper.value))
    {
        const std::string_view relation = isEquation ? "=" : hasLower ? "<=" : ">=";
        Append(fmt::format(" {} {} 0", NumberText((hasLower ? lower : upper) + 0.0), relation));
        return EndLine();
    }
    m_result.Report(Severity::Error, "lp.no-variable",
                    fmt::format("row '{}' has two limits or none, and the model no variable", row),
                    "without variables the format has rows of one limit only");
}

void Writer::WriteBounds()
{
    const std::size_t before = m_text.size();
    m_text += "Bounds\n";
    const std::size_t begin = m_text.size();
    for (std::uint32_t column = 0; column < m_model.VariableCount(); ++column)
        WriteBound(column);
    if (m_text.size() == begin)
        m_text.resize(before);
}

void Writer::WriteBound(std::uint32_t column)
{
    const std::string_view name = m_columns[column];
    const WrittenNumber lower =
        Limit(LowerOf(m_model, m_model.VariableAt(column)), true, "variable", name);
    const WrittenNumber upper =
        Limit(UpperOf(m_model, m_model.VariableAt(column)), false, "variable", name);
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    const bool hasDefaultLower = bits(lower.value) == 0;
    m_lineBegin = m_text.size();
    if (hasDefaultLower && upper.value == Infinity)
        return;
    m_text += ' ';
    if (lower.value == -Infinity && upper.value == Infinity)
        m_text.append(name).append(" free");
    else if (lower == upper && bits(lower.value) == bits(upper.value))
        m_text.append(name).append(" = ").append(NumberText(lower));
    else if (upper.value == Infinity)
        m_text.append(name).append(" >= ").append(NumberText(lower));
    else if (hasDefaultLower && upper.value > 0.0)
        m_text.append(name).append(" <= ").append(NumberText(upper));
    else
        m_text.append(NumberText(lower) + " <= ").append(name).append(" <= " + NumberText(upper));
    EndLine();
}

void Writer::WriteTerm(const WrittenNumber& coefficient, std::string_view name, bool isFirst)
{
    const bool isNegative = std::signbit(coefficient.value);
    std::string term = isNegative ? " - " : isFirst ? " " : " + ";
    if (coefficient.exact || std::fabs(coefficient.value) != 1.0)
        term.append(NumberText(isNegative ? -coefficient : coefficient)).append(" ");
    term.append(name);
    Append(term);
}

void Writer::WriteConstant(const WrittenNumber& value, bool isFirst)
{
    const bool isNegative = std::signbit(value.value);
    Append((isNegative ? " - " : isFirst ? " " : " + ") + NumberText(isNegative ? -value : value));
}

void Writer::Append(std::string_view piece)
{
    if (m_text.size() - m_lineBegin + piece.size() > kLineLength && m_text.size() > m_lineBegin)
    {
        m_text += '\n';
        m_lineBegin = m_text.size();
        m_text += "  ";
    }
    m_text.append(piece);
}

void Writer::EndLine()
{
    if (m_text.size() > m_lineBegin)
        m_text += '\n';
    m_lineBegin = m_text.size();
}

}  // namespace

WriteResult WriteLp(const Model& model)
{
    return Writer(model).Run();
}

std::string ToLp(const Model& model)
{
    WriteResult writing = WriteLp(model);
    return writing.Ok() ? std::move(*writing.text) : "\\ " + writing.GetError().text + '\n';
}

}  // namespace nuv
