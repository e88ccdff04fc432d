#include "Host/ClientRunner.h"
#include "Host/RunContext.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Session/Session.h"
#include "Tools/Provider/Provider.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/InterruptibleRunner.h"
#include "Tools/Tour/TourSteps.h"

#include <exception>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    std::string colour = "auto";
    std::string plugIn;
};

int fail(const std::string& problem) {
    std::cerr << "quen tour: " << problem << '\n';
    return ExitFailure;
}

int runTourCommand(const Options& options) {
    std::string problem;
    auto provider = loadProviderOrExplain(options.plugIn, problem);
    if (provider == nullptr) {
        return fail(problem);
    }
    const auto project = TourProject::make(problem);
    if (project == nullptr) {
        return fail(problem);
    }
    const auto recorder = std::make_shared<RunRecorder>(std::make_shared<InterruptibleRunner>(
        std::make_shared<ClientRunner>(ClientRunner::Options{.endsWithHost = true})));
    const RunContext::Scope scope(RunContext::current().withToolRunner(recorder));
    TourStage stage(std::move(provider), recorder, Palette::named(options.colour),
                    project->directory().string());
    try {
        walkTour(*project, stage);
    } catch (const std::exception& error) {
        // A step that an interrupt cut short leaves the next one without what it needs.
        return fail(InterruptWatch::wasInterrupted() ? "Interrupted." : error.what());
    }
    stage.printTable();
    // The current directory is about to go.
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);
    return stage.failures() == 0 ? ExitSuccess : ExitFailure;
}

} // namespace

void addTourCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("tour", "Demonstrate every kind of request on a temporary project");
    addColourOption(command, options->colour);
    command.option("--plug-in", options->plugIn, "Plug-in module to load");
    command.run([options] { return runTourCommand(*options); });
}

} // namespace quen::tools
