#include "Host/Embedding/InstalledModule.h"

#include "Host/OwnLibrary.h"

namespace quen {

String installedModule() {
    return (directoryOfLibraries() / QUEN_MODULE).string();
}

} // namespace quen
