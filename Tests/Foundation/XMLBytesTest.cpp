#include "Foundation/XMLBytes.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {
namespace {

/// Every byte at every place of a text that is otherwise plain, long enough for two blocks and some
/// bytes behind them; with another end before and behind it.
template <typename Check> void forEveryByte(Check check) {
    for (int value = 0; value < 256; ++value) {
        for (std::size_t place = 0; place < 40; ++place) {
            std::string text(40, 'x');
            text[place] = static_cast<char>(value);
            check(text);
            text.back() = '&';
            check(text);
        }
    }
}

template <std::uint8_t kind> void expectSameSkip(const std::string& text) {
    const char* const end = text.data() + text.size();
    for (const std::size_t start : {std::size_t(0), std::size_t(1), text.size() - 17}) {
        const char* const at = text.data() + start;
        ASSERT_EQ(xmlbytes::skip<kind>(at, end) - at, xmlbytes::skipEach(kind, at, end) - at)
            << text;
    }
}

TEST(XMLBytesTest, WideAndPlainCodeStopAtTheSameByte) {
    forEveryByte([](const std::string& text) {
        expectSameSkip<xmlbytes::text>(text);
        expectSameSkip<xmlbytes::value>(text);
    });
}

TEST(XMLBytesTest, CountsLineFeedsOfEveryNumberOfBlocks) {
    for (std::size_t size = 0; size < 9000; size += size < 80 ? 1 : 211) {
        std::string text(size, '\n');
        EXPECT_EQ(xmlbytes::lineFeedsIn(text), size);
        for (std::size_t i = 0; i < size; i += 3) {
            text[i] = static_cast<char>(i);
        }
        EXPECT_EQ(xmlbytes::lineFeedsIn(text),
                  static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
    }
}

} // namespace
} // namespace quen::test
