#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Tools/Console/JsonInput.h"
#include "Tools/Server/Server.h"
#include "Tools/Server/Wire/FrameReader.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quen::fuzz {

using namespace tools::server;

namespace {

/// Keeps what the server says, and holds it to its form.
class Listener : public MessageSink {
public:
    bool send(std::string body, const std::stop_token& /*stop*/) override {
        const Json message = Json::parse(body, nullptr, false);
        require(message.is_object() && message.value("jsonrpc", "") == "2.0",
                "a message of no kind");
        require(message.contains("result") != message.contains("error"),
                "neither a result nor an error");
        ++count;
        return true;
    }
    bool offer(std::string body) override { return send(std::move(body), {}); }

    std::size_t count = 0;
};

struct Read {
    std::vector<std::string> frames;
    bool isAtEdge = false;

    friend bool operator==(const Read&, const Read&) = default;
};

Read readInPieces(std::string_view stream, std::size_t size) {
    FrameReader reader(4096);
    Read read;
    for (std::size_t at = 0; at < stream.size(); at += size) {
        reader.feed(stream.substr(at, size));
        while (auto frame = reader.next()) {
            read.frames.push_back(frame->fault.empty() ? frame->body : "!" + frame->fault);
        }
    }
    read.isAtEdge = reader.isAtEdge();
    return read;
}

/// One conversation; nothing that it says starts a thread, for it has no methods of its own.
std::size_t converse(std::string_view stream) {
    Listener listener;
    Server server(listener);
    FrameReader reader(4096);
    reader.feed(stream);
    while (auto frame = reader.next()) {
        if (!frame->fault.empty()) {
            server.tellFault(frame->fault);
        } else if (server.receive(frame->body) == Server::Received::notJson) {
            // As the process does it; the bytes become fewer each time, so this ends.
            reader.giveBack(frame->body);
        }
    }
    require(server.exitStatus() == 0 || server.exitStatus() == 1, "another status");
    return listener.count;
}

} // namespace

void run(FuzzInput input) {
    const std::size_t size = 1 + input.byte() % 64;
    const std::string_view stream = input.rest();
    require(readInPieces(stream, size) ==
                readInPieces(stream, std::max<std::size_t>(stream.size(), 1)),
            "pieces are read otherwise than the whole");
    converse(stream);
    const Message message = readMessage(stream);
    require(message.kind != MessageKind::request || !message.id.is_null(),
            "a request without an id");
}

} // namespace quen::fuzz
