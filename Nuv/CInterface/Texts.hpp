/// Texts on their way in: bytes of the caller's, files that could be read or not, and what reading
/// them had to say.
#pragma once

#include "Nuv/CInterface/Handles.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace nuv::c
{

/// The caller's bytes; fails with InvalidArgument where there are none but a size.
[[nodiscard]] std::string BytesOf(const char* text, std::uint64_t size);

/// The text of a file. Fails with BadText where that was packed and is damaged, else with
/// CannotRead.
[[nodiscard]] const std::string& Readable(const Result<std::string>& text);

/// Hands diagnostics over to where the caller wants them.
void HandOver(std::vector<Diagnostic>& from, NuvDiagnostics* to) noexcept;

}  // namespace nuv::c
