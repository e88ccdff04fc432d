#pragma once

#include "Foundation/Lines.h"
#include "Foundation/String.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a host owes a run of the client before a provider sees the outcome, and the functions for
/// it, which need nothing of a host. A QuenSourceControlTaskOperation's `main` follows these rules:
///
/// 1. An operation whose `error` is set, or whose `arguments` were never set, is not run.
/// 2. The client is started with its arguments as they are, never through a shell; with the locale
///    `C.UTF-8` (`LC_ALL`), so that its messages are in English and names of files in UTF-8; with
///    nothing to read on standard input (`/dev/null`); and without a terminal (a session of its
///    own), so that it can never wait for an answer.
/// 3. Both streams are read to their ends, without a limit and at the same time: a client that
///    cannot write stands still.
/// 4. `setData` gets everything of standard output; then `parseData` is called, whatever the exit
///    status was: what a failing client found is a result all the same.
/// 5. The complaint is what `readClientMessage` makes of standard error. Where its text is not
///    empty, `errorFromErrorMessage` gets it; the numbers are for the host's own translation.
/// 6. The host's own translation, which `errorFromErrorMessage` ends in, drops notices: the text of
///    a client that ended with status 0, while `holdsOnlyWarnings`; and `meansAbsentProperty`, with
///    whatever status. Everything else is an error.
/// 7. A client that failed (a signal, or a status other than 0) and left no error by then is an
///    error that names the signal or the status; an absent property is not.
/// 8. Of two errors the one stays that says more: what the provider's translation recognised beats
///    what `parseData` found, which beats the host's own translation where that only says that
///    something is not there; and a report that broke off never hides the client's own complaint.
/// 9. A client that was cancelled, timed out or never started is an error that says so, before all
///    others; `parseData` is not called for one that never started.
namespace quen {

/// One of the client's own numbers, such as E155007 or W200017.
struct ClientNumber {
    bool isWarning = false;
    std::int64_t number = 0;
    friend bool operator==(const ClientNumber&, const ClientNumber&) = default;
};

/// What the client wrote to standard error, made ready for translation.
///
/// Clients since 1.7 print a number in each message (`svn: E210002: Network connection closed`).
/// The translation knows the sentences without them, and tests how a text ends, so the numbers and
/// the line ends at the very end are taken out. The numbers are kept, in order.
struct ClientMessage {
    String text;
    std::vector<ClientNumber> numbers;
};

/// Private to this file.
namespace clientmessage {

inline constexpr std::string_view prefix = "svn: ";
inline constexpr std::string_view warningPrefix = "svn: warning: ";

inline bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

struct LeadingNumber {
    ClientNumber number;
    /// With the colon and the blank behind it.
    std::size_t length = 0;
};

/// `E210002: ` or `W155007: ` at the start.
inline std::optional<LeadingNumber> leadingNumber(std::string_view text) {
    if (text.size() < 2 || (text[0] != 'E' && text[0] != 'W') || text[1] == '-') {
        return std::nullopt;
    }
    LeadingNumber leading{{text.front() == 'W', 0}, 0};
    const char* const end = text.data() + text.size();
    const auto [rest, status] = std::from_chars(text.data() + 1, end, leading.number.number);
    if (status != std::errc() || !std::string_view(rest, end).starts_with(": ")) {
        return std::nullopt;
    }
    leading.length = static_cast<std::size_t>(rest - text.data()) + 2;
    return leading;
}

} // namespace clientmessage

inline ClientMessage readClientMessage(std::string_view standardError) {
    standardError = standardError.substr(0, standardError.find_last_not_of("\r\n") + 1);
    ClientMessage message;
    std::string text;
    while (!standardError.empty()) {
        std::string_view line = takeLineWithFeed(standardError);
        if (line.starts_with(clientmessage::prefix)) {
            const std::string_view head = line.starts_with(clientmessage::warningPrefix)
                                              ? clientmessage::warningPrefix
                                              : clientmessage::prefix;
            text += head;
            line.remove_prefix(head.size());
            if (const auto leading = clientmessage::leadingNumber(line)) {
                message.numbers.push_back(leading->number);
                line.remove_prefix(leading->length);
            }
        }
        text += line;
    }
    message.text = text;
    return message;
}

/// Every line that is not blank is a warning of the client; true also when all are blank.
inline bool holdsOnlyWarnings(std::string_view text) {
    const auto lines = linesOf(text);
    return std::all_of(lines.begin(), lines.end(), [](std::string_view line) {
        return clientmessage::isBlank(line) || line.starts_with(clientmessage::warningPrefix);
    });
}

/// The client's way to say that a property is not there: an answer, not a failure.
inline bool meansAbsentProperty(const std::vector<ClientNumber>& numbers) {
    constexpr ClientNumber notFound{true, 200017};
    constexpr ClientNumber closing{false, 200000};
    return numbers == std::vector{notFound} || numbers == std::vector{notFound, closing};
}

/// The text with the client's name taken off the front of each line.
inline String withoutClientPrefixes(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        std::string_view line = takeLineWithFeed(text);
        line.remove_prefix(line.starts_with(clientmessage::prefix) ? clientmessage::prefix.size()
                                                                   : 0);
        out += line;
    }
    return out;
}

} // namespace quen
