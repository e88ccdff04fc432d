#include <cstdio>
#include <quen/Host/Embedding/ErrorDescription.h>
#include <quen/Host/Embedding/InstalledModule.h>
#include <quen/Host/Embedding/WorkingCopy.h>
#include <quen/Host/PlugInLoader.h>

/// Prints what has changed in a working copy; how many items that are, or -1.
extern "C" __attribute__((visibility("default"))) int showChanges(const char* directory) {
    quen::Error error;
    const auto provider = quen::loadProvider(quen::installedModule(), &error);
    if (provider == nullptr) {
        std::puts(quen::descriptionOfError(error).c_str());
        return -1;
    }
    const auto changes = quen::WorkingCopy(provider, directory).localChanges();
    for (const quen::StatusItem& item : changes.items) {
        std::puts(item.path.c_str());
    }
    std::fflush(stdout);
    return changes.error ? -1 : static_cast<int>(changes.items.size());
}
