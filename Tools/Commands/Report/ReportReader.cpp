#include "Tools/Commands/Report/ReportReader.h"

#include "Foundation/PercentCoding.h"
#include "Host/Facts/ListFacts.h"
#include "Host/Places/Locations.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/History/HistoryQuery.h"
#include "Tools/Commands/Report/HistoryCollector.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/Progress.h"

#include <algorithm>
#include <numeric>
#include <set>

namespace quen::tools {

namespace {

class Reader {
public:
    Reader(Session& session, const SourceTree& source, const ReportLimits& limits)
        : session_(session), source_(source), limits_(limits), layout_(source),
          collector_(layout_, limits_, facts_) {
        if (canShowProgress()) {
            progress_.emplace();
        }
    }

    Outcome<ReportFacts> read() {
        facts_.url = layout_.url();
        const std::size_t slash = facts_.url.rfind('/');
        facts_.title = percentDecoded(facts_.url.substr(slash + 1));
        for (const auto part : {&Reader::readHistory, &Reader::readFiles}) {
            if (const int status = (this->*part)(); status != ExitSuccess) {
                return Explained{status};
            }
        }
        readMerges();
        readAges();
        return InterruptWatch::wasInterrupted()
                   ? Outcome<ReportFacts>(session_.fail("Interrupted.", ExitInterrupted))
                   : Outcome<ReportFacts>(std::move(facts_));
    }

private:
    class Collecting : public HistoryView {
    public:
        explicit Collecting(Reader& reader) : reader_(reader) {}
        void show(const HistoryEntry& entry) override {
            wantsMore_ = reader_.collector_.add(entry);
        }
        bool flush() override {
            reader_.tell("Reading the log", reader_.facts_.revisions.size());
            return wantsMore_;
        }

    private:
        Reader& reader_;
        bool wantsMore_ = true;
    };

    void tell(const std::string& doing, std::size_t items) {
        if (progress_) {
            progress_->show(doing, items);
        }
    }

    int readHistory();
    int readFiles();
    void readMerges();
    void readAges();
    void addMerge(const HistoryEntry& entry);
    ReportIndex branchOf(std::int64_t revision) const;
    std::vector<std::string> filesToBlame() const;
    void blame(const std::string& path);

