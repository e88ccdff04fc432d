#include "Tests/System/Sandbox.h"

#include "Host/Process/Process.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <system_error>

namespace quen::test {

namespace {

std::filesystem::path freshDirectory() {
    std::string path = (std::filesystem::temp_directory_path() / "quen-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
        throw std::runtime_error("No directory can be made at " + path + ".");
    }
    return std::filesystem::canonical(path);
}

void replaceAll(std::string& text, const std::string& old, std::string_view with) {
    for (auto at = text.find(old); at != std::string::npos; at = text.find(old, at + with.size())) {
        text.replace(at, old.size(), with);
    }
}

} // namespace

Sandbox::Sandbox() : root_(freshDirectory()) {
    std::filesystem::create_directory(root_ / "home");
    const Ran made = run({"svnadmin", "create", (root_ / "repository").string()}, root_);
    if (made.status != 0) {
        throw std::runtime_error("No repository can be made: " + made.err);
    }
    std::filesystem::create_directory(workingCopy());
    svn({"mkdir", "-q", "--username", "alice", "-m", "The usual layout", url("trunk"),
         url("branches"), url("tags")});
    svn({"checkout", "-q", url("trunk"), workingCopy().string()});
}

Sandbox::~Sandbox() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

std::string Sandbox::url(std::string_view path) const {
    return "file://" + (root_ / "repository").string() + (path.empty() ? "" : "/") +
           std::string(path);
}

void Sandbox::write(const std::filesystem::path& path, std::string_view text) const {
    const std::filesystem::path whole = workingCopy() / path;
    std::filesystem::create_directories(whole.parent_path());
    std::ofstream file(whole, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw std::runtime_error(whole.string() + " cannot be written.");
    }
}

std::string Sandbox::read(const std::filesystem::path& path) const {
    std::ifstream file(workingCopy() / path, std::ios::binary);
    if (!file) {
        throw std::runtime_error((workingCopy() / path).string() + " cannot be read.");
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string Sandbox::svn(const Words& words) const {
    Words command{"svn", "--non-interactive"};
    command.insert(command.end(), words.begin(), words.end());
    Ran ran = run(command, workingCopy());
    if (ran.status != 0) {
        throw std::runtime_error("svn " + words.front() + ": " + ran.err);
    }
    return std::move(ran.out);
}

void Sandbox::commit(const std::string& message, const std::string& author) const {
    svn({"commit", "-q", "--username", author, "-m", message});
    svn({"update", "-q"});
}

Ran Sandbox::quen(const Words& words, const std::filesystem::path& directory) const {
    Words command{program()};
    command.insert(command.end(), words.begin(), words.end());
    return run(command, directory);
}

Ran Sandbox::run(const Words& words, const std::filesystem::path& directory,
                 const Words& variables) const {
    const ProcessOutcome outcome = runProcess(invocation(words, directory, variables), {});
    return {outcome.exitStatus.value_or(-1), std::string(outcome.output->bytes()),
            std::string(outcome.errors->bytes())};
}

ProcessInvocation Sandbox::invocation(const Words& words, const std::filesystem::path& directory,
                                      const Words& variables) const {
    ProcessInvocation invocation;
    invocation.launchPath = "/usr/bin/env";
    invocation.arguments = {"-C", directory.string()};
    invocation.arguments.insert(invocation.arguments.end(), variables.begin(), variables.end());
    invocation.arguments.insert(invocation.arguments.end(), words.begin(), words.end());
    invocation.environment = {{"HOME", (root_ / "home").string()},
                              {"XDG_STATE_HOME", String()},
                              {"TZ", "UTC"},
                              {"LC_ALL", "C.UTF-8"},
                              {"LANGUAGE", String()},
                              {"PAGER", String()},
                              {"SVN_EDITOR", String()},
                              {"VISUAL", String()},
                              {"EDITOR", String()},
                              {"QUEN_PLUG_IN", String()}};
    invocation.limits.total = std::chrono::seconds(30);
    return invocation;
}

std::string Sandbox::neutral(std::string_view text) const {
    std::string shown(text);
    replaceAll(shown, root_.string(), "SANDBOX");
    static const std::regex date(R"(\d{4}-\d\d-\d\d[T ]\d\d:\d\d:\d\d(\.\d{6}Z| [+-]\d{4}))");
    static const std::regex age(R"(just now|\d+ (second|minute|hour)s? ago)");
    shown = std::regex_replace(shown, date, "DATE");
    return std::regex_replace(shown, age, "AGE");
}

std::string Sandbox::program() {
    return QUEN_TEST_PROGRAM;
}

} // namespace quen::test
