#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace quen::tools::server {

using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;

/// The codes of a protocol error.
enum ProtocolErrorCode : int {
    ParseError = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    InternalError = -32603,
    ServerNotInitialized = -32002,
    RequestCancelled = -32800,
};

enum class MessageKind {
    request,
    notification,
    /// Of the client, to a request of the server.
    response,
    /// A text that is not JSON: nothing is known of it.
    notJson,
    /// JSON that is not a message, or not a good one.
    invalid,
};

/// One message of JSON-RPC 2.0 as it came in.
struct Message {
    MessageKind kind = MessageKind::notJson;
    /// A number or a string; null where there is none, or none to be trusted.
    Json id;
    std::string method;
    /// An object or an array; an empty object where there was none.
    Json params = Json::object();
    /// Of a response; null where it was an error.
    Json result;
    /// Of a response: the error's message; empty where it was a result.
    std::string failure;
    /// What is wrong with a message that is not valid, and the code of the answer.
    int faultCode = 0;
    std::string fault;
    /// How many bytes it took.
    std::size_t size = 0;
};

/// Reads a message. Never throws for what the text holds. A name that stands twice in an object is
/// a fault; so is nesting deeper than `deepest`.
Message readMessage(std::string_view text);

constexpr int deepestNesting = 128;

/// The texts of messages that go out; bytes that are not UTF-8 become U+FFFD.
std::string resultText(const Json& id, const OrderedJson& result);
std::string errorText(const Json& id, int code, const std::string& message,
                      const OrderedJson& data = nullptr);
std::string notificationText(std::string_view method, const OrderedJson& params);
std::string requestText(std::int64_t id, std::string_view method, const OrderedJson& params);

/// A message with its header.
std::string framed(std::string_view body);

} // namespace quen::tools::server
