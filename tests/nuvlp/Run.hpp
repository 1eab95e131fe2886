/// Running the command as a user does: arguments and standard input in, both outputs and the exit
/// code out.
#pragma once

#include <string>

namespace nuvlp::test
{

struct Outcome
{
    int exitCode = -1;
    std::string out;
    std::string err;
};

/// Runs nuvlp with `arguments`, as the shell splits them, in the folder of the test models.
[[nodiscard]] Outcome RunNuvlp(const std::string& arguments, const std::string& input = "");

/// The same, with the signal sent so long after the command is ready for it.
[[nodiscard]] Outcome InterruptNuvlp(const std::string& arguments, int signal,
                                     unsigned milliseconds = 0);

/// A path in a folder that lives as long as the test program.
[[nodiscard]] std::string Scratch(const std::string& name);

/// Writes a file there. @return its path.
std::string WriteScratch(const std::string& name, const std::string& text);

/// The contents of a file; empty if there is none.
[[nodiscard]] std::string ReadFile(const std::string& path);

/// A JSON with 0 for each of its "seconds", which are positive.
[[nodiscard]] std::string WithoutTimes(const std::string& json);

}  // namespace nuvlp::test
