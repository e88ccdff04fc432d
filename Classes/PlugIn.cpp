#include "Classes/SVNController.h"
#include "QuenFoundation/QuenSourceControlPlugIn.h"

#include <memory>

namespace {

constexpr quen::QuenSourceControlPlugIn plugIn{
    .contractVersion = quen::QuenSourceControlContractVersion,
    .name = "Subversion",
    .makeProvider = []() -> quen::QuenSourceControlProtocolPtr {
        return std::make_shared<quen::SVNController>();
    }};

} // namespace

/// The module's one exported name.
extern "C" const quen::QuenSourceControlPlugIn* quenSourceControlPlugInEntryPoint() {
    return &plugIn;
}
