/// The models of tests/models whose answers are known from elsewhere: where they are, and what is
/// known of them.
#pragma once

#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuv::test
{

struct KnownModel
{
    std::string name;  ///< the file's, without its ending
    std::string path;
    Status status = Status::Optimal;
    Rational optimum = 0;  ///< Optimal: with the objective's constant
    /// How far the optimum that was published may be from the true one, being rounded; relative.
    Rational error = 0;
};

/// The lines of netlib/optima.tsv whose file is in `folder`, by size of their matrix. The optima
/// are those of the decimal numbers in the files, to 32 digits where anyone has computed so many.
[[nodiscard]] std::vector<KnownModel> KnownNetlibModels(const std::string& folder);

/// The files of `folder`, by name, none of which has a feasible point.
[[nodiscard]] std::vector<KnownModel> KnownInfeasibleModels(const std::string& folder);

/// The files of `folder`, by name; each tells its published answer in a comment.
[[nodiscard]] std::vector<KnownModel> KnownTextbookModels(const std::string& folder);

/// The number that "5/4", "-1.5e-3" or "7" stands for; none for any other text.
[[nodiscard]] std::optional<Rational> ParseRational(std::string_view text);

/// |value - known| / |known|, or |value - known| where the known one is zero.
[[nodiscard]] Rational RelativeDistance(const Rational& value, const Rational& known);

}  // namespace nuv::test
