// What has changed in a working copy: first-host DIRECTORY

#include <iostream>
#include <quen/Host/Embedding/ErrorDescription.h>
#include <quen/Host/Embedding/InstalledModule.h>
#include <quen/Host/Embedding/WorkingCopy.h>
#include <quen/Host/PlugInLoader.h>

int main(int count, char** words) {
    quen::Error problem;
    const auto provider = quen::loadProvider(quen::installedModule(), &problem);
    if (provider == nullptr || count != 2) {
        std::cerr << "Usage: first-host DIRECTORY\n" << quen::descriptionOfError(problem) << '\n';
        return 2;
    }
    const quen::WorkingCopy copy(provider, words[1]);
    const auto changes = copy.localChanges();
    for (const quen::StatusItem& item : changes.items) {
        std::cout << (item.isUnversioned() ? "new      " : "changed  ") << item.path << '\n';
    }
    std::cerr << quen::descriptionOfError(changes.error);
    return changes.error ? 1 : 0;
}
