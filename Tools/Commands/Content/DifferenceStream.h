#pragma once

#include "Tools/Commands/Content/DiffStat.h"
#include "Tools/Commands/Content/DiffText.h"
#include "Tools/Commands/Session/Session.h"
#include "Tools/Terminal/Pager.h"

#include <string_view>
#include <vector>

namespace quen::tools {

/// How a difference is shown other than line by line.
struct DifferenceOptions {
    /// Only how much changes in each file is shown, at the end.
    bool isStat = false;
    /// Old and new lines stand beside each other, where there is room for it.
    bool isSideBySide = false;

    /// Answers the options, each of which stands alone.
    std::vector<Parameter> addTo(Subcommand& command);
};

/// Differences on their way to a person or a file, while the client writes them. To a file or
/// another program they go byte for byte: they may be meant as a patch.
class DifferenceStream {
public:
    DifferenceStream(Session& session, const DifferenceOptions& options);

    /// Further text for the person, in front of what comes.
    bool write(std::string_view text) { return output_.write(text); }
    /// Runs the client for a difference and shows it. The exit status.
    int show(const QuenSourceControlRequestPtr& request);
    /// Shows what is shown at the end, and waits for the pager.
    void finish();

private:
    bool take(std::string_view piece, DifferencePainter& painter);

    Session& session_;
    const Palette palette_;
    const bool isStat_;
    const std::size_t sideBySide_;
    const bool isPainted_;
    DiffStat stat_;
    PagedOutput output_;
};

} // namespace quen::tools
