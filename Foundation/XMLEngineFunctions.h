#pragma once

#include <expat.h>

namespace quen {

/// expat's functions, taken from its own library alone: calls that were linked would go to whatever
/// copy of expat a host has, and the library that was linked would take the place of a host's copy
/// in its other plug-ins. Private to the XML reader.
struct XMLEngineFunctions {
    /// Null where the library cannot be opened; `problem` says why.
    static const XMLEngineFunctions* get() noexcept;
    static const char* problem() noexcept;

    decltype(&::XML_ParserCreate) parserCreate = nullptr;
    decltype(&::XML_ParserFree) parserFree = nullptr;
    decltype(&::XML_SetUserData) setUserData = nullptr;
    decltype(&::XML_SetElementHandler) setElementHandler = nullptr;
    decltype(&::XML_SetCharacterDataHandler) setCharacterDataHandler = nullptr;
    decltype(&::XML_SetDefaultHandlerExpand) setDefaultHandlerExpand = nullptr;
    decltype(&::XML_SetExternalEntityRefHandler) setExternalEntityRefHandler = nullptr;
    decltype(&::XML_SetSkippedEntityHandler) setSkippedEntityHandler = nullptr;
    decltype(&::XML_SetNotStandaloneHandler) setNotStandaloneHandler = nullptr;
    decltype(&::XML_SetXmlDeclHandler) setXmlDeclHandler = nullptr;
    decltype(&::XML_SetEntityDeclHandler) setEntityDeclHandler = nullptr;
    decltype(&::XML_SetAttlistDeclHandler) setAttlistDeclHandler = nullptr;
    decltype(&::XML_DefaultCurrent) defaultCurrent = nullptr;
    decltype(&::XML_GetInputContext) getInputContext = nullptr;
    decltype(&::XML_GetSpecifiedAttributeCount) getSpecifiedAttributeCount = nullptr;
    decltype(&::XML_GetCurrentByteIndex) getCurrentByteIndex = nullptr;
    decltype(&::XML_GetCurrentByteCount) getCurrentByteCount = nullptr;
    decltype(&::XML_GetCurrentLineNumber) getCurrentLineNumber = nullptr;
    decltype(&::XML_GetCurrentColumnNumber) getCurrentColumnNumber = nullptr;
    decltype(&::XML_GetErrorCode) getErrorCode = nullptr;
    decltype(&::XML_ErrorString) errorString = nullptr;
    decltype(&::XML_Parse) parse = nullptr;
    decltype(&::XML_StopParser) stopParser = nullptr;
};

/// Only where `XMLEngineFunctions::get` is known not to be null.
inline const XMLEngineFunctions& xmlEngine() noexcept {
    return *XMLEngineFunctions::get();
}

} // namespace quen
