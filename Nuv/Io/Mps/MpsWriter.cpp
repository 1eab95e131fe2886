/// Section by section, the matrix by columns.
#include "Nuv/Io/Mps/MpsWriter.hpp"

#include "Nuv/Io/Mps/MpsLayout.hpp"
#include "Nuv/Io/Mps/MpsLine.hpp"
#include "Nuv/Io/Mps/MpsRowForm.hpp"
#include "Nuv/Io/WrittenNames.hpp"
#include "Nuv/Model/Transposed.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <bit>
#include <cmath>

namespace nuv
{
namespace
{

bool IsText(char c) noexcept
{
    return static_cast<unsigned char>(c) >= 0x20u && c != 0x7F;
}

bool IsWordCharacter(char c) noexcept
{
    return IsText(c) && c != ' ';
}

/// '$' starts a comment, and the marker a record of its own.
bool IsOpenToNames(std::string_view name) noexcept
{
    return !name.empty() && name.front() != '$' && name != mps::kMarker;
}

bool FreeHolds(std::string_view name)
{
    return IsOpenToNames(name) && std::all_of(name.begin(), name.end(), IsWordCharacter);
}

bool FixedHolds(std::string_view name)
{
    return IsOpenToNames(name) && name.front() != ' ' && name.back() != ' ' &&
           std::all_of(name.begin(), name.end(), IsText);
}

constexpr NameRules kFreeRules = {FreeHolds, IsWordCharacter};
constexpr NameRules kFixedRules = {FixedHolds, IsText, mps::kNameColumns};

bool IsPlusZero(double value) noexcept
{
    return std::bit_cast<std::uint64_t>(value) == 0;
}

/// The rows' names and behind them that of the objective, which shares them.
std::vector<std::string_view> RowNames(const Model& model, std::string_view objective)
{
    std::vector<std::string_view> names = RowNamesOf(model);
    names.push_back(objective);
    return names;
}

/// The objective's own name, or obj, with underscores while a row has it.
std::string FreeObjectiveName(const Model& model)
{
    std::string name = model.ObjectiveName().empty() ? "obj" : model.ObjectiveName();
    while (model.FindRow(name))
        name += '_';
    return name;
}

bool HasNameWithBlank(const std::vector<std::string_view>& names)
{
    return std::any_of(names.begin(), names.end(),
                       [](std::string_view name)
                       { return name.find(' ') != std::string_view::npos; });
}

class Writer
{
public:
    Writer(const Model& model, MpsForm form);
    WriteResult Run();

private:
    void ReportNames();
    void WriteHead();
    void WriteRows();
    bool TakeRow(std::uint32_t row);
    void WriteColumn(std::uint32_t column);
    void WriteRightHandSides();
    void WriteRanges();
    void WriteBound(std::uint32_t column);
    /// The number at a place, but for one that no reader takes for finite there.
    WrittenNumber Limit(const WrittenNumber& limit, bool isLower, std::string_view what,
                        std::string_view name)
    {
        const double written =
            WrittenLimit(m_result, "mps.infinite-number", limit.value, isLower, what, name);
        return std::isinf(written) ? WrittenNumber(written) : limit;
    }
    [[nodiscard]] std::string TextOf(const WrittenNumber& number, std::string_view name);
    bool Fail(std::string code, std::string text, std::string hint);

