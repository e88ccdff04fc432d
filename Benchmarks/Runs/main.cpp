#include "Benchmarks/Runs/Benchmarks.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace quen::benchmarks {

namespace {

struct Benchmark {
    const char* name;
    Figures (*measure)(const Sizes& sizes);
};

constexpr Benchmark benchmarks[] = {
    {"status", &measureStatus},   {"log", &measureLog},
    {"blame", &measureBlame},     {"info", &measureInfo},
    {"memory", &measureMemory},   {"start", &measureStart},
    {"console", &measureConsole}, {"concurrency", &measureConcurrency},
};

int run(std::vector<std::string> words) {
    if (words.size() == 2 && words.front() == "host-report") {
        return hostOneReport(words.back());
    }
    if (words.size() == 2 && words.front() == "host-stream") {
        return hostOneStream(words.back());
    }
    if (words.size() == 2 && words.front() == "host-starts") {
        return hostStarts(std::stoul(words.back()));
    }
    const Sizes sizes = std::erase(words, "--small") > 0 ? Sizes::small() : Sizes();
    printHeadOfTable();
    bool areMet = true;
    for (const Benchmark& benchmark : benchmarks) {
        if (words.empty() || std::ranges::find(words, benchmark.name) != words.end()) {
            areMet &= std::ranges::all_of(benchmark.measure(sizes), &Figure::isMet);
        }
    }
    return areMet ? 0 : 1;
}

} // namespace

} // namespace quen::benchmarks

int main(int argc, char** argv) {
    try {
        return quen::benchmarks::run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "RunsBenchmark: " << error.what() << '\n';
        return 2;
    }
}
