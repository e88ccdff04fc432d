#include "Classes/SVNOperations/SVNPropGetOperation.h"
#include "Classes/SVNOperations/SVNStatusOperation.h"
#include "Classes/SVNOperations/SVNTransfers.h"
#include "Classes/SVNOperations/SVNTreeEdits.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Host.h"
#include "Fuzz/Support/Input.h"
#include "Host/TaskErrors.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/RequestBuilder.h"
#include "Tests/Support/Trees.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>

namespace quen::fuzz {

using namespace test;

namespace {

using Make = QuenSourceControlTaskOperationPtr (*)();

template <typename Class> QuenSourceControlTaskOperationPtr make() {
    static const auto tree = workingTree({.location = "/w"});
    static const auto server = repository({.name = "server"});
    auto operation = std::make_shared<Class>();
    operation->initWithRequest(
        Request{.sourceTree = tree,
                .destination = "/w/b",
                .files = StringArray{"/w/a"},
                .options = {{QuenSourceControlRequestOptionIgnoreItem, "svn:ignore"}},
                .repositoryToAuthenticate = server}
            .make());
    return operation;
}

/// Those that translate differently, that read a report too, and that do neither.
constexpr std::array<Make, 5> makers{make<SVNUpdateOperation>, make<SVNMoveOperation>,
                                     make<SVNCopyOperation>, make<SVNStatusOperation>,
                                     make<SVNPropGetOperation>};
constexpr std::size_t moving = 1;

void requireOwnError(const Error& error, bool isMove) {
    constexpr std::array<std::int64_t, 4> codes{-20, -21, -60, -71};
    require(std::find(codes.begin(), codes.end(), error.code()) != codes.end(), "an unknown code");
    require(isMove || error.code() != -60, "another operation has the error of a move");
    const std::size_t facts = error.code() == -20 || error.code() == -21 ? 2 : 1;
    requireEqual(error.userInfo().count(), facts, "more facts than there are");
}

void requireError(const Error& error, bool isMove) {
    if (!error) {
        return;
    }
    require(!error.localizedDescription().isNil(), "an error without a description");
    if (error.domain() == QuenSourceControlErrorDomain) {
        requireOwnError(error, isMove);
    }
}

/// What the login shell says in front of a complaint changes nothing.
void requireNoticeIsDropped(Make make, const std::string& text) {
    const std::string notice =
        "Could not chdir to home directory /home/jane: No such file or directory\n";
    const Error alone = make()->errorFromErrorMessage(text);
    requireEqual(make()->errorFromErrorMessage(notice + text), alone, "a notice changes the error");
}

} // namespace

void run(FuzzInput input) {
    const unsigned which = input.byte() % makers.size();
    const unsigned end = input.byte();
    const std::string_view errors = input.rest();
    const bool isKilled = (end & 0x80) != 0;
    const int status = static_cast<int>(end & 3);
    const PlayedRun run{.output = "<report/>",
                        .errors = errors,
                        .exitStatus = isKilled ? std::nullopt : std::optional(status),
                        .signal = isKilled ? std::optional(9) : std::nullopt};
    const Outcome outcome = outcomeOf(makers.at(which)(), {run});
    requireError(outcome.error, which == moving);

    const bool isSilent = errors.find_first_not_of(" \t\r\n") == std::string_view::npos;
    const bool isAbsence = meansAbsentProperty(readClientMessage(errors).numbers);
    require(outcome.error || isAbsence || (!isKilled && status == 0), "a failure has no error");
    require(!outcome.error || !isSilent || isKilled || status != 0, "an error out of nothing");
    requireNoticeIsDropped(makers.at(which), std::string(errors));
}

} // namespace quen::fuzz
