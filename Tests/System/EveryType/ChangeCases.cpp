#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/System/EveryType/TypeCase.h"

#include <filesystem>

namespace quen::test {

namespace {

Dictionary saying(const String& message) {
    return {{QuenSourceControlRequestOptionMessage, message}};
}

/// The same, with a destination in the working copy.
MakeRequest to(MakeRequest make, std::string destination) {
    return [make = std::move(make), destination = std::move(destination)](const Sandbox& sandbox) {
        Request request = make(sandbox);
        request.destination = inTree(sandbox, destination);
        return request;
    };
}

/// The same, with a destination in the repository.
MakeRequest toPlace(MakeRequest make, std::string place) {
    return [make = std::move(make), place = std::move(place)](const Sandbox& sandbox) {
        Request request = make(sandbox);
        request.destination = sandbox.url(place);
        return request;
    };
}

/// A request of the repository itself about a branch.
MakeRequest onBranch(std::int32_t type, const char* branch) {
    return [type, branch](const Sandbox& sandbox) {
        return Request{.type = type,
                       .sourceTree = repositoryOf(sandbox),
                       .destination = branch,
                       .options = saying("Branches")};
    };
}

/// The same, of a repository without the usual places.
MakeRequest onUnknownBranches(std::int32_t type, const char* branch) {
    return [make = onBranch(type, branch)](const Sandbox& sandbox) {
        Request request = make(sandbox);
        request.sourceTree = repository({.name = "project"});
        return request;
    };
}

Request checkoutOf(const Sandbox& sandbox, const std::string& place) {
    return Request{.type = RequestTypeCheckout,
                   .sourceTree = repositoryOf(sandbox),
                   .destination = (sandbox.root() / "fresh").string(),
                   .files = StringArray{sandbox.url(place)}};
}

Request importOf(const Sandbox& sandbox, const std::string& name) {
    return Request{.type = RequestTypeImport,
                   .sourceTree = repositoryOf(sandbox),
                   .files = StringArray{inTree(sandbox, name)},
                   .options = {{QuenSourceControlRequestOptionMessage, "Import"},
                               {QuenSourceControlRequestOptionSourceLocation,
                                String(sandbox.url("imported"))}}};
}

void editFile(const Sandbox& sandbox) {
    sandbox.write("a.txt", "mine\n");
}

void makeConflict(const Sandbox& sandbox) {
    changeElsewhere(sandbox, "a.txt", "theirs\n");
    editFile(sandbox);
    sandbox.svn({"update", "-q"});
}

void changeOnBranch(const Sandbox& sandbox) {
    const std::string other = (sandbox.root() / "branch").string();
    sandbox.svn({"checkout", "-q", sandbox.url("branches/one"), other});
    sandbox.write(other + "/a.txt", "branch\n");
    sandbox.svn({"commit", "-q", "-m", "On the branch", other});
    sandbox.svn({"update", "-q"});
}

void ignore(const Sandbox& sandbox, const std::string& names) {
    sandbox.svn({"propset", "-q", "svn:ignore", names, "."});
}

const Effect untouched{{"status"}, ""};

std::vector<TypeCase> localEdits() {
    return {
        {.name = "add a file",
         .type = RequestTypeAdd,
         .className = "SVNAddOperation",
         .prepare = [](const Sandbox& sandbox) { sandbox.write("new.txt", "new\n"); },
         .request = about(RequestTypeAdd, {"new.txt"}),
         .effects = {{{"status"}, "A       new.txt\n"}}},
        {.name = "add nothing",
         .type = RequestTypeAdd,
         .className = "SVNAddOperation",
         .prepare = {},
         .request = about(RequestTypeAdd, {"none.txt"}),
         .error = {155010, false, "none.txt"},
         .effects = {untouched}},
        {.name = "remove a file",
         .type = RequestTypeRemove,
         .className = "SVNRemoveOperation",
         .prepare = {},
         .request = about(RequestTypeRemove, {"a.txt", "dir/c.txt"}),
         .effects = {{{"status"}, "D       a.txt\nD       dir/c.txt\n"}}},
        {.name = "remove nothing",
         .type = RequestTypeRemove,
         .className = "SVNRemoveOperation",
         .prepare = {},
         .request = about(RequestTypeRemove, {"none.txt"}),
         .error = {125001, false, "none.txt' does not exist"},
         .effects = {untouched}},
        {.name = "resolve a conflict",
         .type = RequestTypeResolve,
         .className = "SVNResolveOperation",
         .prepare = makeConflict,
         .request = about(RequestTypeResolve, {"a.txt"}),
         .effects = {{{"status"}, "M       a.txt\n"}}},
        {.name = "resolve nothing",
         .type = RequestTypeResolve,
         .className = "SVNResolveOperation",
         .prepare = {},
         .request = about(RequestTypeResolve, {"none.txt"}),
         .error = {155010, false, "none.txt' was not found"},
         .effects = {untouched}},
        {.name = "revert a change",
         .type = RequestTypeRevert,
         .className = "SVNRevertOperation",
         .prepare = editFile,
         .request = about(RequestTypeRevert, {"a.txt"}),
         .effects = {untouched},
         .contents = {{"a.txt", "one\n"}}},
        {.name = "revert outside of the working copy",
         .type = RequestTypeRevert,
         .className = "SVNRevertOperation",
         .prepare = editFile,
         .request = about(RequestTypeRevert, {"../home"}),
         .error = {-71, true, "not under version control"},
         .effects = {{{"status"}, "M       a.txt\n"}},
         .contents = {{"a.txt", "mine\n"}}},
    };
}

std::vector<TypeCase> treeEdits() {
    return {
        {.name = "copy a file",
         .type = RequestTypeCopy,
         .className = "SVNCopyOperation",
         .prepare = {},
         .request = to(about(RequestTypeCopy, {"a.txt"}), "z.txt"),
         .effects = {{{"status"}, "A  +    z.txt\n"}},
         .contents = {{"z.txt", "one\n"}}},
        {.name = "copy nothing",
         .type = RequestTypeCopy,
         .className = "SVNCopyOperation",
         .prepare = {},
         .request = to(about(RequestTypeCopy, {"none.txt"}), "z.txt"),
         .error = {155010, false, "none.txt' does not exist"},
         .effects = {untouched}},
        {.name = "move a file into a new directory",
         .type = RequestTypeMove,
         .className = "SVNMoveOperation",
         .prepare = {},
         .request = to(about(RequestTypeMove, {"a.txt"}), "new/z.txt"),
         .effects = {{{"status"},
                      "D       a.txt\n        > moved to new/z.txt\n"
                      "A       new\n"
                      "A  +    new/z.txt\n        > moved from a.txt\n"}},
         .contents = {{"new/z.txt", "one\n"}}},
        {.name = "move a file out of the tree",
         .type = RequestTypeMove,
         .className = "SVNMoveOperation",
         .prepare = {},
         .request =
             [](const Sandbox& sandbox) {
                 Request request = about(RequestTypeMove, {"a.txt"})(sandbox);
                 request.destination = (sandbox.root() / "z.txt").string();
                 return request;
             },
         .error = {-12, true, "returned by Subversion as invalid"},
         .effects = {untouched}},
        {.name = "make a directory",
         .type = RequestTypeMakeDirectory,
         .className = "SVNMakeDirectoryOperation",
         .prepare = {},
         .request = to(about(RequestTypeMakeDirectory, {}), "new"),
         .effects = {{{"status"}, "A       new\n"}}},
        {.name = "make a directory in the repository",
         .type = RequestTypeMakeDirectory,
         .className = "SVNMakeDirectoryOperation",
         .prepare = {},
         .request = toPlace(about(RequestTypeMakeDirectory, {}, saying("Room")), "tags/v1"),
         .effects = {untouched, {{"list", "^/tags"}, "v1/\n"}}},
        {.name = "make a directory that is there",
         .type = RequestTypeMakeDirectory,
         .className = "SVNMakeDirectoryOperation",
         .prepare = {},
         .request = to(about(RequestTypeMakeDirectory, {}), "dir"),
         .error = {17, false, "File exists"},
         .effects = {untouched}},
        {.name = "merge a branch",
         .type = RequestTypeMerge,
         .className = "SVNMergeOperation",
         .prepare = changeOnBranch,
         .request = toPlace(about(RequestTypeMerge, {"."}), "branches/one"),
         .effects = {{{"status"}, " M      .\nM       a.txt\n"},
                     {{"propget", "svn:mergeinfo"}, "/branches/one:3-4\n"}},
         .contents = {{"a.txt", "branch\n"}}},
        {.name = "merge nothing",
         .type = RequestTypeMerge,
         .className = "SVNMergeOperation",
         .prepare = {},
         .request = toPlace(about(RequestTypeMerge, {"."}), "branches/none"),
         .error = {160013, false, "path"},
         .effects = {untouched}},
    };
}

std::vector<TypeCase> repositoryEdits() {
    return {
        {.name = "copy the trunk to a branch",
         .type = RequestTypeRemoteCopy,
         .className = "SVNCopyOperation",
         .prepare = {},
         .request = onBranch(RequestTypeRemoteCopy, "two"),
         .effects = {{{"list", "^/branches"}, "one/\ntwo/\n"},
                     {{"list", "^/branches/two"}, "a.txt\nb.txt\ndir/\n"},
                     {{"propget", "--revprop", "-r", "4", "svn:log", "^/"}, "Branches\n"},
                     {{"propget", "--revprop", "-r", "4", "svn:author", "^/"}, "alice\n"}}},
        {.name = "copy to branches that nobody configured",
         .type = RequestTypeRemoteCopy,
         .className = "SVNCopyOperation",
         .prepare = {},
         .request = onUnknownBranches(RequestTypeRemoteCopy, "two"),
         .error = {-23, true, "has not been configured"},
         .effects = {{{"list", "^/branches"}, "one/\n"}}},
        {.name = "copy to a branch what is not there",
         .type = RequestTypeRemoteCopy,
         .className = "SVNCopyOperation",
         .prepare = {},
         .request =
             [](const Sandbox& sandbox) {
                 Request request = onBranch(RequestTypeRemoteCopy, "two")(sandbox);
                 request.options.set(QuenSourceControlRequestOptionSourceLocation,
                                     String(sandbox.url("none")));
                 return request;
             },
         .error = {160013, false, "path '/none'"},
         .effects = {{{"list", "^/branches"}, "one/\n"}}},
        {.name = "remove a branch",
         .type = RequestTypeRemoteRemove,
         .className = "SVNRemoveOperation",
         .prepare = {},
         .request = onBranch(RequestTypeRemoteRemove, "one"),
         .effects = {{{"list", "^/branches"}, ""},
                     {{"propget", "--revprop", "-r", "4", "svn:log", "^/"}, "Branches\n"}}},
        {.name = "remove from branches that nobody configured",
         .type = RequestTypeRemoteRemove,
         .className = "SVNRemoveOperation",
         .prepare = {},
         .request = onUnknownBranches(RequestTypeRemoteRemove, "one"),
         .error = {-23, true, "has not been configured"},
         .effects = {{{"list", "^/branches"}, "one/\n"}}},
        {.name = "remove a branch that is not there",
         .type = RequestTypeRemoteRemove,
         .className = "SVNRemoveOperation",
         .prepare = {},
         .request = onBranch(RequestTypeRemoteRemove, "none"),
         .error = {160013, false, "branches/none"},
         .effects = {{{"list", "^/branches"}, "one/\n"}}},
    };
}

std::vector<TypeCase> transfers() {
    return {
        {.name = "commit a change",
         .type = RequestTypeCommit,
         .className = "SVNCommitOperation",
         .prepare = editFile,
         .request = about(RequestTypeCommit, {"a.txt"}, saying("Why\n\nAnd how: \xC3\xBC")),
         .result = "[{QuenSourceControlOperationRevisionKey: \"4\"}]",
         .effects = {untouched,
                     {{"cat", "^/trunk/a.txt"}, "mine\n"},
                     {{"propget", "--revprop", "-r", "4", "svn:log", "^/"},
                      "Why\n\nAnd how: \xC3\xBC\n"},
                     {{"propget", "--revprop", "-r", "4", "svn:author", "^/"}, "alice\n"}}},
        {.name = "commit a change that came too late",
         .type = RequestTypeCommit,
         .className = "SVNCommitOperation",
         .prepare =
             [](const Sandbox& sandbox) {
                 changeElsewhere(sandbox, "a.txt", "theirs\n");
                 editFile(sandbox);
             },
         .request = about(RequestTypeCommit, {"a.txt"}, saying("Late")),
         .error = {155011, false, "out of date"},
         .effects = {{{"status"}, "M       a.txt\n"}, {{"cat", "^/trunk/a.txt"}, "theirs\n"}}},
        {.name = "update to what changed elsewhere",
         .type = RequestTypeUpdate,
         .className = "SVNUpdateOperation",
         .prepare = [](const Sandbox& sandbox) { changeElsewhere(sandbox, "a.txt", "theirs\n"); },
         .request = about(RequestTypeUpdate, {"."}),
         .effects = {untouched, {{"info", "--show-item", "revision"}, "4\n"}},
         .contents = {{"a.txt", "theirs\n"}}},
        {.name = "update to a revision that is not there",
         .type = RequestTypeUpdate,
         .className = "SVNUpdateOperation",
         .prepare = {},
         .request = atRevision(about(RequestTypeUpdate, {"."}), "99"),
         .error = {160006, false, "No such revision"},
         .effects = {untouched, {{"info", "--show-item", "revision"}, "3\n"}}},
        {.name = "switch to a branch",
         .type = RequestTypeSwitch,
         .className = "SVNSwitchOperation",
         .prepare = changeOnBranch,
         .request = toPlace(about(RequestTypeSwitch, {"."}), "branches/one"),
         .effects = {untouched, {{"info", "--show-item", "relative-url"}, "^/branches/one\n"}},
         .contents = {{"a.txt", "branch\n"}}},
        {.name = "switch to nothing",
         .type = RequestTypeSwitch,
         .className = "SVNSwitchOperation",
         .prepare = {},
         .request = toPlace(about(RequestTypeSwitch, {"."}), "branches/none"),
         .error = {160013, false, "branches/none"},
         .effects = {untouched, {{"info", "--show-item", "relative-url"}, "^/trunk\n"}}},
        {.name = "check out the trunk",
         .type = RequestTypeCheckout,
         .className = "SVNCheckoutOperation",
         .prepare = {},
         .request = [](const Sandbox& sandbox) { return checkoutOf(sandbox, "trunk"); },
         .result = "[{QuenSourceControlOperationPathKey: path \"SANDBOX/fresh\"}]",
         .effects = {{{"status", "../fresh"}, ""},
                     {{"info", "--show-item", "relative-url", "../fresh"}, "^/trunk\n"}},
         .contents = {{"../fresh/dir/c.txt", "c\n"}}},
        {.name = "check out nothing",
         .type = RequestTypeCheckout,
         .className = "SVNCheckoutOperation",
         .prepare = {},
         .request = [](const Sandbox& sandbox) { return checkoutOf(sandbox, "none"); },
         .error = {-1, true, "The revision (null) was not found for the file"}},
        {.name = "import a tree",
         .type = RequestTypeImport,
         .className = "SVNImportOperation",
         .prepare = [](const Sandbox& sandbox) { sandbox.write("seed/s.txt", "s\n"); },
         .request = [](const Sandbox& sandbox) { return importOf(sandbox, "seed"); },
         .effects = {{{"list", "^/imported"}, "s.txt\n"},
                     {{"cat", "^/imported/s.txt"}, "s\n"},
                     {{"propget", "--revprop", "-r", "4", "svn:log", "^/"}, "Import\n"}}},
        {.name = "import nothing",
         .type = RequestTypeImport,
         .className = "SVNImportOperation",
         .prepare = {},
         .request = [](const Sandbox& sandbox) { return importOf(sandbox, "none"); },
         .error = {2, false, "Can't stat"},
         .effects = {{{"list", "^/"}, "branches/\ntags/\ntrunk/\n"}}},
    };
}

std::string thousandNames() {
    std::string names;
    for (int i = 0; i < 1000; ++i) {
        names += "name" + std::to_string(i) + "\n";
    }
    return names;
}

std::vector<TypeCase> ignoreEdits() {
    return {
        {.name = "ignore where nothing is ignored",
         .type = RequestTypeIgnore,
         .className = "SVNIgnoreOperation",
         .prepare = {},
         .request = about(RequestTypeIgnore, {"build.log"}),
         .result = "[]",
         .effects = {{{"propget", "--no-newline", "svn:ignore"}, "build.log\n"}}},
        {.name = "ignore where one name is ignored",
         .type = RequestTypeIgnore,
         .className = "SVNIgnoreOperation",
         .prepare = [](const Sandbox& sandbox) { ignore(sandbox, "other\n"); },
         .request = about(RequestTypeIgnore, {"build.log"}),
         .result = "[]",
         .effects = {{{"propget", "--no-newline", "svn:ignore"}, "build.log\nother\n"}}},
        {.name = "ignore the only name that is ignored",
         .type = RequestTypeIgnore,
         .className = "SVNIgnoreOperation",
         .prepare = [](const Sandbox& sandbox) { ignore(sandbox, "build.log"); },
         .request = about(RequestTypeIgnore, {"build.log"}),
         .result = "[]",
         .effects = {{{"propget", "--no-newline", "svn:ignore"}, "build.log\n"}}},
        {.name = "ignore one of many names",
         .type = RequestTypeIgnore,
         .className = "SVNIgnoreOperation",
         .prepare = [](const Sandbox& sandbox) { ignore(sandbox, thousandNames() + "last\n"); },
         .request = about(RequestTypeIgnore, {"last"}),
         .result = "[]",
         .effects = {{{"propget", "--no-newline", "svn:ignore"}, "last\n" + thousandNames()}}},
        {.name = "ignore names that are not ASCII",
         .type = RequestTypeIgnore,
         .className = "SVNIgnoreOperation",
         .prepare = [](const Sandbox& sandbox) { ignore(sandbox, "\xE6\x97\xA5\xE6\x9C\xAC\n"); },
         .request = about(RequestTypeIgnore, {"\xC3\xBC.log", "with blank & <mark>"}),
         .result = "[]",
         .effects = {{{"propget", "--no-newline", "svn:ignore"},
                      "with blank & <mark>\n\xC3\xBC.log\n\xE6\x97\xA5\xE6\x9C\xAC\n"}}},
        {.name = "ignore two files of one directory, the second first",
         .type = RequestTypeIgnore,
         .className = "SVNIgnoreOperation",
         .prepare = {},
         .request = about(RequestTypeIgnore, {"dir/first", "dir/second"}),
         .result = "[]",
         .effects = {{{"propget", "--no-newline", "svn:ignore", "dir"}, "second\nfirst\n"},
                     {{"status"}, " M      dir\n"}}},
        {.name = "ignore with a failing file in the middle",
         .type = RequestTypeIgnore,
         .className = "SVNIgnoreOperation",
         .prepare = {},
         .request = about(RequestTypeIgnore, {"first", "none/second", "dir/third"}),
         .result = "[]",
         .error = {-1, true, "'SANDBOX/wc/none' is not under version control"},
         .effects = {{{"propget", "--no-newline", "svn:ignore"}, "first\n"},
                     {{"propget", "--no-newline", "svn:ignore", "dir"}, "third\n"}}},
        {.name = "unignore one of two names",
         .type = RequestTypeUnignore,
         .className = "SVNIgnoreOperation",
         .prepare = [](const Sandbox& sandbox) { ignore(sandbox, "build.log\nother\n"); },
         .request = about(RequestTypeUnignore, {"build.log"}),
         .result = "[]",
         .effects = {{{"propget", "--no-newline", "svn:ignore"}, "other\n"}}},
        {.name = "unignore the last name",
         .type = RequestTypeUnignore,
         .className = "SVNIgnoreOperation",
         .prepare = [](const Sandbox& sandbox) { ignore(sandbox, "build.log\n"); },
         .request = about(RequestTypeUnignore, {"build.log"}),
         .result = "[]",
         .effects = {{{"proplist"}, ""}, untouched}},
        {.name = "unignore where nothing is ignored",
         .type = RequestTypeUnignore,
         .className = "SVNIgnoreOperation",
         .prepare = {},
         .request = about(RequestTypeUnignore, {"build.log"}),
         .result = "[]",
         .effects = {{{"proplist"}, ""}, untouched}},
        {.name = "unignore a name that is not ignored",
         .type = RequestTypeUnignore,
         .className = "SVNIgnoreOperation",
         .prepare = [](const Sandbox& sandbox) { ignore(sandbox, "other\n"); },
         .request = about(RequestTypeUnignore, {"build.log"}),
         .result = "[]",
         .error = {-1, true, "the file \\\"SANDBOX/wc/build.log\\\""},
         .effects = {{{"propget", "--no-newline", "svn:ignore"}, "other\n"}}},
    };
}

} // namespace

std::vector<TypeCase> changeCases() {
    std::vector<TypeCase> all;
    for (const auto& cases :
         {localEdits(), treeEdits(), repositoryEdits(), transfers(), ignoreEdits()}) {
        all.insert(all.end(), cases.begin(), cases.end());
    }
    return all;
}

} // namespace quen::test
