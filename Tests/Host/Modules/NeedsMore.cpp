#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlPlugIn.h"

// What a host of another time had and this one has not.
namespace quen {
int newerFunction(int value);
QUEN_EXPORT extern const String QuenSourceControlNewerKey;
} // namespace quen

extern "C" QUEN_EXPORT const quen::QuenSourceControlPlugIn* quenSourceControlPlugInEntryPoint() {
    quen::newerFunction(static_cast<int>(quen::QuenSourceControlNewerKey.length()));
    return nullptr;
}
