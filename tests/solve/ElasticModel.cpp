// The elastic program of a model, and the proof that a repair is the least.
#include "Nuv/Algebra/RationalText.hpp"
#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Solve/Elastic/ElasticModel.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/Repair.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace nuv::test
{
namespace
{

RepairOptions WithCertificate()
{
    RepairOptions options;
    options.certificate = true;
    return options;
}

/// The certificate is one of the elastic model, and a solve of that comes to the same.
void ExpectProof(const RepairResult& repair)
{
    ASSERT_TRUE(repair.proved && repair.elastic && repair.certificate);
    EXPECT_EQ(repair.certificate->status, repair.status);
    EXPECT_EQ(CheckCertificate(FormOf(*repair.elastic, repair.numbers), *repair.certificate), "");
    SolveOptions options;
    options.numbers = repair.numbers;
    const Solution solution = repair.elastic->Solve(options);
    EXPECT_EQ(solution.status, repair.status);
    EXPECT_EQ(solution.exactObjective, repair.exactTotal);
}

TEST(ElasticModel, HasARowAndAVariableForEachSideThatMayMove)
{
    const ReadResult reading = ReadLp("max 5 x st need: 2 x + 2 y >= 18 cap: -1 <= 3 x <= 7\n"
                                      "bounds x <= 3 -2 <= y <= 4 end",
                                      "short.lp");
    ASSERT_TRUE(reading.Ok());
    RepairOptions options = WithCertificate();
    options.weights = {{*reading.model->FindVariable("x"), Infinity},
                       {*reading.model->FindVariable("y"), 0.3}};
    const RepairResult repair = Repair(*reading.model, options);
    ExpectProof(repair);
    ASSERT_TRUE(repair.elastic);
    const ReadResult expected =
        ReadLp("min 0.3 short_y + 0.3 over_y + short_need + short_cap + over_cap st\n"
               "short_y: y + short_y >= -2\n over_y: y - over_y <= 4\n"
               "short_need: 2 x + 2 y + short_need >= 18\n short_cap: 3 x + short_cap >= -1\n"
               "over_cap: 3 x - over_cap <= 7\nbounds x <= 3 y free end",
               "elastic.lp");
    ASSERT_TRUE(expected.Ok());
    EXPECT_EQ(Solve(*expected.model).exactObjective, repair.exactTotal);
    EXPECT_EQ(repair.elastic->RowCount(), 5u);
    EXPECT_EQ(repair.elastic->VariableCount(), 7u);
    EXPECT_EQ(repair.elastic->NonzeroCount(), expected.model->NonzeroCount());
    EXPECT_TRUE(repair.elastic->FindRow("over_cap").has_value());
}

TEST(ElasticModel, GivesNamesThatAreNotTaken)
{
    const ReadResult reading = ReadLp(
        "min x st r: x + short_r >= 4\n short_r: x <= 1\n bounds short_r <= 1 end", "names.lp");
    ASSERT_TRUE(reading.Ok());
    const RepairResult repair = Repair(*reading.model, WithCertificate());
    ExpectProof(repair);
    EXPECT_TRUE(repair.elastic->FindVariable("short_r_").has_value());
    EXPECT_TRUE(repair.elastic->FindRow("over_short_r").has_value());
}

TEST(ElasticModel, IsNotMadeUnlessItIsAskedFor)
{
    const ReadResult reading = ReadLp("min x st r: x >= 4\nbounds x <= 1 end", "r.lp");
    EXPECT_FALSE(Repair(*reading.model).elastic);
    EXPECT_EQ(Repair(*reading.model).certificate, nullptr);
    RepairOptions options = WithCertificate();
    options.limits.seconds = 0.0;
    EXPECT_FALSE(Repair(*reading.model, options).elastic) << "stopped";
}

TEST(ElasticModel, ClaimsNothingAfterAStop)
{
    const ReadResult reading = ReadLp("min x st r: x + y >= 4\nbounds x <= 1\n y <= 1 end", "r.lp");
    const BoundedForm form = FormOf(*reading.model, CoefficientMeaning::ShortestDecimal);
    const std::vector<double> weights(form.Variables(), 1.0);
    SolveLimits limits;
    limits.seconds = 0.0;
    SolveControl control(limits);
    const FeasibilityRepair stopped = FindRepair(form, weights, control);
    const ElasticModel elastic = ElasticModelOf(*reading.model, form, weights, stopped);
    EXPECT_EQ(elastic.certificate.status, Status::Stopped);
    EXPECT_TRUE(elastic.certificate.primal.numerator.empty());
    EXPECT_TRUE(elastic.certificate.dual.numerator.empty());
    EXPECT_EQ(elastic.model.RowCount(), 3u);
}

TEST(ElasticModel, ProvesWhatNoDoubleSays)
{
    for (const char* text :
         {"min x st r: 2/3 <= x + y <= 1/3\nend", "min x st r: 2/3 <= 1/7 x <= 1/3\nend",
          "min x st a: 1/3 x >= 1/3\n b: -1/7 <= 1/7 x <= 1/9\nend",
          "min x st a: x >= 9007199254740993\n b: x <= 9007199254740992\nend",
          "min x st a: x + y >= 1/3\nbounds 1/7 <= x <= 1/9\n y <= 0.1 end"})
    {
        SCOPED_TRACE(text);
        const ReadResult reading = ReadLp(text, "text.lp");
        ASSERT_TRUE(reading.Ok());
        const RepairResult repair = Repair(*reading.model, WithCertificate());
        EXPECT_EQ(repair.status, Status::Optimal);
        ExpectProof(repair);
        // The repaired model says the number itself: there is nothing left to change.
        ASSERT_TRUE(repair.model.has_value());
        for (const RepairChange& change : repair.changes)
            EXPECT_EQ(change.to, ToDouble(*ReadRational(change.exactTo)));
        const RepairResult again = Repair(*repair.model, WithCertificate());
        EXPECT_EQ(again.exactTotal, "0");
        ExpectProof(again);
    }
}

class RandomRepair
{
public:
    explicit RandomRepair(unsigned seed) : m_random(seed)
    {
        const int columns = 1 + Below(4);
        const int rows = 1 + Below(4);
        for (int j = 0; j < columns; ++j)
            m_model.AddVariable("x" + std::to_string(j), AnyBounds());
        for (int i = 0; i < rows; ++i)
        {
            Expression sum;
            for (std::uint32_t j = 0; j < m_model.VariableCount(); ++j)
                if (Below(3) != 0)
                    sum += AnyNumber() * m_model.VariableAt(j);
            const Bounds bounds = AnyBounds();
            (void)m_model.Add("r" + std::to_string(i), Range(bounds.lower, sum, bounds.upper));
        }
        m_options.certificate = true;
        if (Below(3) == 0)
            m_options.numbers = CoefficientMeaning::StoredDouble;
        for (std::uint32_t j = 0; j < m_model.VariableCount(); ++j)
            m_options.weights.push_back({m_model.VariableAt(j), AnyWeight()});
        for (std::uint32_t i = 0; i < m_model.RowCount(); ++i)
            m_options.weights.push_back({m_model.RowAt(i), AnyWeight()});
    }

    [[nodiscard]] RepairResult Find() const
    {
        return Repair(m_model, m_options);
    }

private:
    int Below(int end)
    {
        return static_cast<int>(m_random() % static_cast<unsigned>(end));
    }
    double AnyNumber()
    {
        return (Below(41) - 20) / 10.0;
    }
    double AnyWeight()
    {
        return Below(4) == 0 ? Infinity : 0.1 * (1 + Below(30));
    }
    /// They cross now and then.
    Bounds AnyBounds()
    {
        const double lower = Below(3) == 0 ? -Infinity : AnyNumber();
        const double upper = Below(3) == 0 ? Infinity : AnyNumber() + 0.5;
        return Below(4) == 0 ? Bounds{0.0, upper} : Bounds{lower, upper};
    }

    std::mt19937_64 m_random;
    Model m_model;
    RepairOptions m_options;
};

TEST(ElasticModel, ProvesRandomRepairs)
{
    int seen[3] = {0, 0, 0};
    for (unsigned seed = 0; seed < 1500; ++seed)
    {
        SCOPED_TRACE(seed);
        const RepairResult repair = RandomRepair(seed).Find();
        ASSERT_TRUE(repair.proved);
        ExpectProof(repair);
        ++seen[repair.status == Status::Infeasible ? 0 : repair.changes.empty() ? 1 : 2];
        if (testing::Test::HasFailure())
            break;
    }
    for (const int count : seen)
        EXPECT_GT(count, 150);
}

}  // namespace
}  // namespace nuv::test
