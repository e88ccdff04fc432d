#include "Classes/SVNOperations/SVNFingerprint.h"

#include <algorithm>
#include <cstring>

namespace quen {

void SVNFingerprint::addWord(const char* word) noexcept {
    std::uint64_t value = 0;
    std::memcpy(&value, word, sizeof value);
    // Each step can be undone, so that two words that differ stay apart.
    hash_ = (hash_ ^ value) * 0x9E3779B97F4A7C15U;
    hash_ ^= hash_ >> 29U;
}

void SVNFingerprint::add(std::string_view bytes) noexcept {
    const std::size_t held = size_ % rest_.size();
    size_ += bytes.size();
    if (held > 0) {
        const std::size_t taken = std::min(bytes.size(), rest_.size() - held);
        std::copy_n(bytes.data(), taken, rest_.data() + held);
        bytes.remove_prefix(taken);
        if (held + taken < rest_.size()) {
            return;
        }
        addWord(rest_.data());
        rest_.fill(0);
    }
    for (; bytes.size() >= rest_.size(); bytes.remove_prefix(rest_.size())) {
        addWord(bytes.data());
    }
    std::copy(bytes.begin(), bytes.end(), rest_.begin());
}

} // namespace quen
