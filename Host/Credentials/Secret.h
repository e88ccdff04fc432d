#pragma once

#include "Foundation/Export.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quen {

/// A password, a passphrase or another text that nobody else may see. Its bytes lie in pages of
/// their own that a core file leaves out, that are kept out of the swap where the system allows it,
/// and that are cleared before they are given back. It cannot be copied, printed or compared.
///
/// Making and growing one throws std::bad_alloc where there is no memory.
///
/// Threads: one at a time; any number may read one that nobody changes.
class QUEN_EXPORT Secret {
public:
    Secret() noexcept = default;
    explicit Secret(std::string_view text) { append(text); }
    Secret(Secret&& other) noexcept { swap(other); }
    Secret& operator=(Secret&& other) noexcept {
        Secret taken(std::move(other));
        swap(taken);
        return *this;
    }
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;
    ~Secret();

    /// Moves the text in: `text` is cleared, with the memory that it has.
    static Secret takenFrom(std::string& text);

    void append(std::string_view text);
    void append(char character) { append(std::string_view(&character, 1)); }
    /// Takes the last character away, if there is one.
    void removeLast() noexcept;

    /// Valid until the secret is changed or gone.
    std::string_view view() const noexcept { return {bytes_, size_}; }
    bool isEmpty() const noexcept { return size_ == 0; }

private:
    void swap(Secret& other) noexcept;
    void grow(std::size_t capacity);
    void release() noexcept;

    char* bytes_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

using SecretPtr = std::shared_ptr<const Secret>;

/// Clears a text, with all the memory that it has.
QUEN_EXPORT void clearText(std::string& text) noexcept;

/// Reads one line, without its end, and not a byte more. Nothing where the input ends before any
/// byte, fails, or goes on for more than 64 KiB without a line's end.
QUEN_EXPORT std::optional<Secret> readSecretLine(int descriptor);

/// Writes the whole text to a socket or pipe. False where that fails. Raises no signal on a socket.
QUEN_EXPORT bool writeAll(int descriptor, std::string_view text) noexcept;

/// Keeps what this process has in its memory out of core files and away from other processes of the
/// same user, and makes the programs that it starts from now on write no core file. For a program
/// of its own; a library leaves such things to the program that uses it.
QUEN_EXPORT void preventCoreFiles() noexcept;

} // namespace quen
