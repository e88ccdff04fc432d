#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlPlugIn.h"

// What a host of another time had and this one has not.
namespace quen {
int newerFunction(int value);
QUEN_EXPORT extern const String QuenSourceControlNewerKey;
} // namespace quen

extern "C" QUEN_EXPORT const quen::QuenSourceControlPlugIn* quenSourceControlPlugInEntryPoint() {
    return quen::newerFunction(0) == 0 || quen::QuenSourceControlNewerKey.isNil() ? nullptr
                                                                                  : nullptr;
}
