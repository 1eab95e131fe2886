/// The substitution over one triangular factor, given by columns or by rows: along all steps in
/// order, or along what the nonzeros of the right side reach where that is little (Gilbert and
/// Peierls, Sparse partial pivoting in time proportional to arithmetic operations, 1988).
#pragma once

#include "Nuv/SparseSimplex/Factors/EditableVectors.hpp"
#include "Nuv/SparseSimplex/Factors/WorkVector.hpp"

#include <span>
#include <vector>

namespace nuv
{

/// The depth-first search for what a right side reaches.
class ReachSearch
{
public:
    void Resize(Index size);
    /// Fills Order() with every number that a nonzero of `start` reaches, each before those that it
    /// reaches itself. @return false if these are too many for this to pay.
    [[nodiscard]] bool Run(const EditableVectors& triangle, std::span<const Index> start);
    [[nodiscard]] std::span<const Index> Order() const noexcept
    {
        return m_order;
    }

private:
    struct Frame
    {
        Index number;
        std::size_t next;
    };
    std::vector<unsigned> m_mark;
    unsigned m_epoch = 0;  // same bits: set with the marks
    std::vector<Frame> m_stack;
    std::vector<Index> m_order;
};

/// In which order the steps of a factor follow each other in a solve.
enum class Direction : unsigned char
{
    FirstToLast,
    LastToFirst,
};

/// One kind of solve with a triangle given by columns, T x = b, or by rows, T' x = b. It remembers
/// how dense its results were lately, so that a search that does not pay is seldom begun.
class Substitution
{
public:
    explicit Substitution(Direction direction) : m_direction(direction) {}

    /// `pivot` holds the diagonal by number, null standing for ones. Steps of kNoIndex in `order`
    /// are skipped.
    void Run(const EditableVectors& triangle, std::span<const Index> order, const double* pivot,
             ReachSearch& search, WorkVector& vector);

private:
    Direction m_direction;
    double m_share = 0.0;  ///< of nonzeros in results, the latest weighing most
};

}  // namespace nuv
