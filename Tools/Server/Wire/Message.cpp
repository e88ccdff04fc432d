#include "Tools/Server/Wire/Message.h"

#include "Tools/Server/Wire/StrictJson.h"

#include <utility>

namespace quen::tools::server {

namespace {

std::string textOf(const OrderedJson& json) {
    return json.dump(-1, ' ', false, OrderedJson::error_handler_t::replace);
}

bool isId(const Json& id) {
    return id.is_string() || id.is_number_integer();
}

void fail(Message& message, int code, std::string fault) {
    message.kind = MessageKind::invalid;
    message.faultCode = code;
    message.fault = std::move(fault);
}

void readResponse(Message& message, Json& object) {
    message.kind = MessageKind::response;
    if (const auto error = object.find("error"); error != object.end()) {
        const bool hasText =
            error->is_object() && error->contains("message") && error->at("message").is_string();
        message.failure = hasText ? error->at("message").get<std::string>() : "error";
    } else {
        message.result = std::move(object["result"]);
    }
}

void readCall(Message& message, Json& object) {
    message.kind = object.contains("id") ? MessageKind::request : MessageKind::notification;
    if (!object["method"].is_string()) {
        fail(message, InvalidRequest, "method: expected a string");
        return;
    }
    message.method = object["method"].get<std::string>();
    const auto params = object.find("params");
    if (params == object.end() || params->is_null()) {
        return;
    }
    message.params = std::move(*params);
    if (!message.params.is_object()) {
        fail(message, InvalidParams, "params: expected an object");
    }
}

void readObject(Message& message, Json& object, const std::string& doubled) {
    const auto id = object.find("id");
    if (id != object.end() && isId(*id) && doubled != "id") {
        message.id = *id;
    }
    const auto version = object.find("jsonrpc");
    if (version == object.end() || *version != "2.0") {
        fail(message, InvalidRequest, "jsonrpc: expected \"2.0\"");
    } else if (id != object.end() && !isId(*id) && !(id->is_null() && !object.contains("method"))) {
        fail(message, InvalidRequest, "id: expected an integer or a string");
    } else if (object.contains("method")) {
        readCall(message, object);
    } else if (object.contains("result") || object.contains("error")) {
        readResponse(message, object);
    } else {
        fail(message, InvalidRequest, "method: required");
    }
    if (!doubled.empty() && message.kind != MessageKind::invalid) {
        fail(message, doubled.starts_with("params.") ? InvalidParams : InvalidRequest,
             doubled + ": given twice");
    }
}

} // namespace

Message readMessage(std::string_view text) {
    Message message;
    message.size = text.size();
    StrictJson read = readStrictJson(text, deepestNesting);
    if (!read.fault.empty()) {
        message.faultCode = ParseError;
        message.fault = "not JSON: " + read.fault;
    } else if (!read.value.is_object()) {
        fail(message, InvalidRequest,
             read.value.is_array() ? "batches are not served: send one message after the other"
                                   : "expected an object");
    } else {
        readObject(message, read.value, read.doubled);
    }
    return message;
}

std::string resultText(const Json& id, const OrderedJson& result) {
    // The result is not copied into an object of its own: it can be large.
    return R"({"jsonrpc":"2.0","id":)" + textOf(OrderedJson(id)) + R"(,"result":)" +
           textOf(result) + "}";
}

std::string errorText(const Json& id, int code, const std::string& message,
                      const OrderedJson& data) {
    OrderedJson error{{"code", code}, {"message", message}};
    if (!data.is_null()) {
        error["data"] = data;
    }
    return textOf({{"jsonrpc", "2.0"}, {"id", OrderedJson(id)}, {"error", error}});
}

std::string notificationText(std::string_view method, const OrderedJson& params) {
    return R"({"jsonrpc":"2.0","method":)" + textOf(method) + R"(,"params":)" + textOf(params) +
           "}";
}

std::string requestText(std::int64_t id, std::string_view method, const OrderedJson& params) {
    return textOf({{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}});
}

std::string framed(std::string_view body) {
    return "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

} // namespace quen::tools::server
