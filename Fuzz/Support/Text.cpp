#include "Fuzz/Support/Text.h"

namespace quen::fuzz {

namespace {

bool isContinuation(unsigned char byte) {
    return byte >= 0x80 && byte <= 0xBF;
}

/// The first character's length by the table of well-formed sequences; 0 where there is none.
std::size_t lengthOfCharacter(std::string_view bytes) {
    const auto at = [&](std::size_t i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    };
    const unsigned first = at(0);
    const unsigned second = at(1);
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return isContinuation(static_cast<unsigned char>(second)) ? 2 : 0;
    }
    // The second byte's range keeps out what has a shorter form, surrogates, and what is too large.
    const unsigned least = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned greatest = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    const std::size_t length = first >= 0xE0 && first <= 0xEF   ? 3
                               : first >= 0xF0 && first <= 0xF4 ? 4
                                                                : 0;
    if (second < least || second > greatest) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (!isContinuation(static_cast<unsigned char>(at(i)))) {
            return 0;
        }
    }
    return length;
}

bool isWellFormed(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = lengthOfCharacter(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}

/// A line, its end included, as the text of before UTF-8 that it is where it is not UTF-8.
std::string decodedLine(std::string_view line) {
    if (isWellFormed(line)) {
        return std::string(line);
    }
    std::string text;
    for (const char c : line) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0xC0) {
            text += {'\xC3', static_cast<char>(byte - 0x40)};
        } else if (byte >= 0x80) {
            text += {'\xC2', static_cast<char>(byte)};
        } else {
            text += static_cast<char>(byte);
        }
    }
    return text;
}

} // namespace

std::optional<std::string> expectedText(std::string_view bytes) {
    if (isWellFormed(bytes)) {
        return std::string(bytes);
    }
    std::string text;
    std::string line;
    for (const char c : bytes) {
        if (c == '\0') {
            return std::nullopt;
        }
        line += c;
        if (c == '\n') {
            text += decodedLine(line);
            line.clear();
        }
    }
    return text + decodedLine(line);
}

} // namespace quen::fuzz
