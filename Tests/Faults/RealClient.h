#pragma once

#include "Tests/Host/ScratchDirectory.h"
#include "Tests/System/Sandbox.h"

#include <filesystem>
#include <unistd.h>

namespace quen::test {

/// The host with the real client and a sandbox in memory, where the system has a place for that;
/// no configuration of the machine plays in.
class RealClient {
public:
    RealClient() = default;

    const Sandbox& sandbox() const { return sandbox_; }

private:
    static String placeInMemory() {
        constexpr const char* place = "/dev/shm";
        return ::access(place, W_OK) == 0 ? String(place)
                                          : String(std::filesystem::temp_directory_path().string());
    }

    ScopedVariable temporary_{"TMPDIR", placeInMemory()};
    Sandbox sandbox_;
    ScopedVariable home_{"HOME", (sandbox_.root() / "home").string()};
};

} // namespace quen::test
