#include "Tools/Tour/TourProject.h"

#include "Foundation/PathComponents.h"
#include "Host/Process/Process.h"
#include "Host/RunContext.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace quen::tools {

void writeFile(const std::filesystem::path& path, std::string_view content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << content << std::flush;
    if (!file) {
        throw std::filesystem::filesystem_error("cannot write", path,
                                                std::error_code(EIO, std::generic_category()));
    }
}

std::string TourProject::createRepository() const {
    ProcessInvocation invocation;
    invocation.launchPath =
        appendingPathComponent(RunContext::current().toolsDirectory().view(), "svnadmin");
    invocation.arguments = {"create", place("repository")};
    const ProcessOutcome outcome = runProcess(invocation, {});
    if (outcome.exitStatus == 0) {
        return {};
    }
    return "A repository cannot be made with \"" + invocation.launchPath.str() + "\": " +
           (outcome.reason.isNil() ? String(outcome.errors->bytes()) : outcome.reason).str();
}

std::unique_ptr<TourProject> TourProject::make(std::string& problem) {
    auto directory = TemporaryDirectory::make();
    if (directory == nullptr) {
        problem = "No temporary directory can be made below \"" +
                  RunContext::current().temporaryDirectory().str() + "\".";
        return nullptr;
    }
    std::unique_ptr<TourProject> project(new TourProject(std::move(directory)));
    problem = project->createRepository();
    if (!problem.empty()) {
        return nullptr;
    }
    const std::filesystem::path seed = project->seed();
    writeFile(seed / "trunk/main.c", "#include \"greet.h\"\n\nint main(void) {\n"
                                     "    greet(\"world\");\n    return 0;\n}\n");
    writeFile(seed / "trunk/greet.h", "void greet(const char *name);\n");
    writeFile(seed / "trunk/greet.c", "#include <stdio.h>\n\nvoid greet(const char *name) {\n"
                                      "    printf(\"Hello, %s!\\n\", name);\n}\n");
    std::filesystem::create_directories(seed / "branches");
    std::filesystem::create_directories(seed / "tags");
    return project;
}

std::string TourProject::url(std::string_view path) const {
    return "file://" + place("repository") + "/" + std::string(path);
}

QuenSourceControlRepositoryPtr TourProject::repository() const {
    HostRepository::Facts facts;
    facts.name = "tour";
    facts.location = "file://" + place("repository");
    facts.trunkLocation = URL::fromString(url("trunk"));
    facts.branchesLocation = URL::fromString(url("branches"));
    return std::make_shared<HostRepository>(facts);
}

QuenSourceControlWorkingTreePtr TourProject::workingTree(const std::string& location) const {
    HostWorkingTree::Facts facts;
    facts.name = "tour";
    facts.location = location;
    facts.repository = repository();
    return std::make_shared<HostWorkingTree>(facts);
}

} // namespace quen::tools
