#include "Tests/Host/Keeping/TwoPeople.h"

#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Faults/OperationKinds.h"
#include "Tests/Support/RequestBuilder.h"
#include "Tests/Support/Trees.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace quen::test {

TwoPeople::TwoPeople() {
    svn(sandbox().root(), {"checkout", "-q", sandbox().url("trunk"), theirs().string()});
}

void TwoPeople::write(const std::filesystem::path& workingCopy, const std::filesystem::path& path,
                      std::string_view text) const {
    sandbox().write(workingCopy / path, text);
}

std::string TwoPeople::read(const std::filesystem::path& workingCopy,
                            const std::filesystem::path& path) const {
    std::ifstream file(workingCopy / path, std::ios::binary);
    return file.is_open()
               ? std::string{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}
               : "absent";
}

std::string TwoPeople::svn(const std::filesystem::path& workingCopy,
                           const Sandbox::Words& words) const {
    Sandbox::Words command{"svn"};
    command.insert(command.end(), words.begin(), words.end());
    const Ran ran = sandbox().run(command, workingCopy);
    if (ran.status != 0) {
        throw std::runtime_error("svn " + words.front() + ": " + ran.err);
    }
    return ran.out;
}

void TwoPeople::commitOurs(const std::string& message) const {
    svn(ours(), {"commit", "-q", "-m", message});
}

void TwoPeople::commitTheirs(const std::string& message) const {
    svn(theirs(), {"commit", "-q", "-m", message});
}

void TwoPeople::updateTheirs() const {
    svn(theirs(), {"update", "-q"});
}

Told TwoPeople::told(const QuenSourceControlRequestPtr& request) const {
    ChangeFactsReader reader(changeColumnsOf(request->type()));
    const RunContext::Scope scope(
        RunContext::current()
            .withWorkingDirectory(sandbox().root().string())
            .withOutputWatcher([&](const QuenSourceControlOperation& /*operation*/,
                                   std::string_view piece) { reader.take(piece); }));
    const auto operation = loadedProvider()->operationForRequest(request);
    if (operation == nullptr) {
        throw std::runtime_error("The provider makes no operation of the request.");
    }
    operation->run();
    return {reader.takeFacts(), operation->error(), operation->result()};
}

Told TwoPeople::update() const {
    return perform(RequestTypeUpdate, {ours().string()});
}

Told TwoPeople::perform(std::int32_t type, const std::vector<std::string>& paths) const {
    Request request;
    request.type = type;
    request.sourceTree = workingTree({.location = ours().string()});
    request.files = StringArray(paths.begin(), paths.end());
    if (type == RequestTypeCommit) {
        request.options = {{QuenSourceControlRequestOptionMessage, "Why"}};
    }
    return told(request.make());
}

Told TwoPeople::merge(const String& source) const {
    Request request;
    request.type = RequestTypeMerge;
    request.sourceTree = workingTree({.location = ours().string()});
    request.destination = source;
    request.files = StringArray{ours().string()};
    return told(request.make());
}

} // namespace quen::test
