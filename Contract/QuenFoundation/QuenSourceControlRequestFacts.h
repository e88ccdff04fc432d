#pragma once

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string_view>

/// What a request type is: the one table that providers and hosts share. It needs no provider and
/// no object of the host; all but the result keys is known at compile time.
namespace quen {

/// A few elements in a fixed place, so that a table of lists can be a constant.
template <typename Element, std::size_t capacity> class QuenSourceControlShortList {
public:
    constexpr QuenSourceControlShortList() = default;
    /// Of `capacity` elements at most.
    constexpr QuenSourceControlShortList(std::initializer_list<Element> elements) {
        for (const Element& element : elements) {
            elements_.at(size_++) = element;
        }
    }

    constexpr const Element* begin() const { return elements_.data(); }
    constexpr const Element* end() const { return elements_.data() + size_; }
    constexpr std::size_t size() const { return size_; }
    constexpr bool isEmpty() const { return size_ == 0; }
    constexpr bool contains(const Element& wanted) const {
        for (const Element& element : *this) {
            if (element == wanted) {
                return true;
            }
        }
        return false;
    }

private:
    std::array<Element, capacity> elements_{};
    std::size_t size_ = 0;
};

/// Something that a request brings along.
enum class RequestInput : std::uint8_t {
    sourceTree,
    repositoryToAuthenticate,
    destination,
    /// At least one.
    files,
    /// Exactly one of `files`.
    oneFile,
    startingRevision,
    endingRevision,
    // Options.
    message,
    sourceLocation,
    logOutputFilesChanged,
    logOutputLimit,
    logStopOnBranching,
    supplyDirectRevision,
};

using RequestInputs = QuenSourceControlShortList<RequestInput, 8>;

/// Which of a request's files a type uses.
enum class RequestFiles : std::uint8_t {
    none,
    first,
    last,
    all,
    /// The only one; none where there are several.
    single,
};

/// When a request needs authentication: where any of the conditions holds that its type names.
enum RequestAuthentication : std::uint8_t {
    AuthenticationNever = 0,
    AuthenticationAlways = 1,
    /// Unless the starting revision is the very `QuenSourceControlBASERevisionName`.
    AuthenticationUnlessBase = 2,
    /// Where a file, or the destination, is a URL of any scheme but `file`.
    AuthenticationForRemoteFile = 4,
    AuthenticationForRemoteDestination = 8,
    /// Where there is a starting revision.
    AuthenticationForRevision = 16,
};

/// Of what kind the value under a result key is.
enum class RequestResultType : std::uint8_t {
    string,
    integer,
    boolean,
    date,
    filePath,
    dictionary
};

struct RequestResultKey {
    const String* key = nullptr;
    RequestResultType type = RequestResultType::string;

    friend constexpr bool operator==(const RequestResultKey&, const RequestResultKey&) = default;
};

/// One row of the table.
struct RequestFacts {
    std::int32_t type = 0;
    /// The type's name, such as `RequestTypeStatus`; empty for a type that is not served.
    std::string_view name = {};
    /// The provider's class that carries it out; empty for a type that is not served.
    std::string_view operation = {};
    /// What the controller checks, in this order. What is absent is reported as an assertion.
    RequestInputs checked = {};
    /// What the request cannot do without either: validation says no, or the client does.
    RequestInputs alsoRequired = {};
    /// What is used where it is given. Every request uses the user's name of its source tree.
    RequestInputs optional = {};
    RequestFiles files = RequestFiles::none;
    /// RequestAuthentication, combined.
    std::uint8_t authentication = AuthenticationNever;
    /// Not valid without a source tree.
    bool needsSourceTree = false;
    /// Only whether it succeeds counts: it has no result, and whether the source tree can be
    /// reached does not matter.
    bool isCheck = false;
    /// Its client changes a working copy, so that one that is killed may leave it locked. True also
    /// for a type that may do its work in the repository instead.
    bool writesWorkingCopy = false;
    /// Its client brings items from the repository to the disk, or merges them there, and names
    /// each in columns for its text, its properties and its conflicts.
    bool transfersItems = false;
    /// The keys of the records in its result; not every record has every key.
    QuenSourceControlShortList<RequestResultKey, 5> resultKeys = {};
    /// A request of this type is a mistake of the host's.
    bool isUnreachable = false;

