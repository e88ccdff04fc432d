#include "Tests/Server/RunningServer.h"

#include "Host/Process/ChildProcess.h"
#include "Tools/Server/Wire/FrameReader.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace quen::test {

namespace {

using namespace std::chrono_literals;

pid_t spawn(const std::vector<std::string>& words, int input, int output) {
    std::vector<std::string> copies = words;
    std::vector<char*> arguments;
    for (std::string& word : copies) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t number = -1;
    if (::posix_spawn(&number, arguments.front(), &actions, nullptr, arguments.data(), environ) !=
        0) {
        throw std::runtime_error("The server cannot be started.");
    }
    posix_spawn_file_actions_destroy(&actions);
    return number;
}

std::vector<std::string> commandOf(const Sandbox& sandbox, const RunningServer::Words& options,
                                   const RunningServer::Words& variables) {
    RunningServer::Words words{Sandbox::program(), "serve"};
    words.insert(words.end(), options.begin(), options.end());
    const ProcessInvocation invocation = sandbox.invocation(words, sandbox.root(), variables);
    // `env` takes its options before its variables; the first two arguments are one of them.
    RunningServer::Words command{invocation.launchPath.str(), invocation.arguments[0].str(),
                                 invocation.arguments[1].str()};
    RunningServer::Words values;
    for (const auto& [name, value] : invocation.environment) {
        if (value.isNil()) {
            command.insert(command.end(), {"-u", name.str()});
        } else {
            values.push_back(name.str() + "=" + value.str());
        }
    }
    command.insert(command.end(), values.begin(), values.end());
    for (std::size_t i = 2; i < invocation.arguments.size(); ++i) {
        command.push_back(invocation.arguments[i].str());
    }
    return command;
}

std::string firstLineWith(const std::string& file, std::string_view beginning) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(beginning)) {
            return line.substr(beginning.size());
        }
    }
    return {};
}

} // namespace

bool becomesTrue(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        ::poll(nullptr, 0, 10);
    }
    return true;
}

RunningServer::RunningServer(const Sandbox& sandbox, const Words& options, const Words& variables) {
    std::signal(SIGPIPE, SIG_IGN); // a server that has ended reads no more
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (::pipe2(in.data(), O_CLOEXEC) != 0 || ::pipe2(out.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("There are no pipes to be had.");
    }
    const FileDescriptor childsInput(in[0]);
    const FileDescriptor childsOutput(out[1]);
    input_ = FileDescriptor(in[1]);
    output_ = FileDescriptor(out[0]);
    number_ = spawn(commandOf(sandbox, options, variables), in[0], out[1]);
    reader_ = std::thread([this] { read(); });
}

RunningServer::~RunningServer() {
    reads_ = true;
    input_.close();
    if (!waitForEnd()) {
        ::kill(number_, SIGKILL);
        ::waitpid(number_, nullptr, 0);
    }
    reader_.join();
}

void RunningServer::read() {
    tools::server::FrameReader frames;
    std::array<char, 65536> piece{};
    while (true) {
        if (!reads_) {
            ::poll(nullptr, 0, 10);
            continue;
        }
        const ssize_t count = ::read(output_.number(), piece.data(), piece.size());
        if (count <= 0) {
            return;
        }
        frames.feed({piece.data(), static_cast<std::size_t>(count)});
        while (auto frame = frames.next()) {
            client_.send(frame->fault.empty()
                             ? std::move(frame->body)
                             : Json{{"id", "fault"}, {"fault", frame->fault}}.dump(),
                         {});
        }
    }
}

void RunningServer::sendRaw(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(input_.number(), bytes.data(), bytes.size());
        if (count <= 0) {
            return;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void RunningServer::notify(const std::string& method, const Json& params) const {
    sendRaw(tools::server::framed(
        Json{{"jsonrpc", "2.0"}, {"method", method}, {"params", params}}.dump()));
}

int RunningServer::start(const std::string& method, const Json& params) {
    const int id = ++lastId_;
    sendRaw(tools::server::framed(
        Json{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}}.dump()));
    return id;
}

Json RunningServer::ask(const std::string& method, const Json& params) {
    const Json whole = answer(start(method, params));
    if (whole.is_null()) {
        return "no answer";
    }
    return whole.contains("result") ? whole.at("result") : whole.at("error");
}

Json RunningServer::initialize(const Json& params) {
    Json result = ask("initialize", params);
    notify("initialized");
    return result;
}

std::optional<int> RunningServer::waitForEnd() {
    if (!status_) {
        int status = 0;
        if (!becomesTrue([&] { return ::waitpid(number_, &status, WNOHANG) == number_; })) {
            return std::nullopt;
        }
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    return status_;
}

std::vector<pid_t> RunningServer::children() const {
    std::vector<pid_t> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") == std::string::npos &&
            std::atoi(firstLineWith(entry.path() / "status", "PPid:\t").c_str()) == number_) {
            numbers.push_back(std::atoi(name.c_str()));
        }
    }
    return numbers;
}

std::size_t RunningServer::residentKilobytes() const {
    return std::stoul(firstLineWith("/proc/" + std::to_string(number_) + "/status", "VmRSS:"));
}

std::size_t RunningServer::descriptors() const {
    const std::filesystem::directory_iterator all("/proc/" + std::to_string(number_) + "/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

} // namespace quen::test
