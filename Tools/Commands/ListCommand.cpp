#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/ListedEntries.h"
#include "Tools/Commands/Places/EarlierRevisions.h"
#include "Tools/Commands/Session/ShowRecords.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Pager.h"
#include "Tools/Terminal/Times.h"

#include <iostream>
#include <memory>
#include <utility>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    RevisionRange revision;
    bool isDetailed = false;
    bool isDeep = false;
    bool isInLines = false;
    std::string path = ".";
};

/// What is printed of the entries, as they arrive.
class View {
public:
    explicit View(const Options& options) : options_(options), palette_(options.common.palette()) {}

    bool take(std::string_view piece) {
        reader_.take(piece);
        std::string text;
        for (const ListEntry& entry : reader_.takeFacts().entries) {
            text += textOf(entry);
        }
        if (isForScripts()) {
            return (std::cout << text).flush().good();
        }
        return output_.write(text);
    }

    Error finish() {
        const Error broken = reader_.finish();
        take("");
        return broken;
    }

    /// Ends the array of `--json`. What failed before there was anything has no result.
    void conclude(int status) const {
        if (isArray()) {
            std::cout << (!isFirst_ ? "]\n" : status == ExitSuccess ? "[]\n" : "null\n");
        }
    }

private:
    bool isArray() const { return options_.common.json && !options_.isInLines; }
    bool isForScripts() const { return options_.common.json || options_.isInLines; }

    std::string textOf(const ListEntry& entry) {
        if (isArray()) {
            return (std::exchange(isFirst_, false) ? "[" : ",") + jsonText(contractRecord(entry));
        }
        return (options_.isInLines    ? jsonText(entryRecord(entry))
                : options_.isDetailed ? detailedEntry(entry, palette_, now_)
                                      : nameOfEntry(entry, palette_)) +
               "\n";
    }

    bool isFirst_ = true;
    const Options& options_;
    const Palette palette_;
    const Date now_ = currentDate();
    ListFactsReader reader_;
    PagedOutput output_;
};

/// The provider lists one directory of the youngest revision; the client does the rest.
int stream(Session& session, const SourceTree& source, const Options& options,
           const Session::Taker& take) {
    if (!options.isDeep && !options.revision.isGiven()) {
        return session.stream(makeRequest(RequestTypeList, source, {clientPath(options.path)}),
                              "<lists/>", take);
    }
    std::vector<std::string> words = userOption(source);
    words.insert(words.end(), {"list", "--xml"});
    if (options.isDeep) {
        words.emplace_back("-R");
    }
    if (options.revision.isGiven()) {
        words.insert(words.end(), {"-r", options.revision.start});
    }
    const std::string place =
        isRepositoryURL(options.path) ? options.path : absolutePath(options.path);
    return session.streamClient(words, {place}, take);
}

int runListCommand(Session& session, const Options& asked) {
    const auto source = findSource(session, asked.path);
    if (!source) {
        return source.status();
    }
    const auto revision = resolveRevisions(session, *source, asked.path, asked.revision);
    if (!revision) {
        return revision.status();
    }
    Options options = asked;
    options.revision = *revision;
    View view(options);
    const int status =
        stream(session, *source, options, [&](std::string_view piece) { return view.take(piece); });
    const Error broken = view.finish();
    view.conclude(status);
    if (status == ExitSuccess && broken && std::cout) {
        session.tell(broken);
        return ExitFailure;
    }
    return status;
}

} // namespace

void addListCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("list", "List the entries of a directory in the repository");
    addRevisionOption(command, options->revision, false,
                      "Revision to list (default: BASE, or HEAD of a URL)");
    command.flag("-v,--verbose", options->isDetailed, "Also show revision, author, age and size");
    command.flag("-R,--recursive", options->isDeep, "Also list what the directories hold");
    command.flag("--jsonl", options->isInLines, "Print one JSON object per entry");
    command.argument("PATH", options->path, "Path or URL (default: .)");
    runInSession<Options>(command, options, runListCommand);
}

} // namespace quen::tools
