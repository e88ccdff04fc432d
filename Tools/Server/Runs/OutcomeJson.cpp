#include "Tools/Server/Runs/OutcomeJson.h"

#include "Host/ClientMessage.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <vector>

namespace quen::tools::server {

namespace {

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

} // namespace

OrderedJson errorJson(const Error& error, const std::string& clientText) {
    if (!error) {
        return nullptr;
    }
    OrderedJson causes = OrderedJson::array();
    // An error that only gathers others is described by the first of them.
    String description = error.localizedDescription();
    for (const Error& cause : causesOf(error)) {
        causes.push_back(toJson(cause.localizedDescription()));
        description = description.isNil() ? cause.localizedDescription() : description;
    }
    const Dictionary& facts = error.userInfo();
    OrderedJson json;
    json["domain"] = toJson(error.domain());
    json["code"] = error.code();
    json["description"] = toJson(description);
    json["suggestion"] = toJson(facts[NSLocalizedRecoverySuggestionErrorKey].stringValue());
    json["codes"] = codesOf(error, clientText);
    json["causes"] = std::move(causes);
    json["clientText"] = clientText.empty() ? OrderedJson() : toJson(String(clientText));
    return json;
}

OrderedJson failureJson(const Error& error) {
    const char* const word = wordOf(taskFailureOf(error));
    return word == nullptr ? OrderedJson() : OrderedJson(word);
}

void addOutcome(OrderedJson& answer, const Ran& ran) {
    answer["error"] = errorJson(ran.error, ran.clientText);
    answer["failure"] = failureJson(ran.error);
}

} // namespace quen::tools::server
