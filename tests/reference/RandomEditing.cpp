// Random edits and their comparison.
#include "tests/reference/RandomEditing.hpp"

#include <bit>
#include <cstring>

#include "Nuv/Utils/NuvLinearProgramming.h"
#include "tests/reference/PlainModel.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Rows.hpp"

namespace reference
{
namespace
{
constexpr std::uint32_t kMostVariables = 200;
constexpr std::uint32_t kNumbers = 300;
constexpr std::uint32_t kMostTerms = 8;
constexpr std::uint64_t kStepsBetweenLooks = 1000;

using IndexTerm = NuvPair_NuvUint__NuvFloat32;
using IndexTerms = NuvVector_NuvPair_NuvUint__NuvFloat32;
using NameTerm = NuvPair_NuvString__NuvFloat32;
using NameTerms = NuvVector_NuvPair_NuvString__NuvFloat32;

/// A name's record over the characters of `text`; the library only reads it.
NuvString Borrow(const std::string& text)
{
    return {nullptr, const_cast<char*>(text.c_str()), text.size(), text.size()};
}

std::string TextOf(const NuvString& string)
{
    return {string.buf, static_cast<std::size_t>(string.size)};
}

bool IsSame(float x, float y)
{
    return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y);
}

class Editor
{
public:
    Editor(std::uint64_t seed, NuvAllocator* allocator) : random(seed), plain(kMostVariables)
    {
        isMade = NuvLinearProgrammingConstruct(&lp, kMostVariables, allocator) != nullptr;
    }

    ~Editor()
    {
        if (isMade)
            NuvLinearProgrammingDestruct(&lp);
    }

    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    std::string Run(std::uint64_t steps)
    {
        if (!isMade)
            return "the model was refused";
        for (std::uint64_t step = 1; step <= steps && difference.empty(); ++step)
        {
            Take();
            if (step % kStepsBetweenLooks == 0)
                CompareAll();
            if (!difference.empty())
                difference += " after step " + std::to_string(step);
        }
        return difference;
    }

private:
    void Expect(bool holds, const char* what)
    {
        if (!holds && difference.empty())
            difference = what;
    }

    void Take()
    {
        const std::uint32_t choice = random.Below(100);
        if (choice < 25)
            Rename();
        else if (choice < 55)
            SetRow();
        else if (choice < 75)
            SetNamedRow();
        else if (choice < 90)
            RemoveRow();
        else if (choice < 99 || random.Below(50) != 0)
            SetObjective();
        else
            Replace();
    }

    std::string AnyName()
    {
        const std::uint32_t number = random.Below(kMostVariables);
        return (random.Below(2) == 0 ? "X" : "a name of variable ") + std::to_string(number);
    }

    void Rename()
    {
        const std::uint32_t index = random.Below(kMostVariables + 2);
        const std::string name = AnyName();
        const NuvString record = Borrow(name);
        const bool isDone =
            NuvLinearProgrammingSetVariableInfo(
                &lp, index, &record, NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32) == NUV_TRUE;
        Expect(isDone == plain.Rename(index, name), "renaming a variable");
        if (index != 0 && index <= plain.names.size())
            CompareVariable(index);
    }

    void SetRow()
    {
        const std::uint32_t id = random.Below(kNumbers);
        PlainRow row;
        row.rhs = random.Symmetric(100.0F);
        std::vector<IndexTerm> terms;
        for (std::uint32_t left = random.Below(kMostTerms); left != 0; --left)
        {
            row.indexed.emplace_back(1 + random.Below(kMostVariables), random.Symmetric(10.0F));
            terms.push_back({row.indexed.back().first, row.indexed.back().second});
        }
        IndexTerm* const end = terms.data() + terms.size();
        const IndexTerms vector = {nullptr, terms.data(), end, end};
        const bool isSet =
            NuvLinearProgrammingSetConstraintByIndex(&lp, id, &vector, row.rhs) == NUV_TRUE;
        Enter(id, row, isSet);
    }

