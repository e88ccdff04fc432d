#pragma once

#include "Host/Process/FileDescriptor.h"
#include "Tests/Server/FakeClient.h"
#include "Tests/System/Sandbox.h"

#include <atomic>
#include <optional>
#include <string>
#include <sys/types.h>
#include <thread>

namespace quen::test {

/// The real process, with a client that keeps everything it says. Ended with the test.
class RunningServer {
public:
    using Words = std::vector<std::string>;

    /// `variables` are added to the sandbox's environment: `NAME=value`.
    explicit RunningServer(const Sandbox& sandbox, const Words& options = {},
                           const Words& variables = {});
    RunningServer(const RunningServer&) = delete;
    RunningServer& operator=(const RunningServer&) = delete;
    ~RunningServer();

    /// Sends bytes as they are.
    void sendRaw(std::string_view bytes) const;
    void notify(const std::string& method, const Json& params = Json::object()) const;
    /// Sends a request and answers its id.
    int start(const std::string& method, const Json& params = Json::object());
    /// The whole answer; null when none came within the bound.
    Json answer(const Json& id) const { return client_.answer(id); }
    /// The result, or the error where there is one.
    Json ask(const std::string& method, const Json& params = Json::object());
    /// `initialize` and `initialized`.
    Json initialize(const Json& params = Json::object());

    const FakeClient& client() const { return client_; }
    pid_t number() const { return number_; }
    void closeInput() { input_.close(); }
    /// Reading stands still from now on, or goes on.
    void setReading(bool reads) { reads_ = reads; }
    /// The exit status; nullopt where the process does not end within the bound.
    std::optional<int> waitForEnd();
    /// The processes that it started and that are there now.
    std::vector<pid_t> children() const;
    /// Of its own memory in kilobytes, and its open descriptors.
    std::size_t residentKilobytes() const;
    std::size_t descriptors() const;

private:
    void read();

    FileDescriptor input_;
    FileDescriptor output_;
    pid_t number_ = -1;
    std::optional<int> status_;
    FakeClient client_;
    std::atomic<bool> reads_ = true;
    int lastId_ = 0;
    std::thread reader_;
};

/// Waits until it holds, a bound of time at most.
bool becomesTrue(const std::function<bool()>& holds);

} // namespace quen::test
