#pragma once

#include "Host/Facts/StatusFacts.h"
#include "Tools/Terminal/Style.h"

#include <memory>
#include <string>

namespace quen::tools {

/// How a status is shown.
struct StatusFormat {
    bool isJson = false;
    /// One JSON object a line.
    bool isInLines = false;
    bool isShort = false;
    bool asksRepository = false;
    bool showsIgnored = false;
};

/// What is shown of a status, item by item in the client's order, as they arrive.
class StatusView {
public:
    StatusView() = default;
    StatusView(const StatusView&) = delete;
    StatusView& operator=(const StatusView&) = delete;
    virtual ~StatusView() = default;

    /// `reason` is the client's own word for a tree conflict, empty where none is known.
    virtual void show(const StatusEntry& entry, const std::string& reason) = 0;
    /// What needs the whole. `isWhole` says whether all of it was there.
    virtual void finish(bool isWhole) = 0;

    /// The one for a format; it writes to standard output.
    static std::unique_ptr<StatusView> make(const StatusFormat& format, const Palette& palette);
};

} // namespace quen::tools
