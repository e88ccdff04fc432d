// A host of one's own, of the contract's headers alone: own-host MODULE FILE...
//
// Shows the status of the files. It links quen::Contract, headers and value types, and nothing of
// the reference host. What a host owes a run, by number, stands in QuenSourceControlRun.h.

#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <iostream>
#include <quen/Foundation/Format.h>
#include <quen/Foundation/PathComponents.h>
#include <quen/MarlFoundation/MarlAssertionFailureHandler.h>
#include <quen/MarlFoundation/MarlDeveloperPaths.h>
#include <quen/QuenFoundation/QuenSourceControlDefinitions.h>
#include <quen/QuenFoundation/QuenSourceControlFunctions.h>
#include <quen/QuenFoundation/QuenSourceControlManager.h>
#include <quen/QuenFoundation/QuenSourceControlOperation.h>
#include <quen/QuenFoundation/QuenSourceControlPlugIn.h>
#include <quen/QuenFoundation/QuenSourceControlRun.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quen {

struct QuenSourceControlOperation::State {
    QuenSourceControlRequestPtr request;
    Value result;
    Error error;
};
using Work = QuenSourceControlOperation;
Work::QuenSourceControlOperation() : state_(std::make_unique<State>()) {}
Work::~QuenSourceControlOperation() = default;
bool Work::initWithRequest(QuenSourceControlRequestPtr request) {
    state_->request = request;
    return request != nullptr;
}
const QuenSourceControlRequestPtr& Work::request() const {
    return state_->request;
}
const Value& Work::result() const {
    return state_->result;
}
void Work::setResult(Value result) {
    state_->result = result;
}
const Error& Work::error() const {
    return state_->error;
}
void Work::setError(Error error) {
    state_->error = error;
}
void Work::main() {}

struct QuenSourceControlTaskOperation::TaskState {
    String launchPath;
    std::optional<StringArray> arguments;
    DataPtr data;
    int status = 0;
    std::vector<ClientNumber> numbers;
};
using Task = QuenSourceControlTaskOperation;
Task::QuenSourceControlTaskOperation() : task_(std::make_unique<TaskState>()) {}
Task::~QuenSourceControlTaskOperation() = default;
bool Task::initWithRequest(QuenSourceControlRequestPtr request) {
    return Work::initWithRequest(request);
}
String Task::launchPath() const {
    return task_->launchPath;
}
void Task::setLaunchPath(String launchPath) {
    task_->launchPath = launchPath;
}
const std::optional<StringArray>& Task::arguments() const {
    return task_->arguments;
}
void Task::setArguments(std::optional<StringArray> arguments) {
    task_->arguments = arguments;
}
DataPtr Task::data() const {
    return task_->data;
}
void Task::setData(DataPtr data) {
    task_->data = data;
}
void Task::outputArrived(std::string_view) {}
void Task::parseData() {}

Error ownError(std::int64_t code, const String& text) {
    return {"OwnHostErrorDomain", code, {{NSLocalizedDescriptionKey, text}}};
}

Error Task::errorFromErrorMessage(const String& message) {
    const bool isNotice = task_->status == 0 && holdsOnlyWarnings(message.view());
    if (message.isEmpty() || isNotice || meansAbsentProperty(task_->numbers)) {
        return {}; // rule 6
    }
    return ownError(1, withoutClientPrefixes(message.view()));
}

std::string contentOf(std::FILE* file) {
    std::string text;
    std::rewind(file);
    for (char buffer[4096]; const std::size_t size = std::fread(buffer, 1, sizeof buffer, file);) {
        text.append(buffer, size);
    }
    std::fclose(file);
    return text;
}

/// Rules 2 and 3: both streams go to files, so that neither has to wait. The wait status; -1 where
/// the client could not be started.
int runClient(const std::string& path, const StringArray& arguments, std::string& out,
              std::string& err) {
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (const String& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    setenv("LC_ALL", "C.UTF-8", 1);
    std::FILE* const streams[] = {std::tmpfile(), std::tmpfile()};
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, fileno(streams[0]), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fileno(streams[1]), STDERR_FILENO);
    pid_t child = 0;
    int status = -1;
    if (posix_spawn(&child, path.c_str(), &actions, &attributes, words.data(), environ) == 0) {
        waitpid(child, &status, 0);
    }
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    out = contentOf(streams[0]);
    err = contentOf(streams[1]);
    return status;
}

