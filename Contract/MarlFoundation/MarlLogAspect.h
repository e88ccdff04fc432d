#pragma once

#include "Foundation/Export.h"
#include "Foundation/Format.h"
#include "Foundation/String.h"

#include <atomic>
#include <cstdint>
#include <span>

namespace quen {

/// A subject that is logged about. Implemented by the host.
///
/// A message of level N is wanted only while `_logLevel` is at least N. Whoever logs reads the
/// level first, so that a message that nobody wants costs no formatting.
///
/// Levels: 1 errors, 2 the description of an error met, 3 timings.
///
/// Threads: any.
class QUEN_EXPORT MarlLogAspect {
public:
    MarlLogAspect() = default;
    MarlLogAspect(const MarlLogAspect&) = delete;
    MarlLogAspect& operator=(const MarlLogAspect&) = delete;
    virtual ~MarlLogAspect() = default;

    /// Formats (see formatText) and emits the message, when the level admits it.
    virtual void _logAtLogLevel(std::uint32_t level, const String& format,
                                std::span<const FormatArgument> arguments) = 0;

    std::atomic<std::uint32_t> _logLevel = 0;
};

} // namespace quen
