#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Faults/LeftBehind.h"
#include "Tests/Faults/RealClient.h"
#include "Tests/Faults/Running.h"
#include "Tests/Support/Trees.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>

namespace quen::test {

namespace {

constexpr std::size_t threadCount = 8;

/// How many operations; fewer where each step is watched and takes longer.
std::size_t operationCount() {
    const char* const variable = std::getenv("QUEN_LOAD_OPERATIONS");
    return variable == nullptr ? 1000 : std::strtoul(variable, nullptr, 10);
}

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A result as text that can be compared: for an exported file what it holds, as each has a path
/// of its own.
std::string shown(const QuenSourceControlOperation& operation) {
    if (operation.error()) {
        return lineOf(operation.error());
    }
    if (operation.request()->type() != RequestTypeExportFile) {
        return testing::PrintToString(operation.result());
    }
    const Dictionary& record = *(*operation.result().array())[0].dictionary();
    const MarlFilePathPtr path = *record[QuenSourceControlOperationPathKey].filePath();
    return "file: " + textOf(path->pathString().str());
}

QuenSourceControlOperationPtr operationFor(const Request& request) {
    return loadedProvider()->operationForRequest(request.make());
}

/// A working copy in which several kinds of queries have something to tell, and its copies.
class LoadTest : public testing::Test {
protected:
    LoadTest() {
        sandbox_.write("a.c", "one\n");
        sandbox_.write("d0/b.c", "two\n");
        for (const char* const name : {"d1", "d2"}) {
            std::filesystem::create_directory(sandbox_.workingCopy() / name);
        }
        sandbox_.svn({"add", "-q", "a.c", "d0", "d1", "d2"});
        sandbox_.commit("First");
        sandbox_.write("a.c", "one\nand more\n");
        sandbox_.commit("Second");
        for (std::size_t i = 0; i < threadCount; ++i) {
            std::filesystem::copy(sandbox_.workingCopy(), copy(i),
                                  std::filesystem::copy_options::recursive);
        }
        sandbox_.write("a.c", "another\n");
        sandbox_.write("d0/new.c", "new\n");
    }

    std::filesystem::path copy(std::size_t number) const {
        return sandbox_.root() / ("copy" + std::to_string(number));
    }

    /// Requests that change nothing, of as many kinds as there are.
    std::vector<Request> queries() const {
        const auto tree = repository({.name = "r",
                                      .location = sandbox_.url("trunk"),
                                      .trunkLocation = sandbox_.url("trunk"),
                                      .branchesLocation = sandbox_.url("branches")});
        const String whole = sandbox_.workingCopy().string();
        const String file = (sandbox_.workingCopy() / "a.c").string();
        // The commits of the others do not show there.
        const String part = (sandbox_.workingCopy() / "d0").string();
        const auto query = [&](std::int32_t type, const String& target) {
            return Request{.type = type, .sourceTree = tree, .files = StringArray{target}};
        };
        std::vector<Request> queries{query(RequestTypeStatus, whole),
                                     query(RequestTypeRemoteStatus, part),
                                     query(RequestTypeInfo, file),
                                     query(RequestTypeLog, file),
                                     query(RequestTypeList, sandbox_.url("trunk/d0")),
                                     query(RequestTypeBlame, file),
                                     query(RequestTypeCurrentBranch, whole),
                                     query(RequestTypeExportFile, file),
                                     query(RequestTypeInfoCheck, file)};
        queries.push_back(query(RequestTypeDiff, file));
        queries.back().startingRevision = "2";
        queries.back().endingRevision = "3";
        return queries;
    }

    const RealClient client_;
    const Sandbox& sandbox_ = client_.sandbox();
};

/// Queries that go on beside the changes: each was run alone before, and must say the same again.
class Queries {
public:
    explicit Queries(std::vector<Request> requests) : requests_(std::move(requests)) {
        for (const Request& request : requests_) {
            const auto operation = operationFor(request);
            operation->run();
            alone_.push_back(shown(*operation));
        }
    }

    const std::vector<std::string>& alone() const { return alone_; }

    /// Adds another to the queue. From any thread.
    void addTo(OperationQueue& queue) {
        const std::lock_guard lock(mutex_);
        running_.push_back(operationFor(requests_[running_.size() % requests_.size()]));
        queue.addOperation(running_.back());
    }

