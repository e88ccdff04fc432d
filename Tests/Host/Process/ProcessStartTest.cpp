#include "Tests/Host/Process/ProcessTestSupport.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace quen::test {
namespace {

using namespace std::string_view_literals;

struct RefusedCase {
    const char* name;
    std::function<ProcessInvocation()> invocation; // made when needed: some are large
    int error;
    std::string end;
};

std::ostream& operator<<(std::ostream& out, const RefusedCase& value) {
    return out << value.name;
}

ProcessInvocation withVariable(String name, String value) {
    ProcessInvocation invocation = program("/bin/true");
    invocation.environment = {{std::move(name), std::move(value)}};
    return invocation;
}

ProcessInvocation programIn(String directory) {
    ProcessInvocation invocation = program("/bin/true");
    invocation.workingDirectory = std::move(directory);
    return invocation;
}

class RefusedTest : public ProcessTest, public testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedTest, SaysWhyAndLeavesNothing) {
    const ProcessOutcome outcome = run(GetParam().invocation());
    EXPECT_EQ(described(outcome), GetParam().end);
    EXPECT_EQ(outcome.error, GetParam().error);
    EXPECT_EQ(outputOf(outcome), "");
    EXPECT_EQ(errorsOf(outcome), "");
}

INSTANTIATE_TEST_SUITE_P(
    ByTheSystem, RefusedTest,
    testing::Values(RefusedCase{"no such program", [] { return program("/nowhere/svn"); }, ENOENT,
                                "could not start: No such file or directory"},
                    RefusedCase{"a directory", [] { return program("/tmp"); }, EACCES,
                                "could not start: Permission denied"},
                    RefusedCase{"not executable", [] { return program("/etc/passwd"); }, EACCES,
                                "could not start: Permission denied"},
                    RefusedCase{"below a file", [] { return program("/etc/passwd/svn"); }, ENOTDIR,
                                "could not start: Not a directory"},
                    RefusedCase{"one argument too long",
                                [] { return program("/bin/true", {std::string(200'000, 'x')}); },
                                E2BIG, "could not start: Argument list too long"},
                    RefusedCase{
                        "too many arguments",
                        [] { return program("/bin/true", std::vector<String>(2'000'000, "file")); },
                        E2BIG, "could not start: Argument list too long"}));

INSTANTIATE_TEST_SUITE_P(
    ByItsDirectory, RefusedTest,
    testing::Values(RefusedCase{"a directory that is not there",
                                [] { return programIn("/nowhere"); }, ENOENT,
                                "could not start: its working directory \"/nowhere\" cannot be "
                                "entered: No such file or directory"},
                    RefusedCase{"the empty text", [] { return programIn(""); }, ENOENT,
                                "could not start: its working directory \"\" cannot be entered: No "
                                "such file or directory"},
                    RefusedCase{"a file", [] { return programIn("/etc/passwd"); }, ENOTDIR,
                                "could not start: its working directory \"/etc/passwd\" cannot be "
                                "entered: Not a directory"}));

INSTANTIATE_TEST_SUITE_P(
    ByThisLayer, RefusedTest,
    testing::Values(
        RefusedCase{"nil", [] { return program(nullptr); }, EINVAL,
                    "could not start: the launch path is not absolute"},
        RefusedCase{"empty", [] { return program(""); }, EINVAL,
                    "could not start: the launch path is not absolute"},
        RefusedCase{"relative", [] { return program("bin/true"); }, EINVAL,
                    "could not start: the launch path is not absolute"},
        RefusedCase{"zero byte in the path", [] { return program(String("/bin/true\0x"sv)); },
                    EINVAL, "could not start: the launch path holds a zero byte"},
        RefusedCase{"zero byte in the working directory",
                    [] { return programIn(String("/tmp\0x"sv)); }, EINVAL,
                    "could not start: the working directory holds a zero byte"},
        RefusedCase{"zero byte in an argument",
                    [] {
                        return program("/bin/true", {"a", String("b\0"sv)});
                    },
                    EINVAL, "could not start: argument 2 holds a zero byte"},
        RefusedCase{"zero byte in a value", [] { return withVariable("NAME", String("\0"sv)); },
                    EINVAL, "could not start: the environment variable NAME holds a zero byte"},
        RefusedCase{"no name", [] { return withVariable("", "x"); }, EINVAL,
                    "could not start: an environment variable's name is empty, or holds '=' or a "
                    "zero byte"},
        RefusedCase{"a name with =", [] { return withVariable("A=B", "x"); }, EINVAL,
                    "could not start: an environment variable's name is empty, or holds '=' or a "
                    "zero byte"}));

class ProcessStartTest : public ProcessTest {};

TEST_F(ProcessStartTest, IsNoShells) {
    const std::string name = testing::TempDir() + "quen-no-program-" + std::to_string(::getpid());
    std::ofstream(name) << "exit 0\n";
    ::chmod(name.c_str(), 0755);
    EXPECT_EQ(described(run(program(String(name)))), "could not start: Exec format error");
    std::remove(name.c_str());
}

TEST_F(ProcessStartTest, HandsArgumentsOverAsTheyAre) {
    const ProcessOutcome outcome = run(
        faultChild("arguments", {"", nullptr, "two words", "$HOME", "*", "a\nb", "\"'\\", "-x"}));
    EXPECT_EQ(outputOf(outcome), "\0\0two words\0$HOME\0*\0a\nb\0\"'\\\0-x\0"sv);
}

TEST_F(ProcessStartTest, ChangesTheEnvironmentOfTheChildAlone) {
    const std::string wrong = inForkedHost([]() -> std::string {
        ::clearenv();
        ::setenv("KEPT", "host", 1);
        ::setenv("LANGUAGE", "de", 1);
        ::setenv("LC_ALL", "de_DE", 1);
        ProcessInvocation invocation = faultChild("environment");
        invocation.environment = {{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", nullptr}, {"EMPTY", ""}};
        const std::string seen(outputOf(run(invocation)));
        if (seen != "KEPT=host\0LC_ALL=C.UTF-8\0EMPTY=\0"sv) {
            return "the child saw " + seen;
        }
        return std::getenv("LC_ALL") == "de_DE"sv ? "" : "the host's own was changed";
    });
    EXPECT_EQ(wrong, "");
}

/// Where a child finds itself; a line.
std::string placeOfChild(const String& workingDirectory, bool endsWithHost) {
    ProcessInvocation invocation = program("/bin/pwd", {"-P"});
    invocation.workingDirectory = workingDirectory;
    invocation.endsWithHost = endsWithHost;
    return std::string(outputOf(run(invocation)));
}

TEST_F(ProcessStartTest, StartsTheChildInItsWorkingDirectoryTiedOrNot) {
    const std::filesystem::path here = std::filesystem::current_path();
    const std::filesystem::path directory = std::filesystem::canonical(testing::TempDir()) /
                                            ("quen start \xc3\xbc " + std::to_string(::getpid()));
    std::filesystem::create_directories(directory / "below");
    for (const bool endsWithHost : {false, true}) {
        EXPECT_EQ(placeOfChild(nullptr, endsWithHost), here.string() + "\n");
        EXPECT_EQ(placeOfChild(directory.string(), endsWithHost), directory.string() + "\n");
        EXPECT_EQ(placeOfChild((directory / "below/..").string(), endsWithHost),
                  directory.string() + "\n");
        const auto relative = std::filesystem::relative(directory, here).string();
        EXPECT_EQ(placeOfChild(relative, endsWithHost), directory.string() + "\n");
    }
    EXPECT_EQ(std::filesystem::current_path(), here);
    std::filesystem::remove_all(directory);
}

TEST_F(ProcessStartTest, WorksInAnEmptyEnvironment) {
    EXPECT_EQ(inForkedHost([]() -> std::string {
                  ::clearenv();
                  return described(run(faultChild("environment")));
              }),
              "exited 0");
}

} // namespace
} // namespace quen::test
