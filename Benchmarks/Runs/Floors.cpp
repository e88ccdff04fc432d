#include "Benchmarks/Runs/Floors.h"

#include "Benchmarks/Reading/BareExpat.h"
#include "Benchmarks/Reports/GeneratedReports.h"
#include "Host/ClientRunner.h"

#include <stdexcept>
#include <thread>

namespace quen::benchmarks {

namespace {

void runClient(const std::vector<std::string>& arguments,
               std::function<void(std::string_view)> watcher) {
    ClientRunner runner;
    std::vector<String> words(arguments.begin(), arguments.end());
    const ToolRun run = runner.run({.operationClass = "Benchmark",
                                    .launchPath = toolPath(),
                                    .arguments = StringArray(std::move(words)),
                                    .outputWatcher = std::move(watcher)},
                                   {});
    if (run.exitStatus != 0) {
        throw std::runtime_error("The client failed.");
    }
}

} // namespace

void runAndKeep(const std::vector<std::string>& arguments) {
    runClient(arguments, {});
}

void runAndCheck(const std::vector<std::string>& arguments) {
    BareExpat expat;
    runClient(arguments, [&](std::string_view piece) { expat.read(piece); });
    expat.finish();
}

Cost costBesideNeighbour(const std::function<void()>& work) {
    constexpr std::size_t size = 10 * 1000 * 1000;
    static const std::string report = reportKinds().front().ofSize(size);
    const std::jthread neighbour([](const std::stop_token& end) {
        while (!end.stop_requested()) {
            BareExpat::pass(report);
        }
    });
    return costOf(work);
}

} // namespace quen::benchmarks