    void SetNamedRow()
    {
        const std::uint32_t id = random.Below(kNumbers);
        PlainRow row;
        row.isNamed = true;
        row.rhs = random.Symmetric(100.0F);
        row.named = AnyNamedTerms();
        std::vector<NameTerm> terms;
        const NameTerms vector = RecordOf(row.named, &terms);
        const bool isSet =
            NuvLinearProgrammingSetConstraintByName(&lp, id, &vector, row.rhs) == NUV_TRUE;
        Enter(id, row, isSet);
    }

    /// Mostly names that are there, so that standard forms come about.
    std::vector<std::pair<std::string, float>> AnyNamedTerms()
    {
        std::vector<std::pair<std::string, float>> terms;
        for (std::uint32_t left = random.Below(kMostTerms); left != 0; --left)
        {
            const auto any = random.Below(static_cast<std::uint32_t>(plain.names.size()));
            terms.emplace_back(random.Chance(99) ? plain.names[any] : AnyName(),
                               random.Symmetric(10.0F));
        }
        return terms;
    }

    static NameTerms RecordOf(const std::vector<std::pair<std::string, float>>& from,
                              std::vector<NameTerm>* terms)
    {
        for (const auto& [name, coefficient] : from)
            terms->push_back({Borrow(name), coefficient});
        NameTerm* const end = terms->data() + terms->size();
        return {nullptr, terms->data(), end, end};
    }

    void Enter(std::uint32_t id, const PlainRow& row, bool isSet)
    {
        Expect(isSet == (id != 0), "setting a row");
        if (id == 0)
            return;
        plain.rows[id] = row;
        CompareRow(id, row);
    }

    void RemoveRow()
    {
        const std::uint32_t id = random.Below(kNumbers);
        const bool isRemoved = NuvLinearProgrammingRemoveConstraint(&lp, id) == NUV_TRUE;
        Expect(isRemoved == (plain.rows.erase(id) == 1), "removing a row");
        Expect(FindRow(lp, id) == nullptr, "a removed row");
        Expect(NuvLinearProgrammingGetNumConstraints(&lp) == plain.rows.size(), "number of rows");
    }

    void SetObjective()
    {
        const auto named = AnyNamedTerms();
        std::vector<NameTerm> terms;
        const NameTerms vector = RecordOf(named, &terms);
        const bool isSet = NuvLinearProgrammingSetObjective(&lp, &vector) == NUV_TRUE;
        Expect(isSet == plain.Maximise(named), "setting the objective");
        const IndexTerm* term = lp.objective.begin;
        for (const auto& [index, coefficient] : plain.objective)
        {
            Expect(term != lp.objective.end && term->first == index &&
                       IsSame(term->second, coefficient),
                   "the objective");
            ++term;
        }
        Expect(term == lp.objective.end, "the objective's length");
    }

    void Replace()
    {
        const std::uint32_t numVars = kMostVariables - random.Below(100);
        Expect(NuvLinearProgrammingSetNumVars(&lp, numVars) == NUV_TRUE, "replacing the variables");
        plain.Replace(numVars);
    }

    void CompareRow(std::uint32_t id, const PlainRow& row)
    {
        const NuvLinearProgrammingConstraint* const stored = FindRow(lp, id);
        if (!stored || !IsSame(stored->rhs, row.rhs) ||
            (stored->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME) != row.isNamed)
            return Expect(false, "a row");
        if (row.isNamed)
            CompareTerms(stored->u.variableCoefficientsByName, row.named);
        else
            CompareTerms(stored->u.variableCoefficientsByIndex, row.indexed);
    }

    static bool IsKey(const NuvString& found, const std::string& expected)
    {
        return TextOf(found) == expected;
    }

    static bool IsKey(NuvUint found, std::uint32_t expected)
    {
        return found == expected;
    }

    template <class Vector, class Terms>
    void CompareTerms(const Vector& found, const Terms& expected)
    {
        const auto* term = found.begin;
        for (const auto& [key, coefficient] : expected)
        {
            if (term == found.end)
                return Expect(false, "too few terms in a row");
            Expect(IsKey(term->first, key) && IsSame(term->second, coefficient), "a term of a row");
            ++term;
        }
        Expect(term == found.end, "too many terms in a row");
    }

