#include "Tests/Faults/Running.h"

#include "QuenFoundation/QuenSourceControlConstants.h"

#include <gtest/gtest.h>
#include <iostream>

namespace quen::test {

RunsOfAllKinds startAll(const std::vector<OperationKind>& kinds, std::size_t width) {
    RunsOfAllKinds all{{}, OperationQueue::make(width)};
    for (const OperationKind& kind : kinds) {
        all.runs.push_back({&kind, operationOf(kind)});
    }
    for (const KindRun& run : all.runs) {
        all.queue->addOperation(run.operation);
    }
    return all;
}

std::vector<KindRun> runAll(const std::vector<OperationKind>& kinds, std::size_t width) {
    RunsOfAllKinds all = startAll(kinds, width);
    all.queue->waitUntilAllOperationsAreFinished();
    return std::move(all.runs);
}

void Tally::count(const std::string& what, const std::string& wrong) {
    ++tried_;
    if (wrong.empty()) {
        ++passed_;
    } else {
        ADD_FAILURE() << name_ << ", " << what << ": " << wrong;
    }
}

Tally::~Tally() {
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start_;
    testing::Test::RecordProperty("groups", groups_);
    testing::Test::RecordProperty("tried", tried_);
    testing::Test::RecordProperty("passed", passed_);
    std::cout << name_ << ": " << groups_ << " groups, " << tried_ << " runs, " << passed_
              << " as they should, " << static_cast<int>(time.count() * 1000) << " ms\n";
}

std::string lineOf(const Error& error) {
    if (!error) {
        return "no error";
    }
    const Dictionary& info = error.userInfo();
    std::string line = error.domain().str() + " " + std::to_string(error.code()) + " \"" +
                       error.localizedDescription().str() + "\"";
    for (const String& key :
         {NSLocalizedRecoverySuggestionErrorKey, QuenSourceControlAuthenticationErrorTypeKey}) {
        if (!info[key].isNothing()) {
            line += " [" + info[key].stringValue().str() + "]";
        }
    }
    const Value& causes = info[QuenSourceControlUnderlyingErrorsKey];
    if (causes.error() != nullptr) {
        line += " because of " + lineOf(*causes.error());
    }
    if (causes.array() != nullptr) {
        for (const Value& cause : *causes.array()) {
            line += " because of " + (cause.error() == nullptr ? "?" : lineOf(*cause.error()));
        }
    }
    return line;
}

} // namespace quen::test
