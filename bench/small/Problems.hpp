// Problems of one family and shape with seeds of their own, in the arrays of a batch and in the
// shapes that the contenders ask for. None of them cycles: those that the core gives up are passed
// over, as the hand-written tableau has no limit to its name.
#pragma once

#include <memory>
#include <vector>

#include "Nuv/Utils/Batch/Batch.h"
#include "Nuv/Utils/NuvLinearProgrammingBatch.h"
#include "bench/contenders/Contender.hpp"

namespace bench
{
struct Shape
{
    Family family;
    std::size_t rows;
    std::size_t columns;
};

class Problems
{
public:
    Problems(const Shape& shape, std::size_t count);

    const std::vector<Input>& Inputs() const
    {
        return inputs;
    }

    /// The pivots of all, divided by their number.
    double MeanPivots() const;

    /// Solves all by a way; verdicts, objectives and values are the answers.
    void SolveBy(const nuv::BatchWay& way);
    /// The way that the library takes.
    nuv::BatchWay OwnWay() const;

    const std::vector<float>& Objectives() const
    {
        return objectives;
    }

private:
    NuvLinearProgrammingBatch batch = {};
    std::vector<Input> inputs;
    std::vector<float> A;
    std::vector<float> b;
    std::vector<float> c;
    std::vector<NuvUint> verdicts;
    std::vector<float> objectives;
    std::vector<float> values;
    std::vector<NuvUint> pivots;
    std::unique_ptr<char[]> memory;
    std::size_t memorySize = 0;
};
}  // namespace bench
