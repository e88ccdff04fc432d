#include "Tools/Commands/CommandLine/CommandTable.h"

#include <algorithm>

namespace quen::tools {

namespace {

struct Row {
    const char* name;
    const char* group;
    std::vector<std::string> aliases;
};

const char* const looking = "Look at changes and history";
const char* const changing = "Make changes";
const char* const sharing = "Work with the repository";
const char* const branching = "Work with branches";
const char* const other = "Other";

const std::vector<Row>& rows() {
    static const std::vector<Row> rows{
        {"status", looking, {"st", "stat"}},
        {"diff", looking, {"di"}},
        {"log", looking, {}},
        {"show", looking, {}},
        {"incoming", looking, {}},
        {"blame", looking, {"praise", "annotate", "ann"}},
        {"report", looking, {}},
        {"info", looking, {}},
        {"list", looking, {"ls"}},
        {"cat", looking, {}},
        {"add", changing, {}},
        {"remove", changing, {"rm", "del", "delete"}},
        {"move", changing, {"mv", "rename", "ren"}},
        {"copy", changing, {"cp"}},
        {"mkdir", changing, {}},
        {"revert", changing, {}},
        {"undo", changing, {}},
        {"resolve", changing, {}},
        {"ignore", changing, {}},
        {"unignore", changing, {}},
        {"cleanup", changing, {}},
        {"commit", sharing, {"ci"}},
        {"update", sharing, {"up"}},
        {"checkout", sharing, {"co"}},
        {"import", sharing, {}},
        {"export", sharing, {}},
        {"branch", branching, {}},
        {"branches", branching, {}},
        {"tag", branching, {}},
        {"tags", branching, {}},
        {"switch", branching, {"sw"}},
        {"merge", branching, {}},
        {"help", other, {"?", "h"}},
    };
    return rows;
}

} // namespace

CommandPlace placeOf(std::string_view name) {
    const auto row = std::find_if(rows().begin(), rows().end(),
                                  [&](const Row& each) { return each.name == name; });
    return row == rows().end() ? CommandPlace{other, {}} : CommandPlace{row->group, row->aliases};
}

std::string_view commandNamed(std::string_view word) {
    const auto row = std::find_if(rows().begin(), rows().end(), [&](const Row& each) {
        return std::find(each.aliases.begin(), each.aliases.end(), word) != each.aliases.end();
    });
    return row == rows().end() ? word : row->name;
}

const std::vector<std::string>& commandGroups() {
    static const std::vector<std::string> groups{looking, changing, sharing, branching, other};
    return groups;
}

} // namespace quen::tools
