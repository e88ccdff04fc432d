#include "Host/Embedding/RequestBuilder.h"
#include "Host/HostSourceTrees.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

const auto tree =
    std::make_shared<HostWorkingTree>(HostWorkingTree::Facts{.name = "n", .location = "/wc"});
const auto repository = std::make_shared<HostRepository>(HostRepository::Facts{.name = "r"});

struct Row {
    const char* name;
    QuenSourceControlRequestPtr request;
    RequestType type;
    std::optional<StringArray> files;
    String destination;
    String start;
    String end;
    Dictionary options;
    bool authenticates;
};

TEST(RequestBuilder, PutsEveryInputInItsPlace) {
    const Row rows[] = {
        {"status",
         makeRequest<RequestTypeStatus>().tree(tree).files({"/wc/a", "/wc/b"}).request(),
         RequestTypeStatus,
         StringArray{"/wc/a", "/wc/b"},
         {},
         {},
         {},
         {},
         false},
        {"commit",
         makeRequest<RequestTypeCommit>()
             .tree(tree, repository)
             .files({"/wc"})
             .message("Why")
             .request(),
         RequestTypeCommit,
         StringArray{"/wc"},
         {},
         {},
         {},
         Dictionary{{QuenSourceControlRequestOptionMessage, "Why"}},
         true},
        {"log",
         makeRequest<RequestTypeLog>()
             .tree(tree, repository)
             .file("/wc/a")
             .startingRevision("7")
             .endingRevision("1")
             .limit(3)
             .changedPaths()
             .stopOnCopy(false)
             .request(),
         RequestTypeLog,
         StringArray{"/wc/a"},
         {},
         "7",
         "1",
         Dictionary{{QuenSourceControlRequestOptionLogOutputLimit, 3},
                    {QuenSourceControlRequestOptionLogOutputFilesChanged, true},
                    {QuenSourceControlRequestOptionLogStopOnBranching, false}},
         true},
        {"blame",
         makeRequest<RequestTypeBlame>().tree(tree, repository).file("/wc/a").request(),
         RequestTypeBlame,
         StringArray{"/wc/a"},
         {},
         {},
         {},
         {},
         true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.request->type(), row.type);
        EXPECT_EQ(row.request->sourceTree(), tree);
        EXPECT_EQ(row.request->files(), row.files);
        EXPECT_EQ(row.request->destination(), row.destination);
        EXPECT_EQ(row.request->startingRevision(), row.start);
        EXPECT_EQ(row.request->endingRevision(), row.end);
        EXPECT_EQ(row.request->options().size(), row.options.size());
        for (const auto& [key, value] : row.options) {
            EXPECT_EQ(row.request->options()[key], value) << key;
        }
        EXPECT_EQ(row.request->repositoryToAuthenticate(),
                  row.authenticates ? repository : nullptr);
    }
}

} // namespace
} // namespace quen::test
