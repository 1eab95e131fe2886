/// A dense vector that knows where it is nonzero, so that sparse results cost no walk over all of
/// it. Invariant: every place that holds a nonzero is listed, and none twice.
#pragma once

#include "Nuv/Algebra/SparseMatrix.hpp"
#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <vector>

namespace nuv
{

struct WorkVector
{
    std::vector<double> value;
    std::vector<Index> touched;

    /// All zeros of this length.
    void Reset(Index size)
    {
        if (value.size() == size)
        {
            Clear();
            return;
        }
        value.assign(size, 0.0);
        touched.clear();
    }
    void Clear() noexcept
    {
        // A walk over all of a dense vector is quicker than one along its list.
        // same bits: both clear all
        if (touched.size() > value.size() / 4)
            value.assign(value.size(), 0.0);
        else
            for (const Index at : touched)
                value[at] = 0.0;
        touched.clear();
    }
    void Set(Index at, double x)
    {
        if (value[at] == 0.0)
            touched.push_back(at);
        value[at] = x;
    }
    void Add(Index at, double x)
    {
        double& entry = value[at];
        if (entry == 0.0)
            touched.push_back(at);
        entry += x;
        // A sum that cancels to zero stays listed, and must not be listed again.
        if (entry == 0.0)
            entry = tolerance::kCancelled;
    }
};

}  // namespace nuv
