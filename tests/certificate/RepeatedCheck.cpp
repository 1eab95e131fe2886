/// The check that keeps what it knows against the one that knows nothing: of forms that change, of
/// certificates that hold and of damaged ones.
#include "Nuv/Certificate/RepeatedCheck.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace nuv::test
{
namespace
{

Index Pick(Random& random, std::size_t count)
{
    return static_cast<Index>(random.Between(0, static_cast<int>(count) - 1));
}

/// A whole number, a half or a tenth.
double DrawNumber(Random& random, int least, int most)
{
    const double whole = random.Between(least, most);
    return random.OneIn(12) ? whole / 10 : random.OneIn(4) ? whole / 2 : whole;
}

Interval DrawBounds(Random& random)
{
    const double lower = DrawNumber(random, -5, 5);
    const double upper = lower + DrawNumber(random, 0, 9);
    switch (random.Between(0, 7))
    {
    case 0:
        return {-kInf, kInf};
    case 1:
        return {-kInf, upper};
    case 2:
        return {lower, kInf};
    case 3:
        return {lower, lower};
    case 4:
        return {0.0, kInf};
    default:
        return {lower, upper};
    }
}

/// A small form some of whose entries are halves and tenths.
BoundedForm DrawForm(Random& random)
{
    const auto rows = static_cast<Index>(random.Between(1, 5));
    BoundedForm form = RandomSmallForm(random, rows, static_cast<Index>(random.Between(1, 6)));
    SparseVectors<double> columns = form.matrix.Columns();
    for (double& entry : columns.value)
        entry = random.OneIn(8) ? entry / 10 : random.OneIn(4) ? entry / 2 : entry;
    form.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    form.numbers = CoefficientMeaning::ShortestDecimal;
    return form;
}

/// A form that changes, its check, and the certificate of its last solve.
class Checked
{
public:
    explicit Checked(std::uint64_t seed)
        : m_random(seed), m_form(DrawForm(m_random)), m_check(m_form)
    {
    }

    void Change()
    {
        const Index variable = Pick(m_random, m_form.Variables());
        const bool isRow = m_form.IsLogical(variable);
        const Index at = isRow ? m_form.RowOf(variable) : variable;
        switch (Pick(m_random, 4))
        {
        case 0:
            m_form.cost[Pick(m_random, m_form.columns)] = DrawNumber(m_random, -5, 5) / 8;
            m_check.TakeCosts();
            break;
        case 1:
            m_form.constant = DrawNumber(m_random, -5, 5);
            m_check.TakeCosts();
            break;
        default:
        {
            Interval bounds = DrawBounds(m_random);
            if (m_random.OneIn(8))
                bounds.upper /= 1024;  // finer than any number before
            (isRow ? m_form.rowLower : m_form.columnLower)[at] = bounds.lower;
            (isRow ? m_form.rowUpper : m_form.columnUpper)[at] = bounds.upper;
            m_check.TakeBounds(variable);
        }
        }
        SolveControl control;
        if (m_random.OneIn(2))
            m_certificate = SolveCertified(m_form, nullptr, control).certificate;
    }

    /// Whether the certificate, or the damaged one, proves what it claims: both checks say the
    /// same.
    [[nodiscard]] bool Holds(bool damaged)
    {
        Certificate certificate = m_certificate;
        if (damaged)
            Damage(certificate);
        const bool holds = CheckCertificate(m_form, certificate).empty();
        EXPECT_EQ(m_check.Check(certificate).empty(), holds);
        return holds;
    }

private:
    void Damage(Certificate& certificate)
    {
        const auto change = [this](ExactVector& vector)
        {
            if (vector.numerator.empty() || m_random.OneIn(6))
                vector.numerator.push_back(1);
            else if (m_random.OneIn(6))
                vector.denominator = vector.denominator * 2 - 1;
            else
                vector.numerator[Pick(m_random, vector.numerator.size())] +=
                    Integer(1) - Integer(static_cast<int>(Pick(m_random, 3)));
        };
        const Index kind = Pick(m_random, 4);
        if (kind == 0)
            certificate.objective += 1;
        else
            change(kind == 1 ? certificate.primal : certificate.dual);
    }

    Random m_random;
    BoundedForm m_form;
    RepeatedCheck m_check;
    Certificate m_certificate;
};

TEST(RepeatedCheck, SaysWhatTheCheckSaysThatKeepsNothing)
{
    int held = 0;
    int refused = 0;
    for (std::uint64_t seed = 1; seed <= ShareOf(300U); ++seed)
    {
        SCOPED_TRACE(seed);
        Checked checked(seed);
        for (int step = 0; step < 40; ++step)
        {
            checked.Change();
            for (const bool damaged : {false, true, false})
                ++(checked.Holds(damaged) ? held : refused);
            if (HasFailure())
                return;
        }
    }
    EXPECT_GT(held, ShareOf(300) * 10);
    EXPECT_GT(refused, ShareOf(300) * 10);
}

/// A certificate of the wrong shape leaves the check with numbers and without a point.
TEST(RepeatedCheck, TakesBoundsBeforeItHasSeenAPoint)
{
    BoundedForm form = MakeForm({1, -2}, {{{1, 3}, {-kInf, 4}}, {{2, -1}, {-1, 5}}});
    RepeatedCheck check(form);
    Certificate misshapen;
    misshapen.status = Status::Optimal;
    EXPECT_NE(check.Check(misshapen), "");
    form.columnUpper[0] = 0.0;
    form.columnLower[0] = 0.0;
    check.TakeBounds(0);
    SolveControl control;
    const Certificate certificate = SolveCertified(form, nullptr, control).certificate;
    EXPECT_EQ(check.Check(certificate), CheckCertificate(form, certificate));
}

}  // namespace
}  // namespace nuv::test
