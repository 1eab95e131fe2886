#include "Nuv/Exact/Iis.hpp"

#include "Nuv/Algebra/Lifting/Residues.hpp"
#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Exact/ExactForm.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

/// What a proof of infeasibility uses of the bounds that somebody stated: a positive factor takes
/// the lower side, a negative the upper.
std::vector<BoundOfVariable> StatedSupport(const BoundedForm& form, const Certificate& certificate)
{
    std::vector<BoundOfVariable> members;
    if (certificate.contradiction != kNoIndex)
        members = {{certificate.contradiction, false}, {certificate.contradiction, true}};
    else
    {
        const ExactForm exact(form);
        for (Index v = 0; v < form.Variables(); ++v)
        {
            const int sign = form.IsLogical(v)
                                 ? certificate.dual.numerator[form.RowOf(v)].Sign()
                                 : exact.ReducedCost(v, certificate.dual, false).Sign();
            if (sign != 0)
                members.push_back({v, sign < 0});  // same bits (-> <=): it is not 0
        }
    }
    std::erase_if(members,
                  [&form](const BoundOfVariable& member) { return IsDefault(form, member); });
    return members;
}

/// The form that only `members` and the default bounds restrict, on the rows and columns that the
/// members touch.
class Restriction
{
public:
    Restriction(const BoundedForm& whole, const std::vector<BoundOfVariable>& members)
        : m_whole(whole), m_column(whole.columns, kNoIndex)
    {
        form.numbers = whole.numbers;
        for (const BoundOfVariable& member : members)
        {
            if (whole.IsLogical(member.variable))
                AddRow(whole, member);
        }
        for (const BoundOfVariable& member : members)
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
            form.columnLower.push_back(IsDefault(m_whole, {column, false}) ? 0.0 : -kInfinity);
            form.columnUpper.push_back(kInfinity);
            Copy({FormPlace::Of::ColumnLower, column},
                 {FormPlace::Of::ColumnLower, m_column[column]});
            Copy({FormPlace::Of::ColumnUpper, column},
                 {FormPlace::Of::ColumnUpper, m_column[column]});
        }
        return m_column[column];
    }
    static void Bound(const BoundedForm& whole, const BoundOfVariable& member, Index at,
                      std::vector<double>& lower, std::vector<double>& upper)
    {
        if (member.upper)
            upper[at] = whole.Upper(member.variable);
        else
            lower[at] = whole.Lower(member.variable);
    }
    void AddRow(const BoundedForm& whole, const BoundOfVariable& member)
    {
        // Both sides of a row, where they contradict each other, are neighbours in the list.
        if (m_rowNames.empty() || m_rowNames.back() != member.variable)
        {
            m_rowNames.push_back(member.variable);
            form.rowLower.push_back(-kInfinity);
            form.rowUpper.push_back(kInfinity);
            const Index row = whole.RowOf(member.variable);
            for (const auto [column, entry] : whole.matrix.Row(row))
            {
                m_rows.Append(ColumnOf(column), entry);
                Copy({FormPlace::Of::Entry, row, column},
                     {FormPlace::Of::Entry, form.rows, m_column[column]});
            }
            m_rows.Close();
            Copy({FormPlace::Of::RowLower, row}, {FormPlace::Of::RowLower, form.rows});
            Copy({FormPlace::Of::RowUpper, row}, {FormPlace::Of::RowUpper, form.rows});
            ++form.rows;
        }
        Bound(whole, member, form.rows - 1, form.rowLower, form.rowUpper);
    }

    /// A bound may be infinite here, where its exact number counts for nothing.
    void Copy(const FormPlace& from, const FormPlace& to)
    {
        if (const Rational* exact = m_whole.exact.Find(from))
            form.exact.Set(to, *exact);
    }

    const BoundedForm& m_whole;
    SparseVectors<double> m_rows;
    std::vector<Index> m_column;
    std::vector<Index> m_columnNames;
    std::vector<Index> m_rowNames;
};

/// Whether the coefficient vectors of the bounds of a form have one linear dependence only. The
/// certificate is one that needs all members, so then no part of them contradicts itself. Bounds of
/// columns are unit vectors, so what counts is the rank of the rows over the columns without a
/// bound; the rank modulo a prime is never larger than the true one. Both bounds of one variable
/// are a dependence too, but contradict nothing unless they cross.
bool RankProvesMinimal(const BoundedForm& form)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return false;
    const PrimeField field(4611686018427387847u);
    // A column times its divisor does as well as itself.
    const SparseVectors<std::uint64_t> residues = Residues(ExactForm(form).byVariable, field);
    SparseVectors<std::uint64_t> columns;
    // same bits (-> 1): of fewer columns a smaller rank proves less, and the filter decides
    for (Index j = 0; j < form.columns; ++j)
    {
        if (form.columnLower[j] > -kInfinity || form.columnUpper[j] < kInfinity)
            continue;
        for (const auto [row, value] : residues[j])
        {
            if (form.rowLower[row] > -kInfinity || form.rowUpper[row] < kInfinity)
                columns.Append(row, value);
        }
        columns.Close();
    }
    const Index size = std::max(form.rows, columns.Count());
    while (columns.Count() < size)
        columns.Close();
    SparseLu<PrimeField> lu(field);
    std::vector<Index> position;
    const std::size_t rank = size - lu.Factorise(columns, position).size();
    const auto bounded = [&form](Index row)
    { return form.rowLower[row] > -kInfinity || form.rowUpper[row] < kInfinity; };
    Index rows = 0;
    for (Index row = 0; row < form.rows; ++row)
        rows += bounded(row) ? 1 : 0;
    return rank + 1 == rows;
}

