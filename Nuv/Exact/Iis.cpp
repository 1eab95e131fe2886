#include "Nuv/Exact/Iis.hpp"

#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Exact/ExactForm.hpp"

#include <algorithm>
#include <limits>

namespace nuv
{
namespace
{

/// Bounds that cross exclude each other; but a row without entries, whose activity is zero, needs
/// no more than the side that excludes zero.
std::vector<ConflictMember> ContradictionOf(const BoundedForm& form, Index variable)
{
    if (form.IsLogical(variable))
    {
        const auto entries = form.matrix.Rows().Values(form.RowOf(variable));
        if (std::all_of(entries.begin(), entries.end(), [](double entry) { return entry == 0.0; }))
            return {{variable, !(form.Lower(variable) > 0.0)}};
    }
    return {{variable, false}, {variable, true}};
}

/// What a Farkas certificate uses: a positive factor takes the lower side, a negative the upper.
std::vector<ConflictMember> SupportOf(const BoundedForm& form, const Proof& proof)
{
    if (proof.contradiction != kNoIndex)
        return ContradictionOf(form, proof.contradiction);
    const ExactForm exact(form);
    std::vector<ConflictMember> members;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const int sign = form.IsLogical(v) ? proof.dual.numerator[form.RowOf(v)].Sign()
                                           : exact.ReducedCost(v, proof.dual, false).Sign();
        if (sign != 0)
            members.push_back({v, sign < 0});
    }
    return members;
}

/// The form that only `members` restrict, on the rows and columns they touch.
class Restriction
{
public:
    Restriction(const BoundedForm& whole, const std::vector<ConflictMember>& members)
        : m_column(whole.columns, kNoIndex)
    {
        form.numbers = whole.numbers;
        for (const ConflictMember& member : members)
        {
            if (whole.IsLogical(member.variable))
                AddRow(whole, member);
        }
        for (const ConflictMember& member : members)
        {
            if (!whole.IsLogical(member.variable))
                Bound(whole, member, ColumnOf(member.variable), form.columnLower, form.columnUpper);
        }
        form.columns = static_cast<Index>(m_columnNames.size());
        form.cost.assign(form.columns, 0.0);
        form.matrix = SparseMatrix<double>::FromRows(m_rows, form.columns);
    }

    /// The variable of the whole form that a variable of this one stands for.
    [[nodiscard]] Index NameOf(Index variable) const
    {
        return form.IsLogical(variable) ? m_rowNames[form.RowOf(variable)]
                                        : m_columnNames[variable];
    }

    BoundedForm form;

private:
    Index ColumnOf(Index column)
    {
        if (m_column[column] == kNoIndex)
        {
            m_column[column] = static_cast<Index>(m_columnNames.size());
            m_columnNames.push_back(column);
            form.columnLower.push_back(-kInfinity);
            form.columnUpper.push_back(kInfinity);
        }
        return m_column[column];
    }
    static void Bound(const BoundedForm& whole, const ConflictMember& member, Index at,
                      std::vector<double>& lower, std::vector<double>& upper)
    {
        if (member.upper)
            upper[at] = whole.Upper(member.variable);
        else
            lower[at] = whole.Lower(member.variable);
    }
    void AddRow(const BoundedForm& whole, const ConflictMember& member)
    {
        // Both sides of a row, where they contradict each other, are neighbours in the list.
        if (m_rowNames.empty() || m_rowNames.back() != member.variable)
        {
            m_rowNames.push_back(member.variable);
            form.rowLower.push_back(-kInfinity);
            form.rowUpper.push_back(kInfinity);
            for (const auto [column, entry] : whole.matrix.Row(whole.RowOf(member.variable)))
                m_rows.Append(ColumnOf(column), entry);
            m_rows.Close();
            ++form.rows;
        }
        Bound(whole, member, form.rows - 1, form.rowLower, form.rowUpper);
    }

    SparseVectors<double> m_rows;
    std::vector<Index> m_column;
    std::vector<Index> m_columnNames;
    std::vector<Index> m_rowNames;
};

/// Whether the members' coefficient vectors have one linear dependence only. The certificate is one
/// that needs all of them, so then no part of them contradicts itself. Bounds are unit vectors, so
/// what counts is the rank of the rows over the columns without a bound; the rank modulo a prime is
/// never larger than the true one.
bool RankProvesMinimal(const Restriction& restriction)
{
    const BoundedForm& form = restriction.form;
    const PrimeField field(4611686018427387847u);
    SparseVectors<std::uint64_t> columns;
    for (Index j = 0; j < form.columns; ++j)
    {
        if (form.columnLower[j] > -kInfinity || form.columnUpper[j] < kInfinity)
            continue;
        for (const auto [row, value] : form.matrix.Column(j))
        {
            const ExactNumber entry = TakeApart(value, form.numbers);
            columns.Append(
                row, field.Product(field.FromSigned(entry.mantissa), field.PowerOf(entry.scale)));
        }
        columns.Close();
    }
    const Index size = std::max(form.rows, columns.Count());
    while (columns.Count() < size)
        columns.Close();
    SparseLu<PrimeField> lu(field);
    std::vector<Index> position;
    const std::size_t rank = size - lu.Factorise(columns, position).size();
    return rank + 1 == form.rows;
}

/// Solves without member `left`; @return whether that is infeasible, and then with `members`
/// replaced by what its certificate uses.
bool StillInfeasibleWithout(const BoundedForm& form, std::size_t left, SolveControl& control,
                            std::vector<ConflictMember>& members, bool& stopped)
{
    std::vector<ConflictMember> rest = members;
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(left));
    const Restriction restriction(form, rest);
    const Proof proof = SolveProved(restriction.form, nullptr, control);
    stopped = !proof.proved;
    if (proof.status != ProofStatus::Infeasible)
        return false;
    members = SupportOf(restriction.form, proof);
    for (ConflictMember& member : members)
        member.variable = restriction.NameOf(member.variable);
    std::sort(members.begin(), members.end(),
              [](const ConflictMember& a, const ConflictMember& b)
              { return a.variable < b.variable; });
    return true;
}

}  // namespace

Conflict FindConflict(const BoundedForm& form, const Proof& proof, SolveControl& control)
{
    const SolveControl::Aside aside(control);
    Conflict conflict;
    conflict.members = SupportOf(form, proof);
    conflict.minimal = proof.contradiction != kNoIndex;
    std::vector<ConflictMember> needed;
    while (!conflict.minimal)
    {
        if (RankProvesMinimal(Restriction(form, conflict.members)))
        {
            conflict.minimal = true;
            break;
        }
        // The first member not yet known to be needed.
        std::size_t next = 0;
        while (next < conflict.members.size() &&
               std::find(needed.begin(), needed.end(), conflict.members[next]) != needed.end())
            ++next;
        if (next == conflict.members.size())
        {
            conflict.minimal = true;
            break;
        }
        const ConflictMember candidate = conflict.members[next];
        bool stopped = false;
        if (!StillInfeasibleWithout(form, next, control, conflict.members, stopped))
        {
            if (stopped)
                break;
            needed.push_back(candidate);
        }
    }
    return conflict;
}

}  // namespace nuv
