#include "Foundation/XMLReport.h"

#include "Foundation/XMLTree.h"

#include <algorithm>
#include <array>
#include <exception>
#include <expat.h>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace quen {

const String XMLParserErrorDomain = String::constant("XMLParserErrorDomain");

namespace {

/// The engine copies what it is given. Slices that stay in the cache make that copy cheap, keep it
/// from ever holding a large piece twice, and fit its lengths, which are ints.
constexpr std::size_t sliceSize = 64 * 1024;

/// Engines before 2.6 begin again with a token that has not ended, each time that more of it
/// arrives: a name of 100 MB in pieces would take hours. From this size on they are given more of
/// it only when it is as much again.
constexpr std::size_t longToken = 1024;

/// The engine guesses the encoding by so many bytes; from fewer it makes another guess.
constexpr std::size_t headSize = 2;

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

/// The character references and the five entities that need no declaration.
bool startsWithKnownReference(std::string_view text) noexcept {
    constexpr std::array<std::string_view, 6> known = {"&#",    "&lt;",   "&gt;",
                                                       "&amp;", "&apos;", "&quot;"};
    return std::any_of(known.begin(), known.end(),
                       [&](std::string_view each) { return text.starts_with(each); });
}

bool refersToDeclaredEntity(std::string_view markup) noexcept {
    for (std::size_t i = markup.find('&'); i != std::string_view::npos;
         i = markup.find('&', i + 1)) {
        if (!startsWithKnownReference(markup.substr(i))) {
            return true;
        }
    }
    return false;
}

} // namespace

/// The parser, and how far along the path to a record the report is.
class XMLReportReader::Engine {
public:
    Engine(std::initializer_list<std::string_view> path, RecordHandler handler);

    bool read(std::string_view piece);
    Error readAll(std::string_view report);
    Error finish();

private:
    struct Free {
        void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
    };

    void setElementHandlers() noexcept;
    void setEntityHandlers() noexcept;
    /// Runs the work of a callback. No exception may pass through the engine's frames, and the
    /// engine reports a little more after it was told to stop.
    template <typename Work> static void guarded(void* engine, Work work) noexcept;

    void start(const char* name, const char** attributes);
    void end();
    bool isStepOfPath(std::string_view name) const noexcept;
    void listenToText(bool listens) noexcept;
    void refuseUnseenEntity();
    void fail(XML_Error code);
    void stop() noexcept;
    std::size_t leastToGive() const noexcept;
    void parse(std::string_view slice, bool isLast);
    Error errorHere(XML_Error code) const;

    const std::vector<std::string> path_;
    const RecordHandler handler_;
    const std::unique_ptr<XML_ParserStruct, Free> parser_;
    XMLTree tree_;
    /// The open elements outside a record, and how many of them, the root apart, follow the path.
    std::size_t depth_ = 0;
    std::size_t matched_ = 0;
    std::size_t containersBegun_ = 0;
    /// What the engine was given, what of it belongs to a token that has not ended, and what waits.
    std::size_t given_ = 0;
    std::size_t unended_ = 0;
    std::string waiting_;
    bool isEmpty_ = true;
    bool isDeclaredOutside_ = false;
    bool hasStopped_ = false;
    Error error_;
    std::exception_ptr exception_;
};

XMLReportReader::Engine::Engine(std::initializer_list<std::string_view> path, RecordHandler handler)
    : path_(path.begin(), path.end()), handler_(std::move(handler)),
      parser_(XML_ParserCreate(nullptr)) {
    if (parser_ == nullptr) {
        throw std::bad_alloc();
    }
    XML_SetUserData(parser_.get(), this);
    setElementHandlers();
    setEntityHandlers();
}

