#pragma once

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlRequest.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quen {

/// Makes a request of one type:
///
///     auto request = makeRequest<RequestTypeCommit>()
///                        .tree(workingCopy, repository)
///                        .files({"/home/me/project"})
///                        .message("Why")
///                        .request();
///
/// What does not compile: an input that the type does not use, the same input twice, and `request`
/// while a required one is missing. Which type takes what is in Documentation/requests.md.
///
/// A builder is used up: each call moves it on.
template <RequestType type, std::uint32_t given = 0> class RequestBuilder {
public:
    RequestBuilder() : request_(std::make_shared<QuenSourceControlRequest>()) {
        request_->setType(type);
    }

    /// What the request is about. A repository for the authentication of types that need one is
    /// given along, or comes with `authenticatingAt`.
    auto tree(QuenSourceControlSourceTreePtr tree) && {
        request_->setSourceTree(std::move(tree));
        return std::move(*this).template with<RequestInput::sourceTree>();
    }
    auto tree(QuenSourceControlSourceTreePtr tree, QuenSourceControlRepositoryPtr repository) && {
        return std::move(*this).tree(std::move(tree)).authenticatingAt(std::move(repository));
    }
    auto authenticatingAt(QuenSourceControlRepositoryPtr repository) && {
        request_->setRepositoryToAuthenticate(std::move(repository));
        return std::move(*this).template with<RequestInput::repositoryToAuthenticate>();
    }
    auto destination(String destination) && {
        request_->setDestination(std::move(destination));
        return std::move(*this).template with<RequestInput::destination>();
    }
    auto files(const std::vector<std::string>& files) && {
        static_assert(uses(RequestInput::files) && !uses(RequestInput::oneFile),
                      "this type takes no files, or one alone, which is given with file()");
        request_->setFiles(StringArray(files.begin(), files.end()));
        return std::move(*this).template with<RequestInput::files>();
    }
    auto file(const std::string& file) && {
        constexpr RequestInput input =
            uses(RequestInput::oneFile) ? RequestInput::oneFile : RequestInput::files;
        request_->setFiles(StringArray{file});
        return std::move(*this).template with<input>();
    }
    auto startingRevision(String revision) && {
        request_->setStartingRevision(std::move(revision));
        return std::move(*this).template with<RequestInput::startingRevision>();
    }
    auto endingRevision(String revision) && {
        request_->setEndingRevision(std::move(revision));
        return std::move(*this).template with<RequestInput::endingRevision>();
    }
    auto message(const std::string& message) && {
        return std::move(*this).template option<RequestInput::message>(
            QuenSourceControlRequestOptionMessage, String(message));
    }
    auto sourceLocation(const std::string& location) && {
        return std::move(*this).template option<RequestInput::sourceLocation>(
            QuenSourceControlRequestOptionSourceLocation, String(location));
    }
    auto changedPaths(bool areWanted = true) && {
        return std::move(*this).template option<RequestInput::logOutputFilesChanged>(
            QuenSourceControlRequestOptionLogOutputFilesChanged, areWanted);
    }
    auto limit(std::int64_t records) && {
        return std::move(*this).template option<RequestInput::logOutputLimit>(
            QuenSourceControlRequestOptionLogOutputLimit, records);
    }
    auto stopOnCopy(bool stops = true) && {
        return std::move(*this).template option<RequestInput::logStopOnBranching>(
            QuenSourceControlRequestOptionLogStopOnBranching, stops);
    }
    auto revisionsArePegs(bool areThey = true) && {
        return std::move(*this).template option<RequestInput::supplyDirectRevision>(
            QuenSourceControlRequestOptionSupplyDirectRevision, areThey);
    }

    /// The request; never null.
    QuenSourceControlRequestPtr request() && {
        static_assert(isComplete(), "a required input is missing; see Documentation/requests.md");
        return std::move(request_);
    }

private:
    template <RequestType, std::uint32_t> friend class RequestBuilder;

    explicit RequestBuilder(QuenSourceControlRequestPtr request) : request_(std::move(request)) {}

    static constexpr const RequestFacts& facts() { return *requestFactsOf(type); }
    static constexpr std::uint32_t bit(RequestInput input) {
        return std::uint32_t{1} << static_cast<unsigned>(input);
    }
    static constexpr bool uses(RequestInput input) {
        return facts().checked.contains(input) || facts().alsoRequired.contains(input) ||
               facts().optional.contains(input);
    }
    static constexpr bool haveAll(const RequestInputs& inputs) {
        for (const RequestInput input : inputs) {
            if ((given & bit(input)) == 0) {
                return false;
            }
        }
        return true;
    }
    static constexpr bool isComplete() {
        return haveAll(facts().checked) && haveAll(facts().alsoRequired);
    }

    template <RequestInput input> auto with() && {
        static_assert(facts().isServed(), "no provider serves this type");
        static_assert(uses(input), "this type does not use the input");
        static_assert((given & bit(input)) == 0, "the input is given twice");
        return RequestBuilder<type, given | bit(input)>(std::move(request_));
    }
    template <RequestInput input> auto option(const String& key, Value value) && {
        Dictionary options = request_->options();
        options.set(key, std::move(value));
        request_->setOptions(std::move(options));
        return std::move(*this).template with<input>();
    }

    QuenSourceControlRequestPtr request_;
};

template <RequestType type> RequestBuilder<type> makeRequest() {
    return {};
}

} // namespace quen
