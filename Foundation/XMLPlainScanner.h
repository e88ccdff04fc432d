#pragma once

#include "Foundation/XMLTree.h"

#include <string>
#include <string_view>

namespace quen {

/// Scans what the client's plain reports are made of: tags with attributes in double quotes, text,
/// the five predefined entities, character references, and comments; in UTF-8, with names of ASCII
/// and lines that end in line feeds. Everything it takes is well-formed, and not everything that is
/// well-formed is taken. Private to the XML reader.
///
/// Each function that answers a bool answers false where it stops, and `isIncomplete` says why:
/// more bytes are needed, or what is there is not known.
class XMLPlainScanner {
public:
    /// The bytes must outlive the scanner and what it puts into the tree.
    explicit XMLPlainScanner(std::string_view bytes) noexcept
        : at_(bytes.data()), end_(bytes.data() + bytes.size()) {}

    const char* at() const noexcept { return at_; }
    bool isAtEnd() const noexcept { return at_ == end_; }
    bool isIncomplete() const noexcept { return isIncomplete_; }
    /// The next byte. There is one.
    char next() const noexcept { return *at_; }

    /// Exactly this text.
    bool take(std::string_view text) noexcept;
    /// Spaces, tabs, and line feeds, any number of them.
    void skipSpace() noexcept;

    /// A start tag or the tag of an empty element, which is then closed again. The next byte is
    /// the bracket.
    bool takeStartTag(XMLTree& tree);
    /// An end tag of that name.
    bool takeEndTag(std::string_view name) noexcept;
    /// The next byte is a bracket.
    bool isAtTag() noexcept { return at_ == end_ ? needMore() : *at_ == '<'; }
    /// The bracket that is the next byte is an end tag's.
    bool isAtEndTag() noexcept;
    /// The bracket that is the next byte begins a comment, or an instruction or a section, which
    /// are not known.
    bool isAtComment() noexcept;
    bool takeComment() noexcept;
    /// Text up to the next bracket.
    bool takeText(XMLTree& tree);
    /// The same of text that nobody reads. Where it stops, everything in front is in order.
    bool passText();
    /// Everything up to the end of the element that is open in the tree.
    bool takeContent(XMLTree& tree);

private:
    bool needMore() noexcept {
        isIncomplete_ = true;
        return false;
    }
    bool takeName(std::string_view& name) noexcept;
    bool takeAttribute(XMLTree& tree);
    bool takeValue(XMLTree& tree, std::string_view& value);
    bool takeValueWithReferences(std::string& value, const char* begin);
    /// A character that is not ASCII.
    bool skipCharacter() noexcept;
    /// A square bracket that ends no section.
    bool skipBracket() noexcept;
    bool takeReference(std::string& character);
    bool skipPlainText() noexcept;
    template <typename Append> bool takeTextTo(Append append);

    const char* at_;
    const char* end_;
    bool isIncomplete_ = false;
    std::string reference_;
};

} // namespace quen
