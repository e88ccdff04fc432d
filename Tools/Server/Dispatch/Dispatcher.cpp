#include "Tools/Server/Dispatch/Dispatcher.h"

#include "Tools/Console/JsonInput.h"

#include <exception>
#include <memory>
#include <utility>

namespace quen::tools::server {

namespace {

/// The member taken out of the params; null where there is none.
Json takeToken(Json& params, const char* name) {
    const auto found = params.find(name);
    if (found == params.end()) {
        return nullptr;
    }
    Json token = std::move(*found);
    params.erase(name);
    if (!token.is_string() && !token.is_number_integer()) {
        throw InputError(std::string("params.") + name + ": expected an integer or a string");
    }
    return token;
}

/// Likewise a flag; false where there is none.
bool takeFlag(Json& params, const char* name) {
    const auto found = params.find(name);
    if (found == params.end()) {
        return false;
    }
    if (!found->is_boolean()) {
        throw InputError(std::string("params.") + name + ": expected true or false");
    }
    const bool flag = found->get<bool>();
    params.erase(name);
    return flag;
}

using Answer = std::function<void(Call&)>;

/// How a call is answered that is served like this; what goes wrong becomes the answer.
template <typename Serve> Answer answerOf(Serve serve) {
    const auto failed = [](ProtocolError error) -> Answer {
        return [error = std::move(error)](Call& call) { call.fail(error); };
    };
    try {
        return serve();
    } catch (const ProtocolError& error) {
        return failed(error);
    } catch (const InputError& error) {
        return failed({InvalidParams, error.what()});
    } catch (const std::exception& error) {
        return failed({InternalError, std::string("The server failed: ") + error.what()});
    }
}

} // namespace

Dispatcher::~Dispatcher() {
    end(std::chrono::hours(1));
}

void Dispatcher::add(Method method) {
    std::string name = method.name;
    methods_.emplace(std::move(name), std::move(method));
}

std::vector<std::string> Dispatcher::methodNames() const {
    std::vector<std::string> names;
    for (const auto& [name, method] : methods_) {
        names.push_back(name);
    }
    return names;
}

void Dispatcher::serve(const Message& request) {
    const auto method = methods_.find(request.method);
    if (method == methods_.end()) {
        sink_.send(errorText(request.id, MethodNotFound,
                             "\"" + request.method + "\" is not a method of this server"),
                   {});
        return;
    }
    Message known = request;
    Call::Facts facts{request.id, request.method, nullptr, nullptr, false};
    std::string fault;
    try {
        facts.workDoneToken = takeToken(known.params, "workDoneToken");
        facts.isBackground = takeFlag(known.params, "background");
        if (method->second.hasParts) {
            facts.partialResultToken = takeToken(known.params, "partialResultToken");
        }
    } catch (const InputError& error) {
        fault = error.what();
    }
    if (!fault.empty()) {
        sink_.send(errorText(request.id, InvalidParams, fault), {});
    } else if (const CallPtr call = admit(known, std::move(facts))) {
        prepareAndStart(method->second, known, call);
    }
}

/// Null where the request cannot be served; it has then been answered.
CallPtr Dispatcher::admit(const Message& request, Call::Facts facts) {
    auto call = std::make_shared<Call>(std::move(facts), sink_);
    std::unique_lock lock(mutex_);
    if (isEnding_) {
        lock.unlock();
        call->fail(requestCancelled(false));
        return nullptr;
    }
    if (!calls_.try_emplace(request.id.dump(), Admitted{call, request.size}).second) {
        lock.unlock();
        sink_.send(errorText(request.id, InvalidRequest, "id: another request has it"), {});
        return nullptr;
    }
    bytes_ += request.size;
    return call;
}

void Dispatcher::prepareAndStart(const Method& method, const Message& request,
                                 const CallPtr& call) {
    const Answer refusal = answerOf([&]() -> Answer {
        const Json document{{"params", request.params}};
        const PreparedCall prepared = method.prepare(JsonInput(document).member("params"));
        lanes_.start(prepared.changes, [this, call, run = prepared.run, around = arrive_(*call)] {
            Answer answer = [](Call&) {};
            if (call->begin()) {
                answer = answerOf([&]() -> Answer {
                    OrderedJson result;
                    around([&] { result = run(*call); });
                    return [result = std::move(result)](Call& served) mutable {
                        served.answer(std::move(result));
                    };
                });
            }
            // Before the answer, so that the client may use the id again.
            forget(call);
            answer(*call);
        });
        return {};
    });
    if (refusal) {
        forget(call);
        refusal(*call);
    }
}

void Dispatcher::enqueue(const std::string& workingCopy, std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        ++ownWork_;
    }
    lanes_.start(workingCopy, [this, done = std::move(work)] {
        done();
        const std::lock_guard lock(mutex_);
        --ownWork_;
    });
}

void Dispatcher::forget(const CallPtr& call) {
    const std::lock_guard lock(mutex_);
    const auto found = calls_.find(call->id().dump());
    if (found != calls_.end() && found->second.call == call) {
        bytes_ -= found->second.bytes;
        calls_.erase(found);
        isAnswered_.notify_all();
    }
}

void Dispatcher::cancel(const Json& id) {
    CallPtr call;
    {
        const std::lock_guard lock(mutex_);
        const auto found = calls_.find(id.dump());
        call = found == calls_.end() ? nullptr : found->second.call;
    }
    if (call != nullptr && call->cancel()) {
        forget(call);
    }
}

bool Dispatcher::end(std::chrono::milliseconds bound) {
    std::vector<CallPtr> calls;
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        for (const auto& [id, admitted] : calls_) {
            calls.push_back(admitted.call);
        }
    }
    for (const CallPtr& call : calls) {
        if (call->cancel()) {
            forget(call);
        }
    }
    return waitUntilIdle(bound);
}

bool Dispatcher::waitUntilIdle(std::chrono::milliseconds bound) {
    const auto end = std::chrono::steady_clock::now() + bound;
    {
        std::unique_lock lock(mutex_);
        if (!isAnswered_.wait_until(lock, end, [this] { return calls_.empty(); })) {
            return false;
        }
    }
    return lanes_.waitUntilIdle(end);
}

std::size_t Dispatcher::callsInFlight() const {
    const std::lock_guard lock(mutex_);
    return calls_.size();
}

std::size_t Dispatcher::ownWork() const {
    const std::lock_guard lock(mutex_);
    return ownWork_;
}

std::size_t Dispatcher::bytesInFlight() const {
    const std::lock_guard lock(mutex_);
    return bytes_;
}

} // namespace quen::tools::server
