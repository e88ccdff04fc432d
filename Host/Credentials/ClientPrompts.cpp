#include "Host/Credentials/ClientPrompts.h"

namespace quen {

namespace {

/// What stands behind the last `label`, up to the end of its line; nil where there is no such
/// label.
String lineAfter(std::string_view label, std::string_view text) {
    const std::size_t at = text.rfind(label);
    if (at == std::string_view::npos) {
        return nullptr;
    }
    const std::size_t begin = at + label.size();
    return String(text.substr(begin, text.find_first_of("\r\n", begin) - begin));
}

std::string_view lastLineOf(std::string_view text) {
    const std::size_t at = text.find_last_of("\r\n");
    return at == std::string_view::npos ? text : text.substr(at + 1);
}

/// The line above the last one; empty where there is none.
std::string_view lineAboveLast(std::string_view text) {
    text.remove_suffix(lastLineOf(text).size());
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    if (text.ends_with('\r')) {
        text.remove_suffix(1);
    }
    return lastLineOf(text);
}

/// The words of a text with one blank between any two.
std::string inOneLine(std::string_view text) {
    std::string line;
    for (const char character : text) {
        const bool isBlank = character == ' ' || character == '\n' || character == '\r';
        if (!isBlank || (!line.empty() && line.back() != ' ')) {
            line += isBlank ? ' ' : character;
        }
    }
    return line;
}

/// `Password for 'alice': `
std::optional<ClientPrompt> passwordPrompt(std::string_view shown) {
    constexpr std::string_view label = "Authentication realm: ";
    constexpr std::string_view before = "Password for '";
    constexpr std::string_view after = "': ";
    const std::string_view line = lastLineOf(shown);
    // The realm is the server's own text: it may hold the label once more, or lines of its own.
    const std::string_view realm = lineAboveLast(shown);
    if (!realm.starts_with(label)) {
        return std::nullopt;
    }
    ClientPrompt prompt{.kind = ClientPrompt::Kind::password,
                        .realm = String(realm.substr(label.size()))};
    if (line.starts_with(before) && line.ends_with(after)) {
        prompt.user = line.substr(before.size(), line.size() - before.size() - after.size());
        return prompt;
    }
    return line == "Username: " ? std::optional(prompt) : std::nullopt;
}

/// The items ` - ...` between the question's heading and the certificate's, each with the lines
/// that go on below it.
std::vector<String> failuresIn(std::string_view question) {
    constexpr std::string_view mark = "\n - ";
    std::string_view text = question.substr(0, question.find("\nCertificate information:"));
    std::vector<String> failures;
    for (std::size_t at = text.find(mark); at != std::string_view::npos;) {
        text.remove_prefix(at + mark.size());
        at = text.find(mark);
        failures.emplace_back(inOneLine(text.substr(0, at)));
    }
    return failures;
}

std::optional<ClientPrompt> certificatePrompt(std::string_view shown) {
    const std::string_view line = lastLineOf(shown);
    if (!line.starts_with("(R)eject")) {
        return std::nullopt;
    }
    const std::size_t begin = shown.rfind("Error validating server certificate for");
    const std::string_view question = begin == std::string_view::npos ? shown : shown.substr(begin);
    return ClientPrompt{.kind = ClientPrompt::Kind::certificate,
                        .certificate = {.hostname = lineAfter(" - Hostname: ", question),
                                        .validity = lineAfter(" - Valid: ", question),
                                        .issuer = lineAfter(" - Issuer: ", question),
                                        .fingerprint = lineAfter(" - Fingerprint: ", question),
                                        .failures = failuresIn(question)},
                        .canBeKept = line.find("(p)ermanently") != std::string_view::npos};
}

std::optional<ClientPrompt> otherPrompt(std::string_view shown) {
    const std::string_view line = lastLineOf(shown);
    const bool isQuestion = line == "Client certificate filename: " ||
                            (line.starts_with("Passphrase for '") && line.ends_with("': "));
    return isQuestion ? std::optional(ClientPrompt()) : std::nullopt;
}

} // namespace

std::optional<ClientPrompt> promptIn(std::string_view shown) {
    if (auto prompt = passwordPrompt(shown)) {
        return prompt;
    }
    if (auto prompt = certificatePrompt(shown)) {
        // A terminal passes pieces on as they come: the question is whole at its last character.
        return shown.ends_with("? ") ? prompt : std::nullopt;
    }
    return otherPrompt(shown);
}

} // namespace quen
