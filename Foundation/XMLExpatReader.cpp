#include "Foundation/XMLExpatReader.h"

#include "Foundation/XMLEngineFunctions.h"
#include "Foundation/XMLLiteral.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <strings.h>

namespace quen {

namespace {

/// The engine copies what it is given. Slices that stay in the cache make that copy cheap, keep it
/// from ever holding a large piece twice, and fit its lengths, which are ints.
constexpr std::size_t sliceSize = 64 * 1024;

/// Engines before 2.6 begin again with a token that has not ended, each time that more of it
/// arrives: a name of 100 MB in pieces would take hours. From this size on they are given more of
/// it only when it is as much again.
constexpr std::size_t longToken = 1024;

/// The engine guesses the encoding by so many bytes; from fewer it makes another guess.
constexpr std::size_t leastHead = 2;

/// The report may be in order and still not be read.
bool isAboutForm(XML_Error code) noexcept {
    constexpr std::array others = {XML_ERROR_NO_MEMORY,
                                   XML_ERROR_ABORTED,
                                   XML_ERROR_UNKNOWN_ENCODING,
                                   XML_ERROR_NOT_STANDALONE,
                                   XML_ERROR_EXTERNAL_ENTITY_HANDLING,
                                   XML_ERROR_AMPLIFICATION_LIMIT_BREACH};
    return std::find(others.begin(), others.end(), code) == others.end();
}

Error engineMissing() {
    std::string text = "Reports in XML cannot be read: ";
    text += XMLEngineFunctions::problem();
    return Error(XMLParserErrorDomain, XML_ERROR_ABORTED,
                 {{NSLocalizedDescriptionKey, String(text)}});
}

} // namespace

XMLExpatReader::XMLExpatReader(XMLRecordPath path, const XMLHandlers& handlers)
    : handlers_(handlers), path_(std::move(path)) {
    if (XMLEngineFunctions::get() == nullptr) {
        error_ = engineMissing();
        hasStopped_ = true;
        return;
    }
    parser_.reset(xmlEngine().parserCreate(nullptr));
    if (parser_ == nullptr) {
        throw std::bad_alloc();
    }
    xmlEngine().setUserData(parser_.get(), this);
    setElementHandlers();
    setEntityHandlers();
}

/// The engine comes to the same state by way of the open elements alone. It counts bytes and lines
/// from there, and `here` puts that right.
void XMLExpatReader::continueAt(const XMLPlace& place, const std::vector<std::string>& open) {
    if (hasStopped_) {
        return;
    }
    std::string head = open.empty() ? "<r/>" : "";
    for (const std::string& name : open) {
        head.append("<").append(name).append(">");
    }
    xmlEngine().setElementHandler(parser_.get(), nullptr, nullptr);
    read(head);
    setElementHandlers();
    origin_ = place;
    headSize_ = head.size();
    if (open.empty()) {
        watchEpilog(place);
    }
}

template <typename Work> void XMLExpatReader::guarded(void* reader, Work work) noexcept {
    auto& self = *static_cast<XMLExpatReader*>(reader);
    if (self.hasStopped_) {
        return;
    }
    try {
        work(self);
    } catch (...) {
        self.exception_ = std::current_exception();
        self.stop();
    }
}

// Records

void XMLExpatReader::setElementHandlers() noexcept {
    xmlEngine().setElementHandler(
        parser_.get(),
        [](void* reader, const char* name, const char** attributes) {
            guarded(reader, [&](XMLExpatReader& self) { self.start(name, attributes); });
        },
        [](void* reader, const char*) {
            guarded(reader, [](XMLExpatReader& self) { self.end(); });
        });
}

/// Text outside records is not even looked at.
void XMLExpatReader::listenToText(bool listens) noexcept {
    constexpr XML_CharacterDataHandler append = [](void* reader, const char* text, int length) {
        guarded(reader, [&](XMLExpatReader& self) {
            self.tree_.appendText({text, static_cast<std::size_t>(length)});
        });
    };
    xmlEngine().setCharacterDataHandler(parser_.get(), listens ? append : nullptr);
}

/// The bracket of the root's start tag, where the engine is.
void XMLExpatReader::learnBracket() {
    int offset = 0;
    int size = 0;
    const char* const input = xmlEngine().getInputContext(parser_.get(), &offset, &size);
    if (input != nullptr && size - offset > 1) {
        const std::string_view bytes(input + offset, 2);
        bracket_ = bytes.find('\0') == std::string_view::npos ? "<" : bytes;
    }
}

void XMLExpatReader::start(const char* name, const char** attributes) {
    if (path_.isOutside()) {
        learnBracket();
    }
    if (isDeclaredOutside_) {
        refuseUnseenEntities(name, attributes);
    }
    if (tree_.isOpen()) {
        tree_.open(name, attributes);
        return;
    }
    switch (path_.enter(name)) {
    case XMLRecordPath::Found::nothing: break;
    case XMLRecordPath::Found::container: announceContainer(name, attributes); break;
    case XMLRecordPath::Found::record:
        tree_.open(name, attributes);
        listenToText(true);
        break;
    }
}

void XMLExpatReader::announceContainer(const char* name, const char** attributes) {
    if (handlers_.container == nullptr) {
        return;
    }
    tree_.open(name, attributes);
    tree_.close();
    handlers_.container(tree_.record(), path_.container());
    tree_.clear();
}

void XMLExpatReader::end() {
    if (!tree_.isOpen()) {
        path_.leave();
        if (path_.isOutside()) {
            enterEpilog();
        }
        return;
    }
    tree_.close();
    if (!tree_.isOpen()) {
        listenToText(false);
        handlers_.record(tree_.record(), path_.container());
        tree_.clear();
    }
}

// Entities

void XMLExpatReader::setEntityHandlers() noexcept {
    // Without a handler the reference to an external entity would just be missing from the text.
    xmlEngine().setExternalEntityRefHandler(parser_.get(),
                                            [](XML_Parser, const char*, const char*, const char*,
                                               const char*) -> int { return XML_STATUS_ERROR; });
    // Once a declaration could stand outside the report, the engine takes an undeclared entity for
    // one declared there and passes over it: with a word in content, without one in attributes.
    xmlEngine().setSkippedEntityHandler(parser_.get(), [](void* reader, const char*, int) {
        guarded(reader, [](XMLExpatReader& self) {
            self.fail(self.errorHere(XML_ERROR_UNDEFINED_ENTITY));
        });
    });
    xmlEngine().setNotStandaloneHandler(parser_.get(), [](void* reader) -> int {
        static_cast<XMLExpatReader*>(reader)->isDeclaredOutside_ = true;
        return XML_STATUS_OK;
    });
    xmlEngine().setXmlDeclHandler(
        parser_.get(), [](void* reader, const char*, const char* encoding, int) {
            static_cast<XMLExpatReader*>(reader)->isLatin_ =
                encoding != nullptr && ::strcasecmp(encoding, "ISO-8859-1") == 0;
        });
    xmlEngine().setEntityDeclHandler(
        parser_.get(), [](void* reader, const char* name, int isParameter, const char* text,
                          int length, const char*, const char*, const char*, const char*) {
            guarded(reader, [&](XMLExpatReader& self) {
                if (isParameter == 0 && text != nullptr) {
                    self.entities_.declare(name, {text, static_cast<std::size_t>(length)});
                }
            });
        });
    xmlEngine().setAttlistDeclHandler(parser_.get(),
                                      [](void* reader, const char* element, const char* attribute,
                                         const char*, const char* value, int) {
                                          guarded(reader, [&](XMLExpatReader& self) {
                                              if (self.isDeclaredOutside_ && value != nullptr) {
                                                  self.declareDefault(element, attribute);
                                              }
                                          });
                                      });
}

std::string XMLExpatReader::currentMarkup() {
    constexpr XML_DefaultHandler append = [](void* reader, const char* text, int length) {
        guarded(reader, [&](XMLExpatReader& self) {
            self.markup_.append(text, static_cast<std::size_t>(length));
        });
    };
    markup_.clear();
    xmlEngine().setDefaultHandlerExpand(parser_.get(), append);
    xmlEngine().defaultCurrent(parser_.get());
    xmlEngine().setDefaultHandlerExpand(parser_.get(), nullptr);
    return std::exchange(markup_, {});
}

/// The engine hands out a default with its references resolved; how it is written stands where the
/// engine is.
void XMLExpatReader::declareDefault(const char* element, const char* attribute) {
    int offset = 0;
    int size = 0;
    const char* const input = xmlEngine().getInputContext(parser_.get(), &offset, &size);
    const bool isSeen = input != nullptr &&
                        entities_.haveAllIn(xmlLiteral(
                            {input + offset, static_cast<std::size_t>(size - offset)}, isLatin_));
    if (!isSeen) {
        unseenDefaults_.emplace(element, attribute);
    }
}

bool XMLExpatReader::hasUnseenDefault(const char* element, const char** attributes) const {
    if (unseenDefaults_.empty()) {
        return false;
    }
    attributes += xmlEngine().getSpecifiedAttributeCount(parser_.get());
    for (; *attributes != nullptr; attributes += 2) {
        if (unseenDefaults_.contains({element, *attributes})) {
            return true;
        }
    }
    return false;
}

void XMLExpatReader::refuseUnseenEntities(const char* element, const char** attributes) {
    const XMLPlace place = here();
    if (hasUnseenDefault(element, attributes) || !entities_.haveAllIn(currentMarkup())) {
        fail(errorAt(XML_ERROR_UNDEFINED_ENTITY, place));
    }
}

// Behind the root

/// Which fault the engine finds in junk, and where in it, depends on how much of it has arrived, so
/// the place where it begins is kept.
void XMLExpatReader::enterEpilog() {
    XMLPlace place = here();
    place.passText(currentMarkup());
    place.byte = endOfToken();
    watchEpilog(place);
}

void XMLExpatReader::watchEpilog(const XMLPlace& place) {
    epilogPlace_ = place;
    isInEpilog_ = true;
    xmlEngine().setDefaultHandlerExpand(parser_.get(),
                                        [](void* reader, const char* text, int length) {
                                            static_cast<XMLExpatReader*>(reader)->passInEpilog(
                                                {text, static_cast<std::size_t>(length)});
                                        });
}

std::size_t XMLExpatReader::endOfToken() const noexcept {
    return here().byte + static_cast<std::size_t>(xmlEngine().getCurrentByteCount(parser_.get()));
}

/// The engine counts two lines where a piece ends between a carriage return and its line feed.
void XMLExpatReader::passInEpilog(std::string_view text) noexcept {
    if (epilogPlace_.isBehindReturn() && text.starts_with('\n')) {
        ++linesTooMany_;
    }
    epilogPlace_.passText(text);
    epilogPlace_.byte = endOfToken();
}

/// Markup that goes wrong within is told as such, and waits until all of it has arrived anyway.
bool XMLExpatReader::isJunkBehindRoot(XML_Error code) const noexcept {
    constexpr std::array faults = {XML_ERROR_INVALID_TOKEN, XML_ERROR_UNCLOSED_TOKEN,
                                   XML_ERROR_PARTIAL_CHAR, XML_ERROR_JUNK_AFTER_DOC_ELEMENT};
    if (!isInEpilog_ || std::find(faults.begin(), faults.end(), code) == faults.end()) {
        return false;
    }
    int offset = 0;
    int size = 0;
    const char* const input = xmlEngine().getInputContext(parser_.get(), &offset, &size);
    const std::size_t passed = here().byte - epilogPlace_.byte;
    if (input == nullptr || passed > static_cast<std::size_t>(offset)) {
        return code == XML_ERROR_JUNK_AFTER_DOC_ELEMENT;
    }
    const std::string_view rest(input + offset - passed,
                                static_cast<std::size_t>(size - offset) + passed);
    return !rest.starts_with(bracket_);
}

// The run

void XMLExpatReader::stop() noexcept {
    hasStopped_ = true;
    xmlEngine().stopParser(parser_.get(), XML_FALSE);
}

void XMLExpatReader::fail(const Error& error) {
    error_ = error;
    stop();
}

XMLPlace XMLExpatReader::here() const noexcept {
    const XML_Index reached = xmlEngine().getCurrentByteIndex(parser_.get());
    if (reached < static_cast<XML_Index>(headSize_)) {
        return origin_;
    }
    XMLPlace place;
    const std::size_t line = xmlEngine().getCurrentLineNumber(parser_.get()) - 1;
    const std::size_t column = xmlEngine().getCurrentColumnNumber(parser_.get());
    place.byte = origin_.byte + static_cast<std::size_t>(reached) - headSize_;
    place.line = origin_.line + line - linesTooMany_;
    place.column = line == 0 ? origin_.column + column - headSize_ : column;
    return place;
}

Error XMLExpatReader::errorAt(XML_Error code, const XMLPlace& place) const {
    std::string text = "The report is empty.";
    if (!isEmpty_) {
        text = isAboutForm(code) ? "The report is not well-formed XML: "
                                 : "The report cannot be read as XML: ";
        text += xmlEngine().errorString(code);
        text += ", at line " + std::to_string(place.line);
        text += ", column " + std::to_string(place.column + 1);
        text += " (byte " + std::to_string(place.byte) + ").";
    }
    return Error(XMLParserErrorDomain, code, {{NSLocalizedDescriptionKey, String(text)}});
}

void XMLExpatReader::parse(std::string_view slice, bool isLast) {
    const XML_Status status =
        xmlEngine().parse(parser_.get(), slice.data(), static_cast<int>(slice.size()), isLast);
    if (exception_ != nullptr) {
        std::rethrow_exception(std::exchange(exception_, nullptr));
    }
    if (status != XML_STATUS_OK && !error_) {
        hasStopped_ = true;
        const XML_Error code = xmlEngine().getErrorCode(parser_.get());
        error_ = isJunkBehindRoot(code) ? errorAt(XML_ERROR_JUNK_AFTER_DOC_ELEMENT, epilogPlace_)
                                        : errorHere(code);
    }
    given_ += slice.size();
    const XML_Index reached = xmlEngine().getCurrentByteIndex(parser_.get());
    unended_ = reached < 0 ? 0 : given_ - std::min(given_, static_cast<std::size_t>(reached));
}

/// How much there must be before the engine is given more.
std::size_t XMLExpatReader::leastToGive() const noexcept {
    return given_ == 0 ? leastHead : unended_ > longToken ? unended_ : 0;
}

bool XMLExpatReader::read(std::string_view piece) {
    isEmpty_ = isEmpty_ && piece.empty();
    while (!piece.empty() && !hasStopped_) {
        const std::string_view slice = piece.substr(0, sliceSize);
        piece.remove_prefix(slice.size());
        if (waiting_.empty() && slice.size() >= leastToGive()) {
            parse(slice, false);
            continue;
        }
        waiting_ += slice;
        if (waiting_.size() >= leastToGive()) {
            parse(std::exchange(waiting_, {}), false);
        }
    }
    return !hasStopped_;
}

Error XMLExpatReader::readAll(std::string_view report) {
    if (hasStopped_) {
        return finish();
    }
    if (report.size() > std::numeric_limits<int>::max()) {
        read(report);
        return finish();
    }
    isEmpty_ = isEmpty_ && report.empty();
    parse(report, true);
    return error_;
}

Error XMLExpatReader::finish() {
    if (!hasStopped_) {
        parse(waiting_, true);
    } else if (!error_) {
        error_ = errorHere(XML_ERROR_ABORTED);
    }
    return error_;
}

} // namespace quen
