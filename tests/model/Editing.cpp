// Changing models: costs, bounds, coefficients, columns, and taking rows and variables out.
#include "tests/model/ModelText.hpp"
#include "tests/model/SameModel.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace nuv
{
namespace
{

using test::Difference;
using test::Written;

struct Factory
{
    Model model;
    Variable chairs = model.AddVariable("chairs");
    Variable tables = model.AddVariable("tables");
    Row wood = model.Add("wood", 2 * chairs + 5 * tables <= 300);
    Row labour = model.Add("labour", 4 * chairs + 3 * tables <= 240);

    Factory()
    {
        model.Maximize(30 * chairs + 70 * tables);
    }
};

TEST(Editing, CostsBoundsAndCoefficientsByHandle)
{
    Factory factory;
    Model& model = factory.model;
    EXPECT_TRUE(model.SetCost(factory.chairs, 31));
    EXPECT_TRUE(model.SetBounds(factory.wood, {-Infinity, 310}));
    EXPECT_TRUE(model.SetBounds(factory.tables, {1, 40}));
    EXPECT_TRUE(model.SetCoefficient(factory.labour, factory.tables, 3.5));
    EXPECT_TRUE(model.SetCoefficient(factory.wood, factory.chairs, 0));
    EXPECT_EQ(
        Written(model),
        "max 0 + 31 chairs + 70 tables; wood: -inf <= 5 tables <= 310; "
        "labour: -inf <= 4 chairs + 3.5 tables <= 240; 0 <= chairs <= inf; 1 <= tables <= 40");
    EXPECT_TRUE(model.SetCoefficient(factory.wood, factory.chairs, 0)) << "there is none already";
    EXPECT_TRUE(model.SetCoefficient(factory.wood, factory.chairs, 6));
    EXPECT_EQ(model.RowColumns(0).size(), 2u);
    EXPECT_EQ(model.RowCoefficients(0)[1], 6.0);
    EXPECT_EQ(model.RowColumns(1)[0], 0u);
    EXPECT_EQ(model.NonzeroCount(), 4u);
    EXPECT_FALSE(model.Failure().has_value());
}

TEST(Editing, AColumnGoesIntoRowsThatStand)
{
    Factory factory;
    Model& model = factory.model;
    const Row idle = model.Add("idle", factory.chairs >= 1);
    const Variable shelves =
        model.AddColumn("shelves", 45, {0, 9}, {{idle, 1}, {factory.wood, 3}, {idle, 0.5}});
    EXPECT_TRUE(model.Owns(shelves));
    EXPECT_EQ(Written(model), "max 0 + 30 chairs + 70 tables + 45 shelves; "
                              "wood: -inf <= 2 chairs + 5 tables + 3 shelves <= 300; "
                              "labour: -inf <= 4 chairs + 3 tables <= 240; "
                              "idle: 1 <= 1 chairs + 1.5 shelves <= inf; "
                              "0 <= chairs <= inf; 0 <= tables <= inf; 0 <= shelves <= 9");
    const Variable nothing = model.AddColumn("nothing", 1, {}, {});
    model.Add("last", shelves + nothing <= 4);
    EXPECT_EQ(model.RowColumns(3)[1], 3u);
    EXPECT_FALSE(model.Failure().has_value());
}

TEST(Editing, RemovedRowsAndVariablesLeaveTheOthersAsTheyAre)
{
    Factory factory;
    Model& model = factory.model;
    const Variable shelves = model.AddColumn("shelves", 45, {0, 9}, {{factory.labour, 2}});
    EXPECT_TRUE(model.Remove(factory.chairs));
    EXPECT_TRUE(model.Remove(factory.wood));
    EXPECT_EQ(Written(model),
              "max 0 + 70 tables + 45 shelves; labour: -inf <= 3 tables + 2 shelves <= 240; "
              "0 <= tables <= inf; 0 <= shelves <= 9");
    EXPECT_FALSE(model.Owns(factory.chairs));
    EXPECT_FALSE(model.Owns(factory.wood));
    EXPECT_EQ(model.IndexOf(factory.chairs), Variable::NoIndex);
    EXPECT_EQ(model.IndexOf(shelves), 1u);
    EXPECT_EQ(model.IndexOf(factory.labour), 0u);
    EXPECT_TRUE(Same(model.VariableAt(1), shelves));
    EXPECT_TRUE(Same(*model.FindVariable("shelves"), shelves));
    EXPECT_FALSE(model.FindVariable("chairs").has_value());
    EXPECT_TRUE(model.SetCost(shelves, 46));
    const Row more = model.Add("wood", 5 * factory.tables + shelves <= 30);
    EXPECT_EQ(model.IndexOf(more), 1u);
    EXPECT_FALSE(Same(more, factory.wood)) << "a name may come again, a handle may not";
    EXPECT_FALSE(model.Owns(factory.wood));
    EXPECT_EQ(model.Objective()[1], 46.0);
    EXPECT_FALSE(model.Failure().has_value());
}

TEST(Editing, CopiesRemoveEachForItself)
{
    Factory factory;
    Model copy = factory.model;
    EXPECT_TRUE(copy.Remove(factory.chairs));
    EXPECT_TRUE(factory.model.Owns(factory.chairs));
    EXPECT_FALSE(copy.Owns(factory.chairs));
    const Model after = copy;
    EXPECT_EQ(after.IndexOf(factory.tables), 0u);
    const Variable ours = copy.AddVariable("ours");
    EXPECT_TRUE(copy.Owns(ours));
    EXPECT_FALSE(after.Owns(ours));
    Model taken = std::move(copy);
    EXPECT_EQ(taken.IndexOf(ours), 1u);
    copy = taken;
    EXPECT_EQ(copy.IndexOf(ours), 1u);
    EXPECT_TRUE(copy.Remove(ours));
    EXPECT_TRUE(taken.Owns(ours));
}

TEST(Editing, ManyAtOnceAndNoneAtAll)
{
    Factory factory;
    Model& model = factory.model;
    EXPECT_TRUE(model.Remove(std::vector<Row>{}));
    EXPECT_EQ(model.RowCount(), 2u);
    EXPECT_TRUE(model.Remove(std::vector<Row>{factory.labour, factory.wood, factory.labour}));
    EXPECT_TRUE(model.Remove(std::vector<Variable>{factory.tables, factory.chairs}));
    EXPECT_EQ(Written(model), "max 0");
    const Variable x = model.AddVariable("chairs");
    EXPECT_EQ(model.IndexOf(x), 0u);
    EXPECT_EQ(model.IndexOf(factory.chairs), Variable::NoIndex);
}

/// The failure after `edit` of a factory whose row "gone" and variable "left" were removed.
template <class Edit>
std::string FailureAfter(Edit edit)
{
    Factory factory;
    const Row gone = factory.model.Add("gone", factory.chairs <= 1);
    const Variable left = factory.model.AddVariable("left");
    EXPECT_TRUE(factory.model.Remove(gone));
    EXPECT_TRUE(factory.model.Remove(left));
    const std::string before = Written(factory.model);
    EXPECT_FALSE(edit(factory.model, factory, gone, left));
    EXPECT_EQ(Written(factory.model), before) << "a refused call changes nothing";
    return factory.model.Failure()
               ? factory.model.Failure()->code + ": " + factory.model.Failure()->text
               : "none";
}

TEST(Editing, WhatWasRemovedIsRefused)
{
    using F = const Factory&;
    const std::string row = "model.unknown-row: ";
    const std::string variable = "model.unknown-variable: ";
    EXPECT_EQ(FailureAfter(
                  [](Model& m, F, Row gone, Variable) {
                      return m.SetBounds(gone, {0, 1});
                  }),
              row + "bounds are set for a row that is not of this model");
    EXPECT_EQ(FailureAfter([](Model& m, F, Row, Variable left) { return m.SetCost(left, 1); }),
              variable + "a cost is set for a variable that is not of this model");
    EXPECT_EQ(FailureAfter([](Model& m, F f, Row gone, Variable)
                           { return m.SetCoefficient(gone, f.chairs, 1); }),
              row + "a coefficient is set for a row that is not of this model");
    EXPECT_EQ(FailureAfter([](Model& m, F f, Row, Variable left)
                           { return m.SetCoefficient(f.wood, left, 1); }),
              variable + "a coefficient is set for a variable that is not of this model");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, F f, Row gone, Variable) {
                      return m.Remove(std::vector<Row>{f.wood, gone});
                  }),
              row + "a removal is asked for a row that is not of this model");
    EXPECT_EQ(FailureAfter([](Model& m, F, Row, Variable left) { return m.Remove(left); }),
              variable + "a removal is asked for a variable that is not of this model");
    EXPECT_EQ(
        FailureAfter([](Model& m, F, Row, Variable left) { return m.Add("r", left <= 1).Valid(); }),
        variable + "row 'r' uses a variable that is not of this model");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, F, Row gone, Variable) {
                      return m.AddColumn("y", 1, {}, {{gone, 1}}).Valid();
                  }),
              row + "variable 'y' has a row that is not of this model");
}

