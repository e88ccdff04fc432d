#include "Tools/Server/Wire/FrameReader.h"
#include "Tools/Server/Wire/Message.h"

#include <gmock/gmock.h>
#include <ostream>

namespace quen::test {

using namespace tools;
using namespace tools::server;

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// What came out, a fault as `!` and its text.
std::vector<std::string> readInPieces(std::string_view stream, std::size_t size,
                                      FrameReader reader = FrameReader()) {
    std::vector<std::string> read;
    for (std::size_t at = 0; at < stream.size(); at += size) {
        reader.feed(stream.substr(at, size));
        while (const auto frame = reader.next()) {
            read.push_back(frame->fault.empty() ? frame->body : "!" + frame->fault);
        }
    }
    return read;
}

struct Stream {
    const char* name;
    std::string bytes;
    std::vector<std::string> read;

    friend void PrintTo(const Stream& self, std::ostream* out) { *out << self.name; }
};

const std::string noHeaderLine = "!expected a header line such as \"Content-Length: 52\"";

std::vector<Stream> streams() {
    return {
        {"one", "Content-Length: 2\r\n\r\n{}", {"{}"}},
        {"two glued", "Content-Length: 2\r\n\r\n{}Content-Length: 3\r\n\r\n[1]", {"{}", "[1]"}},
        {"empty body", "Content-Length: 0\r\n\r\nContent-Length: 1\r\n\r\n1", {"", "1"}},
        {"lower case, no blank", "content-length:2\r\n\r\n{}", {"{}"}},
        {"upper case, blanks", "CONTENT-LENGTH: \t 2 \r\n\r\n{}", {"{}"}},
        {"type before", "Content-Type: a/b; charset=utf-8\r\nContent-Length: 2\r\n\r\n{}", {"{}"}},
        {"type behind", "Content-Length: 2\r\nContent-Type: x; charset=utf8\r\n\r\n{}", {"{}"}},
        {"unknown header", "X-Y: z\r\nContent-Length: 2\r\n\r\n{}", {"{}"}},
        {"bare line feeds", "Content-Length: 2\n\n{}", {"{}"}},
        {"same length twice", "Content-Length: 2\r\nContent-Length: 2\r\n\r\n{}", {"{}"}},
        {"header in a body",
         framed("Content-Length: 9\r\n\r\n{}") + framed("1"),
         {"Content-Length: 9\r\n\r\n{}", "1"}},
        {"another charset",
         "Content-Type: x; charset=latin1\r\nContent-Length: 2\r\n\r\n{}",
         {"!Content-Type: the only charset is utf-8", "{}"}},
        {"no length", "X: y\r\n\r\n" + framed("1"), {"!the header has no Content-Length", "1"}},
        {"word for a length",
         "Content-Length: two\r\n\r\n{}" + framed("1"),
         {"!Content-Length: expected a number of bytes", "1"}},
        {"negative length",
         "Content-Length: -2\r\n\r\n{}" + framed("1"),
         {"!Content-Length: expected a number of bytes", "1"}},
        {"two lengths",
         "Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}" + framed("1"),
         {"!Content-Length: given twice", "1"}},
        {"no header at all", "{\"jsonrpc\":\n" + framed("1"), {noHeaderLine, "1"}},
        {"a body longer than told",
         "Content-Length: 1\r\n\r\n{}\n" + framed("1"),
         {"{", noHeaderLine, "1"}},
        {"header behind junk on its line",
         "junk" + framed("1"),
         {"!the header has no Content-Length", "1"}},
        {"header behind a brace on its line", "}" + framed("1"), {noHeaderLine, "1"}},
        {"length greater than all numbers",
         "Content-Length: 99999999999999999999999\r\n\r\n{}" + framed("1"),
         {"!a message may have 67108864 bytes at most", "1"}},
    };
}

class Streams : public ::testing::TestWithParam<Stream> {};

TEST_P(Streams, AreReadTheSameHoweverTheyAreCut) {
    for (std::size_t size = 1; size <= GetParam().bytes.size(); ++size) {
        EXPECT_EQ(readInPieces(GetParam().bytes, size), GetParam().read) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(All, Streams, ::testing::ValuesIn(streams()));

TEST(FrameReader, AMessageOverTheLimitIsPassedOver) {
    EXPECT_THAT(readInPieces(framed(std::string(11, 'x')) + framed("1"), 7, FrameReader(10)),
                ElementsAre("!a message may have 10 bytes at most", "1"));
}

TEST(FrameReader, AHeaderThatDoesNotEndIsAFault) {
    EXPECT_THAT(readInPieces("X: " + std::string(9000, 'x') + "\r\n" + framed("1"), 1000),
                ElementsAre("!the header does not end", "1"));
}

TEST(FrameReader, ABodyThatIsGivenBackIsSearchedForTheNextHeader) {
    FrameReader reader;
    // The length is told 20 too large, so that the body takes the next header along.
    reader.feed("Content-Length: 22\r\n\r\n{}" + framed("12345"));
    const auto swallowed = reader.next();
    ASSERT_TRUE(swallowed);
    ASSERT_THAT(swallowed->body, HasSubstr("Content-Length"));
    reader.giveBack(swallowed->body);
    const auto found = reader.next();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->body, "12345");
    EXPECT_TRUE(reader.isAtEdge());
}

TEST(FrameReader, KnowsWhetherTheStreamMayEndHere) {
    FrameReader reader;
    EXPECT_TRUE(reader.isAtEdge());
    reader.feed("Content-Length: 2\r\n\r\n{");
    EXPECT_FALSE(reader.next());
    EXPECT_FALSE(reader.isAtEdge());
    reader.feed("}");
    EXPECT_TRUE(reader.next());
    EXPECT_TRUE(reader.isAtEdge());
    reader.feed("junk\n");
    EXPECT_TRUE(reader.next());
    EXPECT_FALSE(reader.next());
    EXPECT_FALSE(reader.isAtEdge());
}

} // namespace

} // namespace quen::test
