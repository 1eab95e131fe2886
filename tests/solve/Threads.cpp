// Solves in several threads at once have nothing in common but what they are given to read. Run
// under ThreadSanitizer this fails for any two accesses that are not ordered; elsewhere for wrong
// answers.
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/TextReport.hpp"
#include "Nuv/Report/Words.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/Solve/Solver.hpp"
#include "tests/solve/Edits.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <barrier>
#include <string>
#include <thread>
#include <vector>

namespace nuv::test
{
namespace
{

constexpr std::size_t kThreads = 4;

/// Optimal, infeasible and unbounded ones, cycling in single precision, degenerate, read from LP
/// and MPS, one of them compressed.
const std::vector<std::string> kFiles = {
    "textbook/wyndor.lp",
    "textbook/wyndor_infeasible.lp",
    "textbook/wyndor_unbounded.lp",
    "textbook/kuhn.lp",
    "textbook/dantzig_transport.lp",
    "infeas/itest2.mps",
    "netlib/afiro.mps",
    "netlib/sc50a.mps",
    "netlib/adlittle.mps",
};

Model Read(const std::string& file)
{
    ReadResult reading = ReadModelFile(std::string(NUV_TEST_MODELS) + "/" + file);
    EXPECT_TRUE(reading.Ok()) << file;
    return std::move(*reading.model);
}

/// Everything that a program may do with a model, in words; a clock is not among them.
std::string Told(const Model& model)
{
    SolveOptions options;
    options.sensitivity = true;
    const Solution solution = Solve(model, options);
    EXPECT_FALSE(JsonReport(model, solution, {}).empty());
    return TextReport(model, solution, Detail::Full) + WriteLp(model).text.value_or("");
}

/// What each thread is told, which begin together; each looks at the models in an order of its own.
template <class ModelOf>
void ExpectSameInAllThreads(ModelOf modelOf)
{
    std::vector<std::string> expected;
    for (std::size_t k = 0; k < kFiles.size(); ++k)
        expected.push_back(Told(modelOf(k)));
    std::barrier start(kThreads);
    std::vector<std::vector<std::string>> found(kThreads, std::vector<std::string>(kFiles.size()));
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < kThreads; ++t)
        threads.emplace_back(
            [&, t]
            {
                start.arrive_and_wait();
                for (std::size_t k = 0; k < kFiles.size(); ++k)
                {
                    const std::size_t at = (k + t / 2) % kFiles.size();
                    found[t][at] = Told(modelOf(at));
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::vector<std::string>& told : found)
        EXPECT_EQ(told, expected);
}

TEST(Threads, SolveModelsOfTheirOwn)
{
    ExpectSameInAllThreads([](std::size_t k) { return Read(kFiles[k]); });
}

/// Nothing that a solve asks a model for changes it.
TEST(Threads, ShareModelsThatNobodyChanges)
{
    std::vector<Model> models;
    for (const std::string& file : kFiles)
        models.push_back(Read(file));
    ExpectSameInAllThreads([&models](std::size_t k) -> const Model& { return models[k]; });
}

/// A stop reaches the solve whose control asked for it, and no other.
TEST(Threads, AreStoppedOneByOne)
{
    const Model model = Read("netlib/adlittle.mps");
    std::vector<Solution> solutions(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < kThreads; ++t)
        threads.emplace_back(
            [&, t]
            {
                SolveOptions options;
                if (t % 2 == 0)
                    options.limits.keepGoing = [](const Progress& progress)
                    { return progress.pivots < 10; };
                solutions[t] = Solve(model, options);
            });
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t t = 0; t < kThreads; ++t)
    {
        const Solution& solution = solutions[t];
        EXPECT_EQ(solution.status, t % 2 == 0 ? Status::Stopped : Status::Optimal);
        EXPECT_EQ(solution.stopReason, t % 2 == 0 ? StopReason::Cancelled : StopReason::None);
    }
}

/// The exact objectives and verdicts of one sequence of edits.
std::string Answers(unsigned seed)
{
    std::string answers;
    EditedSession session(seed);
    for (int step = 0; step < 40; ++step)
    {
        const Solution solution = session.solver.Solve();
        answers += std::to_string(static_cast<int>(solution.status)) + solution.exactObjective;
        answers += solution.proved ? "," : "?";
        session.Edit();
    }
    return answers;
}

TEST(Threads, HaveSessionsThatDoNotDisturbEachOther)
{
    const unsigned seeds = static_cast<unsigned>(ShareOf(5) + 1);
    std::vector<std::string> answers(kThreads);
    std::vector<std::thread> threads(kThreads);
    for (std::size_t k = 0; k < kThreads; ++k)
    {
        threads[k] = std::thread(
            [&answers, k, seeds]
            {
                for (unsigned seed = 0; seed < seeds; ++seed)
                    answers[k] += Answers(seed + static_cast<unsigned>(k) % 3);
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t k = 0; k < kThreads; ++k)
    {
        std::string alone;
        for (unsigned seed = 0; seed < seeds; ++seed)
            alone += Answers(seed + static_cast<unsigned>(k) % 3);
        EXPECT_EQ(answers[k], alone);
    }
}

}  // namespace
}  // namespace nuv::test
