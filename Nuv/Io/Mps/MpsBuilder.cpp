#include "Nuv/Io/Mps/MpsBuilder.hpp"

#include "Nuv/Io/NamesInOtherCase.hpp"

#include <fmt/core.h>

namespace nuv::mps
{

/// Whether a record counts; one of another set than the first is passed over.
bool Builder::IsInFirstSet(FirstSet& set, const Record& record)
{
    if (!set.known)
        set = {true, record.name, record.name};
    if (record.name == set.name)
        return true;
    if (record.name != set.lastOther)
    {
        set.lastOther = record.name;
        m_log.Note(
            record.Begin(), "mps.other-set",
            record.name.empty()
                ? fmt::format("records without a set are left out: the first one is '{}'", set.name)
                : fmt::format("set '{}' is left out: the first one is '{}'", record.name, set.name),
            "a model is read with the first set of each section");
    }
    return false;
}

bool Builder::Finish()
{
    if (!m_hasObjective && !m_objectiveAsked.empty())
    {
        return m_messages.Fail(m_objectiveAsked.data(), "mps.objective-name",
                               fmt::format("there is no row '{}' of type N in ROWS, line {}",
                                           m_objectiveAsked, m_messages.LineOf(Section::Rows)),
                               "OBJNAME names the row of type N that is the objective");
    }
    if (!m_hasObjective)
    {
        m_log.Note(m_messages.PlaceOf(Section::Rows), "mps.no-objective",
                   "there is no row of type N: any feasible point is optimal");
    }
    WarnOfNamesInOtherCase(m_log, "mps", "rows", m_rowPlaces,
                           [this](std::uint32_t at) { return m_rowNames[at]; });
    WarnOfNamesInOtherCase(m_log, "mps", "columns", m_columnPlaces,
                           [this](std::uint32_t at) { return Made().VariableName(at); });
    FinishColumns();
    FinishBounds();
    return FinishRows();
}

}  // namespace nuv::mps
