/// Every JSON that a test sees is valid by the schema that it names.
#pragma once

#include <string_view>

namespace nuv::test
{

/// Keeps a JSON until all tests of the program have run; then all that were kept are validated at
/// once, and one that is not valid fails the program.
void ExpectValid(std::string_view json);

}  // namespace nuv::test
