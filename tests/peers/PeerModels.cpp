// Writes models for other solvers to solve, and what this one says of them:
//
//     peer_models FOLDER
//
// The folder then holds each model as 0.mps, 1.lp, 2.mps, ..., and models.json, one line per model,
// with its numbers, the verdict, the objective, values and prices. All numbers are multiples of a
// quarter, so that no verdict hangs on a rounding: a point that satisfies an equation does so in
// anyone's arithmetic.
#include "tests/model/Generator.hpp"
#include "tests/support/Effort.hpp"

#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Report/JsonWriter.hpp"
#include "Nuv/Report/Words.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <span>
#include <string>
#include <vector>

namespace nuv::test
{
namespace
{

class Source : public Generator
{
public:
    using Generator::Generator;

    bool OneIn(std::size_t chances)
    {
        return Below(chances) == 0;
    }
    /// A multiple of a quarter up to `most` in magnitude, mostly an integer.
    double Quarters(std::size_t most)
    {
        const double units = static_cast<double>(Below(2 * most + 1)) - static_cast<double>(most);
        return OneIn(3) ? units / 4.0 : units;
    }
};

struct Instance
{
    Model model;
    std::vector<double> point;  ///< within the bounds of all variables
};

void AddVariables(Source& source, std::size_t count, Instance& instance)
{
    for (std::size_t j = 0; j < count; ++j)
    {
        const double lower = source.OneIn(3) ? source.Quarters(9) : 0.0;
        const double width = source.OneIn(6) ? 0.0 : 1.0 + static_cast<double>(source.Below(9));
        Bounds bounds{lower, Infinity};
        switch (source.Below(6))
        {
        case 0:
        case 1:
        case 2:
            bounds = {lower, lower + width};
            break;
        case 3:
            bounds = source.OneIn(2) ? Bounds{-Infinity, Infinity} : Bounds{-Infinity, lower};
            break;
        default:
            break;
        }
        (void)instance.model.AddVariable("x" + std::to_string(j), bounds);
        const double from = std::isfinite(bounds.lower) ? bounds.lower : lower - width;
        instance.point.push_back(source.OneIn(2) ? lower
                                                 : std::fmin(from + width / 2.0, bounds.upper));
    }
}

/// Rows of every kind, most of which the point satisfies; ranges and rows without limits only if
/// `anyKind`. None is empty.
void AddRows(Source& source, std::size_t count, bool anyKind, Instance& instance)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        Expression sum;
        double activity = 0.0;
        for (std::uint32_t j = 0; j < instance.point.size(); ++j)
        {
            double coefficient = source.OneIn(2) ? source.Quarters(9) : 0.0;
            if (coefficient == 0.0 && i % instance.point.size() == j)
                coefficient = 1.0;
            if (coefficient == 0.0)
                continue;
            sum += coefficient * instance.model.VariableAt(j);
            activity += coefficient * instance.point[j];
        }
        if (source.OneIn(5))
            activity = source.Quarters(20);
        const double room = source.OneIn(3) ? 0.0 : static_cast<double>(source.Below(20));
        const std::size_t kind = source.Below(anyKind ? 8 : 6);
        const Bounds sides = kind == 0   ? Bounds{activity, activity}
                             : kind < 3  ? Bounds{activity - room, Infinity}
                             : kind < 6  ? Bounds{-Infinity, activity + room}
                             : kind == 6 ? Bounds{activity - room, activity + 3.0}
                                         : Bounds{-Infinity, Infinity};
        (void)instance.model.Add("r" + std::to_string(i), Range(sides.lower, sum, sides.upper));
    }
}

/// glpsol reads no ranges in LP files and no sense in MPS files, so that the former have none and
/// the latter are minimisations. Each variable has a cost: the columns of an LP file then are in
/// the order of the objective.
Model MakeModel(std::uint64_t seed, bool isMps)
{
    Source source(seed);
    Instance instance;
    instance.model.SetObjectiveName("cost");
    AddVariables(source, 1 + source.Below(source.OneIn(5) ? 20 : 7), instance);
    AddRows(source, 1 + source.Below(source.OneIn(5) ? 16 : 9), isMps, instance);
    Expression objective;
    for (std::uint32_t j = 0; j < instance.point.size(); ++j)
        objective += (source.OneIn(2) ? 1.0 : -1.0) *
                     (0.25 + static_cast<double>(source.Below(9))) * instance.model.VariableAt(j);
    if (!isMps && source.OneIn(2))
        instance.model.Maximize(objective);
    else
        instance.model.Minimize(objective);
    return std::move(instance.model);
}

