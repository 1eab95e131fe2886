// Any bytes given to the MPS reader, in the form that it finds and in both that can be forced: it
// ends with a model or with an error that has a place, and a model survives both formats.
#include "Nuv/Io/Mps/MpsReader.hpp"

#include "fuzz/RoundTrip.hpp"
#include "fuzz/Target.hpp"

#include <string_view>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    fuzz::ExpectRoundTrips(nuv::ReadMps(text, "fuzz.mps"));
    nuv::ReadOptions options;
    options.relax = true;
    options.mpsConstantPlus = true;
    options.mpsSenseComment = true;
    for (const nuv::MpsForm form : {nuv::MpsForm::Fixed, nuv::MpsForm::Free})
    {
        options.mpsForm = form;
        fuzz::ExpectRoundTrips(nuv::ReadMps(text, "fuzz.mps", options));
    }
    return 0;
}