void Task::main() {
    if (error() || !arguments()) {
        return; // rule 1
    }
    std::string out, err;
    task_->status = runClient(launchPath().str(), *arguments(), out, err);
    if (task_->status == -1) {
        setError(ownError(2, formatText("\"%@\" could not be started.", {launchPath()})));
        return; // rule 9
    }
    setData(std::make_shared<Data>(out));
    parseData();                                          // rule 4
    const ClientMessage message = readClientMessage(err); // rule 5
    task_->numbers = message.numbers;
    const Error translated = message.text.isEmpty() ? Error() : errorFromErrorMessage(message.text);
    if (translated) {
        setError(translated); // rule 8; this host's own translation always has the client's words
    } else if (!error() && task_->status != 0 && !meansAbsentProperty(message.numbers)) {
        setError(
            ownError(3, formatText("The client failed with status %ld.", {task_->status}))); // 7
    }
}

class OwnPath : public MarlFilePath {
public:
    explicit OwnPath(String path) : path_(path) {}
    bool existsInFileSystem() const override {
        return faccessat(AT_FDCWD, path_.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    }
    String fileName() const override { return lastPathComponent(path_.view()); }
    String pathString() const override { return path_; }

private:
    String path_;
};
MarlFilePathPtr MarlFilePath::filePathForPathString(const String& path) {
    return path.isNil() ? nullptr : std::make_shared<OwnPath>(path);
}

struct OwnPaths : MarlDeveloperPaths {
    struct Bin : MarlSearchPath {
        MarlFilePathPtr preferredDirectoryPath() const override {
            return std::make_shared<OwnPath>("/usr/bin");
        }
    };
    std::shared_ptr<MarlSearchPath> binSearchPathForPlatform(int) const override {
        return std::make_shared<Bin>();
    }
};
std::shared_ptr<MarlDeveloperPaths> MarlDeveloperPaths::defaultPaths() {
    return std::make_shared<OwnPaths>();
}

MarlFilePathPtr QuenSourceControl_filePathForTmpFileBasedOnFileName(const String& fileName,
                                                                    Error*) {
    char directory[] = "/tmp/own-host.XXXXXX";
    return mkdtemp(directory) == nullptr ? nullptr
                                         : std::make_shared<OwnPath>(appendingPathComponent(
                                               directory, lastPathComponent(fileName.view())));
}
String quensc_stringFromData(const DataPtr& data) {
    return data == nullptr ? String() : String(data->bytes());
}

struct OwnLog : MarlLogAspect {
    void _logAtLogLevel(std::uint32_t level, const String& format,
                        std::span<const FormatArgument> arguments) override {
        if (_logLevel >= level) {
            std::cerr << formatText(format.view(), arguments) << '\n';
        }
    }
};
std::shared_ptr<MarlLogAspect> QuenSourceControlManager::sourceControlLogAspect() {
    static const auto log = std::make_shared<OwnLog>();
    return log;
}
void MarlAssertionFailureHandler(const MarlAssertionFailure& failure) {
    std::cerr << failure.method << ": " << failure.format << '\n';
}

} // namespace quen

int main(int count, char** words) {
    using namespace quen;
    void* const module = count < 3 ? nullptr : dlopen(words[1], RTLD_NOW | RTLD_NODELETE);
    auto* const entryPoint = module == nullptr
                                 ? nullptr
                                 : reinterpret_cast<QuenSourceControlPlugInEntryPoint*>(
                                       dlsym(module, QuenSourceControlPlugInEntryPointName));
    if (entryPoint == nullptr ||
        entryPoint()->contractVersion != QuenSourceControlContractVersion) {
        std::cerr << "Usage: own-host MODULE FILE...\n" << (count < 3 ? "" : dlerror()) << '\n';
        return 2;
    }
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(RequestTypeStatus, nullptr, StringArray(words + 2, words + count), {});
    const auto operation = entryPoint()->makeProvider()->operationForRequest(request);
    operation->run();
    if (const Array* const items = operation->result().array()) {
        for (const Value& item : *items) {
            const Dictionary& record = *item.dictionary();
            std::cout << record[QuenSourceControlOperationWCStatusKey].stringValue() << ' '
                      << record[QuenSourceControlOperationPathKey].stringValue() << '\n';
        }
    }
    std::cerr << operation->error().localizedDescription().view();
    return operation->error() ? 1 : 0;
}
