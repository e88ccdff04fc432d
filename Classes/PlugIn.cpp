#include "Classes/SVNController.h"
#include "Foundation/Export.h"
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
extern "C" QUEN_EXPORT const quen::QuenSourceControlPlugIn* quenSourceControlPlugInEntryPoint() {
    return &plugIn;
}
