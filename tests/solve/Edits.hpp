/// Random edits of a model in a session.
#pragma once

#include "Nuv/Solve/Solver.hpp"
#include "tests/solve/SmallModels.hpp"

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace nuv::test
{

/// A session with a small model of its own, edited in every way. The same seed gives the same
/// edits.
class EditedSession
{
public:
    explicit EditedSession(unsigned seed) : m_random(seed), solver(Start(m_random), QuietOptions())
    {
    }

    [[nodiscard]] static SolveOptions QuietOptions()
    {
        SolveOptions options;
        options.iisWork = 0;
        options.limits.seconds = 60.0;
        return options;
    }

    /// One edit, now and then several at once.
    void Edit()
    {
        do
            EditOnce();
        while (m_random() % 4 == 0);
    }

private:
    [[nodiscard]] static Model Start(std::mt19937& random)
    {
        const unsigned rows = Pick(random, 9);
        return SmallModel(random, rows, 1 + Pick(random, 9));
    }
    [[nodiscard]] Variable AnyVariable()
    {
        const Model& model = solver.GetModel();
        return model.VariableAt(Pick(m_random, model.VariableCount()));
    }
    [[nodiscard]] Row AnyRowOfModel()
    {
        const Model& model = solver.GetModel();
        return model.RowAt(Pick(m_random, model.RowCount()));
    }

    void EditOnce()
    {
        const Variable x = AnyVariable();
        const Row row = AnyRowOfModel();
        switch (m_random() % 20)
        {
        case 0:
        case 1:
        case 2:
            if (x.Valid())
                (void)solver.SetBounds(x, UsualBounds(m_random));
            break;
        case 3:
        case 4:
        case 5:
            if (row.Valid())
                MoveSide(row);
            break;
        case 6:
        case 7:
        case 8:
            if (x.Valid())
                (void)solver.SetCost(x, SmallNumber(m_random, -5, 5));
            break;
        case 9:
        case 10:
            if (x.Valid() && row.Valid())
                (void)solver.SetCoefficient(row, x, SmallNumber(m_random, -4, 6));
            break;
        case 11:
            if (solver.GetModel().RowCount() < 12)
                (void)solver.Add(AnyRow(m_random, solver.GetModel()));
            break;
        case 12:
            if (solver.GetModel().VariableCount() < 14)
                AddColumn();
            break;
        case 13:
            if (row.Valid())
                (void)solver.Remove(row);
            break;
        case 14:
            if (x.Valid())
                (void)solver.Remove(x);
            break;
        case 15:
            if (m_random() % 4 == 0)
                TurnObjective();
            break;
        default:
            if (x.Valid() && row.Valid())
                StateExactly(x, row);
            break;
        }
    }

    /// A number that no double says, or does after all.
    [[nodiscard]] std::string AnyFraction(int from, int to)
    {
        const int numerator =
            from * 9 +
            static_cast<int>(Pick(m_random, static_cast<std::uint32_t>(9 * (to - from) + 1)));
        return std::to_string(numerator) + (m_random() % 4 == 0 ? "/7" : "/9");
    }

    void StateExactly(Variable x, Row row)
    {
        switch (m_random() % 8)
        {
        case 0:
        case 1:
            (void)solver.SetExactCost(x, AnyFraction(-5, 5));
            break;
        case 2:
            (void)solver.SetExactLower(x, AnyFraction(-3, 2));
            break;
        case 3:
            (void)solver.SetExactUpper(x, AnyFraction(0, 6));
            break;
        case 4:
            (void)solver.SetExactLower(row, AnyFraction(-4, 2));
            break;
        case 5:
            (void)solver.SetExactUpper(row, AnyFraction(-1, 9));
            break;
        case 6:
            (void)solver.SetExactConstant(AnyFraction(-9, 9));
            break;
        default:
            (void)solver.SetExactCoefficient(row, x, AnyFraction(-4, 6));
            break;
        }
    }

    void MoveSide(Row row)
    {
        const std::uint32_t at = solver.GetModel().IndexOf(row);
        Bounds bounds = {solver.GetModel().RowLower()[at], solver.GetModel().RowUpper()[at]};
        const double step = SmallNumber(m_random, -4, 4);
        if (m_random() % 8 == 0)
            bounds = {-Infinity, SmallNumber(m_random, -2, 9)};
        else if (bounds.lower == bounds.upper)
            bounds = {bounds.lower + step, bounds.upper + step};
        else if (m_random() % 2 == 0)
            bounds.lower += step;
        else
            bounds.upper += step;
        (void)solver.SetBounds(row, bounds);
    }

    void AddColumn()
    {
        std::vector<ColumnTerm> terms;
        for (std::uint32_t i = 0; i < solver.GetModel().RowCount(); ++i)
        {
            if (m_random() % 3 == 0)
                terms.push_back({solver.GetModel().RowAt(i), SmallNumber(m_random, -4, 6)});
        }
        (void)solver.AddColumn("new" + std::to_string(m_added++), SmallNumber(m_random, -5, 5),
                               UsualBounds(m_random), terms);
    }

    void TurnObjective()
    {
        Expression objective = SmallNumber(m_random, -9, 9);
        for (std::uint32_t j = 0; j < solver.GetModel().VariableCount(); ++j)
            objective += SmallNumber(m_random, -5, 5) * solver.GetModel().VariableAt(j);
        if (m_random() % 2 == 0)
            solver.Maximize(objective);
        else
            solver.Minimize(objective);
    }

    std::mt19937 m_random;
    int m_added = 0;

public:
    Solver solver;
};

}  // namespace nuv::test