TEST(Editing, NumbersThatAreNoneAreRefused)
{
    using F = const Factory&;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::string rest = " has a coefficient or constant that is not finite";
    EXPECT_EQ(FailureAfter(
                  [&](Model& m, F f, Row, Variable) {
                      return m.SetBounds(f.wood, {nan, 1});
                  }),
              "model.not-a-number: a bound of row 'wood' is not a number");
    EXPECT_EQ(FailureAfter([&](Model& m, F f, Row, Variable) { return m.SetCost(f.tables, nan); }),
              "model.not-finite: the objective at variable 'tables'" + rest);
    EXPECT_EQ(FailureAfter([&](Model& m, F f, Row, Variable)
                           { return m.SetCoefficient(f.wood, f.tables, Infinity); }),
              "model.not-finite: row 'wood'" + rest);
    EXPECT_EQ(FailureAfter(
                  [&](Model& m, F f, Row, Variable) {
                      return m.AddColumn("y", 1, {}, {{f.wood, nan}}).Valid();
                  }),
              "model.not-finite: variable 'y'" + rest);
    EXPECT_EQ(FailureAfter([&](Model& m, F, Row, Variable)
                           { return m.AddColumn("y", Infinity, {}, {}).Valid(); }),
              "model.not-finite: variable 'y'" + rest);
    EXPECT_EQ(FailureAfter([&](Model& m, F, Row, Variable)
                           { return m.AddColumn("tables", 1, {}, {}).Valid(); }),
              "model.duplicate-variable: there is already a variable called 'tables'");
}

