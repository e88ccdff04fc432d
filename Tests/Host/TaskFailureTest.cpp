#include "Host/TaskErrors.h"
#include "Host/TaskFailure.h"
#include "Host/WorkingCopyCleanup.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Host/ScriptedOperation.h"
#include "Tests/Support/CaseName.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <ostream>

namespace quen::test {
namespace {

/// The host's error for a complaint with these numbers.
Error numbered(std::initializer_list<std::int64_t> numbers) {
    Array codes = Array::empty();
    for (const std::int64_t number : numbers) {
        codes.append(number);
    }
    return {QuenSourceControlTaskErrorDomain,
            *numbers.begin(),
            {{QuenSourceControlTaskErrorCodesKey, std::move(codes)}}};
}

/// The same with the complaint's words.
Error saying(const String& words, std::initializer_list<std::int64_t> numbers) {
    Dictionary info = numbered(numbers).userInfo();
    info.set(NSLocalizedDescriptionKey, words);
    return {QuenSourceControlTaskErrorDomain, *numbers.begin(), std::move(info)};
}

Error ofHost(std::int64_t code) {
    return {QuenSourceControlTaskErrorDomain, code};
}

Error ofProvider(std::int64_t code, const Dictionary& info = {}) {
    return {QuenSourceControlErrorDomain, code, info};
}

Error ofProvider(std::int64_t code, const String& authentication) {
    return ofProvider(code, {{QuenSourceControlAuthenticationErrorTypeKey, authentication}});
}

Error causedBy(const Value& causes) {
    return ofProvider(-1, {{QuenSourceControlUnderlyingErrorsKey, causes}});
}

struct Case {
    const char* name;
    Error error;
    TaskFailure failure;

