#include "Foundation/OperationQueue.h"
#include "Host/ClassName.h"
#include "Host/PlugInLoader.h"
#include "Host/RunContext.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/CaseName.h"
#include "Tests/System/EveryType/TypeCase.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

QuenSourceControlProtocolPtr provider() {
    static const QuenSourceControlProtocolPtr loaded = [] {
        Error problem;
        const auto made = loadProvider(QUEN_TEST_MODULE, &problem);
        EXPECT_NE(made, nullptr) << problem.localizedDescription();
        return made;
    }();
    return loaded;
}

class EveryType : public testing::TestWithParam<TypeCase> {
protected:
    void SetUp() override {
        std::filesystem::create_directory(sandbox_.root() / "temporary");
        // The client that this process starts sees the sandbox's home, too.
        ASSERT_EQ(setenv("HOME", (sandbox_.root() / "home").c_str(), 1), 0);
        makeProject(sandbox_);
        if (GetParam().prepare) {
            GetParam().prepare(sandbox_);
        }
    }

    /// The operation after it ran on a queue, as a host runs it.
    QuenSourceControlOperationPtr serve() const {
        const QuenSourceControlRequestPtr request = GetParam().request(sandbox_).make();
        auto operation = provider()->operationForRequest(request);
        if (operation != nullptr && !operation->error()) {
            const OperationQueuePtr queue = OperationQueue::make(1);
            queue->addOperation(operation);
            queue->waitUntilAllOperationsAreFinished();
        }
        return operation;
    }

    /// The file that a result of one record names.
    static std::string pathIn(const Value& result) {
        const Array* records = result.array();
        if (records == nullptr || records->count() != 1) {
            return "no result";
        }
        const Value& path = (*(*records)[0].dictionary())[QuenSourceControlOperationPathKey];
        return path.filePath() == nullptr ? "no path" : (*path.filePath())->pathString().str();
    }

    std::string shown(const Value& value) const {
        std::ostringstream out;
        PrintTo(value, &out);
        static const std::regex freshDirectory("SANDBOX/temporary/[^/]+");
        return std::regex_replace(sandbox_.neutral(out.str()), freshDirectory, "TEMPORARY");
    }

    void expectError(const Error& error) const {
        const ExpectedError& expected = GetParam().error;
        ASSERT_EQ(static_cast<bool>(error), expected.code != 0) << shown(error);
        if (error) {
            EXPECT_EQ(error.code(), expected.code) << shown(error);
            EXPECT_EQ(error.domain() == QuenSourceControlErrorDomain, expected.isProviders);
            EXPECT_THAT(shown(error), HasSubstr(expected.text));
        }
    }

    void expectEffects(const Value& result) const {
        for (const Effect& effect : GetParam().effects) {
            Sandbox::Words words;
            for (const std::string& word : effect.words) {
                words.push_back(word.starts_with("^/") ? sandbox_.url(word.substr(2)) : word);
            }
            EXPECT_EQ(sandbox_.neutral(sandbox_.svn(words)), effect.out) << effect.words.front();
        }
        for (const auto& [name, text] : GetParam().contents) {
            EXPECT_EQ(sandbox_.read(name == resultFile ? pathIn(result) : name), text) << name;
        }
    }

    Sandbox sandbox_;
    std::vector<String> failures_;
    const RunContext::Scope scope_{
        RunContext::current()
            .withTemporaryDirectory((sandbox_.root() / "temporary").string())
            .withAssertionHandler([this](const MarlAssertionFailure& failure) {
                failures_.push_back(failure.format);
            })};
};

TEST_P(EveryType, DoesWhatTheClientConfirms) {
    const QuenSourceControlOperationPtr operation = serve();
    if (operation == nullptr) {
        EXPECT_EQ(GetParam().className, nullptr);
    } else {
        ASSERT_STREQ(classNameOf(*operation).str().c_str(), GetParam().className);
        EXPECT_EQ(shown(operation->result()), GetParam().result);
        expectError(operation->error());
    }
    expectEffects(operation == nullptr ? Value() : operation->result());
    const bool mustNotArrive = GetParam().type == 27 || GetParam().type == 29;
    EXPECT_EQ(failures_.size(), mustNotArrive ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Queries, EveryType, testing::ValuesIn(queryCases()), CaseName());
INSTANTIATE_TEST_SUITE_P(Changes, EveryType, testing::ValuesIn(changeCases()), CaseName());
INSTANTIATE_TEST_SUITE_P(Unserved, EveryType, testing::ValuesIn(unservedCases()), CaseName());

TEST(EveryTypeTable, HoldsASuccessAndARefusalForEachTypeThatIsServed) {
    std::map<std::int32_t, std::set<bool>> outcomes;
    for (const auto& cases : {queryCases(), changeCases()}) {
        for (const TypeCase& each : cases) {
            outcomes[each.type].insert(each.error.code == 0);
        }
    }
    std::set<std::int32_t> unserved;
    for (const TypeCase& each : unservedCases()) {
        unserved.insert(each.type);
    }
    for (std::int32_t type = RequestTypeAdd; type < RequestTypeEnd; ++type) {
        EXPECT_EQ(outcomes[type].size(), unserved.contains(type) ? 0U : 2U) << type;
    }
}

} // namespace

void makeProject(const Sandbox& sandbox) {
    sandbox.write("a.txt", "one\n");
    sandbox.write("b.txt", "b\n");
    sandbox.write("dir/c.txt", "c\n");
    sandbox.svn({"add", "-q", "a.txt", "b.txt", "dir"});
    sandbox.svn({"commit", "-q", "--username", "alice", "-m", "Add files"});
    sandbox.svn({"copy", "-q", "--username", "bob", "-m", "Branch", sandbox.url("trunk"),
                 sandbox.url("branches/one")});
    sandbox.svn({"update", "-q"});
}

void changeElsewhere(const Sandbox& sandbox, const std::string& file, const std::string& text) {
    const std::string other = (sandbox.root() / "other").string();
    sandbox.svn({"checkout", "-q", sandbox.url("trunk"), other});
    sandbox.write(other + "/" + file, text);
    sandbox.svn({"commit", "-q", "--username", "bob", "-m", "Elsewhere", other});
}

QuenSourceControlRepositoryPtr repositoryOf(const Sandbox& sandbox) {
    return repository({.name = "project",
                       .location = sandbox.url(),
                       .user = "alice",
                       .trunkLocation = sandbox.url("trunk"),
                       .branchesLocation = sandbox.url("branches")});
}

QuenSourceControlSourceTreePtr treeOf(const Sandbox& sandbox) {
    return workingTree({.name = "project",
                        .location = sandbox.workingCopy().string(),
                        .repository = repositoryOf(sandbox)});
}

MakeRequest about(std::int32_t type, std::vector<std::string> names, Dictionary options) {
    return [type, names = std::move(names), options = std::move(options)](const Sandbox& sandbox) {
        StringArray files;
        for (const std::string& name : names) {
            files.push_back(inTree(sandbox, name));
        }
        return Request{
            .type = type, .sourceTree = treeOf(sandbox), .files = files, .options = options};
    };
}

MakeRequest atRevision(MakeRequest make, String start, String end) {
    return [make = std::move(make), start = std::move(start),
            end = std::move(end)](const Sandbox& sandbox) {
        Request request = make(sandbox);
        request.startingRevision = start;
        request.endingRevision = end;
        return request;
    };
}

String inTree(const Sandbox& sandbox, std::string_view name) {
    return (sandbox.workingCopy() / name).string();
}

} // namespace quen::test
