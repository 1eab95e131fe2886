// The pictures, byte for byte against files that were rendered and looked at.
#include "apps/nuvlp/plot/Picture.hpp"
#include "apps/nuvlp/plot/Svg.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace
{

nuv::Solution SolveWithPath(const nuv::Model& model)
{
    nuv::SolveOptions options;
    options.recordPath = true;
    return model.Solve(options);
}

nuv::Model Factory()
{
    nuv::Model model;
    const nuv::Variable chairs = model.AddVariable("chairs");
    const nuv::Variable tables = model.AddVariable("tables", {0, 40});
    model.Add("wood", 2 * chairs + 5 * tables <= 300);
    model.Add("labour", 4 * chairs + 3 * tables <= 240);
    model.Add("finish", chairs + tables <= 70);
    model.Maximize(30 * chairs + 70 * tables);
    return model;
}

/// A model too large for the plane, with a Phase I.
nuv::Model Works()
{
    nuv::Model model;
    std::vector<nuv::Variable> products;
    for (char c = 'a'; c != 'm'; ++c)
        products.push_back(model.AddVariable(std::string(1, c)));
    std::uint32_t state = 12345;
    const auto draw = [&]
    {
        state = state * 1103515245U + 12345U;
        return static_cast<double>((state >> 16) % 19 + 1);
    };
    const auto sum = [&](bool weighted)
    {
        nuv::Expression expression;
        for (const nuv::Variable& product : products)
            expression += (weighted ? draw() : 1.0) * product;
        return expression;
    };
    for (char c = 'A'; c != 'O'; ++c)
    {
        const nuv::Expression use = sum(true);  // drawn before the capacity
        model.Add(std::string("line_").append(1, c), use <= 100 * draw());
    }
    model.Add("demand", sum(false) >= 8);
    model.Maximize(sum(true));
    return model;
}

std::string Golden(const std::string& name)
{
    std::ifstream file(NUV_TEST_MODELS "/../golden/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Leaves the picture beside the test program where it differs, to be rendered and looked at.
void ExpectGolden(const std::string& name, const std::string& picture)
{
    const bool isSame = picture == Golden(name);
    if (!isSame)
        std::ofstream(name, std::ios::binary) << picture;
    EXPECT_TRUE(isSame) << name << " differs; the picture is in the file " << name;
}

TEST(Picture, DrawsTwoVariablesInThePlane)
{
    const nuv::Model model = Factory();
    const nuv::Solution solution = SolveWithPath(model);
    ASSERT_EQ(solution.path.size(), 2U);
    ExpectGolden("plane.svg", nuv::DrawPicture(model, solution));
}

TEST(Picture, DrawsChartsOfALargerModel)
{
    const nuv::Model model = Works();
    const nuv::Solution solution = SolveWithPath(model);
    EXPECT_EQ(solution.exactObjective, "5600/17");
    ExpectGolden("charts.svg", nuv::DrawPicture(model, solution));
}

TEST(Picture, DrawsInfeasibleAndUnboundedModelsToo)
{
    nuv::Model none;
    const nuv::Variable x = none.AddVariable("x<&>");
    const nuv::Variable y = none.AddVariable("y");
    none.Add(x + y <= 1);
    none.Add(x + y >= 2);
    const std::string nothing = nuv::DrawPicture(none, SolveWithPath(none));
    EXPECT_NE(nothing.find("infeasible, proved"), std::string::npos);
    EXPECT_NE(nothing.find("x&lt;&amp;&gt;"), std::string::npos);
    EXPECT_EQ(nothing.find("class=\"area\""), std::string::npos);

    nuv::Model all;
    const nuv::Variable u = all.AddVariable("u");
    const nuv::Variable v = all.AddVariable("v");
    all.Add(u - v <= 1);
    all.Maximize(u + v);
    const std::string open = nuv::DrawPicture(all, SolveWithPath(all));
    EXPECT_NE(open.find("unbounded, proved"), std::string::npos);
    EXPECT_NE(open.find("class=\"area\""), std::string::npos);
}

TEST(Svg, RoundStepsAreOneTwoOrFive)
{
    EXPECT_EQ(nuv::RoundStep(10.0, 5), 2.0);
    EXPECT_EQ(nuv::RoundStep(73.0, 8), 10.0);
    EXPECT_EQ(nuv::RoundStep(0.9, 8), 0.2);
    EXPECT_EQ(nuv::RoundStep(4e6, 8), 5e5);
    EXPECT_EQ(nuv::RoundStep(0.0, 8), 1.0);
}

TEST(Svg, CoordinatesHaveTwoDecimalsAtMost)
{
    EXPECT_EQ(nuv::Coordinate(1.0 / 3.0), "0.33");
    EXPECT_EQ(nuv::Coordinate(-0.001), "0");
    EXPECT_EQ(nuv::Coordinate(12.5), "12.5");
}

}  // namespace
