// nuvlp verify and solve --certificate, from outside.
#include "Nuv/Utils/NuvVersion.h"
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

namespace nuvlp::test::verify
{
namespace
{

const std::string kFactory = NUV_TEST_MODELS "/../../examples/factory.lp";

TEST(VerifyCommand, ConfirmsWhatSolveWrote)
{
    const std::string certificate = Scratch("factory.vipr");
    EXPECT_EQ(RunNuvlp("solve --quiet --certificate " + certificate + " " + kFactory).out,
              "status     optimal\nobjective  4242.857142857143\n"
              "proof      proved as written, exactly 29700/7\n");
    const Outcome text = RunNuvlp("verify " + kFactory + " " + certificate);
    EXPECT_EQ(text.out, "status     optimal\nobjective  4242.857142857143\n"
                        "proof      verified as written, exactly 29700/7\n");
    EXPECT_EQ(text.err, "");
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_EQ(
        WithoutTimes(RunNuvlp("verify --json " + kFactory + " " + certificate).out),
        "{\"schema\":\"nuvlp/verification/1\",\"version\":\"" NUV_VERSION
        "\",\"model\":{\"name\":null,\"sense\":\"maximise\",\"rows\":2,\"variables\":2,"
        "\"nonzeros\":4},\"numbers\":\"written\",\"verdict\":\"verified\",\"status\":\"optimal\","
        "\"objective\":4242.857142857143,\"exact_objective\":\"29700/7\",\"seconds\":0}\n");
}

TEST(VerifyCommand, AddsTheConstantOfTheObjective)
{
    const std::string certificate = Scratch("constant.vipr");
    const std::string model = WriteScratch("constant.lp", "max 0.1 x + 2.5 st r: 0.3 x <= 1 end\n");
    (void)RunNuvlp("solve --certificate " + certificate + " " + model);
    EXPECT_EQ(RunNuvlp("verify " + model + " " + certificate).out,
              "status     optimal\nobjective  2.8333333333333335\n"
              "proof      verified as written, exactly 17/6\n")
        << "decimals are these decimals";
}

TEST(VerifyCommand, RefusesTheCertificateOfAnotherModel)
{
    const std::string certificate = Scratch("other.vipr");
    (void)RunNuvlp("solve --certificate " + certificate + " -", "max x st r: x <= 4 end");
    const Outcome outcome = RunNuvlp("verify - " + certificate, "max x st r: x <= 5 end");
    EXPECT_EQ(outcome.out, "proof      refused: the certificate is about another model\n");
    EXPECT_EQ(outcome.exitCode, 5);
    EXPECT_EQ(
        WithoutTimes(RunNuvlp("verify --json - " + certificate, "min x st r: x <= 4 end").out),
        "{\"schema\":\"nuvlp/verification/1\",\"version\":\"" NUV_VERSION
        "\",\"model\":{\"name\":null,"
        "\"sense\":\"minimise\",\"rows\":1,\"variables\":1,\"nonzeros\":1},\"numbers\":"
        "\"written\",\"verdict\":\"refused\","
        "\"defect\":\"the certificate is about another model\",\"seconds\":0}\n");
}

TEST(VerifyCommand, IsAboutTheNumbersThatItIsAskedAbout)
{
    const std::string model = WriteScratch("tenth.lp", "max x st c: 10 x <= 0.1 end");
    const std::string certificate = Scratch("tenth.vipr");
    EXPECT_EQ(
        RunNuvlp("solve --quiet --numbers stored --certificate " + certificate + " " + model).out,
        "status     optimal\nobjective  0.01\nproof      proved as stored, exactly "
        "3602879701896397/360287970189639680\n");
    EXPECT_EQ(RunNuvlp("verify --numbers stored " + model + " " + certificate).exitCode, 0);
    EXPECT_EQ(RunNuvlp("verify " + model + " " + certificate).out,
              "proof      refused: the certificate is about another model\n");
}

TEST(VerifyCommand, TellsItsErrorsApart)
{
    const Outcome malformed = RunNuvlp("verify " + kFactory + " -", "VER 1.0\nVAR two\n");
    EXPECT_EQ(malformed.err, "<stdin>:2:5: error: 'two' is out of place [vipr.malformed]\n");
    EXPECT_EQ(malformed.exitCode, 65);
    EXPECT_NE(RunNuvlp("verify --json " + kFactory + " -", "VER 1.0\nVAR two\n")
                  .out.find("\"vipr.malformed\""),
              std::string::npos);
    EXPECT_EQ(RunNuvlp("verify " + kFactory + " none.vipr").exitCode, 66);
    EXPECT_EQ(RunNuvlp("verify none.lp -", "").exitCode, 66);
    EXPECT_EQ(RunNuvlp("verify - -", "").exitCode, 64);
    EXPECT_EQ(RunNuvlp("verify " + kFactory).exitCode, 64);
}

TEST(SolveCommand, WritesNoCertificateOfWhatIsNotProved)
{
    const std::string certificate = Scratch("stopped.vipr");
    const Outcome outcome =
        RunNuvlp("solve --max-pivots 0 --certificate " + certificate + " " + kFactory);
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.err.find("no certificate is written"), std::string::npos) << outcome.err;
    EXPECT_EQ(RunNuvlp("verify " + kFactory + " " + certificate).exitCode, 66);
    EXPECT_EQ(RunNuvlp("solve --certificate /none/c.vipr " + kFactory).exitCode, 73);
}

}  // namespace
}  // namespace nuvlp::test::verify
