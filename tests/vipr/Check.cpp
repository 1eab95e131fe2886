// What the checker takes for a proof, and what it refuses.
#include "Nuv/Vipr/Check.hpp"

#include "Nuv/Vipr/Text.hpp"

#include <gtest/gtest.h>

namespace nuv::vipr::test
{
namespace
{

/// min x + y st 2 <= x + 2 y <= 9, x = y + 1, 0 <= x, 0 <= y <= 3.
const std::string kHead = "VER 1.0 VAR 2 x y INT 0 OBJ min 2 0 1 1 1 CON 6 3\n"
                          "lower(x) G 0  1  0 1\n"
                          "lower(y) G 0  1  1 1\n"
                          "upper(y) L 3  1  1 1\n"
                          "least(r) G 2  2  0 1  1 2\n"
                          "most(r) L 9  2  0 1  1 2\n"
                          "row(e) E 1  2  0 1  1 -1\n";
// The optimum is 5/3, at x = 4/3 and y = 1/3.
const std::string kRange = kHead + "RTP range 5/3 5/3\nSOL 1\npoint 2  0 4/3  1 1/3\n";

std::string DefectOf(const std::string& text)
{
    const Result<Certificate> certificate = Read(text, "c.vipr");
    return certificate ? FindDefect(*certificate) : certificate.GetError().text;
}

TEST(ViprCheck, AddsUpConstraints)
{
    EXPECT_EQ(DefectOf(kRange + "DER 1 bound G 5/3 OBJ { lin 2 3 2/3 5 1/3 } -1"), "");
    EXPECT_EQ(DefectOf(kRange + "DER 1 bound G 5/3 OBJ { lin 2 3 2/3 5 1/2 } -1"),
              "bound does not follow");
    EXPECT_EQ(DefectOf(kRange + "DER 1 bound G 5/2 OBJ { lin 2 3 2/3 5 1/3 } -1"),
              "bound does not follow");
    EXPECT_EQ(DefectOf(kRange + "DER 1 bound E 5/3 OBJ { lin 2 3 2/3 5 1/3 } -1"),
              "bound does not follow");
    EXPECT_EQ(DefectOf(kRange + "DER 1 bound L 5/3 OBJ { lin 2 3 2/3 5 1/3 } -1"),
              "bound does not follow");
}

TEST(ViprCheck, TakesSidesOfOneDirection)
{
    // Twice the first row and minus the last one: y >= 1/3 from >= and = with any sign.
    const std::string step = "DER 2 y G 1/3 1 1 1 { lin 2 3 1/3 5 -1/3 } 7 ";
    EXPECT_EQ(DefectOf(kRange + step + "bound G 5/3 OBJ { lin 2 5 1 6 2 } -1"), "");
    EXPECT_EQ(DefectOf(kRange + "DER 1 bound G 5/3 OBJ { lin 3 3 2/3 5 1/3 2 0 } -1"), "")
        << "a multiplier of zero is none";
    EXPECT_EQ(DefectOf(kRange + "DER 1 r G -7 0 { lin 2 3 1 4 -1 } -1").substr(0, 8), "the last")
        << "0 >= 2 - 9 follows, and is no bound";
    EXPECT_EQ(DefectOf(kRange + "DER 1 r G 11 2 0 2 1 4 { lin 2 3 1 4 1 } -1"),
              "r does not follow");
    // A >= taken from a >= says nothing, nor a <= from a <=, though the numbers contradict.
    EXPECT_EQ(DefectOf(kRange + "DER 2 less G 1 2 0 1 1 2 { lin 1 3 1 } -1 "
                                "no G 1 0 { lin 2 3 1 6 -1 } -1"),
              "no does not follow");
    EXPECT_EQ(DefectOf(kRange + "DER 2 more L 10 2 0 1 1 2 { lin 1 4 1 } -1 "
                                "no L -1 0 { lin 2 4 1 6 -1 } -1"),
              "no does not follow");
    // Both turned round: -(x + 2 y) <= -2.
    EXPECT_EQ(DefectOf(kRange + "DER 2 turned L -2 2 0 -1 1 -2 { lin 1 3 -1 } -1 "
                                "bound G 5/3 OBJ { lin 2 6 -2/3 5 1/3 } -1"),
              "");
}

TEST(ViprCheck, LetsEverythingFollowFromAContradiction)
{
    const std::string crossed = "VER 1.0 VAR 1 x INT 0 OBJ max 1 0 1 CON 2 2\n"
                                "lower(x) G 2  1  0 1\n"
                                "upper(x) L 1  1  0 1\n"
                                "RTP infeas SOL 0 ";
    EXPECT_EQ(DefectOf(crossed + "DER 1 no G 1 0 { lin 2 0 1 1 -1 } -1"), "");
    EXPECT_EQ(DefectOf(crossed + "DER 1 no L -5 0 { lin 2 0 1 1 -1 } -1"), "");
    EXPECT_EQ(DefectOf(crossed + "DER 1 no E 1 0 { lin 2 0 1 1 -1 } -1"), "");
    EXPECT_EQ(DefectOf(crossed + "DER 1 no E 0 0 { lin 2 0 1 1 -1 } -1"),
              "the last constraint is no contradiction");
    EXPECT_EQ(DefectOf(crossed + "DER 1 no G 0 1 0 1 { lin 2 0 1 1 -1 } -1"),
              "the last constraint is no contradiction");
    EXPECT_EQ(DefectOf(crossed + "DER 1 no G 1 0 { lin 2 0 1 1 -2 } -1"), "no does not follow");
    EXPECT_EQ(DefectOf(crossed + "DER 0"), "the last constraint is no contradiction");
}

TEST(ViprCheck, ProvesNothingFromAssumptions)
{
    const std::string assumed = "DER 2 wish G 5/3 OBJ { asm } -1 ";
    EXPECT_EQ(DefectOf(kRange + assumed + "bound G 5/3 OBJ { lin 1 6 1 } -1"),
              "the last constraint does not bound the objective");
    EXPECT_EQ(DefectOf(kRange + "DER 1 wish G 5/3 OBJ { asm } -1"),
              "the last constraint does not bound the objective");
    EXPECT_EQ(DefectOf(kRange + assumed + "bound G 5/3 OBJ { lin 2 3 2/3 5 1/3 } -1"), "")
        << "an assumption that nothing rests on does no harm";
}

TEST(ViprCheck, RoundsNothing)
{
    const std::string twoThirds = "DER 2 y G 1/3 1 1 1 { lin 2 3 1/3 5 -1/3 } -1 ";
    EXPECT_EQ(DefectOf(kRange + twoThirds + "bound G 1 1 1 1 { rnd 1 6 1 } -1"),
              "bound does not follow");
    EXPECT_EQ(DefectOf(kRange + twoThirds + "bound G 5/3 OBJ { uns 6 3 6 4 } -1"),
              "bound does not follow");
}

TEST(ViprCheck, HoldsToTheLastUseStated)
{
    const auto used = [](const char* last)
    {
        return kRange + "DER 3 y G 1/3 1 1 1 { lin 2 3 1/3 5 -1/3 } " + last +
               " same G 1/3 1 1 1 { lin 1 6 1 } -1 bound G 5/3 OBJ { lin 2 5 1 6 2 } 0";
    };
    EXPECT_EQ(DefectOf(used("-1")), "");
    EXPECT_EQ(DefectOf(used("8")), "");
    EXPECT_EQ(DefectOf(used("7")), "bound uses a constraint after the last use stated for it");
}

TEST(ViprCheck, WantsAFeasiblePointOfTheValue)
{
    const std::string bound = "DER 1 bound G 5/3 OBJ { lin 2 3 2/3 5 1/3 } -1";
    EXPECT_EQ(DefectOf(kHead + "RTP range 5/3 5/3 SOL 0 " + bound),
              "no solution has the value of the range");
    EXPECT_EQ(DefectOf(kHead + "RTP range 5/3 5/3 SOL 1 p 2 0 2 1 1 " + bound),
              "no solution has the value of the range");
    EXPECT_EQ(DefectOf(kHead + "RTP range 5/3 5/3 SOL 2 p 2 0 2 1 1 q 2 0 4/3 1 1/3 " + bound), "");
    EXPECT_EQ(DefectOf(kHead + "RTP range 5/3 5/3 SOL 2 p 1 0 5/3 q 2 0 4/3 1 1/3 " + bound),
              "a solution violates least(r)");
    EXPECT_EQ(DefectOf(kHead + "RTP range 5/3 3 SOL 1 q 2 0 4/3 1 1/3 " + bound),
              "the range is not one value");
    EXPECT_EQ(DefectOf(kHead + "RTP range -inf inf SOL 1 q 2 0 4/3 1 1/3 " + bound),
              "the range is not one value");
}

TEST(ViprCheck, WantsARayThatNothingLimitsAndThatImproves)
{
    // max x + y st x - y <= 2, y >= 0.
    const std::string head = "VER 1.0 VAR 2 x y INT 0 OBJ max 2 0 1 1 1 CON 2 1\n"
                             "lower(y) G 0 1 1 1 most(r) L 2 2 0 1 1 -1\n"
                             "RTP unbounded ";
    EXPECT_EQ(DefectOf(head + "SOL 1 p 0 RAY 1 r 2 0 1 1 1 DER 0"), "");
    EXPECT_EQ(DefectOf(head + "SOL 1 p 0 RAY 1 r 1 0 1 DER 0"), "a ray leads out of most(r)");
    EXPECT_EQ(DefectOf(head + "SOL 1 p 0 RAY 1 r 1 0 -1 DER 0"), "no ray from a solution improves");
    EXPECT_EQ(DefectOf(head + "SOL 0 RAY 1 r 2 0 1 1 1 DER 0"), "no ray from a solution improves");
    EXPECT_EQ(DefectOf(head + "SOL 1 p 0 RAY 0 DER 0"), "no ray from a solution improves");
    EXPECT_EQ(DefectOf(head + "SOL 1 p 1 0 3 RAY 1 r 2 0 1 1 1 DER 0"),
              "a solution violates most(r)");
}

Problem ProblemIn(const std::string& text)
{
    const Result<Certificate> certificate = Read(text + " RTP infeas SOL 0 DER 0", "c.vipr");
    EXPECT_TRUE(certificate) << certificate.GetError().text;
    return certificate ? certificate->problem : Problem();
}

TEST(ViprCheck, KnowsAProblemInAnyOrder)
{
    const Problem problem = ProblemIn("VER 1.0 VAR 3 a b c INT 0 OBJ min 2 0 1 1 2 "
                                      "CON 3 0 r L 1 2 0 1 1 2 s G 1 1 2 1 t G 1 1 2 1");
    const auto same = [&](const std::string& text)
    { return IsSameProblem(problem, ProblemIn("VER 1.0 VAR 3 " + text)); };
    EXPECT_TRUE(same("c b a INT 0 OBJ min 2 2 1 1 2 "
                     "CON 3 3 t G 1 1 0 1 other L 1.0 2 2 1 1 4/2 s G 1 1 0 1"));
    EXPECT_FALSE(same("b a c INT 0 OBJ min 2 0 1 1 2 "
                      "CON 3 0 r L 1 2 0 1 1 2 s G 1 1 2 1 t G 1 1 2 1"))
        << "names that change places";
    EXPECT_FALSE(same("a b d INT 0 OBJ min 2 0 1 1 2 "
                      "CON 3 0 r L 1 2 0 1 1 2 s G 1 1 2 1 t G 1 1 2 1"))
        << "a name that is not there";
    EXPECT_FALSE(same("a b c INT 0 OBJ max 2 0 1 1 2 "
                      "CON 3 0 r L 1 2 0 1 1 2 s G 1 1 2 1 t G 1 1 2 1"))
        << "another sense";
    EXPECT_FALSE(same("a b c INT 0 OBJ min 2 0 1 1 3 "
                      "CON 3 0 r L 1 2 0 1 1 2 s G 1 1 2 1 t G 1 1 2 1"))
        << "another cost";
    EXPECT_FALSE(same("a b c INT 0 OBJ min 2 0 1 1 2 CON 2 0 r L 1 2 0 1 1 2 s G 1 1 2 1"))
        << "a constraint fewer";
    EXPECT_FALSE(same("a b c INT 0 OBJ min 2 0 1 1 2 "
                      "CON 3 0 r L 1 2 0 1 1 2 s G 1 1 2 1 t L 1 1 2 1"))
        << "another relation";
    EXPECT_FALSE(same("a b c INT 0 OBJ min 2 0 1 1 2 "
                      "CON 3 0 r L 1 2 0 1 1 2 s G 1 1 2 1 t G 2 1 2 1"))
        << "another side";
    EXPECT_FALSE(same("a b b INT 0 OBJ min 2 0 1 1 2 CON 0 0")) << "two of one name";
    EXPECT_FALSE(IsSameProblem(ProblemIn("VER 1.0 VAR 2 b b INT 0 OBJ min 0 CON 0 0"),
                               ProblemIn("VER 1.0 VAR 2 b b INT 0 OBJ min 0 CON 0 0")))
        << "two of one name are no problem";
}

}  // namespace
}  // namespace nuv::vipr::test
