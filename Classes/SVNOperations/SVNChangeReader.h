#pragma once

#include "Foundation/Date.h"
#include "Foundation/XMLReport.h"

namespace quen {

/// For the dates of the client's reports: always universal time with six digits of a second. The
/// client writes no date in another form; one that differs all the same is left out.
DateFormatter makeReportDateFormatter();

/// Reads what reports say of a change: its revision, its author, its date. Each is left out where
/// the element has none, or more than one. One reader reads one report: changes that follow one
/// another are often the same, and then share their texts.
class SVNChangeReader {
public:
    /// The formatter must outlive the reader.
    explicit SVNChangeReader(const DateFormatter& formatter) : formatter_(formatter) {}

    /// Adds what `change`, a `commit` or a `logentry`, has to say to a record.
    void read(const XMLElement& change, Dictionary& record);

private:
    const DateFormatter& formatter_;
    String revision_;
    String author_;
};

} // namespace quen
