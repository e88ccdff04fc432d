#include "Tools/Commands/Content/DifferenceStream.h"

#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Columns.h"

#include <iostream>

namespace quen::tools {

DifferenceStream::DifferenceStream(Session& session, bool isStat)
    : session_(session), palette_(session.options().palette()), isStat_(isStat),
      isPainted_(outputIsTerminal() || palette_.isColoured()) {}

bool DifferenceStream::take(std::string_view piece, DifferencePainter& painter) {
    if (isStat_) {
        stat_.take(piece);
        return true;
    }
    return output_.write(isPainted_ ? painter.take(piece) : std::string(piece));
}

int DifferenceStream::show(const QuenSourceControlRequestPtr& request) {
    DifferencePainter painter(palette_);
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
