/// Writes models in the MPS format. What is written reads back to the same model, bit for bit:
/// numbers are the shortest decimals that do so, a range gets more digits where the difference of
/// its ends is no double. The objective's constant is the negative of the right-hand side of its
/// row; a maximisation has the section OBJSENSE; a row without limits is a G row with -1e30.
///
/// Fields lie in the columns of fixed MPS where they fit, and behind them, with a blank between,
/// where they do not: the result is fixed MPS if every name has at most 8 and every number at most
/// 12 characters, and free MPS in any case unless a name holds blanks.
///
/// What the format cannot hold: names with blanks (in free MPS), without text or too long (in fixed
/// MPS), which are changed (see WrittenNames); an objective without a name, which is called obj; a
/// bound of 1e30 and more, which is infinite; a row whose lower limit is above its upper one. The
/// order of the coefficients within a row becomes that of the columns.
#pragma once

#include "Nuv/Io/ReadResult.hpp"
#include "Nuv/Io/WriteResult.hpp"
#include "Nuv/Model/Model.hpp"

namespace nuv
{

/// ByContent gives what fits: free MPS, unless names hold blanks and all fields fit fixed MPS.
[[nodiscard]] WriteResult WriteMps(const Model& model, MpsForm form = MpsForm::ByContent);

}  // namespace nuv
