// Read from /proc and /sys.
#include "bench/Machine.hpp"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace bench
{
namespace
{
std::string FirstLineOf(const std::string& path)
{
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

/// @return what follows the separator in the first line that starts with `name`.
std::string FieldOf(const std::string& path, const std::string& name, char separator)
{
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
    {
        if (!line.starts_with(name))
            continue;
        std::string value = line.substr(line.find(separator) + 1);
        std::erase(value, '"');
        return value.substr(std::min(value.find_first_not_of(" \t"), value.size()));
    }
    return "unknown";
}
}  // namespace

std::string ProcessorName()
{
    return FieldOf("/proc/cpuinfo", "model name", ':');
}

int ProcessorCount()
{
    return static_cast<int>(std::thread::hardware_concurrency());
}

std::vector<Cache> DataCaches()
{
    std::vector<Cache> caches;
    for (int index = 0; index < 8; ++index)
    {
        const std::string folder =
            "/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(index) + "/";
        const std::string type = FirstLineOf(folder + "type");
        if (type != "Data" && type != "Unified")
            continue;
        const std::string size = FirstLineOf(folder + "size");
        const double unit = size.ends_with('M') ? 1048576.0 : 1024.0;
        caches.push_back({std::atoi(FirstLineOf(folder + "level").c_str()),
                          std::strtod(size.c_str(), nullptr) * unit});
    }
    std::sort(caches.begin(), caches.end(),
              [](const Cache& x, const Cache& y) { return x.level < y.level; });
    return caches;
}

std::string CompilerName()
{
#ifdef __clang__
    return "clang " + std::to_string(__clang_major__) + "." + std::to_string(__clang_minor__);
#else
    return "g++ " + std::to_string(__GNUC__) + "." + std::to_string(__GNUC_MINOR__);
#endif
}

std::string SystemName()
{
    return FieldOf("/etc/os-release", "PRETTY_NAME", '=');
}

std::string LevelOf(double bytes)
{
    for (const Cache& cache : DataCaches())
        if (bytes <= cache.bytes)
            return "L" + std::to_string(cache.level);
    return "memory";
}
}  // namespace bench
