// A model that a test makes, edits and solves in a few words. It destructs its record at the end of
// its scope; what solves leave behind stays with the allocator.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"
#include "tests/support/Names.hpp"
#include "tests/support/Rows.hpp"
#include "tests/support/TestAllocator.hpp"

class SmallModel
{
public:
    SmallModel(NuvUint numVars, NuvAllocator* allocator)
    {
        if (!NuvLinearProgrammingConstruct(&lp, numVars, allocator))
            ADD_FAILURE() << "a model of " << numVars << " variables was refused";
    }

    ~SmallModel()
    {
        NuvLinearProgrammingDestruct(&lp);
    }

    SmallModel(const SmallModel&) = delete;
    SmallModel& operator=(const SmallModel&) = delete;

    bool SetRow(NuvUint id, const IndexedCoefficients::Terms& terms, NuvFloat32 rhs)
    {
        return NuvLinearProgrammingSetConstraintByIndex(&lp, id, IndexedCoefficients(terms), rhs) ==
               NUV_TRUE;
    }

    bool SetNamedRow(NuvUint id, const NamedCoefficients::Terms& terms, NuvFloat32 rhs)
    {
        return NuvLinearProgrammingSetConstraintByName(&lp, id, NamedCoefficients(terms), rhs) ==
               NUV_TRUE;
    }

    void Maximise(const IndexedCoefficients::Terms& terms)
    {
        NuvLinearProgrammingSetObjectiveByIndex(&lp, IndexedCoefficients(terms));
    }

    bool MaximiseNamed(const NamedCoefficients::Terms& terms)
    {
        return NuvLinearProgrammingSetObjective(&lp, NamedCoefficients(terms)) == NUV_TRUE;
    }

    bool Rename(NuvUint index, const std::string& name,
                NuvLinearProgrammingVariableType type = NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32)
    {
        return NuvLinearProgrammingSetVariableInfo(&lp, index, Name(name), type) == NUV_TRUE;
    }

    NuvLinearProgrammingResultType Solve()
    {
        return NuvLinearProgrammingSolve(&lp);
    }

    float Objective() const
    {
        return NuvLinearProgrammingGetObjectiveValue(&lp);
    }

    std::vector<float> Values() const
    {
        std::vector<float> values;
        for (const auto& pair : Pairs())
            values.push_back(pair.second);
        return values;
    }

    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& pair : Pairs())
            names.emplace_back(pair.first);
        return names;
    }

    /// The pairs of the results.
    NamedCoefficients::Terms Pairs() const
    {
        return TermsOf(*NuvLinearProgrammingGetVariableValues(&lp));
    }

    /// The variable's record under a name, or null.
    const NuvLinearProgrammingVariable* Find(const std::string& name) const
    {
        const auto found = NuvUnordered_NuvString__NuvLinearProgrammingVariableFindConst(
            &lp.variables, Name(name));
        if (found == NuvUnordered_NuvString__NuvLinearProgrammingVariableEndConst(&lp.variables))
            return nullptr;
        return &NuvList_NuvPair_NuvString__NuvLinearProgrammingVariableConstIteratorContentOf(
                    &found)
                    ->second;
    }

    /// The constraint under a number, or null.
    const NuvLinearProgrammingConstraint* FindRow(NuvUint id) const
    {
        return ::FindRow(lp, id);
    }

    std::size_t NumVariables() const
    {
        return NuvUnordered_NuvString__NuvLinearProgrammingVariableSize(&lp.variables);
    }

    NuvUint NumRows() const
    {
        return NuvLinearProgrammingGetNumConstraints(&lp);
    }

    NuvLinearProgramming lp;
};

/// The elements of a matrix, row after row.
template <class Matrix>
auto ElementsOf(const Matrix& x)
{
    return std::vector(x.data, x.data + static_cast<std::size_t>(x.nr) * x.nc);
}