/// The same model kept as maps by name, from which it can be stated anew.
struct Kept
{
    struct Line
    {
        std::string name;
        Bounds bounds;
        double cost = 0.0;
    };
    std::vector<Line> variables;
    std::vector<Line> rows;
    std::map<std::pair<std::string, std::string>, double> entries;

    [[nodiscard]] Model Stated() const
    {
        Model model;
        Expression objective;
        for (const Line& variable : variables)
            objective += variable.cost * model.AddVariable(variable.name, variable.bounds);
        for (const Line& row : rows)
        {
            Expression sum;
            for (const Line& variable : variables)
            {
                if (const auto found = entries.find({row.name, variable.name});
                    found != entries.end())
                    sum += found->second * *model.FindVariable(variable.name);
            }
            model.Add(row.name, Range(row.bounds.lower, sum, row.bounds.upper));
        }
        model.Minimize(objective);
        return model;
    }
};

class Edits
{
public:
    explicit Edits(unsigned seed) : m_random(seed)
    {
        m_model.Minimize({});
    }

    void Step()
    {
        const std::size_t kind = Below(9);
        const std::size_t row = Below(m_kept.rows.size() + 1);
        const std::size_t column = Below(m_kept.variables.size() + 1);
        const bool hasRow = row < m_kept.rows.size();
        const bool hasColumn = column < m_kept.variables.size();
        if (kind == 0)
            AddRow();
        else if (kind == 1)
            AddColumn();
        else if (kind == 2 && hasColumn)
            EXPECT_TRUE(m_model.SetCost(m_columns[column], m_kept.variables[column].cost = Any()));
        else if (kind == 3 && hasColumn)
            EXPECT_TRUE(m_model.SetBounds(m_columns[column],
                                          m_kept.variables[column].bounds = {-Any(), 10}));
        else if (kind == 4 && hasRow)
            EXPECT_TRUE(m_model.SetBounds(m_rows[row], m_kept.rows[row].bounds = {-Any(), 10}));
        else if ((kind == 5 || kind == 6) && hasRow && hasColumn)
            SetCoefficient(row, column);
        else if (kind == 7 && hasRow)
            RemoveRow(row);
        else if (kind == 8 && hasColumn)
            RemoveColumn(column);
    }

