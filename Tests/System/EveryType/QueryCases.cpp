#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/System/EveryType/TypeCase.h"

namespace quen::test {

namespace {

/// A request about a place in the repository.
MakeRequest at(std::int32_t type, std::string place) {
    return [type, place = std::move(place)](const Sandbox& sandbox) {
        return Request{
            .type = type, .sourceTree = treeOf(sandbox), .files = StringArray{sandbox.url(place)}};
    };
}

Request diffSummary(const Sandbox& sandbox, const std::string& with) {
    return Request{.type = RequestTypeDiff,
                   .sourceTree = treeOf(sandbox),
                   .destination = sandbox.url(with),
                   .files = StringArray{sandbox.url("trunk")}};
}

Request wholeHistory(const Sandbox& sandbox, const std::string& place) {
    return Request{.type = RequestTypeLogAll,
                   .sourceTree = treeOf(sandbox),
                   .files = StringArray{sandbox.url(place)},
                   .options = {{QuenSourceControlRequestOptionLogOutputFilesChanged, true}}};
}

void editFile(const Sandbox& sandbox) {
    sandbox.write("a.txt", "two\n");
}

} // namespace

std::vector<TypeCase> queryCases() {
    return {
        {.name = "status of a changed and an unversioned file",
         .type = RequestTypeStatus,
         .className = "SVNStatusOperation",
         .prepare =
             [](const Sandbox& sandbox) {
                 editFile(sandbox);
                 sandbox.write("new.txt", "");
             },
         .request = about(RequestTypeStatus, {"a.txt", "new.txt"}),
         .result = "["
                   "{QuenSourceControlOperationPathKey: \"SANDBOX/wc/a.txt\", "
                   "QuenSourceControlOperationWCStatusKey: 4, "
                   "QuenSourceControlOperationRepositoryStatusKey: 0}, "
                   "{QuenSourceControlOperationPathKey: \"SANDBOX/wc/new.txt\", "
                   "QuenSourceControlOperationWCStatusKey: 256, "
                   "QuenSourceControlOperationRepositoryStatusKey: 0}]",
         .effects = {{{"status"}, "M       a.txt\n?       new.txt\n"}}},
        {.name = "status of what is not a working copy",
         .type = RequestTypeStatus,
         .className = "SVNStatusOperation",
         .prepare = {},
         .request = about(RequestTypeStatus, {".."}),
         .result = "[]",
         .error = {-71, true, "not under version control"}},
        {.name = "remote status of a file that changed elsewhere",
         .type = RequestTypeRemoteStatus,
         .className = "SVNStatusOperation",
         .prepare = [](const Sandbox& sandbox) { changeElsewhere(sandbox, "a.txt", "two\n"); },
         .request = about(RequestTypeRemoteStatus, {"a.txt"}),
         .result = "[{QuenSourceControlOperationPathKey: \"SANDBOX/wc/a.txt\", "
                   "QuenSourceControlOperationWCStatusKey: 0, "
                   "QuenSourceControlOperationRepositoryStatusKey: 1024}]",
         .effects = {{{"status", "-u"},
                      "        *        3   a.txt\nStatus against revision:      4\n"}}},
        {.name = "remote status without the repository",
         .type = RequestTypeRemoteStatus,
         .className = "SVNStatusOperation",
         .prepare =
             [](const Sandbox& sandbox) {
                 std::filesystem::rename(sandbox.root() / "repository", sandbox.root() / "gone");
             },
         .request = about(RequestTypeRemoteStatus, {"a.txt"}),
         .result = "[]",
         .error = {170013, false, "Unable to connect to a repository"},
         .effects = {{{"status"}, ""}}},
        {.name = "list of a directory",
         .type = RequestTypeList,
         .className = "SVNListOperation",
         .prepare = {},
         .request = at(RequestTypeList, "trunk"),
         .result = "["
                   "{QuenSourceControlOperationIsLeafKey: true, QuenSourceControlOperationNameKey: "
                   "\"a.txt\"}, "
                   "{QuenSourceControlOperationIsLeafKey: true, QuenSourceControlOperationNameKey: "
                   "\"b.txt\"}, "
                   "{QuenSourceControlOperationIsLeafKey: false, "
                   "QuenSourceControlOperationNameKey: \"dir\"}]",
         .effects = {{{"list", "^/trunk"}, "a.txt\nb.txt\ndir/\n"}}},
        {.name = "list of nothing",
         .type = RequestTypeList,
         .className = "SVNListOperation",
         .prepare = {},
         .request = at(RequestTypeList, "none"),
         .result = "[]",
         .error = {160013, false, "/none' "}},
        {.name = "list of the branches",
         .type = RequestTypeListBranches,
         .className = "SVNListOperation",
         .prepare = {},
         .request = about(RequestTypeListBranches, {}),
         .result = "[{QuenSourceControlOperationIsLeafKey: false, "
                   "QuenSourceControlOperationNameKey: \"one\"}]",
         .effects = {{{"list", "^/branches"}, "one/\n"}}},
        {.name = "list of branches that nobody configured",
         .type = RequestTypeListBranches,
         .className = "SVNListOperation",
         .prepare = {},
         .request =
             [](const Sandbox&) {
                 return Request{.type = RequestTypeListBranches, .sourceTree = repository()};
             },
         .error = {-90, true, "branches could not be located"}},
        {.name = "current branch",
         .type = RequestTypeCurrentBranch,
         .className = "SVNCurrentBranchOperation",
         .prepare =
             [](const Sandbox& sandbox) {
                 sandbox.svn({"switch", "-q", sandbox.url("branches/one")});
             },
         .request = about(RequestTypeCurrentBranch, {}),
         .result = "[{QuenSourceControlOperationNameKey: \"one\"}]",
         .effects = {{{"info", "--show-item", "relative-url"}, "^/branches/one\n"}}},
        {.name = "current branch of no working copy",
         .type = RequestTypeCurrentBranch,
         .className = "SVNCurrentBranchOperation",
         .prepare = {},
         .request =
             [](const Sandbox& sandbox) {
                 return Request{.type = RequestTypeCurrentBranch,
                                .sourceTree = workingTree({.location = sandbox.root().string()})};
             },
         .error = {-71, true, "not under version control"}},
        {.name = "log of a file",
         .type = RequestTypeLog,
         .className = "SVNLogOperation",
         .prepare = {},
         .request = about(RequestTypeLog, {"a.txt"}),
         .result =
             "[{QuenSourceControlOperationRevisionKey: \"2\", QuenSourceControlOperationAuthorKey: "
             "\"alice\", QuenSourceControlOperationDateKey: DATE, "
             "QuenSourceControlOperationMessageKey: \"Add files\"}]",
         .effects = {{{"propget", "--revprop", "-r", "2", "svn:log", "^/"}, "Add files\n"},
                     {{"propget", "--revprop", "-r", "2", "svn:author", "^/"}, "alice\n"}}},
        {.name = "log of a revision that is not there",
         .type = RequestTypeLog,
         .className = "SVNLogOperation",
         .prepare = {},
         .request = atRevision(about(RequestTypeLog, {"a.txt"}), "77", "99"),
         .error = {160006, false, "No such revision"}},
        {.name = "log of everything",
         .type = RequestTypeLogAll,
         .className = "SVNLogOperation",
         .prepare = {},
         .request = [](const Sandbox& sandbox) { return wholeHistory(sandbox, "branches"); },
         .result =
             "["
             "{QuenSourceControlOperationRevisionKey: \"3\", QuenSourceControlOperationAuthorKey: "
             "\"bob\", QuenSourceControlOperationDateKey: DATE, "
             "QuenSourceControlOperationFilesKey: {/branches/one: 1}, "
             "QuenSourceControlOperationMessageKey: \"Branch\"}, "
             "{QuenSourceControlOperationRevisionKey: \"1\", QuenSourceControlOperationAuthorKey: "
             "\"alice\", QuenSourceControlOperationDateKey: DATE, "
             "QuenSourceControlOperationFilesKey: {/branches: 1, /tags: 1, /trunk: 1}, "
             "QuenSourceControlOperationMessageKey: \"The usual layout\"}]",
         .effects = {{{"list", "^/branches@3"}, "one/\n"}, {{"list", "^/branches@2"}, ""}}},
        {.name = "log of everything at no place",
         .type = RequestTypeLogAll,
         .className = "SVNLogOperation",
         .prepare = {},
         .request = [](const Sandbox& sandbox) { return wholeHistory(sandbox, "none"); },
         .error = {160013, false, "path"}},
        {.name = "info of a file",
         .type = RequestTypeInfo,
         .className = "SVNInfoOperation",
         .prepare = {},
         .request = about(RequestTypeInfo, {"a.txt"}),
         .result =
             "[{QuenSourceControlOperationRemoteOriginKey: "
             "\"file://SANDBOX/repository/trunk/a.txt\", "
             "QuenSourceControlOperationRepositoryRootKey: \"file://SANDBOX/repository\", "
             "QuenSourceControlOperationRevisionKey: \"2\", QuenSourceControlOperationAuthorKey: "
             "\"alice\", QuenSourceControlOperationDateKey: DATE}]",
         .effects = {{{"info", "--show-item", "url", "a.txt"},
                      "file://SANDBOX/repository/trunk/a.txt\n"},
                     {{"info", "--show-item", "last-changed-revision", "a.txt"}, "2\n"},
                     {{"info", "--show-item", "last-changed-author", "a.txt"}, "alice\n"}}},
        {.name = "info of nothing",
         .type = RequestTypeInfo,
         .className = "SVNInfoOperation",
         .prepare = {},
         .request = about(RequestTypeInfo, {"none.txt"}),
         .result = "[]",
         .error = {155010, false, "none.txt"}},
        {.name = "info check of a place",
         .type = RequestTypeInfoCheck,
         .className = "SVNInfoOperation",
         .prepare = {},
         .request = at(RequestTypeInfoCheck, "trunk"),
         .effects = {{{"info", "--show-item", "kind", "^/trunk"}, "dir\n"}}},
        {.name = "info check of no place",
         .type = RequestTypeInfoCheck,
         .className = "SVNInfoOperation",
         .prepare = {},
         .request = at(RequestTypeInfoCheck, "none"),
         .error = {170000, false, "non-existent"}},
        {.name = "alternate info check of a place",
         .type = RequestTypeInfoCheckAlternate,
         .className = "SVNInfoOperation",
         .prepare = {},
         .request = at(RequestTypeInfoCheckAlternate, "trunk"),
         .effects = {{{"info", "--show-item", "kind", "^/trunk"}, "dir\n"}}},
        {.name = "alternate info check of no place",
         .type = RequestTypeInfoCheckAlternate,
         .className = "SVNInfoOperation",
         .prepare = {},
         .request = at(RequestTypeInfoCheckAlternate, "none"),
         .error = {170000, false, "non-existent"}},
        {.name = "export of a file at a revision",
         .type = RequestTypeExportFile,
         .className = "SVNExportFileOperation",
         .prepare =
             [](const Sandbox& sandbox) {
                 editFile(sandbox);
                 sandbox.commit("Change");
             },
         .request = atRevision(about(RequestTypeExportFile, {"a.txt"}), "2"),
         .result = "[{QuenSourceControlOperationPathKey: path \"TEMPORARY/a.txt\"}]",
         .effects = {{{"cat", "-r", "2", "a.txt"}, "one\n"}},
         .contents = {{std::string(resultFile), "one\n"}}},
        {.name = "export of a file at a revision without it",
         .type = RequestTypeExportFile,
         .className = "SVNExportFileOperation",
         .prepare = {},
         .request = atRevision(about(RequestTypeExportFile, {"a.txt"}), "1"),
         .error = {-1, true, "The revision 1 was not found for the file"}},
        {.name = "blame of a file",
         .type = RequestTypeBlame,
         .className = "SVNBlameOperation",
         .prepare =
             [](const Sandbox& sandbox) {
                 changeElsewhere(sandbox, "a.txt", "one\ntwo\n");
                 sandbox.svn({"update", "-q"});
             },
         .request = about(RequestTypeBlame, {"a.txt"}),
         .result =
             "["
             "{QuenSourceControlOperationLineNumberKey: \"1\", "
             "QuenSourceControlOperationRevisionKey: \"2\", QuenSourceControlOperationAuthorKey: "
             "\"alice\", QuenSourceControlOperationDateKey: DATE}, "
             "{QuenSourceControlOperationLineNumberKey: \"2\", "
             "QuenSourceControlOperationRevisionKey: \"4\", QuenSourceControlOperationAuthorKey: "
             "\"bob\", QuenSourceControlOperationDateKey: DATE}]",
         .effects = {{{"blame", "a.txt"}, "     2      alice one\n     4        bob two\n"}}},
        {.name = "blame of a directory",
         .type = RequestTypeBlame,
         .className = "SVNBlameOperation",
         .prepare = {},
         .request = about(RequestTypeBlame, {"dir"}),
         .result = "[]",
         .error = {160017, false, "is not a file"}},
        {.name = "diff summary of trunk and branch",
         .type = RequestTypeDiff,
         .className = "SVNDiffOperation",
         .prepare = [](const Sandbox& sandbox) { changeElsewhere(sandbox, "a.txt", "two\n"); },
         .request = [](const Sandbox& sandbox) { return diffSummary(sandbox, "branches/one"); },
         .result =
             "[{QuenSourceControlOperationWCStatusKey: 4, QuenSourceControlOperationIsLeafKey: "
             "true, QuenSourceControlOperationPathKey: \"file://SANDBOX/repository/trunk/a.txt\"}]",
         .effects = {{{"diff", "--summarize", "^/trunk", "^/branches/one"},
                      "M       file://SANDBOX/repository/trunk/a.txt\n"}}},
        {.name = "diff summary with nothing",
         .type = RequestTypeDiff,
         .className = "SVNDiffOperation",
         .prepare = {},
         .request = [](const Sandbox& sandbox) { return diffSummary(sandbox, "none"); },
         .error = {160013, false, "/none' "}},
        {.name = "diff text of two revisions",
         .type = RequestTypeDiff,
         .className = "SVNDiffOperation",
         .prepare =
             [](const Sandbox& sandbox) {
                 changeElsewhere(sandbox, "a.txt", "two\n");
                 sandbox.svn({"update", "-q"});
             },
         .request = atRevision(about(RequestTypeDiff, {"a.txt"}), "3", "4"),
         .result = "[{QuenSourceControlOperationContentKey: \"Index: SANDBOX/wc/a.txt\\n"
                   "===================================================================\\n"
                   "--- SANDBOX/wc/a.txt\t(revision 3)\\n"
                   "+++ SANDBOX/wc/a.txt\t(revision 4)\\n"
                   "@@ -1 +1 @@\\n-one\\n+two\\n\"}]",
         .effects = {{{"diff", "-r", "3:4", "--summarize", "a.txt"}, "M       a.txt\n"}}},
    };
}

} // namespace quen::test
