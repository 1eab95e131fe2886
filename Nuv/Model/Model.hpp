/// The general linear program: minimise or maximise a linear objective with a constant, under rows
/// `lower <= a.x <= upper` and bounds `lower <= x <= upper` on each variable, everything named. The
/// k-th variable is called x<k> and the k-th row R<k> if no name is given, with underscores behind
/// where that name is given to another, be it later.
///
/// Rows are stored sparsely, one after another, as (column, coefficient) pairs in double precision;
/// within a row each column occurs at most once. A number that its double does not say, of more
/// digits or a quotient, is kept in full beside it (Exact()). Programs state models by expressions,
/// and what they state is checked; readers of files use a ModelBuilder. The first failure is kept
/// (`Failure()`), later calls still work, and no solver accepts a model that has one: so a program
/// may state a whole model and ask once. Contradictory bounds are not a failure: such a model is
/// infeasible, which is an answer.
#pragma once

#include "Nuv/Model/Error.hpp"
#include "Nuv/Model/ExactNumbers.hpp"
#include "Nuv/Model/Expression.hpp"
#include "Nuv/Model/NameTable.hpp"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace nuv
{

/// The direction of an objective.
enum class Sense
{
    Minimize,
    Maximize
};

/// Bounds of a variable or of a row; the default is what a variable has when nothing is said.
struct Bounds
{
    double lower = 0.0;       ///< -Infinity for none
    double upper = Infinity;  ///< Infinity for none
};

/// A coefficient of a column that is added: the row where it stands.
struct ColumnTerm
{
    Row row;             ///< of the model that gets the column
    double coefficient;  ///< finite
};

struct Solution;
struct SolveOptions;
struct WrittenNumber;

/// A linear program that is stated, edited and asked; a value, whose copies are independent but
/// know the same handles. A model that was moved from is only good to be assigned to.
class Model
{
public:
    // Stating a model -------------------------------------------------------

    /// @return an invalid handle, with Failure() set, if the name is empty or taken or a bound is
    /// no number.
    template <class Name>
    requires std::is_convertible_v<const Name&, std::string_view>
        Variable AddVariable(const Name& name, Bounds bounds = {})
    {
        return AddNamedVariable(name, bounds);
    }
    /// The same under a name made for it: `AddVariable()`, `AddVariable({0, 40})`.
    Variable AddVariable(Bounds bounds = {});
    /// So many variables with the same bounds, under names made for them; none of them valid if the
    /// bounds are refused.
    std::vector<Variable> AddVariables(std::size_t count, Bounds bounds = {});

    /// Takes in `constraint`: terms of the same variable are added up, the constants move to the
    /// bounds, both as the decimals that they say.
    /// @return an invalid row, with Failure() set, if the name is empty or taken, a variable is not
    /// of this model or a number is not finite.
    Row Add(std::string_view name, const Constraint& constraint);

    /// The same under a name made for it.
    Row Add(const Constraint& constraint);

    ///@{
    /// Replaces the objective, exact numbers of the old one included. Fails as Add does and leaves
    /// the old one then.
    void Maximize(const Expression& objective)
    {
        SetObjective(Sense::Maximize, objective);
    }
    void Minimize(const Expression& objective)
    {
        SetObjective(Sense::Minimize, objective);
    }
    ///@}

    /// A variable with its cost and its coefficients in rows that exist; terms of the same row are
    /// added up as decimals.
    /// @return an invalid handle, with Failure() set, where AddVariable gives one, or if a row is
    ///@{
    /// not of this model or a number is not finite.
    Variable AddColumn(std::string_view name, double cost, Bounds bounds,
                       std::span<const ColumnTerm> terms);
    Variable AddColumn(std::string_view name, double cost, Bounds bounds,
                       std::initializer_list<ColumnTerm> terms)
    {
        return AddColumn(name, cost, bounds, std::span(terms.begin(), terms.size()));
    }
    ///@}
    ///@{
    /// The same under a name made for it: `AddColumn(3.5, {0, 40}, {{wood, 2}, {labour, 4}})`.
    Variable AddColumn(double cost, Bounds bounds, std::span<const ColumnTerm> terms);
    Variable AddColumn(double cost, Bounds bounds, std::initializer_list<ColumnTerm> terms)
    {
        return AddColumn(cost, bounds, std::span(terms.begin(), terms.size()));
    }
    ///@}

    // Editing it ------------------------------------------------------------
    //
    ///@{
    /// Replaces both bounds of a variable, or both sides of a row, and forgets their exact numbers.
    /// Bounds that exclude each other are taken: such a model is infeasible.
    /// @return false, with Failure() set and nothing else changed, if the variable or row is not of
    /// this model (any more), a bound is NaN, or no number could keep it. So do all edits below.
    bool SetBounds(Variable variable, Bounds bounds);
    bool SetBounds(Row row, Bounds bounds);
    ///@}
    /// Of the objective in the model's own sense; finite.
    bool SetCost(Variable variable, double cost);
    /// Of the objective in the model's own sense; finite.
    bool SetObjectiveConstant(double constant);
    /// Turns the objective round, its numbers unchanged.
    void SetSense(Sense sense) noexcept
    {
        m_sense = sense;
    }
    /// A coefficient of 0 takes the entry out of the row.
    bool SetCoefficient(Row row, Variable variable, double coefficient);

    ///@{
    /// Says a number that no double does: a text that is an integer, a decimal of any length or a
    /// quotient of integers, "-1/3". The double in the place becomes the nearest one, which is what
    /// is solved if SolveOptions::numbers asks for doubles; otherwise the answer is about the
    /// number itself. Setting the double of a place again forgets what was said beside it. Of
    /// bounds and sides the other one stays, as exact as it was.
    /// @return false as edits do; with the code model.not-a-number for what is no such text, or is
    /// beyond doubles.
    bool SetExactCost(Variable variable, std::string_view number);
    bool SetExactConstant(std::string_view number);
    bool SetExactLower(Variable variable, std::string_view number);
    bool SetExactUpper(Variable variable, std::string_view number);
    bool SetExactLower(Row row, std::string_view number);
    bool SetExactUpper(Row row, std::string_view number);
    bool SetExactCoefficient(Row row, Variable variable, std::string_view number);
    ///@}

    ///@{
    /// Takes rows or variables out, these with all their coefficients, and their names with them.
    /// Handles of what is removed are refused from then on, all others stay good; but places in
    /// arrays by variable or row move up (IndexOf). Many at once cost as much as one.
    bool Remove(Row row)
    {
        return Remove(std::span(&row, 1));
    }
    bool Remove(Variable variable)
    {
        return Remove(std::span(&variable, 1));
    }
    bool Remove(std::span<const Row> rows);
    bool Remove(std::span<const Variable> variables);
    ///@}

    ///@{
    /// The name of the model, or of its objective, for files and reports; any text, also empty.
    void SetName(std::string_view name)
    {
        m_name = name;
    }
    void SetObjectiveName(std::string_view name)
    {
        m_objectiveName = name;
    }
    ///@}

    /// The first thing that went wrong while the model was stated.
    [[nodiscard]] const std::optional<Error>& Failure() const noexcept
    {
        return m_failure;
    }

    /// The same, or else the first number that is not finite where it has to be, or bound that no
    /// number can keep: a ModelBuilder takes any.
    [[nodiscard]] std::optional<Error> FindFault() const;

    /// The model of a file, in CPLEX-LP or MPS format, plain or gzip; "-" is standard input. What
    /// is odd about the file, ReadModelFile in Nuv/Io/ModelFile.hpp tells too.
    /// @return the first error if there is one: with its line and column, or with a code that
    /// begins with "file." if the file cannot be read.
    [[nodiscard]] static Result<Model> Read(const std::string& path);

    /// Writes the model to a file, as MPS if the path ends in .mps, else as CPLEX-LP. What the
    /// format does not hold, such as blanks in names, is changed as WriteMps and WriteLp say.
    /// @return nothing, or Failure(), or why the format cannot hold the model or the file is not
    /// written.
    [[nodiscard]] std::optional<Error> Write(const std::string& path) const;

    ///@{
    /// Solves and proves; include Nuv/Solve/Solution.hpp for what comes back.
    [[nodiscard]] Solution Solve() const;
    [[nodiscard]] Solution Solve(const SolveOptions& options) const;
    ///@}

    // Asking ----------------------------------------------------------------

    ///@{
    /// By name, a made one too; nothing if the model has none of this name.
    [[nodiscard]] std::optional<Variable> FindVariable(std::string_view name) const noexcept;
    [[nodiscard]] std::optional<Row> FindRow(std::string_view name) const noexcept;
    ///@}

    ///@{
    /// The variable or row at a place in the arrays below; not valid if there is none.
    [[nodiscard]] Variable VariableAt(std::uint32_t column) const noexcept
    {
        return m_variables.Make<VariableKind>(column);
    }
    [[nodiscard]] Row RowAt(std::uint32_t row) const noexcept
    {
        return m_rows.Make<RowKind>(row);
    }
    ///@}

    ///@{
    /// The place of a variable or row in the arrays below; NoIndex if it is not of this model.
    [[nodiscard]] std::uint32_t IndexOf(Variable variable) const noexcept
    {
        return m_variables.Find(variable);
    }
    [[nodiscard]] std::uint32_t IndexOf(Row row) const noexcept
    {
        return m_rows.Find(row);
    }
    ///@}

    ///@{
    /// Whether a handle is valid and of this model, or was of the model that this one is a copy of
    /// when the copy was made.
    [[nodiscard]] bool Owns(Variable variable) const noexcept
    {
        return m_variables.Contain(variable);
    }
    [[nodiscard]] bool Owns(Row row) const noexcept
    {
        return m_rows.Contain(row);
    }
    ///@}
    ///@{
    /// The same for what outlives the model.
    [[nodiscard]] const HandleOrigins& VariableOrigins() const noexcept
    {
        return m_variables;
    }
    [[nodiscard]] const HandleOrigins& RowOrigins() const noexcept
    {
        return m_rows;
    }
    ///@}

    ///@{
    /// How many variables, rows and stored coefficients there are; a coefficient may be stored and
    /// 0, as `0 * x` is.
    [[nodiscard]] std::uint32_t VariableCount() const noexcept
    {
        return m_variableNames.Size();
    }
    [[nodiscard]] std::uint32_t RowCount() const noexcept
    {
        return m_rowNames.Size();
    }
    [[nodiscard]] std::size_t NonzeroCount() const noexcept
    {
        return m_columns.size();
    }
    ///@}

    ///@{
    /// As they were set; empty where they were not.
    [[nodiscard]] const std::string& Name() const noexcept
    {
        return m_name;
    }
    [[nodiscard]] const std::string& ObjectiveName() const noexcept
    {
        return m_objectiveName;
    }
    ///@}
    ///@{
    /// Of the variable or row at a place that there is; valid until the next one is added or
    /// removed.
    [[nodiscard]] std::string_view VariableName(std::uint32_t column) const noexcept
    {
        return m_variableNames[column];
    }
    [[nodiscard]] std::string_view RowName(std::uint32_t row) const noexcept
    {
        return m_rowNames[row];
    }
    ///@}

    /// Minimize unless the objective was stated otherwise.
    [[nodiscard]] Sense ObjectiveSense() const noexcept
    {
        return m_sense;
    }
    /// The double of it; NumberPlace::Of::ObjectiveConstant in Exact() may say more.
    [[nodiscard]] double ObjectiveConstant() const noexcept
    {
        return m_objectiveConstant;
    }
    /// One coefficient per variable.
    [[nodiscard]] std::span<const double> Objective() const noexcept
    {
        return m_objective;
    }

    ///@{
    /// By variable or by row; an infinity is no bound.
    [[nodiscard]] std::span<const double> VariableLower() const noexcept
    {
        return m_variableLower;
    }
    [[nodiscard]] std::span<const double> VariableUpper() const noexcept
    {
        return m_variableUpper;
    }
    [[nodiscard]] std::span<const double> RowLower() const noexcept
    {
        return m_rowLower;
    }
    [[nodiscard]] std::span<const double> RowUpper() const noexcept
    {
        return m_rowUpper;
    }
    ///@}

    /// What the numbers are that their doubles do not say.
    [[nodiscard]] const ExactNumbers& Exact() const noexcept
    {
        return m_exact;
    }

    ///@{
    /// The columns of a row and, at the same places, their coefficients.
    [[nodiscard]] std::span<const std::uint32_t> RowColumns(std::uint32_t row) const noexcept
    {
        return std::span(m_columns).subspan(m_rowStarts[row],
                                            m_rowStarts[row + 1] - m_rowStarts[row]);
    }
    [[nodiscard]] std::span<const double> RowCoefficients(std::uint32_t row) const noexcept
    {
        return std::span(m_coefficients)
            .subspan(m_rowStarts[row], m_rowStarts[row + 1] - m_rowStarts[row]);
    }
    ///@}
    ///@{
    /// All rows in one piece: row i is [starts[i], starts[i + 1]) of columns and coefficients.
    [[nodiscard]] std::span<const std::size_t> RowStarts() const noexcept
    {
        return m_rowStarts;
    }
    [[nodiscard]] std::span<const std::uint32_t> Columns() const noexcept
    {
        return m_columns;
    }
    [[nodiscard]] std::span<const double> Coefficients() const noexcept
    {
        return m_coefficients;
    }
    ///@}

private:
    friend class BulkEditor;
    friend class ModelBuilder;

    Variable AddNamedVariable(std::string_view name, Bounds bounds, bool isMade = false);
    Variable AddNamedColumn(std::string_view name, double cost, Bounds bounds,
                            std::span<const ColumnTerm> terms, bool isMade);
    Row AddNamedRow(std::string_view name, const Constraint& constraint, bool isMade);
    void AppendColumn(Bounds bounds);
    [[nodiscard]] bool CheckNewVariable(std::string_view name, Bounds bounds);
    Row AppendRow(std::string_view name, Bounds bounds, bool isMade = false);
    void AppendUnnamedRow(Bounds bounds);
    /// To the last row, those of one variable added up.
    void AppendTerms(std::span<const Term> added);
    void AppendEntry(std::uint32_t column, double coefficient);
    void SetObjective(Sense sense, const Expression& objective);
    bool CheckBounds(std::string_view what, std::string_view name, Bounds bounds);
    bool CheckExpression(std::string_view what, std::string_view name,
                         const Expression& expression);
    /// The place of what is to be edited; NoIndex, with Failure() set, if it is not of this model.
    [[nodiscard]] std::uint32_t Locate(std::string_view edit, Variable variable);
    [[nodiscard]] std::uint32_t Locate(std::string_view edit, Row row);
    void InsertColumn(std::uint32_t column, std::span<const ColumnTerm> byRow);
    /// The last one of its row.
    void InsertEntry(std::uint32_t row, std::uint32_t column, double coefficient);
    /// That at the place `at` of all.
    void EraseEntry(std::uint32_t row, std::size_t at);
    /// For so many entries more, which find their memory then.
    void MakeRoom(std::size_t entries);
    void RemoveRowsOfEntries(const std::vector<bool>& marked);
    void RemoveColumnsOfEntries(const std::vector<bool>& marked);
    bool Fail(Error error);
    /// Says the number of a place, whose double is set by `set` and may be refused; and again what
    /// is `kept` of other places.
    template <class Set>
    bool SetExact(const NumberPlace& place, std::string_view text, const Set& set,
                  ExactNumbers kept = {});
    /// The same for a bound, whose other one keeps what is said beside its double.
    template <class Set>
    bool SetExactBound(const NumberPlace& place, const NumberPlace& other, std::string_view text,
                       const Set& set);
    /// Keeps beside its double, which is set already, what is left to say of a number.
    void KeepExact(const NumberPlace& place, const WrittenNumber& number);
    [[nodiscard]] static WrittenNumber ConstantOf(const Expression& expression);

    std::string m_name;
    std::string m_objectiveName;
    Sense m_sense = Sense::Minimize;
    double m_objectiveConstant = 0.0;

    HandleOrigins m_variables;
    NameTable m_variableNames;
    std::vector<double> m_objective;
    std::vector<double> m_variableLower;
    std::vector<double> m_variableUpper;

    HandleOrigins m_rows;
    NameTable m_rowNames;
    std::vector<double> m_rowLower;
    std::vector<double> m_rowUpper;
    std::vector<std::size_t> m_rowStarts{0};
    std::vector<std::uint32_t> m_columns;
    std::vector<double> m_coefficients;
    ExactNumbers m_exact;

    std::optional<Error> m_failure;
};

/// Writes ToLp of the model; include Nuv/Io/Lp/LpWriter.hpp for the text itself.
std::ostream& operator<<(std::ostream& out, const Model& model);

}  // namespace nuv
