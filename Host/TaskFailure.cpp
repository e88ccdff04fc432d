#include "Host/TaskFailure.h"

#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace quen {

namespace {

struct Numbers {
    std::int64_t first;
    std::int64_t last;
};

/// What the numbers of the client's libraries (1.14) and of the system mean, the stronger meaning
/// first: behind "unable to connect" a refused login is told as well as a name that does not
/// resolve.
struct Meaning {
    TaskFailure failure = TaskFailure::other;
    std::initializer_list<Numbers> numbers;
};

const std::array<Meaning, 5> meanings{{
    {TaskFailure::untrustedCertificate, {{230001, 230001}}},
    {TaskFailure::notAuthorised,
     {{170001, 170001},   // authorisation failed
      {215000, 215002},   // no credentials
      {215004, 215004}}}, // none that are accepted
    {TaskFailure::noPermission,
     {{175013, 175013},   // the server forbids it
      {220000, 220002},   // the repository's rules forbid reading
      {220004, 220004}}}, // and writing
    {TaskFailure::locked,
     {{155004, 155004},   // locked
      {155037, 155037},   // an interrupted change must be finished first
      {200033, 200033}}}, // the working copy's database is in use
    {TaskFailure::offline,
     {{100, 104},         // network down or unreachable, connection given up or reset
      {110, 113},         // no answer, connection refused, host down, no route
      {670000, 670099},   // a name that does not resolve
      {120106, 120106},   // a web server's answer broke off
      {120108, 120108},   // its connection did
      {170012, 170012},   // no tunnel
      {175012, 175012},   // a web server does not answer
      {210002, 210002}}}, // the connection broke off
}};

/// "Unable to connect", which says why in another number where there is a reason.
constexpr std::int64_t noSession = 170013;

bool isAmong(const Meaning& meaning, const Value& value) {
    const std::int64_t* const number = value.integer();
    return number != nullptr && std::any_of(meaning.numbers.begin(), meaning.numbers.end(),
                                            [number](const Numbers& numbers) {
                                                return *number >= numbers.first &&
                                                       *number <= numbers.last;
                                            });
}

TaskFailure meaningOf(const Array& codes) {
    for (const Meaning& meaning : meanings) {
        if (std::any_of(codes.begin(), codes.end(),
                        [&](const Value& code) { return isAmong(meaning, code); })) {
            return meaning.failure;
        }
    }
    const bool isSessionAlone = std::all_of(
        codes.begin(), codes.end(), [](const Value& code) { return code == Value(noSession); });
    return isSessionAlone ? TaskFailure::offline : TaskFailure::other;
}

/// The words of svnserve and of the client's own part in signing in, which share a number.
TaskFailure failureInWords(const Error& error) {
    const String words = error.localizedDescription();
    const auto says = [&words](const char* part) { return words.contains(part); };
    if (says("Can't get username or password")) {
        return TaskFailure::noPassword;
    }
    if (says("Authorization failed")) {
        return TaskFailure::noPermission;
    }
    return says("Password incorrect") || says("Username not found") || says("SASL(")
               ? TaskFailure::wrongPassword
               : TaskFailure::notAuthorised;
}

TaskFailure failureOfTask(const Error& error) {
    switch (error.code()) {
    case TaskErrorCouldNotStart: return TaskFailure::couldNotStart;
    case TaskErrorCancelled: return TaskFailure::cancelled;
    case TaskErrorTimedOut: return TaskFailure::timedOut;
    case TaskErrorFailed: return TaskFailure::lost;
    case TaskErrorIdleTimedOut: return TaskFailure::idleTimedOut;
    default: break;
    }
    if (const Array* codes = error.userInfo()[QuenSourceControlTaskErrorCodesKey].array()) {
        const TaskFailure failure = meaningOf(*codes);
        return failure == TaskFailure::notAuthorised ? failureInWords(error) : failure;
    }
    // The client itself ends with 0 or 1: a status above 128 is a shell's word for a signal.
    return error.code() > 128 && error.code() <= 192 ? TaskFailure::killed : TaskFailure::other;
}

TaskFailure failureOfProvider(const Error& error) {
    constexpr std::int64_t unreachable = -20;
    const Value& type = error.userInfo()[QuenSourceControlAuthenticationErrorTypeKey];
    if (type == Value(QuenSourceControlAuthenticationCredentialsIncorrect)) {
        return TaskFailure::notAuthorised;
    }
    return type == Value(QuenSourceControlSSHConnectionErrorKey) || error.code() == unreachable
               ? TaskFailure::offline
               : TaskFailure::other;
}

TaskFailure failureOfCauses(const Error& error) {
    const Value& causes = error.userInfo()[QuenSourceControlUnderlyingErrorsKey];
    if (const Error* cause = causes.error()) {
        return taskFailureOf(*cause);
    }
    if (const Array* array = causes.array()) {
        for (const Value& each : *array) {
            const Error* const cause = each.error();
            const TaskFailure failure =
                cause == nullptr ? TaskFailure::other : taskFailureOf(*cause);
            if (failure != TaskFailure::other) {
                return failure;
            }
        }
    }
    return TaskFailure::other;
}

} // namespace

TaskFailure taskFailureOf(const Error& error) {
    if (!error) {
        return TaskFailure::none;
    }
    if (const std::int64_t* found = error.userInfo()[QuenSourceControlSignInFailureKey].integer()) {
        return static_cast<TaskFailure>(*found);
    }
    if (error.domain() == QuenSourceControlTaskErrorDomain) {
        return failureOfTask(error);
    }
    const TaskFailure failure = error.domain() == QuenSourceControlErrorDomain
                                    ? failureOfProvider(error)
                                    : TaskFailure::other;
    return failure == TaskFailure::other ? failureOfCauses(error) : failure;
}

const char* wordOf(TaskFailure failure) noexcept {
    switch (failure) {
    case TaskFailure::none: return nullptr;
    case TaskFailure::couldNotStart: return "couldNotStart";
    case TaskFailure::cancelled: return "cancelled";
    case TaskFailure::timedOut: return "timedOut";
    case TaskFailure::idleTimedOut: return "fellSilent";
    case TaskFailure::killed: return "killed";
    case TaskFailure::offline: return "offline";
    case TaskFailure::notAuthorised:
    case TaskFailure::noPassword:
    case TaskFailure::wrongPassword:
    case TaskFailure::noPermission:
    case TaskFailure::keyRefused: return "notAuthorised";
    case TaskFailure::untrustedCertificate:
    case TaskFailure::hostKeyUnknown:
    case TaskFailure::hostKeyChanged: return "untrusted";
    case TaskFailure::locked: return "locked";
    case TaskFailure::lost:
    case TaskFailure::other: break;
    }
    return "other";
}

} // namespace quen
