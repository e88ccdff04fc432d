#include "Host/HostSourceTrees.h"

#include "Foundation/Format.h"
#include "Foundation/PathComponents.h"

#include <algorithm>
#include <utility>

namespace quen {

namespace {

template <typename Facts> bool contains(const Facts& facts, const String& location) {
    if (location.isNil()) {
        return false;
    }
    if (facts.contains) {
        return std::find(facts.contains->begin(), facts.contains->end(), location) !=
               facts.contains->end();
    }
    return isLocationInside(location, facts.location);
}

String describe(std::string_view className, const String& name) {
    return formatText("<%@ \"%@\">", {className, name});
}

} // namespace

bool isLocationInside(const String& location, const String& tree) {
    const auto root = pathComponents(tree.view());
    const auto components = pathComponents(location.view());
    return !root.empty() && root.size() <= components.size() &&
           std::equal(root.begin(), root.end(), components.begin());
}

HostRepository::HostRepository(Facts facts) : facts_(std::move(facts)) {}

bool HostRepository::containsItemAtLocation(const String& location) const {
    return contains(facts_, location);
}

String HostRepository::descriptionForAssertionMessage() const {
    return describe("QuenSourceControlRepository", facts_.name);
}

HostWorkingTree::HostWorkingTree(Facts facts) : facts_(std::move(facts)) {}

bool HostWorkingTree::containsItemAtLocation(const String& location) const {
    return contains(facts_, location);
}

String HostWorkingTree::descriptionForAssertionMessage() const {
    return describe("QuenSourceControlWorkingTree", facts_.name);
}

HostOtherTree::HostOtherTree(Facts facts) : facts_(std::move(facts)) {}

bool HostOtherTree::containsItemAtLocation(const String& location) const {
    return contains(facts_, location);
}

String HostOtherTree::descriptionForAssertionMessage() const {
    return describe("QuenSourceControlSourceTree", facts_.name);
}

} // namespace quen
