#include "Foundation/Data.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {
namespace {

TEST(DataTest, StartsEmpty) {
    const Data data;
    EXPECT_TRUE(data.isEmpty());
    EXPECT_EQ(data.size(), 0U);
    EXPECT_EQ(data.bytes(), "");
}

TEST(DataTest, GrowsAtItsEnd) {
    std::string expected("a\0b", 3);
    Data data{expected};
    data.append("");
    for (int i = 0; i < 10'000; ++i) {
        const std::string piece = std::to_string(i);
        data.append(piece);
        expected += piece;
    }
    EXPECT_EQ(data.bytes(), expected);
    EXPECT_FALSE(data.isEmpty());
}

TEST(DataTest, GivesRoomToBeFilled) {
    Data data{"head "};
    char* const room = data.room(100'000);
    EXPECT_GE(data.roomSize(), 100'000U);
    EXPECT_EQ(data.bytes(), "head ");
    std::fill_n(room, 100'000, 'x');
    data.addFilled(3);
    EXPECT_EQ(data.bytes(), "head xxx");
    data.append("y");
    EXPECT_EQ(data.bytes(), "head xxxy");
}

TEST(DataTest, RemembersThatItMayBeCollected) {
    const auto data = std::make_shared<const Data>("bytes");
    EXPECT_FALSE(data->shouldCollect());
    data->marl_shouldCollect();
    EXPECT_TRUE(data->shouldCollect());
    EXPECT_EQ(data->bytes(), "bytes");
}

} // namespace
} // namespace quen::test
