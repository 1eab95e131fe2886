// What WriteSmt writes, to the letter.
#include "Nuv/Io/Smt/SmtWriter.hpp"

#include <gtest/gtest.h>

namespace nuv::test
{
namespace
{

TEST(SmtWriter, WritesEachSideAsAnAssertion)
{
    Model model;
    const Variable x = model.AddVariable("x", {-Infinity, 0.1});
    const Variable y = model.AddVariable("y", {4.0, 4.0});
    const Variable z = model.AddVariable("z", {-Infinity, Infinity});
    (void)model.Add("both", Range(-1.5, 2.0 * x - 1e-7 * y, 1e20));
    (void)model.Add("one", z == 3.0);
    (void)model.Add("none", Range(-Infinity, 1.0 * x, Infinity));
    model.Minimize(x - 0.25 * z + 7.0);
    EXPECT_EQ(WriteSmt(model),
              "(set-logic QF_LRA)\n"
              "(declare-fun |x| () Real)\n"
              "(declare-fun |y| () Real)\n"
              "(declare-fun |z| () Real)\n"
              "(assert (<= |x| (/ 1.0 10.0)))\n"
              "(assert (= |y| 4.0))\n"
              "(assert (>= (+ (* 2.0 |x|) (* (- (/ 1.0 10000000.0)) |y|)) (- (/ 3.0 2.0))))\n"
              "(assert (<= (+ (* 2.0 |x|) (* (- (/ 1.0 10000000.0)) |y|)) "
              "100000000000000000000.0))\n"
              "(assert (= (* 1.0 |z|) 3.0))\n"
              "(define-fun %objective () Real (+ (* 1.0 |x|) (* (- (/ 1.0 4.0)) |z|) 7.0))\n"
              "(check-sat)\n");
}

TEST(SmtWriter, WritesWhatIsEmpty)
{
    Model model;
    EXPECT_EQ(WriteSmt(model), "(set-logic QF_LRA)\n(define-fun %objective () Real 0.0)\n"
                               "(check-sat)\n");
    const Variable x = model.AddVariable("x");
    (void)model.Add("r", 0.0 * x >= 1.0);
    EXPECT_NE(WriteSmt(model).find("(assert (>= (* 0.0 |x|) 1.0))\n"), std::string::npos)
        << WriteSmt(model);
}

TEST(SmtWriter, QuotesNames)
{
    Model model;
    (void)model.AddVariable("%objective");
    (void)model.AddVariable("a|b\\c d");
    (void)model.AddVariable(std::string("\n\x7F", 2));
    const std::string text = WriteSmt(model);
    for (const char* symbol : {"|%25objective|", "|a%7Cb%5Cc d|", "|%0A%7F|"})
        EXPECT_NE(text.find(symbol), std::string::npos) << text;
}

}  // namespace
}  // namespace nuv::test
