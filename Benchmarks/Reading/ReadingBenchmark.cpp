#include "Benchmarks/Figures/Figure.h"
#include "Benchmarks/Reading/BareExpat.h"
#include "Benchmarks/Reports/GeneratedReports.h"
#include "Classes/SVNController.h"
#include "Host/HostSourceTrees.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdint>
#include <libxml/parser.h>
#include <malloc.h>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quen::benchmarks {

namespace {

using Seconds = std::chrono::duration<double>;

template <typename Work> double secondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return Seconds(std::chrono::steady_clock::now() - start).count();
}

/// What others build before they begin to make records.
void makePlainTree(std::string_view report) {
    const std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> tree(
        xmlReadMemory(report.data(), static_cast<int>(report.size()), nullptr, nullptr,
                      XML_PARSE_HUGE),
        &xmlFreeDoc);
    if (tree == nullptr) {
        throw std::runtime_error("The report is malformed.");
    }
}

QuenSourceControlRequestPtr requestFor(std::string_view kind) {
    static const std::map<std::string_view, std::int32_t> types{
        {"status", RequestTypeStatus}, {"log", RequestTypeLog},   {"blame", RequestTypeBlame},
        {"list", RequestTypeList},     {"info", RequestTypeInfo}, {"summary", RequestTypeDiff}};
    auto request = std::make_shared<QuenSourceControlRequest>();
    const auto tree = std::make_shared<HostWorkingTree>(HostWorkingTree::Facts{});
    request->initWithType(types.at(kind), tree, "/other", StringArray{"/project"}, {});
    return request;
}

/// Reads and makes records, as a host's run does once the client has ended.
double makeRecords(std::string_view kind, const DataPtr& report) {
    const auto operation = std::dynamic_pointer_cast<QuenSourceControlTaskOperation>(
        SVNController().operationForRequest(requestFor(kind)));
    operation->setData(report);
    const double seconds = secondsOf([&] { operation->parseData(); });
    if (operation->error() || operation->result().array()->count() < 100) {
        throw std::runtime_error("The records are not all there.");
    }
    return seconds;
}

/// The same in memory that the system hands out anew: a small report's records would otherwise lie
/// on the pages of those before, which a large one's never do.
double makeRecordsInFreshMemory(std::string_view kind, const DataPtr& report) {
    ::malloc_trim(0);
    return makeRecords(kind, report);
}

/// All in turn, each time, so that what disturbs one disturbs the others too. The times of
/// the records are the benchmark's own; the ratios are medians of the ratios of each turn.
void readInTurn(benchmark::State& state, const ReportKind& kind) {
    const auto size = static_cast<std::size_t>(state.range(0)) * 1000 * 1000;
    const DataPtr report = std::make_shared<Data>(kind.ofSize(size));
    const auto megabytes = static_cast<double>(report->size()) / 1e6;
    std::vector<double> expat;
    std::vector<double> overExpat;
    std::vector<double> overTree;
    std::vector<double> fresh;
    for (auto _ : state) {
        expat.push_back(secondsOf([&] { BareExpat::pass(report->bytes()); }));
        const double records = makeRecords(kind.name, report);
        const double tree = secondsOf([&] { makePlainTree(report->bytes()); });
        fresh.push_back(makeRecordsInFreshMemory(kind.name, report));
        state.SetIterationTime(records);
        overExpat.push_back(records / expat.back());
        overTree.push_back(records / tree);
    }
    const auto rate = benchmark::Counter::kIsIterationInvariantRate;
    state.counters["MB/s"] = benchmark::Counter(megabytes, rate);
    state.counters["expat MB/s"] = megabytes / median(expat);
    state.counters["fresh MB/s"] = megabytes / median(fresh);
    state.counters["over expat"] = median(overExpat);
    state.counters["over libxml2"] = median(overTree);
}

constexpr double boundOverExpat = 0.6;
constexpr double boundOverTree = 1.0;
constexpr double boundOfGrowth = 1.15;

/// The kinds that a bound is set for, at the size it is set for.
bool isBound(const std::string& kind, std::int64_t megabytes) {
    return (kind == "log" || kind == "status" || kind == "blame") && megabytes == 33;
}

/// Rows of a table, and at its end how the time for a megabyte grows with the report.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override {
        printHeadOfTable();
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                areMet_ = false;
                GetErrorStream() << run.benchmark_name() << ": " << run.error_message << '\n';
            } else if (run.run_type == Run::RT_Iteration) {
                report(run);
            }
        }
    }

    void Finalize() override {
        for (const auto& [kind, rates] : rates_) {
            const auto [least, most] = std::minmax_element(rates.begin(), rates.end());
            add({.name = kind + ", time per MB, slowest size over quickest",
                 .value = *most / *least,
                 .bound = boundOfGrowth});
        }
    }

    bool areMet() const { return areMet_; }

private:
    void report(const Run& run) {
        const std::string kind = run.run_name.function_name;
        const std::int64_t megabytes = std::stoll(run.run_name.args.substr(3));
        const std::string name = kind + ", " + std::to_string(megabytes) + " MB";
        const double rate = run.counters.at("MB/s");
        Figure overExpat{.name = name + ", reading over bare expat",
                         .value = run.counters.at("over expat"),
                         .detail = decimals(rate, 0) + " MB/s, expat alone " +
                                   decimals(run.counters.at("expat MB/s"), 0) + " MB/s"};
        Figure overTree{.name = name + ", reading over libxml2's tree",
                        .value = run.counters.at("over libxml2")};
        if (isBound(kind, megabytes)) {
            overExpat.bound = boundOverExpat;
            overTree.bound = boundOverTree;
        }
        add(overExpat);
        add(overTree);
        rates_[kind].push_back(run.counters.at("fresh MB/s"));
    }

    void add(const Figure& figure) {
        print(figure);
        areMet_ &= figure.isMet();
    }

    std::map<std::string, std::vector<double>> rates_;
    bool areMet_ = true;
};

} // namespace

} // namespace quen::benchmarks

int main(int argc, char** argv) {
    for (const quen::benchmarks::ReportKind& kind : quen::benchmarks::reportKinds()) {
        benchmark::RegisterBenchmark(
            std::string(kind.name).c_str(),
            [&kind](benchmark::State& state) { quen::benchmarks::readInTurn(state, kind); })
            ->ArgName("MB")
            ->Arg(1)
            ->Arg(10)
            ->Arg(33)
            ->Arg(100)
            ->MinTime(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    quen::benchmarks::TableReporter table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return table.areMet() ? 0 : 1;
}
