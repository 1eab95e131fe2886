#include "apps/nuvlp/batch/ScenarioRun.hpp"

#include "apps/nuvlp/Interrupts.hpp"

#include "Nuv/Solve/Batch/SinglePrecisionBatch.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

namespace nuvlp
{
namespace
{

/// How many scenarios a thread takes at a time for the lanes.
constexpr std::size_t kScenariosAtOnce = 256;

/// A model in which one scenario after the other replaces numbers.
class Replacing
{
public:
    Replacing(const nuv::Model& base, const ScenarioTable& table)
        : m_base(base), m_model(base), m_table(table)
    {
        for (std::uint32_t j = 0; j != base.VariableCount(); ++j)
            m_variables.push_back(*base.FindVariable(base.VariableName(j)));
        for (std::uint32_t i = 0; i != base.RowCount(); ++i)
            m_rows.push_back(*base.FindRow(base.RowName(i)));
    }

    /// Calls `use(model)` with the numbers of the scenario, which the table has of the kinds that
    /// the model takes.
    template <class Use>
    void With(std::size_t scenario, Use&& use)
    {
        for (std::size_t k = 0; k != m_table.columns.size(); ++k)
            if (const std::optional<double> value = m_table.Cell(scenario, k))
                if (!Replace(m_table.columns[k], *value))
                    throw std::logic_error("a number of the table is none of the model");
        use(std::as_const(m_model));
        Restore(scenario);
    }

private:
    void Restore(std::size_t scenario)
    {
        for (std::size_t k = 0; k != m_table.columns.size(); ++k)
            if (m_table.Cell(scenario, k))
                Restore(m_table.columns[k]);
    }

    bool Replace(const Replacement& which, double value)
    {
        const std::uint32_t at = which.at;
        switch (which.what)
        {
        case Replaced::Cost:
            return m_model.SetCost(m_variables[at], value);
        case Replaced::VariableLower:
            return m_model.SetBounds(m_variables[at], {value, m_model.VariableUpper()[at]});
        case Replaced::VariableUpper:
            return m_model.SetBounds(m_variables[at], {m_model.VariableLower()[at], value});
        case Replaced::Side:
            return m_model.SetBounds(m_rows[at],
                                     {std::isinf(m_base.RowLower()[at]) ? -nuv::Infinity : value,
                                      std::isinf(m_base.RowUpper()[at]) ? nuv::Infinity : value});
        case Replaced::RowLower:
            return m_model.SetBounds(m_rows[at], {value, m_model.RowUpper()[at]});
        case Replaced::RowUpper:
            return m_model.SetBounds(m_rows[at], {m_model.RowLower()[at], value});
        }
        return false;
    }

    void Restore(const Replacement& which)
    {
        const std::uint32_t at = which.at;
        if (which.what == Replaced::Cost)
            (void)m_model.SetCost(m_variables[at], m_base.Objective()[at]);
        else if (which.what == Replaced::VariableLower || which.what == Replaced::VariableUpper)
            (void)m_model.SetBounds(m_variables[at],
                                    {m_base.VariableLower()[at], m_base.VariableUpper()[at]});
        else
            (void)m_model.SetBounds(m_rows[at], {m_base.RowLower()[at], m_base.RowUpper()[at]});
    }

    const nuv::Model& m_base;
    nuv::Model m_model;
    const ScenarioTable& m_table;
    std::vector<nuv::Variable> m_variables;
    std::vector<nuv::Row> m_rows;
};

/// What the threads share.
struct Shared
{
    const ScenarioRun& run;
    std::vector<std::string> lines;
    std::atomic<std::size_t> next;
    std::atomic<std::size_t> done = 0;
    std::atomic<std::size_t> running = 0;
    std::mutex mutex;
    std::exception_ptr failure;
};

/// Each scenario by itself.
void SolveOneByOne(const ScenarioRun& run, Replacing& replacing, std::size_t first,
                   std::vector<nuv::Solution>& solutions)
{
    for (nuv::Solution& solution : solutions)
        replacing.With(first++,
                       [&](const nuv::Model& model) { solution = nuv::Solve(model, run.options); });
}

/// All of them side by side.
void SolveInLanes(const ScenarioRun& run, Replacing& replacing, std::size_t first,
                  std::vector<nuv::Solution>& solutions)
{
    nuv::SinglePrecisionBatch batch(run.options);
    for (std::size_t k = 0; k != solutions.size(); ++k)
        replacing.With(first + k, [&](const nuv::Model& model) { batch.Take(model); });
    solutions = batch.Solve();
}

void SolveSome(Shared& shared)
{
    const ScenarioRun& run = shared.run;
    const bool isInLanes = run.options.singlePrecisionOnly;
    const std::size_t most = isInLanes ? kScenariosAtOnce : 1;
    Replacing replacing(run.model, run.table);
    while (!IsInterrupted())
    {
        const std::size_t first = shared.next.fetch_add(most);
        if (first >= run.last)
            return;
        std::vector<nuv::Solution> solutions(std::min(most, run.last - first));
        (isInLanes ? SolveInLanes : SolveOneByOne)(run, replacing, first, solutions);
        if (IsInterrupted())
            return;
        for (std::size_t k = 0; k != solutions.size(); ++k)
            shared.lines[first + k - run.first] = run.write(first + k, solutions[k]);
        shared.done += solutions.size();
    }
}

void Work(Shared& shared)
{
    try
    {
        SolveSome(shared);
    }
    catch (...)
    {
        const std::lock_guard lock(shared.mutex);
        shared.failure = std::current_exception();
        shared.next = shared.run.last;
    }
    --shared.running;
}

}  // namespace

ScenarioLines SolveScenarios(const ScenarioRun& run)
{
    Shared shared{run, std::vector<std::string>(run.last - run.first), run.first, {}, {}, {}, {}};
    const std::size_t count = std::max<std::size_t>(1, std::min(run.threads, run.last - run.first));
    shared.running = count;
    std::vector<std::thread> threads;
    for (std::size_t k = 0; k != count; ++k)
        threads.emplace_back([&shared] { Work(shared); });
    while (run.progress && shared.running != 0)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        run.progress(shared.done);
    }
    for (std::thread& thread : threads)
        thread.join();
    if (shared.failure)
        std::rethrow_exception(shared.failure);
    ScenarioLines lines{{}, shared.done};
    for (const std::string& line : shared.lines)
        lines.text += line;
    return lines;
}

}  // namespace nuvlp
