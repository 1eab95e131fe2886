// What a program includes brings in neither Boost nor GMP, and does not depend on which of them the
// library was built with: this file is compiled with the macro of that choice and without it.
#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Model/ModelBuilder.hpp"
#include "Nuv/Report/CheckClaim.hpp"
#include "Nuv/Report/ClaimReader.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/TextReport.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/Solve/SolveOptions.hpp"

#if defined(BOOST_CONFIG_HPP) || defined(BOOST_VERSION) || defined(__GMP_H__) || \
    defined(FMT_VERSION)
#error "a header of the model layer includes a library"
#endif

#include <gtest/gtest.h>

#include <vector>

namespace nuv::test
{
namespace
{

TEST(Headers, ExactNumbersAreOfOneSizeInAProgramAndInTheLibrary)
{
    std::vector<Integer> powers(1, Integer(1));
    for (int k = 0; k < 100; ++k)
        powers.push_back(powers.back() * Integer(1000000007));
    Rational sum = 0;
    for (const Integer& power : powers)
        sum += Rational(1, power);
    EXPECT_EQ(ToString(sum * Rational(powers.back()) - Rational(powers[100])),
              ToString((Rational(powers.back()) - 1) / Rational(1000000006)));
}

TEST(Headers, AProgramSolvesAndReadsTheCertificate)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y");
    const Row a = model.Add("a", 3 * x + y <= 1);
    model.Add("b", x + 3 * y <= 1);
    model.Maximize(x + y);
    const Solution solution = model.Solve();
    EXPECT_EQ(solution.exactObjective, "1/2");
    ASSERT_NE(solution.certificate, nullptr);
    const Certificate certificate = *solution.certificate;
    EXPECT_EQ(ToString(certificate.objective), "-1/2");
    EXPECT_EQ(ToString(certificate.primal.At(y.Index())), "1/4");
    EXPECT_EQ(ToString(certificate.dual.At(a.Index())), "-1/4");
}

}  // namespace
}  // namespace nuv::test
