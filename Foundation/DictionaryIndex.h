#pragma once

#include "Foundation/String.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quen {

/// Open addressing over entry numbers, for tables too large to search one by one. Private to
/// Dictionary.
class DictionaryIndex {
public:
    explicit DictionaryIndex(std::size_t entries) : slots_(slotsFor(entries), vacant) {}

    bool holdsRoomFor(std::size_t entries) const noexcept { return slots_.size() >= 2 * entries; }

    void add(std::string_view key, std::uint32_t entry) noexcept {
        std::size_t slot = startOf(key);
        while (slots_[slot] != vacant) {
            slot = (slot + 1) & (slots_.size() - 1);
        }
        slots_[slot] = entry;
    }

    std::optional<std::uint32_t> find(const String& key, const String* keys) const noexcept {
        for (std::size_t slot = startOf(key.view()); slots_[slot] != vacant;
             slot = (slot + 1) & (slots_.size() - 1)) {
            if (keys[slots_[slot]] == key) {
                return slots_[slot];
            }
        }
        return std::nullopt;
    }

private:
    static constexpr std::uint32_t vacant = UINT32_MAX;

    static std::size_t slotsFor(std::size_t entries) noexcept {
        std::size_t slots = 64;
        while (slots < 4 * entries) {
            slots *= 2;
        }
        return slots;
    }
    std::size_t startOf(std::string_view key) const noexcept {
        return std::hash<std::string_view>()(key) & (slots_.size() - 1);
    }

    std::vector<std::uint32_t> slots_;
};

} // namespace quen
