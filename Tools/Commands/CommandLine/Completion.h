#pragma once

#include "Tools/Commands/CommandLine/CommandText.h"

#include <string>
#include <vector>

namespace quen::tools {

/// A word that may be typed, and what it means; the meaning may be empty.
struct Candidate {
    std::string word;
    std::string help;
};

/// What may be typed at the end of a command line.
struct Completion {
    enum class Kind {
        /// One of `candidates`.
        words,
        /// Any file: the shell knows best.
        files,
        changedFiles,
        unversionedFiles,
        branches,
        revisions,
    };
    Kind kind = Kind::files;
    std::vector<Candidate> candidates;
    /// What is there of the word so far.
    std::string beginning;
};

/// `words` is what has been typed after the program's name; the last one is being typed, and empty
/// where nothing of it is there yet. Never empty.
Completion completionOf(const CommandText& program, const std::vector<std::string>& words);

/// What a shell reads to complete the commands: `bash`, `zsh` or `fish`; empty for any other.
std::string completionScript(const std::string& shell);

} // namespace quen::tools
