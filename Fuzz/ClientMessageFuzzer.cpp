#include "Foundation/Lines.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Host/ClientMessage.h"
#include "Host/TaskErrors.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace quen::fuzz {

namespace {

/// A line of the client with its number apart.
struct Line {
    std::string text;
    std::optional<ClientNumber> number;
};

Line lineWithoutNumber(const std::string& line) {
    const std::size_t head = line.rfind("svn: warning: ", 0) == 0 ? 14
                             : line.rfind("svn: ", 0) == 0        ? 5
                                                                  : std::string::npos;
    if (head == std::string::npos || head == line.size()) {
        return {line, {}};
    }
    const std::size_t digits = head + 1;
    const std::size_t end = line.find_first_not_of("0123456789", digits);
    const bool hasNumber = (line[head] == 'E' || line[head] == 'W') && end != digits &&
                           end != std::string::npos && line.compare(end, 2, ": ") == 0;
    errno = 0;
    const long long number = hasNumber ? std::strtoll(line.c_str() + digits, nullptr, 10) : 0;
    if (!hasNumber || errno == ERANGE) {
        return {line, {}};
    }
    return {line.substr(0, head) + line.substr(end + 2), ClientNumber{line[head] == 'W', number}};
}

ClientMessage expectedMessage(std::string_view errors) {
    while (errors.ends_with('\n') || errors.ends_with('\r')) {
        errors.remove_suffix(1);
    }
    ClientMessage message;
    std::string text;
    for (const std::string_view each : linesOf(errors)) {
        const Line line = lineWithoutNumber(std::string(each));
        text += '\n' + line.text;
        if (line.number) {
            message.numbers.push_back(*line.number);
        }
    }
    message.text = text.substr(errors.empty() ? 0 : 1);
    return message;
}

bool isNotice(const std::string& text, const RunFacts& facts) {
    constexpr ClientNumber absent{true, 200017};
    const bool tellsOfAbsence =
        !facts.numbers.empty() && facts.numbers.front() == absent &&
        (facts.numbers.size() == 1 ||
         (facts.numbers.size() == 2 && facts.numbers.back() == ClientNumber{false, 200000}));
    const auto lines = linesOf(text);
    const bool onlyWarns = std::all_of(lines.begin(), lines.end(), [](std::string_view line) {
        return line.rfind("svn: warning: ", 0) == 0 ||
               line.find_first_not_of(" \t\r") == std::string_view::npos;
    });
    return tellsOfAbsence || (onlyWarns && !facts.signal && facts.exitStatus.value_or(0) == 0);
}

Error expectedError(const std::string& text, const RunFacts& facts) {
    if (text.find_first_not_of(" \t\r\n") == std::string::npos || isNotice(text, facts)) {
        return {};
    }
    std::string description;
    for (const std::string_view line : linesOf(text)) {
        description += '\n';
        description += line.substr(line.rfind("svn: ", 0) == 0 ? 5 : 0);
    }
    Dictionary userInfo{{NSLocalizedDescriptionKey, String(description.substr(1))}};
    Array codes = Array::empty();
    for (const ClientNumber& number : facts.numbers) {
        codes.append(number.number);
        if (number.number == 170001 || number.number == 215004) {
            userInfo.set(QuenSourceControlAuthenticationErrorTypeKey,
                         QuenSourceControlAuthenticationCredentialsIncorrect);
        }
    }
    if (codes.count() > 0) {
        userInfo.set(QuenSourceControlTaskErrorCodesKey, codes);
    }
    const std::int64_t code = !facts.numbers.empty() ? facts.numbers.front().number
                              : facts.signal         ? 128 + *facts.signal
                                                     : facts.exitStatus.value_or(1);
    return {QuenSourceControlTaskErrorDomain, code, userInfo};
}

/// The better of two errors is one of them, and never none where there is one.
void requireBetter(const Error& translated) {
    const Error parsers[] = {
        {}, {QuenSourceControlErrorDomain, -1}, {QuenSourceControlTaskErrorDomain, -4}};
    for (const Error& parsed : parsers) {
        const Error better = betterError(parsed, translated);
        require(better == parsed || better == translated, "a third error");
        require(better || (!parsed && !translated), "an error is lost");
    }
}

} // namespace

void run(FuzzInput input) {
    const unsigned end = input.byte();
    const ClientMessage message = readClientMessage(input.rest());
    const ClientMessage expected = expectedMessage(input.rest());
    requireEqual(message.text, expected.text, "another text");
    require(message.numbers == expected.numbers, "other numbers");

    RunFacts facts{static_cast<int>(end & 3), {}, message.numbers};
    if ((end & 0x80) != 0) {
        facts.exitStatus.reset();
        facts.signal = static_cast<int>(end & 0x1F) + 1;
    }
    const Error error = genericError(message.text, facts);
    requireEqual(error, expectedError(message.text.str(), facts), "another error");
    require(error || errorOfSilentFailure(facts) || !facts.hasFailed() ||
                meansAbsentProperty(facts.numbers),
            "a failure has no error");
    requireBetter(error);
}

} // namespace quen::fuzz
