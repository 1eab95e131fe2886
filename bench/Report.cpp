// Turns the benchmark programs' files into the tables and the picture of docs/performance.md.
//
//     bench_report RESULTS                      prints the blocks
//     bench_report RESULTS DOCUMENT PICTURE     rewrites what stands between the document's markers
//
// A block of the document stands between the lines `<!-- measured: NAME -->` and
// `<!-- end of NAME -->`; all else is left alone.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

#include "bench/Picture.hpp"
#include "bench/Tables.hpp"

namespace bench
{
namespace
{
struct Block
{
    const char* name;
    std::string (*make)(const Results&);
};

constexpr std::array<Block, 7> blocks = {{{"machine", MachineBlock},
                                          {"aims", AimsBlock},
                                          {"comparison", ComparisonBlock},
                                          {"steps", StepsBlock},
                                          {"kernels", KernelsBlock},
                                          {"growth", GrowthBlock},
                                          {"memory", MemoryBlock}}};

/// Replaces the block of that name.
/// @return false when the document has no markers for it.
bool Replace(std::string* document, const std::string& name, const std::string& text)
{
    const std::string start = "<!-- measured: " + name + " -->\n";
    const std::string end = "<!-- end of " + name + " -->\n";
    const std::size_t first = document->find(start);
    if (first == std::string::npos)
        return false;
    const std::size_t last = document->find(end, first);
    if (last == std::string::npos)
        return false;
    const std::size_t begin = first + start.size();
    // Tables need an empty line before them.
    document->replace(begin, last - begin, "\n" + text + "\n");
    return true;
}

bool WriteWhole(const char* path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        std::cerr << path << " could not be written\n";
    return static_cast<bool>(file);
}

bool Rewrite(const Results& results, const char* path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream contents;
    contents << file.rdbuf();
    std::string document = contents.str();
    for (const Block& block : blocks)
    {
        if (Replace(&document, block.name, block.make(results)))
            continue;
        std::cerr << path << " has no place for the block " << block.name << '\n';
        return false;
    }
    return WriteWhole(path, document);
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
    if (count == 2)
    {
        for (const bench::Block& block : bench::blocks)
            std::cout << "== " << block.name << "\n\n" << block.make(results) << '\n';
        return EXIT_SUCCESS;
    }
    const bool isWritten = bench::Rewrite(results, words[2]) &&
                           bench::WriteWhole(words[3], bench::DrawPicture(results));
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}
