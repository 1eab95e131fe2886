// The edits, as the library's interface describes them.
#include "tests/reference/PlainModel.hpp"

namespace reference
{
PlainModel::PlainModel(std::uint32_t numVars)
{
    Replace(numVars);
}

void PlainModel::Replace(std::uint32_t numVars)
{
    names.clear();
    indices.clear();
    for (std::uint32_t index = 1; index <= numVars; ++index)
    {
        names.push_back("X" + std::to_string(index));
        indices[names.back()] = index;
    }
}

bool PlainModel::Rename(std::uint32_t index, const std::string& name)
{
    if (index == 0 || index > names.size())
        return false;
    // A variable that lost its name to another one can no longer be renamed.
    if (indices.erase(names[index - 1]) == 0)
        return true;
    if (!indices.emplace(name, index).second)
        return false;
    names[index - 1] = name;
    return true;
}

bool PlainModel::Maximise(const std::vector<std::pair<std::string, float>>& terms)
{
    std::vector<std::pair<std::uint32_t, float>> resolved;
    for (const auto& [name, coefficient] : terms)
    {
        const auto found = indices.find(name);
        if (found == indices.end())
            return false;
        resolved.emplace_back(found->second, coefficient);
    }
    objective = resolved;
    return true;
}

bool PlainModel::IsKnown(const PlainRow& row) const
{
    std::vector<float> coefficients(names.size());
    return Enter(row, &coefficients);
}

std::optional<Problem> PlainModel::InOrder(const std::vector<std::uint32_t>& ids) const
{
    Problem problem = {ids.size(), names.size(), {}, {}, std::vector<float>(names.size())};
    for (const std::uint32_t id : ids)
    {
        std::vector<float> coefficients(names.size());
        if (!Enter(rows.at(id), &coefficients))
            return std::nullopt;
        problem.A.insert(problem.A.end(), coefficients.begin(), coefficients.end());
        problem.b.push_back(rows.at(id).rhs);
    }
    if (!Enter({false, objective, {}, 0.0F}, &problem.c))
        return std::nullopt;
    return problem;
}

bool PlainModel::Enter(const PlainRow& row, std::vector<float>* coefficients) const
{
    for (const auto& [index, coefficient] : row.indexed)
    {
        if (index == 0 || index > names.size())
            return false;
        (*coefficients)[index - 1] = coefficient;
    }
    for (const auto& [name, coefficient] : row.named)
    {
        const auto found = indices.find(name);
        if (found == indices.end())
            return false;
        (*coefficients)[found->second - 1] = coefficient;
    }
    return true;
}
}  // namespace reference