    void check(Tally& tally) const {
        for (std::size_t i = 0; i < running_.size(); ++i) {
            const std::string now = shown(*running_[i]);
            const std::string& alone = alone_[i % alone_.size()];
            tally.count("query " + std::to_string(i),
                        now == alone ? "" : now + "\ninstead of\n" + alone);
        }
    }

private:
    std::vector<Request> requests_;
    std::vector<std::string> alone_;
    std::mutex mutex_;
    std::vector<QuenSourceControlOperationPtr> running_;
};

/// What is done to one working copy, one step after the other: the client admits one change to a
/// working copy at a time.
class Changes {
public:
    Changes(std::filesystem::path workingCopy, std::size_t number)
        : workingCopy_(std::move(workingCopy)), number_(std::to_string(number)) {}

    /// Does the next step; answers what went wrong.
    std::string doNext() {
        switch (done_++ % 5) {
        case 0: return add();
        case 1: return commit();
        case 2: return ignore();
        case 3: return makeDirectory();
        default: return revert();
        }
    }

    /// Names, the latest first: as the ignore list must hold them.
    std::string ignored() const { return ignored_; }
    const std::vector<std::string>& revisions() const { return revisions_; }
    const std::vector<std::string>& committed() const { return committed_; }
    const std::filesystem::path& workingCopy() const { return workingCopy_; }

private:
    QuenSourceControlOperationPtr run(std::int32_t type, const String& file,
                                      const String& destination = nullptr) const {
        Request request{.type = type,
                        .sourceTree = workingTree({.location = workingCopy_.string()}),
                        .destination = destination,
                        .files = StringArray{file}};
        if (type == RequestTypeCommit) {
            request.options = {{QuenSourceControlRequestOptionMessage, String("By " + number_)}};
        }
        auto operation = operationFor(request);
        operation->run();
        return operation;
    }
    std::string outcome(std::int32_t type, const String& file,
                        const String& destination = nullptr) const {
        const auto operation = run(type, file, destination);
        return operation->error() ? lineOf(operation->error()) : "";
    }

    String at(const std::string& name) const { return (workingCopy_ / name).string(); }
    std::string fresh(const char* what) const {
        return what + number_ + "-" + std::to_string(done_);
    }

    std::string add() {
        name_ = fresh("file");
        std::ofstream(workingCopy_ / name_) << name_;
        return outcome(RequestTypeAdd, at(name_));
    }
    std::string commit() {
        const auto operation = run(RequestTypeCommit, at(name_));
        const Array* const records = operation->result().array();
        if (operation->error() || records == nullptr || records->count() != 1) {
            return "no revision: " + lineOf(operation->error());
        }
        revisions_.push_back((*records)[0]
                                 .dictionary()
                                 ->
                                 operator[](QuenSourceControlOperationRevisionKey)
                                 .stringValue()
                                 .str());
        committed_.push_back(name_);
        return "";
    }
    std::string ignore() {
        const std::string name = fresh("name");
        ignored_ = name + "\n" + ignored_;
        return outcome(RequestTypeIgnore, at("d0/" + name));
    }
    std::string makeDirectory() {
        directory_ = fresh("directory");
        return outcome(RequestTypeMakeDirectory, at(directory_), at(directory_));
    }
    std::string revert() {
        const std::string wrong = outcome(RequestTypeRevert, at(directory_));
        std::filesystem::remove(workingCopy_ / directory_);
        return wrong;
    }

    const std::filesystem::path workingCopy_;
    const std::string number_;
    std::size_t done_ = 0;
    std::string name_;
    std::string directory_;
    std::string ignored_;
    std::vector<std::string> revisions_;
    std::vector<std::string> committed_;
};

/// One step on a queue; brings the next one to it, and queries to go on beside that.
class Step : public Operation {
public:
    struct Plan {
        std::vector<std::unique_ptr<Changes>> changes;
        Queries& queries;
        std::atomic<std::size_t> left;
        std::mutex mutex;
        std::vector<std::string> outcomes;
    };

    Step(Plan& plan, Changes& changes) : plan_(plan), changes_(changes) {}

