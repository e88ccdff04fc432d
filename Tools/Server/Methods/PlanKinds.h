#pragma once

#include "Host/Plans/Plans.h"
#include "Tools/Server/Methods/Services.h"

#include <stop_token>
#include <string>
#include <vector>

namespace quen::tools::server {

struct PlanParams {
    std::string kind;
    std::vector<std::string> paths;
    /// By working copy, in the order of the paths.
    std::vector<CommitGroup> groups;
    /// Of a merge or a switch.
    std::string url;
    /// Of a merge, as the client takes it; empty for all that is missing.
    std::string range;
    /// Ends the runs that the client makes for it.
    std::stop_token stop;
};

/// What a plan answers.
struct PlanAnswer {
    OrderedJson items = OrderedJson::array();
    OrderedJson alsoTaken = OrderedJson::array();
    OrderedJson lost = OrderedJson::array();
    OrderedJson needsParents = OrderedJson::array();
    OrderedJson decidedForMine = OrderedJson::array();
    OrderedJson needsOtherEnds = OrderedJson::array();
    OrderedJson conflicts = OrderedJson::array();
    OrderedJson inTheWay = OrderedJson::array();
    OrderedJson localChanges = OrderedJson::array();
};

/// A step that can be planned.
struct PlanKind {
    const char* word;
    /// Asks the client, and answers the error of that.
    Error (*make)(const Services& services, const PlanParams& params, const QueryRunner& run,
                  PlanAnswer& answer);
    bool hasURL = false;
    bool hasRange = false;
};

/// Null for a word that stands for none.
const PlanKind* planKindNamed(const std::string& word);

} // namespace quen::tools::server
