// A client of the server, in C++ and of nothing else of the project: server-client QUEN DIRECTORY
//
// Starts `quen serve`, says hello, opens the working copy, prints what has changed, and leaves. A
// message is a line "Content-Length: N", an empty line, and N bytes of JSON-RPC.

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <nlohmann/json.hpp>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

using Json = nlohmann::json;

namespace {

class Server {
public:
    explicit Server(const std::string& program) {
        if (pipe2(in_.data(), O_CLOEXEC) != 0 || pipe2(out_.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipes");
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in_[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, out_[1], STDOUT_FILENO);
        std::array<char*, 3> words{const_cast<char*>(program.c_str()), const_cast<char*>("serve"),
                                   nullptr};
        const int error =
            posix_spawn(&child_, program.c_str(), &actions, nullptr, words.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(in_[0]);
        close(out_[1]);
        if (error != 0) {
            throw std::runtime_error("cannot start " + program);
        }
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server() {
        close(in_[1]);
        close(out_[0]);
        waitpid(child_, nullptr, 0);
    }

    /// Sends a request and waits for its answer. What the server tells meanwhile goes to `told`.
    template <typename Told> Json ask(const std::string& method, const Json& params, Told told) {
        send({{"jsonrpc", "2.0"}, {"id", ++last_}, {"method", method}, {"params", params}});
        for (;;) {
            const Json message = read();
            if (message.contains("method")) {
                told(message);
            } else if (message.value("id", 0) == last_) {
                if (message.contains("error")) {
                    throw std::runtime_error(message["error"].value("message", "?"));
                }
                return message["result"];
            }
        }
    }
    Json ask(const std::string& method, const Json& params = Json::object()) {
        return ask(method, params, [](const Json&) {});
    }
    void tell(const std::string& method) { send({{"jsonrpc", "2.0"}, {"method", method}}); }

private:
    void send(const Json& message) {
        const std::string body = message.dump();
        const std::string text =
            "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
        if (write(in_[1], text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
            throw std::runtime_error("the server does not listen");
        }
    }

    std::string take(std::size_t size) {
        std::string text(size, '\0');
        for (std::size_t got = 0; got < size;) {
            const ssize_t part = ::read(out_[0], text.data() + got, size - got);
            if (part <= 0) {
                throw std::runtime_error("the server has ended");
            }
            got += static_cast<std::size_t>(part);
        }
        return text;
    }

    Json read() {
        std::string head;
        while (!head.ends_with("\r\n\r\n")) {
            head += take(1);
        }
        const std::size_t size = std::strtoul(head.c_str() + head.find(':') + 1, nullptr, 10);
        return Json::parse(take(size));
    }

    std::array<int, 2> in_{};
    std::array<int, 2> out_{};
    pid_t child_ = 0;
    int last_ = 0;
};

} // namespace

int main(int count, char** words) {
    if (count != 3) {
        std::cerr << "Usage: server-client QUEN DIRECTORY\n";
        return 2;
    }
    try {
        Server server(words[1]);
        server.ask("initialize", {{"clientInfo", {{"name", "example"}}}});
        server.tell("initialized");
        const Json copy = server.ask("workingCopy/open", {{"path", words[2]}});
        if (copy.is_null()) {
            std::cerr << words[2] << " is not a working copy\n";
            return 1;
        }
        const Json status =
            server.ask("workingCopy/status", {{"workingCopy", copy["workingCopy"]}});
        for (const Json& item : status["items"]) {
            std::cout << item["status"].get<std::string>() << ' ' << item["path"].get<std::string>()
                      << '\n';
        }
        server.ask("shutdown");
        server.tell("exit");
    } catch (const std::exception& error) {
        std::cerr << "server-client: " << error.what() << '\n';
        return 1;
    }
}
