#include "Foundation/PathComponents.h"
#include "Host/RunContext.h"
#include "Host/TemporaryDirectory.h"
#include "Tools/Console/JsonInput.h"
#include "Tools/Server/Methods/Methods.h"
#include "Tools/Server/Methods/RequestTypesJson.h"
#include "Tools/Server/Methods/Services.h"
#include "Tools/Server/Methods/WorkingCopyJson.h"
#include "Tools/Server/SignIn/ClientCredentials.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <set>
#include <utility>

namespace quen::tools::server {

namespace {

/// For contents, blames and histories together.
constexpr std::size_t cacheBound = std::size_t{64} << 20U;

} // namespace

/// All that the methods share, and what the client asked for at the beginning.
class MethodSet {
public:
    MethodSet(Server& server, MessageSink& sink, QuenSourceControlProtocolPtr provider,
              const ServerOptions& options)
        : server_(server), sink_(sink), options_(options),
          credentials_(Credentials::make(
              std::make_shared<ClientCredentials>(server.questions(), server.log()))),
          runs_(std::move(provider), server.log()),
          copies_(runs_, server.dispatcher(), sink, server.log()) {
        server.log().setLevel(options.logLevel);
        server.onInitialize([this](const Server::Client& client) { return initialize(client); });
        server.onInitialized([this] { discover(); });
        server.dispatcher().surround([this](const Call& call) { return signingInFor(call); });
        server.onEnd([this] {
            stop_.request_stop();
            copies_.end();
        });
        const Services services{server.dispatcher(), sink, server.log(), runs_, copies_, cache_};
        addProviderMethods(server, services);
        addWorkingCopyMethods(server, services);
        addTransferMethods(server, services);
        addPlanMethods(server, services);
        addChangeMethods(server, services);
        addLossMethods(server, services);
        addTreeChangeMethods(server, services);
        addFileMethods(server, services);
        addBlameMethod(server, services);
        addHistoryMethods(server, services);
        addDifferenceMethods(server, services);
        addBranchMethods(server, services);
        addRepositoryMethods(server, services);
        addAttributeMethods(server, services);
        addUpkeepMethods(server, services);
        server.dispatcher().add(query<int>(
            "server/statistics",
            [](const JsonInput& params) {
                params.requireObject({});
                return 0;
            },
            [this](const Call&, int) { return statistics(); }));
    }

private:
    OrderedJson initialize(const Server::Client& client) {
        RunContext context = RunContext::processDefault();
        const std::string tools =
            client.toolsDirectory.empty() ? options_.toolsDirectory : client.toolsDirectory;
        if (!tools.empty()) {
            context = context.withToolsDirectory(tools);
        }
        RunLimits limits = context.limits();
        limits.total = client.totalLimit;
        limits.idle = client.idleLimit;
        context = context.withLimits(limits);
        directory_ = TemporaryDirectory::make();
        if (directory_ != nullptr) {
            context = context.withWorkingDirectory(directory_->path());
        }
        if (server_.log().level() > 0) {
            context = context.withLogLevel(server_.log().level());
        }
        runs_.setContext(context, credentials_->forBackground());
        roots_ = client.roots;
        return {
            {"serverInfo", {{"name", "quen"}, {"version", QUEN_VERSION}}},
            {"client", clientJson(context)},
            {"capabilities", {{"methods", methodNames()}, {"requestTypes", requestTypeNames()}}}};
    }

    /// A request is one act of a person, from its arrival on, unless the client says that nobody
    /// asked for it.
    Dispatcher::Around signingInFor(const Call& call) const {
        return [act = call.isBackground() ? credentials_->forBackground()
                                          : credentials_->forPerson()](const auto& serving) {
            const RunContext::Scope scope(RunContext::processDefault().withCredentials(act));
            serving();
        };
    }

