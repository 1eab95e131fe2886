// The corpus' random models in the yardstick's types.
#pragma once

#include <algorithm>
#include <vector>

#include "Nuv/Corpus/RandomModels.hpp"
#include "tests/reference/NaiveSimplex.hpp"

namespace reference
{
using nuv::corpus::IsTame;
using nuv::corpus::NameOf;
using nuv::corpus::Random;
using nuv::corpus::SpecialValue;
using Family = nuv::corpus::RandomFamily;

/// All families.
inline const std::vector<Family>& Families()
{
    static const std::vector<Family> kAll = []
    {
        std::vector<Family> found;
        for (std::uint32_t i = 0; i != nuv::corpus::kNumRandomFamilies; ++i)
            found.push_back(static_cast<Family>(i));
        return found;
    }();
    return kAll;
}

/// A model of the corpus in vectors.
inline Problem ProblemOf(const nuv::corpus::Problem& p)
{
    return {p.rows,
            p.columns,
            {p.A, p.A + p.NumCoefficients()},
            {p.b, p.b + p.rows},
            {p.c, p.c + p.columns}};
}

/// A model of about rows × columns.
inline Problem MakeModel(Family family, std::size_t rows, std::size_t columns, std::uint64_t seed)
{
    std::vector<float> A(std::max(rows * columns, nuv::corpus::kRoomForCoefficients));
    std::vector<float> b(std::max<std::size_t>(rows, nuv::corpus::kRoomForRows));
    std::vector<float> c(std::max<std::size_t>(columns, nuv::corpus::kRoomForColumns));
    nuv::corpus::Problem p = {static_cast<std::uint32_t>(rows), static_cast<std::uint32_t>(columns),
                              A.data(), b.data(), c.data()};
    MakeRandomModel(family, seed, &p);
    return ProblemOf(p);
}
}  // namespace reference
