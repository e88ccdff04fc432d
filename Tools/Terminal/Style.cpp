#include "Tools/Terminal/Style.h"

#include <cstdlib>
#include <unistd.h>

namespace quen::tools {

namespace {

std::string_view environment(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? "" : value;
}

bool shouldColour(Palette::Use use) {
    if (use != Palette::Use::automatic) {
        return use == Palette::Use::always;
    }
    return outputIsTerminal() && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

std::string_view codeOf(Style style) {
    switch (style) {
    case Style::plain: return "";
    case Style::heading: return "1";
    case Style::faint: return "2";
    case Style::good: return "32";
    case Style::changed: return "34";
    case Style::warning: return "33";
    case Style::bad: return "31";
    }
    return "";
}

} // namespace

bool outputIsTerminal() noexcept {
    return isatty(STDOUT_FILENO) == 1;
}

Palette::Palette(Use use) : isColoured_(shouldColour(use)) {}

Palette Palette::named(std::string_view use) {
    return Palette(use == "always" ? Use::always : use == "never" ? Use::never : Use::automatic);
}

std::string Palette::paintBold(Style style, std::string_view text) const {
    return isColoured_ && !text.empty() ? "\x1b[1m" + paint(style, text) : std::string(text);
}

std::string Palette::paint(Style style, std::string_view text) const {
    if (!isColoured_ || style == Style::plain || text.empty()) {
        return std::string(text);
    }
    return "\x1b[" + std::string(codeOf(style)) + "m" + std::string(text) + "\x1b[0m";
}

} // namespace quen::tools
