#include "Foundation/XMLLiteral.h"

#include <cstddef>

namespace quen {

namespace {

constexpr unsigned byteOf(char c) noexcept {
    return static_cast<unsigned char>(c);
}

/// Units of a report's bytes, one after another.
class Units {
public:
    explicit Units(std::string_view bytes) noexcept
        : bytes_(bytes), isWide_(bytes.substr(0, 2).find('\0') != std::string_view::npos),
          isBigEndian_(bytes.starts_with('\0')) {}

    bool isAtEnd() const noexcept { return bytes_.size() < (isWide_ ? 2U : 1U); }
    bool isWide() const noexcept { return isWide_; }

    unsigned next() noexcept {
        const unsigned first = byteOf(bytes_[0]);
        const unsigned second = isWide_ ? byteOf(bytes_[1]) : 0;
        bytes_.remove_prefix(isWide_ ? 2 : 1);
        return !isWide_ ? first : isBigEndian_ ? first << 8U | second : second << 8U | first;
    }

private:
    std::string_view bytes_;
    bool isWide_;
    bool isBigEndian_;
};

/// Half of a pair of UTF-16 becomes a character of its own, which no name of an entity can hold.
void appendCharacter(std::string& text, unsigned character) {
    const auto continuation = [&](unsigned shift) {
        text += static_cast<char>(0x80U | (character >> shift & 0x3FU));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0U | character >> 6U);
        continuation(0);
    } else {
        text += static_cast<char>(0xE0U | character >> 12U);
        continuation(6);
        continuation(0);
    }
}

} // namespace

std::string xmlLiteral(std::string_view bytes, bool isLatin) {
    Units units(bytes);
    std::string text;
    const unsigned quote = units.isAtEnd() ? 0 : units.next();
    while (!units.isAtEnd()) {
        const unsigned unit = units.next();
        if (unit == quote) {
            break;
        }
        if (units.isWide() || isLatin) {
            appendCharacter(text, unit);
        } else {
            text += static_cast<char>(unit);
        }
    }
    return text;
}

} // namespace quen