    /// Which client it is, which version, and where it was looked for.
    OrderedJson clientJson(const RunContext& context) {
        const String path = appendingPathComponent(context.toolsDirectory().view(), "svn");
        ToolInvocation invocation;
        invocation.operationClass = "Server";
        invocation.launchPath = path;
        invocation.arguments = {"--version", "--quiet"};
        invocation.limits.total = std::chrono::seconds(10);
        const ToolRun run = runs_.context().toolRunner()->run(invocation, {});
        std::string version(run.output->bytes());
        version.erase(version.find_last_not_of("\r\n ") + 1);
        if (run.exitStatus != 0) {
            version.clear();
            server_.log().say(WindowLog::error, "The client \"" + path.str() +
                                                    "\" cannot be used: " + run.reason.str() +
                                                    std::string(run.errors->bytes()));
        }
        return {{"path", toJson(path)},
                {"version", version.empty() ? OrderedJson() : OrderedJson(version)}};
    }

    OrderedJson methodNames() const {
        OrderedJson names = {"initialize", "shutdown"};
        for (const std::string& name : server_.dispatcher().methodNames()) {
            names.push_back(name);
        }
        return names;
    }

    /// Looks for working copies where the client said that its roots are, and tells of each.
    void discover() {
        for (const std::string& root : roots_) {
            server_.dispatcher().enqueue({}, [this, root] { discoverAt(root); });
        }
    }

    void discoverAt(const std::string& directory) {
        std::set<std::string> seen;
        std::vector<std::string> found = rootsBelow(directory);
        if (const std::string above = rootAbove(directory); !above.empty()) {
            found.push_back(above);
        }
        while (!found.empty()) {
            const std::string root = std::move(found.back());
            found.pop_back();
            if (!seen.insert(root).second) {
                continue;
            }
            for (std::string& inner : openAndTell(root)) {
                found.push_back(std::move(inner));
            }
        }
    }

    /// The working copies inside it.
    std::vector<std::string> openAndTell(const std::string& root) {
        try {
            const WorkingCopies::Opened opened = copies_.open(root, {stop_.get_token(), {}, {}});
            if (opened.copy == nullptr) {
                server_.log().say(WindowLog::warning,
                                  root + ": " + opened.ran.error.localizedDescription().str());
                return {};
            }
            if (opened.isNew) {
                sink_.send(notificationText("workingCopy/didOpen", workingCopyJson(*opened.copy)),
                           stop_.get_token());
            }
            std::vector<std::string> inner = WorkingCopies::nestedIn(*opened.copy);
            for (const std::string& external : opened.copy->externals()) {
                if (rootAbove(external) != root) {
                    inner.push_back(rootAbove(external));
                }
            }
            return inner;
        } catch (const std::exception& error) {
            server_.log().say(WindowLog::warning, root + ": " + error.what());
            return {};
        }
    }

    OrderedJson statistics() {
        OrderedJson runs = OrderedJson::object();
        for (const auto& [word, count] : runs_.counts().counts()) {
            runs[word] = count;
        }
        return {{"clientRuns", std::move(runs)},
                {"cacheBytes", cache_.size() + copies_.bytes()},
                {"cacheBound", cacheBound},
                {"watches", copies_.watches()},
                {"workingCopies", copies_.all().size()},
                // But this one.
                {"requests", server_.dispatcher().callsInFlight() - 1},
                {"ownWork", server_.dispatcher().ownWork()}};
    }

    Server& server_;
    MessageSink& sink_;
    ServerOptions options_;
    CredentialsPtr credentials_;
    Runs runs_;
    ByteCache cache_{cacheBound};
    WorkingCopies copies_;
    std::stop_source stop_;
    std::vector<std::string> roots_;
    std::shared_ptr<TemporaryDirectory> directory_;
};

MethodsPtr addMethods(Server& server, MessageSink& sink, QuenSourceControlProtocolPtr provider,
                      const ServerOptions& options) {
    return std::make_shared<MethodSet>(server, sink, std::move(provider), options);
}

} // namespace quen::tools::server
