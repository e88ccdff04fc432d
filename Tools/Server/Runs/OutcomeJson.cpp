#include "Tools/Server/Runs/OutcomeJson.h"

#include "Host/ClientMessage.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <vector>

namespace quen::tools::server {

namespace {

constexpr std::int64_t untrustedCertificate = 230001;

/// The errors that caused this one.
std::vector<Error> causesOf(const Error& error) {
    std::vector<Error> causes;
    const Value& value = error.userInfo()[QuenSourceControlUnderlyingErrorsKey];
    if (value.error() != nullptr) {
        causes.push_back(*value.error());
    }
    const Array list = value.array() == nullptr ? Array() : *value.array();
    for (const Value& each : list) {
        if (each.error() != nullptr) {
            causes.push_back(*each.error());
        }
    }
    return causes;
}

OrderedJson codesOf(const Error& error, const std::string& clientText) {
    OrderedJson codes = OrderedJson::array();
    if (const Array* numbers = error.userInfo()[QuenSourceControlTaskErrorCodesKey].array()) {
        for (const Value& number : *numbers) {
            codes.push_back(toJson(number));
        }
        return codes;
    }
    for (const ClientNumber& number : readClientMessage(clientText).numbers) {
        codes.push_back(number.number);
    }
    return codes;
}

const char* wordOf(TaskFailure failure) {
    switch (failure) {
    case TaskFailure::cancelled: return "cancelled";
    case TaskFailure::timedOut: return "timedOut";
    case TaskFailure::idleTimedOut: return "fellSilent";
    case TaskFailure::couldNotStart: return "couldNotStart";
    case TaskFailure::killed: return "killed";
    case TaskFailure::offline: return "offline";
    case TaskFailure::notAuthorised: return "notAuthorised";
    case TaskFailure::locked: return "locked";
    default: return "other";
    }
}

} // namespace

bool meansUntrusted(const Error& error) {
    const Array* const codes = error.userInfo()[QuenSourceControlTaskErrorCodesKey].array();
    if (codes != nullptr && std::any_of(codes->begin(), codes->end(), [](const Value& code) {
            return code == Value(untrustedCertificate);
        })) {
        return true;
    }
    const std::vector<Error> causes = causesOf(error);
    return std::any_of(causes.begin(), causes.end(), meansUntrusted);
}

OrderedJson errorJson(const Error& error, const std::string& clientText) {
    if (!error) {
        return nullptr;
    }
    OrderedJson causes = OrderedJson::array();
    for (const Error& cause : causesOf(error)) {
        causes.push_back(toJson(cause.localizedDescription()));
    }
    const Dictionary& facts = error.userInfo();
    OrderedJson json;
    json["domain"] = toJson(error.domain());
    json["code"] = error.code();
    json["description"] = toJson(error.localizedDescription());
    json["suggestion"] = toJson(facts[NSLocalizedRecoverySuggestionErrorKey].stringValue());
    json["codes"] = codesOf(error, clientText);
    json["causes"] = std::move(causes);
    json["clientText"] = clientText.empty() ? OrderedJson() : toJson(String(clientText));
    return json;
}

OrderedJson failureJson(const Error& error) {
    if (!error) {
        return nullptr;
    }
    return meansUntrusted(error) ? "untrusted" : wordOf(taskFailureOf(error));
}

void addOutcome(OrderedJson& answer, const Ran& ran) {
    answer["error"] = errorJson(ran.error, ran.clientText);
    answer["failure"] = failureJson(ran.error);
}

} // namespace quen::tools::server
