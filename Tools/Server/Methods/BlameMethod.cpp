#include "Host/Facts/HistoryFacts.h"
#include "Host/Facts/InfoFacts.h"
#include "Host/Places/Locations.h"
#include "Tools/Server/Methods/HistoryRecords.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/Services.h"

#include <map>
#include <sys/stat.h>
#include <utility>

namespace quen::tools::server {

namespace {

/// How many lines a client takes easily at once.
constexpr std::size_t partSize = 1000;

struct BlameParams {
    std::string location;
    std::string revision;
};

BlameParams decodeBlame(const JsonInput& params) {
    params.requireObject({"path", "url", "revision"});
    return {readLocation(params), readRevision(params, "revision")};
}

/// Lines that share their revisions.
class BlameTable {
public:
    void add(const CommitFacts& line) {
        if (!line.revision) {
            lines_.push_back(-1);
            return;
        }
        const auto [found, isNew] = indexes_.try_emplace(*line.revision, revisions_.size());
        if (isNew) {
            revisions_.push_back(commitJson(line));
        }
        lines_.push_back(found->second);
    }
    OrderedJson json() const { return {{"revisions", revisions_}, {"lines", lines_}}; }

private:
    std::map<std::int64_t, std::size_t> indexes_;
    OrderedJson revisions_ = OrderedJson::array();
    OrderedJson lines_ = OrderedJson::array();
};

OrderedJson emptyBlame() {
    return {{"revisions", OrderedJson::array()}, {"lines", OrderedJson::array()}};
}

/// Every write to a file changes it. Empty where there is none.
std::string stampOf(const std::string& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) {
        return {};
    }
    return std::to_string(facts.st_ino) + "." + std::to_string(facts.st_size) + "." +
           std::to_string(facts.st_mtim.tv_sec) + "." + std::to_string(facts.st_mtim.tv_nsec) +
           "." + std::to_string(facts.st_ctim.tv_sec) + "." + std::to_string(facts.st_ctim.tv_nsec);
}

InfoEntry infoOf(const Services& services, const Call& call, const std::string& path) {
    InfoFactsReader reader;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) { reader.take(piece); };
    services.runs.perform(makeRequest(RequestTypeInfo, placeOf(path), {path}), options);
    static_cast<void>(reader.finish());
    return reader.facts().entries.empty() ? InfoEntry() : reader.facts().entries.front();
}

/// What a blame is kept under: the repository, the path in it and the revision, which never change
/// together; of the text on disk the file's stamp as well. Empty for what may change unseen.
std::string nameOf(const Services& services, const Call& call, const BlameParams& params) {
    if (params.revision == "HEAD") {
        return {};
    }
    if (isRepositoryURL(params.location)) {
        return params.revision.empty() ? "" : "blame " + params.revision + " " + params.location;
    }
    const InfoEntry info = infoOf(services, call, params.location);
    if (info.schedule != "normal" || !info.commit.revision) {
        return {};
    }
    const std::string stamp = params.revision.empty() ? stampOf(params.location) : "-";
    return stamp.empty()
               ? ""
               : "blame " + params.revision + " " + stamp + " " + info.repositoryUUID.str() + " " +
                     std::to_string(*info.commit.revision) + " " + info.url.str();
}

/// Sends the lines of a blame that was kept as they came when it was made: one record a line.
void sendLines(Call& call, const OrderedJson& blame) {
    const OrderedJson uncommitted = commitJson({});
    OrderedJson part = OrderedJson::array();
    for (const OrderedJson& line : blame["lines"]) {
        const auto index = line.get<std::int64_t>();
        part.push_back(index < 0 ? uncommitted
                                 : blame["revisions"][static_cast<std::size_t>(index)]);
        if (part.size() == partSize) {
            call.sendPart(std::exchange(part, OrderedJson::array()));
        }
    }
    if (!part.empty()) {
        call.sendPart(part);
    }
}

OrderedJson answerOf(Call& call, OrderedJson blame, const Ran& ran) {
    OrderedJson json = call.wantsParts() ? emptyBlame() : std::move(blame);
    addOutcome(json, ran);
    return json;
}

/// Asks the client; parts go to the call while it writes.
OrderedJson readBlame(const Services& services, Call& call, const BlameParams& params, Ran& ran) {
    const auto request = makeRequest(RequestTypeBlame, placeOf(params.location), {params.location});
    if (!params.revision.empty()) {
        request->setStartingRevision(params.revision);
    }
    BlameTable table;
    std::size_t count = 0;
    OrderedJson part = OrderedJson::array();
    BlameReader reader([&](const CommitFacts& line) {
        ++count;
        table.add(line);
        if (call.wantsParts()) {
            part.push_back(commitJson(line));
        }
    });
    const auto sendFresh = [&] {
        call.progress().report("Reading who changed each line", count);
        if (!part.empty()) {
            call.sendPart(std::exchange(part, OrderedJson::array()));
        }
    };
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) {
        reader.take(piece);
        sendFresh();
    };
    ran = services.runs.perform(request, options);
    // What is wrong with the report the run has said.
    static_cast<void>(reader.finish());
    sendFresh();
    return table.json();
}

OrderedJson blame(const Services& services, Call& call, const BlameParams& params) {
    const std::string name = nameOf(services, call, params);
    if (const auto kept = name.empty() ? nullptr : services.cache.find(name)) {
        OrderedJson known = OrderedJson::parse(*kept);
        if (call.wantsParts()) {
            sendLines(call, known);
        }
        return answerOf(call, std::move(known), {});
    }
    Ran ran;
    OrderedJson fresh = readBlame(services, call, params, ran);
    // The file may have been written to while the client read it.
    const bool isSame = !params.revision.empty() || isRepositoryURL(params.location) ||
                        name.find(" " + stampOf(params.location) + " ") != std::string::npos;
    if (ran.isWell() && !name.empty() && isSame) {
        services.cache.keep(name, std::make_shared<const std::string>(fresh.dump()));
    }
    return answerOf(call, std::move(fresh), ran);
}

} // namespace

void addBlameMethod(Server& server, const Services& services) {
    Method ofBlame = query<BlameParams>("file/blame", decodeBlame,
                                        [services](Call& call, const BlameParams& params) {
                                            return blame(services, call, params);
                                        });
    ofBlame.hasParts = true;
    server.dispatcher().add(std::move(ofBlame));
}

} // namespace quen::tools::server
