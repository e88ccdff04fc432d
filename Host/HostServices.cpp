#include "Host/HostServices.h"

#include "Foundation/Format.h"
#include "Host/ClientRunner.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quen {

namespace {

void printAssertion(const MarlAssertionFailure& failure) {
    std::cerr << failure.method << " (" << failure.file << ':' << failure.line
              << "): " << messageOf(failure) << '\n';
}

void printLogLine(std::uint32_t level, const String& text) {
    std::cerr << '[' << level << "] " << text << '\n';
}

/// A directory may be called `svn` too.
bool isProgram(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}

/// The first directory on PATH that holds an executable `svn`.
String directoryOfClient() {
    const char* const variable = std::getenv("PATH"); // NOLINT(concurrency-mt-unsafe)
    std::string_view path = variable == nullptr ? "" : variable;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find(':'), path.size());
        const std::string directory(path.substr(0, end));
        if (directory.starts_with('/') && isProgram(directory + "/svn")) {
            return directory;
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return "/usr/bin";
}

} // namespace

String messageOf(const MarlAssertionFailure& failure) {
    const std::vector<FormatArgument> arguments(failure.arguments.begin(), failure.arguments.end());
    return formatText(failure.format.view(), arguments);
}

HostServices::HostServices()
    : assertionHandler_(printAssertion), logHandler_(printLogLine),
      toolRunner_(std::make_shared<ClientRunner>()) {}

HostServices& HostServices::shared() {
    static HostServices services;
    return services;
}

void HostServices::setAssertionHandler(AssertionHandler handler) {
    const std::lock_guard lock(mutex_);
    assertionHandler_ = handler ? std::move(handler) : AssertionHandler(printAssertion);
}

HostServices::AssertionHandler HostServices::assertionHandler() const {
    const std::lock_guard lock(mutex_);
    return assertionHandler_;
}

void HostServices::setLogHandler(LogHandler handler) {
    const std::lock_guard lock(mutex_);
    logHandler_ = handler ? std::move(handler) : LogHandler(printLogLine);
}

HostServices::LogHandler HostServices::logHandler() const {
    const std::lock_guard lock(mutex_);
    return logHandler_;
}

void HostServices::setToolsDirectory(String directory) {
    const std::lock_guard lock(mutex_);
    toolsDirectory_ = std::move(directory);
}

String HostServices::toolsDirectory() const {
    const std::lock_guard lock(mutex_);
    return toolsDirectory_.isNil() ? directoryOfClient() : toolsDirectory_;
}

void HostServices::setTemporaryDirectory(String directory) {
    const std::lock_guard lock(mutex_);
    temporaryDirectory_ = std::move(directory);
}

String HostServices::temporaryDirectory() const {
    const std::lock_guard lock(mutex_);
    if (!temporaryDirectory_.isNil()) {
        return temporaryDirectory_;
    }
    const char* const variable = std::getenv("TMPDIR"); // NOLINT(concurrency-mt-unsafe)
    return variable == nullptr || *variable == '\0' ? "/tmp" : variable;
}

void HostServices::setToolRunner(ToolRunnerPtr runner) {
    const std::lock_guard lock(mutex_);
    toolRunner_ = runner == nullptr ? std::make_shared<ClientRunner>() : std::move(runner);
}

ToolRunnerPtr HostServices::toolRunner() const {
    const std::lock_guard lock(mutex_);
    return toolRunner_;
}

} // namespace quen
