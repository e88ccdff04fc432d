#include "Tools/Commands/History/GraphQuery.h"

#include "Tools/Commands/History/HistoryQuery.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace quen::tools {

namespace {

/// The first lines are to be there soon.
constexpr std::int64_t firstPage = 100;
constexpr std::int64_t laterPage = 1000;
/// What is read beyond a limit, so that it is known where lines lead to.
constexpr std::int64_t beyondLimit = 50;
constexpr std::size_t mostHeldBack = 2000;

class Page : public HistoryView {
public:
    void show(const HistoryEntry& entry) override { entries.push_back(entry); }
    bool flush() override { return true; }

    std::vector<HistoryEntry> entries;
};

class GraphReader {
public:
    GraphReader(Session& session, const SourceTree& source, const ProjectLayout& layout,
                const GraphQuery& query, const GraphTaker& take)
        : session_(session), source_(source), layout_(layout), query_(query), take_(take),
          queue_(query.needsParents ? std::numeric_limits<std::size_t>::max() : mostHeldBack,
                 query.needsParents),
          left_(query.limit > 0 ? query.limit : -1) {}

    int read() {
        const bool isCounted = query_.limit > 0 && !query_.filter.isGiven();
        std::int64_t size = isCounted ? std::min(query_.limit + beyondLimit, laterPage) : firstPage;
        std::string start = "HEAD";
        bool wantsMore = true;
        while (wantsMore) {
            Page page;
            if (const int status = readPage(start, size, page); status != ExitSuccess) {
                return status;
            }
            const bool isLast = page.entries.size() < static_cast<std::size_t>(size);
            if (!isLast) {
                // The next page begins with it: it is where there surely is something.
                start = std::to_string(page.entries.back().commit.revision.value_or(1));
                page.entries.pop_back();
            }
            addMerged(page.entries);
            wantsMore = handOver(std::move(page.entries), isLast) && !isLast;
            size = laterPage;
        }
        return status_;
    }

private:
    int readPage(const std::string& start, std::int64_t size, Page& page) {
        HistoryQuery query;
        query.location = layout_.url();
        const auto& since = query_.filter.since;
        query.revisions = {start, since ? revisionAt(*since) : "1"};
        query.limit = size;
        query.wantsPaths = true;
        return showHistory(session_, query, page);
    }

    /// Of several revisions at once, and of each alone: the client leaves out of a whole history
    /// what it has told of before.
    void addMerged(std::vector<HistoryEntry>& entries) {
        std::vector<std::string> words = userOption(source_);
        words.insert(words.end(), {"log", "--xml", "-q", "-v", "-g"});
        const std::size_t count = words.size();
        for (const HistoryEntry& entry : entries) {
            if (mayBeMerge(entry, layout_)) {
                words.insert(words.end(),
                             {"-c", std::to_string(entry.commit.revision.value_or(0))});
            }
        }
        if (words.size() == count || status_ != ExitSuccess) {
            return;
        }
        HistoryReader reader([&](const HistoryEntry& merge) {
            for (HistoryEntry& entry : entries) {
                if (entry.commit.revision == merge.commit.revision) {
                    entry.merged = merge.merged;
                }
            }
        });
        status_ = session_.streamClient(words, {layout_.url()}, [&](std::string_view piece) {
            reader.take(piece);
            return true;
        });
        if (status_ == ExitSuccess && reader.finish()) {
            status_ = ExitFailure;
        }
        if (status_ != ExitSuccess) {
            session_.tell("The server did not tell of merges; they are left out.");
        }
    }

    bool handOver(std::vector<HistoryEntry> entries, bool isLast) {
        for (HistoryEntry& entry : entries) {
            queue_.add(graphNode(std::move(entry), layout_));
        }
        if (isLast) {
            queue_.end();
        }
        while (auto node = queue_.take()) {
            const bool isShown = query_.filter.admits(node->entry);
            left_ -= isShown && left_ > 0 ? 1 : 0;
            const auto nextOn = [this](const std::string& branch) { return queue_.nextOn(branch); };
            if (!take_(*node, isShown, nextOn) || left_ == 0) {
                return false;
            }
        }
        return true;
    }

    Session& session_;
    const SourceTree& source_;
    const ProjectLayout& layout_;
    const GraphQuery& query_;
    const GraphTaker& take_;
    GraphQueue queue_;
    std::int64_t left_;
    int status_ = ExitSuccess;
};

} // namespace

int readGraph(Session& session, const SourceTree& source, const ProjectLayout& layout,
              const GraphQuery& query, const GraphTaker& take) {
    return GraphReader(session, source, layout, query, take).read();
}

} // namespace quen::tools
