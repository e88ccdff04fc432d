#include "Host/Plans/BranchPlans.h"

#include "Foundation/PercentCoding.h"
#include "Host/Facts/InfoFacts.h"
#include "Host/Places/Locations.h"
#include "Host/Places/RepositoryLayout.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace quen {

namespace {

InfoFacts infoOf(const std::vector<String>& locations, const QueryRunner& run, Error& error) {
    StringArray arguments{"info", "--xml"};
    for (const String& location : locations) {
        arguments.push_back(closedClientPath(location.str()));
    }
    const auto query = ClientCommand::makeQuery(std::move(arguments));
    run(*query);
    error = query->error();
    InfoFactsReader reader;
    reader.take(query->output()->bytes());
    reader.finish();
    return reader.takeFacts();
}

/// The client's numbers for what is not there.
bool meansAbsence(const Error& error) {
    constexpr std::array<std::int64_t, 3> numbers{170000, 160013, 200009};
    const Array* const codes = error.userInfo()[QuenSourceControlTaskErrorCodesKey].array();
    return codes != nullptr && codes->count() > 0 &&
           std::all_of(codes->begin(), codes->end(), [&](const Value& code) {
               const std::int64_t* const number = code.integer();
               return number != nullptr &&
                      std::find(numbers.begin(), numbers.end(), *number) != numbers.end();
           });
}

} // namespace

std::string problemOfNewBranchName(std::string_view name) {
    if (name == "trunk") {
        return "would never be reached: the name means the trunk.";
    }
    if (isBelowRoot(name)) {
        return "would never be reached: ^/ means the repository's root.";
    }
    const bool hasControl = std::any_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
    });
    return hasControl ? "holds a control character, which no name in a repository can." : "";
}

RepositoryPlace lookAt(const String& url, const QueryRunner& run) {
    RepositoryPlace place;
    const InfoFacts facts = infoOf({url}, run, place.error);
    place.exists = !facts.entries.empty();
    if (place.exists) {
        place.commit = facts.entries.front().commit;
    } else if (meansAbsence(place.error)) {
        place.error = {};
    }
    return place;
}

NewBranchPlaces lookForNewBranch(const String& url, const String& parentURL,
                                 const QueryRunner& run) {
    NewBranchPlaces places;
    Error error;
    const InfoFacts facts = infoOf({url, parentURL}, run, error);
    const std::string parent = percentDecoded(parentURL.view());
    for (const InfoEntry& entry : facts.entries) {
        // In doubt the branch is taken to be there.
        const bool isParent = percentDecoded(entry.url.view()) == parent;
        (isParent ? places.parent : places.branch) = {true, entry.commit, {}};
    }
    if (!meansAbsence(error)) {
        places.branch.error = places.parent.error = error;
    }
    return places;
}

bool isOnBranch(const String& path, const String& branchURL, const QueryRunner& run) {
    Error ignored;
    const InfoFacts facts = infoOf({path}, run, ignored);
    if (facts.entries.empty()) {
        return false;
    }
    const std::string here = percentDecoded(facts.entries.front().url.view());
    const std::string branch = percentDecoded(branchURL.view());
    return isAtOrBelow(here, branch);
}

} // namespace quen
