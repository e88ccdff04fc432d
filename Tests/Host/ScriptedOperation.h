#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"
#include "Tests/Support/RequestBuilder.h"

#include <string>
#include <vector>

namespace quen::test {

/// A task operation that does what a test tells it to and keeps what it was asked.
class ScriptedOperation : public QuenSourceControlTaskOperation {
public:
    ScriptedOperation() {
        initWithRequest(Request{}.make());
        setLaunchPath("/tools/svn");
        setArguments(StringArray{"command", "a.c"});
    }

    void parseData() override {
        calls.push_back("parseData");
        parsedText = data() == nullptr ? String() : String(data()->bytes());
        if (parseError) {
            setError(parseError);
        }
    }

    Error errorFromErrorMessage(const String& message) override {
        calls.push_back("errorFromErrorMessage: " + message.str());
        if (translation == Translation::none) {
            return {};
        }
        return translation == Translation::own
                   ? ownError
                   : QuenSourceControlTaskOperation::errorFromErrorMessage(message);
    }

    /// What the translation makes of a text: the host's own error, `ownError`, or no error.
    enum class Translation { inherited, own, none };

    Error parseError;
    Translation translation = Translation::inherited;
    Error ownError;

    std::vector<std::string> calls;
    String parsedText;
};

} // namespace quen::test
