// docs/performance.svg: solve time against size, every contender, one panel per family, both axes
// logarithmic. Drawn directly; the same results give the same bytes. Colours follow the reader's
// light or dark scheme, and each contender has a marker of its own for those who do not see the
// colours.
#ifndef BENCH_PICTURE_HPP
#define BENCH_PICTURE_HPP

#include <string>

#include "bench/Results.hpp"

namespace bench
{
std::string DrawPicture(const Results& results);
}  // namespace bench

#endif
