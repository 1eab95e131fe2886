/// Whether an optimum is reached at one point alone, and priced by one set of duals alone.
#pragma once

#include <cstdint>

namespace nuv
{

struct BoundedForm;
struct CertifiedResult;
class SolveControl;

/// Whether there is another optimal point, or other optimal duals.
enum class Uniqueness : std::uint8_t
{
    Unknown,    ///< not asked for, no proved optimum, or stopped before it was decided
    Unique,     ///< there is no other
    NotUnique,  ///< there is another
};

/// What is known of both.
struct UniqueOptimum
{
    Uniqueness point = Uniqueness::Unknown;  ///< of the values of the variables
    Uniqueness duals = Uniqueness::Unknown;  ///< of the multipliers of the rows
};

/// Decides both exactly, of a proved optimum at its basis. A reduced cost of zero or a basic
/// variable at its bound is not yet another optimum: where there are such, a linear program asks
/// whether there is a way to it.
[[nodiscard]] UniqueOptimum FindUniqueness(const BoundedForm& form, const CertifiedResult& optimum,
                                           SolveControl& control);

}  // namespace nuv
