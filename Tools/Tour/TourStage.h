#pragma once

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlProtocol.h"
#include "Tools/Console/RunRecorder.h"
#include "Tools/Terminal/Table.h"

#include <chrono>
#include <memory>
#include <string>

namespace quen::tools {

/// Carries out the tour's requests and shows each: what was asked, the client's command lines, the
/// parsed result, the outcome and the time.
class TourStage {
public:
    /// Runs go to the recorder, which must be the host's tool runner.
    TourStage(QuenSourceControlProtocolPtr provider, std::shared_ptr<RunRecorder> recorder,
              const Palette& palette, std::string hiddenPath);

    /// A line of the story between two requests.
    void say(const std::string& text) const;
    /// One request; `title` says in plain words what it is for. Throws std::runtime_error when the
    /// program was interrupted.
    void show(const std::string& title, const QuenSourceControlRequestPtr& request);
    /// All requests in one table, and how many there were and failed.
    void printTable() const;

    std::size_t failures() const noexcept { return failures_; }

private:
    void showRuns(std::size_t first) const;
    void showResult(const Value& result) const;
    /// Text for the screen, with the throw-away directory's long name left out.
    std::string shown(const std::string& text) const;

    QuenSourceControlProtocolPtr provider_;
    std::shared_ptr<RunRecorder> recorder_;
    Palette palette_;
    std::string hiddenPath_;
    Table table_;
    std::size_t requests_ = 0;
    std::size_t failures_ = 0;
};

} // namespace quen::tools
