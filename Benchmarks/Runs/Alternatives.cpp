#include "Benchmarks/Runs/Alternatives.h"

#include "Benchmarks/Runs/Timing.h"

#include <exception>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace quen::benchmarks {

namespace {

/// A program that answers the question as others would, and what an operation may take over it.
struct Alternative {
    std::string name;
    double bound = 0;
    std::vector<std::string> command;
    /// Answers whether what it needs has been installed, by a run that ends with 0.
    std::vector<std::string> proof;
    std::string package;
};

/// The interpreters are looked for as a shell does; Debian's modules of Node lie where only its own
/// interpreter looks by itself.
std::vector<std::string> environmentWith(const std::vector<std::string>& words) {
    std::vector<std::string> command{"PATH=/usr/bin:/bin:/usr/local/bin",
                                     "NODE_PATH=/usr/share/nodejs"};
    command.insert(command.end(), words.begin(), words.end());
    return command;
}

std::vector<std::string> scriptOf(const std::string& interpreter, const std::string& script,
                                  const Question& question) {
    return {interpreter, std::string(QUEN_ALTERNATIVES "/").append(script), question.kind};
}

std::vector<std::string> withClient(std::vector<std::string> command, const Question& question) {
    command.push_back(toolPath());
    command.insert(command.end(), question.arguments.begin(), question.arguments.end());
    return command;
}

std::vector<Alternative> alternativesFor(const Question& question) {
    std::vector<std::string> binding = scriptOf("python3", "binding.py", question);
    binding.push_back(question.place);
    return {{.name = "Python with ElementTree",
             .bound = 0.65,
             .command = withClient(scriptOf("python3", "elementtree.py", question), question),
             .proof = {"python3", "-c", "import xml.etree.ElementTree"},
             .package = "python3"},
            {.name = "Node with xml2js",
             .bound = 0.55,
             .command = withClient(scriptOf("node", "xml2js.js", question), question),
             .proof = {"node", "-e", "require('xml2js')"},
             .package = "node-xml2js"},
            {.name = "the client's Python binding",
             .bound = 0.25,
             .command = binding,
             .proof = {"python3", "-c", "import svn.client"},
             .package = "python3-subversion"}};
}

bool isInstalled(const Alternative& alternative) {
    try {
        runBare("/usr/bin/env", environmentWith(alternative.proof));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

/// The seconds that the program says, once it has answered everything.
double secondsOf(const Alternative& alternative, const Question& question) {
    std::istringstream answer(outputOf("/usr/bin/env", environmentWith(alternative.command)));
    std::size_t records = 0;
    double seconds = 0;
    if (!(answer >> records >> seconds) || records != question.records) {
        throw std::runtime_error(alternative.name + " did not answer all records.");
    }
    return seconds;
}

/// Over one alternative, one of each turn.
struct Ratios {
    std::vector<double> operation;
    std::vector<double> client;
};

/// No host of the client can meet a bound that the client alone does not.
void addRows(Figures& figures, const Question& question, const Alternative& alternative,
             const Ratios& ratios) {
    const double floor = median(ratios.client);
    const bool canBeMet = floor < alternative.bound;
    add(figures, {.name = question.kind + ", wall over " + alternative.name,
                  .value = median(ratios.operation),
                  .bound = canBeMet ? std::optional(alternative.bound) : std::nullopt,
                  .detail = canBeMet ? "without the interpreter's own start"
                                     : "the client alone takes more than " +
                                           decimals(alternative.bound, 2)});
    add(figures, {.name = question.kind + ", bare client over " + alternative.name,
                  .value = floor,
                  .detail = "the least that a host of the client can have"});
}

} // namespace

Figures measureAlternatives(const Question& question, const std::function<double()>& run,
                            const std::function<double()>& runClientAlone, std::size_t turns) {
    std::vector<Alternative> present;
    for (Alternative& alternative : alternativesFor(question)) {
        if (isInstalled(alternative)) {
            present.push_back(std::move(alternative));
        } else {
            std::cout << "| " << question.kind << ", wall over " << alternative.name
                      << " | SKIPPED | | | not installed: " << alternative.package << " |"
                      << std::endl;
        }
    }
    std::vector<Ratios> ratios(present.size());
    for (std::size_t turn = 0; turn < turns; ++turn) {
        const double own = run();
        const double alone = runClientAlone();
        for (std::size_t i = 0; i < present.size(); ++i) {
            const double other = secondsOf(present[i], question);
            ratios[i].operation.push_back(own / other);
            ratios[i].client.push_back(alone / other);
        }
    }
    Figures figures;
    for (std::size_t i = 0; i < present.size(); ++i) {
        addRows(figures, question, present[i], ratios[i]);
    }
    return figures;
}

} // namespace quen::benchmarks
