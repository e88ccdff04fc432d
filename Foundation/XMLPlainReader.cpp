#include "Foundation/XMLPlainReader.h"

#include <utility>

namespace quen {

namespace {

/// As the client writes it.
constexpr std::string_view declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

} // namespace

XMLPlainReader::XMLPlainReader(XMLRecordPath path, const XMLHandlers& handlers)
    : handlers_(handlers), path_(std::move(path)) {}

bool XMLPlainReader::read(std::string_view bytes) {
    begin_ = bytes.data();
    passed_ = 0;
    XMLPlainScanner scanner(bytes);
    while (!scanner.isAtEnd()) {
        if (!step(scanner)) {
            tree_.clear();
            return scanner.isIncomplete();
        }
        pass(scanner);
    }
    return true;
}

void XMLPlainReader::pass(const XMLPlainScanner& scanner) noexcept {
    passed_ = static_cast<std::size_t>(scanner.at() - begin_);
}

bool XMLPlainReader::step(XMLPlainScanner& scanner) {
    if (phase_ == Phase::prolog) {
        return takeProlog(scanner);
    }
    if (phase_ == Phase::epilog) {
        return takeEpilog(scanner);
    }
    if (scanner.next() != '<') {
        const bool isPassed = scanner.passText();
        pass(scanner);
        return isPassed;
    }
    if (scanner.isAtEndTag()) {
        return takeEnd(scanner);
    }
    if (scanner.isAtComment()) {
        return scanner.takeComment();
    }
    return !scanner.isIncomplete() && takeElement(scanner);
}

/// The declaration, or none, and the root's start tag: one step, since what is not known there may
/// be the beginning of another encoding.
bool XMLPlainReader::takeProlog(XMLPlainScanner& scanner) {
    if (!scanner.take(declaration) && scanner.isIncomplete()) {
        return false;
    }
    scanner.skipSpace();
    if (!scanner.isAtTag() || !takeElement(scanner)) {
        return false;
    }
    phase_ = open_.empty() ? Phase::epilog : Phase::content;
    return true;
}

bool XMLPlainReader::takeElement(XMLPlainScanner& scanner) {
    if (!scanner.takeStartTag(tree_)) {
        return false;
    }
    const XMLRecordPath::Found found = path_.enter(tree_.name(0));
    if (found == XMLRecordPath::Found::record) {
        return takeRecord(scanner);
    }
    enterElement(scanner, found == XMLRecordPath::Found::container);
    return true;
}

void XMLPlainReader::enterElement(const XMLPlainScanner& scanner, bool isContainer) {
    const bool isEmpty = !tree_.isOpen();
    if (!isEmpty) {
        open_.emplace_back(tree_.name(0));
        tree_.close();
    }
    pass(scanner);
    if (isContainer && handlers_.container != nullptr) {
        handlers_.container(tree_.record(), path_.container());
    }
    if (isEmpty) {
        path_.leave();
    }
    tree_.clear();
}

bool XMLPlainReader::takeRecord(XMLPlainScanner& scanner) {
    if (tree_.isOpen() && !scanner.takeContent(tree_)) {
        return false;
    }
    pass(scanner);
    handlers_.record(tree_.record(), path_.container());
    tree_.clear();
    return true;
}

bool XMLPlainReader::takeEnd(XMLPlainScanner& scanner) {
    if (!scanner.takeEndTag(open_.back())) {
        return false;
    }
    open_.pop_back();
    path_.leave();
    if (open_.empty()) {
        phase_ = Phase::epilog;
    }
    return true;
}

bool XMLPlainReader::takeEpilog(XMLPlainScanner& scanner) {
    scanner.skipSpace();
    pass(scanner);
    return scanner.isAtEnd();
}

} // namespace quen
