#include "Foundation/Lines.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/CommandLine/Completion.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/StatusWords.h"

#include <chrono>
#include <iostream>

namespace quen::tools {

namespace {

using Candidates = std::vector<Candidate>;

/// A shell waits for the candidates, with a person in front of it.
constexpr std::chrono::seconds patience{3};
constexpr std::int64_t revisionsShown = 20;

const Array* recordsOf(Session& session, const QuenSourceControlRequestPtr& request,
                       Outcome<QuenSourceControlOperationPtr>& operation) {
    operation = session.query(request);
    return operation ? (*operation)->result().array() : nullptr;
}

Candidates branches(Session& session) {
    const auto source = findSourceWithLayout(session, ".", {});
    Candidates candidates{{"trunk", ""}};
    Outcome<QuenSourceControlOperationPtr> operation{Explained{}};
    const Array* const records =
        source ? recordsOf(session, makeRequest(RequestTypeListBranches, *source), operation)
               : nullptr;
    for (std::size_t i = 0; records != nullptr && i < records->count(); ++i) {
        candidates.push_back(
            {shownText(*(*records)[i].dictionary(), QuenSourceControlOperationNameKey), ""});
    }
    return candidates;
}

Candidates revisions(Session& session) {
    Candidates candidates{{"HEAD", "the youngest revision"},
                          {"BASE", "what the working copy is based on"},
                          {"PREV", "the revision before the last change"},
                          {"COMMITTED", "the revision of the last change"}};
    const auto source = findSource(session, ".");
    if (!source) {
        return candidates;
    }
    const auto request =
        makeRequest(RequestTypeLogAll, *source, {},
                    {{QuenSourceControlRequestOptionLogOutputLimit, revisionsShown}});
    Outcome<QuenSourceControlOperationPtr> operation{Explained{}};
    const Array* const records = recordsOf(session, request, operation);
    for (std::size_t i = 0; records != nullptr && i < records->count(); ++i) {
        const Dictionary& record = *(*records)[i].dictionary();
        const String message = record[QuenSourceControlOperationMessageKey].stringValue();
        const auto lines = linesOf(message.view());
        candidates.push_back({shownText(record, QuenSourceControlOperationRevisionKey),
                              shownText(record, QuenSourceControlOperationAuthorKey) + ": " +
                                  (lines.empty() ? "" : printable(lines.front()))});
    }
    return candidates;
}

Candidates changedFiles(Session& session, bool areUnversioned) {
    const auto source = findSource(session, ".");
    Candidates candidates;
    Outcome<QuenSourceControlOperationPtr> operation{Explained{}};
    const Array* const records =
        source ? recordsOf(session, makeRequest(RequestTypeStatus, *source, {"."}), operation)
               : nullptr;
    for (std::size_t i = 0; records != nullptr && i < records->count(); ++i) {
        const Dictionary& record = *(*records)[i].dictionary();
        const std::int64_t* const status = record[QuenSourceControlOperationWCStatusKey].integer();
        const auto words =
            wordsForStatus(status == nullptr ? 0 : static_cast<std::uint32_t>(*status));
        const std::string word = words.empty() ? "" : words.front().text;
        const bool isMeant =
            areUnversioned ? word == "unversioned" : word != "unversioned" && word != "ignored";
        if (isMeant) {
            candidates.push_back({shownText(record, QuenSourceControlOperationPathKey), word});
        }
    }
    return candidates;
}

Candidates candidatesFor(const Completion& completion, Session& session) {
    switch (completion.kind) {
    case Completion::Kind::branches: return branches(session);
    case Completion::Kind::revisions: return revisions(session);
    case Completion::Kind::changedFiles: return changedFiles(session, false);
    case Completion::Kind::unversionedFiles: return changedFiles(session, true);
    default: return completion.candidates;
    }
}

void print(const Candidates& candidates, const std::string& beginning) {
    for (const Candidate& candidate : candidates) {
        if (candidate.word.starts_with(beginning)) {
            std::cout << candidate.word << (candidate.help.empty() ? "" : "\t") << candidate.help
                      << '\n';
        }
    }
}

int printCandidates(const CommandLine& line, const std::vector<std::string>& words) {
    const Completion completion = completionOf(line.text(), words);
    if (completion.kind == Completion::Kind::words || completion.kind == Completion::Kind::files) {
        print(completion.candidates, completion.beginning);
        return ExitSuccess;
    }
    CommonOptions options;
    options.asksNever = true;
    RunLimits limits;
    limits.total = patience;
    const RunContext::Scope scope(RunContext::current().withLimits(limits));
    const auto session = Session::open(options, "complete");
    if (!session) {
        return session.status();
    }
    print(candidatesFor(completion, **session), completion.beginning);
    return ExitSuccess;
}

int runComplete(const CommandLine& line, const std::vector<std::string>& words) {
    if (words.size() > 1 && words[0] == "words") {
        const auto first = words.begin() + (words[1] == "--" ? 2 : 1);
        return printCandidates(line, first == words.end()
                                         ? std::vector<std::string>{""}
                                         : std::vector<std::string>(first, words.end()));
    }
    const std::string script = words.size() == 1 ? completionScript(words[0]) : "";
    if (script.empty()) {
        std::cerr << "quen complete: Give the shell: bash, zsh or fish.\n";
        return ExitUsage;
    }
    std::cout << script;
    return ExitSuccess;
}

} // namespace

void addCompleteCommand(CommandLine& line) {
    CommandText text;
    text.name = "complete";
    text.help = "Print what bash, zsh or fish need to complete quen's commands";
    text.arguments.push_back({"SHELL", "bash, zsh or fish", true, false});
    line.addPlain(text, [&line](const auto& words) { return runComplete(line, words); });
}

} // namespace quen::tools
