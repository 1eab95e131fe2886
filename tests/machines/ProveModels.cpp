// A program for any machine: reads models as text, solves them and expects each verdict to be
// proved, the optimum as the fraction that it is. It rests on the model layer and the standard
// library alone.
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <string_view>

namespace
{

struct Known
{
    std::string_view name;
    std::string_view text;
    nuv::Status status;
    std::string_view optimum;
};

constexpr Known kModels[] = {
    {"factory",
     "Maximize\n profit: 30 chairs + 70 tables\nSubject To\n"
     " wood: 2 chairs + 5 tables <= 300\n labour: 4 chairs + 3 tables <= 240\nEnd\n",
     nuv::Status::Optimal, "29700/7"},
    {"blending",
     "Minimize\n price: 310 a + 275 b + 360 c + 240 d + 295 e\nSubject To\n"
     " tonne: a + b + c + d + e = 1\n lead: 20 <= 10 a + 10 b + 40 c + 60 d + 30 e <= 30\n"
     " zinc: 10 a + 30 b + 50 c + 30 d + 30 e = 30\nBounds\n b <= 0.25\n d <= 0.5\nEnd\n",
     nuv::Status::Optimal, "1685/6"},
    {"beyond doubles",
     "Maximize\n sum: x + y + z\nSubject To\n a: 9007199254740991 x + y <= 3\n"
     " b: x + 9007199254740991 y <= 5\n c: 3 z - x <= 1\nEnd\n",
     nuv::Status::Optimal, "10141204801825863359471296708601/30423614405477498880521435873280"},
    {"contradiction", "Minimize\n x\nSubject To\n a: x + y <= 1\n b: x + y >= 2\nEnd\n",
     nuv::Status::Infeasible, ""},
    {"ray", "Maximize\n x + y\nSubject To\n a: x - y <= 1\n b: y - x <= 1\nEnd\n",
     nuv::Status::Unbounded, ""},
};

bool IsAsKnown(const Known& known)
{
    const nuv::ReadResult reading = nuv::ReadLp(known.text, known.name);
    if (!reading.Ok())
    {
        std::printf("%.*s: %s\n", static_cast<int>(known.name.size()), known.name.data(),
                    reading.GetError().text.c_str());
        return false;
    }
    const nuv::Solution solution = nuv::Solve(*reading.model);
    const bool isAsKnown = solution.proved && solution.status == known.status &&
                           (known.optimum.empty() || known.optimum == solution.exactObjective);
    std::printf("%.*s: %s %s\n", static_cast<int>(known.name.size()), known.name.data(),
                isAsKnown ? "proved" : "NOT AS KNOWN", solution.exactObjective.c_str());
    return isAsKnown;
}

}  // namespace

int main()
{
    bool areAsKnown = true;
    for (const Known& known : kModels)
        areAsKnown = IsAsKnown(known) && areAsKnown;
    return areAsKnown ? 0 : 1;
}
