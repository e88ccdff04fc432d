#include "Classes/SVNOperations/SVNStatusOperation.h"
#include "Foundation/PathComponents.h"
#include "Host/HostServices.h"
#include "Host/Process/Process.h"
#include "Host/TemporaryDirectory.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace quen {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr int pairs = 7;
constexpr std::size_t filesInDirectory = 500;

String clientPath(std::string_view tool) {
    return appendingPathComponent(HostServices::shared().toolsDirectory().view(), tool);
}

void run(const String& program, const std::vector<String>& arguments) {
    ProcessInvocation invocation;
    invocation.launchPath = program;
    invocation.arguments = arguments;
    ProcessCanceller canceller;
    const ProcessOutcome outcome = runProcess(invocation, canceller);
    if (outcome.exitStatus != 0) {
        throw std::runtime_error(program.str() + ": " + std::string(outcome.errors->bytes()));
    }
}

std::string pathOfFile(const std::string& root, std::size_t number) {
    return root + "/part" + std::to_string(number / filesInDirectory) + "/file" +
           std::to_string(number) + ".txt";
}

/// A working copy in which every file was changed after it was checked out.
std::string makeWorkingCopy(const std::string& place, std::size_t files) {
    const std::string url = "file://" + place + "/repository";
    const std::string seed = place + "/seed";
    const std::string workingCopy = place + "/wc";
    for (std::size_t i = 0; i < files; ++i) {
        std::filesystem::create_directories(seed + "/part" + std::to_string(i / filesInDirectory));
        std::ofstream(pathOfFile(seed, i)) << i << '\n';
    }
    run(clientPath("svnadmin"), {"create", place + "/repository"});
    run(clientPath("svn"), {"import", "-q", "-m", "All files", seed, url});
    run(clientPath("svn"), {"checkout", "-q", url, workingCopy});
    for (std::size_t i = 0; i < files; ++i) {
        std::ofstream(pathOfFile(workingCopy, i), std::ios::app) << "changed\n";
    }
    return workingCopy;
}

Seconds since(std::chrono::steady_clock::time_point start) {
    return std::chrono::steady_clock::now() - start;
}

Seconds bareClient(const std::string& workingCopy) {
    const std::string command = "exec " + clientPath("svn").str() + " status --no-ignore --xml '" +
                                workingCopy + "' >/dev/null";
    const auto start = std::chrono::steady_clock::now();
    run("/bin/sh", {"-c", command});
    return since(start);
}

Seconds wholeOperation(const std::string& workingCopy, std::size_t files) {
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(RequestTypeStatus, nullptr, StringArray{workingCopy}, Dictionary());
    const auto start = std::chrono::steady_clock::now();
    SVNStatusOperation operation;
    operation.initWithRequest(request);
    operation.main();
    const Seconds time = since(start);
    if (operation.error() || operation.result().array()->count() < files) {
        throw std::runtime_error("The operation did not answer all records.");
    }
    return time;
}

double median(std::vector<double> numbers) {
    std::sort(numbers.begin(), numbers.end());
    return numbers[numbers.size() / 2];
}

int compare(std::size_t files, double bound) {
    const auto place = TemporaryDirectory::make();
    if (place == nullptr) {
        throw std::runtime_error("No temporary directory can be made.");
    }
    const std::string workingCopy = makeWorkingCopy(place->path().str(), files);
    bareClient(workingCopy); // the first run reads the disk
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::vector<double> ratios;
    for (int pair = 0; pair < pairs; ++pair) {
        const Seconds bare = bareClient(workingCopy);
        const Seconds whole = wholeOperation(workingCopy, files);
        ratios.push_back(whole / bare);
        std::printf("bare client %.3f s, operation %.3f s, ratio %.3f\n", bare.count(),
                    whole.count(), ratios.back());
    }
    std::printf("status of %zu changed files: median ratio %.3f (bound %.2f)\n", files,
                median(ratios), bound);
    return median(ratios) <= bound ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

} // namespace quen

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "StatusOverhead FILES BOUND\n";
        return EXIT_FAILURE;
    }
    try {
        return quen::compare(std::stoul(argv[1]), std::stod(argv[2]));
    } catch (const std::exception& error) {
        std::cerr << "StatusOverhead: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
