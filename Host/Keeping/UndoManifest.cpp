#include "Host/Keeping/UndoManifest.h"

#include "Foundation/Lines.h"
#include "Foundation/Number.h"
#include "Foundation/PercentCoding.h"

#include <array>
#include <charconv>
#include <utility>

namespace quen {

namespace {

constexpr std::string_view heading = "quen-undo 1";
constexpr std::string_view ending = "end";
constexpr std::array<std::string_view, 3> kindWords = {"file", "link", "directory"};

/// Visible characters of ASCII, so that a blank ends a word.
constexpr std::string_view plainMarks = "!\"#$&'()*+,-./:;<=>?@[\\]^_`{|}~";
constexpr std::string_view emptyWord = "%";

std::string encoded(std::string_view text) {
    return text.empty() ? std::string(emptyWord) : percentEncoded(text, plainMarks);
}

std::string decoded(std::string_view word) {
    return word == emptyWord ? std::string() : percentDecoded(word);
}

std::string octal(unsigned int value) {
    std::array<char, 16> digits = {};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value, 8);
    return {digits.data(), written.ptr};
}

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    for (auto blank = line.find(' '); blank != std::string_view::npos; blank = line.find(' ')) {
        words.push_back(line.substr(0, blank));
        line.remove_prefix(blank + 1);
    }
    words.push_back(line);
    return words;
}

std::optional<ManifestItem> itemIn(const std::vector<std::string_view>& words,
                                   UndoItem::Kind kind) {
    const std::size_t count = kind == UndoItem::Kind::link ? 5 : 4;
    if (words.size() != count) {
        return std::nullopt;
    }
    const auto permissions = numberFrom<mode_t>(words[1], 8);
    const auto size = numberFrom<std::uint64_t>(words[2]);
    if (!permissions || !size) {
        return std::nullopt;
    }
    ManifestItem result;
    result.item = {String(decoded(words[3])), kind, *size};
    result.permissions = *permissions & 07777U;
    result.destination = count == 5 ? decoded(words[4]) : std::string();
    return result;
}

std::optional<PlaceState> stateIn(const std::vector<std::string_view>& words) {
    if (words.size() != 6) {
        return std::nullopt;
    }
    const auto exists = numberFrom<int>(words[1]);
    const auto inode = numberFrom<std::uint64_t>(words[2]);
    const auto size = numberFrom<std::uint64_t>(words[3]);
    const auto modified = numberFrom<std::int64_t>(words[4]);
    const auto changed = numberFrom<std::int64_t>(words[5]);
    if (!exists || !inode || !size || !modified || !changed) {
        return std::nullopt;
    }
    return PlaceState{*exists == 1, *inode, *size, *modified, *changed};
}

/// False for a line that a manifest cannot hold.
bool takeLine(const std::vector<std::string_view>& words, UndoManifest& manifest) {
    for (std::size_t kind = 0; kind < kindWords.size(); ++kind) {
        if (words.front() == kindWords[kind]) {
            auto item = itemIn(words, static_cast<UndoItem::Kind>(kind));
            if (item) {
                manifest.items.push_back(std::move(*item));
            }
            return item.has_value();
        }
    }
    if (words.front() == "left") {
        const auto state = stateIn(words);
        const bool belongs = state && !manifest.items.empty();
        if (belongs) {
            manifest.items.back().left = state;
        }
        return belongs;
    }
    if (words.size() != 2) {
        return false;
    }
    if (words.front() == "workingCopy") {
        manifest.workingCopy = String(decoded(words[1]));
    } else if (words.front() == "step") {
        manifest.step = String(decoded(words[1]));
    } else if (words.front() == "note") {
        manifest.notes.emplace_back(decoded(words[1]));
    } else if (words.front() == "time") {
        manifest.time = numberFrom<std::int64_t>(words[1]).value_or(0);
    } else {
        return false;
    }
    return true;
}

std::int64_t nanoseconds(const timespec& time) noexcept {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

PlaceState PlaceState::at(const std::string& path) {
    struct stat facts = {};
    if (::lstat(path.c_str(), &facts) != 0) {
        return {};
    }
    return {true, facts.st_ino, static_cast<std::uint64_t>(facts.st_size),
            nanoseconds(facts.st_mtim), nanoseconds(facts.st_ctim)};
}

std::string UndoManifest::text() const {
    std::string text = std::string(heading) + "\n";
    text += "workingCopy " + encoded(workingCopy.view()) + "\n";
    text += "step " + encoded(step.view()) + "\n";
    text += "time " + std::to_string(time) + "\n";
    for (const String& note : notes) {
        text += "note " + encoded(note.view()) + "\n";
    }
    for (const ManifestItem& each : items) {
        text += std::string(kindWords.at(static_cast<std::size_t>(each.item.kind))) + " " +
                octal(each.permissions) + " " + std::to_string(each.item.size) + " " +
                encoded(each.item.path.view());
        text += each.item.kind == UndoItem::Kind::link ? " " + encoded(each.destination) : "";
        text += "\n";
        if (each.left) {
            text += "left " + std::to_string(each.left->exists ? 1 : 0) + " " +
                    std::to_string(each.left->inode) + " " + std::to_string(each.left->size) + " " +
                    std::to_string(each.left->modified) + " " + std::to_string(each.left->changed) +
                    "\n";
        }
    }
    return text + std::string(ending) + "\n";
}

std::optional<UndoManifest> UndoManifest::fromText(std::string_view text) {
    UndoManifest manifest;
    bool isFirst = true;
    const std::string_view ended = text.substr(0, text.rfind('\n') + 1);
    for (const std::string_view line : linesOf(ended)) {
        if (line == ending) {
            return isFirst ? std::nullopt : std::optional(std::move(manifest));
        }
        if (isFirst ? line != heading : !takeLine(wordsOf(line), manifest)) {
            return std::nullopt;
        }
        isFirst = false;
    }
    return std::nullopt;
}

UndoEntry UndoManifest::entry(const String& id) const {
    UndoEntry entry;
    entry.id = id;
    entry.workingCopy = workingCopy;
    entry.step = step;
    entry.time = std::chrono::system_clock::time_point(std::chrono::microseconds(time));
    entry.notes = notes;
    for (const ManifestItem& each : items) {
        entry.items.push_back(each.item);
    }
    return entry;
}

} // namespace quen
