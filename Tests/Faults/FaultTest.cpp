#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Faults/ExpectedErrors.h"
#include "Tests/Faults/FaultyClient.h"
#include "Tests/Faults/LeftBehind.h"
#include "Tests/Faults/Running.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

/// Every kind of operation at once with one fault after the other.
class FaultTest : public testing::Test {
protected:
    /// `fault` is what FaultChild takes; it names the row too.
    void tryEveryKind(Tally& tally, const std::string& fault, const Verdict& verdict,
                      std::size_t width = 8) {
        client_.misbehave(fault);
        tryEveryKindAsItIs(tally, fault, verdict, width);
    }

    void tryEveryKindAsItIs(Tally& tally, const std::string& name, const Verdict& verdict,
                            std::size_t width = 8) {
        const auto start = std::chrono::steady_clock::now();
        for (const KindRun& run : runAll(kinds_, width)) {
            tally.count(name + ", " + run.kind->name, difference(run, verdict));
        }
        tally.countGroup();
        EXPECT_LT(std::chrono::steady_clock::now() - start, bound_) << name;
        EXPECT_EQ(left_.since(), "") << name;
        EXPECT_FALSE(client_.hasTemporaryFiles()) << name;
    }

    static std::string difference(const KindRun& run, const Verdict& verdict) {
        const std::string expected = expectedLine(*run.kind, verdict);
        const std::string actual = actualLine(*run.operation);
        return actual == expected
                   ? std::string()
                   : actual.substr(0, 500) + "\ninstead of\n" + expected.substr(0, 500);
    }

    std::chrono::seconds bound_{20};
    ScratchDirectory existing_;
    std::vector<OperationKind> kinds_ = operationKinds(existing_.path());
    FaultyClient client_;
    LeftBehind left_;
};

/// The reasons of the XML reader's engine.
constexpr std::int64_t badSyntax = 2;
constexpr std::int64_t noElement = 3;
constexpr std::int64_t badCharacter = 4;
constexpr std::int64_t partOfCharacter = 6;

Error silentFailure(int status) {
    return hostError(status, "The client failed with exit status " + std::to_string(status) +
                                 " and did not say why.");
}

TEST_F(FaultTest, ClientsThatCannotBeStarted) {
    struct Case {
        const char* name;
        void (FaultyClient::*arrange)() const;
        const char* reason;
    };
    constexpr std::array cases{
        Case{"missing", &FaultyClient::takeAway, "No such file or directory"},
        Case{"a dead link", &FaultyClient::replaceByDeadLink, "No such file or directory"},
        Case{"not executable", &FaultyClient::takeRightToRun, "Permission denied"},
        Case{"a directory", &FaultyClient::replaceByDirectory, "Permission denied"},
        Case{"no program", &FaultyClient::replaceByText, "Exec format error"}};
    Tally tally("Clients that cannot be started");
    for (const Case& each : cases) {
        (client_.*each.arrange)();
        tryEveryKindAsItIs(
            tally, each.name,
            {.interruption = hostError(TaskErrorCouldNotStart,
                                       "The client \"" + client_.path().str() +
                                           "\" could not be started: " + each.reason + ".")});
    }
}

TEST_F(FaultTest, EveryKindOfStatus) {
    Tally tally("Exit statuses");
    for (const int status : {0, 1, 2, 3, 64, 98, 126, 127, 128, 129, 137, 143, 192, 254, 255}) {
        const std::string number = std::to_string(status);
        tryEveryKind(
            tally, "exit:" + number,
            {.complaint = status == 0 ? Error() : silentFailure(status), .parserCode = noElement});
        tryEveryKind(tally, "say:" + number,
                     {.complaint = hostError(status, "errors"), .parserCode = badSyntax});
    }
}

