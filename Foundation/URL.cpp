#include "Foundation/URL.h"

#include "Foundation/PercentCoding.h"

#include <algorithm>
#include <string_view>

namespace quen {

namespace {

using std::string_view;

bool isLetter(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/// Unreserved characters, sub-delimiters, `:` and `@`: what may stand anywhere after the scheme.
bool isPlain(char c) noexcept {
    return isLetter(c) || isDigit(c) ||
           string_view("-._~!$&'()*+,;=:@").find(c) != string_view::npos;
}

/// Every character is plain, one of `extra`, or a `%` with its two digits.
bool consistsOf(string_view text, string_view extra) noexcept {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            if (!byteOfPercentCode(text.substr(i))) {
                return false;
            }
            i += 2;
        } else if (!isPlain(text[i]) && extra.find(text[i]) == string_view::npos) {
            return false;
        }
    }
    return true;
}

/// The length of the scheme, or 0 where there is none.
std::size_t schemeLength(string_view text) noexcept {
    if (text.empty() || !isLetter(text.front())) {
        return 0;
    }
    const auto end = std::find_if_not(text.begin(), text.end(), [](char c) {
        return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
    });
    return end != text.end() && *end == ':' ? static_cast<std::size_t>(end - text.begin()) : 0;
}

/// `[user@]host[:port]`, where the host may be an address in brackets.
bool isAuthority(string_view text) noexcept {
    if (const std::size_t at = text.rfind('@'); at != string_view::npos) {
        if (!consistsOf(text.substr(0, at), "") ||
            text.substr(0, at).find('@') != string_view::npos) {
            return false;
        }
        text.remove_prefix(at + 1);
    }
    const bool isBracketed = text.starts_with('[');
    const std::size_t hostEnd = isBracketed ? text.find(']') : text.find(':');
    string_view port;
    if (isBracketed) {
        if (hostEnd == string_view::npos || !consistsOf(text.substr(1, hostEnd - 1), "")) {
            return false;
        }
        port = text.substr(hostEnd + 1);
    } else {
        if (!consistsOf(text.substr(0, hostEnd), "")) {
            return false;
        }
        port = hostEnd == string_view::npos ? string_view() : text.substr(hostEnd);
    }
    return port.empty() ||
           (port.front() == ':' && std::all_of(port.begin() + 1, port.end(), isDigit));
}

string_view cutAt(string_view& text, char mark) noexcept {
    const std::size_t position = std::min(text.find(mark), text.size());
    const string_view rest = text.substr(std::min(position + 1, text.size()));
    text = text.substr(0, position);
    return rest;
}

bool isReference(string_view text) noexcept {
    const std::size_t scheme = schemeLength(text);
    if (scheme > 0) {
        text.remove_prefix(scheme + 1);
    }
    const string_view fragment = cutAt(text, '#');
    const string_view query = cutAt(text, '?');
    string_view path = text;
    if (path.starts_with("//")) {
        path.remove_prefix(2);
        const std::size_t authority = std::min(path.find('/'), path.size());
        if (!isAuthority(path.substr(0, authority))) {
            return false;
        }
        path.remove_prefix(authority);
    } else if (scheme == 0 && path.substr(0, path.find('/')).find(':') != string_view::npos) {
        return false;
    }
    return consistsOf(path, "/") && consistsOf(query, "/?") && consistsOf(fragment, "/?");
}

} // namespace

URL URL::fromString(const String& text) {
    URL url;
    if (!text.isNil() && isReference(text.view())) {
        url.text_ = text;
    }
    return url;
}

String URL::scheme() const {
    const std::size_t length = schemeLength(text_.view());
    return length == 0 ? String() : String(text_.view().substr(0, length));
}

bool URL::isFileURL() const noexcept {
    const string_view scheme = text_.view().substr(0, schemeLength(text_.view()));
    constexpr string_view file = "file";
    return std::equal(scheme.begin(), scheme.end(), file.begin(), file.end(),
                      [](char a, char b) { return (a | 0x20) == b; });
}

} // namespace quen
