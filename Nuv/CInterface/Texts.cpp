#include "Nuv/CInterface/Texts.hpp"

#include <utility>

namespace nuv::c
{

std::string BytesOf(const char* text, std::uint64_t size)
{
    Require(text || size == 0, "text is null");
    Require(size <= SIZE_MAX / 4, "the text takes more bytes than there are");
    return {text ? text : "", static_cast<std::size_t>(size)};
}

const std::string& Readable(const Result<std::string>& text)
{
    if (!text)
        Fail(text.GetError().code == "file.damaged" ? NUV_MODELRESULT_BadText
                                                    : NUV_MODELRESULT_CannotRead,
             text.GetError());
    return *text;
}

void HandOver(std::vector<Diagnostic>& from, NuvDiagnostics* to) noexcept
{
    if (to)
        to->diagnostics = std::move(from);
}

}  // namespace nuv::c