    Session& session_;
    const SourceTree& source_;
    const ReportLimits& limits_;
    const ProjectLayout layout_;
    ReportFacts facts_;
    HistoryCollector collector_;
    /// Of the files in the trunk, below the project.
    std::map<std::string, std::int64_t> sizes_;
    std::optional<Progress> progress_;
};

int Reader::readHistory() {
    HistoryQuery query;
    query.location = layout_.url();
    query.wantsPaths = true;
    // One more shows whether there is more.
    query.limit = limits_.revisions + 1;
    Collecting view(*this);
    const int status = showHistory(session_, query, view);
    collector_.finish();
    return status;
}

/// Without a trunk all of the project's files are taken.
int Reader::readFiles() {
    const bool hasTrunk = std::any_of(facts_.revisions.begin(), facts_.revisions.end(),
                                      [](const ReportRevision& each) { return each.branch == 0; });
    const bool isGone = facts_.branches.front().deleted.has_value();
    const bool listsTrunk = hasTrunk && !isGone;
    std::vector<std::string> words = userOption(source_);
    words.insert(words.end(), {"list", "--xml", "-R"});
    ListFactsReader reader;
    const std::string beginning = listsTrunk ? layout_.shortened(layout_.trunk()) + "/" : "";
    const int status = session_.streamClient(
        words, {listsTrunk ? layout_.trunkURL() : layout_.url()}, [&](std::string_view piece) {
            reader.take(piece);
            for (const ListEntry& entry : reader.takeFacts().entries) {
                if (entry.kind == "file") {
                    sizes_.emplace(beginning + entry.name.str(), entry.size.value_or(0));
                }
            }
            tell("Listing files", sizes_.size());
            return true;
        });
    const Error broken = reader.finish();
    facts_.files = sizes_.size();
    if (status == ExitSuccess && broken) {
        session_.tell(broken);
        return ExitFailure;
    }
    return status;
}

ReportIndex Reader::branchOf(std::int64_t revision) const {
    const auto found = std::lower_bound(
        facts_.revisions.begin(), facts_.revisions.end(), revision,
        [](const ReportRevision& one, std::int64_t number) { return one.number > number; });
    return found != facts_.revisions.end() && found->number == revision ? found->branch : nowhere;
}

/// Each branch among what the revision brought was merged.
void Reader::addMerge(const HistoryEntry& entry) {
    const std::int64_t revision = entry.commit.revision.value_or(0);
    const ReportIndex into = branchOf(revision);
    std::map<ReportIndex, std::int64_t> lasts;
    for (const HistoryEntry& brought : entry.merged) {
        const std::int64_t number = brought.commit.revision.value_or(0);
        const ReportIndex from = branchOf(number);
        if (from != nowhere && from != into) {
            lasts[from] = std::max(lasts[from], number);
        }
    }
    for (const auto& [from, last] : lasts) {
        facts_.merges.push_back({revision, into, from, last});
    }
}

void Reader::readMerges() {
    std::vector<std::int64_t> candidates = collector_.mergeCandidates();
    if (candidates.size() > limits_.merges) {
        facts_.leftOut.push_back("Merges before r" +
                                 std::to_string(candidates[limits_.merges - 1]) + ".");
        candidates.resize(limits_.merges);
    }
    if (candidates.empty()) {
        return;
    }
    tell("Looking for merges", candidates.size());
    std::vector<std::string> words = userOption(source_);
    words.insert(words.end(), {"log", "--xml", "-q", "-g"});
    for (const std::int64_t candidate : candidates) {
        words.insert(words.end(), {"-c", std::to_string(candidate)});
    }
    HistoryReader reader([this](const HistoryEntry& entry) { addMerge(entry); });
    const int status = session_.streamClient(words, {layout_.url()}, [&](std::string_view piece) {
        reader.take(piece);
        return true;
    });
    if (status != ExitSuccess || reader.finish()) {
        facts_.leftOut.emplace_back("Some merges: the server did not tell of them.");
    }
}

/// Those that change most, then others, as many as may be looked at.
std::vector<std::string> Reader::filesToBlame() const {
    std::vector<std::size_t> order(facts_.paths.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [this](std::size_t one, std::size_t other) {
        return collector_.changeCounts()[one] > collector_.changeCounts()[other];
    });
    std::vector<std::string> files;
    std::set<std::string> seen;
    const auto take = [&](const std::string& path) {
        const auto size = sizes_.find(path);
        const bool isFit = size != sizes_.end() && size->second <= limits_.blamedSize;
        if (isFit && files.size() < limits_.blamedFiles && seen.insert(path).second) {
            files.push_back(path);
        }
    };
    for (const std::size_t index : order) {
        take(facts_.paths[index]);
    }
    for (const auto& [path, size] : sizes_) {
        take(path);
    }
    return files;
}

std::string urlBelow(const std::string& url, const std::string& path) {
    return url + "/" + percentEncoded(path, "/-._~!$&'()*+,;=:");
}

/// A file that is not text has no lines, and one that cannot be read none either.
void Reader::blame(const std::string& path) {
    ReportAges ages{path, {}};
    BlameReader reader([&](const CommitFacts& line) {
        if (line.revision) {
            ++ages.lines[*line.revision];
        }
    });
    const auto request =
        makeRequest(RequestTypeBlame, source_, {clientPath(urlBelow(layout_.url(), path))});
    session_.stream(
        request, "<blame/>",
        [&](std::string_view piece) {
            reader.take(piece);
            return true;
        },
        true);
    if (!reader.finish() && !ages.lines.empty()) {
        facts_.ages.push_back(std::move(ages));
    }
}

void Reader::readAges() {
    const std::vector<std::string> files = filesToBlame();
    for (const std::string& path : files) {
        if (InterruptWatch::wasInterrupted()) {
            return;
        }
        tell("Reading ages of " + path, facts_.ages.size());
        blame(path);
    }
    if (facts_.ages.size() < facts_.files) {
        facts_.leftOut.push_back(
            "The age of lines of " + std::to_string(facts_.files - facts_.ages.size()) + " of " +
            counted(facts_.files, "file") +
            ": the files that change most come first, --blame N takes N of them, and files without "
            "text or above 1 MB have none.");
    }
}

} // namespace

Outcome<ReportFacts> readReport(Session& session, const SourceTree& source,
                                const ReportLimits& limits) {
    return Reader(session, source, limits).read();
}

} // namespace quen::tools
