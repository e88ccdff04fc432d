#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string_view>

namespace quen {

/// The domain of the XML reader's errors. The code is the engine's number for the reason, the
/// description says what is wrong, and where: line and column counted from 1, byte offset from 0.
QUEN_EXPORT extern const String XMLParserErrorDomain;

class XMLTree;

/// An element of the record at hand. A light view: it and every text that it answers are good only
/// until the handler that was given the record returns.
class QUEN_EXPORT XMLElement {
public:
    std::string_view name() const noexcept;
    /// nullopt where the element has no such attribute.
    std::optional<std::string_view> attribute(std::string_view name) const noexcept;
    /// All character data between the element's tags, that of its descendants included, in document
    /// order; comments and processing instructions are not part of it.
    std::string_view text() const noexcept;

    /// The direct children of one name.
    class Children;
    Children children(std::string_view name) const noexcept;
    /// The first direct child of that name.
    std::optional<XMLElement> firstChild(std::string_view name) const noexcept;
    /// The direct child of that name where there is exactly one; nullopt for none and for several.
    std::optional<XMLElement> onlyChild(std::string_view name) const noexcept;

private:
    friend class XMLTree;
    XMLElement(const XMLTree& tree, std::size_t node) noexcept : tree_(&tree), node_(node) {}

    const XMLTree* tree_;
    std::size_t node_;
};

/// Iterates over the direct children of one name, in document order. The name must outlive it.
class QUEN_EXPORT XMLElement::Children {
public:
    class iterator {
    public:
        using value_type = XMLElement;
        using difference_type = std::ptrdiff_t;

        XMLElement operator*() const noexcept { return {*tree_, node_}; }
        iterator& operator++() noexcept;
        bool operator==(const iterator& other) const noexcept { return node_ == other.node_; }

    private:
        friend class Children;
        iterator(const XMLTree& tree, std::size_t node, std::size_t end,
                 std::string_view name) noexcept
            : tree_(&tree), node_(node), end_(end), name_(name) {}

        const XMLTree* tree_;
        std::size_t node_;
        std::size_t end_;
        std::string_view name_;
    };

    iterator begin() const noexcept { return first_; }
    iterator end() const noexcept {
        return {*first_.tree_, first_.end_, first_.end_, first_.name_};
    }

private:
    friend class XMLElement;
    Children(const XMLTree& tree, std::size_t node, std::size_t end, std::string_view name) noexcept
        : first_(tree, node, end, name) {}

    iterator first_;
};

/// Reads a report of one root with many small records, whole or in pieces as they arrive, with the
/// same results. Memory does not grow with the report: each finished record is handed over as a
/// small tree and its memory is used again for the next.
///
/// The reader is strict. Anything that is not well-formed is an error, down to an undefined entity
/// or a doubled attribute; so is an empty report, and so are entities nested to blow up a small
/// report. Nothing outside the report is ever resolved: an external DTD is passed over, and a
/// reference to an external entity, or to one that is declared nowhere in the report, is an error;
/// in the default of an attribute, where an element takes it. Nothing recurses on the depth of the
/// input.
///
/// Encodings: UTF-8, UTF-16, ISO-8859-1 and US-ASCII, as the report declares; texts come as UTF-8.
///
/// Threads: one thread at a time.
class QUEN_EXPORT XMLReportReader {
public:
    /// Called for each record, in document order. `container` counts, from 0, the root's children
    /// that the path's first name names; for a path of one name it is 0. Records are handed over
    /// while the rest of the report is unread, so what the handler gathers counts only when
    /// `finish` finds no error. An exception thrown by the handler ends the reading and leaves the
    /// `read` or `finish` that reached the record; `finish` then answers an error.
    using RecordHandler = std::function<void(const XMLElement& record, std::size_t container)>;
    /// Called where a container begins, before its records: the element as its start tag gives it,
    /// with attributes and without text or children. What holds for the record handler holds here.
    using ContainerHandler = RecordHandler;

    /// `path` names the elements that lead from the root's children to a record, the record's own
    /// name last: `{"target", "entry"}` for root/target/entry. One or two names. Names match
    /// exactly; the root may have any name. A name may be several, any of which will do, separated
    /// by bars: `{"target|changelist", "entry"}`.
    XMLReportReader(std::initializer_list<std::string_view> path, RecordHandler handler,
                    ContainerHandler containerHandler = {});
    XMLReportReader(const XMLReportReader&) = delete;
    XMLReportReader& operator=(const XMLReportReader&) = delete;
    ~XMLReportReader();

    /// The next piece, cut anywhere. False when the report has turned out malformed; later pieces
    /// are then ignored.
    bool read(std::string_view piece);
    /// A whole report at once, instead of `read` and `finish`, with the same results and quicker.
    Error readAll(std::string_view report);
    /// Ends the report. nil when it was well-formed; call once. May still hand over records, since
    /// the end of a long element may be looked at late.
    Error finish();

private:
    class Engine;
    std::unique_ptr<Engine> engine_;
};

} // namespace quen