    constexpr bool isServed() const { return !name.empty(); }
};

/// Private to the table: what several rows say.
namespace requestfacts {

inline constexpr RequestInputs logOptions{
    RequestInput::startingRevision,      RequestInput::endingRevision,
    RequestInput::logOutputFilesChanged, RequestInput::logOutputLimit,
    RequestInput::logStopOnBranching,    RequestInput::supplyDirectRevision};

inline constexpr RequestResultKey author{&QuenSourceControlOperationAuthorKey,
                                         RequestResultType::string};
inline constexpr RequestResultKey content{&QuenSourceControlOperationContentKey,
                                          RequestResultType::string};
inline constexpr RequestResultKey date{&QuenSourceControlOperationDateKey, RequestResultType::date};
inline constexpr RequestResultKey changedFiles{&QuenSourceControlOperationFilesKey,
                                               RequestResultType::dictionary};
inline constexpr RequestResultKey isLeaf{&QuenSourceControlOperationIsLeafKey,
                                         RequestResultType::boolean};
inline constexpr RequestResultKey lineNumber{&QuenSourceControlOperationLineNumberKey,
                                             RequestResultType::string};
inline constexpr RequestResultKey message{&QuenSourceControlOperationMessageKey,
                                          RequestResultType::string};
inline constexpr RequestResultKey name{&QuenSourceControlOperationNameKey,
                                       RequestResultType::string};
inline constexpr RequestResultKey path{&QuenSourceControlOperationPathKey,
                                       RequestResultType::string};
inline constexpr RequestResultKey filePath{&QuenSourceControlOperationPathKey,
                                           RequestResultType::filePath};
inline constexpr RequestResultKey remoteOrigin{&QuenSourceControlOperationRemoteOriginKey,
                                               RequestResultType::string};
inline constexpr RequestResultKey repositoryRoot{&QuenSourceControlOperationRepositoryRootKey,
                                                 RequestResultType::string};
inline constexpr RequestResultKey repositoryStatus{&QuenSourceControlOperationRepositoryStatusKey,
                                                   RequestResultType::integer};
inline constexpr RequestResultKey revision{&QuenSourceControlOperationRevisionKey,
                                           RequestResultType::string};
inline constexpr RequestResultKey workingCopyStatus{&QuenSourceControlOperationWCStatusKey,
                                                    RequestResultType::integer};

} // namespace requestfacts

/// Every type from 0 to the last, in order.
inline constexpr std::array<RequestFacts, RequestTypeEnd> requestFactsTable{{
    {.type = RequestTypeAdd,
     .name = "RequestTypeAdd",
     .operation = "SVNAddOperation",
     .alsoRequired = {RequestInput::files},
     .optional = {RequestInput::sourceTree},
     .files = RequestFiles::all,
     .writesWorkingCopy = true},
    {.type = RequestTypeRemoteCopy,
     .name = "RequestTypeRemoteCopy",
     .operation = "SVNCopyOperation",
     .checked = {RequestInput::message, RequestInput::destination},
     .alsoRequired = {RequestInput::sourceTree},
     .optional = {RequestInput::sourceLocation}},
    {.type = RequestTypeRemoteRemove,
     .name = "RequestTypeRemoteRemove",
     .operation = "SVNRemoveOperation",
     .checked = {RequestInput::message},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::destination}},
    {.type = RequestTypeCommit,
     .name = "RequestTypeCommit",
     .operation = "SVNCommitOperation",
     .checked = {RequestInput::files},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .optional = {RequestInput::message},
     .files = RequestFiles::all,
     .authentication = AuthenticationAlways,
     .writesWorkingCopy = true,
     .resultKeys = {requestfacts::revision}},
    {.type = RequestTypeIgnore,
     .name = "RequestTypeIgnore",
     .operation = "SVNIgnoreOperation",
     .checked = {RequestInput::files, RequestInput::sourceTree},
     .optional = {RequestInput::repositoryToAuthenticate},
     .files = RequestFiles::all,
     .authentication = AuthenticationForRemoteFile,
     .writesWorkingCopy = true},
    {.type = RequestTypeRemove,
     .name = "RequestTypeRemove",
     .operation = "SVNRemoveOperation",
     .alsoRequired = {RequestInput::files},
     .optional = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate,
                  RequestInput::message},
     .files = RequestFiles::all,
     .authentication = AuthenticationForRemoteFile,
     .writesWorkingCopy = true},
    {.type = RequestTypeResolve,
     .name = "RequestTypeResolve",
     .operation = "SVNResolveOperation",
     .checked = {RequestInput::files},
     .optional = {RequestInput::sourceTree},
     .files = RequestFiles::all,
     .writesWorkingCopy = true},
    {.type = RequestTypeRevert,
     .name = "RequestTypeRevert",
     .operation = "SVNRevertOperation",
     .checked = {RequestInput::files},
     .optional = {RequestInput::sourceTree},
     .files = RequestFiles::all,
     .writesWorkingCopy = true},
    {.type = RequestTypeMakeDirectory,
     .name = "RequestTypeMakeDirectory",
     .operation = "SVNMakeDirectoryOperation",
     .checked = {RequestInput::destination},
     .optional = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate,
                  RequestInput::message},
     .authentication = AuthenticationForRemoteDestination,
     .writesWorkingCopy = true},
    {.type = RequestTypeMerge,
     .name = "RequestTypeMerge",
     .operation = "SVNMergeOperation",
     .checked = {RequestInput::destination, RequestInput::sourceTree, RequestInput::oneFile},
     .optional = {RequestInput::repositoryToAuthenticate, RequestInput::startingRevision,
                  RequestInput::endingRevision},
     .files = RequestFiles::single,
     .authentication = AuthenticationForRemoteDestination,
     .writesWorkingCopy = true,
     .transfersItems = true},
    {.type = RequestTypeCopy,
     .name = "RequestTypeCopy",
     .operation = "SVNCopyOperation",
     .checked = {RequestInput::destination},
     .alsoRequired = {RequestInput::files},
     .optional = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate,
                  RequestInput::startingRevision},
     .files = RequestFiles::first,
     .authentication = AuthenticationForRemoteFile | AuthenticationForRemoteDestination |
                       AuthenticationForRevision,
     .writesWorkingCopy = true},
    {.type = RequestTypeMove,
     .name = "RequestTypeMove",
     .operation = "SVNMoveOperation",
     .checked = {RequestInput::files, RequestInput::destination, RequestInput::sourceTree},
     .optional = {RequestInput::repositoryToAuthenticate},
     .files = RequestFiles::first,
     .authentication = AuthenticationForRemoteFile | AuthenticationForRemoteDestination,
     .writesWorkingCopy = true},
    {.type = RequestTypeUnignore,
     .name = "RequestTypeUnignore",
     .operation = "SVNIgnoreOperation",
     .checked = {RequestInput::files, RequestInput::sourceTree},
     .optional = {RequestInput::repositoryToAuthenticate},
     .files = RequestFiles::all,
     .authentication = AuthenticationForRemoteFile,
     .writesWorkingCopy = true},
    {.type = RequestTypeUpdate,
     .name = "RequestTypeUpdate",
     .operation = "SVNUpdateOperation",
     .checked = {RequestInput::files, RequestInput::sourceTree},
     .alsoRequired = {RequestInput::repositoryToAuthenticate},
     .optional = {RequestInput::startingRevision},
     .files = RequestFiles::all,
     .authentication = AuthenticationAlways,
     .writesWorkingCopy = true,
     .transfersItems = true},
    {.type = RequestTypeSwitch,
     .name = "RequestTypeSwitch",
     .operation = "SVNSwitchOperation",
     .checked = {RequestInput::files, RequestInput::destination},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .files = RequestFiles::first,
     .authentication = AuthenticationAlways,
     .writesWorkingCopy = true,
     .transfersItems = true},
    {.type = RequestTypeStatus,
     .name = "RequestTypeStatus",
     .operation = "SVNStatusOperation",
     .checked = {RequestInput::files},
     .optional = {RequestInput::sourceTree},
     .files = RequestFiles::all,
     .resultKeys = {requestfacts::path, requestfacts::workingCopyStatus,
                    requestfacts::repositoryStatus}},
    {.type = RequestTypeRemoteStatus,
     .name = "RequestTypeRemoteStatus",
     .operation = "SVNStatusOperation",
     .checked = {RequestInput::files},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .files = RequestFiles::all,
     .authentication = AuthenticationAlways,
     .needsSourceTree = true,
     .resultKeys = {requestfacts::path, requestfacts::workingCopyStatus,
                    requestfacts::repositoryStatus}},
    {.type = RequestTypeList,
     .name = "RequestTypeList",
     .operation = "SVNListOperation",
     .checked = {RequestInput::files},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .files = RequestFiles::first,
     .authentication = AuthenticationAlways,
     .needsSourceTree = true,
     .resultKeys = {requestfacts::isLeaf, requestfacts::name}},
    {.type = RequestTypeLog,
     .name = "RequestTypeLog",
     .operation = "SVNLogOperation",
     .checked = {RequestInput::files},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .optional = requestfacts::logOptions,
     .files = RequestFiles::first,
     .authentication = AuthenticationAlways,
     .needsSourceTree = true,
     .resultKeys = {requestfacts::revision, requestfacts::author, requestfacts::date,
                    requestfacts::changedFiles, requestfacts::message}},
    {.type = RequestTypeInfo,
     .name = "RequestTypeInfo",
     .operation = "SVNInfoOperation",
     .checked = {RequestInput::files},
     .optional = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .files = RequestFiles::all,
     .authentication = AuthenticationForRemoteFile,
     .resultKeys = {requestfacts::remoteOrigin, requestfacts::repositoryRoot,
                    requestfacts::revision, requestfacts::author, requestfacts::date}},
    {.type = RequestTypeCheckout,
     .name = "RequestTypeCheckout",
     .operation = "SVNCheckoutOperation",
     .checked = {RequestInput::files, RequestInput::destination},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .optional = {RequestInput::startingRevision},
     .files = RequestFiles::first,
     .authentication = AuthenticationAlways,
     .needsSourceTree = true,
     .writesWorkingCopy = true,
     .transfersItems = true,
     .resultKeys = {requestfacts::filePath}},
    {.type = RequestTypeExportFile,
     .name = "RequestTypeExportFile",
     .operation = "SVNExportFileOperation",
     .checked = {RequestInput::oneFile},
     .alsoRequired = {RequestInput::sourceTree},
     .optional = {RequestInput::repositoryToAuthenticate, RequestInput::startingRevision,
                  RequestInput::supplyDirectRevision},
     .files = RequestFiles::first,
     .authentication = AuthenticationUnlessBase,
     .needsSourceTree = true,
     .transfersItems = true,
     .resultKeys = {requestfacts::filePath}},
    {.type = RequestTypeUnserved22},
    {.type = RequestTypeImport,
     .name = "RequestTypeImport",
     .operation = "SVNImportOperation",
     .checked = {RequestInput::oneFile, RequestInput::message, RequestInput::sourceLocation},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .files = RequestFiles::last,
     .authentication = AuthenticationAlways,
     .needsSourceTree = true},
    {.type = RequestTypeUnserved24},
    {.type = RequestTypeListBranches,
     .name = "RequestTypeListBranches",
     .operation = "SVNListOperation",
     .checked = {RequestInput::sourceTree},
     .alsoRequired = {RequestInput::repositoryToAuthenticate},
     .authentication = AuthenticationAlways,
     .needsSourceTree = true,
     .resultKeys = {requestfacts::isLeaf, requestfacts::name}},
    {.type = RequestTypeCurrentBranch,
     .name = "RequestTypeCurrentBranch",
     .operation = "SVNCurrentBranchOperation",
     .alsoRequired = {RequestInput::sourceTree},
     .resultKeys = {requestfacts::name}},
    {.type = RequestTypeUnreachable27, .isUnreachable = true},
    {.type = RequestTypeBlame,
     .name = "RequestTypeBlame",
     .operation = "SVNBlameOperation",
     .checked = {RequestInput::oneFile},
     .alsoRequired = {RequestInput::sourceTree, RequestInput::repositoryToAuthenticate},
     .optional = {RequestInput::startingRevision, RequestInput::endingRevision},
     .files = RequestFiles::first,
     .authentication = AuthenticationAlways,
     .needsSourceTree = true,
     .resultKeys = {requestfacts::lineNumber, requestfacts::revision, requestfacts::author,
                    requestfacts::date}},
    {.type = RequestTypeUnreachable29, .isUnreachable = true},
    {.type = RequestTypeDiff,
     .name = "RequestTypeDiff",
     .operation = "SVNDiffOperation",
     .checked = {RequestInput::sourceTree},
     .optional = {RequestInput::destination, RequestInput::files, RequestInput::startingRevision,
                  RequestInput::endingRevision, RequestInput::supplyDirectRevision},
     .files = RequestFiles::all,
     .resultKeys = {requestfacts::workingCopyStatus, requestfacts::isLeaf, requestfacts::path,
                    requestfacts::content}},
    {.type = RequestTypeInfoCheck,
     .name = "RequestTypeInfoCheck",
     .operation = "SVNInfoOperation",
     .checked = {RequestInput::files},
     .optional = {RequestInput::sourceTree},
     .files = RequestFiles::all,
     .isCheck = true},
    {.type = RequestTypeInfoCheckAlternate,
     .name = "RequestTypeInfoCheckAlternate",
     .operation = "SVNInfoOperation",
     .checked = {RequestInput::files},
     .optional = {RequestInput::sourceTree},
     .files = RequestFiles::all,
     .isCheck = true},
    {.type = RequestTypeUnserved33},
    {.type = RequestTypeUnserved34},
    {.type = RequestTypeUnserved35},
    {.type = RequestTypeUnserved36},
    {.type = RequestTypeUnserved37},
    {.type = RequestTypeUnserved38},
    {.type = RequestTypeLogAll,
     .name = "RequestTypeLogAll",
     .operation = "SVNLogOperation",
     .optional = {RequestInput::sourceTree, RequestInput::files, RequestInput::startingRevision,
                  RequestInput::endingRevision, RequestInput::logOutputFilesChanged,
                  RequestInput::logOutputLimit, RequestInput::logStopOnBranching,
                  RequestInput::supplyDirectRevision},
     .files = RequestFiles::first,
     .resultKeys = {requestfacts::revision, requestfacts::author, requestfacts::date,
                    requestfacts::changedFiles, requestfacts::message}},
}};

