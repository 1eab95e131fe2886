// What the writers write reads back as the model it was, bit for bit, and crossing from one format
// to the other and back changes nothing.
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Io/Mps/MpsReader.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "tests/io/mps/MpsText.hpp"
#include "tests/model/RandomModel.hpp"
#include "tests/model/SameModel.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace writer_round_trips
{

using namespace nuv;
using nuv::test::Difference;
using nuv::test::RandomModel;

const std::uint64_t kModels = ShareOf(4000U);

/// The model as it comes back from LP text; one that says why not, if it does not.
Model ThroughLp(const Model& model)
{
    const WriteResult writing = WriteLp(model);
    EXPECT_TRUE(writing.Ok());
    ReadResult reading = ReadLp(writing.text.value_or(""), "model.lp");
    EXPECT_TRUE(reading.Ok()) << nuv::test::Said(reading) << "\n" << writing.text.value_or("");
    return reading.Ok() ? std::move(*reading.model) : Model();
}

Model ThroughMps(const Model& model, MpsForm form = MpsForm::ByContent)
{
    const WriteResult writing = WriteMps(model, form);
    EXPECT_TRUE(writing.Ok());
    ReadResult reading = ReadMps(writing.text.value_or(""), "model.mps");
    EXPECT_TRUE(reading.Ok()) << nuv::test::Said(reading) << "\n" << writing.text.value_or("");
    return reading.Ok() ? std::move(*reading.model) : Model();
}

TEST(Writers, LpTextReadsBackToTheSameBits)
{
    for (std::uint64_t seed = 0; seed < kModels; ++seed)
    {
        const Model model = RandomModel(seed);
        ASSERT_EQ(Difference(model, ThroughLp(model)), "") << "seed " << seed << "\n"
                                                           << *WriteLp(model).text;
    }
}

TEST(Writers, MpsTextReadsBackToTheSameBits)
{
    for (std::uint64_t seed = 0; seed < kModels; ++seed)
    {
        const Model model = RandomModel(seed);
        ASSERT_EQ(Difference(model, ThroughMps(model)), "") << "seed " << seed << "\n"
                                                            << *WriteMps(model).text;
    }
}

TEST(Writers, ModelsCrossFromLpToMpsAndBackUnchanged)
{
    for (std::uint64_t seed = 0; seed < kModels / 4; ++seed)
    {
        const Model model = RandomModel(seed);
        const Model first = ThroughLp(model);
        const Model second = ThroughMps(first);
        ASSERT_EQ(Difference(model, ThroughLp(second)), "") << "seed " << seed;
        ASSERT_EQ(*WriteLp(first).text, *WriteLp(ThroughLp(second)).text) << "seed " << seed;
        ASSERT_EQ(*WriteMps(model).text, *WriteMps(second).text) << "seed " << seed;
    }
}

/// Every fourth pair of numbers of opposite sign and like size is the limits of a range that no
/// double leads from one to the other.
TEST(Writers, RangesThatNoDoubleSpansKeepTheirBits)
{
    std::size_t longer = 0;
    for (std::uint64_t at = 0; at < 2000; ++at)
    {
        const double lower = -(1.0 + static_cast<double>(at) * 0x1.23456789abcdep-14);
        const double upper = 1.0 + static_cast<double>(at * at % 8191) * 0x1.fedcba9876543p-14;
        Model model;
        const Variable x = model.AddVariable("x");
        (void)model.Add("r", Range(lower, 1.0 * x, upper));
        model.SetObjectiveName("obj");
        ASSERT_EQ(Difference(model, ThroughMps(model)), "") << at;
        bool isSum = false;
        for (const double range : {upper - lower, std::nextafter(upper - lower, 0.0),
                                   std::nextafter(upper - lower, Infinity)})
            isSum = isSum || lower + range == upper;
        longer += isSum ? 0 : 1;
    }
    EXPECT_GT(longer, 100u);
}

TEST(Writers, FilesOfTheNetlibSetSurviveBothFormats)
{
    for (const char* const name : {"afiro", "boeing1", "e226", "forplan", "grow15", "vtp.base"})
    {
        const std::string path = NUV_TEST_MODELS "/netlib/" + std::string(name) + ".mps";
        const ReadResult reading = ReadModelFile(path);
        ASSERT_TRUE(reading.Ok()) << name;
        EXPECT_EQ(Difference(*reading.model, ThroughMps(*reading.model)), "") << name;
        const WriteResult lp = WriteLp(*reading.model);
        const ReadResult back = ReadLp(*lp.text, "model.lp");
        ASSERT_TRUE(back.Ok()) << name << nuv::test::Said(back);
        EXPECT_EQ(back.model->NonzeroCount(), reading.model->NonzeroCount()) << name;
        // The names have changed; once they have, nothing else does.
        EXPECT_EQ(Difference(*back.model, ThroughMps(*back.model)), "") << name;
        EXPECT_EQ(*WriteLp(*back.model).text, *lp.text) << name;
    }
}

}  // namespace writer_round_trips
