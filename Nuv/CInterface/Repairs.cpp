// Repairs: what would have to change in an infeasible model.
#include "Nuv/CInterface/Arrays.hpp"
#include "Nuv/CInterface/Records.hpp"
#include "Nuv/CInterface/Solving.hpp"
#include "Nuv/Model/NuvRepair.h"
#include "Nuv/Solve/Repair.hpp"
#include "Nuv/Vipr/Certify.hpp"
#include "Nuv/Vipr/Text.hpp"

struct NuvRepair : nuv::c::Tagged<nuv::c::Kind::Repair>
{
    nuv::RepairResult result;
    std::vector<NuvRepairChange> changes;
};

namespace nuv::c
{
namespace
{

template <class ItemAt>
void AddWeights(const double* weights, std::uint32_t count, const ItemAt& itemAt,
                std::vector<RepairWeight>& all)
{
    for (std::uint32_t k = 0; weights && k < count; ++k)
    {
        Require(weights[k] > 0.0, "a weight is not positive");
        all.push_back({itemAt(k), weights[k]});
    }
}

std::vector<NuvRepairChange> ChangesOf(const Model& model, const RepairResult& result)
{
    std::vector<NuvRepairChange> changes;
    for (const RepairChange& change : result.changes)
    {
        const Variable* variable = std::get_if<Variable>(&change.of);
        const std::uint32_t index =
            variable ? model.IndexOf(*variable) : model.IndexOf(std::get<Row>(change.of));
        changes.push_back({index, variable ? 0u : 1u, change.upper ? 1u : 0u, 0, change.from,
                           change.to, change.amount});
    }
    return changes;
}

/// The elastic program, or the failure NotKnown.
const Model& ElasticOf(const NuvRepair& handle)
{
    if (!handle.result.elastic)
        Fail(NUV_MODELRESULT_NotKnown, "c.not-known", "there is no proof");
    return *handle.result.elastic;
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvModelRepair(const NuvModel* model, const double* columnWeights,
                              const double* rowWeights, const NuvSolveOptions* options,
                              NuvRepair** repair, NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       Given(repair, "repair") = nullptr;
                       const std::shared_ptr<const nuv::Model> held = Checked(model).model;
                       const Solving solving(options);
                       nuv::RepairOptions asked;
                       asked.limits = solving.Options().limits;
                       asked.numbers = solving.Options().numbers;
                       asked.certificate = solving.KeepsProof();
                       AddWeights(
                           columnWeights, held->VariableCount(),
                           [&](std::uint32_t k) { return held->VariableAt(k); }, asked.weights);
                       AddWeights(
                           rowWeights, held->RowCount(),
                           [&](std::uint32_t k) { return held->RowAt(k); }, asked.weights);
                       auto handle = std::make_unique<NuvRepair>();
                       handle->result = nuv::Repair(*held, asked);
                       if (handle->result.status == nuv::Status::Invalid)
                           Fail(NUV_MODELRESULT_InvalidModel, std::move(handle->result.failure));
                       handle->changes = ChangesOf(*held, handle->result);
                       *repair = handle.release();
                   });
}

void NuvRepairDestruct(NuvRepair* repair)
{
    Destruct(repair);
}

NuvModelResult NuvRepairGetInfo(const NuvRepair* repair, NuvRepairInfo* info)
{
    return Guarded(nullptr,
                   [&]
                   {
                       const NuvRepair& handle = Checked(repair);
                       const nuv::RepairResult& held = handle.result;
                       NuvRepairInfo filled{};
                       SayHowItEnded(held, filled);
                       filled.numChanges = static_cast<uint32_t>(handle.changes.size());
                       filled.total = held.total;
                       FillIn(info, "info", filled);
                   });
}

const NuvRepairChange* NuvRepairGetChanges(const NuvRepair* repair, uint32_t* count)
{
    const bool hasChanges = IsHandle(repair) && !repair->changes.empty();
    if (count)
        *count = hasChanges ? static_cast<uint32_t>(repair->changes.size()) : 0;
    return hasChanges ? repair->changes.data() : nullptr;
}

uint64_t NuvRepairGetExact(const NuvRepair* repair, uint32_t change, char* buffer, uint64_t size)
{
    if (!IsHandle(repair))
        return 0;
    const nuv::RepairResult& held = repair->result;
    if (change != NUV_MODEL_NO_INDEX && change >= held.changes.size())
        return 0;
    const std::string& text =
        change == NUV_MODEL_NO_INDEX ? held.exactTotal : held.changes[change].exactTo;
    return text.empty() ? 0 : CopyText(text, buffer, size);
}

NuvModelResult NuvRepairMakeModel(const NuvRepair* repair, NuvModel** model)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(model, "model") = nullptr;
                       const NuvRepair& handle = Checked(repair);
                       if (!handle.result.model)
                           Fail(NUV_MODELRESULT_NotKnown, "c.not-known", "there is no such model");
                       *model = new NuvModel(std::make_shared<nuv::Model>(*handle.result.model));
                   });
}

NuvModelResult NuvRepairMakeElasticModel(const NuvRepair* repair, NuvModel** model)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(model, "model") = nullptr;
                       const NuvRepair& handle = Checked(repair);
                       *model = new NuvModel(std::make_shared<nuv::Model>(ElasticOf(handle)));
                   });
}

NuvModelResult NuvRepairMakeCertificate(const NuvRepair* repair, NuvText** certificate)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(certificate, "certificate") = nullptr;
                       const NuvRepair& handle = Checked(repair);
                       MakeText(certificate, nuv::vipr::Write(nuv::vipr::CertificateOf(
                                                 ElasticOf(handle), handle.result.numbers,
                                                 *handle.result.certificate)));
                   });
}
