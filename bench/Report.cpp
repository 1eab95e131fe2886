// Turns the benchmark programs' files into the tables and the picture of docs/performance.md.
//
//     bench_report RESULTS                      prints the blocks
//     bench_report RESULTS DOCUMENT PICTURE     rewrites what stands between the document's markers
#include <array>
#include <cstdlib>
#include <iostream>

#include "bench/Document.hpp"
#include "bench/Picture.hpp"
#include "bench/Tables.hpp"

namespace bench
{
namespace
{
struct Maker
{
    const char* name;
    std::string (*make)(const Results&);
};

constexpr std::array<Maker, 7> makers = {{{"machine", MachineBlock},
                                          {"aims", AimsBlock},
                                          {"comparison", ComparisonBlock},
                                          {"steps", StepsBlock},
                                          {"kernels", KernelsBlock},
                                          {"growth", GrowthBlock},
                                          {"memory", MemoryBlock}}};

std::vector<Block> MakeBlocks(const Results& results)
{
    std::vector<Block> blocks;
    for (const Maker& maker : makers)
        blocks.push_back({maker.name, maker.make(results)});
    return blocks;
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    if (count != 2 && count != 4)
    {
        std::cerr << "usage: bench_report RESULTS [DOCUMENT PICTURE]\n";
        return 64;
    }
    const bench::Results results = bench::ReadResults(words[1]);
    if (results.instances.empty())
    {
        std::cerr << words[1] << " holds no comparison\n";
        return 66;
    }
    const std::vector<bench::Block> blocks = bench::MakeBlocks(results);
    if (count == 2)
    {
        bench::PrintBlocks(blocks);
        return EXIT_SUCCESS;
    }
    const bool isWritten = bench::RewriteBlocks(words[2], blocks) &&
                           bench::WriteWhole(words[3], bench::DrawPicture(results));
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}
