#include "Benchmarks/Runs/Alternatives.h"
#include "Benchmarks/Runs/Benchmarks.h"
#include "Benchmarks/Runs/Floors.h"
#include "Benchmarks/Runs/Projects.h"
#include "Benchmarks/Runs/Requests.h"
#include "Benchmarks/Runs/Timing.h"
#include "Host/TemporaryDirectory.h"

#include <functional>

namespace quen::benchmarks {

namespace {

/// What is compared: the same client, alone and within an operation.
struct Subject {
    std::string name;
    std::function<QuenSourceControlOperationPtr()> make;
    std::size_t records = 0;
    /// What it may take over the bare client.
    double wallBound = 0;
    /// In a short run the clock of the processors is too coarse.
    std::optional<double> cpuBound = {};
    /// Where the alternatives find what the operation asks of.
    std::string place = {};

    bool isLong() const { return cpuBound.has_value(); }
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
    const Cost cost = costOf([&] { operation->run(); });
    if (recordsOf(*operation) != subject.records) {
        throw std::runtime_error("The operation did not answer all records.");
    }
    return cost;
}

/// One way to have the client's answer, and what it may cost over the bare client.
struct Way {
    std::string name;
    std::function<Cost()> run;
    std::optional<double> wallBound = {};
    std::optional<double> cpuBound = {};
    bool showsCpu = true;
};

/// The ratios of one way over the bare client, one of each turn.
struct Ratios {
    std::vector<double> wall;
    std::vector<double> cpu;
};

/// Runs the bare client and each way in turn, and again.
Figures compare(const std::string& subject, const std::function<void()>& bare,
                const std::vector<Way>& ways, std::size_t turns, const std::string& answer) {
    bare(); // the first run reads the disk
    std::vector<double> walls;
    std::vector<Ratios> ratios(ways.size());
    for (std::size_t turn = 0; turn < turns; ++turn) {
        const Cost alone = costOf(bare);
        walls.push_back(alone.wall);
        for (std::size_t way = 0; way < ways.size(); ++way) {
            const Cost cost = ways[way].run();
            ratios[way].wall.push_back(cost.wall / alone.wall);
            ratios[way].cpu.push_back(cost.cpu / alone.cpu);
        }
    }
    const std::string detail =
        answer + "; the client alone " + decimals(median(walls) * 1000, 1) + " ms";
    Figures figures;
    for (std::size_t way = 0; way < ways.size(); ++way) {
        const std::string name = subject + ways[way].name;
        add(figures, {.name = name + ", wall over bare client",
                      .value = median(ratios[way].wall),
                      .bound = ways[way].wallBound,
                      .detail = detail});
        if (ways[way].showsCpu) {
            add(figures, {.name = name + ", CPU of both over bare client",
                          .value = median(ratios[way].cpu),
                          .bound = ways[way].cpuBound,
                          .detail = detail});
        }
    }
    return figures;
}

/// The operation beside the bare client; of a long one also what any host would cost.
Figures measure(const Subject& subject, std::size_t turns) {
    const std::vector<std::string> arguments = argumentsOf(*subject.make());
    const auto bare = [&] { runBare(toolPath(), arguments); };
    std::vector<Way> ways{{.name = "",
                           .run = [&] { return costOfOperation(subject); },
                           .wallBound = subject.wallBound,
                           .cpuBound = subject.cpuBound,
                           .showsCpu = subject.isLong()}};
    if (subject.isLong()) {
        ways.push_back({.name = ", output only kept",
                        .run = [&] { return costOf([&] { runAndKeep(arguments); }); }});
        ways.push_back({.name = ", read the usual way by a program that drops it", .run = [&] {
                            return costOf([&] {
                                runIntoPipe(toolPath(), arguments, "/dev/null",
                                            [](std::string_view) {});
                            });
                        }});
        ways.push_back({.name = ", output through bare expat",
                        .run = [&] { return costOf([&] { runAndCheck(arguments); }); }});
        ways.push_back({.name = ", bare client beside a busy processor",
                        .run = [&] { return costBesideNeighbour(bare); },
                        .showsCpu = false});
    }
    Figures figures =
        compare(subject.name, bare, ways, turns, std::to_string(subject.records) + " records");
    if (subject.isLong()) {
        const Question question{.kind = subject.name.substr(0, subject.name.find(' ')),
                                .place = subject.place,
                                .arguments = arguments,
                                .records = subject.records};
        const Figures others = measureAlternatives(
            question, [&] { return costOfOperation(subject).wall; },
            [&] { return costOf(bare).wall; }, (turns + 2) / 3);
        figures.insert(figures.end(), others.begin(), others.end());
    }
    return figures;
}

} // namespace

Figures measureStatus(const Sizes& sizes) {
    const auto place = TemporaryDirectory::make();
    const std::string workingCopy = makeChangedFiles(place->path().str(), sizes.files);
    return measure({.name = "status",
                    .make = [&] { return operationOn(RequestTypeStatus, workingCopy); },
                    .records = sizes.files,
                    .wallBound = 1.02,
                    .cpuBound = 1.06,
                    .place = workingCopy},
                   sizes.pairs);
}

Figures measureLog(const Sizes& sizes) {
    const auto place = TemporaryDirectory::make();
    const std::string url = makeLongHistory(place->path().str(), sizes.revisions) + "/trunk";
    const auto make = [&] {
        return operationOn(RequestTypeLog, url,
                           {{QuenSourceControlRequestOptionLogOutputFilesChanged, true}});
    };
    return measure({.name = "log with files",
                    .make = make,
                    .records = sizes.revisions,
                    .wallBound = 1.04,
                    .cpuBound = 1.15,
                    .place = url},
                   sizes.pairs);
}

Figures measureBlame(const Sizes& sizes) {
    const auto place = TemporaryDirectory::make();
    const std::string url = makeLongFile(place->path().str(), sizes.lines);
    return measure({.name = "blame",
                    .make = [&] { return operationOn(RequestTypeBlame, url); },
                    .records = sizes.lines,
                    .wallBound = 1.05,
                    .cpuBound = 1.15,
                    .place = url},
                   sizes.pairs);
}

Figures measureInfo(const Sizes& sizes) {
    constexpr std::size_t pairsForOne = 20;
    const auto place = TemporaryDirectory::make();
    const std::string file = makeChangedFiles(place->path().str(), 1) + "/part0/file0.txt";
    return measure({.name = "info of one file",
                    .make = [&] { return operationOn(RequestTypeInfo, file); },
                    .records = 1,
                    .wallBound = 1.05},
                   sizes.pairs * pairsForOne);
}

} // namespace quen::benchmarks
