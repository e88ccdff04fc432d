#include "Tools/Server/Wire/Message.h"

#include <gmock/gmock.h>
#include <ostream>

namespace quen::test {

using namespace tools;
using namespace tools::server;

namespace {

using ::testing::HasSubstr;
using enum MessageKind;

struct Text {
    /// Behind `{"jsonrpc":"2.0",` where it begins with a comma; as it is otherwise.
    std::string text;
    MessageKind kind;
    int code = 0;
    std::string fault = {};
    Json id = nullptr;

    std::string whole() const {
        return text.starts_with(',') ? R"({"jsonrpc":"2.0")" + text + "}" : text;
    }
    friend void PrintTo(const Text& self, std::ostream* out) { *out << self.text.substr(0, 80); }
};

class Texts : public ::testing::TestWithParam<Text> {};

TEST_P(Texts, AreTakenForWhatTheyAre) {
    const Message message = readMessage(GetParam().whole());
    EXPECT_EQ(message.kind, GetParam().kind);
    EXPECT_EQ(message.faultCode, GetParam().code);
    EXPECT_THAT(message.fault, HasSubstr(GetParam().fault));
    EXPECT_EQ(message.id, GetParam().id);
}

std::string nested(std::size_t depth) {
    return R"(,"id":1,"method":"m","params":)" + std::string(depth, '[') + std::string(depth, ']');
}

INSTANTIATE_TEST_SUITE_P(
    Good, Texts,
    ::testing::Values(Text{R"(,"id":1,"method":"m")", request, 0, "", 1},
                      Text{R"(,"id":"a","method":"m","params":{})", request, 0, "", "a"},
                      Text{R"(,"id":1,"method":"m","params":null)", request, 0, "", 1},
                      Text{R"({"method":"m","id":1,"jsonrpc":"2.0"})", request, 0, "", 1},
                      Text{R"(,"method":"m")", notification},
                      Text{R"(,"id":1,"result":null)", response, 0, "", 1},
                      Text{R"(,"id":1,"error":{"code":1,"message":"x"})", response, 0, "", 1},
                      Text{R"(,"id":null,"error":{"code":1,"message":"x"})", response}));

INSTANTIATE_TEST_SUITE_P(
    NotJson, Texts,
    ::testing::Values(Text{"", notJson, ParseError, "not JSON"},
                      Text{"{", notJson, ParseError, "not JSON"},
                      Text{"{} {}", notJson, ParseError, "not JSON"},
                      Text{"{\"a\":\"\xFF\"}", notJson, ParseError, "not JSON"},
                      Text{R"({"a":"\ud800"})", notJson, ParseError, "not JSON"},
                      Text{nested(200), notJson, ParseError, "128 objects and arrays"},
                      Text{nested(1'000'000), notJson, ParseError, "128 objects and arrays"}));

INSTANTIATE_TEST_SUITE_P(
    NoMessage, Texts,
    ::testing::Values(
        Text{"[]", invalid, InvalidRequest, "batches"},
        Text{"1", invalid, InvalidRequest, "expected an object"},
        Text{R"({"id":1,"method":"m"})", invalid, InvalidRequest, "jsonrpc", 1},
        Text{R"({"jsonrpc":"1.0","id":1,"method":"m"})", invalid, InvalidRequest, "jsonrpc", 1},
        Text{R"(,"id":1.5,"method":"m")", invalid, InvalidRequest, "id: expected"},
        Text{R"(,"id":null,"method":"m")", invalid, InvalidRequest, "id: expected"},
        Text{R"(,"id":1,"method":7)", invalid, InvalidRequest, "method: expected a string", 1},
        Text{R"(,"id":1)", invalid, InvalidRequest, "method: required", 1},
        Text{R"(,"id":1,"method":"m","params":[1])", invalid, InvalidParams, "params: expected", 1},
        Text{R"(,"id":1,"method":"m","params":"x")", invalid, InvalidParams, "params: expected", 1},
        Text{R"(,"id":1,"method":"m","params":{"a":1,"b":{"c":1,"c":2}})", invalid, InvalidParams,
             "params.b.c: given twice", 1},
        Text{R"(,"id":1,"method":"m","method":"n")", invalid, InvalidRequest, "method: given twice",
             1},
        Text{R"(,"id":1,"id":2,"method":"m")", invalid, InvalidRequest, "id: given twice"}));

TEST(Message, BytesThatAreNotTextGoOutReplaced) {
    EXPECT_EQ(resultText(1, "a\xFF"),
              "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":\"a\xEF\xBF\xBD\"}");
}

TEST(Message, AFrameCountsBytes) {
    EXPECT_EQ(framed("\"\xC3\xA4\""), "Content-Length: 4\r\n\r\n\"\xC3\xA4\"");
}

} // namespace

} // namespace quen::test
