/// Forms that are drawn for the record of ways: of each kind that the simplex in doubles treats in
/// a way of its own.
#pragma once

#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"
#include "tests/support/Random.hpp"

#include <span>
#include <string>
#include <vector>

namespace nuv::test
{

[[nodiscard]] Index Between(Random& random, Index least, Index most);

/// One of them.
[[nodiscard]] double Any(Random& random, std::span<const double> numbers);

/// In [-1, 1), with all the bits that a double has.
[[nodiscard]] double DrawShare(Random& random);

/// Numbers of which some may be none, of which there are many.
void AddNumbers(Way& way, const std::vector<double>& numbers);

/// What a form is drawn by; of a share "one of so many" none if it is 0.
struct Drawing
{
    Index rows = 10;
    Index columns = 15;
    Index entries = 4;       ///< of a row
    int fixed = 0;           ///< one column of so many, of none if 0
    int free = 0;            ///< has no bound
    int boxed = 0;           ///< has two
    int falling = 0;         ///< has an upper one alone
    int equations = 4;       ///< one row of so many
    int ranges = 5;          ///< has two sides
    bool isWhole = false;    ///< small integers, else all bits of a double
    bool isTied = false;     ///< costs and sides of few values, most rows tight at one point
    int exponents = 0;       ///< of the factors of rows and columns, from its negative on
    bool isFeasible = true;  ///< rows are drawn around a point
    double cost = 1.0;       ///< the largest
    double least = -kInf;    ///< lowest cost
    double size = 1.0;       ///< of the values
    double nearness = 0.0;   ///< not 0: half of the columns are the one before but for this share
};

/// Where many bases are optimal, and many rows block a step.
inline constexpr Drawing kTied{.rows = 6,
                               .columns = 8,
                               .entries = 4,
                               .boxed = 3,
                               .equations = 3,
                               .isWhole = true,
                               .isTied = true};

[[nodiscard]] BoundedForm Draw(Random& random, const Drawing& drawing);

/// Pivots that are small, safe or neither.
[[nodiscard]] double DrawPivot(Random& random);

/// What decides at a tolerance: tolerances, their neighbours, and numbers that differ by them.
[[nodiscard]] double DrawEdge(Random& random);
[[nodiscard]] Interval DrawEdges(Random& random);

/// All of whose numbers are such.
[[nodiscard]] BoundedForm DrawAtTolerances(Random& random);

/// The same with many rows and few entries.
[[nodiscard]] BoundedForm DrawSparselyAtTolerances(Random& random);

/// The same form with some zeros among its entries.
[[nodiscard]] BoundedForm WithZeros(const BoundedForm& form, Random& random);

/// The same with every number a quotient, some of them long, that no double says.
[[nodiscard]] BoundedForm WithQuotients(const BoundedForm& form, Random& random);

/// Any basis that fits.
[[nodiscard]] Basis DrawBasis(Random& random, const BoundedForm& form);

[[nodiscard]] BoundedForm DrawAssignment(Random& random, Index size);
[[nodiscard]] BoundedForm DrawChain(Random& random, Index size);
[[nodiscard]] BoundedForm DrawEndless(Index columns);
[[nodiscard]] BoundedForm SingletonRows(Index count);

/// What is done with a form of a kind.
using FormTaker = void (*)(const BoundedForm& form, Random& random, Way& way);

/// Kinds of so many forms: as drawn, small ones of all sorts, and nearly dependent ones.
[[nodiscard]] Kind OfDrawn(std::string name, int count, const Drawing& drawing, FormTaker take);
[[nodiscard]] Kind OfSmall(std::string name, int count, FormTaker take);
[[nodiscard]] Kind OfDependent(std::string name, int count, FormTaker take);

}  // namespace nuv::test
