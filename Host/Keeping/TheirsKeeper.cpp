#include "Host/Keeping/TheirsKeeper.h"

#include "Foundation/PathComponents.h"
#include "Foundation/PegPath.h"
#include "Foundation/PercentCoding.h"
#include "Host/Keeping/FileWriter.h"
#include "Host/Keeping/FreeName.h"
#include "Host/Keeping/ItemInfo.h"
#include "Host/Places/Locations.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace quen {

namespace {

bool holdsSettled(const ConflictFacts& conflict) noexcept {
    constexpr ConflictState settled = ConflictState::settled;
    return conflict.text == settled || conflict.properties == settled || conflict.tree == settled ||
           conflict.unspecified == settled;
}

/// Where the content of a settled file comes from.
struct Incoming {
    /// As the client takes it, closed.
    std::string location;
    /// As the client takes it: BASE or a number.
    std::string revision;
    std::optional<std::int64_t> number;
};

std::string suffixOf(const char* what, const Incoming& incoming) {
    std::string suffix = what;
    if (incoming.number) {
        suffix += ".r" + std::to_string(*incoming.number);
    }
    return suffix;
}

Placement placeBeside(const std::string& path, const std::string& suffix, std::string_view bytes) {
    return atFreeName(path, suffix, [&](const String& beside) {
        return writeFile(beside, bytes, FileWriter::Options());
    });
}

Placement keepText(const std::string& path, const Incoming& incoming, const QueryRunner& run) {
    const auto query = ClientCommand::makeQuery(
        {"cat", "-r", String(incoming.revision), String(incoming.location)});
    run(*query);
    return query->error()
               ? Placement{{}, query->error()}
               : placeBeside(path, suffixOf(".theirs", incoming), query->output()->bytes());
}

Placement keepProperties(const std::string& path, const Incoming& incoming,
                         const QueryRunner& run) {
    const auto query = ClientCommand::makeQuery(
        {"proplist", "-v", "-r", String(incoming.revision), String(incoming.location)});
    run(*query);
    if (query->error()) {
        return {{}, query->error()};
    }
    // A directory's own name has no place beside it that is surely within the working copy.
    std::error_code ignored;
    const bool isDirectory = std::filesystem::is_directory(path, ignored);
    const std::string_view text = query->output()->bytes();
    return placeBeside(isDirectory ? path + "/dir" : path, suffixOf(".theirs-properties", incoming),
                       text.empty() ? "No properties.\n" : text);
}

/// The answer for one item, with its files written.
KeptTheirs kept(const ConflictFacts& conflict, const std::string& path, const Incoming& incoming,
                const QueryRunner& run) {
    KeptTheirs result{conflict, incoming.number, {}, {}, {}};
    if (conflict.text == ConflictState::settled) {
        const Placement text = keepText(path, incoming, run);
        result.theirs = text.path;
        result.error = text.error;
    }
    if (conflict.properties == ConflictState::settled) {
        const Placement properties = keepProperties(path, incoming, run);
        result.theirsProperties = properties.path;
        result.error = result.error ? result.error : properties.error;
    }
    return result;
}

/// As a part of a URL: what the client itself leaves as it is, and everything else encoded.
std::string urlEncoded(std::string_view text) {
    return percentEncoded(text, "!$&'()*+,-./:=@_~");
}

/// The path below a merge's target; empty for the target itself.
std::string_view belowTarget(std::string_view path, std::string_view target) noexcept {
    if (target == ".") {
        return path == "." ? std::string_view() : path;
    }
    if (!path.starts_with(target)) {
        return path;
    }
    path.remove_prefix(target.size());
    path.remove_prefix(path.starts_with('/') ? 1 : 0);
    return path;
}

std::optional<std::int64_t> lastMergedRevision(const ChangeFacts& facts) {
    if (facts.merges.empty() || !facts.merges.back().last) {
        return std::nullopt;
    }
    const MergedRange& range = facts.merges.back();
    // Backwards, what comes in is what was there before the range's first revision.
    return range.isReverse ? *range.last - 1 : *range.last;
}

/// The URL that the client takes `^/NAME` for beside the merge's target; the text itself where the
/// client cannot tell.
std::string wholeURL(const String& source, const std::string& target, const QueryRunner& run) {
    if (!source.hasPrefix("^/")) {
        return source.str();
    }
    const auto known = askItemInfo({target}, run);
    return known.empty() ? source.str()
                         : known.begin()->second.repositoryRoot.str() + source.str().substr(1);
}

} // namespace

std::vector<KeptTheirs> keepTheirsOfUpdate(const ChangeFacts& facts, const String& directory,
                                           const QueryRunner& run) {
    std::vector<std::string> paths;
    for (const ConflictFacts& conflict : facts.conflicts) {
        if (holdsSettled(conflict)) {
            paths.push_back(absoluteClientPath(conflict.path, directory));
        }
    }
    const auto known = askItemInfo(paths, run);
    std::vector<KeptTheirs> answers;
    for (const ConflictFacts& conflict : facts.conflicts) {
        if (!holdsSettled(conflict)) {
            continue;
        }
        const std::string path = absoluteClientPath(conflict.path, directory);
        const auto entry = known.find(path);
        const auto number = entry != known.end() && entry->second.revision ? entry->second.revision
                                                                           : facts.revision;
        answers.push_back(
            kept(conflict, path, Incoming{closedClientPath(path).str(), "BASE", number}, run));
    }
    return answers;
}

std::vector<KeptTheirs> keepTheirsOfMerge(const ChangeFacts& facts, const String& directory,
                                          const String& source, const QueryRunner& run) {
    const auto number = lastMergedRevision(facts);
    const std::string revision = number ? std::to_string(*number) : "HEAD";
    const std::string target = facts.merges.empty() ? "." : facts.merges.back().into.str();
    std::vector<KeptTheirs> answers;
    if (!facts.holdsSettled()) {
        return answers;
    }
    const std::string root = wholeURL(source, absoluteClientPath(String(target), directory), run);
    for (const ConflictFacts& conflict : facts.conflicts) {
        if (!holdsSettled(conflict)) {
            continue;
        }
        const std::string_view below = belowTarget(conflict.path.view(), target);
        std::string url = root;
        url += below.empty() ? "" : "/" + urlEncoded(below);
        // The peg is the revision too: the source may have gone since.
        const Incoming incoming{withPeg(url, revision).str(), revision, number};
        answers.push_back(
            kept(conflict, absoluteClientPath(conflict.path, directory), incoming, run));
    }
    return answers;
}

} // namespace quen
