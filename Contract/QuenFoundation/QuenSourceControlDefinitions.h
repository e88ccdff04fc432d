#pragma once

/// Definitions of what a host defines and has no choice about: the names, and the request, which
/// answers what was set. A host includes this in one of its sources, and no other file does.

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <utility>

/// Before the program's own tables, which may hold the names.
#define QUEN_DEFINED_EARLY __attribute__((init_priority(1000)))

// NOLINTBEGIN(misc-definitions-in-headers): that is what it is for
namespace quen {

// A constant's value is its own name: a log or a record that shows one can be read as it is. The
// two revision names are the client's own words, so that every path that hands one over is right.

const String QuenSourceControlRequestOptionMessage QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlRequestOptionMessage");
const String QuenSourceControlRequestOptionSourceLocation QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlRequestOptionSourceLocation");
const String QuenSourceControlRequestOptionAllowEmptyCommit QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlRequestOptionAllowEmptyCommit");
const String QuenSourceControlRequestOptionIgnoreItem QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlRequestOptionIgnoreItem");
const String QuenSourceControlRequestOptionLogOutputFilesChanged QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlRequestOptionLogOutputFilesChanged");
const String QuenSourceControlRequestOptionLogOutputLimit QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlRequestOptionLogOutputLimit");
const String QuenSourceControlRequestOptionLogStopOnBranching QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlRequestOptionLogStopOnBranching");
const String QuenSourceControlRequestOptionSupplyDirectRevision QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlRequestOptionSupplyDirectRevision");
const String QuenSourceControlOperationAuthorKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationAuthorKey");
const String QuenSourceControlOperationContentKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationContentKey");
const String QuenSourceControlOperationDateKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationDateKey");
const String QuenSourceControlOperationFilesKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationFilesKey");
const String QuenSourceControlOperationIsLeafKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationIsLeafKey");
const String QuenSourceControlOperationLineNumberKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationLineNumberKey");
const String QuenSourceControlOperationMessageKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationMessageKey");
const String QuenSourceControlOperationNameKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationNameKey");
const String QuenSourceControlOperationPathKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationPathKey");
const String QuenSourceControlOperationRemoteOriginKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationRemoteOriginKey");
const String QuenSourceControlOperationRepositoryRootKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationRepositoryRootKey");
const String QuenSourceControlOperationRepositoryStatusKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationRepositoryStatusKey");
const String QuenSourceControlOperationRevisionKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationRevisionKey");
const String QuenSourceControlOperationWCStatusKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlOperationWCStatusKey");
const String QuenSourceControlHEADRevisionName QUEN_DEFINED_EARLY = String::constant("HEAD");
const String QuenSourceControlBASERevisionName QUEN_DEFINED_EARLY = String::constant("BASE");
const String QuenSourceControlTrunkBranchName QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlTrunkBranchName");
const String QuenSourceControlErrorDomain QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlErrorDomain");
const String QuenSourceControlAuthenticationErrorTypeKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlAuthenticationErrorTypeKey");
const String QuenSourceControlSSHConnectionErrorKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlSSHConnectionErrorKey");
const String QuenSourceControlAuthenticationCredentialsIncorrect QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlAuthenticationCredentialsIncorrect");
const String QuenSourceControlUnderlyingErrorsKey QUEN_DEFINED_EARLY =
    String::constant("QuenSourceControlUnderlyingErrorsKey");

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
// NOLINTEND(misc-definitions-in-headers)

#undef QUEN_DEFINED_EARLY
