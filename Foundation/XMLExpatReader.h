#pragma once

#include "Foundation/XMLEngineFunctions.h"
#include "Foundation/XMLEntities.h"
#include "Foundation/XMLHandlers.h"
#include "Foundation/XMLPlace.h"
#include "Foundation/XMLRecordPath.h"
#include "Foundation/XMLReport.h"
#include "Foundation/XMLTree.h"

#include <cstddef>
#include <exception>
#include <expat.h>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quen {

/// Reads reports with expat. Private to the XML reader; see XMLReportReader for what the functions
/// promise.
class XMLExpatReader {
public:
    /// The handlers must outlive the reader.
    XMLExpatReader(XMLRecordPath path, const XMLHandlers& handlers);
    XMLExpatReader(const XMLExpatReader&) = delete;
    XMLExpatReader& operator=(const XMLExpatReader&) = delete;
    ~XMLExpatReader() = default;

    /// Before anything is read: goes on at `place` of a report that was found to be in order up to
    /// there, with these elements open, outermost first; none of them where the root has ended. The
    /// report is one that gives the engine nothing to remember: UTF-8, without a document type.
    void continueAt(const XMLPlace& place, const std::vector<std::string>& open);
    /// Reads nothing more; `finish` answers an error.
    void abandon() noexcept { hasStopped_ = true; }

    bool read(std::string_view piece);
    Error readAll(std::string_view report);
    Error finish();

private:
    struct Free {
        void operator()(XML_Parser parser) const noexcept { xmlEngine().parserFree(parser); }
    };

    void setElementHandlers() noexcept;
    void setEntityHandlers() noexcept;
    /// Runs the work of a callback. No exception may pass through the engine's frames, and the
    /// engine reports a little more after it was told to stop.
    template <typename Work> static void guarded(void* reader, Work work) noexcept;

    void learnBracket();
    void start(const char* name, const char** attributes);
    void end();
    void announceContainer(const char* name, const char** attributes);
    void listenToText(bool listens) noexcept;

    /// The markup at hand, as UTF-8. Moves the engine's place where it has to convert it.
    std::string currentMarkup();
    void declareDefault(const char* element, const char* attribute);
    void refuseUnseenEntities(const char* element, const char** attributes);
    bool hasUnseenDefault(const char* element, const char** attributes) const;

    void enterEpilog();
    void watchEpilog(const XMLPlace& place);
    void passInEpilog(std::string_view text) noexcept;
    /// The byte behind the token at hand.
    std::size_t endOfToken() const noexcept;
    bool isJunkBehindRoot(XML_Error code) const noexcept;

    void fail(const Error& error);
    void stop() noexcept;
    std::size_t leastToGive() const noexcept;
    void parse(std::string_view slice, bool isLast);
    XMLPlace here() const noexcept;
    Error errorHere(XML_Error code) const { return errorAt(code, here()); }
    Error errorAt(XML_Error code, const XMLPlace& place) const;

    const XMLHandlers& handlers_;
    std::unique_ptr<XML_ParserStruct, Free> parser_;
    XMLRecordPath path_;
    XMLTree tree_;
    /// Where the report begins for the engine, and how much it was given in front, in one line.
    XMLPlace origin_;
    std::size_t headSize_ = 0;
    /// What the engine was given, what of it belongs to a token that has not ended, and what waits.
    std::size_t given_ = 0;
    std::size_t unended_ = 0;
    std::string waiting_;
    bool isEmpty_ = true;
    bool hasStopped_ = false;
    /// Declarations may stand outside the report. Then these count.
    bool isDeclaredOutside_ = false;
    bool isLatin_ = false;
    XMLEntities entities_;
    /// The attributes, each behind its element, whose default refers to what was not seen.
    std::set<std::pair<std::string, std::string>> unseenDefaults_;
    std::string markup_;
    /// How the report's encoding writes what markup begins with.
    std::string bracket_ = "<";
    /// The root has ended; what is in order behind it goes up to `epilogPlace_`.
    bool isInEpilog_ = false;
    XMLPlace epilogPlace_;
    std::size_t linesTooMany_ = 0;
    Error error_;
    std::exception_ptr exception_;
};

} // namespace quen
