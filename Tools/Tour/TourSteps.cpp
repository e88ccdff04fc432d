#include "Tools/Tour/TourSteps.h"

#include <fstream>
#include <optional>

namespace quen::tools {

namespace {

/// What a request is made of, named where it is made.
struct Ask {
    std::int32_t type = 0;
    std::optional<StringArray> files{};
    String destination{};
    Dictionary options{};
    String start{};
    String end{};
};

/// The walk, with what its steps share.
class TourWalk {
public:
    TourWalk(const TourProject& project, TourStage& stage) : project_(project), stage_(stage) {}

    void begin();
    void edit();
    void askTheRepository();
    void branchAndConflict();
    void merge();
    void rearrange();
    void meetTheColleague();

private:
    /// A request about the working copy.
    void here(const std::string& title, const Ask& ask) {
        show(title, ask, project_.workingTree(project_.workingCopy()));
    }
    /// A request about the repository itself.
    void there(const std::string& title, const Ask& ask) {
        show(title, ask, project_.repository());
    }

    void show(const std::string& title, const Ask& ask,
              const QuenSourceControlSourceTreePtr& tree) {
        auto request = std::make_shared<QuenSourceControlRequest>();
        request->initWithType(ask.type, tree, ask.destination, ask.files, ask.options);
        request->setStartingRevision(ask.start);
        request->setEndingRevision(ask.end);
        request->setRepositoryToAuthenticate(project_.repository());
        stage_.show(title, request);
    }

    void commit(const std::string& title, const StringArray& files, const String& message) {
        here(title, {.type = RequestTypeCommit, .files = files, .options = says(message)});
    }

    static Dictionary says(const String& message) {
        return {{QuenSourceControlRequestOptionMessage, message}};
    }

    void write(const std::string& name, std::string_view content) const {
        writeFile(std::filesystem::path(project_.workingCopy()) / name, content);
    }

