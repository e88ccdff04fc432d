#include "Host/RunContext.h"

#include "Foundation/Format.h"
#include "Host/ClientLookup.h"
#include "Host/ClientRunner.h"
#include "Host/Credentials/SignInRunner.h"

#include <iostream>
#include <mutex>
#include <string>
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

/// Emits through the context that is current where something is logged.
class SourceControlLogAspect : public MarlLogAspect {
public:
    explicit SourceControlLogAspect(std::uint32_t level) { _logLevel = level; }

    void _logAtLogLevel(std::uint32_t level, const String& format,
                        std::span<const FormatArgument> arguments) override {
        if (_logLevel.load() >= level) {
            RunContext::current().logHandler()(level, formatText(format.view(), arguments));
        }
    }
};

} // namespace

String messageOf(const MarlAssertionFailure& failure) {
    const std::vector<FormatArgument> arguments(failure.arguments.begin(), failure.arguments.end());
    return formatText(failure.format.view(), arguments);
}

struct RunContext::State : Ambient {
    State() = default;
    /// A copy to be changed before anybody else sees it.
    State(const State& other)
        : Ambient(), // NOLINT(readability-redundant-member-init): gcc wants it said
          plainRunner(other.plainRunner), credentials(other.credentials),
          toolRunner(other.toolRunner), logHandler(other.logHandler), logAspect(other.logAspect),
          assertionHandler(other.assertionHandler), toolsDirectory(other.toolsDirectory),
          temporaryDirectory(other.temporaryDirectory), environment(other.environment),
          workingDirectory(other.workingDirectory), limits(other.limits),
          outputWatcher(other.outputWatcher) {}
    State& operator=(const State&) = delete;
    ~State() override = default;

    void composeRunner() {
        toolRunner = credentials == nullptr
                         ? plainRunner
                         : std::make_shared<SignInRunner>(plainRunner, credentials);
    }

    ToolRunnerPtr plainRunner = std::make_shared<ClientRunner>();
    CredentialsPtr credentials;
    ToolRunnerPtr toolRunner = plainRunner; // made of the two
    LogHandler logHandler = printLogLine;
    std::shared_ptr<MarlLogAspect> logAspect = std::make_shared<SourceControlLogAspect>(0);
    AssertionHandler assertionHandler = printAssertion;
    String toolsDirectory;
    String temporaryDirectory;
    EnvironmentChanges environment;
    String workingDirectory;
    RunLimits limits;
    OutputWatcher outputWatcher;
};

namespace {

std::mutex& defaultMutex() {
    static std::mutex mutex;
    return mutex;
}

} // namespace

RunContext::RunContext() : state_(std::make_shared<const State>()) {}

std::shared_ptr<const RunContext::State>& RunContext::defaultState() {
    static auto state = std::make_shared<const State>();
    return state;
}

RunContext RunContext::processDefault() {
    const std::lock_guard lock(defaultMutex());
    return RunContext(defaultState());
}

void RunContext::setProcessDefault(RunContext context) {
    const std::lock_guard lock(defaultMutex());
    defaultState().swap(context.state_);
}

/// No other kind of ambient is ever installed in a process that uses this library.
RunContext RunContext::current() {
    auto state = std::static_pointer_cast<const State>(Ambient::current());
    return state == nullptr ? processDefault() : RunContext(std::move(state));
}

template <typename Change> RunContext RunContext::with(Change change) const {
    const auto changed = std::make_shared<State>(*state_);
    change(*changed);
    return RunContext(changed);
}

const ToolRunnerPtr& RunContext::toolRunner() const noexcept {
    return state_->toolRunner;
}

RunContext RunContext::withToolRunner(ToolRunnerPtr runner) const {
    return with([&](State& state) {
        state.plainRunner =
            runner != nullptr ? std::move(runner) : std::make_shared<ClientRunner>();
        state.composeRunner();
    });
}

const CredentialsPtr& RunContext::credentials() const noexcept {
    return state_->credentials;
}

RunContext RunContext::withCredentials(CredentialsPtr credentials) const {
    return with([&](State& state) {
        state.credentials = std::move(credentials);
        state.composeRunner();
    });
}

const RunContext::LogHandler& RunContext::logHandler() const noexcept {
    return state_->logHandler;
}

RunContext RunContext::withLogHandler(LogHandler handler) const {
    return with([&](State& state) {
        state.logHandler = handler ? std::move(handler) : LogHandler(printLogLine);
    });
}

const std::shared_ptr<MarlLogAspect>& RunContext::logAspect() const noexcept {
    return state_->logAspect;
}

RunContext RunContext::withLogLevel(std::uint32_t level) const {
    return with([level](State& state) {
        state.logAspect = std::make_shared<SourceControlLogAspect>(level);
    });
}

const RunContext::AssertionHandler& RunContext::assertionHandler() const noexcept {
    return state_->assertionHandler;
}

RunContext RunContext::withAssertionHandler(AssertionHandler handler) const {
    return with([&](State& state) {
        state.assertionHandler = handler ? std::move(handler) : AssertionHandler(printAssertion);
    });
}

String RunContext::toolsDirectory() const {
    return state_->toolsDirectory.isNil()
               ? directoryOfClient(variableOf(state_->environment, "PATH").view())
               : state_->toolsDirectory;
}

RunContext RunContext::withToolsDirectory(String directory) const {
    return with([&](State& state) { state.toolsDirectory = std::move(directory); });
}

String RunContext::temporaryDirectory() const {
    if (!state_->temporaryDirectory.isNil()) {
        return state_->temporaryDirectory;
    }
    const String directory = variableOf(state_->environment, "TMPDIR");
    return directory.isEmpty() ? "/tmp" : directory;
}

RunContext RunContext::withTemporaryDirectory(String directory) const {
    return with([&](State& state) { state.temporaryDirectory = std::move(directory); });
}

const EnvironmentChanges& RunContext::environment() const noexcept {
    return state_->environment;
}

RunContext RunContext::withEnvironment(EnvironmentChanges changes) const {
    return with([&](State& state) { state.environment = std::move(changes); });
}

const String& RunContext::workingDirectory() const noexcept {
    return state_->workingDirectory;
}

RunContext RunContext::withWorkingDirectory(String directory) const {
    return with([&](State& state) { state.workingDirectory = std::move(directory); });
}

const RunLimits& RunContext::limits() const noexcept {
    return state_->limits;
}

RunContext RunContext::withLimits(RunLimits limits) const {
    return with([&](State& state) { state.limits = limits; });
}

const RunContext::OutputWatcher& RunContext::outputWatcher() const noexcept {
    return state_->outputWatcher;
}

RunContext RunContext::withOutputWatcher(OutputWatcher watcher) const {
    return with([&](State& state) { state.outputWatcher = std::move(watcher); });
}

RunContext::Scope::Scope(const RunContext& context) noexcept : scope_(context.state_) {}

} // namespace quen
