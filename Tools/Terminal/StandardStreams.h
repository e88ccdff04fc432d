#pragma once

#include <memory>
#include <system_error>

namespace quen::tools {

/// As long as it lives, the program's standard streams are checked and guarded:
///
/// - std::cout remembers the first error of writing, which `finish` answers;
/// - what std::cerr is given passes `safeForTerminal`, and so does what std::cout is given where it
///   leads to a terminal: this is the one gate, whoever writes;
/// - reading std::cin, and writing to a reader that does not read, end with an interrupt.
///
/// std::cerr is written line by line. Threads: one.
class StandardStreams {
public:
    StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;
    ~StandardStreams();

    /// Writes what is still held back and closes standard output. What went wrong with it, first
    /// of all; nothing where all of it was written.
    std::error_code finish();

private:
    struct Buffers;
    std::unique_ptr<Buffers> buffers_;
};

} // namespace quen::tools
