#include "Host/Keeping/UndoPlace.h"

#include "Host/Keeping/FileErrors.h"
#include "Host/Keeping/FileWriter.h"
#include "Host/Keeping/FreeName.h"
#include "Host/Places/Locations.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quen {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view newerWork = "what lies there has changed since";
constexpr std::string_view couldNotBeWritten = "could not be written";

PlacedItem inPlace() {
    PlacedItem placed;
    placed.isInPlace = true;
    return placed;
}

PlacedItem nowhere(std::string_view reason) {
    PlacedItem placed;
    placed.reason = String(reason);
    return placed;
}

bool holdTheSame(const std::string& a, const std::string& b) {
    std::error_code error;
    if (!fs::is_regular_file(fs::symlink_status(a, error)) ||
        fs::file_size(a, error) != fs::file_size(b, error)) {
        return false;
    }
    std::ifstream first(a, std::ios::binary);
    std::ifstream second(b, std::ios::binary);
    using Bytes = std::istreambuf_iterator<char>;
    return first.is_open() && second.is_open() &&
           std::equal(Bytes(first), Bytes(), Bytes(second), Bytes());
}

} // namespace

std::string UndoPlace::makeParent() const {
    const fs::path parent = fs::path(path_).parent_path();
    std::error_code error;
    // The deepest directory that is there decides: a link may lead elsewhere by now.
    fs::path there = parent;
    while (!fs::exists(fs::symlink_status(there, error)) && there != there.parent_path()) {
        there = there.parent_path();
    }
    const fs::path real = fs::canonical(there, error);
    if (error) {
        return error.message();
    }
    if (!isAtOrBelow(real.string(), workingCopy_)) {
        return "its directory leads out of the working copy";
    }
    fs::create_directories(parent, error);
    return error ? error.message() : std::string();
}

PlacedItem UndoPlace::put(const std::string& content) const {
    if (const std::string problem = path_ == workingCopy_ ? std::string() : makeParent();
        !problem.empty()) {
        return nowhere(problem);
    }
    switch (item_.item.kind) {
    case UndoItem::Kind::file: return putFile(content);
    case UndoItem::Kind::link: return putLink();
    case UndoItem::Kind::directory: return putDirectory();
    }
    return nowhere("");
}

PlacedItem UndoPlace::putFile(const std::string& content) const {
    const PlaceState now = PlaceState::at(path_);
    if (now.exists && holdTheSame(path_, content)) {
        return inPlace();
    }
    const bool isAsLeft = item_.left && *item_.left == now;
    if (now.exists && (!isAsLeft || fs::is_directory(fs::symlink_status(path_)))) {
        return putBeside(content);
    }
    FileWriter::Options options;
    options.existing = now.exists ? FileWriter::Existing::replaced : FileWriter::Existing::refused;
    options.link = FileWriter::Link::replaced;
    options.mode = item_.permissions;
    const Error error = copyFile(content, path_, options);
    if (error && error.code() == EEXIST) {
        return putBeside(content); // it has just appeared
    }
    return error ? nowhere(error.localizedDescription().view()) : inPlace();
}

PlacedItem UndoPlace::putBeside(const std::string& content) const {
    const Placement placement = atFreeName(path_, ".undone", [&](const String& name) {
        FileWriter::Options options;
        options.mode = item_.permissions;
        return copyFile(content, name, options);
    });
    if (placement.error) {
        return nowhere(placement.error.localizedDescription().view());
    }
    PlacedItem placed = nowhere(newerWork);
    placed.beside = placement.path;
    return placed;
}

PlacedItem UndoPlace::putLink() const {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path_, error);
    const bool isThere =
        fs::is_symlink(status) && fs::read_symlink(path_, error).string() == item_.destination;
    if (isThere) {
        return inPlace();
    }
    const bool isAsLeft = item_.left && *item_.left == PlaceState::at(path_);
    if (fs::exists(status) && isAsLeft && !fs::is_directory(status)) {
        ::unlink(path_.c_str());
    }
    if (::symlink(item_.destination.c_str(), path_.c_str()) == 0) {
        return inPlace();
    }
    if (errno != EEXIST) {
        return nowhere(fileError(errno, path_, couldNotBeWritten).localizedDescription().view());
    }
    const Placement placement = atFreeName(path_, ".undone", [&](const String& name) {
        return ::symlink(item_.destination.c_str(), name.c_str()) == 0
                   ? Error()
                   : fileError(errno, name.view(), couldNotBeWritten);
    });
    PlacedItem placed = nowhere(newerWork);
    placed.beside = placement.path;
    return placed;
}

PlacedItem UndoPlace::putDirectory() const {
    std::error_code error;
    if (fs::is_directory(fs::symlink_status(path_, error)) ||
        ::mkdir(path_.c_str(), item_.permissions | S_IRWXU) == 0) {
        return inPlace();
    }
    return nowhere(fileError(errno, path_, "could not be made").localizedDescription().view());
}

} // namespace quen