    const Model& m_model;
    MpsForm m_form;
    std::string m_objectiveName;
    WrittenNames m_columns;
    WrittenNames m_rows;
    std::vector<mps::RowForm> m_rowForms;
    CompressedVectors m_matrix;  ///< by columns
    mps::Layout m_layout;
    WriteResult m_result;
};

Writer::Writer(const Model& model, MpsForm form)
    : m_model(model),
      m_form(form),
      m_objectiveName(FreeObjectiveName(model)),
      m_columns(VariableNamesOf(model), form == MpsForm::Fixed ? kFixedRules : kFreeRules),
      m_rows(RowNames(model, m_objectiveName), form == MpsForm::Fixed ? kFixedRules : kFreeRules)
{
}

WriteResult Writer::Run()
{
    ReportNames();
    WriteHead();
    WriteRows();
    if (m_result.HasError())
        return std::move(m_result);
    m_matrix = Transposed(m_model.RowStarts(), m_model.Columns(), m_model.Coefficients(),
                          m_model.VariableCount());
    m_layout.PutLine("COLUMNS");
    for (std::uint32_t column = 0; column < m_model.VariableCount(); ++column)
        WriteColumn(column);
    WriteRightHandSides();
    WriteRanges();
    m_layout.BeginSection("BOUNDS");
    for (std::uint32_t column = 0; column < m_model.VariableCount(); ++column)
        WriteBound(column);
    m_layout.EndSection();
    m_layout.PutLine("ENDATA");
    const std::string& misfit = m_layout.FirstMisfit();
    if (m_form == MpsForm::Fixed && !misfit.empty())
    {
        Fail("mps.wide-field", fmt::format("{} does not fit into the columns of fixed MPS", misfit),
             "numbers have 12 columns there; write free MPS");
    }
    if (!m_result.HasError())
        m_result.text = m_layout.Take();
    return std::move(m_result);
}

void Writer::ReportNames()
{
    m_columns.Report(m_result, "mps.renamed-variable", "variable");
    m_rows.Report(m_result, "mps.renamed-row", "row");
    if (m_model.ObjectiveName().empty() || m_model.ObjectiveName() == m_objectiveName)
        return;
    m_result.Report(Severity::Warning, "mps.renamed-objective",
                    fmt::format("the objective is called '{}', since a row is called '{}'",
                                m_objectiveName, m_model.ObjectiveName()));
}

void Writer::WriteHead()
{
    std::string name;
    for (const char c : m_model.Name())
        name += IsText(c) ? c : '_';
    // As a word of its own it is a mark of the form.
    if (name.ends_with(" FREE"))
        name[name.size() - 5] = '_';
    name = std::string(mps::Trimmed(name));
    ReportModelName(m_result, "mps.renamed-model", m_model.Name(), name);
    m_layout.Name(name);
    if (m_model.ObjectiveSense() == Sense::Maximize)
    {
        m_layout.PutLine("OBJSENSE");
        m_layout.PutLine("    MAX");
    }
}

void Writer::WriteRows()
{
    m_layout.PutLine("ROWS");
    m_layout.Row('N', m_rows[m_model.RowCount()]);
    for (std::uint32_t row = 0; row < m_model.RowCount(); ++row)
    {
        if (!TakeRow(row))
            return;
        m_layout.Row(m_rowForms.back().type, m_rows[row]);
    }
}

bool Writer::TakeRow(std::uint32_t row)
{
    WrittenNumber lower = LowerOf(m_model, m_model.RowAt(row));
    WrittenNumber upper = UpperOf(m_model, m_model.RowAt(row));
    const std::string_view name = m_model.RowName(row);
    if (lower.value > upper.value ||
        (lower.value == upper.value && lower.Exactly() > upper.Exactly()))
    {
        return Fail("mps.contradictory-row",
                    fmt::format("MPS cannot state {} <= '{}' <= {}", NumberText(lower), name,
                                NumberText(upper)),
                    "this row alone makes the model infeasible; the LP format can state it");
    }
    // Only the limits that lead away from zero: the others are read as the numbers they are.
    const bool isEquation = lower == upper;
    if (!isEquation && lower.value < 0.0)
        lower = Limit(lower, true, "row", name);
    if (!isEquation && upper.value > 0.0)
        upper = Limit(upper, false, "row", name);
    // Said of the sides themselves, a range between them being the sum of both.
    (void)TextOf(lower, name);
    (void)TextOf(upper, name);
    m_rowForms.push_back(mps::FormOf(lower, upper));
    return true;
}

void Writer::WriteColumn(std::uint32_t column)
{
    const std::string_view name = m_columns[column];
    const double cost = m_model.Objective()[column];
    const std::string_view known = m_model.VariableName(column);
    // A column without any entry is known by its name only if it has one here.
    if (!IsPlusZero(cost) || m_matrix.starts[column] == m_matrix.starts[column + 1])
    {
        m_layout.Pair(name, m_rows[m_model.RowCount()], TextOf(CostOf(m_model, column), known));
    }
    for (std::size_t at = m_matrix.starts[column]; at < m_matrix.starts[column + 1]; ++at)
    {
        const std::uint32_t row = m_matrix.indices[at];
        const NumberPlace place = {NumberPlace::Of::Entry, row, column};
        m_layout.Pair(name, m_rows[row],
                      TextOf(NumberAt(m_model, place, m_matrix.values[at]), known));
    }
    m_layout.EndPairs();
}

void Writer::WriteRightHandSides()
{
    m_layout.BeginSection("RHS");
    const double constant = m_model.ObjectiveConstant();
    if (constant != 0.0)
    {
        m_layout.Pair("RHS", m_rows[m_model.RowCount()],
                      TextOf(-ConstantOf(m_model), "the objective"));
    }
    for (std::uint32_t row = 0; row < m_rowForms.size(); ++row)
    {
        const WrittenNumber& side = m_rowForms[row].rightHandSide;
        if (!IsPlusZero(side.value))
            m_layout.Pair("RHS", m_rows[row], NumberText(side));
    }
    m_layout.EndSection();
}

void Writer::WriteRanges()
{
    m_layout.BeginSection("RANGES");
    for (std::uint32_t row = 0; row < m_rowForms.size(); ++row)
    {
        if (!m_rowForms[row].range.empty())
            m_layout.Pair("RNG", m_rows[row], m_rowForms[row].range);
    }
    m_layout.EndSection();
}

void Writer::WriteBound(std::uint32_t column)
{
    const std::string_view name = m_columns[column];
    const std::string_view known = m_model.VariableName(column);
    const WrittenNumber lower =
        Limit(LowerOf(m_model, m_model.VariableAt(column)), true, "variable", name);
    const WrittenNumber upper =
        Limit(UpperOf(m_model, m_model.VariableAt(column)), false, "variable", name);
    if (lower.value == -Infinity && upper.value == Infinity)
        return m_layout.Bound("FR", name);
    if (lower == upper && std::signbit(lower.value) == std::signbit(upper.value))
        return m_layout.Bound("FX", name, TextOf(lower, known));
    // An upper bound that is not positive would change a lower one that is not written.
    const bool needsLower = !IsPlusZero(lower.value) || !(upper.value > 0.0);
    if (lower.value == -Infinity)
        m_layout.Bound("MI", name);
    else if (needsLower)
        m_layout.Bound("LO", name, TextOf(lower, known));
    if (upper.value != Infinity)
        m_layout.Bound("UP", name, TextOf(upper, known));
}

/// The number in full, of variable or row `name`; MPS has decimals only.
std::string Writer::TextOf(const WrittenNumber& number, std::string_view name)
{
    std::string text = NumberText(number);
    if (text.find('/') != std::string::npos)
        Fail("mps.quotient", fmt::format("MPS has no number {}, which '{}' has", text, name),
             "no decimal is this quotient; the LP format can state it");
    return text;
}

bool Writer::Fail(std::string code, std::string text, std::string hint)
{
    m_result.Report(Severity::Error, std::move(code), std::move(text), std::move(hint));
    return false;
}

}  // namespace

WriteResult WriteMps(const Model& model, MpsForm form)
{
    const bool hasBlank = HasNameWithBlank(RowNames(model, model.ObjectiveName())) ||
                          HasNameWithBlank(VariableNamesOf(model));
    if (form == MpsForm::ByContent && hasBlank)
    {
        WriteResult fixed = Writer(model, MpsForm::Fixed).Run();
        if (fixed.Ok() && fixed.diagnostics.empty())
            return fixed;
    }
    return Writer(model, form).Run();
}

}  // namespace nuv