    void main() override {
        std::string outcome = changes_.doNext();
        {
            const std::lock_guard lock(plan_.mutex);
            plan_.outcomes.push_back(std::move(outcome));
        }
        const OperationQueuePtr queue = OperationQueue::currentQueue();
        plan_.queries.addTo(*queue);
        if (plan_.left.fetch_sub(1) > threadCount) {
            queue->addOperation(std::make_shared<Step>(plan_, changes_));
        }
    }

private:
    Plan& plan_;
    Changes& changes_;
};

std::string ignoreListOf(const Sandbox& sandbox, const std::filesystem::path& directory) {
    return sandbox.svn({"propget", "svn:ignore", "--strict", directory.string()});
}

std::set<std::string> namesIn(const std::string& lines) {
    std::istringstream stream(lines);
    std::set<std::string> names;
    for (std::string line; std::getline(stream, line);) {
        names.insert(line);
    }
    return names;
}

TEST_F(LoadTest, AThousandOperationsOfManyKindsOnOneQueue) {
    Tally tally("Load");
    Queries queries(LoadTest::queries());
    for (const std::string& alone : queries.alone()) {
        EXPECT_EQ(alone.find("Domain"), std::string::npos) << alone;
    }
    const LeftBehind left;
    // Half of them are changes, and each change is followed by a query.
    Step::Plan plan{{}, queries, operationCount() / 2, {}, {}};
    const OperationQueuePtr queue = OperationQueue::make(threadCount);
    for (std::size_t i = 0; i < threadCount; ++i) {
        plan.changes.push_back(std::make_unique<Changes>(copy(i), i));
        queue->addOperation(std::make_shared<Step>(plan, *plan.changes.back()));
    }
    queue->waitUntilAllOperationsAreFinished();

    queries.check(tally);
    for (const std::string& outcome : plan.outcomes) {
        tally.count("change", outcome);
    }
    EXPECT_EQ(plan.outcomes.size(), operationCount() / 2);
    std::set<std::string> revisions;
    std::set<std::string> committed{"a.c", "d0/", "d1/", "d2/"};
    std::size_t commits = 0;
    for (const auto& changes : plan.changes) {
        tally.countGroup();
        commits += changes->revisions().size();
        revisions.insert(changes->revisions().begin(), changes->revisions().end());
        if (!changes->ignored().empty()) {
            EXPECT_EQ(ignoreListOf(sandbox_, changes->workingCopy() / "d0"), changes->ignored());
        }
        committed.insert(changes->committed().begin(), changes->committed().end());
    }
    EXPECT_EQ(namesIn(sandbox_.svn({"list", sandbox_.url("trunk")})), committed);
    // Three before: the layout and two commits.
    EXPECT_EQ(revisions.size(), commits);
    EXPECT_EQ(sandbox_.svn({"info", "--show-item", "revision", "--no-newline", sandbox_.url()}),
              std::to_string(3 + commits));
    EXPECT_EQ(left.since(), "");
}

/// The chains wait on queues of their own; each edits three directories of a working copy.
TEST_F(LoadTest, IgnoringFromManyThreadsAtOnce) {
    Tally tally("Ignoring from many threads");
    const LeftBehind left;
    std::vector<std::vector<std::string>> outcomes(threadCount);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            for (const char* const directory : {"d0", "d1", "d2"}) {
                const std::string at = (copy(i) / directory).string() + "/";
                for (const auto& [type, names] :
                     {std::pair{RequestTypeIgnore, StringArray{at + "a", at + "b", at + "c"}},
                      std::pair{RequestTypeUnignore, StringArray{at + "b"}}}) {
                    const auto operation =
                        operationFor({.type = type,
                                      .sourceTree = workingTree({.location = copy(i).string()}),
                                      .files = names});
                    operation->run();
                    outcomes[i].push_back(operation->error() ? lineOf(operation->error()) : "");
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t i = 0; i < threadCount; ++i) {
        tally.countGroup();
        for (const std::string& outcome : outcomes[i]) {
            tally.count("thread " + std::to_string(i), outcome);
        }
        for (const char* const directory : {"d0", "d1", "d2"}) {
            EXPECT_EQ(ignoreListOf(sandbox_, copy(i) / directory), "c\na\n");
        }
    }
    EXPECT_EQ(left.since(), "");
}

} // namespace

} // namespace quen::test
