#include "Foundation/XMLReport.h"
#include "Host/ClientCommand.h"
#include "Tools/Server/Methods/ChangeJson.h"
#include "Tools/Server/Methods/FileContent.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/TextFile.h"

#include <algorithm>
#include <utility>

namespace quen::tools::server {

namespace {

using Words = std::vector<std::string>;

/// What an interrupted run of these leaves is what one that edits the ignored names does.
constexpr std::int32_t likeAnEdit = RequestTypeIgnore;

/// What is said of items beside their contents: the changelist, a property, the lock.
struct AttributeParams {
    std::string root;
    std::vector<std::string> paths;
    /// The client's words; the paths come behind them.
    Words words;
    /// What became of each path.
    std::string action;
    std::string title;
    /// A property's new text.
    std::optional<std::string> value = {};
};

/// A name that the client takes for what it is.
std::string readName(const JsonInput& input) {
    std::string name = input.string();
    if (name.empty() || name.starts_with('-') || name.find('\0') != std::string::npos) {
        input.fail("expected a name that is not empty and does not begin with -");
    }
    return name;
}

AttributeParams paramsFor(const JsonInput& params) {
    AttributeParams attribute;
    attribute.paths = readPaths(params);
    attribute.root = rootOf(params, attribute.paths);
    return attribute;
}

AttributeParams decodeChangelist(const JsonInput& params) {
    params.requireObject({"paths", "name"});
    AttributeParams attribute = paramsFor(params);
    const JsonInput name = params.member("name");
    attribute.title = "Sorting";
    if (name.isNull()) {
        attribute.words = {"changelist", "--remove"};
        attribute.action = "unlisted";
    } else {
        attribute.words = {"changelist", readName(name)};
        attribute.action = "listed";
    }
    return attribute;
}

AttributeParams decodeSetProperty(const JsonInput& params) {
    params.requireObject({"paths", "name", "value"});
    AttributeParams attribute = paramsFor(params);
    const std::string name = readName(params.member("name"));
    const String value = params.member("value").stringOrNil();
    attribute.title = "Setting the property";
    if (value.isNil()) {
        attribute.words = {"propdel", name};
        attribute.action = "deleted";
    } else {
        attribute.words = {"propset", name, "-F"};
        attribute.action = "set";
        attribute.value = value.str();
    }
    return attribute;
}

AttributeParams decodeLock(const JsonInput& params) {
    params.requireObject({"paths", "message", "steal"});
    AttributeParams attribute = paramsFor(params);
    const std::string message = readText(params, "message");
    attribute.title = "Locking";
    attribute.words = {"lock"};
    attribute.action = "locked";
    if (readFlag(params, "steal")) {
        attribute.words.emplace_back("--force");
    }
    if (!message.empty()) {
        // The client would refuse the path of something that is there, but for the first option.
        attribute.words.insert(attribute.words.end(), {"--force-log", "-m", message});
    }
    return attribute;
}

AttributeParams decodeUnlock(const JsonInput& params) {
    params.requireObject({"paths", "force"});
    AttributeParams attribute = paramsFor(params);
    attribute.title = "Releasing the lock";
    attribute.words = {"unlock"};
    attribute.action = "unlocked";
    if (readFlag(params, "force")) {
        attribute.words.emplace_back("--force");
    }
    return attribute;
}

OrderedJson attributesJson(const AttributeParams& params, const Ran& ran) {
    OrderedJson items = OrderedJson::array();
    for (const std::string& path : params.paths) {
        if (ran.isWell()) {
            items.push_back({{"path", toJson(String(path))}, {"action", params.action}});
        }
    }
    OrderedJson json{{"items", std::move(items)}};
    addOutcome(json, ran);
    return json;
}

OrderedJson setAttribute(const Services& services, Call& call, const AttributeParams& params) {
    Words words = params.words;
    std::optional<TextFile> file;
    if (params.value) {
        file.emplace(*params.value);
        words.push_back(file->path());
    }
    ChangeFacts facts;
    const Ran ran = runChange(
        services, call, {params.title, params.root, params.paths, ChangeColumns::schedule}, facts,
        [&](const RunOptions& options) {
            return services.runs.run(
                [&] { return ClientCommand::make(words, params.paths, likeAnEdit); }, options);
        });
    return attributesJson(params, ran);
}

void addAttributeMethod(Server& server, const Services& services, const char* name,
                        AttributeParams (*decode)(const JsonInput&)) {
    server.dispatcher().add(change<AttributeParams>(
        name, decode, [services](Call& call, const AttributeParams& params) {
            return setAttribute(services, call, params);
        }));
}

OrderedJson propertyJson(const XMLElement& property) {
    const std::string_view encoding = property.attribute("encoding").value_or("");
    const String text(property.text());
    OrderedJson json{{"name", toJson(String(property.attribute("name").value_or("")))}};
    json["value"] = encoding.empty() ? toJson(text) : OrderedJson();
    if (!encoding.empty()) {
        std::string base64 = text.str();
        std::erase_if(base64, [](char each) { return each == '\n' || each == '\r'; });
        json["base64"] = base64;
    }
    return json;
}

struct LocationParams {
    std::string location;
};

LocationParams decodeLocation(const JsonInput& params) {
    params.requireObject({"path", "url"});
    return {readLocation(params)};
}

OrderedJson properties(const Services& services, const Call& call, const LocationParams& params) {
    OrderedJson list = OrderedJson::array();
    XMLReportReader reader({"target", "property"}, [&](const XMLElement& property, std::size_t) {
        list.push_back(propertyJson(property));
    });
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) { reader.read(piece); };
    const Ran ran = services.runs.run(
        [&] {
            return ClientCommand::make({"proplist", "--verbose", "--xml"}, {params.location});
        },
        options);
    static_cast<void>(reader.finish()); // a run that failed leaves its report open
    OrderedJson json{{"properties", std::move(list)}};
    addOutcome(json, ran);
    return json;
}

} // namespace

void addAttributeMethods(Server& server, const Services& services) {
    addAttributeMethod(server, services, "change/changelist", decodeChangelist);
    addAttributeMethod(server, services, "property/set", decodeSetProperty);
    addAttributeMethod(server, services, "lock/get", decodeLock);
    addAttributeMethod(server, services, "lock/release", decodeUnlock);
    server.dispatcher().add(
        query<LocationParams>("property/list", decodeLocation,
                              [services](const Call& call, const LocationParams& params) {
                                  return properties(services, call, params);
                              }));
}

} // namespace quen::tools::server
