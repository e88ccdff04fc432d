#pragma once

#include "Foundation/String.h"

#include <cstdint>
#include <string_view>
#include <vector>

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

ClientMessage readClientMessage(std::string_view standardError);

/// Every line that is not blank is a warning of the client; true also when all are blank.
bool holdsOnlyWarnings(std::string_view text);

/// The client's way to say that a property is not there: an answer, not a failure.
bool meansAbsentProperty(const std::vector<ClientNumber>& numbers);

/// The text with the client's name taken off the front of each line.
String withoutClientPrefixes(std::string_view text);

} // namespace quen
