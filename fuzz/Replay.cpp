// Runs a target over the files and directories named, without a fuzzer: how every compiler and
// every sanitizer meets the inputs that were found.
#include "fuzz/Target.hpp"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace
{
std::vector<std::filesystem::path> FilesOf(int count, char** arguments)
{
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < count; ++i)
    {
        if (!std::filesystem::is_directory(arguments[i]))
        {
            files.emplace_back(arguments[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i]))
            files.push_back(entry.path());
    }
    return files;
}
}  // namespace

int main(int argc, char** argv)
{
    (void)LLVMFuzzerInitialize(&argc, &argv);
    const std::vector<std::filesystem::path> files = FilesOf(argc, argv);
    for (const std::filesystem::path& path : files)
    {
        std::ifstream file(path, std::ios::binary);
        if (!file)
        {
            std::fprintf(stderr, "%s cannot be read\n", path.c_str());
            return 1;
        }
        // Shown only if the process ends here.
        std::printf("%s\n", path.c_str());
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        (void)LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                     bytes.size());
    }
    std::printf("%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
