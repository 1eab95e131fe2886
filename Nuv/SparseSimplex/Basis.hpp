/// A basis of a bounded form: for each column and row whether its variable (for a row, the logical)
/// is basic or at which bound it rests. This is what one solving stage hands to the next.
/// Invariant of a fitted basis: as many basic variables as rows, and every nonbasic variable rests
/// at a finite bound, or at zero if it has none.
#pragma once

#include "Nuv/Algebra/Index.hpp"

#include <cstdint>
#include <vector>

namespace nuv
{

struct BoundedForm;

/// Whether a variable or row is basic, and where it rests if not.
enum class BasisStatus : std::uint8_t
{
    Basic,    ///< its value follows from the others
    AtLower,  ///< nonbasic at its lower bound or side
    AtUpper,  ///< nonbasic at its upper bound or side
    Free,     ///< nonbasic at zero, having no bound
};

/// What is basic: as many columns and rows together as there are rows, for a basis that fits.
struct Basis
{
    std::vector<BasisStatus> columns;  ///< by variable
    std::vector<BasisStatus> rows;     ///< by row

    ///@{
    /// By the bounded form's index of variables: columns first, then the logicals of the rows.
    [[nodiscard]] BasisStatus& operator[](Index variable) noexcept
    {
        return variable < columns.size() ? columns[variable] : rows[variable - columns.size()];
    }
    [[nodiscard]] BasisStatus operator[](Index variable) const noexcept
    {
        return variable < columns.size() ? columns[variable] : rows[variable - columns.size()];
    }
    ///@}
    /// Whether all rest alike.
    bool operator==(const Basis&) const = default;
};

/// Where a nonbasic variable rests that has no better reason: the finite bound of smaller
/// magnitude, or zero.
[[nodiscard]] BasisStatus DefaultNonbasicStatus(double lower, double upper) noexcept;

/// By how much a variable's reduced cost has the wrong sign: positive if moving the variable off
/// its bound would improve the objective. Negative if the sign is right; a basic variable cannot be
/// wrong. For a fixed variable, which cannot move, it means nothing.
[[nodiscard]] double DualInfeasibility(BasisStatus status, double reduced) noexcept;

/// All logicals basic.
[[nodiscard]] Basis SlackBasis(const BoundedForm& form);

/// Makes any basis a fitted one: wrong lengths are cut or filled up, surplus basic variables from
/// the end leave, missing ones are filled with logicals, impossible resting places are corrected.
/// Whether the basis matrix is singular is left to its factorisation.
void FitBasis(const BoundedForm& form, Basis& basis);

}  // namespace nuv
