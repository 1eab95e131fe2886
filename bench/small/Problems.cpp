// Problems by the hundred.
#include "bench/small/Problems.hpp"

#include <numeric>

namespace bench
{
Problems::Problems(const Shape& shape, std::size_t count)
{
    const std::size_t maxPivots = 20 * (shape.rows + shape.columns);
    for (std::uint64_t seed = 1; inputs.size() != count; ++seed)
    {
        Input input = MakeInput(MakeInstance(shape.family, shape.rows, shape.columns, seed));
        if (CountPivots(input, maxPivots, 1.0).verdict == Verdict::Stopped)
            continue;
        const Instance& x = input.instance;
        A.insert(A.end(), x.A.begin(), x.A.end());
        b.insert(b.end(), x.b.begin(), x.b.end());
        c.insert(c.end(), x.c.begin(), x.c.end());
        inputs.push_back(std::move(input));
    }
    verdicts.resize(count);
    objectives.resize(count);
    values.resize(count * shape.columns);
    pivots.resize(count);
    batch.numVars = static_cast<NuvUint>(shape.columns);
    batch.numConstraints = static_cast<NuvUint>(shape.rows);
    batch.count = count;
    batch.A = A.data();
    batch.strideA = shape.rows * shape.columns;
    batch.b = b.data();
    batch.strideB = shape.rows;
    batch.c = c.data();
    batch.strideC = shape.columns;
    batch.verdicts = verdicts.data();
    batch.objectives = objectives.data();
    batch.values = values.data();
    batch.pivots = pivots.data();
}

double Problems::MeanPivots() const
{
    const double all = std::accumulate(pivots.begin(), pivots.end(), 0.0);
    return all / static_cast<double>(pivots.size());
}

void Problems::SolveBy(const nuv::BatchWay& way)
{
    const std::size_t needed = nuv::WorkspaceSize(&batch, &way);
    if (needed > memorySize)
    {
        memory = std::make_unique<char[]>(needed);
        memorySize = needed;
    }
    nuv::SolveRange(&batch, &way, 0, batch.count, memory.get());
}

nuv::BatchWay Problems::OwnWay() const
{
    return nuv::WayOf(&batch);
}
}  // namespace bench
