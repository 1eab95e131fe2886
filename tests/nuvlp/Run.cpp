// The shell does the redirection, as it does for users.
#include "tests/nuvlp/Run.hpp"

#include "tests/report/JsonSchema.hpp"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace nuvlp::test
{
namespace
{

/// Removed with all that is in it when the program ends.
class Folder
{
public:
    Folder()
        : m_path(std::filesystem::temp_directory_path() /
                 ("nuvlp-test-" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_path);
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] std::string Path(const std::string& name) const
    {
        return (m_path / name).string();
    }

private:
    std::filesystem::path m_path;
};

}  // namespace

std::string ReadFile(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::string Scratch(const std::string& name)
{
    static const Folder folder;
    return folder.Path(name);
}

std::string WriteScratch(const std::string& name, const std::string& text)
{
    const std::string path = Scratch(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

namespace
{

/// The command with its streams in files.
std::string CommandLine(const std::string& arguments)
{
    return "cd '" NUV_TEST_MODELS "' && exec '" NUVLP_COMMAND "' <'" + Scratch("stdin") + "' >'" +
           Scratch("stdout") + "' 2>'" + Scratch("stderr") + "' " + arguments;
}

/// What stands in the file that is named for the output.
std::string OutputText(const std::string& arguments)
{
    for (const std::string option : {" -o ", " --output "})
        if (const std::size_t at = arguments.find(option); at != std::string::npos)
        {
            const std::size_t begin = at + option.size();
            const std::string path = arguments.substr(begin, arguments.find(' ', begin) - begin);
            return std::filesystem::is_regular_file(path) ? ReadFile(path) : "";
        }
    return {};
}

/// Each verb writes an object in a line, batch one for each scenario.
void ExpectValidLines(const std::string& text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        nuv::test::ExpectValid(line);
}

/// All JSON of the command that a test may see comes by here.
Outcome OutcomeOf(const std::string& arguments, int status)
{
    Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(Scratch("stdout")),
                    ReadFile(Scratch("stderr"))};
    for (const std::string& text : {outcome.out, OutputText(arguments)})
        if (text.starts_with('{'))
            ExpectValidLines(text);
    return outcome;
}

/// Whether a process is the command, no longer the shell, and has a handler for a signal, which
/// Linux tells in a mask of bits.
bool Handles(pid_t process, int signal)
{
    const std::string status = ReadFile("/proc/" + std::to_string(process) + "/status");
    const std::size_t at = status.find("SigCgt:");
    return status.starts_with("Name:\tnuvlp\n") && at != std::string::npos &&
           (std::stoull(status.substr(at + 7), nullptr, 16) >> (signal - 1) & 1U) != 0;
}

}  // namespace

Outcome RunNuvlp(const std::string& arguments, const std::string& input)
{
    (void)WriteScratch("stdin", input);
    return OutcomeOf(arguments, std::system(CommandLine(arguments).c_str()));
}

Outcome InterruptNuvlp(const std::string& arguments, int signal, unsigned milliseconds)
{
    (void)WriteScratch("stdin", "");
    const std::string line = CommandLine(arguments);
    const pid_t child = fork();
    if (child == 0)
    {
        // Who runs the tests may have had it ignored.
        (void)std::signal(signal, SIG_DFL);
        (void)execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    while (!Handles(child, signal))
    {
        // One that never handles it ends by itself.
        if (waitpid(child, &status, WNOHANG) == child)
            return OutcomeOf(arguments, status);
        (void)usleep(1000);
    }
    (void)usleep(1000 * milliseconds);
    (void)::kill(child, signal);
    (void)waitpid(child, &status, 0);
    return OutcomeOf(arguments, status);
}

std::string WithoutTimes(const std::string& json)
{
    static const std::regex seconds(R"("seconds":(0\.[0-9]*[1-9]|[1-9][0-9.]*(e-0[0-9])?)([,}]))");
    return std::regex_replace(json, seconds, R"("seconds":0$3)");
}

}  // namespace nuvlp::test