    const TourProject& project_;
    TourStage& stage_;
};

void TourWalk::begin() {
    stage_.say("A small project goes into a fresh repository.");
    there("Import the project",
          {.type = RequestTypeImport,
           .files = StringArray{project_.seed()},
           .options = {{QuenSourceControlRequestOptionMessage, "Import the greeter"},
                       {QuenSourceControlRequestOptionSourceLocation, String(project_.url(""))}}});
    there("List what is there now",
          {.type = RequestTypeList, .files = StringArray{project_.url("")}});
    there("Check out the trunk", {.type = RequestTypeCheckout,
                                  .files = StringArray{project_.url("trunk")},
                                  .destination = project_.workingCopy()});
    there("Check out a colleague's working copy", {.type = RequestTypeCheckout,
                                                   .files = StringArray{project_.url("trunk")},
                                                   .destination = project_.secondWorkingCopy()});
    std::filesystem::current_path(project_.workingCopy());
}

void TourWalk::edit() {
    stage_.say("Some work: a changed file, a new one, a directory, a build product.");
    write("greet.c", "#include <stdio.h>\n\nvoid greet(const char *name) {\n"
                     "    printf(\"Good morning, %s!\\n\", name);\n}\n");
    write("icon@2x.txt", "(an icon)\n");
    write("build.log", "built\n");
    here("Add the new file", {.type = RequestTypeAdd, .files = StringArray{"icon@2x.txt"}});
    here("Make a directory", {.type = RequestTypeMakeDirectory, .destination = "docs"});
    here("Ignore the build product",
         {.type = RequestTypeIgnore, .files = StringArray{"build.log"}});
    here("See what has changed", {.type = RequestTypeStatus, .files = StringArray{"."}});
    here("See how", {.type = RequestTypeDiff});
    commit("Commit it", {"."}, "Greet by the time of day");
    here("Bring the working copy up to date",
         {.type = RequestTypeUpdate, .files = StringArray{"."}});
    here("Stop ignoring the build product",
         {.type = RequestTypeUnignore, .files = StringArray{"build.log"}});
    here("Take that back", {.type = RequestTypeRevert, .files = StringArray{"."}});
}

void TourWalk::askTheRepository() {
    stage_.say("Questions about where things are and how they came to be.");
    here("Where does this come from?", {.type = RequestTypeInfo, .files = StringArray{"."}});
    here("Is this under version control?",
         {.type = RequestTypeInfoCheck, .files = StringArray{"main.c"}});
    here("Is that?", {.type = RequestTypeInfoCheckAlternate, .files = StringArray{"greet.c"}});
    here("Which branch is this?", {.type = RequestTypeCurrentBranch});
    here("What happened here?",
         {.type = RequestTypeLog,
          .files = StringArray{"."},
          .options = {{QuenSourceControlRequestOptionLogOutputFilesChanged, true},
                      {QuenSourceControlRequestOptionLogOutputLimit, 5}}});
    here("And in the whole working copy?", {.type = RequestTypeLogAll});
    here("Who wrote these lines?", {.type = RequestTypeBlame, .files = StringArray{"greet.c"}});
    here("How did the file look at first?",
         {.type = RequestTypeExportFile, .files = StringArray{"greet.c"}, .start = "1"});
    here("What lies between the two?",
         {.type = RequestTypeDiff, .files = StringArray{"greet.c"}, .start = "1", .end = "2"});
}

void TourWalk::branchAndConflict() {
    stage_.say("A branch, and an edit that gets in the way of switching to it.");
    there("Make a branch", {.type = RequestTypeRemoteCopy,
                            .destination = "polite",
                            .options = says("A branch for manners")});
    there("List the branches", {.type = RequestTypeListBranches});
    here("Switch to the branch", {.type = RequestTypeSwitch,
                                  .files = StringArray{"."},
                                  .destination = project_.url("branches/polite")});
    write("greet.h", "void greet(const char *name); /* always politely */\n");
    commit("Commit on the branch", {"greet.h"}, "Promise manners");
    here("Switch back to the trunk", {.type = RequestTypeSwitch,
                                      .files = StringArray{"."},
                                      .destination = project_.url("trunk")});
    write("greet.h", "void greet(const char *name); /* loudly */\n");
    here("Switch with an edit at hand", {.type = RequestTypeSwitch,
                                         .files = StringArray{"."},
                                         .destination = project_.url("branches/polite")});
    here("See the conflict", {.type = RequestTypeStatus, .files = StringArray{"greet.h"}});
    write("greet.h", "void greet(const char *name); /* politely, but audibly */\n");
    here("Resolve it", {.type = RequestTypeResolve, .files = StringArray{"greet.h"}});
    commit("Commit the resolution", {"greet.h"}, "Be heard as well");
    there("What does the branch change?", {.type = RequestTypeDiff,
                                           .files = StringArray{project_.url("trunk")},
                                           .destination = project_.url("branches/polite")});
}

void TourWalk::merge() {
    stage_.say("The branch comes home; where both sides changed a line, ours stays.");
    here("Back to the trunk", {.type = RequestTypeSwitch,
                               .files = StringArray{"."},
                               .destination = project_.url("trunk")});
    write("greet.h", "void greet(const char *name); /* see greet.c */\n");
    commit("Change the same line on the trunk", {"greet.h"}, "Point at the source");
    here("Update before merging", {.type = RequestTypeUpdate, .files = StringArray{"."}});
    here("Merge", {.type = RequestTypeMerge,
                   .files = StringArray{"."},
                   .destination = project_.url("branches/polite")});
    here("See what the merge did", {.type = RequestTypeStatus, .files = StringArray{"."}});
    commit("Commit the merge", {"."}, "Merge the branch for manners");
    there("Remove the branch", {.type = RequestTypeRemoteRemove,
                                .destination = "polite",
                                .options = says("Manners have arrived")});
}

void TourWalk::rearrange() {
    stage_.say("Things find their places.");
    here("Copy a file",
         {.type = RequestTypeCopy, .files = StringArray{"greet.c"}, .destination = "greet_de.c"});
    const std::string moved = project_.workingCopy() + "/docs/icons/icon.txt";
    here("Move a file, its new directory with it",
         {.type = RequestTypeMove,
          .files = StringArray{project_.workingCopy() + "/icon@2x.txt"},
          .destination = moved});
    here("Remove a file", {.type = RequestTypeRemove, .files = StringArray{"greet_de.c"}});
    commit("Commit the new order", {"."}, "Tidy up");
}

void TourWalk::meetTheColleague() {
    stage_.say("A colleague has been working too.");
    const std::string theirs = project_.secondWorkingCopy();
    writeFile(std::filesystem::path(theirs) / "main.c",
              "#include \"greet.h\"\n\nint main(int argc, char **argv) {\n"
              "    greet(argc > 1 ? argv[1] : \"world\");\n    return 0;\n}\n");
    const auto theirTree = project_.workingTree(theirs);
    show("The colleague commits",
         {.type = RequestTypeCommit,
          .files = StringArray{theirs + "/main.c"},
          .options = says("Greet by name")},
         theirTree);
    here("What has changed in the repository?",
         {.type = RequestTypeRemoteStatus, .files = StringArray{"."}});
    here("Fetch it", {.type = RequestTypeUpdate, .files = StringArray{"."}});
    show("The colleague updates as well", {.type = RequestTypeUpdate, .files = StringArray{theirs}},
         theirTree);
}

} // namespace

void walkTour(const TourProject& project, TourStage& stage) {
    TourWalk walk(project, stage);
    walk.begin();
    walk.edit();
    walk.askTheRepository();
    walk.branchAndConflict();
    walk.merge();
    walk.rearrange();
    walk.meetTheColleague();
}

} // namespace quen::tools
