#include "Host/Keeping/TheirsKeeper.h"

#include "Foundation/PathComponents.h"
#include "Foundation/PegPath.h"
#include "Foundation/PercentCoding.h"
#include "Host/Facts/InfoFacts.h"
#include "Host/Keeping/FileWriter.h"
#include "Host/Keeping/FreeName.h"
#include "Host/Places/Locations.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace quen {

namespace {

bool holdsSettled(const ConflictFacts& conflict) noexcept {
    constexpr ConflictState settled = ConflictState::settled;
    return conflict.text == settled || conflict.properties == settled || conflict.tree == settled ||
           conflict.unspecified == settled;
}

std::string absolutePath(const String& path, const String& directory) {
    const bool isAbsolute = path.view().starts_with('/');
    return isAbsolute ? path.str() : appendingPathComponent(directory.view(), path.view()).str();
}

/// Where the content of a settled file comes from.
struct Incoming {
    /// As the client takes it, closed.
    std::string location;
    /// As the client takes it: BASE or a number.
    std::string revision;
    std::optional<std::int64_t> number;
};

/// The answer for one item, with its file written.
KeptTheirs kept(const ConflictFacts& conflict, const std::string& path, const Incoming& incoming,
                const QueryRunner& run) {
    KeptTheirs result{conflict, incoming.number, {}, {}};
    if (conflict.text != ConflictState::settled) {
        return result;
    }
    const auto query =
        ClientQuery::make({"cat", "-r", String(incoming.revision), String(incoming.location)});
    run(*query);
    result.error = query->error();
    if (result.error) {
        return result;
    }
    const std::string name =
        incoming.number ? ".theirs.r" + std::to_string(*incoming.number) : ".theirs";
    const Placement placement = atFreeName(path, name, [&](const String& beside) {
        return writeFile(beside, query->output()->bytes(), FileWriter::Options());
    });
    result.theirs = placement.path;
    result.error = placement.error;
    return result;
}

/// The revision that each path rests on; paths that the client cannot tell of are missing.
std::map<std::string, std::int64_t> baseRevisions(const std::vector<std::string>& paths,
                                                  const QueryRunner& run) {
    constexpr std::size_t atOnce = 500; // keeps the argument list within the system's limits
    std::map<std::string, std::int64_t> revisions;
    for (std::size_t first = 0; first < paths.size(); first += atOnce) {
        StringArray arguments{"info", "--xml"};
        for (std::size_t i = first; i < std::min(paths.size(), first + atOnce); ++i) {
            arguments.emplace_back(closedClientPath(paths[i]));
        }
        const auto query = ClientQuery::make(std::move(arguments));
        run(*query);
        InfoFactsReader reader;
        reader.take(query->output()->bytes());
        reader.finish(); // an item that is gone ends the report early; the others count
        for (const InfoEntry& entry : reader.facts().entries) {
            if (entry.revision) {
                revisions[entry.path.str()] = *entry.revision;
            }
        }
    }
    return revisions;
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

} // namespace

std::vector<KeptTheirs> keepTheirsOfUpdate(const ChangeFacts& facts, const String& directory,
                                           const QueryRunner& run) {
    std::vector<std::string> paths;
    for (const ConflictFacts& conflict : facts.conflicts) {
        if (holdsSettled(conflict)) {
            paths.push_back(absolutePath(conflict.path, directory));
        }
    }
    const auto revisions = baseRevisions(paths, run);
    std::vector<KeptTheirs> answers;
    for (const ConflictFacts& conflict : facts.conflicts) {
        if (!holdsSettled(conflict)) {
            continue;
        }
        const std::string path = absolutePath(conflict.path, directory);
        const auto known = revisions.find(path);
        const auto number =
            known == revisions.end() ? facts.revision : std::optional(known->second);
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
    for (const ConflictFacts& conflict : facts.conflicts) {
        if (!holdsSettled(conflict)) {
            continue;
        }
        const std::string_view below = belowTarget(conflict.path.view(), target);
        std::string url = source.str();
        url += below.empty() ? "" : "/" + urlEncoded(below);
        // The peg is the revision too: the source may have gone since.
        const Incoming incoming{withPeg(url, revision).str(), revision, number};
        answers.push_back(kept(conflict, absolutePath(conflict.path, directory), incoming, run));
    }
    return answers;
}

} // namespace quen
