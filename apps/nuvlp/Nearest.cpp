#include "Nearest.hpp"

#include <algorithm>

namespace nuvlp
{
namespace
{

/// The optimal string alignment distance, row by row of its table (Damerau 1964).
std::size_t Distance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> before(to.size() + 1);
    std::vector<std::size_t> last(to.size() + 1);
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t k = 0; k <= to.size(); ++k)
        last[k] = k;
    for (std::size_t i = 1; i <= from.size(); ++i)
    {
        row[0] = i;
        for (std::size_t k = 1; k <= to.size(); ++k)
        {
            const std::size_t replaced = last[k - 1] + (from[i - 1] == to[k - 1] ? 0 : 1);
            row[k] = std::min({replaced, last[k] + 1, row[k - 1] + 1});
            if (i > 1 && k > 1 && from[i - 1] == to[k - 2] && from[i - 2] == to[k - 1])
                row[k] = std::min(row[k], before[k - 2] + 1);
        }
        std::swap(before, last);
        std::swap(last, row);
    }
    return last[to.size()];
}

}  // namespace

std::string Nearest(std::string_view word, const std::vector<std::string>& known)
{
    std::string nearest;
    std::size_t least = word.size() / 3 + 1;
    for (const std::string& each : known)
    {
        // Two letters at least: an option's dashes begin every option.
        const bool isBeginning = word.size() >= 4 && each.starts_with(word);
        const std::size_t distance = isBeginning ? 1 : Distance(word, each);
        if (distance >= least)
            continue;
        least = distance;
        nearest = each;
    }
    return nearest;
}

std::string DidYouMean(std::string_view word)
{
    return word.empty() ? "" : "; did you mean " + std::string(word) + "?";
}

}  // namespace nuvlp
