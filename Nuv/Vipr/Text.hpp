/// Certificates as text.
#pragma once

#include "Nuv/Model/Error.hpp"
#include "Nuv/Vipr/Certificate.hpp"

#include <string>
#include <string_view>

namespace nuv::vipr
{

/// The file. Blanks, control characters and '%' in the names of variables and in labels become %20
/// and the like.
[[nodiscard]] std::string Write(const Certificate& certificate);

/// Reads what Write, or another program, has written; `file` is what errors call it.
/// @return the certificate, whole but unchecked, or the error "vipr.malformed" with its line.
[[nodiscard]] Result<Certificate> Read(std::string_view text, const std::string& file);

}  // namespace nuv::vipr
