#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"
#include "Host/Process/FileDescriptor.h"

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace quen {

/// Writes a file so that its name holds all of it or what it held before, never half of it: the
/// bytes go to a file beside it (`.quen-XXXXXXXX`), every write is checked, and when all of them
/// are on the disk that file is renamed. Whatever ends the writing early, a full disk or the
/// process' own end included, leaves the target alone; only the latter leaves the file beside.
///
/// - A file that is replaced keeps its permissions, and its owner and group where the system
///   allows; a new one gets what the process' mask leaves of 0666; `mode` overrides both.
/// - A target that is neither a file nor a link nor absent (a device, a pipe) has no content to
///   lose and is written to directly.
/// - Errors are in `FileErrorDomain`. After one nothing more is written.
///
/// Threads: one thread at a time.
class QUEN_EXPORT FileWriter {
public:
    enum class Existing {
        /// `EEXIST`, also where the file appears while this one is being written.
        refused,
        replaced,
    };
    /// What a target that is a symbolic link means.
    enum class Link {
        /// The link's place: the link itself is what exists.
        replaced,
        /// The file that it leads to, which need not exist.
        followed,
        /// `ELOOP`.
        refused,
    };
    struct Options {
        Existing existing = Existing::refused;
        Link link = Link::refused;
        /// The permissions to the letter, whatever the process' mask says.
        std::optional<mode_t> mode;
        /// Waits until the disk has it. What is cheap to make again may do without.
        bool isSynced = true;
    };

    FileWriter(const String& path, Options options);
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;
    /// Takes away what was written when `finish` was not called, or failed.
    ~FileWriter();

    /// Adds to the file. nil when all of it was taken.
    Error write(std::string_view bytes);
    /// Puts the file in its place; call once. nil when it is there.
    Error finish();

private:
    Error open();
    Error openBeside();
    Error openTarget();
    Error takeOver();
    Error place();
    Error fail(int number);

    const Options options_;
    std::string target_;
    std::string beside_;
    FileDescriptor file_;
    Error error_;
};

/// The whole of it in one call.
QUEN_EXPORT Error writeFile(const String& path, std::string_view bytes,
                            FileWriter::Options options);

/// Copies the bytes of one file, with its permissions where `options` name no other. A link that
/// is at `from` is not followed: it is an error, `ELOOP`.
QUEN_EXPORT Error copyFile(const String& from, const String& to, FileWriter::Options options);

} // namespace quen
