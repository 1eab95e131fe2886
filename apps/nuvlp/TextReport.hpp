/// A solution as people read it.
#pragma once

#include "Nuv/Model/Solution.hpp"

#include <string>

namespace nuvlp
{

enum class Detail
{
    Verdict,  ///< status and objective
    Full,     ///< and the tables
};

[[nodiscard]] std::string TextReport(const nuv::Model& model, const nuv::Solution& solution,
                                     Detail detail);

}  // namespace nuvlp
