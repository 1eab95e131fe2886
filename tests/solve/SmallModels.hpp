/// Seeded small models of one-digit numbers, many of them degenerate, infeasible or unbounded, with
/// rows and bounds of every kind.
#pragma once

#include "Nuv/Model/Model.hpp"

#include <cstdint>
#include <random>
#include <string>

namespace nuv::test
{

/// A number of a few bits: halves now and then, tenths seldom.
[[nodiscard]] inline double SmallNumber(std::mt19937& random, int least, int most)
{
    const auto width = static_cast<unsigned>(most - least + 1);
    const double whole = least + static_cast<int>(random() % width);
    const unsigned kind = random() % 16;
    return kind == 0 ? whole / 10 : kind < 4 ? whole / 2 : whole;
}

/// A number below `count`; 0 if there is none.
[[nodiscard]] inline std::uint32_t Pick(std::mt19937& random, std::uint32_t count)
{
    return count == 0 ? 0 : static_cast<std::uint32_t>(random() % count);
}

/// Bounds of any kind, seldom crossed ones.
[[nodiscard]] inline Bounds AnyBounds(std::mt19937& random)
{
    const double lower = SmallNumber(random, -5, 5);
    const double upper = lower + SmallNumber(random, 0, 9);
    switch (random() % 12)
    {
    case 0:
        return {-Infinity, Infinity};
    case 1:
    case 2:
        return {-Infinity, upper};
    case 3:
    case 4:
        return {lower, Infinity};
    case 5:
        return {lower, lower};
    case 6:
        return {0.0, Infinity};
    case 7:
        return {lower, random() % 8 == 0 ? lower - 1 : upper};
    default:
        return {lower, upper};
    }
}

[[nodiscard]] inline Bounds UsualBounds(std::mt19937& random)
{
    switch (random() % 4)
    {
    case 0:
        return {};
    case 1:
        return AnyBounds(random);
    default:
        return {0.0, SmallNumber(random, 1, 9)};
    }
}

/// A constraint on some of the model's variables; where they are at their bounds it mostly holds.
[[nodiscard]] inline Constraint AnyRow(std::mt19937& random, const Model& model)
{
    Expression sum;
    double side = random() % 6 == 0 ? SmallNumber(random, -9, 3) : SmallNumber(random, 0, 3);
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
    {
        if (random() % 3 != 0)
            continue;
        const double coefficient = SmallNumber(random, -4, 6);
        sum += coefficient * model.VariableAt(j);
        const double lower = model.VariableLower()[j];
        const double upper = model.VariableUpper()[j];
        side += coefficient * (lower > -Infinity ? lower : upper < Infinity ? upper : 0.0);
    }
    switch (random() % 6)
    {
    case 0:
        return Range(side - SmallNumber(random, 0, 6), sum, Infinity);
    case 1:
        return Range(side, sum, side);
    case 2:
        return Range(side - SmallNumber(random, 0, 8), sum, side);
    case 3:
        return Range(-Infinity, sum, Infinity);
    default:
        return Range(-Infinity, sum, side);
    }
}

[[nodiscard]] inline Model SmallModel(std::mt19937& random, unsigned rows, unsigned columns)
{
    Model model;
    Expression objective = SmallNumber(random, -3, 3);
    for (unsigned j = 0; j < columns; ++j)
    {
        const Variable x = model.AddVariable("x" + std::to_string(j), UsualBounds(random));
        objective += SmallNumber(random, -5, 5) * x;
    }
    for (unsigned i = 0; i < rows; ++i)
        model.Add(AnyRow(random, model));
    if (random() % 2 == 0)
        model.Minimize(objective);
    else
        model.Maximize(objective);
    return model;
}

}  // namespace nuv::test
