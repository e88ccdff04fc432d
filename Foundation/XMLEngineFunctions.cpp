#include "Foundation/XMLEngineFunctions.h"

#include <dlfcn.h>
#include <string>

namespace quen {

namespace {

class EngineLibrary {
public:
    EngineLibrary() {
        library_ = ::dlopen(QUEN_EXPAT_NAME, RTLD_NOW | RTLD_LOCAL);
        if (library_ == nullptr) {
            learnProblem();
            return;
        }
        find("XML_ParserCreate", functions_.parserCreate);
        find("XML_ParserFree", functions_.parserFree);
        find("XML_SetUserData", functions_.setUserData);
        find("XML_SetElementHandler", functions_.setElementHandler);
        find("XML_SetCharacterDataHandler", functions_.setCharacterDataHandler);
        find("XML_SetDefaultHandlerExpand", functions_.setDefaultHandlerExpand);
        find("XML_SetExternalEntityRefHandler", functions_.setExternalEntityRefHandler);
        find("XML_SetSkippedEntityHandler", functions_.setSkippedEntityHandler);
        find("XML_SetNotStandaloneHandler", functions_.setNotStandaloneHandler);
        find("XML_SetXmlDeclHandler", functions_.setXmlDeclHandler);
        find("XML_SetEntityDeclHandler", functions_.setEntityDeclHandler);
        find("XML_SetAttlistDeclHandler", functions_.setAttlistDeclHandler);
        find("XML_DefaultCurrent", functions_.defaultCurrent);
        find("XML_GetInputContext", functions_.getInputContext);
        find("XML_GetSpecifiedAttributeCount", functions_.getSpecifiedAttributeCount);
        find("XML_GetCurrentByteIndex", functions_.getCurrentByteIndex);
        find("XML_GetCurrentByteCount", functions_.getCurrentByteCount);
        find("XML_GetCurrentLineNumber", functions_.getCurrentLineNumber);
        find("XML_GetCurrentColumnNumber", functions_.getCurrentColumnNumber);
        find("XML_GetErrorCode", functions_.getErrorCode);
        find("XML_ErrorString", functions_.errorString);
        find("XML_Parse", functions_.parse);
        find("XML_StopParser", functions_.stopParser);
    }

    const std::string& problem() const noexcept { return problem_; }
    const XMLEngineFunctions& functions() const noexcept { return functions_; }

private:
    template <typename Function> void find(const char* name, Function& function) {
        function = reinterpret_cast<Function>(::dlsym(library_, name));
        if (function == nullptr) {
            learnProblem();
        }
    }

    void learnProblem() {
        const char* const text = ::dlerror(); // NOLINT(concurrency-mt-unsafe): it is the thread's
        problem_ = text == nullptr ? QUEN_EXPAT_NAME : text;
    }

    /// Never closed: readers live anywhere.
    void* library_ = nullptr;
    XMLEngineFunctions functions_;
    std::string problem_;
};

const EngineLibrary& engineLibrary() {
    static const EngineLibrary library;
    return library;
}

} // namespace

const XMLEngineFunctions* XMLEngineFunctions::get() noexcept {
    return engineLibrary().problem().empty() ? &engineLibrary().functions() : nullptr;
}

const char* XMLEngineFunctions::problem() noexcept {
    return engineLibrary().problem().c_str();
}

} // namespace quen