/// The deletion filter. The rows and columns stay what the first members touched, so that each
/// solve can begin with the basis at the end of the last; a member that is left out loses its
/// bound.
class DeletionFilter
{
public:
    DeletionFilter(const BoundedForm& whole, const std::vector<BoundOfVariable>& members,
                   SolveControl& control)
        : m_restriction(whole, members),
          m_form(m_restriction.form),
          m_control(control),
          m_basis(SlackBasis(m_form))
    {
        for (Index v = 0; v < m_form.Variables(); ++v)
            for (const bool upper : {false, true})
                if (std::isfinite(BoundOf({v, upper})) && !IsDefault(m_form, {v, upper}))
                    m_members.push_back({v, upper});
    }

    /// @return whether what is left is known to be minimal; false when so much work is done first.
    [[nodiscard]] bool Run(std::uint64_t most)
    {
        std::size_t needed = 0;  // so many at the front, without any of which the others agree
        bool changed = true;
        while (needed < m_members.size())
        {
            if (changed && RankProvesMinimal(m_form))
                return true;
            changed = false;
            if (m_work >= most)
                return false;
            const BoundOfVariable candidate = m_members[needed];
            const double bound = std::exchange(BoundOf(candidate), Open(candidate));
            CertifiedResult proof = Solve();
            if (proof.record.proved && proof.certificate.status == Status::Infeasible)
            {
                KeepOnly(StatedSupport(m_form, proof.certificate));
                changed = true;
            }
            else
            {
                BoundOf(candidate) = bound;
                if (!proof.record.proved)
                    return false;
                ++needed;
            }
            m_basis = std::move(proof.record.basis);
        }
        return true;
    }

    [[nodiscard]] std::uint64_t Work() const noexcept
    {
        return m_work;
    }

    /// What is left, in terms of the whole form.
    [[nodiscard]] std::vector<BoundOfVariable> Members() const
    {
        std::vector<BoundOfVariable> members = m_members;
        for (BoundOfVariable& member : members)
            member.variable = m_restriction.NameOf(member.variable);
        std::ranges::sort(members);
        return members;
    }

private:
    CertifiedResult Solve()
    {
        constexpr std::uint64_t kBesidePivots = 20;
        const std::uint64_t before = Pivots();
        CertifiedResult proof = SolveCertified(m_form, &m_basis, m_control);
        const std::uint64_t size = m_form.matrix.EntryCount() + m_form.Variables();
        m_work += size * (kBesidePivots + Pivots() - before);
        return proof;
    }
    [[nodiscard]] std::uint64_t Pivots() const noexcept
    {
        return m_control.Pivots(Stage::Double) + m_control.Pivots(Stage::Exact);
    }
    [[nodiscard]] double& BoundOf(const BoundOfVariable& member)
    {
        const bool isRow = m_form.IsLogical(member.variable);
        std::vector<double>& bounds =
            isRow ? (member.upper ? m_form.rowUpper : m_form.rowLower)
                  : (member.upper ? m_form.columnUpper : m_form.columnLower);
        return bounds[isRow ? m_form.RowOf(member.variable) : member.variable];
    }
    [[nodiscard]] static double Open(const BoundOfVariable& member) noexcept
    {
        return member.upper ? kInfinity : -kInfinity;
    }
    void KeepOnly(const std::vector<BoundOfVariable>& support)
    {
        std::erase_if(m_members,
                      [this, &support](const BoundOfVariable& member)
                      {
                          const bool drops = std::ranges::find(support, member) == support.end();
                          if (drops)
                              BoundOf(member) = Open(member);
                          return drops;
                      });
    }

    Restriction m_restriction;
    BoundedForm& m_form;
    SolveControl& m_control;
    std::vector<BoundOfVariable> m_members;
    Basis m_basis;
    std::uint64_t m_work = 0;
};

}  // namespace

InfeasibleBounds FindIis(const BoundedForm& form, const Certificate& certificate,
                         SolveControl& control, std::uint64_t most)
{
    const SolveControl::Aside aside(control);
    const std::vector<BoundOfVariable> members = StatedSupport(form, certificate);
    // One side of a row may do against default bounds, or against a row without entries.
    if (certificate.contradiction != kNoIndex && !form.IsLogical(certificate.contradiction))
        return {members, true, 0};
    DeletionFilter filter(form, members, control);
    const bool minimal = filter.Run(most);
    return {filter.Members(), minimal, filter.Work()};
}

}  // namespace nuv
