// Any bytes given to the LP reader, as a user's file may be: it ends with a model or with an error
// that has a place, and a model survives both formats.
#include "Nuv/Io/Lp/LpReader.hpp"

#include "fuzz/RoundTrip.hpp"
#include "fuzz/Target.hpp"

#include <string_view>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    fuzz::ExpectRoundTrips(nuv::ReadLp(text, "fuzz.lp"));
    fuzz::ExpectRoundTrips(nuv::ReadLp(text, "fuzz.lp", {.relax = true}));
    return 0;
}
