#include "Tools/Commands/Places/SourceTreeFinder.h"

#include "Host/HostSourceTrees.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <filesystem>
#include <memory>
#include <utility>

namespace quen::tools {

namespace {

SourceTree makeSource(const std::string& location, HostRepository::Facts facts) {
    if (facts.location.isNil()) {
        facts.location = isRepositoryURL(location) ? location : absolutePath(location);
    }
    facts.name = facts.location;
    const auto repository = std::make_shared<HostRepository>(std::move(facts));
    if (isRepositoryURL(location)) {
        return {repository, repository};
    }
    const std::string top = topDirectoryOf(location).string();
    HostWorkingTree::Facts tree;
    tree.location = top.empty() ? absolutePath(location) : top;
    tree.name = tree.location;
    tree.repository = repository;
    return {std::make_shared<HostWorkingTree>(std::move(tree)), repository};
}

/// nil for what is not a URL.
URL urlOf(const std::string& location) {
    return isRepositoryURL(location) ? URL::fromString(location) : URL();
}

std::string firstSaid(const std::string& option, const std::string& setting) {
    return option.empty() ? setting : option;
}

bool isWholeURL(const std::string& location) {
    return !location.empty() && !isBelowRoot(location);
}

/// The location, then the directories above it, as far as the top of the working copy: an item
/// that was never committed says nothing of the repository, and what it lies in does.
std::vector<std::string> placesToAsk(const std::string& location) {
    std::vector<std::string> places{location};
    const std::filesystem::path top = topDirectoryOf(location);
    if (isRepositoryURL(location) || top.empty()) {
        return places;
    }
    for (std::filesystem::path path = absolutePath(location); path != top;) {
        path = path.parent_path();
        places.push_back(path.string());
    }
    return places;
}

/// What is said of this location by options and files.
Outcome<Settings> settingsOf(const Session& session, const std::string& location) {
    std::string problem;
    auto settings = isRepositoryURL(location) ? Settings() : settingsFor(location, problem);
    if (!settings) {
        return session.fail(printable(problem));
    }
    settings->user = firstSaid(session.options().user, settings->user);
    return *settings;
}

struct Place {
    std::string url;
    std::string root;
};

/// Where a location lies in the repository, as the client says.
Outcome<Place> placeOf(Session& session, const std::string& location, const SourceTree& source) {
    for (const std::string& place : placesToAsk(location)) {
        const auto operation =
            session.query(makeRequest(RequestTypeInfo, source, {clientPath(place)}));
        if (!operation) {
            return operation.explained();
        }
        const Array* const records = (*operation)->result().array();
        if (records != nullptr && records->count() > 0) {
            const Dictionary& record = *(*records)[0].dictionary();
            return Place{record[QuenSourceControlOperationRemoteOriginKey].stringValue().str(),
                         record[QuenSourceControlOperationRepositoryRootKey].stringValue().str()};
        }
    }
    return session.fail("It is not known where \"" + printable(location) +
                        "\" lies in the repository: nothing there was ever committed.");
}

/// Puts the layout into the facts; explained where it cannot be found out.
Outcome<HostRepository::Facts> factsWithLayout(Session& session, const std::string& location,
                                               const RepositoryLayout& said,
                                               HostRepository::Facts facts) {
    Place place;
    if (!isWholeURL(said.trunk) || !isWholeURL(said.branches)) {
        auto asked = placeOf(session, location, makeSource(location, facts));
        if (!asked) {
            return asked.explained();
        }
        place = std::move(*asked);
        facts.location = place.root;
    }
    const RepositoryLayout layout = wholeLayout(said, place.url, place.root);
    facts.trunkLocation = urlOf(layout.trunk);
    facts.branchesLocation = urlOf(layout.branches);
    if (facts.trunkLocation.isNil() || facts.branchesLocation.isNil()) {
        const std::string wrong = facts.trunkLocation.isNil()
                                      ? firstSaid(said.trunk, layout.trunk)
                                      : firstSaid(said.branches, layout.branches);
        return session.fail("\"" + wrong +
                            "\" is not a URL. Write it whole or as ^/NAME, with %20 for a blank "
                            "and likewise for what is not ASCII.");
    }
    return facts;
}

} // namespace

std::vector<std::string> userOption(const SourceTree& source) {
    const String user = source.repository == nullptr ? String() : source.repository->user();
    return user.isEmpty() ? std::vector<std::string>()
                          : std::vector<std::string>{"--username", user.str()};
}

QuenSourceControlRequestPtr makeRequest(RequestType type, const SourceTree& source,
                                        StringArray files, Dictionary options) {
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(type, source.tree, std::move(files), std::move(options));
    request->setRepositoryToAuthenticate(source.repository);
    return request;
}

void LayoutOptions::addTo(Subcommand& command) {
    command.option("--trunk", layout.trunk,
                   "Location of the trunk: a URL, or ^/PATH in the repository");
    command.option("--branches", layout.branches, "Directory that holds the branches");
}

Outcome<SourceTree> findSource(const Session& session, const std::string& location) {
    const auto settings = settingsOf(session, location);
    if (!settings) {
        return settings.explained();
    }
    HostRepository::Facts facts;
    facts.user = settings->user;
    return makeSource(location, std::move(facts));
}

Outcome<SourceTree> findSourceWithLayout(Session& session, const std::string& location,
                                         const LayoutOptions& options) {
    const auto settings = settingsOf(session, location);
    if (!settings) {
        return settings.explained();
    }
    HostRepository::Facts facts;
    facts.user = settings->user;
    const RepositoryLayout said{firstSaid(options.layout.trunk, settings->layout.trunk),
                                firstSaid(options.layout.branches, settings->layout.branches)};
    auto known = factsWithLayout(session, location, said, std::move(facts));
    return known ? Outcome(makeSource(location, std::move(*known))) : known.explained();
}

} // namespace quen::tools
