#include "Foundation/XMLTree.h"

namespace quen {

// Building

XMLTree::Range XMLTree::keep(std::string_view characters) {
    const std::size_t begin = characters_.size();
    characters_.append(characters);
    return {begin, characters_.size()};
}

void XMLTree::open(const char* name, const char* const* attributes) {
    Node node;
    node.name = keep(name);
    node.attributes.begin = attributes_.size();
    for (; *attributes != nullptr; attributes += 2) {
        attributes_.push_back({attributes[0], keep(attributes[1])});
    }
    node.attributes.end = attributes_.size();
    node.text.begin = text_.size();
    node.parent = open_;
    nodes_.push_back(node);
    open_ = nodes_.size() - 1;
}

void XMLTree::close() noexcept {
    Node& node = nodes_[open_];
    node.text.end = text_.size();
    node.end = nodes_.size();
    open_ = node.parent;
}

void XMLTree::clear() noexcept {
    nodes_.clear();
    attributes_.clear();
    characters_.clear();
    text_.clear();
    open_ = none;
}

// Reading

std::string_view XMLTree::name(std::size_t node) const noexcept {
    return characters(nodes_[node].name);
}

std::optional<std::string_view> XMLTree::attribute(std::size_t node,
                                                   std::string_view name) const noexcept {
    const Range range = nodes_[node].attributes;
    for (std::size_t i = range.begin; i < range.end; ++i) {
        if (attributes_[i].name == name) {
            return characters(attributes_[i].value);
        }
    }
    return std::nullopt;
}

std::string_view XMLTree::text(std::size_t node) const noexcept {
    const Range range = nodes_[node].text;
    return {text_.data() + range.begin, range.end - range.begin};
}

std::size_t XMLTree::sibling(std::size_t node, std::size_t end,
                             std::string_view name) const noexcept {
    while (node != end && this->name(node) != name) {
        node = this->end(node);
    }
    return node;
}

// XMLElement

std::string_view XMLElement::name() const noexcept {
    return tree_->name(node_);
}

std::optional<std::string_view> XMLElement::attribute(std::string_view name) const noexcept {
    return tree_->attribute(node_, name);
}

std::string_view XMLElement::text() const noexcept {
    return tree_->text(node_);
}

XMLElement::Children XMLElement::children(std::string_view name) const noexcept {
    const std::size_t end = tree_->end(node_);
    return {*tree_, tree_->sibling(node_ + 1, end, name), end, name};
}

std::optional<XMLElement> XMLElement::firstChild(std::string_view name) const noexcept {
    const Children found = children(name);
    return found.begin() == found.end() ? std::nullopt : std::optional(*found.begin());
}

std::optional<XMLElement> XMLElement::onlyChild(std::string_view name) const noexcept {
    const Children found = children(name);
    const bool isOne = found.begin() != found.end() && ++found.begin() == found.end();
    return isOne ? std::optional(*found.begin()) : std::nullopt;
}

XMLElement::Children::iterator& XMLElement::Children::iterator::operator++() noexcept {
    node_ = tree_->sibling(tree_->end(node_), end_, name_);
    return *this;
}

} // namespace quen
