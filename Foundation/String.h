#pragma once

#include "Foundation/Export.h"

#include <atomic>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace quen {

class RecordMemory;

/// An immutable, shared, nullable UTF-8 text, one pointer wide.
///
/// - Copying shares the text; it is freed with its last holder.
/// - A default-made String is nil. nil is not the empty text: it equals only nil, and reads as the
///   empty view. A formatted text shows it as `(null)`.
/// - Equality is by content. `isIdenticalTo` asks whether two Strings are the very same object, as
///   copies of one String are; two texts made apart never are.
/// - Bytes are kept as given. Nothing here checks that they are valid UTF-8.
/// - A text holds at most 4 GiB - 1 bytes; making a longer one throws std::length_error.
///
/// Threads: immutable, so it may be read and copied from any thread.
class QUEN_EXPORT String {
public:
    constexpr String() noexcept = default;
    constexpr String(std::nullptr_t) noexcept {}
    String(std::string_view text);
    String(const std::string& text) : String(std::string_view(text)) {}
    /// A null pointer makes nil.
    String(const char* text)
        : String(text == nullptr ? String() : String(std::string_view(text))) {}

    String(const String& other) noexcept : block_(other.block_) { retain(); }
    String(String&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    String& operator=(String other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~String() {
        if (block_ != nullptr) {
            release();
        }
    }

    /// A text for the life of the program, whose copies touch no reference count: for names that
    /// every record carries.
    static String constant(std::string_view text);
    /// A text of one of many records, made in their memory.
    static String in(RecordMemory& memory, std::string_view text);

    bool isNil() const noexcept { return block_ == nullptr; }
    /// True for nil and for the empty text.
    bool isEmpty() const noexcept { return length() == 0; }
    /// In bytes; 0 for nil.
    std::size_t length() const noexcept { return block_ == nullptr ? 0 : block_->length; }
    /// Lives as long as any holder of this text.
    std::string_view view() const noexcept {
        return block_ == nullptr ? std::string_view() : std::string_view(text(), block_->length);
    }
    /// Ends in a zero byte; "" for nil. Lives as long as any holder of this text.
    const char* c_str() const noexcept { return block_ == nullptr ? "" : text(); }
    std::string str() const { return std::string(view()); }

    // As standard texts have them.
    explicit operator std::string_view() const noexcept { return view(); }
    explicit operator std::string() const { return str(); }
    std::size_t size() const noexcept { return length(); }
    bool empty() const noexcept { return isEmpty(); }

    bool isIdenticalTo(const String& other) const noexcept { return block_ == other.block_; }

    bool hasPrefix(std::string_view prefix) const noexcept { return view().starts_with(prefix); }
    bool hasSuffix(std::string_view suffix) const noexcept { return view().ends_with(suffix); }
    bool contains(std::string_view part) const noexcept {
        return view().find(part) != std::string_view::npos;
    }

    friend bool operator==(const String& a, const String& b) noexcept {
        return a.block_ == b.block_ ||
               (a.block_ != nullptr && b.block_ != nullptr && a.view() == b.view());
    }
    /// False for nil, whatever the text.
    friend bool operator==(const String& a, std::string_view b) noexcept {
        return a.block_ != nullptr && a.view() == b;
    }
    /// A null pointer stands for nil.
    friend bool operator==(const String& a, const char* b) noexcept {
        return b == nullptr ? a.isNil() : a == std::string_view(b);
    }
    friend bool operator==(const String& a, const std::string& b) noexcept {
        return a == std::string_view(b);
    }
    /// By bytes, nil first.
    friend std::strong_ordering operator<=>(const String& a, const String& b) noexcept;

    /// nil prints as `(null)`.
    friend std::ostream& operator<<(std::ostream& out, const String& string);

private:
    /// The head of an allocation whose text and closing zero byte follow it.
    struct Block {
        Block(std::uint32_t owners, std::uint32_t size) noexcept
            : references(owners), length(size) {}
        std::atomic<std::uint32_t> references;
        std::uint32_t length;
    };
    static constexpr std::uint32_t immortal = UINT32_MAX;
    /// A bit beside the number of references.
    static constexpr std::uint32_t inRecordMemory = 0x80000000;

    static Block* makeBlock(std::string_view text, std::uint32_t references);
    static Block* fill(void* memory, std::string_view text, std::uint32_t references) noexcept;
    const char* text() const noexcept { return reinterpret_cast<const char*>(block_ + 1); }
    void retain() noexcept {
        if (block_ != nullptr && block_->references.load(std::memory_order_relaxed) != immortal) {
            block_->references.fetch_add(1, std::memory_order_relaxed);
        }
    }
    void release() noexcept;

    Block* block_ = nullptr;
};

} // namespace quen

template <> struct std::hash<quen::String> {
    std::size_t operator()(const quen::String& string) const noexcept {
        return std::hash<std::string_view>()(string.view());
    }
};
