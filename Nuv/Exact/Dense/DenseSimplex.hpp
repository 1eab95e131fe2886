/// The bounded simplex method on a dense dictionary in doubles, for problems so small that scaling,
/// factors and sparse vectors cost more than they save. It ends with a basis and what it takes that
/// for; whether it is right is decided by the exact proof.
#pragma once

#include "Nuv/Certificate/Dense/DenseForm.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <functional>
#include <vector>

namespace nuv
{

class DenseSimplex
{
public:
    enum class End
    {
        Optimal,
        Infeasible,
        Unbounded,
        Stopped,  ///< by the control
        GaveUp,   ///< after more pivots than such a problem takes
    };

    /// From the slack basis. `observe` is called before each pivot and may look at the basis.
    [[nodiscard]] End Run(const DenseForm& form, SolveControl& control,
                          const std::function<void(bool isFeasible)>& observe = {});

    /// From a start that fits the form; what is dependent in it is left to the slack basis. Coming
    /// there counts no pivots.
    [[nodiscard]] End RunFrom(const DenseForm& form, const std::vector<BasisStatus>& start,
                              SolveControl& control);

    /// The columns' values in the basis as it is now.
    [[nodiscard]] std::vector<double> Point() const;

    /// By variable, of the last basis.
    [[nodiscard]] const std::vector<BasisStatus>& Status() const noexcept
    {
        return m_status;
    }

    /// By variable of an infeasible end: -1 or 1 where the basic one is below or above its bounds.
    [[nodiscard]] std::vector<signed char> Violations() const;

    /// Of an unbounded end: the nonbasic variable that moves for ever, and whether it moves up.
    [[nodiscard]] Index Moving() const noexcept
    {
        return m_moving;
    }
    [[nodiscard]] bool MovesUp() const noexcept
    {
        return m_movesUp;
    }

private:
    struct Step
    {
        Index row = kNoIndex;  ///< none: the entering variable goes to its other bound
        /// Where the leaving variable comes to rest.
        bool toUpper = false;  // same bits: set with the row
        double length = kNone;
    };
    static constexpr double kNone = 1e300;

    void Begin(const DenseForm& form);
    void GoTo(const std::vector<BasisStatus>& start);
    [[nodiscard]] Index RowToLeave(Index entering, const std::vector<BasisStatus>& start) const;
    [[nodiscard]] End Iterate(SolveControl& control, const std::function<void(bool)>& observe);
    void ComputeValues();
    [[nodiscard]] bool PriceInfeasibilities();
    [[nodiscard]] double Objective(bool isFeasible) const;
    [[nodiscard]] Index ChooseEntering(const std::vector<double>& prices) const;
    [[nodiscard]] Step ChooseStep(Index entering, double direction) const;
    [[nodiscard]] bool Blocks(Index row, double rate, double slack, double& distance,
                              bool& toUpper) const;
    void Move(Index entering, double direction, double length);
    void Exchange(Index row, Index entering);
    [[nodiscard]] double ValueOf(Index variable) const noexcept;

    [[nodiscard]] double* Row(Index row) noexcept
    {
        return m_table.data() + static_cast<std::size_t>(row) * m_form->columns;
    }
    [[nodiscard]] const double* Row(Index row) const noexcept
    {
        return m_table.data() + static_cast<std::size_t>(row) * m_form->columns;
    }

    const DenseForm* m_form = nullptr;
    /// Row i of the dictionary: basic variable i + sum of entries times nonbasic variables = const.
    std::vector<double> m_table;
    std::vector<double> m_prices;     ///< reduced costs of the nonbasic variables
    std::vector<double> m_gradients;  ///< of the sum of infeasibilities
    std::vector<double> m_values;     ///< of the basic variables
    std::vector<Index> m_basic;
    std::vector<Index> m_nonbasic;
    std::vector<BasisStatus> m_status;
    double m_priceTolerance = 0.0;  // same bits: set with the form
    Index m_moving = kNoIndex;
    bool m_movesUp = false;  // same bits: set with what moves
};

}  // namespace nuv
