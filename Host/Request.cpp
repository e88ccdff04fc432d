#include "QuenFoundation/QuenSourceControlRequest.h"

#include <utility>

namespace quen {

struct QuenSourceControlRequest::State {
    std::int32_t type = 0;
    QuenSourceControlSourceTreePtr sourceTree;
    String destination;
    std::optional<StringArray> files;
    Dictionary options;
    String startingRevision;
    String endingRevision;
    QuenSourceControlRepositoryPtr repositoryToAuthenticate;
};

QuenSourceControlRequest::QuenSourceControlRequest() : state_(std::make_unique<State>()) {}

QuenSourceControlRequest::~QuenSourceControlRequest() = default;

void QuenSourceControlRequest::initWithType(std::int32_t type,
                                            QuenSourceControlSourceTreePtr sourceTree,
                                            String destination, std::optional<StringArray> files,
                                            Dictionary options) {
    *state_ = State{};
    state_->type = type;
    state_->sourceTree = std::move(sourceTree);
    state_->destination = std::move(destination);
    state_->files = std::move(files);
    state_->options = std::move(options);
}

void QuenSourceControlRequest::initWithType(std::int32_t type,
                                            QuenSourceControlSourceTreePtr sourceTree,
                                            std::optional<StringArray> files, Dictionary options) {
    initWithType(type, std::move(sourceTree), String(), std::move(files), std::move(options));
}

std::int32_t QuenSourceControlRequest::type() const {
    return state_->type;
}

void QuenSourceControlRequest::setType(std::int32_t type) {
    state_->type = type;
}

QuenSourceControlSourceTreePtr QuenSourceControlRequest::sourceTree() const {
    return state_->sourceTree;
}

void QuenSourceControlRequest::setSourceTree(QuenSourceControlSourceTreePtr sourceTree) {
    state_->sourceTree = std::move(sourceTree);
}

String QuenSourceControlRequest::destination() const {
    return state_->destination;
}

void QuenSourceControlRequest::setDestination(String destination) {
    state_->destination = std::move(destination);
}

const std::optional<StringArray>& QuenSourceControlRequest::files() const {
    return state_->files;
}

void QuenSourceControlRequest::setFiles(std::optional<StringArray> files) {
    state_->files = std::move(files);
}

const Dictionary& QuenSourceControlRequest::options() const {
    return state_->options;
}

void QuenSourceControlRequest::setOptions(Dictionary options) {
    state_->options = std::move(options);
}

String QuenSourceControlRequest::startingRevision() const {
    return state_->startingRevision;
}

void QuenSourceControlRequest::setStartingRevision(String revision) {
    state_->startingRevision = std::move(revision);
}

String QuenSourceControlRequest::endingRevision() const {
    return state_->endingRevision;
}

void QuenSourceControlRequest::setEndingRevision(String revision) {
    state_->endingRevision = std::move(revision);
}

QuenSourceControlRepositoryPtr QuenSourceControlRequest::repositoryToAuthenticate() const {
    return state_->repositoryToAuthenticate;
}

void QuenSourceControlRequest::setRepositoryToAuthenticate(
    QuenSourceControlRepositoryPtr repository) {
    state_->repositoryToAuthenticate = std::move(repository);
}

} // namespace quen
