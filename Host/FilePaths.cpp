#include "Foundation/PathComponents.h"
#include "Host/RunContext.h"
#include "Host/TemporaryDirectory.h"
#include "MarlFoundation/MarlDeveloperPaths.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"

#include <sys/stat.h>
#include <utility>

namespace quen {

namespace {

class HostFilePath : public MarlFilePath {
public:
    HostFilePath(String path, std::shared_ptr<TemporaryDirectory> directory)
        : path_(std::move(path)), directory_(std::move(directory)) {}

    bool existsInFileSystem() const override {
        struct stat ignored {};
        return lstat(path_.c_str(), &ignored) == 0;
    }
    String fileName() const override { return lastPathComponent(path_.view()); }
    String pathString() const override { return path_; }

private:
    String path_;
    /// Keeps the temporary directory that the path lies in; null for any other path.
    std::shared_ptr<TemporaryDirectory> directory_;
};

class ToolsSearchPath : public MarlSearchPath {
public:
    MarlFilePathPtr preferredDirectoryPath() const override {
        return MarlFilePath::filePathForPathString(RunContext::current().toolsDirectory());
    }
};

class HostDeveloperPaths : public MarlDeveloperPaths {
public:
    /// The same for every platform: there is one client.
    std::shared_ptr<MarlSearchPath> binSearchPathForPlatform(int /*platform*/) const override {
        return std::make_shared<ToolsSearchPath>();
    }
};

} // namespace

MarlFilePathPtr MarlFilePath::filePathForPathString(const String& path) {
    return path.isNil() ? nullptr
                        : std::make_shared<HostFilePath>(path, TemporaryDirectory::holding(path));
}

std::shared_ptr<MarlDeveloperPaths> MarlDeveloperPaths::defaultPaths() {
    static const auto paths = std::make_shared<HostDeveloperPaths>();
    return paths;
}

MarlFilePathPtr QuenSourceControl_filePathForTmpFileBasedOnFileName(const String& fileName,
                                                                    Error* error) {
    std::shared_ptr<TemporaryDirectory> directory = TemporaryDirectory::make(error);
    if (directory == nullptr) {
        return nullptr;
    }
    const std::string_view name = lastPathComponent(fileName.view());
    const bool isUsable = !name.empty() && name != "/" && name != "." && name != "..";
    String path = appendingPathComponent(directory->path().view(), isUsable ? name : "file");
    return std::make_shared<HostFilePath>(std::move(path), std::move(directory));
}

} // namespace quen
