#include "Benchmarks/Runs/Benchmarks.h"
#include "Benchmarks/Runs/Projects.h"
#include "Benchmarks/Runs/Requests.h"
#include "Benchmarks/Runs/Timing.h"
#include "Host/TemporaryDirectory.h"

#include <functional>

namespace quen {

namespace {

/// What is compared: the same client, alone and within an operation.
struct Subject {
    std::string name;
    std::function<QuenSourceControlOperationPtr()> make;
    std::size_t records = 0;
    double wallBound = 0;
    /// None for a run so short that the clock of the processors is too coarse.
    std::optional<double> cpuBound;
};

std::vector<std::string> argumentsOf(const QuenSourceControlOperation& operation) {
    std::vector<std::string> words;
    const auto& task = dynamic_cast<const QuenSourceControlTaskOperation&>(operation);
    for (const String& argument : task.arguments().value()) {
        words.push_back(argument.str());
    }
    return words;
}

Cost costOfOperation(const Subject& subject) {
    const QuenSourceControlOperationPtr operation = subject.make();
    const Cost cost = costOf([&] { operation->main(); });
    if (recordsOf(*operation) != subject.records) {
        throw std::runtime_error("The operation did not answer all records.");
    }
    return cost;
}

Figures compare(const Subject& subject, std::size_t pairs) {
    const std::vector<std::string> arguments = argumentsOf(*subject.make());
    const auto bare = [&] { runBare(clientPath(), arguments); };
    bare(); // the first run reads the disk
    std::vector<double> walls;
    std::vector<double> wallRatios;
    std::vector<double> cpuRatios;
    for (std::size_t pair = 0; pair < pairs; ++pair) {
        const Cost alone = costOf(bare);
        const Cost within = costOfOperation(subject);
        walls.push_back(alone.wall);
        wallRatios.push_back(within.wall / alone.wall);
        cpuRatios.push_back(within.cpu / alone.cpu);
    }
    const std::string detail = std::to_string(subject.records) + " records; the client alone " +
                               decimals(median(walls) * 1000, 1) + " ms";
    Figures figures{{.name = subject.name + ", wall over bare client",
                     .value = median(wallRatios),
                     .bound = subject.wallBound,
                     .detail = detail}};
    if (subject.cpuBound) {
        figures.push_back({.name = subject.name + ", CPU of both over bare client",
                           .value = median(cpuRatios),
                           .bound = subject.cpuBound,
                           .detail = detail});
    }
    for (const Figure& figure : figures) {
        print(figure);
    }
    return figures;
}

constexpr double largeWallBound = 1.02;
constexpr double smallWallBound = 1.05;
constexpr double cpuBound = 1.15;

} // namespace

Figures measureStatus(const Sizes& sizes) {
    const auto place = TemporaryDirectory::make();
    const std::string workingCopy = makeChangedFiles(place->path().str(), sizes.files);
    return compare({.name = "status",
                    .make = [&] { return operationOn(RequestTypeStatus, workingCopy); },
                    .records = sizes.files,
                    .wallBound = largeWallBound,
                    .cpuBound = cpuBound},
                   sizes.pairs);
}

Figures measureLog(const Sizes& sizes) {
    const auto place = TemporaryDirectory::make();
    const std::string url = makeLongHistory(place->path().str(), sizes.revisions) + "/trunk";
    const auto make = [&] {
        return operationOn(RequestTypeLog, url,
                           {{QuenSourceControlRequestOptionLogOutputFilesChanged, true}});
    };
    return compare({.name = "log with files",
                    .make = make,
                    .records = sizes.revisions,
                    .wallBound = largeWallBound,
                    .cpuBound = cpuBound},
                   sizes.pairs);
}

Figures measureBlame(const Sizes& sizes) {
    const auto place = TemporaryDirectory::make();
    const std::string url = makeLongFile(place->path().str(), sizes.lines);
    return compare({.name = "blame",
                    .make = [&] { return operationOn(RequestTypeBlame, url); },
                    .records = sizes.lines,
                    .wallBound = largeWallBound,
                    .cpuBound = cpuBound},
                   sizes.pairs);
}

Figures measureInfo(const Sizes& sizes) {
    constexpr std::size_t pairsForOne = 20;
    const auto place = TemporaryDirectory::make();
    const std::string file = makeChangedFiles(place->path().str(), 1) + "/part0/file0.txt";
    return compare({.name = "info of one file",
                    .make = [&] { return operationOn(RequestTypeInfo, file); },
                    .records = 1,
                    .wallBound = smallWallBound,
                    .cpuBound = {}},
                   sizes.pairs * pairsForOne);
}

} // namespace quen
