#include "Host/Facts/ForbiddenCharacters.h"

namespace quen {

namespace {

// U+FDD0 to U+FDEF are EF B7 90 to EF B7 AF. The control character n becomes U+FDD0 + n. XML allows
// a tab, so U+FDD9 stands for no character of its own: it is put before a noncharacter that the
// report itself holds.
constexpr std::string_view lead = "\xEF\xB7";
constexpr unsigned char firstTrail = 0x90;
constexpr unsigned char lastTrail = 0xAF;
constexpr std::string_view escape = "\xEF\xB7\x99";
constexpr std::size_t length = 3;

bool isForbidden(char byte) noexcept {
    return static_cast<unsigned char>(byte) < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

bool isTrail(char byte) noexcept {
    const auto value = static_cast<unsigned char>(byte);
    return value >= firstTrail && value <= lastTrail;
}

bool isNoncharacterAt(std::string_view text, std::size_t at) noexcept {
    return text.size() - at >= length && text.substr(at, lead.size()) == lead &&
           isTrail(text[at + lead.size()]);
}

} // namespace

void ForbiddenCharacters::replaceByte(char byte) {
    if (held_.size() == lead.size()) {
        replaced_ += isTrail(byte) ? escape : std::string_view();
        replaced_ += held_;
        held_.clear();
        if (isTrail(byte)) {
            replaced_ += byte;
            return;
        }
    }
    if (byte == lead[held_.size()]) {
        held_ += byte;
        return;
    }
    replaced_ += held_;
    held_.clear();
    if (byte == lead.front()) {
        held_ += byte;
    } else if (isForbidden(byte)) {
        replaced_ += lead;
        replaced_ += static_cast<char>(firstTrail + static_cast<unsigned char>(byte));
    } else {
        replaced_ += byte;
    }
}

std::string_view ForbiddenCharacters::replaceIn(std::string_view piece) {
    replaced_.clear();
    std::size_t done = 0;
    for (std::size_t i = 0; i < piece.size(); ++i) {
        const bool isPlain = held_.empty() && piece[i] != lead.front() && !isForbidden(piece[i]);
        if (isPlain) {
            continue;
        }
        replaced_.append(piece, done, i - done);
        replaceByte(piece[i]);
        done = i + 1;
    }
    if (done == 0) {
        return piece;
    }
    replaced_.append(piece, done);
    return replaced_;
}

std::string_view ForbiddenCharacters::rest() {
    replaced_ = held_;
    held_.clear();
    return replaced_;
}

bool ForbiddenCharacters::areReplacedIn(std::string_view text) noexcept {
    for (auto at = text.find(lead); at != std::string_view::npos; at = text.find(lead, at + 1)) {
        if (isNoncharacterAt(text, at) && text.substr(at, length) != escape) {
            return true;
        }
        at += isNoncharacterAt(text, at) ? 2 * length - 1 : 0;
    }
    return false;
}

std::string ForbiddenCharacters::restored(std::string_view text) {
    std::string original;
    for (std::size_t i = 0; i < text.size();) {
        if (!isNoncharacterAt(text, i)) {
            original += text[i++];
        } else if (text.substr(i, length) == escape) {
            original += text.substr(i + length, length);
            i += 2 * length;
        } else {
            original += static_cast<char>(static_cast<unsigned char>(text[i + 2]) - firstTrail);
            i += length;
        }
    }
    return original;
}

} // namespace quen
