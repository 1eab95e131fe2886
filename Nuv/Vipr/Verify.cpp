#include "Nuv/Vipr/Verify.hpp"

#include "Nuv/Vipr/Check.hpp"
#include "Nuv/Vipr/Statement.hpp"

namespace nuv::vipr
{

Verification Verify(const Model& model, CoefficientMeaning numbers, const Certificate& certificate)
{
    Verification result;
    result.numbers = numbers;
    result.goal = certificate.goal;
    result.isOtherModel = !IsSameProblem(StatementOf(model, numbers).problem, certificate.problem);
    result.defect =
        result.isOtherModel ? "the certificate is about another model" : FindDefect(certificate);
    if (result.defect.empty() && result.goal == Goal::Range && certificate.lower)
        result.objective =
            *certificate.lower + NumberAt(model, numbers, {NumberPlace::Of::ObjectiveConstant},
                                          model.ObjectiveConstant());
    return result;
}

}  // namespace nuv::vipr
