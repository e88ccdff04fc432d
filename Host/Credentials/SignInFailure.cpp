#include "Host/Credentials/SignInFailure.h"

#include "Foundation/Format.h"

namespace quen {

namespace {

String nextStepAfter(TaskFailure failure, const String& server, const String& user) {
    const auto text = [&server](const char* format) { return formatText(format, {server}); };
    switch (failure) {
    case TaskFailure::noPassword:
        return text("%@ wants a user name and a password. Give them when you are asked, and try "
                    "again.");
    case TaskFailure::wrongPassword:
        return formatText("%@ did not accept the password%@. Check the name and the password, and "
                          "try again.",
                          {server, user});
    case TaskFailure::noPermission:
        return text(
            "%@ does not allow you to do this. Ask whoever runs the server for permission, or "
            "sign in as somebody who has it.");
    case TaskFailure::untrustedCertificate:
        return text("The certificate of %@ is not trusted. Compare its fingerprint with the one "
                    "that whoever runs the server names, then accept it and try again.");
    case TaskFailure::keyRefused:
        return text("%@ accepted none of your keys and passwords. Load the right key into your "
                    "agent, or have your public key added to the account there.");
    case TaskFailure::hostKeyUnknown:
        return text("The host key of %@ is not known here. Compare its fingerprint with the one "
                    "that whoever runs the host names, then accept it and try again.");
    case TaskFailure::hostKeyChanged:
        return text("The host key of %@ is not the one that is known: somebody may be listening "
                    "in. Ask whoever runs the host. If the new key is right, remove the old one "
                    "with \"ssh-keygen -R\" and try again.");
    case TaskFailure::offline:
        return text("%@ does not answer. Check the address and the network, and try again.");
    default: return nullptr;
    }
}

} // namespace

SignInFailure signInFailure(TaskFailure failure, const std::string& server,
                            const std::string& user) {
    const String whose = user.empty() ? "" : " of " + user;
    const String where = server.empty() ? "The server" : server;
    return {failure, server, nextStepAfter(failure, where, whose), nullptr};
}

} // namespace quen
