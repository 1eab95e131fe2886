// The models are drawn with the tests' own generator, so that they do not depend on a library's.
#include "tests/model/RandomModel.hpp"

#include "tests/model/Generator.hpp"

#include <bit>
#include <cmath>
#include <string>
#include <utility>

namespace nuv::test
{
namespace
{

class Numbers : public Generator
{
public:
    using Generator::Generator;

    std::uint32_t Below(std::uint32_t limit)
    {
        return static_cast<std::uint32_t>(Generator::Below(limit));
    }

    /// A finite number other than 0, of magnitude below 1e30: small integers, decimals, full
    /// mantissas, subnormals.
    double Number()
    {
        const double sign = Below(2) == 0 ? 1.0 : -1.0;
        switch (Below(5))
        {
        case 0:
            return sign * (1.0 + Below(9));
        case 1:
            return sign * (1.0 + Below(99999)) / 1000.0;
        case 2:
            return sign * std::ldexp(1.0 + static_cast<double>(Next() >> 12) * 0x1p-52,
                                     static_cast<int>(Below(8)) - 4);
        case 3:
            return sign * std::ldexp(1.0 + static_cast<double>(Next() >> 12) * 0x1p-52,
                                     static_cast<int>(Below(1100)) - 1010);
        default:
            return sign * std::bit_cast<double>(1 + (Next() >> 12 >> Below(52)));
        }
    }

    /// A limit: a number, or now and then 0.
    double LimitNumber()
    {
        return Below(5) == 0 ? 0.0 : Number();
    }
};

std::string Name(Numbers& generator, char first, std::uint32_t index)
{
    std::string name(1, first);
    name += std::to_string(index);
    if (generator.Below(4) == 0)
        name += "_a_rather_long_name(with,signs)";
    if (generator.Below(8) == 0)
        name += "\xC3\xA9";
    return name;
}

/// Limits of every kind, lower <= upper unless `mayContradict`.
Bounds Limits(Numbers& generator, bool mayContradict)
{
    const double a = generator.LimitNumber();
    const double b = generator.LimitNumber();
    switch (generator.Below(6))
    {
    case 0:
        return {-Infinity, Infinity};
    case 1:
        return {-Infinity, a};
    case 2:
        return {a, Infinity};
    case 3:
        return {a, a};
    default:
        return a <= b || mayContradict ? Bounds{a, b} : Bounds{b, a};
    }
}

Expression Sum(Numbers& generator, const Model& model, std::uint32_t most)
{
    Expression sum;
    std::uint32_t column = generator.Below(3);
    for (std::uint32_t terms = generator.Below(most + 1);
         terms > 0 && column < model.VariableCount(); --terms)
    {
        sum += generator.Number() * model.VariableAt(column);
        column += 1 + generator.Below(4);
    }
    return sum;
}

}  // namespace

Model RandomModel(std::uint64_t seed)
{
    Numbers generator(seed);
    Model model;
    model.SetName(generator.Below(3) == 0 ? "" : "model " + std::to_string(seed));
    model.SetObjectiveName("cost");
    const std::uint32_t variables = 1 + generator.Below(12);
    for (std::uint32_t column = 0; column < variables; ++column)
    {
        const Bounds bounds = generator.Below(3) == 0 ? Bounds{} : Limits(generator, true);
        (void)model.AddVariable(Name(generator, 'x', column), bounds);
    }
    const std::uint32_t rows = generator.Below(10);
    for (std::uint32_t row = 0; row < rows; ++row)
    {
        const Bounds limits = Limits(generator, false);
        (void)model.Add(Name(generator, 'r', row),
                        Range(limits.lower, Sum(generator, model, 6), limits.upper));
    }
    Expression objective = Sum(generator, model, 8);
    if (generator.Below(2) == 0)
        objective += Expression(generator.Number());
    if (generator.Below(2) == 0)
        model.Maximize(objective);
    else
        model.Minimize(objective);
    return model;
}

}  // namespace nuv::test
