#include "Tools/Tour/TourStage.h"

#include "Foundation/Format.h"
#include "Foundation/Lines.h"
#include "Foundation/ShellWord.h"
#include "Host/Embedding/ErrorDescription.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Console/RequestEncoder.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/StatusWords.h"

#include <iostream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace quen::tools {

namespace {

constexpr std::size_t shownRecords = 5;
constexpr std::size_t shownLines = 12;

/// `QuenSourceControlOperationWCStatusKey` as `WCStatus`.
std::string shortKey(std::string_view key) {
    constexpr std::string_view prefix = "QuenSourceControlOperation";
    constexpr std::string_view suffix = "Key";
    if (key.starts_with(prefix) && key.ends_with(suffix)) {
        key.remove_prefix(prefix.size());
        key.remove_suffix(suffix.size());
    }
    return std::string(key);
}

/// A value on one line, with the words of a status behind its number.
std::string shortValue(const String& key, const Value& value) {
    const std::int64_t* const number = value.integer();
    std::string text = jsonText(value);
    const bool isStatus = key == QuenSourceControlOperationWCStatusKey ||
                          key == QuenSourceControlOperationRepositoryStatusKey;
    if (isStatus && number != nullptr && *number != 0) {
        std::string words;
        for (const StatusWord& word : wordsForStatus(static_cast<std::uint32_t>(*number))) {
            words += (words.empty() ? "" : ", ") + word.text;
        }
        text += " (" + words + ")";
    }
    return text;
}

std::string shortRecord(const Dictionary& record) {
    std::string text;
    for (const auto& entry : record) {
        text += (text.empty() ? "" : "  ") + shortKey(entry.key.view()) + " " +
                shortValue(entry.key, entry.value);
    }
    return text;
}

std::string withBlanksForTabs(std::string_view line) {
    std::string text;
    for (const char c : line) {
        text += c == '\t' ? std::string(4, ' ') : std::string(1, c);
    }
    return text;
}

/// The lines of a text, up to the limit, and how many more there are.
std::vector<std::string> firstLines(std::string_view text) {
    const auto lines = linesOf(text);
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < lines.size() && i < shownLines; ++i) {
        shown.push_back(printable(withBlanksForTabs(lines[i])));
    }
    if (lines.size() > shownLines) {
        shown.push_back("... and " + std::to_string(lines.size() - shownLines) + " more lines");
    }
    return shown;
}

std::string milliseconds(std::chrono::steady_clock::duration duration) {
    const std::chrono::duration<double, std::milli> time = duration;
    return formatText("%.0f ms", {time.count()}).str();
}

std::string outcomeOf(const QuenSourceControlOperation& operation) {
    if (operation.error()) {
        return "failed: " + descriptionOfError(operation.error(), operation.request()->type());
    }
    const Array* const records = operation.result().array();
    if (records == nullptr || records->count() == 0) {
        return "done";
    }
    return "done, " + std::to_string(records->count()) +
           (records->count() == 1 ? " record" : " records");
}

} // namespace

TourStage::TourStage(QuenSourceControlProtocolPtr provider, std::shared_ptr<RunRecorder> recorder,
                     const Palette& palette, std::string hiddenPath)
    : provider_(std::move(provider)), recorder_(std::move(recorder)), palette_(palette),
      hiddenPath_(std::move(hiddenPath)) {}

std::string TourStage::shown(const std::string& text) const {
    std::string out = text;
    for (std::size_t at = out.find(hiddenPath_); at != std::string::npos;
         at = out.find(hiddenPath_, at)) {
        out.replace(at, hiddenPath_.size(), "/tour");
    }
    return out;
}

void TourStage::say(const std::string& text) const {
    std::cout << '\n' << palette_.paint(Style::changed, text) << '\n';
}

void TourStage::show(const std::string& title, const QuenSourceControlRequestPtr& request) {
    if (InterruptWatch::wasInterrupted()) {
        throw std::runtime_error("Interrupted.");
    }
    const std::string type(nameOfRequestType(request->type()));
    std::cout << '\n'
              << palette_.paint(Style::heading, title) << "  "
              << palette_.paint(Style::faint, type + " (" + std::to_string(request->type()) + ")")
              << '\n';
    std::cout << "  " << palette_.paint(Style::faint, shown(requestText(*request))) << '\n';
    const std::size_t firstRun = recorder_->runs().size();
    const auto start = std::chrono::steady_clock::now();
    const bool isValid = provider_->validateRequest(request, nullptr);
    const auto operation = provider_->operationForRequest(request);
    if (operation != nullptr && !operation->error()) {
        operation->run();
    }
    const auto time = std::chrono::steady_clock::now() - start;
    const std::string outcome = !isValid               ? "refused"
                                : operation == nullptr ? "not served"
                                                       : shown(outcomeOf(*operation));
    const bool isGood = outcome.starts_with("done");
    ++requests_;
    failures_ += isGood ? 0 : 1;

    showRuns(firstRun);
    if (operation != nullptr) {
        showResult(operation->result());
    }
    std::cout << "  " << palette_.paint(isGood ? Style::good : Style::bad, outcome) << ", "
              << milliseconds(time) << '\n';
    table_.add({{std::to_string(requests_), Style::faint, true},
                {type, Style::plain},
                {std::to_string(recorder_->runs().size() - firstRun), Style::plain, true},
                {milliseconds(time), Style::plain, true},
                {outcome, isGood ? Style::good : Style::bad}});
}

void TourStage::showRuns(std::size_t first) const {
    const std::vector<RecordedRun> runs = recorder_->runs();
    for (std::size_t i = first; i < runs.size(); ++i) {
        std::string command = "svn";
        for (const String& argument : runs[i].invocation.arguments) {
            command += " " + shellWord(argument.view());
        }
        std::cout << "  " << palette_.paint(Style::warning, "$ " + shown(command)) << '\n';
    }
}

void TourStage::showResult(const Value& result) const {
    const Array records = result.array() == nullptr ? Array() : *result.array();
    std::size_t count = 0;
    for (const Value& value : records) {
        if (++count > shownRecords) {
            std::cout << "    ... and " << records.count() - shownRecords << " more\n";
            return;
        }
        const Dictionary record =
            value.dictionary() == nullptr ? Dictionary() : *value.dictionary();
        const Value& content = record[QuenSourceControlOperationContentKey];
        if (content.isNothing()) {
            std::cout << "    " << shown(shortRecord(record)) << '\n';
            continue;
        }
        for (const std::string& line : firstLines(content.stringValue().view())) {
            std::cout << "    " << palette_.paint(Style::faint, shown(line)) << '\n';
        }
    }
}

void TourStage::printTable() const {
    std::cout << '\n' << palette_.paint(Style::heading, "The tour in one table") << "\n\n";
    Table headed;
    headed.add({{"", Style::plain},
                {"Request", Style::heading},
                {"Runs", Style::heading},
                {"Time", Style::heading, true},
                {"Outcome", Style::heading}});
    headed.append(table_);
    headed.print(std::cout, palette_);
    std::cout << '\n'
              << requests_ << " requests, " << failures_ << " failed, " << recorder_->runs().size()
              << " runs of the client\n";
}

} // namespace quen::tools