    friend void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }
};

class TaskFailureTest : public testing::TestWithParam<Case> {};

TEST_P(TaskFailureTest, IsReadFromTheError) {
    EXPECT_EQ(taskFailureOf(GetParam().error), GetParam().failure);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheHost, TaskFailureTest,
    testing::Values(Case{"no error", {}, TaskFailure::none},
                    Case{"not started", ofHost(TaskErrorCouldNotStart), TaskFailure::couldNotStart},
                    Case{"cancelled", ofHost(TaskErrorCancelled), TaskFailure::cancelled},
                    Case{"total limit", ofHost(TaskErrorTimedOut), TaskFailure::timedOut},
                    Case{"idle timeout", ofHost(TaskErrorIdleTimedOut), TaskFailure::idleTimedOut},
                    Case{"lost", ofHost(TaskErrorFailed), TaskFailure::lost},
                    Case{"killed", ofHost(137), TaskFailure::killed},
                    Case{"a status", ofHost(1), TaskFailure::other},
                    Case{"the last status that is not a signal", ofHost(128), TaskFailure::other},
                    Case{"the largest status", ofHost(255), TaskFailure::other},
                    Case{"another domain", {"domain", TaskErrorCancelled}, TaskFailure::other}),
    CaseName());

/// The numbers as the client printed them, beside what had been done to make it.
INSTANTIATE_TEST_SUITE_P(
    OfTheClient, TaskFailureTest,
    testing::Values(
        Case{"connection refused", numbered({170013, 111}), TaskFailure::offline},
        Case{"no such host", numbered({170013, 670002}), TaskFailure::offline},
        Case{"no route", numbered({170013, 113}), TaskFailure::offline},
        Case{"no reason given", numbered({170013}), TaskFailure::offline},
        Case{"connection closed", numbered({210002}), TaskFailure::offline},
        Case{"no tunnel", numbered({170013, 170012}), TaskFailure::offline},
        Case{"no repository behind the server", numbered({170013, 210005}), TaskFailure::other},
        Case{"no local repository", numbered({170013, 180001}), TaskFailure::other},
        Case{"wrong password", numbered({170013, 170001}), TaskFailure::notAuthorised},
        Case{"no credentials left", numbered({170013, 215004}), TaskFailure::notAuthorised},
        Case{"forbidden", numbered({175013}), TaskFailure::noPermission},
        Case{"forbidden by the rules of the repository", numbered({220004}),
             TaskFailure::noPermission},
        Case{"a certificate", numbered({170013, 230001}), TaskFailure::untrustedCertificate},
        Case{"no password, in words", saying("Can't get username or password", {170013, 170001}),
             TaskFailure::noPassword},
        Case{"a wrong password, in words",
             saying("Authentication error from server: Password incorrect", {170013, 170001}),
             TaskFailure::wrongPassword},
        Case{"an unknown user, in words",
             saying("Authentication error from server: Username not found", {170001}),
             TaskFailure::wrongPassword},
        Case{"no permission, in words", saying("Authorization failed", {170013, 170001}),
             TaskFailure::noPermission},
        Case{"locked", numbered({155004}), TaskFailure::locked},
        Case{"cleanup wanted", numbered({200030, 155037}), TaskFailure::locked},
        Case{"database in use", numbered({200033, 200033, 200042}), TaskFailure::locked},
        Case{"no working copy", numbered({155007}), TaskFailure::other},
        Case{"out of date", numbered({155011, 170004}), TaskFailure::other},
        Case{"a missing file", numbered({2}), TaskFailure::other},
        Case{"a number like a signals", numbered({137}), TaskFailure::other}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    OfTheProvider, TaskFailureTest,
    testing::Values(
        Case{"unreachable", ofProvider(-20), TaskFailure::offline},
        Case{"no secure shell", ofProvider(-21, QuenSourceControlSSHConnectionErrorKey),
             TaskFailure::offline},
        Case{"credentials", ofProvider(-21, QuenSourceControlAuthenticationCredentialsIncorrect),
             TaskFailure::notAuthorised},
        Case{"not versioned", ofProvider(-71), TaskFailure::other},
        Case{"a cause", causedBy(numbered({155004})), TaskFailure::locked},
        Case{"causes of which one tells", causedBy(Array{ofHost(1), numbered({170001})}),
             TaskFailure::notAuthorised},
        Case{"a cause of a cause", causedBy(Array{causedBy(ofHost(TaskErrorCancelled))}),
             TaskFailure::cancelled},
        Case{"causes that are not errors", causedBy(Array{"text"}), TaskFailure::other}),
    CaseName());

TEST(TaskFailureTest, IsWhatARunnerFoundOut) {
    const Error error = withSignInFailure(
        ofProvider(-21, QuenSourceControlSSHConnectionErrorKey),
        signInFailure(TaskFailure::hostKeyChanged, "svn+ssh://host", ""), "svn: closed");
    EXPECT_EQ(taskFailureOf(error), TaskFailure::hostKeyChanged);
    EXPECT_EQ(error.code(), -21);
    const Dictionary& info = error.userInfo();
    EXPECT_EQ(info[QuenSourceControlSignInServerKey], Value("svn+ssh://host"));
    EXPECT_EQ(info[QuenSourceControlSignInClientTextKey], Value("svn: closed"));
    EXPECT_TRUE(info[NSLocalizedRecoverySuggestionErrorKey].stringValue().hasPrefix(
        "The host key of svn+ssh://host"));
    EXPECT_FALSE(withSignInFailure({}, signInFailure(TaskFailure::noPassword, "", ""), ""));
}

TEST(TaskFailureTest, HasAWordForPrograms) {
    EXPECT_EQ(wordOf(TaskFailure::none), nullptr);
    for (const auto& [failure, word] : std::initializer_list<std::pair<TaskFailure, const char*>>{
             {TaskFailure::cancelled, "cancelled"},
             {TaskFailure::timedOut, "timedOut"},
             {TaskFailure::idleTimedOut, "fellSilent"},
             {TaskFailure::couldNotStart, "couldNotStart"},
             {TaskFailure::killed, "killed"},
             {TaskFailure::offline, "offline"},
             {TaskFailure::notAuthorised, "notAuthorised"},
             {TaskFailure::noPassword, "notAuthorised"},
             {TaskFailure::wrongPassword, "notAuthorised"},
             {TaskFailure::noPermission, "notAuthorised"},
             {TaskFailure::keyRefused, "notAuthorised"},
             {TaskFailure::untrustedCertificate, "untrusted"},
             {TaskFailure::hostKeyUnknown, "untrusted"},
             {TaskFailure::hostKeyChanged, "untrusted"},
             {TaskFailure::locked, "locked"},
             {TaskFailure::lost, "other"},
             {TaskFailure::other, "other"}}) {
        EXPECT_STREQ(wordOf(failure), word);
    }
}

struct LockCase {
    const char* name;
    std::int32_t type;
    Error error;
    bool may;

    friend void PrintTo(const LockCase& c, std::ostream* out) { *out << c.name; }
};

class LockTest : public testing::TestWithParam<LockCase> {};

TEST_P(LockTest, MayHaveBeenLeft) {
    ScriptedOperation operation;
    operation.initWithRequest(Request{.type = GetParam().type}.make());
    operation.setError(GetParam().error);
    EXPECT_EQ(mayHaveLeftLock(operation), GetParam().may);
}

INSTANTIATE_TEST_SUITE_P(
    Table, LockTest,
    testing::Values(
        LockCase{"cancelled", RequestTypeUpdate, ofHost(TaskErrorCancelled), true},
        LockCase{"timed out", RequestTypeSwitch, ofHost(TaskErrorTimedOut), true},
        LockCase{"idle", RequestTypeCheckout, ofHost(TaskErrorIdleTimedOut), true},
        LockCase{"lost", RequestTypeMerge, ofHost(TaskErrorFailed), true},
        LockCase{"killed", RequestTypeCommit, ofHost(137), true},
        LockCase{"behind another error", RequestTypeIgnore, causedBy(ofHost(137)), true},
        LockCase{"not started", RequestTypeUpdate, ofHost(TaskErrorCouldNotStart), false},
        LockCase{"finished", RequestTypeUpdate, {}, false},
        LockCase{"refused", RequestTypeUpdate, numbered({155004}), false},
        LockCase{"a query", RequestTypeStatus, ofHost(137), false},
        LockCase{"in the repository", RequestTypeImport, ofHost(137), false}),
    CaseName());

} // namespace
} // namespace quen::test
