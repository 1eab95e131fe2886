#include "Nuv/Exact/Dense/DenseProof.hpp"

#include "Nuv/Algebra/Dense/WordQuotient.hpp"

#include <algorithm>

namespace nuv
{

bool DenseProof::ProveOptimal(const DenseForm& form, const std::vector<BasisStatus>& status)
{
    if (!m_numbers.Take(form) || !StateSystem(status) || !m_system.Solve())
        return false;
    TakeSolution(status);
    return m_check.IsOptimal(m_numbers, m_optimum);
}

bool DenseProof::ProveInfeasible(const DenseForm& form, const std::vector<BasisStatus>& status,
                                 const std::vector<signed char>& violations)
{
    if (!m_numbers.Take(form) || !StateMatrix(status) || !WeighViolatedRows(violations))
        return false;
    for (unsigned at = 0; at < m_basic.size(); ++at)
        StateViolationCost(violations, at);
    if (!m_system.Solve())
        return false;
    TakeMultipliers();
    return m_check.IsInfeasible(m_numbers, m_system.Width() + 2, m_multipliers);
}

bool DenseProof::ProveUnbounded(const DenseForm& form, const std::vector<BasisStatus>& status,
                                Index moving, bool movesUp)
{
    if (!m_numbers.Take(form) || !StateSystem(status) || !m_system.Solve())
        return false;
    TakeSolution(status);
    (void)StateMatrix(status);  // the same again
    if (!StateMove(moving, movesUp) || !m_system.Solve())
        return false;
    TakeRay(moving, movesUp);
    return m_check.IsUnbounded(m_numbers, m_optimum, m_system.Width(), m_ray);
}

/// A column that moves by one takes its entries off the tight rows, a logical adds one to its row.
bool DenseProof::StateMove(Index moving, bool movesUp)
{
    constexpr unsigned kWidth = BorderedSystem::kEntryWidth;
    const auto order = static_cast<unsigned>(m_basic.size());
    const Index columns = m_numbers.Form().columns;
    for (unsigned at = 0; at < order; ++at)
    {
        const Index row = m_tight[at];
        WideInteger number;
        if (moving < columns)
            number = m_numbers.Entry(row, moving);
        else if (moving == columns + row &&
                 !ToWideInteger({-1, {}}, m_numbers.RowScale(row), number))
            return false;
        number.isNegative = number.isNegative != movesUp;
        CopyWords(number, m_system.Entry(at, order), kWidth);
    }
    return true;
}

void DenseProof::TakeRay(Index moving, bool movesUp)
{
    const unsigned width = m_system.Width();
    const Index columns = m_numbers.Form().columns;
    m_ray.assign(std::size_t{columns} * width, 0);
    for (unsigned k = 0; k < m_basic.size(); ++k)
        CopyWords(m_system.X(k), width, m_ray.data() + std::size_t{m_basic[k]} * width, width);
    if (moving >= columns)
        return;
    Word* const rate = m_ray.data() + std::size_t{moving} * width;
    CopyWords(m_system.Denominator(), width, rate, width);
    if (!movesUp)
        NegateWords(rate, width);
}

/// Every variable counts the same before its row is scaled, so a scaled row counts as much less as
/// its factor is more; all times the least number that makes these integers.
bool DenseProof::WeighViolatedRows(const std::vector<signed char>& violations)
{
    const DenseForm& form = m_numbers.Form();
    Scale scale;
    for (Index i = 0; i < form.rows; ++i)
    {
        if (violations[form.columns + i] != 0)
            scale = {std::max(scale.two, m_numbers.RowScale(i).two),
                     std::max(scale.five, m_numbers.RowScale(i).five)};
    }
    bool isShort = ToWideInteger({1, {}}, scale, m_weight);
    m_weightBits = m_weight.BitLength();
    m_rowWeights.assign(form.rows, {});
    for (Index i = 0; isShort && i < form.rows; ++i)
    {
        const signed char violation = violations[form.columns + i];
        isShort = ToWideInteger({-violation, {}},
                                violation != 0 ? scale - m_numbers.RowScale(i) : Scale{},
                                m_rowWeights[i]);
    }
    // A sum of as many products as there are rows, and its sign.
    // same bits (-> 32, -> 34): a bound with room; what is too long is proved the long way
    return isShort && m_weightBits + m_numbers.Bits() + 33 < 64 * BorderedSystem::kEntryWidth;
}

/// What the basic column counts, less what the rows with basic logicals take of it.
void DenseProof::StateViolationCost(const std::vector<signed char>& violations, unsigned at)
{
    constexpr unsigned kWidth = BorderedSystem::kEntryWidth;
    const Index column = m_basic[at];
    Word* const sum = m_system.Entry(static_cast<unsigned>(m_basic.size()), at);
    Word value[kWidth];
    for (Index i = 0; i < m_numbers.Form().rows; ++i)
    {
        // same bits (always, never): what is 0 adds nothing
        if (m_rowWeights[i].IsZero() || m_numbers.Entry(i, column).IsZero())
            continue;
        CopyWords(m_rowWeights[i], value, kWidth);
        AddProduct(sum, value, m_numbers.Entry(i, column), kWidth);
    }
    NegateWords(sum, kWidth);
    CopyWords(m_weight, value, kWidth);
    if (violations[column] > 0)
        AddProduct(sum, value, Word{1}, kWidth);
    else if (violations[column] < 0)
        SubtractProduct(sum, value, Word{1}, kWidth);
}

/// Those of tight rows are solved for, a violated row with a basic logical has its weight.
void DenseProof::TakeMultipliers()
{
    const unsigned solved = m_system.Width();
    const unsigned width = solved + 2;
    const Index rows = m_numbers.Form().rows;
    m_multipliers.assign(std::size_t{rows} * width, 0);
    std::vector<Word> denominator(width);
    CopyWords(m_system.Denominator(), solved, denominator.data(), width);
    for (Index i = 0; i < rows; ++i)
        AddProduct(m_multipliers.data() + std::size_t{i} * width, denominator.data(),
                   m_rowWeights[i], width);
    for (unsigned k = 0; k < m_tight.size(); ++k)
        CopyWords(m_system.Y(k), solved, m_multipliers.data() + std::size_t{m_tight[k]} * width,
                  width);
}

/// The basic columns in the rows whose activity rests at a side: all that a basis leaves to be
/// solved, since every other row has its own logical.
bool DenseProof::StateMatrix(const std::vector<BasisStatus>& status)
{
    const DenseForm& form = m_numbers.Form();
    m_basic.clear();
    m_tight.clear();
    for (Index j = 0; j < form.columns; ++j)
    {
        if (status[j] == BasisStatus::Basic)
            m_basic.push_back(j);
    }
    for (Index i = 0; i < form.rows; ++i)
    {
        if (status[form.columns + i] != BasisStatus::Basic)
            m_tight.push_back(i);
    }
    if (m_basic.size() != m_tight.size())
        return false;
    const auto order = static_cast<unsigned>(m_basic.size());
    m_system.Begin(order);
    for (unsigned at = 0; at < order; ++at)
    {
        for (unsigned k = 0; k < order; ++k)
            CopyWords(m_numbers.Entry(m_tight[at], m_basic[k]), m_system.Entry(at, k),
                      BorderedSystem::kEntryWidth);
    }
    return true;
}

bool DenseProof::StateSystem(const std::vector<BasisStatus>& status)
{
    if (!StateMatrix(status))
        return false;
    const auto order = static_cast<unsigned>(m_basic.size());
    for (unsigned at = 0; at < order; ++at)
    {
        CopyWords(m_numbers.Cost(m_basic[at]), m_system.Entry(order, at),
                  BorderedSystem::kEntryWidth);
        if (!StateRightSide(status, at))
            return false;
    }
    return true;
}

const WideInteger& DenseProof::RestingValue(Index variable, BasisStatus status) const
{
    static constexpr WideInteger kZero;
    switch (status)
    {
    case BasisStatus::AtLower:
        return m_numbers.Lower(variable);
    case BasisStatus::AtUpper:
        return m_numbers.Upper(variable);
    default:
        return kZero;
    }
}

/// The row's side times the bound factor, less what the resting columns take of it: as many
/// products of two numbers of the form as there are columns, and one more.
bool DenseProof::StateRightSide(const std::vector<BasisStatus>& status, unsigned at)
{
    constexpr unsigned kWidth = BorderedSystem::kEntryWidth;
    const DenseForm& form = m_numbers.Form();
    // same bits (-> 32, -> 34): a bound with room; what is too long is proved the long way
    if (2 * m_numbers.Bits() + 33 >= 64 * kWidth)
        return false;
    const Index row = m_tight[at];
    const Index logical = form.columns + row;
    Word* const sum = m_system.Entry(at, static_cast<unsigned>(m_basic.size()));
    Word value[kWidth];
    for (Index j = 0; j < form.columns; ++j)
    {
        const WideInteger& resting = RestingValue(j, status[j]);
        // same bits (always, never): what is 0 adds nothing
        if (resting.IsZero() || m_numbers.Entry(row, j).IsZero())
            continue;
        CopyWords(resting, value, kWidth);
        AddProduct(sum, value, m_numbers.Entry(row, j), kWidth);
    }
    NegateWords(sum, kWidth);
    CopyWords(RestingValue(logical, status[logical]), value, kWidth);
    AddProduct(sum, value, m_numbers.BoundFactor(), kWidth);
    return true;
}

void DenseProof::TakeSolution(const std::vector<BasisStatus>& status)
{
    const DenseForm& form = m_numbers.Form();
    const unsigned solved = m_system.Width();
    // A resting value is a number of the form times the denominator.
    const unsigned width = solved + m_numbers.Bits() / 64 + 1;
    m_optimum.width = width;
    m_optimum.denominator.resize(width);
    CopyWords(m_system.Denominator(), solved, m_optimum.denominator.data(), width);
    m_optimum.point.assign(std::size_t{form.columns} * width, 0);
    m_optimum.dual.assign(std::size_t{form.rows} * width, 0);
    for (Index j = 0; j < form.columns; ++j)
        AddProduct(m_optimum.point.data() + std::size_t{j} * width, m_optimum.denominator.data(),
                   RestingValue(j, status[j]), width);
    for (unsigned k = 0; k < m_basic.size(); ++k)
    {
        CopyWords(m_system.X(k), solved, m_optimum.point.data() + std::size_t{m_basic[k]} * width,
                  width);
        CopyWords(m_system.Y(k), solved, m_optimum.dual.data() + std::size_t{m_tight[k]} * width,
                  width);
    }
}

double DenseProof::Objective() const
{
    return QuotientToDouble(m_check.Objective(), m_check.Width(), m_optimum.denominator.data(),
                            m_optimum.width, -(m_numbers.CostScale() + m_numbers.BoundScale()));
}

double DenseProof::Value(Index column) const
{
    return QuotientToDouble(m_optimum.point.data() + std::size_t{column} * m_optimum.width,
                            m_optimum.width, m_optimum.denominator.data(), m_optimum.width,
                            -m_numbers.BoundScale());
}

double DenseProof::ReducedCost(Index column) const
{
    return QuotientToDouble(m_check.ReducedCost(column), m_check.Width(),
                            m_optimum.denominator.data(), m_optimum.width, -m_numbers.CostScale());
}

double DenseProof::Activity(Index row) const
{
    return QuotientToDouble(m_check.Activity(row), m_check.Width(), m_optimum.denominator.data(),
                            m_optimum.width, -(m_numbers.RowScale(row) + m_numbers.BoundScale()));
}

void DenseProof::WriteCertificate(const Rational& constant, Certificate& certificate) const
{
    const unsigned width = m_optimum.width;
    const Integer denominator = ToInteger(m_optimum.denominator.data(), width);
    const Integer boundFactor = PowerOf(m_numbers.BoundScale());
    const Integer costFactor = PowerOf(m_numbers.CostScale());
    certificate.status = Status::Optimal;
    certificate.primal.denominator = denominator * boundFactor;
    certificate.dual.denominator = denominator * costFactor;
    certificate.primal.numerator.clear();
    certificate.dual.numerator.clear();
    for (Index j = 0; j < m_numbers.Form().columns; ++j)
        certificate.primal.numerator.push_back(
            ToInteger(m_optimum.point.data() + std::size_t{j} * width, width));
    for (Index i = 0; i < m_numbers.Form().rows; ++i)
        certificate.dual.numerator.push_back(
            ToInteger(m_optimum.dual.data() + std::size_t{i} * width, width) *
            PowerOf(m_numbers.RowScale(i)));
    certificate.objective = Rational(ToInteger(m_check.Objective(), m_check.Width()),
                                     certificate.primal.denominator * costFactor) +
                            constant;
}

double DenseProof::Dual(Index row) const
{
    return QuotientToDouble(m_optimum.dual.data() + std::size_t{row} * m_optimum.width,
                            m_optimum.width, m_optimum.denominator.data(), m_optimum.width,
                            m_numbers.RowScale(row) - m_numbers.CostScale());
}

}  // namespace nuv
