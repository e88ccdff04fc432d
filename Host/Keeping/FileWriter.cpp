#include "Host/Keeping/FileWriter.h"

#include "Foundation/PathComponents.h"
#include "Host/Keeping/FileErrors.h"
#include "Host/Keeping/FileNames.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quen {

namespace {

constexpr std::string_view couldNotBeWritten = "could not be written";
constexpr int attempts = 100;

/// The permissions that the kernel lets a file inherit from another.
mode_t permissionsOf(const struct stat& facts) noexcept {
    return facts.st_mode & 07777U;
}

} // namespace

FileWriter::FileWriter(const String& path, Options options)
    : options_(options), target_(path.str()) {
    error_ = open();
}

FileWriter::~FileWriter() {
    if (!beside_.empty()) {
        ::unlink(beside_.c_str());
    }
}

Error FileWriter::fail(int number) {
    error_ = fileError(number, target_, couldNotBeWritten);
    return error_;
}

// Opening

Error FileWriter::open() {
    struct stat facts = {};
    if (::lstat(target_.c_str(), &facts) != 0) {
        return errno == ENOENT ? openBeside() : fail(errno);
    }
    if (S_ISLNK(facts.st_mode)) {
        if (options_.link == Link::refused) {
            return fail(ELOOP);
        }
        if (options_.link == Link::replaced) {
            return options_.existing == Existing::refused ? fail(EEXIST) : openBeside();
        }
        target_ = destinationOfLink(target_);
        if (::lstat(target_.c_str(), &facts) != 0) {
            return errno == ENOENT ? openBeside() : fail(errno);
        }
    }
    if (S_ISDIR(facts.st_mode)) {
        return fail(EISDIR);
    }
    if (!S_ISREG(facts.st_mode)) {
        return openTarget();
    }
    return options_.existing == Existing::refused ? fail(EEXIST) : openBeside();
}

Error FileWriter::openTarget() {
    file_ = FileDescriptor(::open(target_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    return file_.number() < 0 ? fail(errno) : Error();
}

Error FileWriter::openBeside() {
    for (int i = 0; i < attempts; ++i) {
        const String path = appendingPathComponent(directoryOfFile(target_), randomFileName());
        file_ = FileDescriptor(::open(path.c_str(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                      options_.mode.value_or(0666) & 0777U));
        if (file_.number() >= 0) {
            beside_ = path.str();
            return takeOver();
        }
        if (errno != EEXIST) {
            return fail(errno);
        }
    }
    return fail(EEXIST);
}

/// What the file that is to be replaced is and the new one must be too.
Error FileWriter::takeOver() {
    struct stat facts = {};
    if (::lstat(target_.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        const bool isDone = !options_.mode || ::fchmod(file_.number(), *options_.mode) == 0;
        return isDone ? Error() : fail(errno);
    }
    // Another's file becomes one's own where the system allows no more.
    const bool isOwned = ::fchown(file_.number(), facts.st_uid, facts.st_gid) == 0;
    const mode_t allowed = isOwned ? 07777U : 0777U;
    const mode_t mode = options_.mode.value_or(permissionsOf(facts)) & allowed;
    return ::fchmod(file_.number(), mode) == 0 ? Error() : fail(errno);
}

// Writing

Error FileWriter::write(std::string_view bytes) {
    while (!error_ && !bytes.empty()) {
        const ssize_t count = ::write(file_.number(), bytes.data(), bytes.size());
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            fail(count == 0 ? ENOSPC : errno);
        }
    }
    return error_;
}

Error FileWriter::finish() {
    if (error_) {
        return error_;
    }
    const bool isBeside = !beside_.empty();
    if (isBeside && options_.isSynced && ::fsync(file_.number()) != 0) {
        return fail(errno);
    }
    // Some file systems tell only now that there was no room.
    if (::close(file_.release()) != 0) {
        return fail(errno);
    }
    return isBeside ? place() : Error();
}

Error FileWriter::place() {
    const int placed = options_.existing == Existing::refused
                           ? renameToNew(beside_.c_str(), target_.c_str())
                           : ::rename(beside_.c_str(), target_.c_str());
    if (placed != 0) {
        return fail(errno);
    }
    beside_.clear();
    if (options_.isSynced) {
        syncDirectory(directoryOfFile(target_));
    }
    return {};
}

// In one call

Error writeFile(const String& path, std::string_view bytes, FileWriter::Options options) {
    FileWriter writer(path, options);
    const Error error = writer.write(bytes);
    return error ? error : writer.finish();
}

Error copyFile(const String& from, const String& to, FileWriter::Options options) {
    constexpr std::string_view couldNotBeRead = "could not be read";
    // O_NONBLOCK: a pipe of that name must not hold us up.
    const FileDescriptor source(
        ::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    struct stat facts = {};
    if (source.number() < 0 || ::fstat(source.number(), &facts) != 0) {
        return fileError(errno, from.view(), couldNotBeRead);
    }
    if (!S_ISREG(facts.st_mode)) {
        return fileError(S_ISDIR(facts.st_mode) ? EISDIR : EINVAL, from.view(), couldNotBeRead);
    }
    if (!options.mode) {
        options.mode = facts.st_mode & 0777U;
    }
    FileWriter writer(to, options);
    std::array<char, 64 * 1024> buffer = {};
    for (;;) {
        const ssize_t count = ::read(source.number(), buffer.data(), buffer.size());
        if (count == 0) {
            return writer.finish();
        }
        if (count < 0 && errno != EINTR) {
            return fileError(errno, from.view(), couldNotBeRead);
        }
        const std::string_view piece(buffer.data(),
                                     count < 0 ? 0 : static_cast<std::size_t>(count));
        if (const Error error = writer.write(piece)) {
            return error;
        }
    }
}

} // namespace quen