TEST_F(FaultTest, EverySignalBeforeWithinAndAfterTheReport) {
    Tally tally("Signals");
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGILL, SIGTRAP, SIGABRT, SIGBUS, SIGFPE,
                             SIGKILL, SIGUSR1, SIGSEGV, SIGPIPE, SIGALRM, SIGTERM, SIGXFSZ}) {
        const std::string number = std::to_string(signal);
        const Error silent = hostError(128 + signal, "The client was ended by signal " + number +
                                                         " (" + strsignal(signal) + ").");
        tryEveryKind(tally, "die-before:" + number, {.complaint = silent, .parserCode = noElement});
        tryEveryKind(tally, "die-middle:" + number, {.complaint = silent, .parserCode = badSyntax});
        tryEveryKind(tally, "die-after:" + number,
                     {.complaint = hostError(128 + signal, "errors"), .parserCode = badSyntax});
    }
}

/// As FaultChild writes it.
std::string pattern(std::size_t mebibytes) {
    std::string bytes(mebibytes << 20U, '\0');
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        bytes[n] = static_cast<char>(n % 251);
    }
    return bytes;
}

std::string everyByte() {
    std::string bytes(256, '\0');
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        bytes[n] = static_cast<char>(n);
    }
    return bytes;
}

TEST_F(FaultTest, OutputOfEveryKind) {
    Tally tally("Outputs");
    tryEveryKind(tally, "garbage", {.parserCode = badCharacter});
    tryEveryKind(tally, "half-character", {.parserCode = partOfCharacter});
    tryEveryKind(tally, "zero-bytes", {.parserCode = badSyntax});
    tryEveryKind(tally, "drip",
                 {.complaint = hostError(0, everyByte()), .parserCode = badCharacter});
    tryEveryKind(tally, "both:10",
                 {.complaint = hostError(0, pattern(10)), .parserCode = badCharacter}, 4);
    tryEveryKind(tally, "flood:32", {.parserCode = badCharacter}, 4);
    tryEveryKind(tally, "terminal", {.parserCode = badSyntax});
    tryEveryKind(tally, "read-input", {.parserCode = badSyntax});
}

/// Of a client that was fooled about the terminal or its input the output would tell.
TEST_F(FaultTest, TheClientFindsNoTerminalAndNothingToRead) {
    const auto output = [&](const char* fault) {
        client_.misbehave(fault);
        const auto kind = std::find_if(kinds_.begin(), kinds_.end(), [](const OperationKind& each) {
            return each.name == "diff text";
        });
        const auto operation = operationOf(*kind);
        operation->run();
        return (*operation->result().array())[0]
            .dictionary()
            ->
            operator[](QuenSourceControlOperationContentKey)
            .stringValue();
    };
    EXPECT_EQ(output("terminal"), "no terminal: No such device or address\n");
    EXPECT_EQ(output("read-input"), "0 bytes\n");
}

TEST_F(FaultTest, AGigabyteForAQueryAndForAChange) {
    bound_ = std::chrono::seconds(60); // that much takes 21 s beside seven busy processes
    Tally tally("A gigabyte");
    std::erase_if(kinds_, [](const OperationKind& kind) {
        return kind.name != "status" && kind.name != "update";
    });
    tryEveryKind(tally, "flood:1024", {.parserCode = badCharacter}, 1);
}

TEST_F(FaultTest, StreamsThatAreClosedEarlyOrHeldOpen) {
    Tally tally("Streams");
    tryEveryKind(tally, "close-output:0", {.parserCode = noElement}, 32);
    tryEveryKind(tally, "close-output:1", {.complaint = silentFailure(1), .parserCode = noElement},
                 32);
    tryEveryKind(tally, "grandchild:0", {.parserCode = badSyntax, .leftOutputOpen = true}, 32);
    EXPECT_EQ(client_.leftProcesses().size(), kinds_.size()) << "that none of them was ended";
    client_.endLeftProcesses();
    tryEveryKind(tally, "grandchild:1", {.complaint = silentFailure(1), .parserCode = badSyntax},
                 32);
    client_.endLeftProcesses();
}

