#include "Foundation/String.h"

#include "Foundation/RecordMemory.h"

#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

namespace quen {

namespace {

/// Blocks are allocated in their own unit, so that the text behind the head needs no other type.
std::size_t unitsFor(std::size_t headSize, std::size_t length) {
    return (headSize + length + 1 + headSize - 1) / headSize;
}

} // namespace

String::Block* String::makeBlock(std::string_view text, std::uint32_t references) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("a String holds at most 4 GiB - 1 bytes");
    }
    std::allocator<Block> allocator;
    return fill(allocator.allocate(unitsFor(sizeof(Block), text.size())), text, references);
}

String::Block* String::fill(void* memory, std::string_view text,
                            std::uint32_t references) noexcept {
    Block* const block = std::construct_at(static_cast<Block*>(memory), references,
                                           static_cast<std::uint32_t>(text.size()));
    char* bytes = reinterpret_cast<char*>(block + 1);
    if (!text.empty()) {
        std::memcpy(bytes, text.data(), text.size());
    }
    bytes[text.size()] = '\0';
    return block;
}

String::String(std::string_view text) : block_(makeBlock(text, 1)) {}

String String::constant(std::string_view text) {
    String string;
    string.block_ = makeBlock(text, immortal);
    return string;
}

String String::in(RecordMemory& memory, std::string_view text) {
    const std::size_t size = sizeof(Block) + text.size() + 1;
    if (size > RecordMemory::largestBlock) {
        return text;
    }
    String string;
    string.block_ = fill(memory.take(size), text, inRecordMemory + 1);
    return string;
}

void String::release() noexcept {
    if (block_->references.load(std::memory_order_relaxed) == immortal) {
        return;
    }
    const auto before = block_->references.fetch_sub(1, std::memory_order_acq_rel);
    if ((before & ~inRecordMemory) != 1) {
        return;
    }
    const std::size_t units = unitsFor(sizeof(Block), block_->length);
    std::destroy_at(block_);
    if (before != 1) {
        RecordMemory::giveBack(block_);
    } else {
        std::allocator<Block>().deallocate(block_, units);
    }
}

QUEN_EXPORT std::strong_ordering operator<=>(const String& a, const String& b) noexcept {
    if (a.isNil() || b.isNil()) {
        return b.isNil() <=> a.isNil();
    }
    return a.view().compare(b.view()) <=> 0;
}

QUEN_EXPORT std::ostream& operator<<(std::ostream& out, const String& string) {
    return out << (string.isNil() ? std::string_view("(null)") : string.view());
}

} // namespace quen
