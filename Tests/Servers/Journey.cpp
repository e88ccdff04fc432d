#include "Tests/Servers/Journey.h"

#include <gtest/gtest.h>

namespace quen::test {

Json Journey::repository() const {
    return {{"kind", "repository"},
            {"name", "quen"},
            {"location", server_.url()},
            {"user", Server::user},
            {"trunkLocation", server_.url("trunk")},
            {"branchesLocation", server_.url("branches")}};
}

Json Journey::workingTree(const std::filesystem::path& location) const {
    return {{"kind", "workingTree"},
            {"name", "quen"},
            {"location", location.string()},
            {"repository", repository()}};
}

Json Journey::serve(const Json& request, RequestType type, const Json& tree) const {
    Json whole = request;
    whole["type"] = type;
    whole["sourceTree"] = tree;
    whole["repositoryToAuthenticate"] = repository();
    sandbox_.write(place("input.json"), Json{{"request", whole}, {"logLevel", 9}}.dump());
    const auto directory = std::filesystem::exists(workingCopy()) ? workingCopy() : sandbox_.root();
    const Ran ran = sandbox_.run({Sandbox::program(), "request", place("input.json").string()},
                                 directory, server_.variables());
    EXPECT_EQ(ran.status, 0) << ran.err;
    return Json::parse(ran.out);
}

Json Journey::ask(RequestType type, const Json& tree, const Json& request) {
    const Json answer = serve(request, type, tree);
    const bool isGood = answer.at("valid") == true && answer.at("error").is_null() &&
                        answer.at("assertions").empty() && !answer.at("runs").empty();
    EXPECT_TRUE(isGood) << answer.dump(1);
    if (isGood) {
        passed_.insert(type);
        ++requests_;
    }
    return answer.at("result");
}

Json Journey::column(const Json& records, const std::string& key) {
    Json values = Json::array();
    for (const Json& record : records) {
        values.push_back(record.value("QuenSourceControlOperation" + key + "Key", Json()));
    }
    return values;
}

std::set<RequestType> Journey::servedTypes() {
    std::set<RequestType> types;
    for (std::int32_t type = RequestTypeAdd; type < RequestTypeEnd; ++type) {
        types.insert(static_cast<RequestType>(type));
    }
    for (const RequestType other :
         {RequestTypeUnserved22, RequestTypeUnserved24, RequestTypeUnreachable27,
          RequestTypeUnreachable29, RequestTypeUnserved33, RequestTypeUnserved34,
          RequestTypeUnserved35, RequestTypeUnserved36, RequestTypeUnserved37,
          RequestTypeUnserved38}) {
        types.erase(other);
    }
    return types;
}

} // namespace quen::test
