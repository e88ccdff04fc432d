#include "Benchmarks/Runs/Floors.h"

#include "Benchmarks/Reports/GeneratedReports.h"
#include "Host/ClientRunner.h"

#include <expat.h>
#include <memory>
#include <stdexcept>
#include <thread>

namespace quen {

namespace {

using Parser = std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)>;

Parser makeParser() {
    return {XML_ParserCreate(nullptr), &XML_ParserFree};
}

void parse(const Parser& parser, std::string_view piece, bool isLast) {
    if (XML_Parse(parser.get(), piece.data(), static_cast<int>(piece.size()), isLast ? 1 : 0) !=
        XML_STATUS_OK) {
        throw std::runtime_error("The report is malformed.");
    }
}

void runClient(const std::vector<std::string>& arguments,
               std::function<void(std::string_view)> watcher) {
    ClientRunner runner;
    const auto canceller = runner.makeCanceller();
    std::vector<String> words(arguments.begin(), arguments.end());
    const ToolRun run = runner.run(
        {"Benchmark", clientPath(), StringArray(std::move(words)), std::move(watcher)}, *canceller);
    if (run.exitStatus != 0) {
        throw std::runtime_error("The client failed.");
    }
}

} // namespace

void runAndKeep(const std::vector<std::string>& arguments) {
    runClient(arguments, {});
}

void runAndCheck(const std::vector<std::string>& arguments) {
    const Parser parser = makeParser();
    runClient(arguments, [&](std::string_view piece) { parse(parser, piece, false); });
    parse(parser, {}, true);
}

Cost costBesideNeighbour(const std::function<void()>& work) {
    constexpr std::size_t size = 10 * 1000 * 1000;
    static const std::string report = reportKinds().front().ofSize(size);
    const std::jthread neighbour([](const std::stop_token& end) {
        while (!end.stop_requested()) {
            parse(makeParser(), report, true);
        }
    });
    return costOf(work);
}

} // namespace quen
