// What the figures were measured on.
#ifndef BENCH_MACHINE_HPP
#define BENCH_MACHINE_HPP

#include <string>
#include <vector>

namespace bench
{
struct Cache
{
    int level;
    double bytes;
};

/// The processor's name as it tells it.
std::string ProcessorName();
int ProcessorCount();
/// The data caches of a core, the nearest first; empty where the system does not say.
std::vector<Cache> DataCaches();
std::string CompilerName();
std::string SystemName();
/// Where a working set of that size lives: "L1", "L2", ... or "memory".
std::string LevelOf(double bytes);
}  // namespace bench

#endif
