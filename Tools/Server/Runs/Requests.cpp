#include "Tools/Server/Runs/Requests.h"

#include "Host/HostSourceTrees.h"
#include "Host/Places/Locations.h"
#include "Tools/Console/JsonInput.h"

#include <memory>
#include <utility>

namespace quen::tools::server {

namespace {

Settings settingsOf(const std::string& path) {
    if (path.empty() || isRepositoryURL(path)) {
        return {};
    }
    std::string problem;
    const auto settings = settingsFor(path, problem);
    if (!settings) {
        throw InputError(problem);
    }
    return *settings;
}

Place makePlace(const std::string& path, HostRepository::Facts facts) {
    facts.name = facts.location;
    const auto repository = std::make_shared<HostRepository>(std::move(facts));
    if (path.empty() || isRepositoryURL(path)) {
        return {repository, repository};
    }
    const std::string top = topDirectoryOf(path).string();
    HostWorkingTree::Facts tree;
    tree.location = top.empty() ? path : top;
    tree.name = tree.location;
    tree.repository = repository;
    return {std::make_shared<HostWorkingTree>(std::move(tree)), repository};
}

} // namespace

Place placeOf(const std::string& location) {
    HostRepository::Facts facts;
    facts.user = settingsOf(location).user;
    facts.location = location;
    return makePlace(location, std::move(facts));
}

RepositoryLayout layoutOf(const std::string& path, const std::string& url,
                          const std::string& repositoryRoot) {
    return wholeLayout(settingsOf(path).layout, url, repositoryRoot);
}

Place placeWithLayout(const std::string& path, const std::string& repositoryRoot,
                      const RepositoryLayout& layout) {
    HostRepository::Facts facts;
    facts.user = settingsOf(path).user;
    facts.location = repositoryRoot;
    facts.trunkLocation = URL::fromString(layout.trunk);
    facts.branchesLocation = URL::fromString(layout.branches);
    return makePlace(path, std::move(facts));
}

QuenSourceControlRequestPtr makeRequest(RequestType type, const Place& place,
                                        const std::vector<std::string>& files, Dictionary options) {
    auto request = std::make_shared<QuenSourceControlRequest>();
    StringArray paths;
    for (const std::string& file : files) {
        paths.push_back(clientPath(file));
    }
    request->initWithType(type, place.tree, std::move(paths), std::move(options));
    request->setRepositoryToAuthenticate(place.repository);
    return request;
}

} // namespace quen::tools::server