    void Compare() const
    {
        EXPECT_EQ(Difference(m_model, m_kept.Stated()), "");
        for (std::uint32_t i = 0; i < m_rows.size(); ++i)
            ASSERT_EQ(m_model.IndexOf(m_rows[i]), i);
        for (std::uint32_t j = 0; j < m_columns.size(); ++j)
            ASSERT_EQ(m_model.IndexOf(m_columns[j]), j);
        for (const Row gone : m_goneRows)
            ASSERT_FALSE(m_model.Owns(gone));
        for (const Variable gone : m_goneColumns)
            ASSERT_FALSE(m_model.Owns(gone));
        EXPECT_FALSE(m_model.Failure().has_value());
    }

private:
    std::size_t Below(std::size_t count)
    {
        return m_random() % count;
    }
    double Any()
    {
        return static_cast<double>(1 + Below(9)) / 2;
    }

    void AddRow()
    {
        const std::string name = "r" + std::to_string(m_made++);
        Expression sum;
        for (std::size_t j = 0; j < m_columns.size(); ++j)
        {
            if (Below(2) != 0)
                sum += (m_kept.entries[{name, m_kept.variables[j].name}] = Any()) * m_columns[j];
        }
        m_rows.push_back(m_model.Add(name, Range(-Infinity, sum, 7)));
        m_kept.rows.push_back({name, {-Infinity, 7}});
    }
    void AddColumn()
    {
        const std::string name = "x" + std::to_string(m_made++);
        std::vector<ColumnTerm> terms;
        for (std::size_t i = m_rows.size(); i-- > 0;)
        {
            if (Below(2) != 0)
                terms.push_back({m_rows[i], m_kept.entries[{m_kept.rows[i].name, name}] = Any()});
        }
        m_columns.push_back(m_model.AddColumn(name, 3, {1, 2}, terms));
        m_kept.variables.push_back({name, {1, 2}, 3});
    }
    void SetCoefficient(std::size_t row, std::size_t column)
    {
        const double value = static_cast<double>(Below(3));
        const std::pair key(m_kept.rows[row].name, m_kept.variables[column].name);
        EXPECT_TRUE(m_model.SetCoefficient(m_rows[row], m_columns[column], value));
        if (value == 0.0)
            m_kept.entries.erase(key);
        else
            m_kept.entries[key] = value;
    }
    void RemoveRow(std::size_t row)
    {
        EXPECT_TRUE(m_model.Remove(m_rows[row]));
        m_goneRows.push_back(m_rows[row]);
        m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(row));
        m_kept.rows.erase(m_kept.rows.begin() + static_cast<std::ptrdiff_t>(row));
    }
    void RemoveColumn(std::size_t column)
    {
        EXPECT_TRUE(m_model.Remove(m_columns[column]));
        m_goneColumns.push_back(m_columns[column]);
        m_columns.erase(m_columns.begin() + static_cast<std::ptrdiff_t>(column));
        m_kept.variables.erase(m_kept.variables.begin() + static_cast<std::ptrdiff_t>(column));
    }

    std::mt19937 m_random;
    Model m_model;
    Kept m_kept;
    std::vector<Row> m_rows, m_goneRows;
    std::vector<Variable> m_columns, m_goneColumns;
    int m_made = 0;
};

TEST(Editing, AnySequenceOfEditsGivesTheModelStatedSo)
{
    for (unsigned seed = 1; seed <= 20; ++seed)
    {
        SCOPED_TRACE(seed);
        Edits edits(seed);
        for (int step = 0; step < 200; ++step)
        {
            edits.Step();
            edits.Compare();
            if (testing::Test::HasFailure())
                return;
        }
    }
}

}  // namespace
}  // namespace nuv
