#pragma once

#include "Foundation/XMLReport.h"

#include <cstddef>
#include <deque>
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
    /// An element whose attributes are added afterwards. The name must outlive the record.
    void open(std::string_view name) {
        nodes_.push_back({name, attributes_.size(), attributes_.size(), textSize_, 0, open_, 0});
        open_ = nodes_.size() - 1;
        ++depth_;
    }
    /// To the element that was opened last. Both texts must outlive the record.
    void addAttribute(std::string_view name, std::string_view value) {
        attributes_.push_back({name, value});
        ++nodes_.back().attributesEnd;
    }
    /// A text that lives as long as the record, empty at first.
    std::string& keep();
    void appendText(std::string_view text) {
        if (text_.size() - textSize_ < text.size()) {
            text_.resize(2 * text_.size() + text.size());
        }
        if (text.size() == 1) {
            text_[textSize_] = text.front(); // a line feed between two tags
        } else {
            text.copy(text_.data() + textSize_, text.size());
        }
        textSize_ += text.size();
    }
    void close() noexcept {
        Node& node = nodes_[open_];
        node.textEnd = textSize_;
        node.end = nodes_.size();
        open_ = node.parent;
        --depth_;
    }
    /// Forgets the record and keeps its memory.
    void clear() noexcept;

    /// An element is open: more of the record is to come.
    bool isOpen() const noexcept { return open_ != none; }
    /// The elements that are open.
    std::size_t depth() const noexcept { return depth_; }
    /// The name of the innermost open element.
    std::string_view openName() const noexcept { return nodes_[open_].name; }
    /// Of the element that was opened last.
    std::size_t attributeCount() const noexcept {
        return nodes_.back().attributesEnd - nodes_.back().attributes;
    }

    // Reading, once everything is closed.

    XMLElement record() const noexcept { return {*this, 0}; }
    std::string_view name(std::size_t node) const noexcept { return nodes_[node].name; }
    std::optional<std::string_view> attribute(std::size_t node,
                                              std::string_view name) const noexcept;
    std::string_view text(std::size_t node) const noexcept;
    /// One past the last descendant.
    std::size_t end(std::size_t node) const noexcept { return nodes_[node].end; }
    /// The first of that name among `node` and the siblings after it; `end` where there is none.
    std::size_t sibling(std::size_t node, std::size_t end, std::string_view name) const noexcept;

    /// The child of that name where there is exactly one; `node` itself for none and for several.
    std::size_t onlyChild(std::size_t node, std::string_view name) const noexcept;

    // Looking at all of a record, for tests.

    /// The tree that an element is in.
    static const XMLTree& of(const XMLElement& element) noexcept { return *element.tree_; }
    /// Everything that is in the record, in an order that only equal records share.
    void describe(std::string& out) const;

    /// Whether the element that was opened last has such an attribute already.
    bool hasAttribute(std::string_view name) const noexcept {
        return attribute(nodes_.size() - 1, name).has_value();
    }

private:
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    struct Node {
        std::string_view name;
        std::size_t attributes = 0;
        std::size_t attributesEnd = 0;
        std::size_t text = 0;
        std::size_t textEnd = 0;
        std::size_t parent = none;
        std::size_t end = 0;
    };
    struct Attribute {
        std::string_view name;
        std::string_view value;
    };

    std::string_view copy(std::string_view characters) { return keep().append(characters); }

    std::vector<Node> nodes_;
    std::vector<Attribute> attributes_;
    /// They never move, and keep their memory for the next record.
    std::deque<std::string> kept_;
    std::size_t keptCount_ = 0;
    /// Room for text, and how much of it is taken.
    std::string text_;
    std::size_t textSize_ = 0;
    std::size_t open_ = none;
    std::size_t depth_ = 0;
};

} // namespace quen
