// The check that keeps what it knows against the one that knows nothing: of forms that change, of
// certificates that hold and of damaged ones.
#include "Nuv/Certificate/RepeatedCheck.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "tests/solve/SmallModels.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <random>

namespace nuv::test
{
namespace
{

/// A form that changes, its check, and the certificate of its last solve.
class Checked
{
public:
    explicit Checked(unsigned seed) : m_random(seed), m_form(AnyForm(m_random)), m_check(m_form) {}

    void Change()
    {
        const Index variable = Pick(m_random, m_form.Variables());
        const bool isRow = m_form.IsLogical(variable);
        const Index at = isRow ? m_form.RowOf(variable) : variable;
        switch (Pick(m_random, 4))
        {
        case 0:
            m_form.cost[Pick(m_random, m_form.columns)] = SmallNumber(m_random, -5, 5) / 8;
            m_check.TakeCosts();
            break;
        case 1:
            m_form.constant = SmallNumber(m_random, -5, 5);
            m_check.TakeCosts();
            break;
        default:
        {
            Bounds bounds = AnyBounds(m_random);
            if (m_random() % 8 == 0)
                bounds.upper /= 1024;  // finer than any number before
            (isRow ? m_form.rowLower : m_form.columnLower)[at] = bounds.lower;
            (isRow ? m_form.rowUpper : m_form.columnUpper)[at] = bounds.upper;
            m_check.TakeBounds(variable);
        }
        }
        SolveControl control;
        if (m_random() % 2 == 0)
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
    [[nodiscard]] static BoundedForm AnyForm(std::mt19937& random)
    {
        const unsigned rows = 1 + Pick(random, 5);
        BoundedForm form = FormOf(SmallModel(random, rows, 1 + Pick(random, 6)));
        form.numbers = CoefficientMeaning::ShortestDecimal;
        return form;
    }
    void Damage(Certificate& certificate)
    {
        const auto change = [this](ExactVector& vector)
        {
            if (vector.numerator.empty() || m_random() % 6 == 0)
                vector.numerator.push_back(1);
            else if (m_random() % 6 == 0)
                vector.denominator = vector.denominator * 2 - 1;
            else
                vector.numerator[Pick(m_random, static_cast<Index>(vector.numerator.size()))] +=
                    Integer(1) - Integer(static_cast<int>(Pick(m_random, 3)));
        };
        const unsigned kind = Pick(m_random, 4);
        if (kind == 0)
            certificate.objective += 1;
        else
            change(kind == 1 ? certificate.primal : certificate.dual);
    }

    std::mt19937 m_random;
    BoundedForm m_form;
    RepeatedCheck m_check;
    Certificate m_certificate;
};

TEST(RepeatedCheck, SaysWhatTheCheckSaysThatKeepsNothing)
{
    int held = 0;
    int refused = 0;
    for (unsigned seed = 1; seed <= ShareOf(300u); ++seed)
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
    EXPECT_GT(held, static_cast<int>(ShareOf(300u)) * 10);
    EXPECT_GT(refused, static_cast<int>(ShareOf(300u)) * 10);
}

/// A certificate of the wrong shape leaves the check with numbers and without a point.
TEST(RepeatedCheck, TakesBoundsBeforeItHasSeenAPoint)
{
    std::mt19937 random(3);
    BoundedForm form = FormOf(SmallModel(random, 2, 3));
    form.exact = {};
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
