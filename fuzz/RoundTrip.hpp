// What the two reader targets promise of a text that could be read.
#pragma once

#include "Nuv/Io/ReadResult.hpp"

namespace fuzz
{
/// Writes the model of a reading in both formats and reads both back: to the same model where the
/// writer has nothing to report, and to one that is written in the same words in any case. A
/// reading without a model has an error instead.
void ExpectRoundTrips(const nuv::ReadResult& reading);
}  // namespace fuzz
