#include "Host/PlugInLoader.h"

#include "Foundation/Format.h"
#include "Host/MissingSymbols.h"
#include "Host/OwnLibrary.h"

#include <dlfcn.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quen {

const String QuenPlugInErrorDomain = String::constant("QuenPlugInErrorDomain");

namespace {

/// Answers null, for the callers to pass on.
std::nullptr_t fail(Error* error, PlugInErrorCode code, const String& description) {
    if (error != nullptr) {
        *error = Error(QuenPlugInErrorDomain, code, {{NSLocalizedDescriptionKey, description}});
    }
    return nullptr;
}

/// The loader looks for a bare name in places of its own; a path means the file itself.
String pathOfFile(const String& path) {
    return path.contains("/") ? path : String("./" + path.str());
}

/// Shows the module what the host library exports, where the library came into the process without
/// being shown to others, as with a host that is a plug-in itself.
void showHostToModules() {
    if (const OwnLibrary own = ownLibrary(); !own.isProgram && !own.path.empty()) {
        ::dlopen(own.path.c_str(), RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL);
    }
}

/// Why the system could not load the module: its own words name the first missing symbol only.
String reasonOfFailure(const String& file) {
    const String first = ::dlerror(); // NOLINT(concurrency-mt-unsafe): it is the thread's own
    const std::vector<std::string> missing = missingSymbolsOf(file.str());
    if (missing.empty()) {
        return first;
    }
    std::string text = "this host does not export what the module needs of it:";
    for (const std::string& name : missing) {
        text.append("\n  ").append(name);
    }
    return text;
}

} // namespace

QuenSourceControlProtocolPtr loadProvider(const String& path, Error* error) {
    const String file = pathOfFile(path);
    if (access(file.c_str(), F_OK) != 0) {
        return fail(error, PlugInErrorMissingFile,
                    formatText("There is no plug-in at \"%@\".", {path}));
    }
    showHostToModules();
    void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr) {
        return fail(
            error, PlugInErrorNotLoadable,
            formatText("The plug-in \"%@\" cannot be loaded: %@", {path, reasonOfFailure(file)}));
    }
    auto* const entryPoint = reinterpret_cast<QuenSourceControlPlugInEntryPoint*>(
        dlsym(module, QuenSourceControlPlugInEntryPointName));
    const QuenSourceControlPlugIn* const plugIn = entryPoint == nullptr ? nullptr : entryPoint();
    if (plugIn == nullptr) {
        return fail(
            error, PlugInErrorMissingEntryPoint,
            formatText("\"%@\" is not a source-control plug-in: it has no entry point \"%@\".",
                       {path, QuenSourceControlPlugInEntryPointName}));
    }
    if (plugIn->contractVersion != QuenSourceControlContractVersion) {
        return fail(error, PlugInErrorWrongVersion,
                    formatText("The plug-in \"%@\" was built for version %ld of the contract; this "
                               "host has version %ld.",
                               {path, std::int64_t{plugIn->contractVersion},
                                std::int64_t{QuenSourceControlContractVersion}}));
    }
    return plugIn->makeProvider();
}

} // namespace quen
