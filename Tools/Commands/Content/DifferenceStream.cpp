#include "Tools/Commands/Content/DifferenceStream.h"

#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Columns.h"

#include <iostream>

namespace quen::tools {

namespace {

/// With less room than this a line of either side would be cut before it says anything.
constexpr std::size_t leastForTwo = 60;

} // namespace

std::vector<Parameter> DifferenceOptions::addTo(Subcommand& command) {
    const Parameter stat =
        command.flag("--stat", isStat, "Show only how many lines changed in each file");
    const Parameter sides =
        command
            .flag("-y,--side-by-side", isSideBySide,
                  "Show old and new lines beside each other, from 60 columns on")
            .excludes(stat);
    return {stat, sides};
}

DifferenceStream::DifferenceStream(Session& session, const DifferenceOptions& options)
    : session_(session), palette_(session.options().palette()), isStat_(options.isStat),
      sideBySide_(options.isSideBySide && outputColumns() >= leastForTwo ? outputColumns() : 0),
      isPainted_(outputIsTerminal() || palette_.isColoured() || sideBySide_ > 0) {
    if (options.isStat || options.isSideBySide) {
        // A person's own program for differences writes in a form of its own.
        session_.compareWith({"--internal-diff"});
    }
}

bool DifferenceStream::take(std::string_view piece, DifferencePainter& painter) {
    if (isStat_) {
        stat_.take(piece);
        return true;
    }
    return isPainted_ ? output_.write(painter.take(piece)) : output_.write(piece);
}

int DifferenceStream::show(const QuenSourceControlRequestPtr& request) {
    DifferencePainter painter(palette_, sideBySide_);
    const int status =
        session_.stream(request, "", [&](std::string_view piece) { return take(piece, painter); });
    stat_.finish();
    output_.write(painter.finish());
    return status;
}

void DifferenceStream::finish() {
    if (isStat_ && session_.options().json) {
        std::cout << jsonText(stat_.records()) << '\n';
    } else if (isStat_ && !stat_.isEmpty()) {
        output_.write(stat_.text(palette_, outputColumns()));
    }
    output_.finish();
}

} // namespace quen::tools
