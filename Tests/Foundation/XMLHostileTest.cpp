#include "Foundation/XMLReport.h"

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quen::test {
namespace {

constexpr std::size_t pieceSize = 65536; // what a pipe holds

// The sanitizers keep several bytes beside each.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr long memoryFactor = 10;
#else
constexpr long memoryFactor = 1;
#endif

/// Gives a report away piece by piece, so that it is nowhere in memory as a whole.
class Feed {
public:
    explicit Feed(XMLReportReader& reader) : reader_(reader) {}

    Feed& operator<<(std::string_view text) {
        piece_ += text;
        if (piece_.size() >= pieceSize) {
            flush();
        }
        return *this;
    }
    Feed& repeat(std::size_t count, std::string_view text) {
        for (std::size_t i = 0; i < count; ++i) {
            *this << text;
        }
        return *this;
    }
    void flush() {
        reader_.read(piece_);
        piece_.clear();
    }

private:
    XMLReportReader& reader_;
    std::string piece_;
};

using Report = void (*)(Feed& feed);

struct Hostile {
    std::string name;
    Report write;
    /// The engine's number of the error; 0 for a report that is odd and well-formed.
    std::int64_t error;
    /// Above what a process of this program takes by itself.
    long megabytes;
};

std::ostream& operator<<(std::ostream& out, const Hostile& hostile) {
    return out << hostile.name;
}

int errorNumberOf(const Hostile& hostile) {
    XMLReportReader reader({"e"}, [](const XMLElement&, std::size_t) {});
    Feed feed(reader);
    hostile.write(feed);
    feed.flush();
    const Error error = reader.finish();
    return static_cast<int>(error.isNil() ? 0 : error.code());
}

struct Cost {
    int errorNumber = -1;
    double seconds = 0;
    long megabytes = 0;
};

/// The work is done in a process of its own, and answers its exit status.
Cost costOf(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(work());
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6,
            usage.ru_maxrss / 1024};
}

class XMLHostileTest : public testing::TestWithParam<Hostile> {};

TEST_P(XMLHostileTest, CostsLittleTimeAndMemory) {
    const long idle = costOf([] { return 0; }).megabytes;

    const Cost cost = costOf([] { return errorNumberOf(GetParam()); });

    EXPECT_EQ(cost.errorNumber, GetParam().error);
    EXPECT_LT(cost.seconds, 30);
    EXPECT_LT(cost.megabytes - idle, memoryFactor * GetParam().megabytes);
    std::cout << GetParam().name << ": " << cost.seconds << " s, " << cost.megabytes - idle
              << " MB\n";
}

constexpr std::size_t hugeCount = 100 * 1024;
const std::string kilobyte(1024, 'x');

/// Entities of which each holds ten of the one before.
void writeBomb(Feed& feed, const char* use) {
    feed << "<!DOCTYPE r [<!ENTITY e0 'ha'>";
    for (int level = 1; level < 12; ++level) {
        feed << "<!ENTITY e" + std::to_string(level) + " '";
        feed.repeat(10, "&e" + std::to_string(level - 1) + ";") << "'>";
    }
    feed << "]><r>" << use << "</r>";
}

INSTANTIATE_TEST_SUITE_P(
    Entities, XMLHostileTest,
    testing::Values(Hostile{"ABombInText", [](Feed& feed) { writeBomb(feed, "<e>&e11;</e>"); }, 43,
                            32},
                    Hostile{"ABombInAnAttribute",
                            [](Feed& feed) { writeBomb(feed, "<e a='&e11;'/>"); }, 43, 32},
                    Hostile{"OneLargeEntityOverAndOver",
                            [](Feed& feed) {
                                feed << "<!DOCTYPE r [<!ENTITY a '";
                                feed.repeat(1024, kilobyte) << "'>]><r><e>";
                                feed.repeat(100'000, "&a;") << "</e></r>";
                            },
                            43, 256},
                    Hostile{"ABombOfDeclarations",
                            [](Feed& feed) {
                                feed << "<!DOCTYPE r [<!ENTITY % a '";
                                feed.repeat(1024, kilobyte) << "'>";
                                feed.repeat(10'000, "%a;") << "]><r/>";
                            },
                            0, 32}),
    testing::PrintToStringParamName());

INSTANTIATE_TEST_SUITE_P(Depth, XMLHostileTest,
                         testing::Values(Hostile{"AMillionLevelsAroundARecord",
                                                 [](Feed& feed) {
                                                     feed.repeat(1'000'000, "<x>") << "<e/>";
                                                     feed.repeat(1'000'000, "</x>");
                                                 },
                                                 0, 512},
                                         Hostile{"AMillionLevelsInARecord",
                                                 [](Feed& feed) {
                                                     (feed << "<r><e>").repeat(1'000'000, "<x>");
                                                     feed.repeat(1'000'000, "</x>") << "</e></r>";
                                                 },
                                                 0, 512},
                                         Hostile{"AMillionLevelsNeverClosed",
                                                 [](Feed& feed) { feed.repeat(1'000'000, "<e>"); },
                                                 3, 512}),
                         testing::PrintToStringParamName());

INSTANTIATE_TEST_SUITE_P(
    Size, XMLHostileTest,
    testing::Values(
        Hostile{"AnAttributeOf100MB",
                [](Feed& feed) { (feed << "<r><e a='").repeat(hugeCount, kilobyte) << "'/></r>"; },
                0, 1024},
        Hostile{"AnAttributeOf100MBNeverClosed",
                [](Feed& feed) { (feed << "<r><e a='").repeat(hugeCount, kilobyte); }, 5, 1024},
        Hostile{"AnAttributeOf100MBBesideTheRecords",
                [](Feed& feed) { (feed << "<r a='").repeat(hugeCount, kilobyte) << "'/>"; }, 0,
                1024},
        Hostile{"ATextOf100MB",
                [](Feed& feed) { (feed << "<r><e>").repeat(hugeCount, kilobyte) << "</e></r>"; }, 0,
                512},
        Hostile{"ATextOf100MBBesideTheRecords",
                [](Feed& feed) { (feed << "<r>").repeat(hugeCount, kilobyte) << "</r>"; }, 0, 32},
        Hostile{"ANameOf100MB",
                [](Feed& feed) { (feed << "<r><e").repeat(hugeCount, kilobyte) << "/></r>"; }, 0,
                1024},
        Hostile{"ACommentOf100MB",
                [](Feed& feed) { (feed << "<r><!--").repeat(hugeCount, kilobyte) << "--></r>"; }, 0,
                1024},
        Hostile{"AMillionAttributes",
                [](Feed& feed) {
                    feed << "<r><e";
                    for (int i = 0; i < 1'000'000; ++i) {
                        feed << " a" + std::to_string(i) + "=''";
                    }
                    feed << "/></r>";
                },
                0, 512}),
    testing::PrintToStringParamName());

} // namespace
} // namespace quen::test
