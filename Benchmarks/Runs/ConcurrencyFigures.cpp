#include "Benchmarks/Runs/Benchmarks.h"
#include "Benchmarks/Runs/Projects.h"
#include "Benchmarks/Runs/Requests.h"
#include "Benchmarks/Runs/Timing.h"
#include "Foundation/OperationQueue.h"
#include "Host/TemporaryDirectory.h"

#include <thread>

namespace quen::benchmarks {

namespace {

constexpr std::size_t operations = 100;

void runAll(const std::string& file, std::size_t width) {
    const OperationQueuePtr queue = OperationQueue::make(width);
    std::vector<QuenSourceControlOperationPtr> all;
    for (std::size_t i = 0; i < operations; ++i) {
        all.push_back(operationOn(RequestTypeInfo, file));
        queue->addOperation(all.back());
    }
    queue->waitUntilAllOperationsAreFinished();
    for (const auto& operation : all) {
        if (recordsOf(*operation) != 1) {
            throw std::runtime_error("An operation has no record.");
        }
    }
}

} // namespace

Figures measureConcurrency(const Sizes& sizes) {
    const auto place = TemporaryDirectory::make();
    const std::string file = makeChangedFiles(place->path().str(), 1) + "/part0/file0.txt";
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    std::vector<double> ratios;
    std::vector<double> inTurn;
    for (std::size_t pair = 0; pair < sizes.pairs; ++pair) {
        inTurn.push_back(costOf([&] { runAll(file, 1); }).wall);
        ratios.push_back(costOf([&] { runAll(file, operations); }).wall / inTurn.back());
    }
    Figures figures{{.name = "100 infos at once over one after another",
                     .value = median(ratios),
                     .detail = "one after another " + decimals(median(inTurn) * 1000, 0) + " ms, " +
                               std::to_string(processors) + " processors"}};
    print(figures.back());
    return figures;
}

} // namespace quen::benchmarks
