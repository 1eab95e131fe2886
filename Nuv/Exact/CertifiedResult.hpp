/// What a certified solve brings: the certificate, and a record of how the solve went.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Exact/StageRecord.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <string>
#include <vector>

namespace nuv
{

struct SolveRecord
{
    /// Whether the certificate passed its check. True with every status but Stopped and Invalid,
    /// unless doubles were believed.
    bool proved = false;
    StopReason stopReason = StopReason::None;
    std::string defect;  ///< Invalid: what is wrong with the data; everything else is empty then

    // In doubles, by variable (columns, then the rows' logicals): of the certificate, or
    // without a proof what the last basis gives. reduced[columns + i] is the dual of row i.
    std::vector<double> value;
    std::vector<double> reduced;
    double objectiveValue = 0.0;
    double primalViolation = 0.0;  ///< not proved: the largest violation of a bound by `value`
    double dualViolation = 0.0;    ///< not proved: the largest wrong-signed entry of `reduced`

    Basis basis;  ///< the last one; each stage starts from that of the stage before
    StageRecords stages;
    double checkSeconds = 0.0;
};

struct CertifiedResult
{
    Certificate certificate;
    SolveRecord record;
};

}  // namespace nuv