template <typename Work> void XMLReportReader::Engine::guarded(void* engine, Work work) noexcept {
    auto& self = *static_cast<Engine*>(engine);
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

void XMLReportReader::Engine::setElementHandlers() noexcept {
    XML_SetElementHandler(
        parser_.get(),
        [](void* engine, const char* name, const char** attributes) {
            guarded(engine, [&](Engine& self) { self.start(name, attributes); });
        },
        [](void* engine, const char*) { guarded(engine, [](Engine& self) { self.end(); }); });
}

/// Text outside records is not even looked at.
void XMLReportReader::Engine::listenToText(bool listens) noexcept {
    constexpr XML_CharacterDataHandler append = [](void* engine, const char* text, int length) {
        guarded(engine, [&](Engine& self) {
            self.tree_.appendText({text, static_cast<std::size_t>(length)});
        });
    };
    XML_SetCharacterDataHandler(parser_.get(), listens ? append : nullptr);
}

bool XMLReportReader::Engine::isStepOfPath(std::string_view name) const noexcept {
    return depth_ == matched_ + 1 && name == path_[matched_];
}

void XMLReportReader::Engine::start(const char* name, const char** attributes) {
    if (isDeclaredOutside_) {
        refuseUnseenEntity();
    }
    if (tree_.isOpen()) {
        tree_.open(name, attributes);
        return;
    }
    if (isStepOfPath(name)) {
        if (matched_ + 1 == path_.size()) {
            tree_.open(name, attributes);
            listenToText(true);
            return;
        }
        ++matched_;
        ++containersBegun_;
    }
    ++depth_;
}

void XMLReportReader::Engine::end() {
    if (tree_.isOpen()) {
        tree_.close();
        if (!tree_.isOpen()) {
            listenToText(false);
            handler_(tree_.record(), matched_ == 0 ? 0 : containersBegun_ - 1);
            tree_.clear();
        }
        return;
    }
    --depth_;
    if (matched_ > 0 && matched_ == depth_) {
        --matched_;
    }
}

// Entities

void XMLReportReader::Engine::setEntityHandlers() noexcept {
    // Without a handler the reference to an external entity would just be missing from the text.
    XML_SetExternalEntityRefHandler(parser_.get(),
                                    [](XML_Parser, const char*, const char*, const char*,
                                       const char*) -> int { return XML_STATUS_ERROR; });
    // Once a declaration could stand outside the report, the engine takes an undeclared entity for
    // one declared there and passes over it: with a word in content, without one in attributes.
    XML_SetSkippedEntityHandler(parser_.get(), [](void* engine, const char*, int) {
        guarded(engine, [](Engine& self) { self.fail(XML_ERROR_UNDEFINED_ENTITY); });
    });
    XML_SetNotStandaloneHandler(parser_.get(), [](void* engine) -> int {
        static_cast<Engine*>(engine)->isDeclaredOutside_ = true;
        return XML_STATUS_OK;
    });
    // What a default value refers to cannot even be looked up.
    XML_SetAttlistDeclHandler(parser_.get(), [](void* engine, const char*, const char*, const char*,
                                                const char* defaultValue, int) {
        guarded(engine, [&](Engine& self) {
            if (self.isDeclaredOutside_ && defaultValue != nullptr) {
                self.fail(XML_ERROR_NOT_STANDALONE);
            }
        });
    });
}

/// Goes by the markup as it is written, which refuses some declared entities too; nobody who means
/// well writes such a report.
void XMLReportReader::Engine::refuseUnseenEntity() {
    int offset = 0;
    int size = 0;
    const char* const input = XML_GetInputContext(parser_.get(), &offset, &size);
    const int length = XML_GetCurrentByteCount(parser_.get());
    if (input != nullptr &&
        refersToDeclaredEntity({input + offset, static_cast<std::size_t>(length)})) {
        fail(XML_ERROR_UNDEFINED_ENTITY);
    }
}

// The run

void XMLReportReader::Engine::stop() noexcept {
    hasStopped_ = true;
    XML_StopParser(parser_.get(), XML_FALSE);
}

void XMLReportReader::Engine::fail(XML_Error code) {
    error_ = errorHere(code);
    stop();
}

Error XMLReportReader::Engine::errorHere(XML_Error code) const {
    std::string text = "The report is empty.";
    if (!isEmpty_) {
        text = isAboutForm(code) ? "The report is not well-formed XML: "
                                 : "The report cannot be read as XML: ";
        text += XML_ErrorString(code);
        text += ", at line " + std::to_string(XML_GetCurrentLineNumber(parser_.get()));
        text += ", column " + std::to_string(XML_GetCurrentColumnNumber(parser_.get()) + 1);
        text += " (byte " + std::to_string(XML_GetCurrentByteIndex(parser_.get())) + ").";
    }
    return Error(XMLParserErrorDomain, code, {{NSLocalizedDescriptionKey, String(text)}});
}

void XMLReportReader::Engine::parse(std::string_view slice, bool isLast) {
    const XML_Status status =
        XML_Parse(parser_.get(), slice.data(), static_cast<int>(slice.size()), isLast);
    if (exception_ != nullptr) {
        std::rethrow_exception(std::exchange(exception_, nullptr));
    }
    if (status != XML_STATUS_OK && !error_) {
        hasStopped_ = true;
        error_ = errorHere(XML_GetErrorCode(parser_.get()));
    }
    given_ += slice.size();
    const XML_Index reached = XML_GetCurrentByteIndex(parser_.get());
    unended_ = reached < 0 ? 0 : given_ - std::min(given_, static_cast<std::size_t>(reached));
}

/// How much there must be before the engine is given more.
std::size_t XMLReportReader::Engine::leastToGive() const noexcept {
    return given_ == 0 ? headSize : unended_ > longToken ? unended_ : 0;
}

bool XMLReportReader::Engine::read(std::string_view piece) {
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

Error XMLReportReader::Engine::readAll(std::string_view report) {
    if (report.size() > std::numeric_limits<int>::max()) {
        read(report);
        return finish();
    }
    isEmpty_ = report.empty();
    parse(report, true);
    return error_;
}

Error XMLReportReader::Engine::finish() {
    if (!hasStopped_) {
        parse(waiting_, true);
    } else if (!error_) {
        error_ = errorHere(XML_ERROR_ABORTED);
    }
    return error_;
}

// XMLReportReader

XMLReportReader::XMLReportReader(std::initializer_list<std::string_view> path,
                                 RecordHandler handler)
    : engine_(std::make_unique<Engine>(path, std::move(handler))) {}

XMLReportReader::~XMLReportReader() = default;

bool XMLReportReader::read(std::string_view piece) {
    return engine_->read(piece);
}

Error XMLReportReader::readAll(std::string_view report) {
    return engine_->readAll(report);
}

Error XMLReportReader::finish() {
    return engine_->finish();
}

} // namespace quen