std::string JsonArray(std::span<const double> numbers)
{
    std::string text = "[";
    for (const double number : numbers)
        text.append(text.size() == 1 ? "" : ",").append(JsonNumber(number));
    return text + "]";
}

/// By the form's variables: columns, then rows.
double ValueOf(const Solution& solution, Index variable)
{
    const auto columns = static_cast<Index>(solution.values.size());
    return variable < columns ? solution.values[variable] : solution.activities[variable - columns];
}
double ReducedOf(const Solution& solution, Index variable)
{
    const auto columns = static_cast<Index>(solution.values.size());
    return variable < columns ? solution.reducedCosts[variable]
                              : solution.duals[variable - columns];
}

/// Whether no basic variable is at a bound: then the duals are the only ones.
bool HasOneDual(const BoundedForm& form, const Solution& solution)
{
    for (Index v = 0; v < form.Variables(); ++v)
        if (solution.basis[v] == BasisStatus::Basic &&
            (ValueOf(solution, v) == form.Lower(v) || ValueOf(solution, v) == form.Upper(v)))
            return false;
    return true;
}

/// Whether no price of a variable that could leave its bound is zero: then the values are the only
/// ones.
bool HasOnePoint(const BoundedForm& form, const Solution& solution)
{
    for (Index v = 0; v < form.Variables(); ++v)
        if (solution.basis[v] != BasisStatus::Basic && form.Lower(v) != form.Upper(v) &&
            ReducedOf(solution, v) == 0.0)
            return false;
    return true;
}

std::string JsonRows(const Model& model)
{
    std::string text = "[";
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
    {
        std::vector<double> dense(model.VariableCount(), 0.0);
        for (std::size_t at = 0; at < model.RowColumns(i).size(); ++at)
            dense[model.RowColumns(i)[at]] = model.RowCoefficients(i)[at];
        text.append(i == 0 ? "" : ",").append(JsonArray(dense));
    }
    return text + "]";
}

std::string JsonModel(const Model& model, const std::string& file)
{
    std::string text = R"("file":)" + JsonString(file) + R"(,"maximize":)";
    text.append(model.ObjectiveSense() == Sense::Maximize ? "true" : "false");
    text.append(R"(,"cost":)").append(JsonArray(model.Objective()));
    text.append(R"(,"lower":)").append(JsonArray(model.VariableLower()));
    text.append(R"(,"upper":)").append(JsonArray(model.VariableUpper()));
    text.append(R"(,"row_lower":)").append(JsonArray(model.RowLower()));
    text.append(R"(,"row_upper":)").append(JsonArray(model.RowUpper()));
    text.append(R"(,"rows":)").append(JsonRows(model));
    return text;
}

std::string JsonAnswer(const Model& model, const Solution& solution)
{
    std::string text = R"("status":)" + JsonString(WordOf(solution.status));
    text.append(solution.proved ? R"(,"proved":true)" : R"(,"proved":false)");
    if (solution.status != Status::Optimal)
        return text;
    const BoundedForm form = FormOf(model);
    text.append(R"(,"objective":)").append(JsonNumber(solution.objective));
    text.append(R"(,"values":)").append(JsonArray(solution.values));
    text.append(R"(,"duals":)").append(JsonArray(solution.duals));
    text.append(R"(,"reduced_costs":)").append(JsonArray(solution.reducedCosts));
    text.append(R"(,"one_point":)");
    text.append(HasOnePoint(form, solution) ? "true" : "false");
    text.append(R"(,"one_dual":)").append(HasOneDual(form, solution) ? "true" : "false");
    return text;
}

bool WriteAll(const std::string& folder, std::uint64_t count)
{
    std::ofstream index(folder + "/models.json");
    for (std::uint64_t seed = 0; seed < count; ++seed)
    {
        const bool isMps = seed % 2 == 0;
        const Model model = MakeModel(seed, isMps);
        const std::string file = std::to_string(seed) + (isMps ? ".mps" : ".lp");
        const WriteResult writing = isMps ? WriteMps(model) : WriteLp(model);
        if (!writing.Ok())
        {
            std::cerr << file << " cannot be written\n";
            return false;
        }
        std::ofstream(folder + "/" + file) << *writing.text;
        index << '{' << JsonModel(model, file) << ',' << JsonAnswer(model, Solve(model)) << "}\n";
    }
    index.close();
    return static_cast<bool>(index);
}

}  // namespace
}  // namespace nuv::test

int main(int count, char** words)
{
    if (count != 2)
    {
        std::cerr << "usage: peer_models FOLDER\n";
        return 64;
    }
    return nuv::test::WriteAll(words[1], ShareOf(std::uint64_t{320})) ? EXIT_SUCCESS : EXIT_FAILURE;
}
