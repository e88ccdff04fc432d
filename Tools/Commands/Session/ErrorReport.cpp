#include "Tools/Commands/Session/ErrorReport.h"

#include "Foundation/Lines.h"
#include "Host/TaskFailure.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/ExitStatus.h"
#include "Tools/Terminal/Question.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <iostream>
#include <string_view>

namespace quen::tools {

namespace {

ErrorReport* active = nullptr;

/// Without the name of the program and the command in front: `quen branch create: `.
std::string_view withoutCommand(std::string_view line) {
    const std::size_t end = line.find(": ");
    const bool isNamed = line.starts_with("quen") && end != std::string_view::npos &&
                         std::all_of(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(end),
                                     [](char c) { return c == ' ' || (c >= 'a' && c <= 'z'); });
    return isNamed ? line.substr(end + 2) : line;
}

Array messagesIn(const std::string& said) {
    Array messages = Array::empty();
    for (const std::string_view line : linesOf(said)) {
        const std::string_view text = trimmed(withoutCommand(line));
        if (!text.empty()) {
            messages.append(String(printableLine(text)));
        }
    }
    return messages;
}

/// The words of the server's protocol; null for what goes wrong in the command line itself.
Value failureOf(const Error& error) {
    const char* const word = wordOf(taskFailureOf(error));
    return word == nullptr ? Value() : Value(String(word));
}

} // namespace

const char* const commandLineErrorDomain = "QuenCommandLineErrorDomain";

bool asksForJson(const std::vector<std::string>& words) {
    for (const std::string& word : words) {
        if (word == "--" || word == "request" || word == "serve") {
            return false;
        }
        if (word == "--json" || word == "--jsonl") {
            return true;
        }
    }
    return false;
}

ErrorReport::ErrorReport(bool isActive) {
    if (isActive) {
        former_ = std::cerr.rdbuf(said_.rdbuf());
        active = this;
        neverAsk();
    }
}

ErrorReport::~ErrorReport() {
    if (former_ != nullptr) {
        std::cerr.rdbuf(former_);
        active = nullptr;
    }
}

void ErrorReport::note(const Error& error, const std::string& suggestion) {
    if (active != nullptr && !active->error_) {
        active->error_ = error;
        active->suggestion_ = suggestion;
    }
}

std::string ErrorReport::textFor(int status) const {
    const Array messages = messagesIn(said_.str());
    Dictionary record = Dictionary::empty();
    record.set("exitStatus", std::int64_t{status});
    record.set("domain", error_ ? error_.domain() : String(commandLineErrorDomain));
    record.set("code", error_ ? error_.code() : std::int64_t{status});
    record.set("failure", failureOf(error_));
    record.set("message", messages.count() == 0 ? Value(String("")) : messages[0]);
    record.set("reason", error_ ? textOrNull(error_.localizedDescription()) : Value());
    record.set("suggestion", textOrNull(String(suggestion_)));
    record.set("messages", messages);
    return jsonText(Dictionary{{"error", record}}) + "\n";
}

void ErrorReport::finish(int status, bool hasReader) {
    if (former_ == nullptr) {
        return;
    }
    std::cerr.rdbuf(former_);
    // A preview that finds something to look at has said so in its result; a reader of the output
    // that went away has seen enough.
    const bool isAResult = status == ExitConflicts || !hasReader;
    const bool hasFailed = status != ExitSuccess && (!isAResult || !said_.str().empty());
    std::cerr << (hasFailed ? textFor(status) : said_.str()) << std::flush;
    former_ = nullptr;
    active = nullptr;
}

} // namespace quen::tools
