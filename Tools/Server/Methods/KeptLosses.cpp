#include "Tools/Server/Methods/KeptLosses.h"

#include <utility>

namespace quen::tools::server {

namespace {

OrderedJson refusalJson(const String& path, const String& reason) {
    return {{"path", toJson(path)}, {"reason", toJson(reason)}};
}

OrderedJson notKept(const UndoStore::Kept& kept, const std::vector<String>& paths) {
    OrderedJson json = OrderedJson::array();
    for (const UndoRefusal& refusal : kept.refused) {
        json.push_back(refusalJson(refusal.path, refusal.reason));
    }
    for (std::size_t i = 0; kept.error && i < paths.size(); ++i) {
        json.push_back(refusalJson(paths[i], kept.error.localizedDescription()));
    }
    return json;
}

} // namespace

KeptLosses::KeptLosses(const Step& step, const std::vector<LostItem>& lost,
                       std::vector<String> notes) {
    const std::vector<String> paths = lostContent(lost);
    if (paths.empty()) {
        return;
    }
    UndoStore::Kept kept = UndoStore().keep(step.root, step.word, paths, std::move(notes));
    const OrderedJson missing = notKept(kept, paths);
    if (!missing.empty() && !step.mayLose) {
        throw ProtocolError(
            InvalidParams,
            "params.paths: what is lost of " + missing.front()["path"].get<std::string>() +
                (missing.size() == 1 ? ""
                                     : " and " + std::to_string(missing.size() - 1) + " more") +
                " cannot be kept for an undo: " + missing.front()["reason"].get<std::string>() +
                "; give \"notKept\": true where it may go all the same",
            OrderedJson{{"notKept", missing}});
    }
    entry_ = std::move(kept.entry);
}

KeptLosses::~KeptLosses() {
    if (!entry_.id.isNil()) {
        // Without it all that is there then counts as newer work, and stays.
        static_cast<void>(UndoStore().noteResult(entry_.id));
    }
}

OrderedJson KeptLosses::paths() const {
    OrderedJson json = OrderedJson::array();
    for (const UndoItem& item : entry_.items) {
        json.push_back(toJson(item.path));
    }
    return json;
}

} // namespace quen::tools::server
