#include "bench/Document.hpp"

#include <fstream>
#include <iostream>
#include <sstream>

namespace bench
{
namespace
{
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
}  // namespace

bool WriteWhole(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        std::cerr << path << " could not be written\n";
    return static_cast<bool>(file);
}

bool RewriteBlocks(const std::string& path, const std::vector<Block>& blocks)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream contents;
    contents << file.rdbuf();
    std::string document = contents.str();
    for (const Block& block : blocks)
    {
        if (Replace(&document, block.name, block.text))
            continue;
        std::cerr << path << " has no place for the block " << block.name << '\n';
        return false;
    }
    return WriteWhole(path, document);
}

void PrintBlocks(const std::vector<Block>& blocks)
{
    for (const Block& block : blocks)
        std::cout << "== " << block.name << "\n\n" << block.text << '\n';
}
}  // namespace bench
