#include "Foundation/XMLPlainScanner.h"

#include "Foundation/XMLBytes.h"
#include "Foundation/XMLCharacters.h"

#include <cstddef>

namespace quen {

namespace {

/// Looking for one name among many takes time with the square of their number.
constexpr std::size_t mostAttributes = 64;

/// The longest reference that is looked at: `&#1114111;`, with room for a few zeros.
constexpr std::size_t longestReference = 12;

constexpr bool isSpace(char c) noexcept {
    return c == ' ' || c == '\n' || c == '\t';
}

} // namespace

bool XMLPlainScanner::take(std::string_view text) noexcept {
    const std::string_view there(at_, static_cast<std::size_t>(end_ - at_));
    if (there.size() < text.size()) {
        return text.starts_with(there) && needMore();
    }
    if (!there.starts_with(text)) {
        return false;
    }
    at_ += text.size();
    return true;
}

void XMLPlainScanner::skipSpace() noexcept {
    while (at_ != end_ && isSpace(*at_)) {
        ++at_;
    }
}

// Tags

bool XMLPlainScanner::takeName(std::string_view& name) noexcept {
    const char* const begin = at_;
    if (at_ != end_ && !xmlbytes::is(xmlbytes::nameStart, *at_)) {
        return false;
    }
    at_ = xmlbytes::skipEach(xmlbytes::name, at_, end_);
    name = {begin, static_cast<std::size_t>(at_ - begin)};
    return at_ != end_ || needMore();
}

bool XMLPlainScanner::takeStartTag(XMLTree& tree) {
    std::string_view name;
    ++at_;
    if (!takeName(name)) {
        return false;
    }
    tree.open(name);
    while (isSpace(*at_)) {
        skipSpace();
        if (at_ == end_) {
            return needMore();
        }
        if (*at_ == '>' || *at_ == '/') {
            break;
        }
        if (!takeAttribute(tree)) {
            return false;
        }
    }
    if (*at_ == '>') {
        ++at_;
        return true;
    }
    if (!take("/>")) {
        return false;
    }
    tree.close();
    return true;
}

bool XMLPlainScanner::takeAttribute(XMLTree& tree) {
    std::string_view name;
    std::string_view value;
    if (!takeName(name) || !take("=\"") || !takeValue(tree, value) ||
        tree.attributeCount() == mostAttributes || tree.hasAttribute(name)) {
        return false;
    }
    tree.addAttribute(name, value);
    return at_ != end_ || needMore();
}

/// Up to and with the closing quote. White space other than spaces would have to be replaced.
bool XMLPlainScanner::takeValue(XMLTree& tree, std::string_view& value) {
    const char* const begin = at_;
    while ((at_ = xmlbytes::skip<xmlbytes::value>(at_, end_)) != end_) {
        if (*at_ == '"') {
            value = {begin, static_cast<std::size_t>(at_++ - begin)};
            return true;
        }
        if (*at_ == '&') {
            std::string& text = tree.keep();
            const bool isTaken = takeValueWithReferences(text, begin);
            value = text;
            return isTaken;
        }
        if (!skipCharacter()) {
            return false;
        }
    }
    return needMore();
}

bool XMLPlainScanner::takeValueWithReferences(std::string& value, const char* begin) {
    while (at_ != end_) {
        if (*at_ == '&') {
            value.append(begin, at_);
            if (!takeReference(value)) {
                return false;
            }
            begin = at_;
        } else if (*at_ == '"') {
            value.append(begin, at_++);
            return true;
        } else if (!skipCharacter()) {
            return false;
        }
        at_ = xmlbytes::skip<xmlbytes::value>(at_, end_);
    }
    return needMore();
}

bool XMLPlainScanner::isAtEndTag() noexcept {
    if (end_ - at_ < 2) {
        return needMore();
    }
    return at_[1] == '/';
}

bool XMLPlainScanner::isAtComment() noexcept {
    return end_ - at_ > 1 && at_[1] == '!';
}

bool XMLPlainScanner::takeComment() noexcept {
    if (!take("<!--")) {
        return false;
    }
    while (at_ != end_) {
        if (*at_ == '-') {
            if (end_ - at_ < 2) {
                return needMore();
            }
            if (at_[1] == '-') {
                return take("-->");
            }
            ++at_;
        } else if (xmlbytes::is(xmlbytes::comment, *at_)) {
            ++at_;
        } else if (!skipCharacter()) {
            return false;
        }
    }
    return needMore();
}

bool XMLPlainScanner::takeEndTag(std::string_view name) noexcept {
    const char* const nameBegin = at_ + 2;
    const std::size_t length = name.size() + 3;
    if (static_cast<std::size_t>(end_ - at_) < length) {
        return take("</") && take(name) && take(">");
    }
    if (!xmlbytes::isSame(nameBegin, name) || at_[length - 1] != '>') {
        return false;
    }
    at_ += length;
    return true;
}

bool XMLPlainScanner::takeContent(XMLTree& tree) {
    const std::size_t outermost = tree.depth();
    while (tree.depth() >= outermost) {
        if (!takeText(tree)) {
            return false;
        }
        if (isAtEndTag()) {
            if (!takeEndTag(tree.openName())) {
                return false;
            }
            tree.close();
        } else if (isIncomplete_ || !(isAtComment() ? takeComment() : takeStartTag(tree))) {
            return false;
        }
    }
    return true;
}

// Text

bool XMLPlainScanner::skipCharacter() noexcept {
    const auto [length, isKnown] = xmlCharacter({at_, static_cast<std::size_t>(end_ - at_)});
    if (!isKnown) {
        return length != 0 && needMore();
    }
    at_ += length;
    return true;
}

/// Two of them and the sign of an end tag may not stand in text.
bool XMLPlainScanner::skipBracket() noexcept {
    const std::string_view there(at_, static_cast<std::size_t>(end_ - at_));
    constexpr std::string_view forbidden = "]]>";
    if (forbidden.starts_with(there.substr(0, forbidden.size()))) {
        return there.size() < forbidden.size() && needMore();
    }
    ++at_;
    return true;
}

bool XMLPlainScanner::takeReference(std::string& character) {
    const std::string_view there(at_, static_cast<std::size_t>(end_ - at_));
    const std::size_t stop = there.substr(0, longestReference).find(';');
    if (stop == std::string_view::npos) {
        return there.size() < longestReference && needMore();
    }
    if (!appendXMLReference(character, there.substr(1, stop - 1))) {
        return false;
    }
    at_ += stop + 1;
    return true;
}

template <typename Append> bool XMLPlainScanner::takeTextTo(Append appendText) {
    while (at_ != end_ && *at_ != '<') {
        const char* const begin = at_;
        bool isTaken = true;
        if (*at_ == '&') {
            reference_.clear();
            isTaken = takeReference(reference_);
            appendText(std::string_view(reference_));
        } else {
            isTaken = skipPlainText();
            appendText(std::string_view(begin, static_cast<std::size_t>(at_ - begin)));
        }
        if (!isTaken) {
            return false;
        }
    }
    return at_ != end_ || needMore();
}

/// Up to a bracket or an ampersand. Most texts are the line feed between two tags.
bool XMLPlainScanner::skipPlainText() noexcept {
    if (end_ - at_ > 1 && at_[0] == '\n' && at_[1] == '<') {
        ++at_;
        return true;
    }
    while ((at_ = xmlbytes::skip<xmlbytes::text>(at_, end_)) != end_) {
        switch (*at_) {
        case '<':
        case '&': return true;
        case '\n':
        case '\t': ++at_; break;
        case ']':
            if (!skipBracket()) {
                return false;
            }
            break;
        default:
            if (!skipCharacter()) {
                return false;
            }
        }
    }
    return true;
}

bool XMLPlainScanner::takeText(XMLTree& tree) {
    return takeTextTo([&](std::string_view text) { tree.appendText(text); });
}

bool XMLPlainScanner::passText() {
    return takeTextTo([](std::string_view) {});
}

} // namespace quen
