#include "Host/Facts/ItemLine.h"

#include "Host/Facts/ChangeLine.h"

#include <algorithm>
#include <array>

namespace quen {

namespace {

struct Letter {
    char letter;
    ItemAction action;
};

constexpr std::array letters = {
    Letter{' ', ItemAction::none},    Letter{'A', ItemAction::added},
    Letter{'D', ItemAction::deleted}, Letter{'U', ItemAction::updated},
    Letter{'G', ItemAction::merged},  Letter{'C', ItemAction::conflicted},
    Letter{'E', ItemAction::existed}, Letter{'R', ItemAction::replaced}};

std::optional<ItemAction> actionOf(char letter) noexcept {
    const auto* const found = std::find_if(
        letters.begin(), letters.end(), [=](const Letter& each) { return each.letter == letter; });
    return found == letters.end() ? std::nullopt : std::optional(found->action);
}

/// `UC  a.c`: text, properties, a lost lock, trees, a space, the path.
std::optional<ChangedItem> itemInColumns(std::string_view line) {
    constexpr std::size_t pathColumn = 5;
    if (line.size() <= pathColumn || line[4] != ' ') {
        return std::nullopt;
    }
    const auto text = actionOf(line[0]);
    const auto properties = actionOf(line[1]);
    const auto tree = actionOf(line[3]);
    const bool isLockColumn = line[2] == ' ' || line[2] == 'B';
    const bool isBlank =
        line.substr(0, pathColumn).find_first_not_of(' ') == std::string_view::npos;
    if (!text || !properties || !tree || !isLockColumn || isBlank) {
        return std::nullopt;
    }
    ChangedItem item;
    item.path = String(line.substr(pathColumn));
    item.text = *text;
    item.properties = *properties;
    item.isLockBroken = line[2] == 'B';
    item.isTreeConflict = *tree == ItemAction::conflicted;
    item.isBelowTreeConflict = *tree != ItemAction::none && !item.isTreeConflict;
    if (item.isBelowTreeConflict && item.text == ItemAction::none) {
        item.text = *tree;
    }
    return item;
}

ChangedItem itemOf(std::string_view path, ItemAction action) {
    ChangedItem item;
    item.path = String(path);
    item.text = action;
    return item;
}

/// `A         a.c` and `A  (bin)  a.png`, as adding, removing, copying and moving print it.
std::optional<ChangedItem> itemInWideColumns(std::string_view line) {
    constexpr std::size_t pathColumn = 10;
    const std::string_view between =
        line.size() > pathColumn ? line.substr(1, pathColumn - 1) : std::string_view();
    if (between != "         " && between != "  (bin)  ") {
        return std::nullopt;
    }
    const auto action = actionOf(line.front());
    if (!action || *action == ItemAction::none) {
        return std::nullopt;
    }
    return itemOf(line.substr(pathColumn), *action);
}

struct Beginning {
    std::string_view text;
    ItemAction action;
};

std::optional<ChangedItem> sentItemIn(std::string_view line) {
    constexpr std::array beginnings = {Beginning{"Sending        ", ItemAction::sent},
                                       Beginning{"Sending copy of        ", ItemAction::sent},
                                       Beginning{"Adding         ", ItemAction::added},
                                       Beginning{"Adding  (bin)  ", ItemAction::added},
                                       Beginning{"Adding copy of        ", ItemAction::added},
                                       Beginning{"Adding copy of (bin)  ", ItemAction::added},
                                       Beginning{"Deleting       ", ItemAction::deleted},
                                       Beginning{"Deleting copy of       ", ItemAction::deleted},
                                       Beginning{"Replacing      ", ItemAction::replaced},
                                       Beginning{"Replacing copy of      ", ItemAction::replaced}};
    for (const Beginning& each : beginnings) {
        if (line.size() > each.text.size() && line.starts_with(each.text)) {
            return itemOf(line.substr(each.text.size()), each.action);
        }
    }
    return std::nullopt;
}

std::optional<ChangedItem> itemInSentence(std::string_view line) {
    if (const auto path = quotedIn(line, "Restored ", "")) {
        return itemOf(*path, ItemAction::restored);
    }
    if (const auto path = quotedIn(line, "Reverted ", "")) {
        return itemOf(*path, ItemAction::reverted);
    }
    return sentItemIn(line);
}

} // namespace

std::optional<ChangedItem> itemIn(std::string_view line, ChangeColumns columns) {
    auto item = columns == ChangeColumns::schedule ? itemInWideColumns(line) : itemInColumns(line);
    return item ? item : itemInSentence(line);
}

} // namespace quen
