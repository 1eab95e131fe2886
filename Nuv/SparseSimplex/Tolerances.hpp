/// Every threshold of the simplex in doubles, each with its reason. They apply to the scaled form,
/// whose entries lie around one. None of them decides a verdict that is reported: what a tolerance
/// misjudges costs pivots of the exact stage.
#pragma once

namespace nuv::tolerance
{

/// A value is within a bound that it misses by no more. Doubles carry 16 digits, a basis that is
/// solved costs a few of them; and Harris's ratio test lets bounds give way by as much.
inline constexpr double kFeasibility = 1e-9;

/// A reduced cost of no more has no sign. The same digits are left of it as of a value.
inline constexpr double kOptimality = 1e-9;

/// An entry of a column or row in terms of the basis that is no larger may be rounding alone, and
/// is neither a pivot nor a reason to stop a step.
inline constexpr double kSmallestPivot = 1e-9;

/// A pivot below this is taken only with fresh factors: dividing by it would magnify the rounding
/// of the updates since.
inline constexpr double kTrustedPivot = 1e-5;

/// Two computations of one number, by row and by column or updated and anew, may differ by this
/// share of it (and of one) before the factors are made anew: half of the digits.
inline constexpr double kAgreement = 1e-7;

/// With fresh factors nothing more can be done for accuracy, so a pivot is refused only if row and
/// column disagree about it by more than this share.
// same bits: one of many right choices
inline constexpr double kFreshAgreement = 0.1;

/// Of the pivots met in phase one, one may be chosen that is smaller than the largest by this
/// factor, but it need not be larger than kEnoughPivot: stopping short costs infeasibility.
inline constexpr double kPivotShare = 0.01;
inline constexpr double kEnoughPivot = 1e-3;

/// A leaving variable that misses its bound by less is put on it; by more, the bound comes to the
/// variable, so that the values of the others stay consistent.
inline constexpr double kSnap = 1e-12;

/// A pivot that improves the objective by no more stalls.
inline constexpr double kProgress = 1e-11;

/// Bounds are pushed apart by one to two times this share of their size: far above kFeasibility,
/// so that a step has a length, and small enough for the dual simplex to take back.
inline constexpr double kPush = 5e-7;

/// Multipliers below this contribute rounding only, as in the factorisation.
inline constexpr double kNegligible = 1e-14;

/// Marks a place of a row whose sum is zero as taken; far below everything that is looked at.
inline constexpr double kCancelled = 1e-100;

/// Devex weights beyond this have lost their reference framework, which is set anew (Forrest and
/// Goldfarb, Steepest-edge simplex algorithms for linear programming, 1992).
inline constexpr double kLargestWeight = 1e8;

/// In the dual ratio test a reduced cost may pass zero by this much for the sake of a larger pivot;
/// what passed is shifted back.
inline constexpr double kDualSlack = 1e-9;

/// A pivot of the dual simplex is safe from this size on, or from this share of the largest at
/// hand.
inline constexpr double kSafePivot = 1.0;
inline constexpr double kSafePivotShare = 0.1;

/// Costs are perturbed by one to two times this share of their size.
inline constexpr double kCostPush = 1e-6;

/// The same where a run of the dual simplex is long in spite of that: ties are what keeps it, and
/// the primal simplex, which takes back what this leads astray, has less to do than is spared.
inline constexpr double kLargeCostPush = 1e-3;

/// A steepest-edge weight that was believed to be less than this share of what it is has misled the
/// choice of the leaving variable.
inline constexpr double kWeightShare = 0.25;

/// Rounding may bring an updated weight to zero or below, which no row of an inverse has.
inline constexpr double kSmallestWeight = 1e-4;

/// The box of a free variable in the first phase of the dual simplex, next to which that of others,
/// of one, is small: a reduced cost of a free variable is wrong unless it is zero.
inline constexpr double kFreeBox = 1000.0;

}  // namespace nuv::tolerance
