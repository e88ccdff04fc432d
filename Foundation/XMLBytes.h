#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// What the bytes of a plain report are, and how to get over many at once. Private to the XML
/// reader.
namespace quen::xmlbytes {

constexpr std::uint8_t nameStart = 1;
constexpr std::uint8_t name = 2;
constexpr std::uint8_t text = 4;
constexpr std::uint8_t value = 8;
constexpr std::uint8_t comment = 16;

constexpr std::uint8_t classOf(unsigned char c) noexcept {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    const bool isName = isLetter || (c >= '0' && c <= '9') || c == '-' || c == '.';
    const bool isVisible = c >= 0x20 && c < 0x80;
    const bool isPlain = isVisible && c != '<' && c != '&';
    return static_cast<std::uint8_t>(
        (isLetter ? nameStart : 0) | (isName ? name : 0) | (isPlain && c != ']' ? text : 0) |
        (isPlain && c != '"' ? value : 0) | (isVisible || c == '\n' || c == '\t' ? comment : 0));
}

inline constexpr auto classes = [] {
    std::array<std::uint8_t, 256> table{};
    for (unsigned c = 0; c < table.size(); ++c) {
        table[c] = classOf(static_cast<unsigned char>(c));
    }
    return table;
}();

inline bool is(std::uint8_t kind, char c) noexcept {
    return (classes[static_cast<unsigned char>(c)] & kind) != 0;
}

/// The first byte that is not of that kind, one after another.
inline const char* skipEach(std::uint8_t kind, const char* at, const char* end) noexcept {
    while (at != end && is(kind, *at)) {
        ++at;
    }
    return at;
}

/// Whether that many bytes, which are there, are those of `word`. Names are too short for a call.
inline bool isSame(const char* at, std::string_view word) noexcept {
    std::size_t i = 0;
    while (i != word.size() && at[i] == word[i]) {
        ++i;
    }
    return i == word.size();
}

#if defined(__SSE2__)

constexpr std::ptrdiff_t width = 16;

/// A bit for each of the bytes at `at` that belongs neither to text nor to values: the two bytes
/// that end it, an ampersand, what lies below a space, and, for they are negative, all that are not
/// ASCII.
inline unsigned endsAmong(const char* at, char first, char second) noexcept {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i low = _mm_cmplt_epi8(bytes, _mm_set1_epi8(0x20));
    const __m128i reference = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('&'));
    const __m128i ends = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(first)),
                                      _mm_cmpeq_epi8(bytes, _mm_set1_epi8(second)));
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_or_si128(ends, _mm_or_si128(low, reference))));
}

template <std::uint8_t kind> const char* skip(const char* at, const char* end) noexcept {
    for (; end - at >= width; at += width) {
        if (const unsigned ends = endsAmong(at, '<', kind == text ? ']' : '"')) {
            return at + std::countr_zero(ends);
        }
    }
    return skipEach(kind, at, end);
}

/// The sum of the bytes of a block.
inline std::size_t sumOf(__m128i block) noexcept {
    const __m128i halves = _mm_sad_epu8(block, _mm_setzero_si128());
    return static_cast<std::size_t>(_mm_cvtsi128_si32(halves)) +
           static_cast<std::size_t>(_mm_extract_epi16(halves, 4));
}

inline std::size_t lineFeedsIn(std::string_view bytes) noexcept {
    constexpr int mostBlocks = 255; // what a byte can count
    const __m128i feed = _mm_set1_epi8('\n');
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    std::size_t count = 0;
    while (end - at >= width) {
        __m128i counts = _mm_setzero_si128();
        for (int i = 0; i < mostBlocks && end - at >= width; ++i, at += width) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
            counts = _mm_sub_epi8(counts, _mm_cmpeq_epi8(block, feed));
        }
        count += sumOf(counts);
    }
    return count + static_cast<std::size_t>(std::count(at, end, '\n'));
}

#else

template <std::uint8_t kind> const char* skip(const char* at, const char* end) noexcept {
    return skipEach(kind, at, end);
}

inline std::size_t lineFeedsIn(std::string_view bytes) noexcept {
    return static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
}

#endif

} // namespace quen::xmlbytes
