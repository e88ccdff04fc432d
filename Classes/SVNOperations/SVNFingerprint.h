#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quen {

/// A number for a sequence of bytes, the same however the sequence is cut into pieces. Sequences
/// that differ have different ones, but for a chance of one in 2^64 (not against somebody who
/// looks for such a pair).
class SVNFingerprint {
public:
    void add(std::string_view bytes) noexcept;

    friend bool operator==(const SVNFingerprint&, const SVNFingerprint&) = default;

private:
    void addWord(const char* word) noexcept;

    std::uint64_t hash_ = 0;
    std::uint64_t size_ = 0;
    /// The bytes behind the last whole word; zeros behind them.
    std::array<char, 8> rest_{};
};

} // namespace quen
