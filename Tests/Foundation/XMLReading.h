#pragma once

#include "Foundation/XMLReport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quen::test {

/// What came of a report, in a form that tests can compare and print.
struct Reading {
    /// Each record as the test describes it, behind its container's number.
    std::vector<std::string> records;
    /// The error's description; empty where there is none.
    std::string error;

    friend bool operator==(const Reading& a, const Reading& b) = default;
    friend std::ostream& operator<<(std::ostream& out, const Reading& reading) {
        for (const std::string& record : reading.records) {
            out << record << '\n';
        }
        return out << reading.error;
    }
};

using Description = std::string (*)(const XMLElement& record);
using Path = std::initializer_list<std::string_view>;
using Pieces = std::vector<std::string_view>;

/// What `read` gives, which is handed the reader.
template <typename Read> Reading readingBy(Read read, Path path, Description describe) {
    Reading result;
    XMLReportReader reader(path, [&](const XMLElement& record, std::size_t container) {
        result.records.push_back(std::to_string(container) + " " + describe(record));
    });
    result.error = Error(read(reader)).description().str();
    return result;
}

/// A report of one piece is also read at once, which must make no difference.
inline Reading reading(Path path, Description describe, const Pieces& pieces) {
    const auto inTurn = [&](XMLReportReader& reader) {
        for (const std::string_view piece : pieces) {
            reader.read(piece);
        }
        return reader.finish();
    };
    Reading result = readingBy(inTurn, path, describe);
    if (pieces.size() == 1) {
        const auto atOnce = [&](XMLReportReader& reader) { return reader.readAll(pieces.front()); };
        EXPECT_EQ(readingBy(atOnce, path, describe), result);
    }
    return result;
}

/// The pieces of `size` bytes that make up the report; the last may be shorter.
inline Pieces inPieces(std::string_view report, std::size_t size) {
    Pieces pieces;
    while (!report.empty()) {
        pieces.push_back(report.substr(0, size));
        report.remove_prefix(std::min(size, report.size()));
    }
    return pieces;
}

/// With a byte order mark. Characters of up to two bytes in UTF-8 are enough for the tests.
inline std::string inUTF16(std::string_view text, bool bigEndian) {
    std::string bytes = bigEndian ? "\xfe\xff" : "\xff\xfe";
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned character = static_cast<unsigned char>(text[i]);
        if (character >= 0x80) {
            character = (character & 0x1FU) << 6U | (static_cast<unsigned char>(text[++i]) & 0x3FU);
        }
        const auto high = static_cast<char>(character >> 8U);
        const auto low = static_cast<char>(character & 0xFFU);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

} // namespace quen::test
