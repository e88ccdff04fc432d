#include "Benchmarks/Runs/Projects.h"

#include "Benchmarks/Runs/Timing.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace quen::benchmarks {

namespace {

constexpr std::size_t filesInDirectory = 500;

std::string makeRepository(const std::string& path) {
    runBare(toolPath("svnadmin"), {"create", path});
    return "file://" + path;
}

std::string nameOf(std::size_t file) {
    return "part" + std::to_string(file / filesInDirectory) + "/file" + std::to_string(file) +
           ".txt";
}

void append(const std::string& path, std::string_view text) {
    std::ofstream file(path, std::ios::app);
    file << text;
    if (!file.flush()) {
        throw std::runtime_error(path + " cannot be written.");
    }
}

/// A repository's history in the format that `svnadmin load` takes, which is far quicker than so
/// many commits.
class Dump {
public:
    explicit Dump(const std::string& path) : file_(path, std::ios::binary) {
        file_ << "SVN-fs-dump-format-version: 2\n\n";
    }

    void beginRevision(std::size_t number) {
        const std::string author = "author" + std::to_string(number % 7);
        const std::string message = "Change number " + std::to_string(number) +
                                    ": what the reader holds again is said once, and why";
        const std::string properties = property("svn:author", author) +
                                       property("svn:date", "2026-01-01T00:00:00.000000Z") +
                                       property("svn:log", message) + "PROPS-END\n";
        const std::string size = std::to_string(properties.size());
        file_ << "Revision-number: " << number << "\nProp-content-length: " << size
              << "\nContent-length: " << size << "\n\n"
              << properties << '\n';
    }

    void addDirectory(const std::string& path) {
        file_ << "Node-path: " << path << "\nNode-kind: dir\nNode-action: add\n"
              << "Prop-content-length: 10\nContent-length: 10\n\nPROPS-END\n\n";
    }

    void writeFile(const std::string& path, bool isNew, const std::string& text) {
        file_ << "Node-path: " << path
              << "\nNode-kind: file\nNode-action: " << (isNew ? "add" : "change")
              << "\nText-content-length: " << text.size() << "\nContent-length: " << text.size()
              << "\n\n"
              << text << "\n\n";
    }

    void close() {
        file_.close();
        if (!file_) {
            throw std::runtime_error("The history cannot be written.");
        }
    }

private:
    static std::string property(const std::string& name, const std::string& value) {
        return "K " + std::to_string(name.size()) + "\n" + name + "\nV " +
               std::to_string(value.size()) + "\n" + value + "\n";
    }

    std::ofstream file_;
};

std::string load(const std::string& place, const std::string& dump) {
    const std::string repository = place + "/repository";
    std::string url = makeRepository(repository);
    outputOf(toolPath("svnadmin"), {"load", "-q", repository}, dump);
    std::filesystem::remove(dump);
    return url;
}

} // namespace

std::string makeChangedFiles(const std::string& place, std::size_t files) {
    const std::string seed = place + "/seed";
    std::string workingCopy = place + "/wc";
    for (std::size_t i = 0; i < files; ++i) {
        if (i % filesInDirectory == 0) {
            std::filesystem::create_directories(
                std::filesystem::path(seed + "/" + nameOf(i)).parent_path());
        }
        append(seed + "/" + nameOf(i), std::to_string(i) + "\n");
    }
    const std::string url = makeRepository(place + "/repository");
    runBare(toolPath(), {"import", "-q", "-m", "All files", seed, url});
    runBare(toolPath(), {"checkout", "-q", url, workingCopy});
    for (std::size_t i = 0; i < files; ++i) {
        append(workingCopy + "/" + nameOf(i), "changed\n");
    }
    return workingCopy;
}

std::string makeLongHistory(const std::string& place, std::size_t revisions) {
    constexpr std::size_t files = 400;
    constexpr std::size_t changes = 4;
    const auto pathOf = [](std::size_t file) {
        return "trunk/part" + std::to_string(file % 20) + "/file" + std::to_string(file) + ".c";
    };
    const std::string path = place + "/history";
    Dump dump(path);
    dump.beginRevision(1);
    dump.addDirectory("trunk");
    for (std::size_t part = 0; part < 20; ++part) {
        dump.addDirectory("trunk/part" + std::to_string(part));
    }
    for (std::size_t file = 0; file < files; ++file) {
        dump.writeFile(pathOf(file), true, "0\n");
    }
    for (std::size_t revision = 2; revision <= revisions; ++revision) {
        dump.beginRevision(revision);
        for (std::size_t i = 0; i < changes; ++i) {
            dump.writeFile(pathOf((revision * 37 + i * 101) % files), false,
                           std::to_string(revision) + "\n");
        }
    }
    dump.close();
    return load(place, path);
}

std::string makeLongFile(const std::string& place, std::size_t lines) {
    constexpr std::size_t revisions = 40;
    const std::string path = place + "/history";
    Dump dump(path);
    for (std::size_t revision = 1; revision <= revisions; ++revision) {
        std::string text;
        for (std::size_t line = 0; line < lines; ++line) {
            // Each revision has a last word on a share of the lines.
            const std::size_t last = 1 + line * revisions / lines;
            text += "line " + std::to_string(line) + " of " +
                    std::to_string(revision < last ? 0 : last) + "\n";
        }
        dump.beginRevision(revision);
        dump.writeFile("long.txt", revision == 1, text);
    }
    dump.close();
    return load(place, path) + "/long.txt";
}

} // namespace quen::benchmarks
