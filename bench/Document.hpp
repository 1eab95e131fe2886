// A document in which programs write their figures: a block stands between the lines
// `<!-- measured: NAME -->` and `<!-- end of NAME -->`, and all else is left alone.
#ifndef BENCH_DOCUMENT_HPP
#define BENCH_DOCUMENT_HPP

#include <string>
#include <vector>

namespace bench
{
struct Block
{
    std::string name;
    std::string text;
};

/// Writes the file as a whole; says on standard error if that fails.
bool WriteWhole(const std::string& path, const std::string& text);

/// Prints the blocks, each under its name.
void PrintBlocks(const std::vector<Block>& blocks);

/// Replaces these blocks of the document; none of them if it has no place for one.
bool RewriteBlocks(const std::string& path, const std::vector<Block>& blocks);
}  // namespace bench

#endif
