// The values of a model, measured in double precision.
#include "Nuv/Utils/NuvLinearProgrammingMeasure.h"

#include "Nuv/Utils/Problem/Variables.h"

namespace
{
using IndexedTerms = NuvVector_NuvPair_NuvUint__NuvFloat32;
using NamedTerms = NuvVector_NuvPair_NuvString__NuvFloat32;

/// The larger one, or what is no number.
double Worse(double x, double y)
{
    return y <= x || x != x ? x : y;
}

/// The variable's index, from 1, or 0 for none.
NuvUint IndexOf(const NuvLinearProgramming* lp, const NuvPair_NuvUint__NuvFloat32* term)
{
    return term->first <= lp->numVars ? term->first : 0;
}

NuvUint IndexOf(const NuvLinearProgramming* lp, const NuvPair_NuvString__NuvFloat32* term)
{
    const NuvLinearProgrammingVariable* const variable = nuv::FindVariable(lp, &term->first);
    return variable && variable->index <= lp->numVars ? variable->index : 0;
}

/// Whether a later term of the list is for the same variable, and replaces this one.
template <class Terms, class Term>
bool IsReplaced(const NuvLinearProgramming* lp, const Terms* terms, const Term* term, NuvUint index)
{
    for (const Term* later = terms->end - 1; later != term; --later)
        if (IndexOf(lp, later) == index)
            return true;
    return false;
}

/// Σ coefficient × value. A list whose indices rise has no term that replaces another.
/// @return false when a variable is unknown.
template <class Terms>
bool Sum(const NuvLinearProgramming* lp, const Terms* terms, double* sum)
{
    NuvUint former = 0;
    bool isRising = true;
    for (const auto* term = terms->begin; term != terms->end; ++term)
    {
        const NuvUint index = IndexOf(lp, term);
        if (index == 0)
            return false;
        isRising &= index > former;
        former = index;
    }
    *sum = 0.0;
    for (const auto* term = terms->begin; term != terms->end; ++term)
    {
        const NuvUint index = IndexOf(lp, term);
        if (isRising || !IsReplaced(lp, terms, term, index))
            *sum += static_cast<double>(term->second) *
                    static_cast<double>(lp->variableValues.begin[index - 1].second);
    }
    return true;
}

bool Sum(const NuvLinearProgramming* lp, const NuvLinearProgrammingConstraint* constraint,
         double* sum)
{
    const NamedTerms* const named =
        NuvLinearProgrammingConstraintGetVariablesCoefficientsByName(constraint);
    return named
               ? Sum(lp, named, sum)
               : Sum(lp, NuvLinearProgrammingConstraintGetVariablesCoefficientsByIndex(constraint),
                     sum);
}
}  // namespace

NuvBool NuvLinearProgrammingMeasure(const NuvLinearProgramming* lp,
                                    NuvLinearProgrammingMeasurement* measurement)
{
    *measurement = {0.0, 0.0, 0.0};
    for (const auto* pair = lp->variableValues.begin; pair != lp->variableValues.end; ++pair)
        measurement->signViolation =
            Worse(measurement->signViolation, -static_cast<double>(pair->second));
    const auto* const entries = &lp->constraints.l;
    for (const auto* link = entries->node.next.b; link != &entries->node; link = link->next.b)
    {
        const NuvLinearProgrammingConstraint* const constraint =
            &NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintConstIteratorContentOf(&link)
                 ->second;
        double sum;
        if (!Sum(lp, constraint, &sum))
            return NUV_FALSE;
        measurement->rowViolation =
            Worse(measurement->rowViolation,
                  sum - static_cast<double>(NuvLinearProgrammingConstraintGetRhs(constraint)));
    }
    return Sum(lp, &lp->objective, &measurement->objective) ? NUV_TRUE : NUV_FALSE;
}
