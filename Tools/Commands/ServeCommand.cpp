#include "Host/ClientRunner.h"
#include "Host/RunContext.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Provider/Provider.h"
#include "Tools/Server/StreamServer.h"

#include <iostream>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

struct Options {
    server::ServerOptions server;
    std::string plugIn;
};

int runServeCommand(const Options& options) {
    std::string problem;
    auto provider = loadProviderOrExplain(options.plugIn, problem);
    if (provider == nullptr) {
        std::cerr << "quen serve: " << problem << '\n';
        return ExitFailure;
    }
    // A client must not go on alone where the server is killed.
    RunContext::setProcessDefault(RunContext::processDefault().withToolRunner(
        std::make_shared<ClientRunner>(ClientRunner::Options{.endsWithHost = true})));
    return server::serveStreams(STDIN_FILENO, STDOUT_FILENO, std::move(provider), options.server);
}

} // namespace

void addServeCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("serve", "Serve an editor in JSON-RPC on standard input and output");
    command.option("--tools-directory", options->server.toolsDirectory,
                   "Directory of the svn program (default: found on PATH)");
    command.option("--plug-in", options->plugIn, "Plug-in module to load");
    command.option("--log-level", options->server.logLevel,
                   "Send messages up to this level to the editor's log");
    command.run([options] { return runServeCommand(*options); });
}

} // namespace quen::tools
