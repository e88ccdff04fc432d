#include "Benchmarks/Reports/GeneratedReports.h"
#include "Benchmarks/Runs/Benchmarks.h"
#include "Benchmarks/Runs/Requests.h"
#include "Benchmarks/Runs/Timing.h"
#include "Host/RunContext.h"
#include "Host/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>

namespace quen::benchmarks {

namespace {

/// The most memory that this process ever had, in bytes.
double peakMemory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmHWM:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    throw std::runtime_error("The system does not tell how much memory this process had.");
}

/// A client that prints a file, whatever it is asked.
void makeClient(const std::string& directory, const std::string& report) {
    const std::string path = directory + "/svn";
    std::ofstream(path) << "#!/bin/sh\nexec cat '" << report << "'\n";
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

void write(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw std::runtime_error(path + " cannot be written.");
    }
}

} // namespace

/// The kind and the directory of the client come as `KIND:DIRECTORY`.
int hostOneReport(const std::string& kind) {
    static const std::map<std::string, std::int32_t> types{
        {"status", RequestTypeStatus}, {"log", RequestTypeLog}, {"blame", RequestTypeBlame}};
    const std::size_t colon = kind.find(':');
    const RunContext::Scope scope(RunContext::current().withToolsDirectory(kind.substr(colon + 1)));
    const auto operation = operationOn(types.at(kind.substr(0, colon)), "/project");
    operation->run();
    std::cout << peakMemory() << ' ' << recordsOf(*operation) << '\n';
    return 0;
}

Figures measureMemory(const Sizes& sizes) {
    const auto boundOf = [](std::string_view kind) { return kind == "status" ? 3.0 : 2.0; };
    Figures figures;
    for (const ReportKind& kind : reportKinds()) {
        if (kind.name != "status" && kind.name != "log" && kind.name != "blame") {
            continue;
        }
        const auto place = TemporaryDirectory::make();
        const std::string directory = place->path().str();
        const std::string report = kind.ofSize(sizes.reportMegabytes * 1000 * 1000);
        write(directory + "/report", report);
        makeClient(directory, directory + "/report");
        const std::string answer =
            outputOf("/proc/self/exe", {"host-report", std::string(kind.name) + ":" + directory});
        add(figures,
            {.name = std::string(kind.name) + ", peak memory over report",
             .value = std::stod(answer) / static_cast<double>(report.size()),
             .bound = boundOf(kind.name),
             .detail = decimals(static_cast<double>(report.size()) / 1e6, 0) + " MB of report, " +
                       answer.substr(answer.find(' ') + 1, answer.size() - answer.find(' ') - 2) +
                       " records, the host as a whole"});
    }
    return figures;
}

} // namespace quen::benchmarks
