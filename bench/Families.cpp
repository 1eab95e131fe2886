// Instances of the benchmarks.
#include "bench/Families.hpp"

namespace bench
{
namespace
{
/// The non-zeros line by line; element k of line i stands at i · lineStep + k · step.
NonZeros Collect(const std::vector<float>& A, std::size_t lines, std::size_t lineStep,
                 std::size_t length, std::size_t step)
{
    NonZeros found;
    for (std::size_t i = 0; i < lines; ++i)
    {
        found.starts.push_back(static_cast<int>(found.indices.size()));
        for (std::size_t k = 0; k < length; ++k)
        {
            const float a = A[i * lineStep + k * step];
            if (a == 0.0F)
                continue;
            found.indices.push_back(static_cast<int>(k));
            found.values.push_back(static_cast<double>(a));
        }
    }
    found.starts.push_back(static_cast<int>(found.indices.size()));
    return found;
}
}  // namespace

bool FindFamily(std::string_view name, Family* family)
{
    for (std::uint32_t i = 0; i != nuv::corpus::kNumBenchmarkFamilies; ++i)
        if (name == NameOf(static_cast<Family>(i)))
        {
            *family = static_cast<Family>(i);
            return true;
        }
    return false;
}

Instance MakeInstance(Family family, std::size_t rows, std::size_t columns, std::uint64_t seed)
{
    Instance x = {family,
                  rows,
                  columns,
                  std::vector<float>(rows * columns),
                  std::vector<float>(rows),
                  std::vector<float>(columns)};
    nuv::corpus::Problem p = {static_cast<std::uint32_t>(rows), static_cast<std::uint32_t>(columns),
                              x.A.data(), x.b.data(), x.c.data()};
    MakeBenchmarkModel(family, seed, &p);
    return x;
}

NonZeros RowsOf(const Instance& instance)
{
    return Collect(instance.A, instance.rows, instance.columns, instance.columns, 1);
}

NonZeros ColumnsOf(const Instance& instance)
{
    return Collect(instance.A, instance.columns, 1, instance.rows, instance.columns);
}
}  // namespace bench
