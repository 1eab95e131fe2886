/// Which reader a file is for.
#include "Nuv/Model/ModelFile.hpp"

#include "Nuv/Model/LpReader.hpp"
#include "Nuv/Model/TextFile.hpp"

namespace nuv
{

Reading ReadModelFile(const std::string& path, const ReadOptions& options)
{
    const Result<std::string> text = ReadTextFile(path);
    if (!text)
    {
        Reading reading;
        reading.diagnostics.push_back(WithoutPlace(text.GetError()));
        return reading;
    }
    return ReadLp(*text, DisplayName(path), options);
}

}  // namespace nuv
