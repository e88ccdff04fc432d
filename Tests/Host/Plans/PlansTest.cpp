#include "Host/Facts/UnreadableNames.h"
#include "Host/Plans/BranchPlans.h"
#include "Host/Plans/PlanQueries.h"
#include "Host/Plans/Plans.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tests/Host/Keeping/TwoPeople.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>

namespace quen::test {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class PlansTest : public testing::Test {
protected:
    String pathOf(std::string_view name) const { return (people_.ours() / name).string(); }
    std::vector<String> pathsOf(std::initializer_list<std::string_view> names) const {
        std::vector<String> paths;
        for (const std::string_view name : names) {
            paths.push_back(name == "." ? String(people_.ours().string()) : pathOf(name));
        }
        return paths;
    }
    std::string nameOf(const String& path) const {
        const std::string top = people_.ours().string();
        return path.str() == top ? "." : path.str().substr(top.size() + 1);
    }
    template <typename Items> Names namesOf(const Items& items) const {
        Names names;
        for (const auto& each : items) {
            if constexpr (requires { each.path; }) {
                names.push_back(nameOf(each.path));
            } else {
                names.push_back(nameOf(each));
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    Names lossesOf(const std::vector<LostItem>& items) const {
        Names names;
        for (const LostItem& each : items) {
            names.push_back(nameOf(each.path) + (each.losesContent ? " content" : "") +
                            (each.losesProperties ? " properties" : ""));
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    void write(std::string_view name, std::string_view text) const {
        people_.write(people_.ours(), name, text);
    }
    std::string svn(const Sandbox::Words& words) const {
        return people_.svn(people_.ours(), words);
    }
    /// Everything in ours is committed and at the newest revision, theirs too.
    void begin(std::initializer_list<std::string_view> names) const {
        for (const std::string_view name : names) {
            write(name, "1\n2\n3\n");
        }
        svn({"add", "-q", "--force", "."});
        people_.commitOurs("The beginning");
        svn({"update", "-q"});
        people_.updateTheirs();
    }

    const TwoPeople people_;
};

// Commits

TEST_F(PlansTest, ACommitPlanIsWhatTheClientThenSends) {
    begin({"edited", "gone", "props", "dir/a", "dir/b", "gone-dir/x", "moved", "kept@2", "missing",
           "replaced", "listed"});
    write("edited", "mine\n");
    write("dir/a", "mine\n");
    write("kept@2", "mine\n");
    write("listed", "mine\n");
    svn({"changelist", "-q", "later", "listed"});
    svn({"remove", "-q", "gone", "gone-dir"});
    svn({"propset", "-q", "colour", "red", "props"});
    svn({"propset", "-q", "colour", "red", "dir"});
    svn({"move", "-q", "moved", "dir/moved-here"});
    svn({"copy", "-q", "dir/b", "copied"});
    write("new-dir/new", "new\n");
    svn({"add", "-q", "new-dir"});
    svn({"remove", "-q", "replaced"});
    write("replaced", "new\n");
    svn({"add", "-q", "replaced"});
    fs::remove(pathOf("missing").str());
    write("unversioned", "");

    const CommitPlan plan = planCommit(pathsOf({"."}));
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    const Names expected{"copied",  "dir",         "dir/a",  "dir/moved-here", "edited",
                         "gone",    "gone-dir",    "kept@2", "listed",         "moved",
                         "new-dir", "new-dir/new", "props",  "replaced"};
    EXPECT_EQ(namesOf(plan.sent), expected);
    EXPECT_EQ(namesOf(plan.alsoTaken), expected);
    EXPECT_EQ(namesOf(plan.missing), Names{"missing"});
    EXPECT_EQ(namesOf(plan.unversioned), Names{"unversioned"});
    EXPECT_TRUE(plan.needsParents.empty());
    EXPECT_TRUE(plan.needsOtherEnds.empty());
    EXPECT_TRUE(plan.conflicts.empty());
    ASSERT_EQ(plan.groups.size(), 1U);
    EXPECT_EQ(plan.groups[0].workingCopy.str(), people_.ours().string());

    const Told told = people_.perform(RequestTypeCommit, {people_.ours().string()});
    EXPECT_FALSE(told.error) << told.error.description().str();
    Names sent;
    for (const ChangedItem& item : told.facts.items) {
        sent.push_back(item.path.str().substr(std::string("wc/").size()));
    }
    std::sort(sent.begin(), sent.end());
    EXPECT_EQ(sent, expected) << "the client sent what the plan said";
}

TEST_F(PlansTest, ACommitPlanOfSomePathsNamesWhatIsMissingFromThem) {
    begin({"moved", "dir/a"});
    write("new/deep/file", "new\n");
    svn({"add", "-q", "new"});
    svn({"move", "-q", "moved", "moved-here"});
    write("dir/a", "mine\n");
    const CommitPlan plan = planCommit(pathsOf({"new/deep/file", "moved-here", "dir"}));
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    EXPECT_EQ(namesOf(plan.sent), (Names{"dir/a", "moved-here", "new/deep/file"}));
    EXPECT_EQ(namesOf(plan.alsoTaken), Names{"dir/a"});
    EXPECT_EQ(namesOf(plan.needsParents), (Names{"new", "new/deep"}));
    EXPECT_EQ(namesOf(plan.needsOtherEnds), Names{"moved"});
    const Told refused = people_.perform(RequestTypeCommit, {pathOf("new/deep/file").str()});
    EXPECT_TRUE(refused.error) << "the client needs the parents too";
}

TEST_F(PlansTest, ACommitPlanSeparatesWorkingCopies) {
    begin({"a", "lib/l"});
    svn({"propset", "-q", "svn:externals", "^/trunk/lib external", "."});
    people_.commitOurs("An external");
    svn({"update", "-q"});
    write("a", "mine\n");
    write("external/l", "mine\n");
    const CommitPlan whole = planCommit(pathsOf({"."}));
    EXPECT_EQ(namesOf(whole.sent), Names{"a"}) << "an external is not part of it";
    const CommitPlan both = planCommit(pathsOf({"a", "external/l"}));
    EXPECT_EQ(namesOf(both.sent), (Names{"a", "external/l"}));
    ASSERT_EQ(both.groups.size(), 2U);
    EXPECT_EQ(both.groups[0].workingCopy.str(), people_.ours().string());
    EXPECT_EQ(both.groups[1].workingCopy, pathOf("external"));
    EXPECT_EQ(namesOf(both.groups[1].paths), Names{"external/l"});
}

TEST_F(PlansTest, ConflictsAreInTheWayOfACommit) {
    begin({"a"});
    people_.write(people_.theirs(), "a", "theirs\n");
    people_.commitTheirs("Theirs");
    write("a", "ours\n");
    svn({"update", "-q", "--accept", "postpone"});
    const CommitPlan plan = planCommit(pathsOf({"."}));
    EXPECT_EQ(namesOf(plan.conflicts), Names{"a"});
    EXPECT_TRUE(plan.sent.empty());
}

// Losses

TEST_F(PlansTest, ARevertPlanNamesAllThatIsLostAndNothingElse) {
    begin({"edited", "gone", "props", "missing", "source", "dir/a", "dir/b", "replaced", "listed",
           "clean"});
    write("edited", "mine\n");
    write("listed", "mine\n");
    svn({"changelist", "-q", "later", "listed"});
    svn({"remove", "-q", "gone"});
    svn({"propset", "-q", "colour", "red", "props"});
    svn({"copy", "-q", "source", "copied-clean"});
    svn({"copy", "-q", "source", "copied edited@2@"});
    write("copied edited@2", "1\nmine\n");
    svn({"copy", "-q", "source", "copied-props"});
    svn({"propset", "-q", "colour", "red", "copied-props"});
    svn({"copy", "-q", "dir", "dir-copied"});
    write("dir-copied/a", "mine\n");
    svn({"move", "-q", "source", "moved-edited"});
    write("moved-edited", "mine\n");
    write("added", "new\n");
    svn({"add", "-q", "added"});
    svn({"remove", "-q", "replaced"});
    write("replaced", "new\n");
    svn({"add", "-q", "replaced"});
    fs::remove(pathOf("missing").str());
    write("unversioned", "");

    const RevertPlan plan = planRevert(pathsOf({"."}));
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    EXPECT_EQ(lossesOf(plan.lost),
              (Names{"copied edited@2 content", "copied-props properties", "dir-copied/a content",
                     "edited content", "listed content", "moved-edited content", "props properties",
                     "replaced content"}));
    EXPECT_EQ(lostContent(plan.lost).size(), 6U);
    const auto notes = lostPropertyNotes(plan.lost);
    ASSERT_EQ(notes.size(), 1U);
    for (const char* const name : {"copied-props", "props"}) {
        EXPECT_NE(notes[0].str().find("Property changes on: " + pathOf(name).str()),
                  std::string::npos);
    }
    EXPECT_NE(notes[0].str().find("+red"), std::string::npos) << "values are part of it";
    // What the plan does not name must be there after the revert.
    people_.perform(RequestTypeRevert, {people_.ours().string()});
    EXPECT_EQ(people_.read(people_.ours(), "added"), "new\n");
    EXPECT_EQ(people_.read(people_.ours(), "gone"), "1\n2\n3\n");
    EXPECT_EQ(people_.read(people_.ours(), "missing"), "1\n2\n3\n");
    EXPECT_EQ(people_.read(people_.ours(), "edited"), "1\n2\n3\n");
    EXPECT_EQ(people_.read(people_.ours(), "copied edited@2"), "absent");
    EXPECT_EQ(people_.read(people_.ours(), "moved-edited"), "absent");
    EXPECT_TRUE(planRevert(pathsOf({"."})).lost.empty());
}

TEST_F(PlansTest, ARemovePlanNamesAllThatIsInNoRevision) {
    begin({"edited", "clean", "dir/a", "dir/b", "source"});
    write("edited", "mine\n");
    write("dir/a", "mine\n");
    write("dir/unversioned", "");
    write("dir/ignored.o", "");
    write("dir/sub/unversioned", "");
    svn({"propset", "-q", "svn:ignore", "*.o", "dir"});
    write("dir/added", "new\n");
    svn({"add", "-q", "dir/added"});
    svn({"mkdir", "-q", "dir/new-dir"});
    svn({"copy", "-q", "source", "dir/copied-clean"});
    svn({"copy", "-q", "source", "dir/copied-edited"});
    write("dir/copied-edited", "mine\n");
    const RemovePlan plan = planRemove(pathsOf({"edited", "clean", "dir"}));
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    EXPECT_EQ(lossesOf(plan.lost),
              (Names{"dir properties", "dir/a content", "dir/added content",
                     "dir/copied-edited content", "dir/ignored.o content", "dir/sub content",
                     "dir/unversioned content", "edited content"}));
}

TEST(CopiedEditsTest, NothingWithinAFilePassesForAHeading) {
    const CopiedEdits edits = copiedEditsIn("Index: a\n=====\n"
                                            "Index: b\n=====\n--- b\t(revision 2)\n+++ b\n"
                                            "@@ -1 +1,3 @@\n 1\n+Index: c\n+--- c\n"
                                            "Index: d\n=====\nCannot display: file marked as a "
                                            "binary type.\n"
                                            "\nProperty changes on: e f\n____\n## -0,0 +1 ##\n"
                                            "+Property changes on: g\n");
    EXPECT_EQ(edits.texts, (std::set<std::string>{"b", "d"}));
    EXPECT_EQ(edits.properties, std::set<std::string>{"e f"});
}

// What comes from elsewhere

TEST_F(PlansTest, AnUpdatePlanNamesWhatBothSidesChanged) {
    begin({"both", "mine", "theirs", "props", "gone-there"});
    svn({"propset", "-q", "colour", "blue", "props"});
    people_.commitOurs("Properties");
    svn({"update", "-q"});
    people_.updateTheirs();
    people_.write(people_.theirs(), "both", "theirs\n2\n3\n");
    people_.write(people_.theirs(), "theirs", "theirs\n");
    people_.write(people_.theirs(), "in-the-way", "theirs\n");
    people_.svn(people_.theirs(), {"propset", "-q", "colour", "red", "props"});
    people_.svn(people_.theirs(), {"add", "-q", "in-the-way"});
    people_.svn(people_.theirs(), {"remove", "-q", "gone-there"});
    people_.commitTheirs("Theirs");
    write("both", "ours\n2\n3\n");
    write("mine", "ours\n");
    write("gone-there", "ours\n");
    write("in-the-way", "ours\n");
    svn({"propset", "-q", "colour", "green", "props"});
    const UpdatePlan plan = planUpdate(pathsOf({"."}));
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    EXPECT_EQ(plan.revision, 4);
    EXPECT_EQ(namesOf(plan.changedOnBothSides), (Names{"both", "gone-there", "props"}));
    EXPECT_EQ(namesOf(plan.localChanges), (Names{"both", "gone-there", "mine", "props"}));
    EXPECT_EQ(namesOf(plan.inTheWay), Names{"in-the-way"});
    EXPECT_THAT(namesOf(plan.incoming), testing::IsSupersetOf({"both", "theirs", "in-the-way"}));

    // Whatever then conflicts was in the plan.
    const Told told = people_.update();
    Names conflicts;
    for (const ConflictFacts& each : told.facts.conflicts) {
        conflicts.push_back(each.path.str().substr(std::string("wc/").size()));
    }
    std::sort(conflicts.begin(), conflicts.end());
    EXPECT_EQ(conflicts, (Names{"both", "gone-there", "in-the-way", "props"}));
}

TEST_F(PlansTest, AMergePlanIsWhatTheMergeThenSays) {
    begin({"both", "theirs", "mine"});
    svn({"copy", "-q", "-m", "A branch", "^/trunk", "^/branches/b"});
    people_.write(people_.theirs(), "both", "theirs\n2\n3\n");
    people_.write(people_.theirs(), "theirs", "theirs\n");
    people_.commitTheirs("Theirs");
    svn({"switch", "-q", "^/branches/b", "."});
    write("both", "ours\n2\n3\n");
    people_.commitOurs("Ours");
    svn({"update", "-q"});
    write("mine", "not committed\n");
    const MergePlan plan = planMerge(people_.url("trunk"), people_.ours().string());
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    EXPECT_EQ(namesOf(plan.localChanges), Names{"mine"});
    EXPECT_EQ(namesOf(plan.facts.conflicts), Names{"both"});
    EXPECT_THAT(namesOf(plan.facts.items), testing::IsSupersetOf({"both", "theirs"}));
    EXPECT_EQ(people_.read(people_.ours(), "theirs"), "1\n2\n3\n") << "nothing is changed by it";
}

TEST_F(PlansTest, ASwitchPlanNamesWhatBothPlacesConcern) {
    begin({"both", "mine", "theirs @2"});
    svn({"copy", "-q", "-m", "A branch", "^/trunk", "^/branches/b c"});
    people_.svn(people_.theirs(), {"switch", "-q", "^/branches/b c", "."});
    people_.write(people_.theirs(), "both", "theirs\n2\n3\n");
    people_.write(people_.theirs(), "theirs @2", "theirs\n");
    people_.write(people_.theirs(), "in the way", "theirs\n");
    people_.svn(people_.theirs(), {"add", "-q", "in the way"});
    people_.commitTheirs("On the branch");
    write("both", "ours\n2\n3\n");
    write("mine", "ours\n");
    write("in the way", "ours\n");
    const SwitchPlan plan = planSwitch(people_.ours().string(), people_.url("branches/b%20c"));
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    EXPECT_EQ(namesOf(plan.localChanges), (Names{"both", "mine"}));
    EXPECT_EQ(namesOf(plan.changedOnBothSides), Names{"both"});
    EXPECT_EQ(namesOf(plan.inTheWay), Names{"in the way"});
    const SwitchPlan ofWork =
        planSwitchOfWork(people_.ours().string(), people_.url("branches/b%20c"));
    EXPECT_EQ(namesOf(ofWork.localChanges), namesOf(plan.localChanges));
    EXPECT_EQ(namesOf(ofWork.changedOnBothSides), namesOf(plan.changedOnBothSides));
    EXPECT_EQ(namesOf(ofWork.inTheWay), namesOf(plan.inTheWay));
}

/// Each query is a run of the client; a single one tells that there is nothing to look after.
TEST_F(PlansTest, ASwitchPlanOfWorkAsksNoMoreThanItMust) {
    begin({"a"});
    const auto queriesFor = [&] {
        int count = 0;
        const SwitchPlan plan =
            planSwitchOfWork(people_.ours().string(), people_.url("trunk"), [&](auto& query) {
                ++count;
                runHere(query);
            });
        EXPECT_FALSE(plan.error) << plan.error.description().str();
        return count;
    };
    EXPECT_EQ(queriesFor(), 1);
    write("new", "not under version control\n");
    EXPECT_EQ(queriesFor(), 3);
    fs::remove(people_.ours() / "new");
    write("a", "changed\n");
    EXPECT_EQ(queriesFor(), 3);
    EXPECT_TRUE(planSwitchOfWork("/no/where", people_.url("trunk")).error);
}

TEST_F(PlansTest, ANewBranchIsLookedForInOneQuery) {
    begin({"a"});
    svn({"copy", "-q", "-m", "A branch", "^/trunk", "^/branches/b c@2@"});
    int count = 0;
    const auto look = [&](const std::string& name, const std::string& parent) {
        return lookForNewBranch(people_.url(name), people_.url(parent), [&](auto& query) {
            ++count;
            runHere(query);
        });
    };
    const NewBranchPlaces there = look("branches/b%20c@2", "branches");
    EXPECT_TRUE(there.branch.exists && there.parent.exists);
    EXPECT_EQ(there.branch.commit.revision, 3);
    const NewBranchPlaces free = look("branches/free", "branches");
    EXPECT_TRUE(!free.branch.exists && free.parent.exists);
    EXPECT_FALSE(free.branch.error);
    const NewBranchPlaces neither = look("branches/no/free", "branches/no");
    EXPECT_TRUE(!neither.branch.exists && !neither.parent.exists);
    EXPECT_FALSE(neither.branch.error);
    EXPECT_EQ(count, 3);
    const NewBranchPlaces unasked = lookForNewBranch("file:///no/where/b", "file:///no/where");
    EXPECT_TRUE(unasked.branch.error);
}

TEST_F(PlansTest, ACheckoutPlanNamesWhatLiesInItsPlace) {
    begin({"a", "dir/b", "other"});
    const auto plan = [&](const fs::path& directory) {
        return planCheckout(people_.url("trunk"), directory.string());
    };
    const fs::path place = people_.sandbox().root() / "place";
    EXPECT_TRUE(plan(place).inTheWay.empty());
    people_.write(place, "unrelated", "");
    EXPECT_TRUE(plan(place).inTheWay.empty());
    people_.write(place, "a", "mine\n");
    people_.write(place, "dir/b", "mine\n");
    const CheckoutPlan over = plan(place);
    EXPECT_FALSE(over.error);
    EXPECT_FALSE(over.isWorkingCopy);
    EXPECT_EQ(over.inTheWay,
              (std::vector<String>{(place / "a").string(), (place / "dir").string()}));
    EXPECT_TRUE(plan(people_.ours()).isWorkingCopy);
    EXPECT_EQ(plan(place / "a").inTheWay, std::vector<String>{(place / "a").string()});
}

TEST_F(PlansTest, ARemoteRemovePlanTellsHowMuchLiesThere) {
    begin({"a@1", "dir/b", "dir/deep/c"});
    const String directory = people_.url("trunk/dir");
    const String file = people_.url("trunk/a@1");
    const RemoteRemovePlan plan = planRemoteRemove({directory, file});
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    ASSERT_EQ(plan.removed.size(), 2U);
    EXPECT_EQ(plan.removed[0].url, directory);
    EXPECT_EQ(plan.removed[0].kind, "dir");
    EXPECT_EQ(plan.removed[0].itemsBelow, 3U);
    EXPECT_EQ(plan.removed[0].commit.revision, 2);
    EXPECT_EQ(plan.removed[1].kind, "file");
    EXPECT_EQ(plan.removed[1].itemsBelow, 0U);
    EXPECT_TRUE(planRemoteRemove({people_.url("trunk/none")}).error);
    EXPECT_TRUE(planRemoteRemove({}).removed.empty());
}

TEST_F(PlansTest, TheLocalStateIsWhatNoRevisionHolds) {
    begin({"edited", "same"});
    write("edited", "mine\n");
    write("new", "mine\n");
    const LocalState state = localStateOf(pathsOf({"."}));
    EXPECT_FALSE(state.error);
    EXPECT_EQ(namesOf(state.changes), Names{"edited"});
    EXPECT_EQ(namesOf(state.unversioned), Names{"new"});
}

// Failures

TEST_F(PlansTest, AClientThatFailsMakesNoPlan) {
    const String nowhere = people_.sandbox().root().string() + "/home";
    EXPECT_TRUE(planUpdate({nowhere}).error);
    EXPECT_TRUE(localStateOf({nowhere}).error);
    EXPECT_TRUE(planMerge(people_.url("none"), people_.ours().string()).error);
    EXPECT_TRUE(planSwitch(people_.ours().string(), people_.url("none")).error);
    EXPECT_TRUE(planCommit({}).sent.empty());
    EXPECT_TRUE(planRevert({}).touched.empty());
    EXPECT_TRUE(planRemove({}).lost.empty());
}

TEST_F(PlansTest, ANameThatXMLCannotHoldIsNamedAndPlanned) {
    begin({"dir/a"});
    write("dir/bell\a", "mine\n");
    const RemovePlan plan = planRemove(pathsOf({"dir"}));
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    EXPECT_EQ(lossesOf(plan.lost), Names{"dir/bell\a content"});
    ASSERT_EQ(plan.unreadable.size(), 1U);
}

TEST_F(PlansTest, ANameThatIsNotUTF8IsNamed) {
    begin({"dir/a"});
    write("dir/bad\xFFname", "mine\n");
    write("dir/good \u00FC", "mine\n");
    const RemovePlan plan = planRemove(pathsOf({"."}));
    ASSERT_TRUE(plan.error) << "the client cannot say what lies there";
    const UnreadableNames names = unreadableNamesOf(plan.error);
    EXPECT_EQ(names.directory, pathOf("dir"));
    EXPECT_EQ(names.names, std::vector<String>{"bad\xFFname"});
    EXPECT_TRUE(unreadableNamesOf(Error()).directory.isNil());
    const Error other("Some", 1, {{NSLocalizedDescriptionKey, "Something else"}});
    EXPECT_TRUE(unreadableNamesOf(other).directory.isNil());
}

} // namespace

} // namespace quen::test
