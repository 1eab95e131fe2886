#include "tests/report/JsonSchema.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace nuv::test
{
namespace
{

/// One file a JSON, named after the test that saw it.
class Kept : public testing::Environment
{
public:
    void Keep(std::string_view json)
    {
        const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
        ASSERT_TRUE(test);
        std::filesystem::create_directories(m_folder);
        const std::filesystem::path path =
            m_folder / (std::string(test->test_suite_name()) + "." + test->name() + " " +
                        std::to_string(++m_count));
        std::ofstream(path, std::ios::binary) << json;
    }
    void TearDown() override
    {
        if (m_count == 0)
            return;
        const std::string command =
            "'" NUV_TEST_VALIDATE "' '" NUV_TEST_SCHEMAS "' '" + m_folder.string() + "' >&2";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        std::filesystem::remove_all(m_folder);
    }

private:
    std::filesystem::path m_folder =
        std::filesystem::temp_directory_path() / ("nuv-test-json-" + std::to_string(getpid()));
    int m_count = 0;
};

// Owned by the test framework.
Kept* const kept = static_cast<Kept*>(testing::AddGlobalTestEnvironment(new Kept));

}  // namespace

void ExpectValid(std::string_view json)
{
    kept->Keep(json);
}

}  // namespace nuv::test
