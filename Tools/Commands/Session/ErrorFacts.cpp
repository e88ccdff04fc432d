#include "Tools/Commands/Session/ErrorFacts.h"

#include "Host/Places/Locations.h"
#include "Host/Places/SettingsFile.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Session/ErrorTexts.h"
#include "Tools/Commands/Session/TypedNames.h"

#include <algorithm>
#include <iterator>

namespace quen::tools {

namespace {

template <typename Predicate>
ErrorFacts::Names localFiles(const ErrorFacts& facts, Predicate holds) {
    ErrorFacts::Names found;
    std::copy_if(facts.files.begin(), facts.files.end(), std::back_inserter(found),
                 [&](const std::string& name) { return !isRepositoryURL(name) && holds(name); });
    return found;
}

void addRequest(ErrorFacts& facts, const QuenSourceControlRequest* request) {
    if (request != nullptr) {
        facts.names = typedNames(*request);
        facts.files = typedFiles(*request);
        facts.requestType = request->type();
    }
    if (facts.names.empty()) {
        facts.names = facts.files = {"."};
    }
}

void addNumbers(ErrorFacts& facts, const Error& error) {
    constexpr std::int64_t notUnderVersionControl = -71;
    const Array* const codes = error.userInfo()[QuenSourceControlTaskErrorCodesKey].array();
    for (const Value& code : codes == nullptr ? Array() : *codes) {
        facts.numbers.insert(code.integer() == nullptr ? 0 : *code.integer());
    }
    if (error.domain() == QuenSourceControlTaskErrorDomain) {
        facts.numbers.insert(error.code());
    }
    facts.isOutside |=
        error.domain() == QuenSourceControlErrorDomain && error.code() == notUnderVersionControl;
}

} // namespace

ErrorFacts ErrorFacts::of(const Error& error, const QuenSourceControlRequest* request) {
    ErrorFacts facts;
    facts.failure = taskFailureOf(error);
    addRequest(facts, request);
    for (const Error& each : withUnderlyingErrors(error)) {
        addNumbers(facts, each);
    }
    return facts;
}

bool ErrorFacts::has(const std::vector<std::int64_t>& any) const {
    return std::any_of(any.begin(), any.end(),
                       [this](std::int64_t number) { return numbers.contains(number); });
}

ErrorFacts::Names ErrorFacts::filesOutside() const {
    return localFiles(*this, [](const std::string& name) { return topDirectoryOf(name).empty(); });
}

ErrorFacts::Names ErrorFacts::filesMissing() const {
    return localFiles(*this, [](const std::string& name) { return !isOnDisk(name); });
}

ErrorFacts::Names ErrorFacts::filesPresent() const {
    return localFiles(*this, isOnDisk);
}

} // namespace quen::tools
