// Problems of one shape side by side, one in each lane of a vector: the state of the simplex method
// of all of them. Element (x, lane) of an array stands at x · lanes + lane. Not installed.
//
// Columns are counted from 0, the slack of row i being column n + i; `artificialColumn` stands for
// the artificial variable of Phase I, which after its forced first pivot is always basic.
#ifndef NUV_UTILS_BATCH_LANESTATE_H
#define NUV_UTILS_BATCH_LANESTATE_H

#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
inline constexpr NuvUint kMaxLanes = 16;
/// A key holds two numbers of 16 bits.
inline constexpr NuvUint kMaxKeyPart = 0xFFFF;
inline constexpr NuvUint kArtificialColumn = 0xFFFF;

/// Why a lane's problem is at its end, or at the end of a phase.
enum class LaneEnd : NuvUint
{
    None,
    /// A number is not finite, so that shorter forms no longer have the bits of the definition.
    NotFinite,
    Optimal,
    Unbounded,
    Stopped,
    /// The artificial variable is about to leave: Phase I has found a basis.
    Feasible
};

struct LaneState
{
    // By lane. Truth values have all bits alike.
    /// The row of the pending update, or m.
    alignas(64) NuvUint rows[kMaxLanes];
    /// Whether the basis goes on; where not, the next step starts from the slacks' or Phase I's.
    alignas(64) NuvUint isKept[kMaxLanes];
    /// Where the artificial variable is basic, or m.
    alignas(64) NuvUint artificialRows[kMaxLanes];
    alignas(64) NuvUint pivots[kMaxLanes];
    alignas(64) NuvUint isActive[kMaxLanes];
    /// What the last step chose.
    alignas(64) NuvUint entering[kMaxLanes];
    alignas(64) NuvUint leaving[kMaxLanes];
    alignas(64) NuvUint ends[kMaxLanes];

    /// The coefficients that all problems share, [m × n] without lanes, or null.
    const NuvFloat32* sharedA;
    NuvFloat32* A;        /// [m × n] row after row, unless it is shared
    NuvFloat32* inverse;  /// [m × m] row after row
    NuvFloat32* b;        /// [m]
    /// [n + m] by column: of nonbasic ones the cost in this phase, of basic ones −infinity.
    NuvFloat32* costs;
    /// [n + m] by column, while it is nonbasic: its position in the high half, itself in the low
    /// one, so that of equal reduced costs the larger key is the one that enters.
    NuvUint* keys;
    NuvFloat32* reducedCosts;  /// [n + m]
    NuvUint* basic;            /// [m] columns by row
    NuvFloat32* basicCosts;    /// [m]
    NuvFloat32* prices;        /// [m]
    NuvFloat32* values;        /// [m] of the basic variables
    NuvFloat32* column;        /// [m] the entering one
    NuvFloat32* direction;     /// [m]
    NuvFloat32* ratios;        /// [m] values / direction, or FLT_MAX
    NuvFloat32* eta;           /// [m] of the pending update
    NuvFloat32* multipliers;   /// [m] of the pending update: the former row of the leaving variable

    NuvUint lanes;
    NuvUint m;
    NuvUint n;
    NuvUint pivotLimit;
    bool hasFresh;
    bool hasPhaseI;
};

/// The loops as made for one instruction set.
struct LaneLoops
{
    NuvUint lanes;
    /// Makes one iteration in all lanes: brings inverse, prices and values up to date with the
    /// last pivot, chooses the next and leaves it pending, or says in `ends` why there is none.
    /// @return the lanes that have an end, as bits.
    NuvUint (*step)(LaneState* state);
};

/// What the sources that are compiled for one instruction set each offer: null where they were not.
const LaneLoops* PlainLanes();
const LaneLoops* BaselineLanes();
const LaneLoops* Avx2Lanes();
const LaneLoops* Avx512Lanes();
}  // namespace nuv

#endif
