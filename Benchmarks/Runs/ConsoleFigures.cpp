#include "Benchmarks/Runs/Benchmarks.h"
#include "Benchmarks/Runs/Timing.h"
#include "Host/TemporaryDirectory.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace quen::benchmarks {

Figures measureConsole(const Sizes& sizes) {
    const std::size_t requests = sizes.files / 3;
    const auto place = TemporaryDirectory::make();
    const std::string input = place->path().str() + "/requests";
    std::ofstream file(input);
    for (std::size_t i = 0; i < requests; ++i) {
        file << R"({"request": {"type": "RequestTypeStatus", "files": ["a)" << i
             << R"(.c"]}, "replay": [{"stdout": "<status><target path='.'><entry path='a)" << i
             << R"(.c'><wc-status item='modified' props='none'/></entry></target></status>"}]})"
             << '\n';
    }
    file.close();
    std::string answers;
    const Cost cost = costOf([&] {
        answers = outputOf(QUEN_PROGRAM, {"request", "--lines", input});
    });
    if (static_cast<std::size_t>(std::count(answers.begin(), answers.end(), '\n')) != requests) {
        throw std::runtime_error("The console did not answer every request.");
    }
    Figures figures{{.name = "console, replayed requests per second",
                     .value = static_cast<double>(requests) / cost.wall,
                     .detail = std::to_string(requests) + " status requests in one process"}};
    print(figures.back());
    return figures;
}

} // namespace quen::benchmarks
