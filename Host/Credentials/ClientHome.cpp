#include "Host/Credentials/ClientHome.h"

#include "Host/Credentials/ClientSettings.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string_view>
#include <system_error>

namespace quen {

namespace {

namespace fs = std::filesystem;

constexpr const char* commonSettings = "/etc/subversion/config";

/// What a directory holds; nothing where it cannot be read.
std::vector<fs::path> contentsOf(const fs::path& directory) {
    std::vector<fs::path> contents;
    std::error_code error;
    for (fs::directory_iterator at(directory, error), end; !error && at != end;
         at.increment(error)) {
        contents.push_back(at->path());
    }
    return contents;
}

/// Links and files, until the first that cannot be made.
class Maker {
public:
    int error() const { return error_; }

    void makeDirectory(const fs::path& path) {
        keep(error_ == 0 && fs::create_directory(path, code_));
    }

    void makeFile(const fs::path& path, const std::string& text) {
        std::ofstream file(path, std::ios::binary);
        file << text;
        if (error_ == 0 && !file.flush()) {
            error_ = errno != 0 ? errno : EIO;
        }
    }

    /// Links to what `source` holds, if it is there, but not to what is there already or named in
    /// `others`.
    void linkContents(const fs::path& source, const fs::path& path,
                      std::initializer_list<std::string_view> others = {}) {
        for (const fs::path& each : contentsOf(source)) {
            const std::string name = each.filename();
            const bool isOther = std::find(others.begin(), others.end(), name) != others.end();
            if (error_ == 0 && !isOther && !exists(path / name)) {
                fs::create_symlink(each, path / name, code_);
                keep(true);
            }
        }
    }

private:
    static bool exists(const fs::path& path) {
        std::error_code ignored;
        return fs::symlink_status(path, ignored).type() != fs::file_type::not_found;
    }

    void keep(bool wasDone) {
        if (error_ == 0 && (code_ || !wasDone)) {
            error_ = code_ ? code_.value() : EEXIST;
        }
    }

    std::error_code code_;
    int error_ = 0;
};

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void makeSettings(Maker& maker, const fs::path& path, const fs::path& persons) {
    if (const auto settings =
            settingsWithAgent(textOf(persons / "config"), textOf(commonSettings))) {
        maker.makeFile(path / "config", *settings);
    }
}

void makePasswords(Maker& maker, const fs::path& path, const SignInFacts& facts) {
    maker.makeDirectory(path);
    for (const KeptPassword& password : facts.passwords) {
        maker.makeFile(path / entryNameOf(password.realm), agentEntry(password));
    }
}

void makeCertificates(Maker& maker, const fs::path& path, const SignInFacts& facts) {
    maker.makeDirectory(path);
    for (const TrustedCertificate& certificate : facts.certificates) {
        maker.makeFile(path / certificate.name, certificate.entry);
    }
}

int make(const fs::path& path, const fs::path& persons, const SignInFacts& facts,
         bool withPersonsPasswords) {
    Maker maker;
    maker.makeDirectory(path);
    makeSettings(maker, path, persons);
    maker.linkContents(persons, path, {"auth"});
    maker.makeDirectory(path / "auth");
    makePasswords(maker, path / "auth/svn.simple", facts);
    if (withPersonsPasswords) {
        maker.linkContents(persons / "auth/svn.simple", path / "auth/svn.simple");
    }
    makeCertificates(maker, path / "auth/svn.ssl.server", facts);
    maker.linkContents(persons / "auth/svn.ssl.server", path / "auth/svn.ssl.server");
    maker.linkContents(persons / "auth", path / "auth");
    return maker.error();
}

} // namespace

void SignInFacts::put(const SignInFacts& more) {
    for (const KeptPassword& password : more.passwords) {
        std::erase_if(passwords,
                      [&](const KeptPassword& each) { return each.realm == password.realm; });
        passwords.push_back(password);
    }
    for (const TrustedCertificate& certificate : more.certificates) {
        std::erase_if(certificates, [&](const TrustedCertificate& each) {
            return each.name == certificate.name;
        });
        certificates.push_back(certificate);
    }
}

int makeConfigDirectory(const std::string& path, const std::string& persons,
                        const SignInFacts& facts) {
    return make(path, persons, facts, true);
}

int makeConfigDirectoryThatAsks(const std::string& path, const std::string& persons,
                                const SignInFacts& facts) {
    return make(path, persons, facts, false);
}

int makeHome(const std::string& path, const std::string& persons, const SignInFacts& facts) {
    constexpr std::string_view configuration = ".subversion";
    Maker maker;
    maker.makeDirectory(path);
    maker.linkContents(persons, path, {configuration});
    if (maker.error() != 0) {
        return maker.error();
    }
    return makeConfigDirectory((fs::path(path) / configuration).string(),
                               (fs::path(persons) / configuration).string(), facts);
}

std::vector<TrustedCertificate> trustedCertificatesIn(const std::string& configDirectory) {
    std::vector<TrustedCertificate> certificates;
    for (const fs::path& each : contentsOf(fs::path(configDirectory) / "auth/svn.ssl.server")) {
        std::error_code error;
        if (!fs::is_symlink(each, error)) {
            certificates.push_back({each.filename(), textOf(each)});
        }
    }
    return certificates;
}

} // namespace quen
