#include "Benchmarks/Runs/Benchmarks.h"
#include "Benchmarks/Runs/Requests.h"
#include "Benchmarks/Runs/Timing.h"
#include "Host/ClientRunner.h"

#include <iostream>
#include <memory>

namespace quen::benchmarks {

namespace {

constexpr std::size_t runsInBatch = 200;

} // namespace

/// The median of a batch of starts, from a process that holds so much memory and has touched all
/// of it.
int hostStarts(std::size_t megabytes) {
    const std::size_t size = megabytes << 20U;
    const auto memory = std::make_unique_for_overwrite<unsigned char[]>(size);
    constexpr std::size_t page = 4096;
    for (std::size_t i = 0; i < size; i += page) {
        memory[i] = static_cast<unsigned char>(i / page);
    }
    ClientRunner runner;
    std::vector<double> times;
    for (std::size_t i = 0; i < runsInBatch; ++i) {
        const Cost cost = costOf([&] {
            const ToolRun run = runner.run({"Benchmark", "/bin/true", {}}, {});
            if (run.exitStatus != 0) {
                throw std::runtime_error("/bin/true failed.");
            }
        });
        times.push_back(cost.wall);
    }
    std::cout << median(times) << ' ' << static_cast<int>(memory[size / 2]) << '\n';
    return 0;
}

Figures measureStart(const Sizes& sizes) {
    constexpr std::size_t smallHost = 100;
    constexpr double bound = 1.2;
    std::vector<double> ratios;
    std::vector<double> smallTimes;
    for (std::size_t pair = 0; pair < sizes.pairs; ++pair) {
        const auto batch = [](std::size_t megabytes) {
            return std::stod(
                outputOf("/proc/self/exe", {"host-starts", std::to_string(megabytes)}));
        };
        smallTimes.push_back(batch(smallHost));
        ratios.push_back(batch(sizes.largeHostMegabytes) / smallTimes.back());
    }
    Figures figures{{.name = "start to end of /bin/true, host of " +
                             std::to_string(sizes.largeHostMegabytes) + " MB over 100 MB",
                     .value = median(ratios),
                     .bound = bound,
                     .detail = "from 100 MB " + decimals(median(smallTimes) * 1e6, 0) +
                               " microseconds, medians of " + std::to_string(runsInBatch)}};
    print(figures.back());
    return figures;
}

} // namespace quen::benchmarks
