#include "Tools/Commands/History/IgnoredRevisions.h"

#include "Foundation/Lines.h"
#include "Host/Places/Locations.h"
#include "Tools/Commands/Content/LineMap.h"
#include "Tools/Terminal/SafeText.h"

#include <charconv>
#include <fstream>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace quen::tools {

namespace {

/// A line on its way back through the history.
struct LineBehind {
    /// Of the file that is shown, from 0.
    std::size_t index = 0;
    /// Where it stood in an older text, from 1.
    std::int64_t line = 0;
};

/// The older text, as a revision; empty for the file as it stands here, or the youngest of a URL.
using Text = std::string;

class Passing {
public:
    Passing(Session& session, const SourceTree& source, const BlamedFile& file,
            const IgnoredRevisions& ignored, BlameLines& lines)
        : session_(session), source_(source), file_(file), ignored_(ignored), lines_(lines) {}

    int run() {
        const RevisionRange& revisions = file_.revisions;
        const Text shown = revisions.isRange() ? revisions.end : revisions.start;
        if (revisions.isRange()) {
            const std::string& start = revisions.start;
            std::from_chars(start.data(), start.data() + start.size(), first_);
        }
        for (std::size_t i = 0; i < lines_.count(); ++i) {
            wait(lines_.numbers()[i], shown, {i, static_cast<std::int64_t>(i) + 1});
        }
        while (status_ == ExitSuccess && !waiting_.empty()) {
            const auto youngest = waiting_.begin();
            const std::int64_t revision = youngest->first;
            const auto byText = std::move(youngest->second);
            waiting_.erase(youngest);
            pass(revision, byText);
        }
        return status_;
    }

private:
    using ByText = std::map<Text, std::vector<LineBehind>>;

    void wait(std::int64_t revision, const Text& text, LineBehind line) {
        if (ignored_.numbers.contains(revision)) {
            waiting_[revision][text].push_back(line);
        }
    }

    void pass(std::int64_t revision, const ByText& byText) {
        const std::string number = std::to_string(revision);
        const std::string before = std::to_string(revision - 1);
        // Blanks alone make no other line of one.
        const LineMap map = mapOf({"-x", "-w --ignore-eol-style", "-r", before + ":" + number});
        std::vector<LineBehind> behind;
        for (const auto& [text, lines] : byText) {
            const LineMap later = text == number ? LineMap("") : mapTo(number, text);
            for (const LineBehind& each : lines) {
                const auto there = later.sameLine(each.line);
                const auto line = there ? map.earlierLine(*there) : std::nullopt;
                if (line) {
                    behind.push_back({each.index, *line});
                } else {
                    const CommitFacts own = lines_.commitOf(each.index);
                    lines_.passOver(each.index, revision, own);
                }
            }
        }
        if (!behind.empty() && status_ == ExitSuccess) {
            give(revision, behind);
        }
    }

    /// What the lines were before the revision.
    void give(std::int64_t revision, const std::vector<LineBehind>& behind) {
        const std::string before = std::to_string(revision - 1);
        BlameLines older;
        status_ = readBlame(session_, blameRequest(source_, file_.path, {before, ""}), older);
        for (const LineBehind& each : behind) {
            const auto at = static_cast<std::size_t>(each.line - 1);
            if (status_ == ExitSuccess && at < older.count()) {
                const CommitFacts& commit = older.commitOf(at);
                const bool isInRange = older.numbers()[at] >= first_;
                lines_.passOver(each.index, revision, isInRange ? commit : CommitFacts());
                wait(isInRange ? older.numbers()[at] : noRevision, before, each);
            }
        }
    }

    /// From a text to that of an older revision.
    LineMap mapTo(const std::string& number, const Text& text) {
        return mapOf({"-r", text.empty() && isRepositoryURL(file_.path) ? number + ":HEAD"
                            : text.empty()                              ? number
                                                                        : number + ":" + text});
    }

    LineMap mapOf(const std::vector<std::string>& options) {
        std::vector<std::string> words = userOption(source_);
        words.insert(words.end(), {"diff", "--internal-diff"});
        words.insert(words.end(), options.begin(), options.end());
        const std::string place =
            isRepositoryURL(file_.path) ? file_.path : absolutePath(file_.path);
        std::string difference;
        if (status_ == ExitSuccess) {
            status_ = session_.streamClient(words, {place}, [&](std::string_view piece) {
                difference += piece;
                return true;
            });
        }
        return LineMap(difference);
    }

    Session& session_;
    const SourceTree& source_;
    const BlamedFile& file_;
    const IgnoredRevisions& ignored_;
    BlameLines& lines_;
    /// Lines that an ignored revision changed last, the youngest revision first.
    std::map<std::int64_t, ByText, std::greater<>> waiting_;
    /// What is older is not told of.
    std::int64_t first_ = 0;
    int status_ = ExitSuccess;
};

/// Adds what is to be ignored; false for what is not a number of a revision, or several.
bool take(std::string_view word, std::set<std::int64_t>& numbers) {
    const auto changes = parseChanges(word);
    for (const std::int64_t number : changes ? changes->numbers : std::vector<std::int64_t>()) {
        if (number < 1) {
            return false;
        }
        numbers.insert(number);
    }
    return changes.has_value();
}

} // namespace

std::string readIgnoredRevisions(const std::string& path, std::set<std::int64_t>& numbers) {
    std::ifstream file(path);
    if (!file) {
        return "\"" + path + "\" cannot be read.";
    }
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        const std::string_view word = trimmed(std::string_view(line).substr(0, line.find('#')));
        if (!word.empty() && !take(word, numbers)) {
            return path + ":" + std::to_string(number) + ": \"" + std::string(word) +
                   "\" is not a revision number.";
        }
    }
    return file.bad() ? "\"" + path + "\" cannot be read." : "";
}

void IgnoredRevisions::addTo(Subcommand& command) {
    command
        .option(
            "--ignore-rev", "REV",
            [this](const std::string& word) {
                return take(word, numbers) ? "" : "\"" + word + "\" is not a revision number.";
            },
            "Look behind revision REV; may be given several times")
        .repeatable();
    command
        .option(
            "--ignore-revs-file", "FILE",
            [this](const std::string& word) { return readIgnoredRevisions(word, numbers); },
            "Likewise for the revisions in a file, one a line; # begins a comment")
        .repeatable();
}

int passOverIgnored(Session& session, const SourceTree& source, const BlamedFile& file,
                    const IgnoredRevisions& ignored, BlameLines& lines) {
    return Passing(session, source, file, ignored, lines).run();
}

} // namespace quen::tools
