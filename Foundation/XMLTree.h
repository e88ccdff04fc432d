#pragma once

#include "Foundation/XMLReport.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// The elements of one record, in memory that the next record uses again. Private to the XML
/// reader.
///
/// The nodes lie in document order, and each knows only where its subtree ends: its first child is
/// the node behind it, its next sibling the node at its end. So nothing needs to be linked, and
/// nothing recurses on the depth. The same holds for text: what stands between an element's tags,
/// its descendants' text included, is one slice of the record's text.
class XMLTree {
public:
    // Building. Each throws std::bad_alloc when memory is at its end.

    /// `attributes` are names and values by turns, closed by a null pointer. The names must outlive
    /// the record; everything else is copied.
    void open(const char* name, const char* const* attributes);
    void appendText(std::string_view text) { text_.append(text); }
    void close() noexcept;
    /// Forgets the record and keeps its memory.
    void clear() noexcept;

    /// An element is open: more of the record is to come.
    bool isOpen() const noexcept { return open_ != none; }

    // Reading, once everything is closed.

    XMLElement record() const noexcept { return {*this, 0}; }
    std::string_view name(std::size_t node) const noexcept;
    std::optional<std::string_view> attribute(std::size_t node,
                                              std::string_view name) const noexcept;
    std::string_view text(std::size_t node) const noexcept;
    /// One past the last descendant.
    std::size_t end(std::size_t node) const noexcept { return nodes_[node].end; }
    /// The first of that name among `node` and the siblings after it; `end` where there is none.
    std::size_t sibling(std::size_t node, std::size_t end, std::string_view name) const noexcept;

private:
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    struct Node {
        Range name;
        Range attributes;
        Range text;
        std::size_t parent = none;
        std::size_t end = 0;
    };
    struct Attribute {
        const char* name = nullptr;
        Range value;
    };

    Range keep(std::string_view characters);
    std::string_view characters(Range range) const noexcept {
        return {characters_.data() + range.begin, range.end - range.begin};
    }

    std::vector<Node> nodes_;
    std::vector<Attribute> attributes_;
    /// Of element names and attribute values.
    std::string characters_;
    std::string text_;
    std::size_t open_ = none;
};

} // namespace quen
