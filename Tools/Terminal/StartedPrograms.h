#pragma once

namespace quen::tools {

/// Kills every program that this one has started and that still runs, with all that it has started
/// in its process group. From any thread.
void killStartedPrograms() noexcept;

} // namespace quen::tools
