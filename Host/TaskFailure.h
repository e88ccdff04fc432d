#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"

#include <cstdint>

namespace quen {

/// The domain of the errors that the host itself makes about a run. The code is the client's first
/// number (155007 for E155007), or its exit status, or 128 and the signal's number, or one of the
/// negative codes below.
QUEN_EXPORT extern const String QuenSourceControlTaskErrorDomain;
/// User info: all the client's numbers, an array of integers in the order printed.
QUEN_EXPORT extern const String QuenSourceControlTaskErrorCodesKey;

enum TaskErrorCode : std::int64_t {
    TaskErrorCouldNotStart = -1,
    TaskErrorCancelled = -2,
    /// The client took longer than the limit of the whole run.
    TaskErrorTimedOut = -3,
    /// The host could not keep or read what the tool wrote.
    TaskErrorFailed = -4,
    /// The client wrote nothing for longer than its idle timeout.
    TaskErrorIdleTimedOut = -5,
    /// The client ended, but a program that it started may still have written to its output.
    TaskErrorOutputCut = -6,
};

/// What an error tells a host to do.
enum class TaskFailure {
    /// There is no error.
    none,
    /// See to the client's installation.
    couldNotStart,
    /// Nothing: it was wanted.
    cancelled,
    /// Try again, with a longer limit.
    timedOut,
    idleTimedOut,
    /// See to the host's own memory, descriptors and signal handling.
    lost,
    /// Somebody else killed the client, or it crashed. Try again.
    killed,
    /// The server cannot be reached: work offline, or try again later.
    offline,
    /// The server does not let this person in, or not there: ask for credentials. Where more is
    /// known it is one of the following.
    notAuthorised,
    /// It wants a name and a password: sign in.
    noPassword,
    /// It does not know the name, or the password is another: sign in otherwise.
    wrongPassword,
    /// It knows who it is, and that this is not theirs to do: ask whoever runs it.
    noPermission,
    /// A host takes none of the secure shell's keys: load the right one.
    keyRefused,
    /// A server's certificate is not trusted: show its fingerprint, and let a person decide.
    untrustedCertificate,
    /// The same of a host's key that was never seen.
    hostKeyUnknown,
    /// A host's key is not the one that is known: warn.
    hostKeyChanged,
    /// A client is at work in the working copy, or was killed there: wait, or clean it up with
    /// `WorkingCopyCleanup`.
    locked,
    /// Show it.
    other,
};

/// User info, where a run was not let in and more was found out about it: the TaskFailure as an
/// integer, the server (`https://host:443`), and the client's or the secure shell's own words.
QUEN_EXPORT extern const String QuenSourceControlSignInFailureKey;
QUEN_EXPORT extern const String QuenSourceControlSignInServerKey;
QUEN_EXPORT extern const String QuenSourceControlSignInClientTextKey;

/// What the error of an operation tells, whoever made it: the provider, the host, or the client. An
/// error that says nothing by itself is looked into for the ones that caused it. From any thread.
QUEN_EXPORT TaskFailure taskFailureOf(const Error& error);

/// A failure in one word, for a program: `cancelled`, `timedOut`, `fellSilent`, `couldNotStart`,
/// `killed`, `offline`, `notAuthorised`, `untrusted`, `locked`, `other`; null for `none`. The finer
/// kinds share a word.
QUEN_EXPORT const char* wordOf(TaskFailure failure) noexcept;

} // namespace quen
