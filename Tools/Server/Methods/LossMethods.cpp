#include "Tools/Server/Methods/ChangeJson.h"
#include "Tools/Server/Methods/KeptLosses.h"
#include "Tools/Server/Methods/Params.h"

#include <utility>

namespace quen::tools::server {

namespace {

/// A change that takes from the disk what is in no revision.
struct LosingStep {
    const char* method;
    const char* title;
    const char* word;
    RequestType type;
    Error (*plan)(const std::vector<String>& paths, const QueryRunner& run,
                  std::vector<LostItem>& lost);
};

Error lostByRevert(const std::vector<String>& paths, const QueryRunner& run,
                   std::vector<LostItem>& lost) {
    RevertPlan plan = planRevert(paths, run);
    lost = std::move(plan.lost);
    return plan.error;
}

Error lostByRemoval(const std::vector<String>& paths, const QueryRunner& run,
                    std::vector<LostItem>& lost) {
    RemovePlan plan = planRemove(paths, run);
    lost = std::move(plan.lost);
    return plan.error;
}

struct LossParams {
    std::string root;
    std::vector<std::string> paths;
    bool mayLose = false;
};

LossParams decodeLoss(const JsonInput& params) {
    params.requireObject({"paths", "notKept"});
    LossParams loss{{}, readPaths(params), readFlag(params, "notKept")};
    loss.root = rootOf(params, loss.paths);
    return loss;
}

OrderedJson lossJson(const LossParams& params, const ChangeFacts& facts, OrderedJson kept,
                     const Ran& ran) {
    OrderedJson json{{"items", itemsJson(facts, params.root)}, {"kept", std::move(kept)}};
    addOutcome(json, ran);
    return json;
}

OrderedJson lose(const Services& services, Call& call, const LosingStep& step,
                 const LossParams& params) {
    std::vector<LostItem> lost;
    std::vector<String> notes;
    const Ran planned = services.runs.query(
        [&](const QueryRunner& run) {
            const Error error = step.plan({params.paths.begin(), params.paths.end()}, run, lost);
            notes = error ? notes : lostPropertyNotes(lost, run);
            return error;
        },
        optionsOf(call));
    if (!planned.isWell()) {
        return lossJson(params, {}, OrderedJson::array(), planned);
    }
    const KeptLosses kept({params.root, step.word, params.mayLose}, lost, std::move(notes));
    call.throwIfCancelled();
    ChangeFacts facts;
    const auto request = makeRequest(step.type, placeOf(params.root), params.paths);
    const Ran ran = runChange(
        services, call, {step.title, params.root, params.paths, changeColumnsOf(step.type)}, facts,
        [&](const RunOptions& options) { return services.runs.perform(request, options); });
    return lossJson(params, facts, kept.paths(), ran);
}

void addLossMethod(Server& server, const Services& services, const LosingStep& step) {
    server.dispatcher().add(change<LossParams>(
        step.method, decodeLoss, [services, step](Call& call, const LossParams& params) {
            return lose(services, call, step, params);
        }));
}

struct UndoParams {
    std::string root;
};

UndoParams decodeUndo(const JsonInput& params) {
    params.requireObject({"workingCopy"});
    return {readWorkingCopy(params)};
}

OrderedJson undoJson(const UndoStore::Restored& restored) {
    OrderedJson items = OrderedJson::array();
    for (const String& path : restored.restored) {
        items.push_back({{"path", toJson(path)}, {"action", "restored"}});
    }
    OrderedJson notRestored = OrderedJson::array();
    for (const UndoRefusal& refusal : restored.refused) {
        notRestored.push_back({{"path", toJson(refusal.path)},
                               {"reason", toJson(refusal.reason)},
                               {"beside", toJson(refusal.beside)}});
    }
    OrderedJson notes = OrderedJson::array();
    for (const String& note : restored.entry.notes) {
        notes.push_back(toJson(note));
    }
    const bool isAny = !restored.entry.id.isNil();
    return {{"step", isAny ? toJson(restored.entry.step) : OrderedJson()},
            {"items", std::move(items)},
            {"notRestored", std::move(notRestored)},
            {"notes", std::move(notes)}};
}

/// Puts back what the last step took.
OrderedJson undo(const Services& services, const Call& call, const UndoParams& params) {
    const UndoStore store;
    const std::vector<UndoEntry> entries = store.entries(params.root);
    std::vector<std::string> touched;
    for (const UndoItem& item : entries.empty() ? std::vector<UndoItem>() : entries.front().items) {
        touched.push_back(item.path.str());
    }
    UndoStore::Restored restored;
    Ran ran;
    if (!entries.empty()) {
        ran = services.copies.change(params.root, touched, call.stop(), [&] {
            restored = UndoStore().restoreLast(params.root);
            return Ran{nullptr, restored.error, {}};
        });
    }
    OrderedJson json = undoJson(restored);
    addOutcome(json, ran);
    return json;
}

} // namespace

void addLossMethods(Server& server, const Services& services) {
    addLossMethod(server, services,
                  {"change/remove", "Removing", "remove", RequestTypeRemove, lostByRemoval});
    addLossMethod(server, services,
                  {"change/revert", "Reverting", "revert", RequestTypeRevert, lostByRevert});
    server.dispatcher().add(change<UndoParams>(
        "change/undo", decodeUndo, [services](const Call& call, const UndoParams& params) {
            return undo(services, call, params);
        }));
}

} // namespace quen::tools::server
