#include "Tools/Terminal/SafeText.h"

#include "Host/Text.h"
#include "Tools/Terminal/Marks.h"

#include <algorithm>
#include <array>

namespace quen::tools {

namespace {

/// What stands for a byte that is not UTF-8.
constexpr std::string_view foreignByte = "\xEF\xBF\xBD";

/// As UTF-8 writes them: marks, embeddings, overrides and isolates of the direction of writing, and
/// the separators of lines and paragraphs.
// NOLINTBEGIN(misc-misleading-bidirectional): they are what is looked for
constexpr std::array<std::string_view, 14> deceptive{
    "\xD8\x9C",     "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xA8", "\xE2\x80\xA9",
    "\xE2\x80\xAA", "\xE2\x80\xAB", "\xE2\x80\xAC", "\xE2\x80\xAD", "\xE2\x80\xAE",
    "\xE2\x81\xA6", "\xE2\x81\xA7", "\xE2\x81\xA8", "\xE2\x81\xA9"};
// NOLINTEND(misc-misleading-bidirectional)

/// What Palette writes.
constexpr std::array<std::string_view, 7> colours{"\x1b[0m",  "\x1b[1m",  "\x1b[2m", "\x1b[31m",
                                                  "\x1b[32m", "\x1b[33m", "\x1b[34m"};

template <typename Texts> std::size_t lengthOfOneOf(const Texts& texts, std::string_view text) {
    const auto found = std::find_if(texts.begin(), texts.end(),
                                    [&](std::string_view each) { return text.starts_with(each); });
    return found == texts.end() ? 0 : found->size();
}

/// How many bytes at the beginning of a valid text are to be replaced; 0 for none. C1 controls take
/// two bytes.
std::size_t lengthOfUnsafe(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x20 || first == 0x7F) {
        return 1;
    }
    if (first == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0) {
        return 2;
    }
    if (text.starts_with(foreignByte)) {
        return foreignByte.size();
    }
    return first < 0x80 ? 0 : lengthOfOneOf(deceptive, text);
}

/// How many bytes at the beginning are ASCII that every terminal shows: nearly all of them.
std::size_t lengthOfPlain(std::string_view text) {
    const auto end = std::find_if(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) >= 0x7F;
    });
    return static_cast<std::size_t>(end - text.begin());
}

std::string made(std::string_view text, std::string_view allowed, bool allowsColours) {
    if (lengthOfPlain(text) == text.size()) {
        return std::string(text);
    }
    const std::string valid = replacingInvalidUTF8(text);
    std::string shown;
    for (std::string_view rest = valid; !rest.empty();) {
        const std::size_t plain = lengthOfPlain(rest);
        shown += rest.substr(0, plain);
        rest.remove_prefix(plain);
        if (rest.empty()) {
            break;
        }
        const std::size_t colour = allowsColours ? lengthOfOneOf(colours, rest) : 0;
        const bool isAllowed = allowed.find(rest[0]) != std::string_view::npos;
        const std::size_t unsafe = colour > 0 || isAllowed ? 0 : lengthOfUnsafe(rest);
        const auto length = std::max<std::size_t>({colour, unsafe, 1});
        shown += unsafe > 0 ? marks().replacement : rest.substr(0, length);
        rest.remove_prefix(length);
    }
    return shown;
}

} // namespace

std::string printable(std::string_view text) {
    return made(text, "", false);
}

std::string printableLine(std::string_view line) {
    return made(line, "\t", false);
}

std::string safeForTerminal(std::string_view text) {
    return made(text, "\n\t", true);
}

} // namespace quen::tools
