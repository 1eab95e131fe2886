// Any sequence of the calls that build, change and solve a model, beside a model of the same in the
// standard library's types: the library holds the same names, rows and objective after each call,
// and solves to the bits of the yardstick. A refused request ends the comparison, not the sequence:
// what is left must be solved and taken apart without harm, and a new model begins.
#include "fuzz/Input.hpp"
#include "fuzz/Target.hpp"
#include "tests/support/SmallModel.hpp"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/PlainModel.hpp"

#include <algorithm>
#include <optional>

namespace
{
using namespace reference;

constexpr int kMostVariables = 6;
constexpr int kMostRows = 8;
constexpr int kNames = 10;
constexpr int kMostSteps = 120;
constexpr std::size_t kMostPivots = 60;

class Session
{
public:
    explicit Session(fuzz::Input* bytes) : input(*bytes)
    {
        allocator.AcceptLeftBlocks();
        Begin();
    }

    void Run()
    {
        for (int steps = 0; steps != kMostSteps && !input.IsEmpty(); ++steps)
        {
            const int byte = input.Byte();
            if (byte >= 240)
                allocator.RefuseOnly(static_cast<std::size_t>(byte - 239));
            refusals = allocator.Refusals();
            Take(byte % 8);
            allocator.RefuseNothing();
            if (allocator.Refusals() == refusals)
                Compare();
            else
                Begin();
        }
    }

private:
    void Begin()
    {
        if (model)
            (void)model->Solve();
        model.reset();
        const auto numVars = static_cast<NuvUint>(input.Below(kMostVariables + 1));
        model.emplace(numVars, allocator);
        plain.emplace(numVars);
    }

    void Take(int operation)
    {
        switch (operation)
        {
        case 0:
            return Rename();
        case 1:
            return SetRow();
        case 2:
            return SetNamedRow();
        case 3:
            return CopyRow();
        case 4:
            return RemoveRow();
        case 5:
            return SetObjective();
        case 6:
            return input.Below(8) == 0 ? ReplaceVariables() : SetRow();
        default:
            return Solve();
        }
    }

    /// While a request may be refused, answers are not looked at.
    void ExpectAnswer(bool found, bool expected)
    {
        if (allocator.Refusals() == refusals)
        {
            EXPECT_EQ(found, expected);
        }
    }

    std::string AnyName()
    {
        const int number = input.Below(kNames);
        return number < kMostVariables ? "X" + std::to_string(number + 1)
                                       : std::string(static_cast<std::size_t>(number), 'n');
    }

    float AnyValue()
    {
        const int byte = input.Byte();
        return byte == 255 ? input.Float() : static_cast<float>(byte % 16 - 8);
    }

    NuvUint AnyIndex()
    {
        return static_cast<NuvUint>(input.Below(kMostVariables + 2));
    }

    NuvUint AnyId()
    {
        return static_cast<NuvUint>(input.Below(kMostRows + 1) * 7);
    }

    IndexedCoefficients::Terms AnyTerms()
    {
        IndexedCoefficients::Terms terms;
        for (int count = input.Below(6); count > 0; --count)
        {
            const NuvUint index = AnyIndex();
            terms.emplace_back(index, AnyValue());
        }
        return terms;
    }

    NamedCoefficients::Terms AnyNamedTerms()
    {
        NamedCoefficients::Terms terms;
        for (int count = input.Below(6); count > 0; --count)
        {
            const std::string name = AnyName();
            terms.emplace_back(name, AnyValue());
        }
        return terms;
    }

    void Rename()
    {
        const NuvUint index = AnyIndex();
        const std::string name = AnyName();
        const bool isRenamed = model->Rename(index, name);
        ExpectAnswer(isRenamed, plain->Rename(index, name));
    }

    void SetRow()
    {
        const NuvUint id = AnyId();
        const PlainRow row = {false, AnyTerms(), {}, AnyValue()};
        ExpectAnswer(model->SetRow(id, row.indexed, row.rhs), id != 0);
        if (id != 0)
            plain->rows[id] = row;
    }

    void SetNamedRow()
    {
        const NuvUint id = AnyId();
        const PlainRow row = {true, {}, AnyNamedTerms(), AnyValue()};
        ExpectAnswer(model->SetNamedRow(id, row.named, row.rhs), id != 0);
        if (id != 0)
            plain->rows[id] = row;
    }

    /// The record that the model itself holds, entered once more.
    void CopyRow()
    {
        const NuvUint from = AnyId();
        const NuvUint to = AnyId();
        const NuvLinearProgrammingConstraint* const stored = model->FindRow(from);
        if (!stored)
            return;
        ExpectAnswer(NuvLinearProgrammingSetConstraint(&model->lp, to, stored) == NUV_TRUE,
                     to != 0);
        if (to != 0)
            plain->rows[to] = PlainRow(plain->rows[from]);
    }

