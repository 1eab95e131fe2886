#include "Nuv/Io/Lp/LpReader.hpp"

#include "Nuv/Io/Lp/LpParser.hpp"

namespace nuv
{

ReadResult ReadLp(std::string_view text, std::string_view file, const ReadOptions& options)
{
    text = WithoutByteOrderMark(text);
    lp::Messages messages(text, file);
    lp::Builder builder(messages);
    ReadResult result;
    if (lp::Parser(text, options, builder, messages).Parse())
        result.model = builder.Finish();
    else
        (void)builder.TakeTerms();  // One that waits may hold an error that comes first.
    result.diagnostics = messages.Log().Take();
    return result;
}

}  // namespace nuv
