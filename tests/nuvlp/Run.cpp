// The shell does the redirection, as it does for users.
#include "tests/nuvlp/Run.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
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

Outcome RunNuvlp(const std::string& arguments, const std::string& input)
{
    const std::string in = WriteScratch("stdin", input);
    const std::string out = Scratch("stdout");
    const std::string err = Scratch("stderr");
    const std::string command = "cd '" NUV_TEST_MODELS "' && '" NUVLP_COMMAND "' <'" + in + "' >'" +
                                out + "' 2>'" + err + "' " + arguments;
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(out), ReadFile(err)};
}

}  // namespace nuvlp::test
