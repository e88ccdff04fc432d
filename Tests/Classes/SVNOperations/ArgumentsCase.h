#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"
#include "Tests/Support/RequestBuilder.h"

#include <memory>
#include <optional>
#include <string_view>

namespace quen::test {

/// A request, and the whole argument list that a class must make of it without a complaint.
struct ArgumentsCase {
    std::string_view name;
    std::shared_ptr<SVNOperation> (*make)(const Request& request);
    Request request;
    /// Absent where none may be set.
    std::optional<StringArray> arguments;
};

/// For `ArgumentsCase::make`: a new operation of the class, initialised.
template <typename Class> std::shared_ptr<SVNOperation> a(const Request& request) {
    return makeOperation<Class>(request);
}

/// The same with an error that was there before, as a base's initialiser may leave one.
template <typename Class> std::shared_ptr<SVNOperation> aFailed(const Request& request) {
    auto operation = std::make_shared<Class>();
    operation->setError({"SomeDomain", 42});
    return operation->initWithRequest(request.make()) ? operation : nullptr;
}

inline void expectArguments(const ArgumentsCase& expected) {
    const HostRecorder recorder;
    const auto operation = expected.make(expected.request);
    ASSERT_NE(operation, nullptr);
    EXPECT_EQ(operation->arguments(), expected.arguments);
    EXPECT_EQ(operation->launchPath(), "/tools/svn");
    EXPECT_EQ(recorder.assertionFacts(), std::vector<AssertionFacts>());
}

/// A failed assertion with its place.
struct PlacedAssertion {
    String method;
    String file;
    int line;
    String format;
    std::vector<String> arguments;

    friend bool operator==(const PlacedAssertion& a, const PlacedAssertion& b) = default;
    friend void PrintTo(const PlacedAssertion& assertion, std::ostream* out) {
        *out << assertion.method << ' ' << assertion.file << ':' << assertion.line << " \""
             << assertion.format << "\" with " << testing::PrintToString(assertion.arguments);
    }
};

inline std::vector<PlacedAssertion> placedAssertions(const HostRecorder& recorder) {
    std::vector<PlacedAssertion> assertions;
    for (const MarlAssertionFailure& failure : recorder.assertions()) {
        assertions.push_back(
            {failure.method, failure.file, failure.line, failure.format, failure.arguments});
    }
    return assertions;
}

} // namespace quen::test
