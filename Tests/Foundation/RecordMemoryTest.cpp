#include "Foundation/RecordMemory.h"
#include "Foundation/Value.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace quen::test {
namespace {

std::string textOf(std::size_t length) {
    return std::string(length, static_cast<char>('a' + length % 26));
}

TEST(RecordMemoryTest, BlocksLieApartAndAreAligned) {
    RecordMemory memory;
    std::vector<void*> blocks;
    const char* last = nullptr;
    std::size_t adjacent = 0;
    for (std::size_t i = 0; i < 10000; ++i) {
        const std::size_t size = 1 + i % RecordMemory::largestBlock;
        auto* const block = static_cast<char*>(memory.take(size));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(void*), 0U);
        adjacent += block == last ? 1U : 0U;
        std::fill_n(block, size, static_cast<char>(i));
        last = block + (size + alignof(void*) - 1) / alignof(void*) * alignof(void*);
        blocks.push_back(block);
    }
    EXPECT_GT(adjacent, blocks.size() * 9 / 10);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        EXPECT_EQ(*static_cast<char*>(blocks[i]), static_cast<char>(i));
        RecordMemory::giveBack(blocks[i]);
    }
}

TEST(RecordMemoryTest, TextsOutliveIt) {
    auto memory = std::make_unique<RecordMemory>();
    std::vector<String> texts;
    constexpr std::size_t longest = 2 * RecordMemory::largestBlock;
    for (std::size_t length = 0; length < longest; ++length) {
        texts.push_back(String::in(*memory, textOf(length)));
    }
    memory.reset();
    const std::vector<String> copies = texts;
    texts.clear();
    for (std::size_t length = 0; length < longest; ++length) {
        ASSERT_EQ(copies[length], textOf(length));
        ASSERT_EQ(copies[length].c_str(), textOf(length));
    }
}

TEST(RecordMemoryTest, AnotherThreadGivesBackWhatThisOneTakes) {
    RecordMemory memory;
    for (int turn = 0; turn < 20; ++turn) {
        Array records;
        for (int i = 0; i < 500; ++i) {
            Dictionary record = Dictionary::withCapacity(2, memory);
            record.set("number", String::in(memory, std::to_string(i)));
            record.set("turn", turn);
            records.append(std::move(record));
        }
        const std::jthread other([records = std::move(records)]() mutable {
            EXPECT_EQ((*records[499].dictionary())["number"], Value("499"));
            records = Array();
        });
        const String kept = String::in(memory, "kept");
        EXPECT_EQ(kept, "kept");
    }
}

} // namespace
} // namespace quen::test
