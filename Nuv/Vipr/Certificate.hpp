/// A certificate in the VIPR 1.0 format as a record: the problem, what is claimed of it, and the
/// steps that prove it. What the sections mean, and the section for rays that VIPR has not, is in
/// docs/certificates.md. There are no integer variables.
#pragma once

#include "Nuv/Algebra/Rational.hpp"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace nuv::vipr
{

struct Term
{
    std::size_t index = 0;
    Rational value;

    friend bool operator==(const Term&, const Term&) = default;
};

/// A sparse vector: indices increase, no value is zero.
using Terms = std::vector<Term>;

enum class Relation : std::uint8_t
{
    AtMost,
    Equal,
    AtLeast,
};

struct Constraint
{
    std::string label;
    Relation relation = Relation::Equal;
    Rational side;
    Terms terms;  ///< by variable
};

/// A linear program whose rows and bounds are constraints alike, the bounds first.
struct Problem
{
    bool maximize = false;
    std::vector<std::string> variables;
    Terms objective;
    std::vector<Constraint> constraints;
    std::size_t bounds = 0;  ///< so many of the constraints
};

enum class Goal : std::uint8_t
{
    Infeasible,
    Range,
    Unbounded,
};

enum class Reason : std::uint8_t
{
    Assumption,
    Combination,
    Rounding,
    Split,
};

/// A constraint and what it follows from. Constraints count from those of the problem on.
struct Derivation
{
    Constraint constraint;
    Reason reason = Reason::Combination;
    Terms multipliers;                    ///< Combination, Rounding: by constraint
    std::array<std::size_t, 4> split{};   ///< Split: a constraint and its assumption, twice
    std::optional<std::size_t> lastUser;  ///< no constraint behind this one refers to it
};

struct Certificate
{
    Problem problem;
    Goal goal = Goal::Infeasible;
    std::optional<Rational> lower;  ///< Range: of the optimal value, without a constant
    std::optional<Rational> upper;
    std::vector<Terms> points;
    std::vector<Terms> rays;  ///< Unbounded
    std::vector<Derivation> derivations;
};

}  // namespace nuv::vipr