    void RemoveRow()
    {
        const NuvUint id = AnyId();
        const bool isRemoved = NuvLinearProgrammingRemoveConstraint(&model->lp, id) == NUV_TRUE;
        ExpectAnswer(isRemoved, plain->rows.erase(id) == 1);
    }

    void SetObjective()
    {
        if (input.Below(2) == 0)
        {
            plain->objective = AnyTerms();
            model->Maximise(plain->objective);
            return;
        }
        const NamedCoefficients::Terms terms = AnyNamedTerms();
        const bool isSet = model->MaximiseNamed(terms);
        ExpectAnswer(isSet, plain->Maximise(terms));
    }

    void ReplaceVariables()
    {
        const auto numVars = static_cast<NuvUint>(input.Below(kMostVariables + 1));
        ExpectAnswer(NuvLinearProgrammingSetNumVars(&model->lp, numVars) == NUV_TRUE, true);
        plain->Replace(numVars);
    }

    std::vector<NuvUint> IdsInOrder() const
    {
        std::vector<NuvUint> ids;
        const auto& ring = model->lp.constraints.l.node;
        for (auto link = ring.next; link.b != &ring; link = link.b->next)
            ids.push_back(link.n->obj.first);
        return ids;
    }

    void Solve()
    {
        Recorder recorder(kMostPivots);
        NuvLinearProgramming* const lp = &model->lp;
        const NuvLinearProgrammingResultType result =
            NuvLinearProgrammingSolveMonitored(lp, &recorder.monitor);
        if (allocator.Refusals() != refusals)
            return;
        const std::optional<Problem> problem = plain->InOrder(IdsInOrder());
        const Solution expected = problem ? reference::Solve(*problem, kMostPivots) : Solution();
        ASSERT_EQ(static_cast<Status>(result), expected.status);
        ASSERT_EQ(recorder.pivots.size(), expected.pivots.size());
        if (expected.status != Status::Ok)
            return;
        EXPECT_TRUE(IsSame(model->Objective(), expected.objective));
        // A variable outside the last basis keeps the value of an earlier solve.
        for (const NuvUint label : LastBasis(expected))
        {
            if (label != 0 && label <= lp->numVars)
            {
                EXPECT_TRUE(IsSame(model->Values()[label - 1], expected.values[label - 1]));
            }
        }
    }

    /// The labels after the last pivot. None when there was no pivot, since slacks have no value,
    /// and when Phase I ended with its artificial variable basic at 0: Phase II began with slacks
    /// then.
    static std::vector<std::uint32_t> LastBasis(const Solution& solution)
    {
        if (solution.pivots.empty())
            return {};
        const Pivot& last = solution.pivots.back();
        if (last.phase == 1 && last.leaving != 0)
            return {};
        std::vector<std::uint32_t> labels = last.basic;
        std::replace(labels.begin(), labels.end(), last.leaving, last.entering);
        return labels;
    }

    void Compare()
    {
        EXPECT_EQ(NuvLinearProgrammingGetNumVars(&model->lp), plain->names.size());
        EXPECT_EQ(model->Names(), plain->names);
        EXPECT_EQ(model->NumVariables(), plain->indices.size());
        for (const auto& [name, index] : plain->indices)
        {
            const NuvLinearProgrammingVariable* const variable = model->Find(name);
            ASSERT_NE(variable, nullptr) << name;
            EXPECT_EQ(variable->index, index);
            EXPECT_EQ(TextOf(variable->name), name);
        }
        ExpectSame(TermsOf(model->lp.objective), plain->objective);
        EXPECT_EQ(model->NumRows(), plain->rows.size());
        for (const auto& [id, row] : plain->rows)
            CompareRow(id, row);
    }

    void CompareRow(NuvUint id, const PlainRow& row)
    {
        const NuvLinearProgrammingConstraint* const stored = model->FindRow(id);
        ASSERT_NE(stored, nullptr) << id;
        EXPECT_TRUE(IsSame(stored->rhs, row.rhs));
        ASSERT_EQ(stored->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME, row.isNamed);
        if (row.isNamed)
            ExpectSame(TermsOf(stored->u.variableCoefficientsByName), row.named);
        else
            ExpectSame(TermsOf(stored->u.variableCoefficientsByIndex), row.indexed);
    }

    template <class Terms>
    static void ExpectSame(const Terms& found, const Terms& expected)
    {
        ASSERT_EQ(found.size(), expected.size());
        for (std::size_t i = 0; i != found.size(); ++i)
        {
            EXPECT_EQ(found[i].first, expected[i].first);
            EXPECT_TRUE(IsSame(found[i].second, expected[i].second));
        }
    }

    fuzz::Input& input;
    TestAllocator allocator;
    /// Those before this step.
    std::size_t refusals = 0;
    std::optional<SmallModel> model;
    std::optional<PlainModel> plain;
};
}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    Session(&input).Run();
    return 0;
}
