#include "Tools/Server/Server.h"

#include "Tools/Console/JsonInput.h"

#include <climits>
#include <exception>
#include <utility>

namespace quen::tools::server {

namespace {

std::optional<std::chrono::milliseconds> readLimit(const JsonInput& options, const char* name) {
    if (!options.has(name) || options.member(name).isNull()) {
        return std::nullopt;
    }
    return std::chrono::milliseconds(options.member(name).integer(1, INT_MAX));
}

void readOptions(const JsonInput& options, Server::Client& client) {
    options.requireObject({"toolsDirectory", "totalLimit", "idleLimit", "logLevel"});
    if (options.has("toolsDirectory")) {
        client.toolsDirectory = options.member("toolsDirectory").stringOrNil().str();
    }
    client.totalLimit = readLimit(options, "totalLimit");
    client.idleLimit = readLimit(options, "idleLimit");
    if (options.has("logLevel")) {
        client.logLevel =
            static_cast<std::uint32_t>(options.member("logLevel").integer(0, INT_MAX));
    }
}

void readClientInfo(const JsonInput& info) {
    info.requireObject({"name", "version"});
    for (const auto& [name, value] : info.members()) {
        value.stringOrNil();
    }
}

Server::Client readClient(const JsonInput& params) {
    params.requireObject({"processId", "clientInfo", "roots", "options"});
    Server::Client client;
    if (params.has("processId") && !params.member("processId").isNull()) {
        client.processId = params.member("processId").integer(1, INT_MAX);
    }
    if (params.has("clientInfo") && !params.member("clientInfo").isNull()) {
        readClientInfo(params.member("clientInfo"));
    }
    if (params.has("roots") && !params.member("roots").isNull()) {
        for (const JsonInput& root : params.member("roots").array()) {
            client.roots.push_back(root.string());
            if (!client.roots.back().starts_with('/')) {
                root.fail("expected an absolute path");
            }
        }
    }
    if (params.has("options") && !params.member("options").isNull()) {
        readOptions(params.member("options"), client);
    }
    return client;
}

} // namespace

Server::Received Server::receive(std::string_view body) {
    Message message = readMessage(body);
    switch (message.kind) {
    case MessageKind::notJson: tellFault(message.fault); return Received::notJson;
    case MessageKind::invalid:
        // A notification is never answered, unless it is not even a good message.
        if (!message.id.is_null() || message.faultCode != InvalidParams) {
            fail(message, message.faultCode, message.fault);
        }
        return Received::served;
    case MessageKind::response: questions_.take(std::move(message)); return Received::served;
    case MessageKind::notification: return takeNotification(message);
    case MessageKind::request: takeRequest(message); break;
    }
    return Received::served;
}

void Server::tellFault(const std::string& fault) {
    sink_.send(errorText(nullptr, ParseError, fault), {});
}

void Server::fail(const Message& request, int code, const std::string& message) {
    sink_.send(errorText(request.id, code, message), {});
}

void Server::takeRequest(const Message& request) {
    if (stage_ == Stage::shutDown) {
        fail(request, InvalidRequest, "The server has been shut down.");
    } else if (request.method == "initialize") {
        initialize(request);
    } else if (stage_ == Stage::fresh) {
        fail(request, ServerNotInitialized, "The first request must be \"initialize\".");
    } else if (request.method == "shutdown") {
        stage_ = Stage::shutDown;
        sink_.send(resultText(request.id, nullptr), {});
    } else {
        dispatcher_.serve(request);
    }
}

void Server::initialize(const Message& request) {
    if (stage_ != Stage::fresh) {
        fail(request, InvalidRequest, "The server is initialized already.");
        return;
    }
    try {
        const Json document{{"params", request.params}};
        const Client client = readClient(JsonInput(document).member("params"));
        log_.setLevel(client.logLevel.value_or(log_.level()));
        const OrderedJson answer = onInitialize_ ? onInitialize_(client) : OrderedJson::object();
        stage_ = Stage::running;
        sink_.send(resultText(request.id, answer), {});
        if (client.processId && onParent_) {
            onParent_(*client.processId);
        }
    } catch (const InputError& error) {
        fail(request, InvalidParams, error.what());
    } catch (const std::exception& error) {
        fail(request, InternalError, std::string("The server failed: ") + error.what());
    }
}

Server::Received Server::takeNotification(const Message& notification) {
    if (notification.method == "exit") {
        return Received::exit;
    }
    if (stage_ != Stage::running) {
        return Received::served;
    }
    if (notification.method == "initialized") {
        if (onInitialized_) {
            onInitialized_();
        }
    } else if (notification.method == "$/cancelRequest") {
        if (const auto id = notification.params.find("id"); id != notification.params.end()) {
            dispatcher_.cancel(*id);
        }
    } else if (const auto notice = notices_.find(notification.method); notice != notices_.end()) {
        try {
            const Json document{{"params", notification.params}};
            notice->second.take(JsonInput(document).member("params"));
        } catch (const std::exception& error) {
            log_.say(WindowLog::error, notification.method + ": " + error.what());
        }
    }
    return Received::served;
}

bool Server::end(std::chrono::milliseconds bound) {
    if (onEnd_) {
        onEnd_();
    }
    questions_.end();
    return dispatcher_.end(bound);
}

} // namespace quen::tools::server
