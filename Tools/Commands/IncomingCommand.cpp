#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Commands/History/HistoryQuery.h"
#include "Tools/Commands/Places/ItemPlace.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Columns.h"
#include "Tools/Terminal/Pager.h"
#include "Tools/Terminal/Times.h"

#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    bool isFull = false;
    bool wantsPaths = false;
    std::string path = ".";
};

/// What is younger than the working copy.
class View : public HistoryView {
public:
    View(const Options& options, std::int64_t base)
        : options_(options), base_(base), palette_(options.common.palette()) {}

    void show(const HistoryEntry& entry) override {
        if (entry.commit.revision.value_or(0) <= base_) {
            return;
        }
        ++count_;
        if (options_.common.json) {
            records_.append(shortRecord(entry, options_.wantsPaths));
        } else if (options_.isFull || options_.wantsPaths) {
            text_ += (count_ == 1 ? "" : "\n") + fullText(entry, palette_, currentDate());
        } else {
            text_ += oneLine(entry, palette_, outputIsTerminal() ? outputColumns() : 0);
        }
    }

    bool flush() override {
        const bool isWatched = output_.write(text_);
        text_.clear();
        return isWatched;
    }

    void finish() {
        if (options_.common.json) {
            std::cout << jsonText(records_) << '\n';
        } else if (count_ == 0) {
            output_.write("Nothing new in the repository since revision " + std::to_string(base_) +
                          ".\n");
        } else {
            output_.write(
                palette_.paint(Style::heading, std::to_string(count_) +
                                                   (count_ == 1 ? " revision" : " revisions") +
                                                   " to update to") +
                "; `quen update` brings " + (count_ == 1 ? "it" : "them") + ".\n");
        }
    }

private:
    const Options& options_;
    const std::int64_t base_;
    const Palette palette_;
    PagedOutput output_;
    Array records_ = Array::empty();
    std::string text_;
    std::size_t count_ = 0;
};

int runIncomingCommand(Session& session, const Options& options) {
    const auto item = infoOf(options.path);
    const auto base = item ? item->revision : std::nullopt;
    if (!base) {
        return session
            .fail("\"" + printable(options.path) + "\" is not in a working copy that was updated.")
            .status;
    }
    HistoryQuery query;
    query.location = options.path;
    query.revisions = {"HEAD", std::to_string(*base)};
    query.wantsPaths = options.wantsPaths;
    View view(options, *base);
    const int status = showHistory(session, query, view);
    if (status == ExitSuccess) {
        view.finish();
    }
    return status;
}

} // namespace

void addIncomingCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("incoming", "Show what others have committed since the last update");
    command.flag("--full", options->isFull, "Show whole messages");
    command.flag("-v,--verbose", options->wantsPaths, "Also show the changed files");
    command.argument("PATH", options->path, "Path in a working copy (default: .)");
    runInSession<Options>(command, options, runIncomingCommand);
}

} // namespace quen::tools
