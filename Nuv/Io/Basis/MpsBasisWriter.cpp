#include "Nuv/Io/Basis/MpsBasisWriter.hpp"

#include "Nuv/Io/Mps/MpsLine.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace nuv
{
namespace
{

/// What fixed MPS has room for.
constexpr std::size_t kField = 8;

bool HasBlank(std::string_view name)
{
    return std::ranges::any_of(name, mps::IsBlank);
}

/// A name that reads as one: it has no blanks, or stands in columns of its own.
bool IsWritable(std::string_view name)
{
    return !name.empty() &&
           (!HasBlank(name) || (name.size() <= kField && mps::Trimmed(name) == name));
}

class BasisWriter
{
public:
    BasisWriter(const Model& model, const Basis& basis) : m_model(model), m_basis(basis) {}

    [[nodiscard]] Result<std::string> Run()
    {
        const auto basic = std::ranges::count(m_basis.columns, BasisStatus::Basic);
        const auto resting = static_cast<std::ptrdiff_t>(m_basis.rows.size()) -
                             std::ranges::count(m_basis.rows, BasisStatus::Basic);
        if (m_basis.columns.size() != m_model.VariableCount() ||
            m_basis.rows.size() != m_model.RowCount() || basic != resting)
            return Error{"basis.none", "this is no basis of the model", "", "", 0, 0};
        m_text =
            m_model.Name().empty() ? "NAME\n" : fmt::format("NAME          {}\n", m_model.Name());
        for (std::uint32_t j = 0; j < m_model.VariableCount(); ++j)
            WriteColumn(j);
        m_text += "ENDATA\n";
        if (m_failure)
            return std::move(*m_failure);
        return std::move(m_text);
    }

private:
    void WriteColumn(std::uint32_t j)
    {
        const std::string_view name = m_model.VariableName(j);
        if (m_basis.columns[j] == BasisStatus::AtUpper)
            WriteLine("UL", name, {});
        if (m_basis.columns[j] != BasisStatus::Basic)
            return;
        while (m_basis.rows[m_row] == BasisStatus::Basic)
            ++m_row;
        WriteLine(m_basis.rows[m_row] == BasisStatus::AtUpper ? "XU" : "XL", name,
                  m_model.RowName(m_row));
        ++m_row;
    }

    void WriteLine(std::string_view type, std::string_view column, std::string_view row)
    {
        CheckName(column);
        if (!row.empty())
            CheckName(row);
        m_text += row.empty() ? fmt::format(" {} {}\n", type, column)
                              : fmt::format(" {} {:<8}  {}\n", type, column, row);
    }

    void CheckName(std::string_view name)
    {
        if (m_failure || IsWritable(name))
            return;
        m_failure = Error{"basis.name",
                          fmt::format("a basis file has no room for the name '{}'", name),
                          "names with blanks in them have eight characters at most",
                          "",
                          0,
                          0};
    }

    const Model& m_model;
    const Basis& m_basis;
    std::uint32_t m_row = 0;  ///< the next that may rest
    std::string m_text;
    std::optional<Error> m_failure;
};

}  // namespace

Result<std::string> WriteMpsBasis(const Model& model, const Basis& basis)
{
    return BasisWriter(model, basis).Run();
}

}  // namespace nuv
