/// A record at a time: its type, the names that belong to it, and what they become. Every name is
/// looked up where it stands, so that a message can point at it.
#include "Nuv/Io/Basis/MpsBasisReader.hpp"

#include "Nuv/Io/Mps/MpsLine.hpp"
#include "Nuv/Io/ReadResult.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

class BasisReader
{
public:
    BasisReader(std::string_view text, const std::string& file, const Model& model)
        : m_model(model), m_log(file, text), m_lines(text), m_place(text.data())
    {
        for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
            m_basis.columns.push_back(
                Resting(BasisStatus::AtLower, model.VariableLower()[j], model.VariableUpper()[j]));
        m_basis.rows.assign(model.RowCount(), BasisStatus::Basic);
        m_columnIsNamed.resize(model.VariableCount());
        m_rowIsNamed.resize(model.RowCount());
    }

    [[nodiscard]] BasisReadResult Run()
    {
        bool goesOn = true;
        while (goesOn)
        {
            const mps::Line line = m_lines.Next();
            m_place = line.kind == mps::LineKind::End ? m_place : line.End();
            goesOn = Take(line);
        }
        if (!m_log.HasError())
            CheckCount();
        BasisReadResult result{std::nullopt, {}};
        if (!m_log.HasError())
            result.basis = std::move(m_basis);
        result.diagnostics = m_log.Take();
        return result;
    }

private:
    /// Where a nonbasic variable rests that is said to be at `wanted`.
    [[nodiscard]] static BasisStatus Resting(BasisStatus wanted, double lower, double upper)
    {
        const double bound = wanted == BasisStatus::AtLower ? lower : upper;
        return std::isfinite(bound) ? wanted : DefaultNonbasicStatus(lower, upper);
    }

    /// @return whether there is more to read.
    [[nodiscard]] bool Take(const mps::Line& line)
    {
        switch (line.kind)
        {
        case mps::LineKind::Header:
            return TakeHeader(line);
        case mps::LineKind::Record:
            return TakeRecord(line);
        case mps::LineKind::Comment:
            return true;
        case mps::LineKind::End:
            break;
        }
        return m_log.Fail(m_place, "basis.no-end", "the file ends without ENDATA",
                          "is it whole? the last line of a basis file is ENDATA");
    }

    [[nodiscard]] bool TakeHeader(const mps::Line& line)
    {
        const mps::Words words = mps::SplitWords(line.text);
        if (words.word[0] == "ENDATA")
            return false;
        if (words.word[0] == "NAME")
            return true;
        return m_log.Fail(line.Begin(), "basis.unknown-section",
                          fmt::format("'{}' is no section of a basis file", words.word[0]),
                          "a basis file has NAME, lines that start with a blank, and ENDATA");
    }

    [[nodiscard]] bool TakeRecord(const mps::Line& line)
    {
        const mps::Words words = mps::SplitWords(line.text);
        const std::string_view type = words.word[0];
        const bool isPair = type == "XU" || type == "XL";
        if (!isPair && type != "UL" && type != "LL" && type != "BS")
        {
            return m_log.Fail(type.data(), "basis.unknown-type",
                              fmt::format("'{}' is no kind of line of a basis file", type),
                              "there are XU, XL, UL, LL and BS");
        }
        std::string_view name = words.word[1];
        std::string_view row = words.word[2];
        const std::size_t wanted = isPair ? 3 : 2;
        if (words.count != wanted)
        {
            // Names with blanks in them stand in columns.
            mps::Record record = mps::EmptyRecord(line);
            const bool isFixed = words.count > wanted && mps::SplitColumns(line, record) == nullptr;
            name = isFixed ? record.name : std::string_view();
            row = isFixed ? record.first : std::string_view();
            if (name.empty() || row.empty() == isPair)
            {
                return m_log.Fail(
                    line.Begin(), "basis.wrong-count",
                    fmt::format("{} takes {}", type, isPair ? "a column and a row" : "one name"),
                    "names that hold blanks stand in the columns of fixed MPS");
            }
        }
        if (type == "BS")
            return TakeBasic(name);
        return isPair ? TakePair(name, row, type == "XU") : TakeColumn(name, StatusOf(type));
    }