/// A report that comes in the smallest pieces is the report.
TEST_F(FaultTest, RightReportsByteByByte) {
    Tally tally("Right reports byte by byte");
    for (const OperationKind& kind : kinds_) {
        client_.prepare(".output", kind.output);
        client_.misbehave("propset=exit:0\npropdel=exit:0\nreplay:0");
        const std::vector<KindRun> whole = runAll({kind}, 1);
        client_.misbehave("propset=exit:0\npropdel=exit:0\nreplay-drip:0");
        const std::vector<KindRun> dripped = runAll({kind}, 1);
        std::string wrong = difference(dripped.front(), {});
        if (dripped.front().operation->result() != whole.front().operation->result()) {
            // A file's path is a new one each time.
            wrong += kind.reading == OutputUse::file ? "" : "another result";
        }
        if (!kind.output.empty() && dripped.front().operation->result().isNothing()) {
            wrong += "no result";
        }
        tally.count(kind.name, wrong);
    }
    tally.countGroup();
    EXPECT_EQ(left_.since(), "");
}

/// The edit that an ignore request ends with is not looked at, however it ends; but it ends.
TEST_F(FaultTest, TheEditOfAChain) {
    Tally tally("Edits of a chain");
    std::erase_if(kinds_,
                  [](const OperationKind& kind) { return kind.reading != OutputUse::chain; });
    client_.prepare(".output", "<properties><target path='.'><property name='svn:ignore'>a.c\nb.c\n"
                               "</property></target></properties>");
    for (const char* const fault :
         {"exit:0", "exit:1", "say:1", "die-before:9", "die-middle:11", "die-after:15", "drip",
          "both:10", "flood:32", "garbage", "close-output:0", "terminal"}) {
        tryEveryKind(tally, std::string("propset=") + fault + "\nreplay:0", {});
    }
}

// The client's own numbers

/// How many numbers each family of the client's library has, counted from its base.
struct Family {
    std::int64_t base;
    int count;
};

constexpr std::array families{
    Family{125000, 16}, Family{130000, 6},  Family{135000, 8},  Family{140000, 4},
    Family{145000, 3},  Family{150000, 11}, Family{155000, 43}, Family{160000, 70},
    Family{165000, 11}, Family{170000, 19}, Family{175000, 16}, Family{180000, 3},
    Family{185000, 6},  Family{190000, 6},  Family{195000, 25}, Family{200000, 44},
    Family{205000, 14}, Family{210000, 10}, Family{215000, 6},  Family{220000, 7},
    Family{225000, 1},  Family{230000, 5},  Family{235000, 3},  Family{240000, 14}};

constexpr std::array<std::int64_t, 6> absenceNumbers{155010, 160006, 160013,
                                                     170000, 195012, 200009};

bool isAbsence(std::int64_t number) {
    return std::find(absenceNumbers.begin(), absenceNumbers.end(), number) != absenceNumbers.end();
}

Error numbered(std::int64_t number) {
    Dictionary info{{NSLocalizedDescriptionKey, "The client says so"}};
    if (number == 170001 || number == 215004) {
        info.set(QuenSourceControlAuthenticationErrorTypeKey,
                 QuenSourceControlAuthenticationCredentialsIncorrect);
    }
    return {QuenSourceControlTaskErrorDomain, number, info};
}

TEST_F(FaultTest, EveryKnownNumber) {
    Tally tally("The client's numbers");
    const auto tryNumber = [&](std::int64_t number) {
        std::array<char, 64> line{};
        std::snprintf(line.data(), line.size(), "svn: E%06ld: The client says so\n",
                      static_cast<long>(number));
        client_.prepare(".errors", line.data());
        tryEveryKind(tally, "replay:1",
                     {.complaint = numbered(number),
                      .tellsOnlyOfAbsence = isAbsence(number),
                      .parserCode = noElement});
    };
    for (const std::int64_t systemNumber : {2, 13, 20, 28, 101, 110, 111, 113, 670002}) {
        tryNumber(systemNumber);
    }
    for (const Family& family : families) {
        for (int i = 0; i < family.count; ++i) {
            tryNumber(family.base + i);
        }
    }
}

TEST_F(FaultTest, AnAbsentPropertyIsAnAnswer) {
    Tally tally("The absent property");
    client_.prepare(".errors", "svn: warning: W200017: Property 'svn:ignore' not found on '.'\n"
                               "svn: E200000: A problem occurred; see other errors for details\n");
    tryEveryKind(tally, "replay:1", {.parserCode = noElement});
}

} // namespace

} // namespace quen::test
