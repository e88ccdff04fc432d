#pragma once

#include "Foundation/Export.h"

#include <memory>

namespace quen {

/// What surrounds the work on a thread, such as where it logs and how it runs tools. Foundation
/// only hands it on: an operation keeps the one it was made in, and a queue that of whoever adds.
///
/// A process has one kind of it, which its host library derives from this class; see RunContext.
class QUEN_EXPORT Ambient {
public:
    Ambient() = default;
    Ambient(const Ambient&) = delete;
    Ambient& operator=(const Ambient&) = delete;
    virtual ~Ambient() = default;

    /// The one that is current on this thread; null while there is none.
    static std::shared_ptr<const Ambient> current() noexcept;
};

using AmbientPtr = std::shared_ptr<const Ambient>;

/// Makes an ambient the current one of the thread that it is made on, until it is destroyed, which
/// must happen on that thread, in the reverse order of making. A null one hides the outer ones.
class QUEN_EXPORT AmbientScope {
public:
    explicit AmbientScope(AmbientPtr ambient) noexcept;
    AmbientScope(const AmbientScope&) = delete;
    AmbientScope& operator=(const AmbientScope&) = delete;
    ~AmbientScope();

private:
    friend class Ambient;

    const AmbientPtr ambient_;
    const AmbientScope* const outer_;
};

} // namespace quen
