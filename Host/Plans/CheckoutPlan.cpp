#include "Host/Facts/ListFacts.h"
#include "Host/Places/Locations.h"
#include "Host/Plans/Plans.h"

#include <filesystem>
#include <set>
#include <string>
#include <system_error>

namespace quen {

namespace fs = std::filesystem;

CheckoutPlan planCheckout(const String& url, const String& directory, const QueryRunner& run) {
    CheckoutPlan plan;
    std::error_code error;
    const fs::path place = plainPath(directory.str());
    const fs::file_status status = fs::status(place, error);
    if (!fs::exists(status)) {
        return plan;
    }
    if (!fs::is_directory(status)) {
        plan.inTheWay.emplace_back(place.string());
        return plan;
    }
    plan.isWorkingCopy = fs::exists(place / ".svn", error);
    if (fs::is_empty(place, error)) {
        return plan;
    }
    const auto query = ClientCommand::makeQuery({"list", "-R", "--xml", url});
    run(*query);
    ListFactsReader reader;
    reader.take(query->output()->bytes());
    const Error broken = reader.finish();
    plan.error = query->error() ? query->error() : broken;
    std::set<std::string> told;
    for (const ListEntry& entry : reader.facts().entries) {
        const fs::path existing = place / entry.name.str();
        const fs::file_status there = fs::symlink_status(existing, error);
        // What lies in a directory that is in the way itself is not told again.
        const bool isTold = told.contains(existing.parent_path().string());
        if (!fs::exists(there)) {
            continue;
        }
        told.insert(existing.string());
        if (!isTold) {
            plan.inTheWay.emplace_back(existing.string());
        }
    }
    return plan;
}

} // namespace quen