    [[nodiscard]] static BasisStatus StatusOf(std::string_view type)
    {
        return type == "UL" ? BasisStatus::AtUpper : BasisStatus::AtLower;
    }

    [[nodiscard]] bool TakeColumn(std::string_view name, BasisStatus status)
    {
        const std::optional<Variable> variable = m_model.FindVariable(name);
        if (!variable)
            return Unknown(name, "variable");
        const std::uint32_t j = m_model.IndexOf(*variable);
        if (m_columnIsNamed[j])
            return Twice(name, "variable");
        m_columnIsNamed[j] = true;
        const double lower = m_model.VariableLower()[j];
        const double upper = m_model.VariableUpper()[j];
        m_basis.columns[j] = status == BasisStatus::Basic ? status : Resting(status, lower, upper);
        if (status == BasisStatus::AtUpper && !std::isfinite(upper))
            (void)m_log.Warn(name.data(), "basis.no-bound",
                             fmt::format("the variable '{}' has no upper bound to rest at", name));
        return true;
    }

    [[nodiscard]] bool TakeRow(std::string_view name, BasisStatus status)
    {
        const std::optional<Row> row = m_model.FindRow(name);
        if (!row)
            return Unknown(name, "row");
        const std::uint32_t i = m_model.IndexOf(*row);
        if (m_rowIsNamed[i])
            return Twice(name, "row");
        m_rowIsNamed[i] = true;
        m_basis.rows[i] = status == BasisStatus::Basic
                              ? status
                              : Resting(status, m_model.RowLower()[i], m_model.RowUpper()[i]);
        return true;
    }

    [[nodiscard]] bool TakePair(std::string_view name, std::string_view row, bool upper)
    {
        return TakeColumn(name, BasisStatus::Basic) &&
               TakeRow(row, upper ? BasisStatus::AtUpper : BasisStatus::AtLower);
    }

    [[nodiscard]] bool TakeBasic(std::string_view name)
    {
        return m_model.FindVariable(name) ? TakeColumn(name, BasisStatus::Basic)
                                          : TakeRow(name, BasisStatus::Basic);
    }

    bool Unknown(std::string_view name, std::string_view kind)
    {
        return m_log.Fail(name.data(), fmt::format("basis.unknown-{}", kind),
                          fmt::format("the model has no {} '{}'", kind, name),
                          "is this the basis of another model?");
    }
    bool Twice(std::string_view name, std::string_view kind)
    {
        return m_log.Fail(name.data(), fmt::format("basis.{}-twice", kind),
                          fmt::format("the {} '{}' is named a second time", kind, name),
                          "say of each once where it is");
    }

    /// A solve makes any list a basis, but whoever wrote one that is none should know.
    void CheckCount()
    {
        const auto basic = [](const std::vector<BasisStatus>& statuses)
        { return std::ranges::count(statuses, BasisStatus::Basic); };
        const auto count = basic(m_basis.columns) + basic(m_basis.rows);
        if (count != static_cast<std::ptrdiff_t>(m_model.RowCount()))
        {
            (void)m_log.Warn(
                m_place, "basis.count",
                fmt::format("{} columns and rows are basic where the model has {} rows", count,
                            m_model.RowCount()),
                "the solve mends that: some leave or rows fill up");
        }
    }

    const Model& m_model;
    DiagnosticLog m_log;
    mps::Lines m_lines;
    const char* m_place;  ///< the end of the last line
    Basis m_basis;
    std::vector<bool> m_columnIsNamed;
    std::vector<bool> m_rowIsNamed;
};

}  // namespace

BasisReadResult ReadMpsBasis(std::string_view text, const std::string& file, const Model& model)
{
    return BasisReader(WithoutByteOrderMark(text), file, model).Run();
}

}  // namespace nuv
