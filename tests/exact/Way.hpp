/// What is done on the way to an answer, as one hash: before each pivot the stage and the bits of
/// the objective, at the end the basis, the certificate and all doubles of the record.
#pragma once

#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"
#include "tests/support/Hash.hpp"
#include "tests/support/Random.hpp"

#include <array>
#include <bit>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace nuv::test
{

class Way
{
public:
    /// Of a solve that is to be watched.
    [[nodiscard]] SolveLimits Watched()
    {
        SolveLimits limits;
        limits.doublePivots = 20000;
        limits.exactPivots = 2000;
        limits.keepGoing = [this](const Progress& progress)
        {
            Step step{progress.stage, progress.pivots, progress.feasible,
                      std::bit_cast<std::uint64_t>(progress.objective)};
            // There are many numbers that are none.
            if (std::isnan(progress.objective))
                step.objective = 0;
            // What takes long asks in between, how often is no part of the way.
            if (std::exchange(m_last, step) != step)
            {
                Add(static_cast<std::uint64_t>(step.stage));
                Add(step.pivots);
                Add(step.feasible);
                Add(step.objective);
            }
            return true;
        };
        return limits;
    }

    template <std::integral Word>
    void Add(Word word)
    {
        m_hash.Add(static_cast<std::uint64_t>(word));
    }
    void Add(double number)
    {
        m_hash.Add(std::bit_cast<std::uint64_t>(number));
    }
    void Add(const std::string& text)
    {
        for (const char character : text)
            m_hash.Add(static_cast<unsigned char>(character));
        m_hash.Add(text.size());
    }
    void Add(const ExactVector& vector)
    {
        for (const Integer& numerator : vector.numerator)
            Add(numerator.ToString());
        Add(vector.denominator.ToString());
    }
    void Add(const Basis& basis)
    {
        for (const auto* statuses : {&basis.columns, &basis.rows})
            for (const BasisStatus status : *statuses)
                Add(static_cast<std::uint64_t>(status));
    }

    void Add(const CertifiedResult& result)
    {
        Add(static_cast<std::uint64_t>(result.certificate.status));
        Add(ToString(result.certificate.objective));
        for (const auto* exact :
             {&result.certificate.primal, &result.certificate.dual, &result.certificate.ray})
            Add(*exact);
        Add(result.certificate.contradiction);
        for (const auto* numbers : {&result.record.value, &result.record.reduced})
            for (const double number : *numbers)
                Add(number);
        Add(result.record.objectiveValue);
        Add(result.record.primalViolation);
        Add(result.record.dualViolation);
        Add(result.record.basis);
        for (const Stage stage : {Stage::Double, Stage::Exact})
            m_pivots[static_cast<std::size_t>(stage)] += result.record.stages[stage].pivots;
        m_proved += result.record.proved ? 1 : 0;
        ++m_solves;
    }

    /// The same with all that it says of its stages but the time.
    void AddWithStages(const CertifiedResult& result)
    {
        Add(result);
        Add(static_cast<std::uint64_t>(result.record.stopReason));
        Add(result.record.defect);
        for (const Stage stage : {Stage::SinglePrecision, Stage::Double, Stage::Exact})
        {
            const StageRecord& did = result.record.stages[stage];
            Add(did.ran);
            Add(did.pivots);
            Add(did.ran || did.seconds == 0.0);
        }
        Add(result.record.proved || result.record.checkSeconds == 0.0);
    }

    /// "<solves> solves, <proved> proved, <pivots> + <exact pivots> pivots, <hash>"
    [[nodiscard]] std::string Text() const
    {
        std::ostringstream text;
        text << m_solves << " solves, " << m_proved << " proved, " << m_pivots[1] << " + "
             << m_pivots[2] << " pivots, " << std::hex << m_hash.Value();
        return text.str();
    }

private:
    struct Step
    {
        Stage stage = Stage::SinglePrecision;
        std::uint64_t pivots = 0;
        bool feasible = false;
        std::uint64_t objective = 0;
        bool operator==(const Step&) const = default;
    };

    Hash m_hash;
    Step m_last;
    int m_solves = 0;
    int m_proved = 0;
    std::array<std::uint64_t, kStages> m_pivots{};
};

/// Forms of a kind, drawn from the same seed each time, and what is done with them.
struct Kind
{
    std::string name;
    std::function<void(Random&, Way&)> solve;
};

template <class Solve>
std::function<void(Random&, Way&)> Repeated(int count, const Solve& solve)
{
    return [=](Random& random, Way& way)
    {
        for (int k = 0; k < count; ++k)
            solve(random, way);
    };
}

/// Those of tests/exact/WaysOfParts.cpp and so on.
std::vector<Kind> KindsOfParts();
std::vector<Kind> KindsOfSimplex();
std::vector<Kind> KindsOfPresolve();
std::vector<Kind> KindsOfProofs();
std::vector<Kind> KindsOfRefinement();
std::vector<Kind> KindsOfDense();

}  // namespace nuv::test
