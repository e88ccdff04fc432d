#pragma once

#include "Foundation/XMLHandlers.h"
#include "Foundation/XMLPlainScanner.h"
#include "Foundation/XMLRecordPath.h"
#include "Foundation/XMLTree.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// Reads plain reports without an engine, as far as they are plain (see XMLPlainScanner); what
/// stands in front of the root is the client's own declaration or nothing, and behind it is white
/// space alone. Private to the XML reader.
///
/// It goes forward by whole steps: the beginning of a report up to its root's start tag, a tag
/// outside records, text outside records, a record. Between two steps its state is what has been
/// opened and not closed, so that any other reader can go on from there.
class XMLPlainReader {
public:
    /// The handlers must outlive the reader.
    XMLPlainReader(XMLRecordPath path, const XMLHandlers& handlers);

    /// Reads on from where it stopped, which is where `bytes` begin, and hands over the records. An
    /// exception of the handler leaves it. False where what follows is not known; otherwise nothing
    /// was left, or what was needs more.
    bool read(std::string_view bytes);
    /// How many of the bytes the last `read` went past, whole steps only, the one that ended in an
    /// exception included.
    std::size_t passed() const noexcept { return passed_; }

    /// The report may end here.
    bool isComplete() const noexcept { return phase_ == Phase::epilog; }
    /// Nothing has been passed yet.
    bool isAtBeginning() const noexcept { return phase_ == Phase::prolog; }
    const XMLRecordPath& path() const noexcept { return path_; }
    /// The open elements, outermost first.
    const std::vector<std::string>& open() const noexcept { return open_; }

private:
    enum class Phase { prolog, content, epilog };

    bool step(XMLPlainScanner& scanner);
    bool takeProlog(XMLPlainScanner& scanner);
    bool takeElement(XMLPlainScanner& scanner);
    void enterElement(const XMLPlainScanner& scanner, bool isContainer);
    bool takeRecord(XMLPlainScanner& scanner);
    bool takeEnd(XMLPlainScanner& scanner);
    bool takeEpilog(XMLPlainScanner& scanner);
    void pass(const XMLPlainScanner& scanner) noexcept;

    const XMLHandlers& handlers_;
    XMLRecordPath path_;
    Phase phase_ = Phase::prolog;
    std::vector<std::string> open_;
    XMLTree tree_;
    const char* begin_ = nullptr;
    std::size_t passed_ = 0;
};

} // namespace quen
