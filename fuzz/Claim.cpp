// Any bytes given to `prove` as a solution file, of four models with the same names: what is read
// is a claim or an error, and no certificate, basis, conflict or value makes what is false
// confirmed.
#include "fuzz/Target.hpp"

#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Report/CheckClaim.hpp"
#include "Nuv/Report/ClaimReader.hpp"
#include "Nuv/Report/ClaimText.hpp"

#include <string_view>
#include <utility>
#include <vector>

namespace
{

struct KnownModel
{
    nuv::Model model;
    nuv::Status truth;
    nuv::Rational optimum;
};

KnownModel Known(std::string_view text, nuv::Status truth, nuv::Rational optimum)
{
    return {nuv::ReadLp(text, "model.lp").model.value(), truth, std::move(optimum)};
}

const std::vector<KnownModel>& KnownModels()
{
    static const std::vector<KnownModel> kModels = {
        Known("max 30 x + 70 y st a: 2 x + 5 y <= 300 b: 4 x + 3 y <= 240 end",
              nuv::Status::Optimal, nuv::Rational(29700, 7)),
        // On a + b = 4 the objective is 8 + x, and row b keeps x from 1 to 5.5.
        Known("min 3 x + 2 y st a: x + y = 4 b: -2 <= x - y <= 7 bounds y free end",
              nuv::Status::Optimal, 9),
        Known("max x + y st a: x + y >= 5 b: x + 3 y <= 3 end", nuv::Status::Infeasible, 0),
        Known("max x + y st a: x - y <= 3 b: x >= 1 end", nuv::Status::Unbounded, 0),
    };
    return kModels;
}

bool IsTrue(nuv::ClaimedStatus claimed, nuv::Status truth)
{
    switch (claimed)
    {
    case nuv::ClaimedStatus::Optimal:
        return truth == nuv::Status::Optimal;
    case nuv::ClaimedStatus::Infeasible:
        return truth == nuv::Status::Infeasible;
    case nuv::ClaimedStatus::Unbounded:
        return truth == nuv::Status::Unbounded;
    case nuv::ClaimedStatus::Feasible:
        break;
    }
    return truth != nuv::Status::Infeasible;
}

void ExpectSound(const KnownModel& known, const nuv::Claim& claim, double tolerance)
{
    nuv::ClaimOptions options;
    options.tolerance = tolerance;
    const nuv::ClaimReport report = nuv::CheckClaim(known.model, claim, options);
    const bool isConfirmed = report.judgement == nuv::Judgement::Confirmed;
    EXPECT_NE(report.judgement, nuv::Judgement::Undecided) << "no limit was set";
    EXPECT_TRUE(!isConfirmed || IsTrue(claim.status, known.truth));
    EXPECT_TRUE(claim.status == nuv::ClaimedStatus::Feasible || report.truth == known.truth);
    EXPECT_TRUE(report.truth != nuv::Status::Optimal || report.optimum == known.optimum);
    if (isConfirmed && tolerance == 0.0 && report.hasPoint)
    {
        EXPECT_EQ(report.violated, "");
        EXPECT_TRUE(claim.status != nuv::ClaimedStatus::Optimal ||
                    report.objective == known.optimum);
    }
    EXPECT_EQ(report.disagreementCount == 0, isConfirmed);
    EXPECT_FALSE(nuv::ClaimText(report).empty());
    EXPECT_TRUE(nuv::ClaimJson(known.model, report).ends_with("}\n"));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const KnownModel& known : KnownModels())
    {
        nuv::ClaimReadResult read = nuv::ReadClaim(text, "claim", known.model, std::nullopt);
        if (!read.claim)
        {
            EXPECT_EQ(read.diagnostics.size(), 1U);
            EXPECT_GE(read.diagnostics.front().error.line, 1U);
            EXPECT_FALSE(nuv::Render(read.diagnostics.front()).empty());
            continue;
        }
        ExpectSound(known, *read.claim, 1e-9);
        ExpectSound(known, *read.claim, 0.0);
        read.claim->status = nuv::ClaimedStatus::Feasible;
        ExpectSound(known, *read.claim, 0.0);
    }
    return 0;
}
