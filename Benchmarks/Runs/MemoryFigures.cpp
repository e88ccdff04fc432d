#include "Benchmarks/Reports/GeneratedReports.h"
#include "Benchmarks/Runs/Benchmarks.h"
#include "Benchmarks/Runs/Requests.h"
#include "Benchmarks/Runs/Timing.h"
#include "Host/Facts/HistoryFacts.h"
#include "Host/RunContext.h"
#include "Host/StreamingRunner.h"
#include "Host/TemporaryDirectory.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>

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

/// Throws where the run or the reading fails.
template <typename Reader>
void runStreamed(std::int32_t type, const std::string& standIn, Reader& reader) {
    const auto take = [&reader](std::string_view piece) {
        reader.take(piece);
        return true;
    };
    const auto runner = std::make_shared<StreamingRunner>(RunContext::current(),
                                                          ClientRunner::Options(), take, standIn);
    const RunContext::Scope scope(runner->contextFor(RunContext::current()));
    const auto operation = operationOn(type, "/project");
    operation->run();
    const Error error = operation->error() ? operation->error() : reader.finish();
    if (error) {
        throw std::runtime_error("The stream failed: " + error.description().str());
    }
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

/// Likewise; the records are counted as they come, and nothing is kept.
int hostOneStream(const std::string& kind) {
    const std::size_t colon = kind.find(':');
    const RunContext context = RunContext::current().withToolsDirectory(kind.substr(colon + 1));
    const RunContext::Scope inDirectory(context);
    std::size_t records = 0;
    const auto counted = [&records](const auto& /*record*/) { ++records; };
    if (kind.starts_with("log:")) {
        HistoryReader reader(counted);
        runStreamed(RequestTypeLog, "<log/>", reader);
    } else {
        BlameReader reader(counted);
        runStreamed(RequestTypeBlame, "<blame/>", reader);
    }
    std::cout << peakMemory() << ' ' << records << '\n';
    return 0;
}

namespace {

/// A report, the client that prints it, and what a host of the client answered about itself.
class MeasuredHost {
public:
    MeasuredHost(const ReportKind& kind, std::size_t megabytes, const std::string& way)
        : place_(TemporaryDirectory::make()) {
        const std::string directory = place_->path().str();
        const std::string report = kind.ofSize(megabytes * 1000 * 1000);
        write(directory + "/report", report);
        makeClient(directory, directory + "/report");
        reportSize_ = static_cast<double>(report.size());
        std::istringstream answer(
            outputOf("/proc/self/exe", {way, std::string(kind.name) + ":" + directory}));
        answer >> peak_ >> records_;
    }

    double peak() const { return peak_; }
    double reportSize() const { return reportSize_; }
    std::string detail() const {
        return decimals(reportSize_ / 1e6, 0) + " MB of report, " + std::to_string(records_) +
               " records";
    }

private:
    std::shared_ptr<TemporaryDirectory> place_;
    double reportSize_ = 0;
    double peak_ = 0;
    std::size_t records_ = 0;
};

void addKept(Figures& figures, const ReportKind& kind, std::size_t megabytes) {
    const MeasuredHost host(kind, megabytes, "host-report");
    add(figures, {.name = std::string(kind.name) + ", peak memory over report",
                  .value = host.peak() / host.reportSize(),
                  .bound = kind.name == "status" ? 3.0 : 2.0,
                  .detail = host.detail() + ", the host as a whole"});
}

void addStreamed(Figures& figures, const ReportKind& kind, std::size_t megabytes) {
    const MeasuredHost small(kind, std::max<std::size_t>(1, megabytes / 10), "host-stream");
    const MeasuredHost large(kind, megabytes, "host-stream");
    add(figures,
        {.name = std::string(kind.name) + ", streamed, peak memory over that of a tenth of it",
         .value = large.peak() / small.peak(),
         .bound = 1.1,
         .detail = large.detail() + ", " + decimals(large.peak() / 1e6, 1) + " MB in all"});
}

} // namespace

Figures measureMemory(const Sizes& sizes) {
    Figures figures;
    for (const ReportKind& kind : reportKinds()) {
        const bool isStreamed = kind.name == "log" || kind.name == "blame";
        if (kind.name == "status" || isStreamed) {
            addKept(figures, kind, sizes.reportMegabytes);
        }
        if (isStreamed) {
            addStreamed(figures, kind, sizes.reportMegabytes);
        }
    }
    return figures;
}

} // namespace quen::benchmarks
