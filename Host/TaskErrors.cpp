#include "Host/TaskErrors.h"

#include "Foundation/Format.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "QuenFoundation/QuenSourceControlManager.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>

namespace quen {

const String QuenSourceControlTaskErrorDomain =
    String::constant("QuenSourceControlTaskErrorDomain");
const String QuenSourceControlTaskErrorCodesKey =
    String::constant("QuenSourceControlTaskErrorCodesKey");
const String QuenSourceControlSignInFailureKey =
    String::constant("QuenSourceControlSignInFailureKey");
const String QuenSourceControlSignInServerKey =
    String::constant("QuenSourceControlSignInServerKey");
const String QuenSourceControlSignInClientTextKey =
    String::constant("QuenSourceControlSignInClientTextKey");

namespace {

/// The server refused the name or the password; no provider of credentials is left.
constexpr std::array<std::int64_t, 2> authenticationNumbers{170001, 215004};

/// The thing that was asked for is not there. An operation that looked for it knows better words.
constexpr std::array<std::int64_t, 6> absenceNumbers{155010, 160006, 160013,
                                                     170000, 195012, 200009};

template <std::size_t count>
bool isAmong(const std::array<std::int64_t, count>& numbers, std::int64_t number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

void logNotice(const String& text) {
    if (text.view().find_first_not_of(" \t\r\n") != std::string_view::npos) {
        const std::array<FormatArgument, 1> arguments{text};
        QuenSourceControlManager::sourceControlLogAspect()->_logAtLogLevel(2, "%@", arguments);
    }
}

std::int64_t codeOf(const RunFacts& facts) {
    if (!facts.numbers.empty()) {
        return facts.numbers.front().number;
    }
    return facts.signal ? 128 + *facts.signal : facts.exitStatus.value_or(1);
}

Error withNumbers(const Error& error, const std::vector<ClientNumber>& numbers) {
    Dictionary userInfo = error.userInfo();
    Array codes = Array::empty();
    for (const ClientNumber& number : numbers) {
        codes.append(number.number);
        if (isAmong(authenticationNumbers, number.number)) {
            userInfo.set(QuenSourceControlAuthenticationErrorTypeKey,
                         QuenSourceControlAuthenticationCredentialsIncorrect);
        }
    }
    if (codes.count() > 0) {
        userInfo.set(QuenSourceControlTaskErrorCodesKey, std::move(codes));
    }
    return {error.domain(), error.code(), std::move(userInfo)};
}

bool isNotice(const String& message, const RunFacts& facts) {
    return meansAbsentProperty(facts.numbers) ||
           (!facts.hasFailed() && holdsOnlyWarnings(message.view()));
}

/// The numbers of an error, by which absence is told; every number of an error without any is.
bool tellsOnlyOfAbsence(const Error& error) {
    const Array* const codes = error.userInfo()[QuenSourceControlTaskErrorCodesKey].array();
    return codes == nullptr || std::all_of(codes->begin(), codes->end(), [](const Value& code) {
               const std::int64_t* const number = code.integer();
               return number != nullptr && isAmong(absenceNumbers, *number);
           });
}

Error withLockSuggestion(const Error& error) {
    Dictionary userInfo = error.userInfo();
    userInfo.set(NSLocalizedRecoverySuggestionErrorKey,
                 "The working copy may have been left locked. If it was, clean it up and try "
                 "again.");
    return {error.domain(), error.code(), std::move(userInfo)};
}

} // namespace

Error taskError(std::int64_t code, const String& description) {
    return {QuenSourceControlTaskErrorDomain, code, {{NSLocalizedDescriptionKey, description}}};
}

Error genericError(const String& message, const RunFacts& facts) {
    if (message.view().find_first_not_of(" \t\r\n") == std::string_view::npos) {
        return {};
    }
    if (isNotice(message, facts)) {
        logNotice(message);
        return {};
    }
    return withNumbers(taskError(codeOf(facts), withoutClientPrefixes(message.view())),
                       facts.numbers);
}

Error withSignInFailure(const Error& error, const SignInFailure& failure, const String& message) {
    if (!error) {
        return error;
    }
    Dictionary userInfo = error.userInfo();
    userInfo.set(QuenSourceControlSignInFailureKey, static_cast<std::int64_t>(failure.failure));
    userInfo.set(QuenSourceControlSignInServerKey, failure.server);
    userInfo.set(QuenSourceControlSignInClientTextKey,
                 failure.clientText.isEmpty() ? message : failure.clientText);
    if (!failure.nextStep.isNil()) {
        userInfo.set(NSLocalizedRecoverySuggestionErrorKey, failure.nextStep);
    }
    return {error.domain(), error.code(), std::move(userInfo)};
}

Error cancelledError() {
    return taskError(TaskErrorCancelled, "The operation was cancelled before it had finished.");
}

Error errorOfInterruptedRun(const ToolInvocation& invocation, const ToolRun& run, bool writes) {
    const auto broken = [&](const Error& error) {
        const bool mayHaveLeftLock = writes && (run.signal || run.exitStatus.value_or(0) != 0);
        return mayHaveLeftLock ? withLockSuggestion(error) : error;
    };
    switch (run.end) {
    case RunEnd::ended: return {};
    case RunEnd::couldNotStart:
        return taskError(TaskErrorCouldNotStart,
                         formatText("The client \"%@\" could not be started: %@.",
                                    {invocation.launchPath, run.reason}));
    case RunEnd::cancelled: return broken(cancelledError());
    case RunEnd::timedOut:
    case RunEnd::idleTimedOut:
        return broken(taskError(
            run.end == RunEnd::timedOut ? TaskErrorTimedOut : TaskErrorIdleTimedOut,
            formatText("The client was ended because it took too long: %@.", {run.reason})));
    case RunEnd::outputLost:
    case RunEnd::statusUnknown:
        return broken(taskError(
            TaskErrorFailed,
            formatText("The client's run could not be followed to its end: %@.", {run.reason})));
    }
    return {};
}

ClientMessage messageOfRun(const ToolRun& run) {
    const String text = quensc_stringFromData(run.errors);
    return readClientMessage(text.isNil() ? run.errors->bytes() : text.view());
}

Error errorOfRun(const ToolInvocation& invocation, const ToolRun& run, bool writes) {
    if (Error interrupted = errorOfInterruptedRun(invocation, run, writes)) {
        return interrupted;
    }
    const ClientMessage message = messageOfRun(run);
    const RunFacts facts{run.exitStatus, run.signal, message.numbers};
    return errorOfComplaint(genericError(message.text, facts), facts);
}

Error errorOfComplaint(const Error& translated, const RunFacts& facts) {
    return translated ? translated : errorOfSilentFailure(facts);
}

Error errorOfCutOutput(const ToolRun& run) {
    if (!run.leftOutputOpen || run.output->bytes().starts_with("<?xml")) {
        return {};
    }
    return taskError(TaskErrorOutputCut,
                     "The client has ended, but a program that it started still held its output "
                     "open: the result may lack its rest.");
}

Error errorOfSilentFailure(const RunFacts& facts) {
    if (!facts.hasFailed() || meansAbsentProperty(facts.numbers)) {
        return {};
    }
    if (facts.signal) {
        // In English, whatever the host's locale; a real-time signal has no name.
        const char* const name = sigdescr_np(*facts.signal);
        return taskError(
            128 + *facts.signal,
            formatText("The client was ended by signal %ld (%@).",
                       {std::int64_t{*facts.signal}, String(name == nullptr ? "no name" : name)}));
    }
    return taskError(*facts.exitStatus,
                     formatText("The client failed with exit status %ld and did not say why.",
                                {std::int64_t{*facts.exitStatus}}));
}

Error betterError(const Error& parsed, const Error& translated) {
    if (translated.domain() == QuenSourceControlErrorDomain) {
        return translated;
    }
    if (parsed.domain() == QuenSourceControlErrorDomain &&
        (!translated || tellsOnlyOfAbsence(translated))) {
        return parsed;
    }
    return translated ? translated : parsed;
}

} // namespace quen
