#include "Foundation/XMLTree.h"

namespace quen {

// Building

std::string& XMLTree::keep() {
    if (keptCount_ == kept_.size()) {
        kept_.emplace_back();
    }
    std::string& text = kept_[keptCount_++];
    text.clear();
    return text;
}

void XMLTree::open(const char* name, const char* const* attributes) {
    open(copy(name));
    for (; *attributes != nullptr; attributes += 2) {
        addAttribute(attributes[0], copy(attributes[1]));
    }
}

void XMLTree::clear() noexcept {
    nodes_.clear();
    attributes_.clear();
    keptCount_ = 0;
    textSize_ = 0;
    open_ = none;
    depth_ = 0;
}

// Reading

std::optional<std::string_view> XMLTree::attribute(std::size_t node,
                                                   std::string_view name) const noexcept {
    const Node& element = nodes_[node];
    for (std::size_t i = element.attributes; i < element.attributesEnd; ++i) {
        if (attributes_[i].name == name) {
            return attributes_[i].value;
        }
    }
    return std::nullopt;
}

std::string_view XMLTree::text(std::size_t node) const noexcept {
    return {text_.data() + nodes_[node].text, nodes_[node].textEnd - nodes_[node].text};
}

std::size_t XMLTree::sibling(std::size_t node, std::size_t end,
                             std::string_view name) const noexcept {
    while (node != end && this->name(node) != name) {
        node = this->end(node);
    }
    return node;
}

std::size_t XMLTree::onlyChild(std::size_t node, std::string_view name) const noexcept {
    std::size_t only = node;
    const std::size_t end = nodes_[node].end;
    for (std::size_t child = node + 1; child != end; child = nodes_[child].end) {
        if (nodes_[child].name != name) {
            continue;
        }
        if (only != node) {
            return node;
        }
        only = child;
    }
    return only;
}

void XMLTree::describe(std::string& out) const {
    const auto add = [&](std::string_view part) { out.append(part).push_back('\0'); };
    for (const Node& node : nodes_) {
        add(node.name);
        add(std::to_string(node.end));
        for (std::size_t i = node.attributes; i < node.attributesEnd; ++i) {
            add(attributes_[i].name);
            add(attributes_[i].value);
        }
        add({text_.data() + node.text, node.textEnd - node.text});
    }
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
    const std::size_t child = tree_->onlyChild(node_, name);
    return child == node_ ? std::nullopt : std::optional(XMLElement(*tree_, child));
}

XMLElement::Children::iterator& XMLElement::Children::iterator::operator++() noexcept {
    node_ = tree_->sibling(tree_->end(node_), end_, name_);
    return *this;
}

} // namespace quen