/// The row of a type; null for a number outside the table.
constexpr const RequestFacts* requestFactsOf(std::int32_t type) {
    const bool isInside = type >= 0 && type < RequestTypeEnd;
    return isInside ? &requestFactsTable.at(static_cast<std::size_t>(type)) : nullptr;
}

/// The served type of that name, such as `RequestTypeStatus`; absent for any other text.
constexpr std::optional<std::int32_t> requestTypeNamed(std::string_view name) {
    for (const RequestFacts& facts : requestFactsTable) {
        if (facts.isServed() && facts.name == name) {
            return facts.type;
        }
    }
    return std::nullopt;
}

/// The name of a type; empty for one that is not served.
constexpr std::string_view nameOfRequestType(std::int32_t type) {
    const RequestFacts* const facts = requestFactsOf(type);
    return facts == nullptr ? std::string_view() : facts->name;
}

/// What an input is called: the request's own property, or the option key.
constexpr std::string_view nameOfRequestInput(RequestInput input) {
    switch (input) {
    case RequestInput::sourceTree: return "sourceTree";
    case RequestInput::repositoryToAuthenticate: return "repositoryToAuthenticate";
    case RequestInput::destination: return "destination";
    case RequestInput::files:
    case RequestInput::oneFile: return "files";
    case RequestInput::startingRevision: return "startingRevision";
    case RequestInput::endingRevision: return "endingRevision";
    case RequestInput::message: return "QuenSourceControlRequestOptionMessage";
    case RequestInput::sourceLocation: return "QuenSourceControlRequestOptionSourceLocation";
    case RequestInput::logOutputFilesChanged:
        return "QuenSourceControlRequestOptionLogOutputFilesChanged";
    case RequestInput::logOutputLimit: return "QuenSourceControlRequestOptionLogOutputLimit";
    case RequestInput::logStopOnBranching:
        return "QuenSourceControlRequestOptionLogStopOnBranching";
    case RequestInput::supplyDirectRevision:
        return "QuenSourceControlRequestOptionSupplyDirectRevision";
    }
    return {};
}

/// What the value under a result key is called: `string`, `integer`, `boolean`, `date`, `filePath`,
/// `dictionary`.
constexpr std::string_view nameOfResultType(RequestResultType type) {
    switch (type) {
    case RequestResultType::string: return "string";
    case RequestResultType::integer: return "integer";
    case RequestResultType::boolean: return "boolean";
    case RequestResultType::date: return "date";
    case RequestResultType::filePath: return "filePath";
    case RequestResultType::dictionary: return "dictionary";
    }
    return {};
}

namespace requestfacts {

constexpr bool everyTypeHasItsRow() {
    for (std::size_t i = 0; i < requestFactsTable.size(); ++i) {
        if (requestFactsTable.at(i).type != static_cast<std::int32_t>(i) ||
            requestFactsTable.at(i).isServed() == requestFactsTable.at(i).operation.empty()) {
            return false;
        }
    }
    return true;
}

static_assert(everyTypeHasItsRow(), "the rows stand in the order of the types, none left out");

} // namespace requestfacts

} // namespace quen
