#include "Host/Process/FileDescriptor.h"
#include "Host/TaskFailure.h"
#include "Host/WorkingCopyCleanup.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Faults/LeftBehind.h"
#include "Tests/Faults/RealClient.h"
#include "Tests/Faults/Running.h"
#include "Tests/Support/Trees.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <thread>

namespace quen::test {

namespace {

/// A repository that holds up every commit, and tells when it does. The client waits for it and
/// does not listen meanwhile.
class HeldUpCommits {
public:
    explicit HeldUpCommits(const Sandbox& sandbox)
        : hook_(sandbox.root() / "repository/hooks/pre-commit"),
          pipe_((sandbox.root() / "told").string()) {
        ::mkfifo(pipe_.c_str(), 0600);
        told_ = FileDescriptor(::open(pipe_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
        std::ofstream(hook_) << "#!/bin/sh\ntrap '' TERM\necho told >'" << pipe_
                             << "'\nexec /bin/sleep 60\n";
        ::chmod(hook_.c_str(), 0700);
    }
    bool waitForOne() const {
        pollfd told{told_.number(), POLLIN, 0};
        return ::poll(&told, 1, 20'000) == 1;
    }
    void stop() const { std::filesystem::remove(hook_); }

private:
    std::filesystem::path hook_;
    std::string pipe_;
    FileDescriptor told_;
};

QuenSourceControlOperationPtr operationOn(const Sandbox& sandbox, std::int32_t type,
                                          const String& file) {
    Request request;
    request.type = type;
    request.sourceTree = workingTree({.location = sandbox.workingCopy().string()});
    request.files = StringArray{file};
    request.options = {{QuenSourceControlRequestOptionMessage, "Why"}};
    return loadedProvider()->operationForRequest(request.make());
}

/// What a client that was killed in a commit leaves, and the way out.
TEST(CleanupTest, OfAWorkingCopyWhoseClientWasKilled) {
    const RealClient client;
    const Sandbox& sandbox = client.sandbox();
    const String file = (sandbox.workingCopy() / "src@1/a.c").string();
    sandbox.write("src@1/a.c", "one\n");
    sandbox.svn({"add", "-q", "src@1@"});
    const HeldUpCommits heldUp(sandbox);
    const LeftBehind left;
    RunLimits limits;
    limits.terminationGrace = std::chrono::milliseconds(50);
    const RunContext::Scope scope(RunContext::current().withLimits(limits));

    const auto commit = operationOn(sandbox, RequestTypeCommit, sandbox.workingCopy().string());
    std::thread running([&] { commit->run(); });
    ASSERT_TRUE(heldUp.waitForOne());
    commit->cancel();
    running.join();
    EXPECT_EQ(lineOf(commit->error()),
              "QuenSourceControlTaskErrorDomain -2 \"The operation was cancelled before it had "
              "finished.\" [The working copy may have been left locked. If it was, clean it up and "
              "try again.]");
    EXPECT_TRUE(mayHaveLeftLock(*commit));

    heldUp.stop();
    const auto second = operationOn(sandbox, RequestTypeCommit, sandbox.workingCopy().string());
    second->run();
    EXPECT_EQ(taskFailureOf(second->error()), TaskFailure::locked) << lineOf(second->error());
    EXPECT_FALSE(mayHaveLeftLock(*second));

    const auto cleanup = WorkingCopyCleanup::make(file);
    EXPECT_EQ(cleanup->arguments(),
              (StringArray{"cleanup", String(sandbox.workingCopy().string())}));
    cleanup->run();
    EXPECT_EQ(lineOf(cleanup->error()), "no error");

    const auto third = operationOn(sandbox, RequestTypeCommit, sandbox.workingCopy().string());
    third->run();
    EXPECT_EQ(lineOf(third->error()), "no error");
    EXPECT_FALSE(third->result().isNothing());
    EXPECT_EQ(left.since(), "");
}

TEST(CleanupTest, WhereThereIsNoWorkingCopyTheClientSaysSo) {
    const RealClient client;
    const String path = (client.sandbox().root() / "home").string();
    const auto cleanup = WorkingCopyCleanup::make(path);
    EXPECT_EQ(cleanup->arguments(), (StringArray{"cleanup", path}));
    cleanup->run();
    EXPECT_EQ(cleanup->error().code(), 155007) << lineOf(cleanup->error());
}

TEST(CleanupTest, TakesATopThatLooksPinnedForWhatItIs) {
    const ScratchDirectory directory;
    directory.write("wc@1/.svn/wc.db", "");
    directory.write("wc@1/src/a.c", "");
    const String top = directory.pathOf("wc@1");
    for (const char* const path : {"wc@1", "wc@1/", "wc@1/src", "wc@1/src/a.c", "wc@1/src/gone"}) {
        EXPECT_EQ(topOfWorkingCopy(directory.pathOf(path)), top) << path;
        EXPECT_EQ(WorkingCopyCleanup::make(directory.pathOf(path))->arguments(),
                  (StringArray{"cleanup", top.str() + "@"}))
            << path;
    }
    EXPECT_TRUE(topOfWorkingCopy(directory.path()).isNil());
    EXPECT_TRUE(topOfWorkingCopy(nullptr).isNil());
}

} // namespace

} // namespace quen::test
