#include "Tools/Terminal/Marks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>

namespace quen::tools {

namespace {

// clang-format off
constexpr Marks ofUnicode{
    "\u2026", "\uFFFD",
    {"\u25CF", "\u2502", "\u251C", "\u2524", "\u2500",
     "\u256E", "\u256D", "\u256F", "\u2570",
     "\u2500", "\u2500", "\u2500", "\u2500", "\u2026"}};
constexpr Marks ofASCII{
    "...", "?",
    {"*", "|", "|", "|", "_",
     " ", " ", " ", " ",
     "\\", "/", "/", "\\", ">"}};
// clang-format on

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return std::search(text.begin(), text.end(), part.begin(), part.end(), [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) ==
                      std::tolower(static_cast<unsigned char>(b));
           }) != text.end();
}

std::string_view localeInEnvironment() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return "C";
}

} // namespace

const Marks& marksOf(std::string_view locale) noexcept {
    const bool isUnicode =
        containsIgnoringCase(locale, "utf-8") || containsIgnoringCase(locale, "utf8");
    return isUnicode ? ofUnicode : ofASCII;
}

const Marks& marks() noexcept {
    static const Marks& ofEnvironment = marksOf(localeInEnvironment());
    return ofEnvironment;
}

} // namespace quen::tools
