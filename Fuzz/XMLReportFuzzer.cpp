#include "Foundation/XMLEngines.h"
#include "Foundation/XMLReport.h"
#include "Foundation/XMLTree.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/MadeReport.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace quen::fuzz {

namespace {

/// What the input chooses beside the report.
struct Choices {
    bool hasContainers = false;
    /// The record at which the handler gives up; none where it is large.
    std::size_t lastRecord = 0;
    unsigned cut = 0;
    unsigned position = 0;
};

/// What came of a report.
struct Reading {
    std::string records;
    std::string error;
    bool wasThrown = false;

    friend bool operator==(const Reading&, const Reading&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Reading& reading) {
        return out << reading.records << '\n' << reading.error << " thrown " << reading.wasThrown;
    }
};

struct HandlersOwn {};

/// By pieces of one size, or cut in two. A byte at a time costs most and says least where the
/// report is long.
std::size_t pieceSize(std::string_view report, const Choices& choices) {
    const std::size_t cut = choices.position * report.size() / 256;
    const std::size_t size = std::max<std::size_t>(1 + choices.cut / 2, report.size() / 32);
    return choices.cut % 2 == 0 ? size : std::max<std::size_t>(cut, 1);
}

void readInPieces(XMLReportReader& reader, std::string_view report, const Choices& choices) {
    const std::size_t size = pieceSize(report, choices);
    for (; !report.empty(); report.remove_prefix(std::min(size, report.size()))) {
        reader.read(report.substr(0, size));
    }
}

template <typename Read> Reading readingBy(const Choices& choices, bool byExpatAlone, Read read) {
    Reading reading;
    std::size_t count = 0;
    const auto take = [&](const XMLElement& element, std::size_t container) {
        reading.records += std::to_string(container) + ' ';
        XMLTree::of(element).describe(reading.records);
        if (++count == choices.lastRecord) {
            throw HandlersOwn();
        }
    };
    XMLEngines::expatAlone = byExpatAlone;
    using Path = std::initializer_list<std::string_view>;
    const auto reader = choices.hasContainers
                            ? std::make_unique<XMLReportReader>(Path{"t|ee", "e"}, take, take)
                            : std::make_unique<XMLReportReader>(Path{"e|entry"}, take);
    try {
        read(*reader, reading);
    } catch (const HandlersOwn&) {
        reading.wasThrown = true;
        reading.error = reader->finish().description().str();
    }
    return reading;
}

Reading wholeBy(bool byExpatAlone, std::string_view report, const Choices& choices) {
    return readingBy(choices, byExpatAlone, [&](XMLReportReader& reader, Reading& reading) {
        reading.error = reader.readAll(report).description().str();
    });
}

Reading piecesBy(bool byExpatAlone, std::string_view report, const Choices& choices) {
    return readingBy(choices, byExpatAlone, [&](XMLReportReader& reader, Reading& reading) {
        readInPieces(reader, report, choices);
        reading.error = reader.finish().description().str();
    });
}

} // namespace

void run(FuzzInput input) {
    Choices choices;
    const unsigned options = input.byte();
    choices.hasContainers = (options & 1) != 0;
    choices.lastRecord = (options & 2) != 0 ? 1 + options / 64 : 0;
    choices.cut = input.byte();
    choices.position = input.byte();
    const std::string report = madeReport(input);

    const Reading expected = wholeBy(true, report, choices);
    requireEqual(wholeBy(false, report, choices), expected, "the readers differ, whole");
    requireEqual(piecesBy(false, report, choices), expected, "the readers differ, in pieces");
    if ((options & 4) != 0) {
        requireEqual(piecesBy(true, report, choices), expected, "the engine differs in pieces");
    }
}

} // namespace quen::fuzz
