#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quen::fuzz {

/// The bytes of one execution: what the target chooses by, in front, then what it reads.
class FuzzInput {
public:
    explicit FuzzInput(std::string_view bytes) noexcept : bytes_(bytes) {}

    /// The next byte; 0 behind the end.
    unsigned byte() noexcept {
        if (bytes_.empty()) {
            return 0;
        }
        const auto byte = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return byte;
    }

    /// What stands before the next line feed, which is consumed too; everything where there is
    /// none.
    std::string_view line() noexcept {
        const std::string_view line = bytes_.substr(0, bytes_.find('\n'));
        bytes_.remove_prefix(line.size() + (line.size() < bytes_.size() ? 1 : 0));
        return line;
    }

    std::string_view rest() const noexcept { return bytes_; }

private:
    std::string_view bytes_;
};

/// One execution. Each target defines it.
void run(FuzzInput input);

} // namespace quen::fuzz
