#pragma once

#include "Host/Credentials/ClientHome.h"
#include "Host/Credentials/ClientPrompts.h"
#include "Host/Credentials/Person.h"
#include "Host/Process/Process.h"
#include "Host/ToolRunner.h"

#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace quen {

/// Runs of the client of the host's own, about one server: to learn what it asks, to have its
/// certificate taken for trusted, to have a password kept. They change nothing in a repository or a
/// working copy, and nothing in the person's home but what is said.
class ServerQuestions {
public:
    /// After a run that failed. `user` is the one that the request names, or empty. `place` is
    /// where private directories may be made.
    ServerQuestions(const ToolInvocation& failed, std::string user, std::string place,
                    const SignInFacts& facts, std::stop_token stop);

    /// What the client asks on its way to the URL; nothing where it asks nothing. No password that
    /// the person's home or `facts` hold is used.
    std::optional<ClientPrompt> promptAt(const std::string& url) const;

    /// The entry that the client makes of the certificate with that fingerprint; nothing where the
    /// server has another one by now, or the client would not remember it.
    std::optional<TrustedCertificate> trust(const std::string& url,
                                            const String& fingerprint) const;

    /// Has the client keep a password as it keeps them in the person's home, a certificate
    /// likewise.
    void keepInPersonsHome(const std::string& url, const KeptPassword& password) const;
    bool keepInPersonsHome(const TrustedCertificate& certificate) const;

    /// What the secure shell says when it is not told to be quiet.
    std::string secureShellsWords(const std::string& url) const;

    /// Where the working copy at a path comes from; empty where there is none.
    std::string urlOfWorkingCopy(const std::string& path) const;

private:
    ProcessInvocation client(StringArray arguments) const;
    std::string outputOf(const ProcessInvocation& invocation) const;
    std::optional<ClientPrompt> promptOf(StringArray command) const;

    String launchPath_;
    EnvironmentChanges environment_;
    String workingDirectory_;
    Person person_;
    std::string user_;
    std::string place_;
    const SignInFacts& facts_;
    std::stop_token stop_;
};

} // namespace quen
