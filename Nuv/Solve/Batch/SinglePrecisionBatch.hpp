/// Many models believed in single precision, as SolveOptions::singlePrecisionOnly does it: those
/// whose canonical forms have one shape are solved side by side, in the lanes of the core's batch.
#pragma once

#include "Nuv/Solve/CanonicalForm.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <map>
#include <utility>
#include <vector>

namespace nuv
{

class SinglePrecisionBatch
{
public:
    explicit SinglePrecisionBatch(SolveOptions options);

    /// Takes a model as it stands now.
    void Take(const Model& model);

    /// @return of each model, in the order in which they were taken, verdict, objective and values
    /// with the bits of a solve of its own, but that a basis which comes back ends none before the
    /// limit of pivots; the batch is then empty.
    [[nodiscard]] std::vector<Solution> Solve();

private:
    /// A model that waits for the lanes.
    struct Waiting
    {
        std::size_t place;  ///< among the solutions
        double sign;
        BoundedForm form;
        Canonicalisation canonicalised;
    };
    using Shape = std::pair<Index, Index>;  ///< rows and columns

    void SolveGroup(const Shape& shape, const std::vector<Waiting>& group);

    SolveOptions m_options;
    std::vector<Solution> m_solutions;
    std::map<Shape, std::vector<Waiting>> m_groups;
};

}  // namespace nuv
