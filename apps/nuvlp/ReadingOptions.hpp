/// The options of every verb that reads a model file.
#pragma once

#include "Nuv/Model/Reading.hpp"

#include <string>

namespace CLI
{
class App;
}

namespace nuvlp
{

struct ModelSource
{
    std::string file;
    nuv::ReadOptions options;
};

/// Adds FILE and the options that say how to read it; `source` must outlive the parse.
void AddModelSource(CLI::App& command, ModelSource& source);

}  // namespace nuvlp