    void CompareVariable(std::uint32_t index)
    {
        const std::string& name = plain.names[index - 1];
        Expect(TextOf(lp.variableValues.begin[index - 1].first) == name, "a variable's name");
        const NuvString record = Borrow(name);
        const auto found =
            NuvUnordered_NuvString__NuvLinearProgrammingVariableFindConst(&lp.variables, &record);
        const auto known = plain.indices.find(name);
        const auto end =
            NuvUnordered_NuvString__NuvLinearProgrammingVariableEndConst(&lp.variables);
        if ((found == end) != (known == plain.indices.end()))
            return Expect(false, "whether a name is known");
        if (found == end)
            return;
        const auto& variable =
            NuvList_NuvPair_NuvString__NuvLinearProgrammingVariableConstIteratorContentOf(&found)
                ->second;
        Expect(variable.index == known->second && TextOf(variable.name) == name, "a variable");
    }

    /// Takes out the rows that no longer have their variables, and the objective if it has not,
    /// since there is no standard form with them.
    void DropUnknown()
    {
        std::vector<NuvUint> unknown;
        for (const auto& [id, row] : plain.rows)
            if (!plain.IsKnown(row))
                unknown.push_back(id);
        for (const NuvUint id : unknown)
        {
            Expect(NuvLinearProgrammingRemoveConstraint(&lp, id) == NUV_TRUE, "removing a row");
            plain.rows.erase(id);
        }
        if (plain.IsKnown({false, plain.objective, {}, 0.0F}))
            return;
        const IndexTerms none = {nullptr, nullptr, nullptr, nullptr};
        NuvLinearProgrammingSetObjectiveByIndex(&lp, &none);
        plain.objective.clear();
    }

    void CompareAll()
    {
        if (random.Below(2) == 0)
            DropUnknown();
        Expect(NuvLinearProgrammingGetNumVars(&lp) == plain.names.size(), "number of variables");
        for (std::uint32_t index = 1; index <= plain.names.size(); ++index)
            CompareVariable(index);
        std::vector<std::uint32_t> ids;
        const auto& ring = lp.constraints.l.node;
        for (auto link = ring.next; link.b != &ring; link = link.b->next)
            ids.push_back(link.n->obj.first);
        if (ids.size() != plain.rows.size())
            return Expect(false, "number of rows");
        for (const std::uint32_t id : ids)
        {
            const auto row = plain.rows.find(id);
            if (row == plain.rows.end())
                return Expect(false, "a row that was removed");
            CompareRow(id, row->second);
        }
        CompareStandardForm(ids);
    }

    void CompareStandardForm(const std::vector<std::uint32_t>& ids)
    {
        if (ids.empty())
            return;
        const std::optional<Problem> problem = plain.InOrder(ids);
        const bool isPrepared = NuvLinearProgrammingPrepareInputs_(&lp) == NUV_TRUE;
        Expect(isPrepared == problem.has_value(), "whether there is a standard form");
        if (!isPrepared || !problem)
            return;
        const std::size_t n = problem->columns;
        for (std::size_t i = 0; i != problem->rows; ++i)
        {
            Expect(IsSame(lp.b.data[i], problem->b[i]), "a right-hand side");
            Expect(std::memcmp(lp.A.data + i * (n + problem->rows), problem->A.data() + i * n,
                               n * sizeof(float)) == 0,
                   "a row of the standard form");
        }
        Expect(std::memcmp(lp.c.data, problem->c.data(), n * sizeof(float)) == 0,
               "the objective of the standard form");
    }

    Random random;
    PlainModel plain;
    NuvLinearProgramming lp;
    bool isMade = false;
    std::string difference;
};
}  // namespace

std::string EditAtRandom(std::uint64_t steps, std::uint64_t seed, NuvAllocator* allocator)
{
    return Editor(seed, allocator).Run(steps);
}
}  // namespace reference
