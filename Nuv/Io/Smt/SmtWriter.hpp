/// Writes models in SMT-LIB 2.6, logic QF_LRA, for solvers that decide whether formulas over the
/// reals can hold: a declaration for each variable, an assertion for each side of a bound or row,
/// and the objective as a function `%objective`, which no variable can be called. The question at
/// the end is whether the model has a feasible point; whether it has a better one than a value is
/// asked with (assert (> %objective value)) before it.
///
/// Every decimal is written as that decimal. Names are quoted; in them '|', '\', '%' and control
/// characters become %7C and the like. Nothing reads this format back.
#pragma once

#include "Nuv/Model/Model.hpp"

#include <string>

namespace nuv
{

[[nodiscard]] std::string WriteSmt(const Model& model);

}  // namespace nuv
