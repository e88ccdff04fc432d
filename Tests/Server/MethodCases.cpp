#include "Tests/Server/MethodCases.h"

namespace quen::test {

namespace {

/// Gives each case its own working copy: `WC` in the params stands for it.
Json placed(const Json& params, const std::string& copy) {
    std::string text = params.dump();
    for (auto at = text.find("\"WC"); at != std::string::npos; at = text.find("\"WC", at)) {
        text.replace(at + 1, 2, copy);
        at += copy.size();
    }
    return Json::parse(text);
}

std::vector<MethodCase> placedAll(const Sandbox& sandbox, std::vector<MethodCase> cases) {
    for (std::size_t i = 0; i < cases.size(); ++i) {
        cases[i].params = placed(cases[i].params, copyOf(sandbox, i));
        if (cases[i].name.empty()) {
            cases[i].name = cases[i].method;
        }
    }
    return cases;
}

Json about(const char* path) {
    return {{"paths", {path}}};
}

Json planOf(const char* kind) {
    return {{"kind", kind}, {"paths", {"WC/a.c"}}};
}

} // namespace

std::string copyOf(const Sandbox& sandbox, std::size_t number) {
    return (sandbox.root() / "copies" / std::to_string(number)).string();
}

std::vector<MethodCase> firstRuns(const Sandbox& sandbox) {
    const std::string url = sandbox.url("trunk");
    const Json root{{"workingCopy", "WC"}};
    const Json fromTo{{"from", "WC/a.c"}, {"to", "WC/b.c"}};
    const Json atURL{{"workingCopy", "WC"}, {"url", url}};
    const Json named{{"workingCopy", "WC"}, {"name", "n"}, {"message", "m"}};
    Json refresh = root;
    refresh["refresh"] = true;
    Json mergePlan = planOf("merge");
    mergePlan["url"] = url;
    Json switchPlan = planOf("switch");
    switchPlan["url"] = url;
    Json adopted{{"from", "WC/gone.c"}, {"to", "WC/new.c"}};
    return placedAll(
        sandbox,
        {{"perform",
          "provider/perform",
          {{"request", {{"type", 15}, {"files", {"WC"}}}}},
          "status"},
         {"perform a change",
          "provider/perform",
          {{"request", {{"type", "RequestTypeAdd"}, {"files", {"WC/new.c"}}}}},
          "add",
          true},
         {"", "workingCopy/status", refresh, "status"},
         {"", "workingCopy/incoming", root, "status"},
         {"", "workingCopy/info", about("WC/a.c"), "info"},
         {"", "workingCopy/cleanup", about("WC"), "cleanup"},
         {"", "workingCopy/update", about("WC"), "update", true},
         {"", "workingCopy/switch", atURL, "switch", true},
         {"", "workingCopy/checkout", {{"url", url}, {"path", "WC-fresh"}}, "checkout", true},
         {"", "branch/merge", atURL, "merge", true},
         {"", "branch/recordMerge", atURL, "merge", true},
         {"plan a commit", "change/plan", planOf("commit"), "status"},
         {"plan a revert", "change/plan", planOf("revert"), "status"},
         {"plan a removal", "change/plan", planOf("remove"), "status"},
         {"plan an update", "change/plan", planOf("update"), "status"},
         {"plan a merge", "change/plan", mergePlan, "status"},
         {"plan a switch", "change/plan", switchPlan, "status"},
         {"", "change/commit", {{"paths", {"WC/a.c"}}, {"message", "m"}}, "status"},
         {"", "change/add", about("WC/new.c"), "add", true},
         {"", "change/remove", about("WC/a.c"), "status"},
         {"", "change/revert", about("WC/a.c"), "status"},
         {"", "change/resolve", {{"paths", {"WC/a.c"}}, {"accept", "working"}}, "resolve", true},
         {"resolve for mine",
          "change/resolve",
          {{"paths", {"WC/a.c"}}, {"accept", "mine"}},
          "resolve",
          true},
         {"", "change/move", fromTo, "move", true},
         {"", "change/copy", fromTo, "copy", true},
         {"", "change/adoptMove", adopted, "move", true},
         {"", "change/makeDirectory", about("WC/d"), "mkdir", true},
         {"", "change/changelist", {{"paths", {"WC/a.c"}}, {"name", "n"}}, "changelist", true},
         {"",
          "property/set",
          {{"paths", {"WC/a.c"}}, {"name", "n"}, {"value", "v"}},
          "propset",
          true},
         {"", "change/patch", {{"workingCopy", "WC"}, {"base64", ""}}, "patch", true},
         {"", "workingCopy/relocate", atURL, "relocate", true},
         {"", "history/setMessage", {{"url", url}, {"revision", 1}, {"message", "m"}}, "propset"},
         {"", "property/list", {{"path", "WC/a.c"}}, "proplist"},
         {"", "lock/get", about("WC/a.c"), "lock", true},
         {"", "lock/release", about("WC/a.c"), "unlock", true},
         {"", "change/ignore", about("WC/new.c"), "propget", true},
         {"", "change/unignore", about("WC/new.c"), "propget", true},
         {"", "file/content", {{"path", "WC/a.c"}, {"revision", "HEAD"}}, "export"},
         {"", "file/blame", {{"path", "WC/a.c"}}, "info"},
         {"", "history/log", {{"url", url}, {"limit", 5}}, "log"},
         {"", "history/search", {{"url", url}, {"limit", 5}, {"text", "x"}}, "log"},
         {"", "diff/summary", {{"from", {{"url", url}}}, {"to", {{"url", url}}}}, "diff"},
         {"", "diff/text", about("WC/a.c"), "diff"},
         {"", "branch/list", root, "list"},
         {"", "branch/current", root, "info"},
         {"", "branch/create", named, "copy"},
         {"", "branch/delete", named, "remove"},
         {"", "tag/create", named, "copy"},
         {"", "tag/delete", named, "remove"},
         {"", "repository/list", {{"url", url}}, "list"},
         {"", "repository/export", {{"url", url}, {"to", "WC-export"}}, "export"},
         {"",
          "repository/import",
          {{"path", "WC"}, {"url", url + "/imported"}, {"message", "m"}},
          "import"}});
}

std::vector<MethodCase> laterRuns(const Sandbox& sandbox) {
    return placedAll(
        sandbox, {{"", "change/commit", {{"paths", {"WC/a.c"}}, {"message", "m"}}, "commit", true},
                  {"", "change/remove", about("WC/a.c"), "remove", true},
                  {"", "change/revert", about("WC/a.c"), "revert", true},
                  {"", "file/blame", {{"path", "WC/a.c"}}, "blame"}});
}

} // namespace quen::test
