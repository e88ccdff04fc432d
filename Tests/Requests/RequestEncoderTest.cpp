#include "Tools/Console/RequestDecoder.h"
#include "Tools/Console/RequestEncoder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quen::test {
namespace {

/// Each is what encoding gives back of the request that decoding makes of it.
constexpr const char* objects[] = {
    R"({"type":"RequestTypeAdd"})",
    R"({"type":22})",
    R"({"type":"RequestTypeStatus","files":[]})",
    R"({"type":"RequestTypeStatus","sourceTree":{"kind":"other","name":"x"},"files":["a","b"]})",
    R"({"type":"RequestTypeUpdate","sourceTree":{"kind":"workingTree","location":"/w",)"
    R"("reachable":false,"isValid":false,"repository":{"kind":"repository","name":"server",)"
    R"("location":"https://h/r","user":"jane","trunkLocation":"https://h/r/trunk",)"
    R"("branchesLocation":"https://h/r/branches"}},"files":["/w"]})",
    R"({"type":"RequestTypeExportFile","startingRevision":)"
    R"({"constant":"QuenSourceControlBASERevisionName"},"endingRevision":)"
    R"({"constant":"QuenSourceControlHEADRevisionName"}})",
    R"({"type":"RequestTypeMerge","destination":"u","startingRevision":"1","endingRevision":"2"})",
    R"({"type":"RequestTypeLog","options":{"QuenSourceControlRequestOptionLogOutputLimit":5,)"
    R"("QuenSourceControlRequestOptionLogStopOnBranching":true},)"
    R"("repositoryToAuthenticate":{"kind":"repository"}})",
};

TEST(RequestEncoder, WritesWhatTheDecoderReads) {
    for (const char* const text : objects) {
        const nlohmann::json object = nlohmann::json::parse(text);
        const auto request = tools::decodeRequest(tools::JsonInput(object));
        EXPECT_EQ(tools::requestText(*request), text);
    }
}

} // namespace
} // namespace quen::test
