#include "Foundation/XMLReport.h"

#include "Foundation/XMLEngines.h"
#include "Foundation/XMLExpatReader.h"
#include "Foundation/XMLPlainReader.h"

#include <algorithm>
#include <utility>

namespace quen {

const String XMLParserErrorDomain = String::constant("XMLParserErrorDomain");

std::atomic<bool> XMLEngines::expatAlone = false;
std::atomic<std::size_t> XMLEngines::expatCount = 0;

namespace {

/// How much a step that has not ended gets at least, where there is more.
constexpr std::size_t leastMore = 256;

/// A step begins again each time that more of it arrives; a longer one than this waits until it has
/// arrived as much again.
constexpr std::size_t longStep = 1024;

/// No step is waited for beyond this; the engine does not need it in one place.
constexpr std::size_t longestStep = 16 * 1024 * 1024;

} // namespace

/// Reads as a plain report while it is one. From the first step that is not, and from any fault,
/// the rest is the engine's, with the state and the place that its own reading would have come to;
/// so every error is one of the engine's.
class __attribute__((visibility("hidden"))) XMLReportReader::Engine {
public:
    Engine(XMLRecordPath path, XMLHandlers handlers)
        : handlers_(std::move(handlers)), plain_(std::move(path), handlers_) {
        if (XMLEngines::expatAlone) {
            handOver();
        }
    }

    bool read(std::string_view piece);
    Error readAll(std::string_view report);
    Error finish();

private:
    void readPlain(std::string_view piece);
    void readHeld(std::string_view& piece);
    bool readSteps(std::string_view bytes);
    void passSteps(std::string_view bytes) noexcept;
    void handOver();
    void handOver(std::string_view first, std::string_view second);

    const XMLHandlers handlers_;
    XMLPlainReader plain_;
    /// Where the plain reading has come to, and what has arrived behind it.
    XMLPlace place_;
    std::string held_;
    std::size_t wanted_ = 0;
    std::unique_ptr<XMLExpatReader> expat_;
};

void XMLReportReader::Engine::handOver() {
    ++XMLEngines::expatCount;
    expat_ = std::make_unique<XMLExpatReader>(plain_.path(), handlers_);
    if (!plain_.isAtBeginning()) {
        expat_->continueAt(place_, plain_.open());
    }
}

void XMLReportReader::Engine::handOver(std::string_view first, std::string_view second) {
    handOver();
    expat_->read(first);
    expat_->read(second);
}

/// What the handler throws leaves the engine where it would have stopped itself.
bool XMLReportReader::Engine::readSteps(std::string_view bytes) {
    try {
        return plain_.read(bytes);
    } catch (...) {
        passSteps(bytes);
        handOver();
        expat_->abandon();
        throw;
    }
}

void XMLReportReader::Engine::passSteps(std::string_view bytes) noexcept {
    place_.passPlain(bytes.substr(0, plain_.passed()));
}

void XMLReportReader::Engine::readPlain(std::string_view piece) {
    while (!piece.empty() && expat_ == nullptr) {
        if (!held_.empty()) {
            readHeld(piece);
            continue;
        }
        const bool isKnown = readSteps(piece);
        passSteps(piece);
        piece.remove_prefix(plain_.passed());
        if (isKnown && piece.size() <= longestStep) {
            held_ = piece;
            wanted_ = 0;
            return;
        }
        handOver(piece, {});
    }
}

/// Ends the step that was held with as little of the piece as it needs.
void XMLReportReader::Engine::readHeld(std::string_view& piece) {
    const std::size_t before = held_.size();
    const std::size_t more = std::min(piece.size(), std::max(leastMore, before));
    held_ += piece.substr(0, more);
    if (held_.size() < wanted_) {
        piece.remove_prefix(more);
        return;
    }
    const bool isKnown = readSteps(held_);
    passSteps(held_);
    if (plain_.passed() >= before && isKnown) {
        piece.remove_prefix(plain_.passed() - before);
        held_.clear();
        return;
    }
    held_.erase(0, plain_.passed());
    piece.remove_prefix(more);
    if (!isKnown || held_.size() > longestStep) {
        handOver(std::exchange(held_, {}), piece);
    }
    wanted_ = held_.size() > longStep ? 2 * held_.size() : 0;
}

bool XMLReportReader::Engine::read(std::string_view piece) {
    if (expat_ != nullptr) {
        return expat_->read(piece);
    }
    readPlain(piece);
    return expat_ == nullptr || expat_->read({});
}

Error XMLReportReader::Engine::readAll(std::string_view report) {
    if (expat_ == nullptr) {
        const bool isKnown = readSteps(report);
        if (isKnown && plain_.passed() == report.size() && plain_.isComplete()) {
            return {};
        }
        passSteps(report);
        report.remove_prefix(plain_.passed());
        handOver();
    }
    return expat_->readAll(report);
}

Error XMLReportReader::Engine::finish() {
    if (expat_ == nullptr) {
        if (held_.empty() && plain_.isComplete()) {
            return {};
        }
        handOver(std::exchange(held_, {}), {});
    }
    return expat_->finish();
}

XMLReportReader::XMLReportReader(std::initializer_list<std::string_view> path,
                                 RecordHandler handler, ContainerHandler containerHandler)
    : engine_(std::make_unique<Engine>(
          XMLRecordPath(path), XMLHandlers{std::move(handler), std::move(containerHandler)})) {}

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
