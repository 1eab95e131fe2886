// The checker links with exact numbers and nothing else: this program has no solver in it.
#include "Nuv/Certificate/Certificate.hpp"

#include <gtest/gtest.h>

namespace nuv::test
{
namespace
{

/// minimise -x - y: 3 x + y <= 1, x + 3 y <= 1, x and y >= 0.
BoundedForm TwoRows()
{
    BoundedForm form;
    form.rows = 2;
    form.columns = 2;
    form.cost = {-1, -1};
    form.columnLower = {0, 0};
    form.columnUpper = {kInfinity, kInfinity};
    form.rowLower = {-kInfinity, -kInfinity};
    form.rowUpper = {1, 1};
    SparseVectors<double> rows;
    for (const double first : {3.0, 1.0})
    {
        rows.Append(0, first);
        rows.Append(1, 4.0 - first);
        rows.Close();
    }
    form.matrix = SparseMatrix<double>::FromRows(rows, 2);
    return form;
}

TEST(CheckerAlone, AcceptsAnOptimumStatedByHandAndRefusesAnother)
{
    Certificate certificate;
    certificate.status = Status::Optimal;
    certificate.objective = Rational(-1, 2);
    certificate.primal = {{Integer(1), Integer(1)}, Integer(4)};
    certificate.dual = {{Integer(-1), Integer(-1)}, Integer(4)};
    EXPECT_EQ(CheckCertificate(TwoRows(), certificate), "");
    certificate.objective = Rational(-1, 3);
    EXPECT_NE(CheckCertificate(TwoRows(), certificate), "");
}

TEST(CheckerAlone, AcceptsNoClaimAtAll)
{
    Certificate certificate;
    EXPECT_NE(CheckCertificate(TwoRows(), certificate), "");
    certificate.status = Status::Invalid;
    EXPECT_NE(CheckCertificate(TwoRows(), certificate), "");
}

}  // namespace
}  // namespace nuv::test
