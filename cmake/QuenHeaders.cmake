# What is installed of the headers: all that a host may include, as <quen/...>.
#
# Within the tree a header is included by its path from the root. Installed ones include each other
# as <quen/...>, so that a file of a host's own that happens to have the same name is not taken for
# one of them.
#
# Included by the build's lists; run as a script it writes the headers:
#
#     cmake -D SOURCE=<tree> -D DESTINATION=<directory> -P QuenHeaders.cmake

set(QUEN_PUBLIC_HEADERS
    Contract/MarlFoundation/MarlAssertionFailureHandler.h
    Contract/MarlFoundation/MarlDeveloperPaths.h
    Contract/MarlFoundation/MarlFilePath.h
    Contract/MarlFoundation/MarlLogAspect.h
    Contract/QuenFoundation/QuenSourceControlConstants.h
    Contract/QuenFoundation/QuenSourceControlDefinitions.h
    Contract/QuenFoundation/QuenSourceControlErrorCode.h
    Contract/QuenFoundation/QuenSourceControlFunctions.h
    Contract/QuenFoundation/QuenSourceControlManager.h
    Contract/QuenFoundation/QuenSourceControlOperation.h
    Contract/QuenFoundation/QuenSourceControlPlugIn.h
    Contract/QuenFoundation/QuenSourceControlProtocol.h
    Contract/QuenFoundation/QuenSourceControlRequest.h
    Contract/QuenFoundation/QuenSourceControlRequestFacts.h
    Contract/QuenFoundation/QuenSourceControlRequestType.h
    Contract/QuenFoundation/QuenSourceControlRun.h
    Contract/QuenFoundation/QuenSourceControlSourceTree.h
    Contract/QuenFoundation/QuenSourceControlStatus.h
    Foundation/Ambient.h
    Foundation/Data.h
    Foundation/Date.h
    Foundation/DictionaryKeys.h
    Foundation/Export.h
    Foundation/Format.h
    Foundation/Lines.h
    Foundation/Operation.h
    Foundation/OperationQueue.h
    Foundation/PathComponents.h
    Foundation/PegPath.h
    Foundation/PercentCoding.h
    Foundation/RecordMemory.h
    Foundation/Shared.h
    Foundation/String.h
    Foundation/URL.h
    Foundation/Value.h
    Foundation/XMLReport.h
    Host/ClientCommand.h
    Host/ClientRunner.h
    Host/Credentials/CredentialSource.h
    Host/Credentials/Credentials.h
    Host/Credentials/Secret.h
    Host/Credentials/SignInFailure.h
    Host/Embedding/ErrorDescription.h
    Host/Embedding/InstalledModule.h
    Host/Embedding/OperationStart.h
    Host/Embedding/Records.h
    Host/Embedding/RequestBuilder.h
    Host/Embedding/WorkingCopy.h
    Host/Facts/ChangeFacts.h
    Host/Facts/InfoFacts.h
    Host/Facts/ListFacts.h
    Host/Facts/ReportFacts.h
    Host/Facts/StatusFacts.h
    Host/Facts/UnreadableNames.h
    Host/HostSourceTrees.h
    Host/Keeping/FileErrors.h
    Host/Keeping/FileWriter.h
    Host/Keeping/FreeName.h
    Host/Keeping/TheirsKeeper.h
    Host/Keeping/UndoStore.h
    Host/Plans/Plans.h
    Host/PlugInLoader.h
    Host/Process/FileDescriptor.h
    Host/RunContext.h
    Host/RunSettings.h
    Host/TaskFailure.h
    Host/ToolRunner.h
    Host/WorkingCopyCleanup.h)

# The path below <quen/...>.
function(quen_installed_path header path)
    string(REGEX REPLACE "^Contract/" "" shown "${header}")
    set(${path} "${shown}" PARENT_SCOPE)
endfunction()

# Writes the headers below <destination>/quen. What has not changed is not touched.
function(quen_write_headers source destination)
    foreach(header IN LISTS QUEN_PUBLIC_HEADERS)
        file(READ "${source}/${header}" text)
        string(REGEX REPLACE "#include \"([^\"]*)\"" "#include <quen/\\1>" text "${text}")
        quen_installed_path("${header}" path)
        set(file "${destination}/quen/${path}")
        set(former "")
        if(EXISTS "${file}")
            file(READ "${file}" former)
        endif()
        if(NOT former STREQUAL text)
            file(WRITE "${file}" "${text}")
        endif()
    endforeach()
endfunction()

if(CMAKE_SCRIPT_MODE_FILE)
    quen_write_headers("${SOURCE}" "${DESTINATION}")
endif()
