#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlPlugIn.h"

namespace {

constexpr quen::QuenSourceControlPlugIn plugIn{.contractVersion =
                                                   quen::QuenSourceControlContractVersion + 1,
                                               .name = "Of another time",
                                               .makeProvider = nullptr};

} // namespace

// A host that looked past the version would call a null pointer.
extern "C" QUEN_EXPORT const quen::QuenSourceControlPlugIn* quenSourceControlPlugInEntryPoint() {
    return &plugIn;
}
