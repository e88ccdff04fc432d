#include "Host/Credentials/Secret.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace quen::test {

namespace {

/// The line of flags of the mapping that holds an address.
std::string flagsOfMemoryAt(const void* address) {
    std::ifstream maps("/proc/self/smaps");
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    std::string line;
    bool isThere = false;
    while (std::getline(maps, line)) {
        unsigned long begin = 0;
        unsigned long end = 0;
        if (std::sscanf(line.c_str(), "%lx-%lx ", &begin, &end) == 2) {
            isThere = begin <= wanted && wanted < end;
        } else if (isThere && line.starts_with("VmFlags:")) {
            return line + " ";
        }
    }
    return {};
}

/// Whether a page of this process is still mapped.
bool isMapped(const void* address) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto start = reinterpret_cast<std::uintptr_t>(address) / page * page;
    std::ifstream maps("/proc/self/maps");
    std::string line;
    while (std::getline(maps, line)) {
        unsigned long begin = 0;
        unsigned long end = 0;
        std::sscanf(line.c_str(), "%lx-%lx ", &begin, &end);
        if (begin <= start && start < end) {
            return true;
        }
    }
    return false;
}

TEST(SecretTest, KeepsWhatItIsGivenHoweverLong) {
    std::string text;
    Secret secret;
    EXPECT_TRUE(secret.isEmpty());
    for (int i = 0; i < 20000; ++i) {
        text += static_cast<char>(i);
        secret.append(static_cast<char>(i));
    }
    EXPECT_EQ(secret.view(), text);
    secret.removeLast();
    text.pop_back();
    EXPECT_EQ(secret.view(), text);
}

TEST(SecretTest, IsLeftOutOfCoreFilesAndCopiesOfTheProcess) {
    const Secret secret("wonder land");
    const std::string flags = flagsOfMemoryAt(secret.view().data());
    EXPECT_NE(flags.find(" dd "), std::string::npos) << flags;
    EXPECT_NE(flags.find(" wf "), std::string::npos) << flags;
}

TEST(PreventCoreFilesTest, CountsForThisProcessAndThoseThatItStarts) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        preventCoreFiles();
        rlimit limit{};
        const bool isPrevented = getrlimit(RLIMIT_CORE, &limit) == 0 && limit.rlim_cur == 0 &&
                                 prctl(PR_GET_DUMPABLE) == 0;
        _exit(isPrevented ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(prctl(PR_GET_DUMPABLE), 1) << "it was not so before";
}

TEST(SecretTest, IsGivenBackWithItsMemory) {
    const char* bytes = nullptr;
    {
        const Secret secret("wonder land");
        bytes = secret.view().data();
        EXPECT_TRUE(isMapped(bytes));
    }
    EXPECT_FALSE(isMapped(bytes));
}

TEST(SecretTest, MovesWithoutACopy) {
    Secret secret("wonder land");
    const char* const bytes = secret.view().data();
    const Secret moved = std::move(secret);
    EXPECT_EQ(moved.view().data(), bytes);
}

TEST(SecretTest, ClearsTheTextThatItIsTakenFrom) {
    for (const std::string& text : {std::string("short"), std::string(100, 'x')}) {
        std::string taken = text;
        const char* const bytes = taken.data();
        const Secret secret = Secret::takenFrom(taken);
        EXPECT_EQ(secret.view(), text);
        EXPECT_TRUE(taken.empty());
        EXPECT_EQ(taken.data(), bytes);
        EXPECT_EQ(std::count(bytes, bytes + text.size(), '\0'),
                  static_cast<std::ptrdiff_t>(text.size()));
    }
}

struct Line {
    std::string sent;
    std::optional<std::string> read;
    std::string rest = "";
};

TEST(SecretTest, ReadsOneLineAndNoMore) {
    std::string endless(65536, 'x');
    endless.push_back('\n');
    const std::vector<Line> lines{{"wonder land\nmore", "wonder land", "more"},
                                  {"wonder land", "wonder land"},
                                  {"\nmore", "", "more"},
                                  {"", std::nullopt},
                                  {endless, std::nullopt, "\n"}};
    for (const Line& line : lines) {
        std::array<int, 2> ends{};
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
        ASSERT_TRUE(writeAll(ends[0], line.sent));
        close(ends[0]);
        const auto secret = readSecretLine(ends[1]);
        ASSERT_EQ(secret.has_value(), line.read.has_value()) << line.sent.substr(0, 20);
        if (secret) {
            EXPECT_EQ(secret->view(), *line.read);
        }
        std::string rest(line.rest.size() + 1, '\0');
        rest.resize(static_cast<std::size_t>(read(ends[1], rest.data(), rest.size())));
        EXPECT_EQ(rest, line.rest);
        close(ends[1]);
    }
}

} // namespace

} // namespace quen::test
