#include "Tests/Servers/Server.h"

#include <filesystem>
#include <stdexcept>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quen::test {

namespace {

// Configurations, with $NAMES for what differs from run to run.

constexpr const char* svnserveOpen = R"([general]
anon-access = write
)";

constexpr const char* svnserveClosed = R"([general]
anon-access = none
password-db = passwd
realm = quen
)";

constexpr const char* svnserveUsers = R"([users]
$USER = $PASSWORD
)";

constexpr const char* httpdSettings = R"(ServerName localhost
ServerRoot $DIRECTORY
DefaultRuntimeDir $DIRECTORY
PidFile $DIRECTORY/pid
ErrorLog /dev/stderr
Listen $PLACE
StartServers 1
ServerLimit 1
ThreadsPerChild 16
MaxRequestWorkers 16
MinSpareThreads 1
MaxSpareThreads 16
LoadModule mpm_event_module $MODULES/mod_mpm_event.so
LoadModule authn_core_module $MODULES/mod_authn_core.so
LoadModule authn_file_module $MODULES/mod_authn_file.so
LoadModule authz_core_module $MODULES/mod_authz_core.so
LoadModule authz_user_module $MODULES/mod_authz_user.so
LoadModule auth_basic_module $MODULES/mod_auth_basic.so
LoadModule dav_module $MODULES/mod_dav.so
LoadModule dav_svn_module $MODULES/mod_dav_svn.so
<Location /repository>
    DAV svn
    SVNPath $ROOT/repository
    AuthType Basic
    AuthName quen
    AuthBasicProvider file
    AuthUserFile $DIRECTORY/users
    Require valid-user
</Location>
)";

/// The password as httpd keeps it: `wonder land`.
constexpr const char* httpdUsers = "$USER:{SHA}w24zq5KWQmx3ubdRSJwinHNdFYQ=\n";

/// The person's own shell runs the command; with another home it reads none of their files.
constexpr const char* sshdSettings = R"(ListenAddress $PLACE
PidFile none
HostKey $DIRECTORY/host
AuthorizedKeysFile $DIRECTORY/authorized
AuthenticationMethods publickey
StrictModes no
UsePAM no
SetEnv HOME=$ROOT/home
ForceCommand exec svnserve --tunnel --tunnel-user $USER --root $ROOT
)";

/// A name that is no host's leads to the server.
constexpr const char* sshSettings = R"(Host quen-test
    HostName $ADDRESS
    Port $PORT
    HostKeyAlias quen-test
    IdentityFile $DIRECTORY/key
    UserKnownHostsFile $DIRECTORY/known
Host *
    IdentitiesOnly yes
    IdentityAgent none
    GlobalKnownHostsFile none
    KexAlgorithms curve25519-sha256
)";

/// The number of nobody, who serves in the place of root.
constexpr const char* nobody = "65534";

bool isRoot() {
    return geteuid() == 0;
}

void runOrThrow(const Sandbox& sandbox, const Sandbox::Words& words) {
    const Ran ran = sandbox.run(words, sandbox.root());
    if (ran.status != 0) {
        throw std::runtime_error(words.front() + ": " + ran.err);
    }
}

/// Writes one server's files.
class Planner {
public:
    Planner(const Sandbox& sandbox, const Loopback& place)
        : sandbox_(sandbox), place_(place), directory_((sandbox.root() / "server").string()) {
        std::filesystem::create_directory(directory_);
    }

    ServerPlan svnserve(bool wantsPassword) const {
        const auto configuration = sandbox_.root() / "repository/conf";
        write(configuration / "svnserve.conf", wantsPassword ? svnserveClosed : svnserveOpen);
        write(configuration / "passwd", svnserveUsers);
        return {{"svnserve", "--daemon", "--foreground", "--listen-host", place_.address,
                 "--listen-port", std::to_string(place_.port), "--root", sandbox_.root().string()},
                filled("svn://$PLACE/repository"),
                wantsPassword ? filled("<svn://$PLACE> quen") : "",
                {}};
    }

    ServerPlan httpd() const {
        write(directory_ / "users", httpdUsers);
        write(directory_ / "httpd.conf",
              std::string(httpdSettings) + (isRoot() ? "User #$NOBODY\nGroup #$NOBODY\n" : ""));
        if (isRoot()) {
            giveRepositoryToNobody();
        }
        return {{"/usr/sbin/apache2", "-DFOREGROUND", "-f", filled("$DIRECTORY/httpd.conf")},
                filled("http://$PLACE/repository"),
                filled("<http://$PLACE> quen"),
                {}};
    }

    ServerPlan sshd() const {
        for (const char* const key : {"$DIRECTORY/host", "$DIRECTORY/key", "$DIRECTORY/stranger"}) {
            runOrThrow(sandbox_, {"ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-C", "", "-f",
                                  filled(key)});
        }
        write(directory_ / "authorized", sandbox_.read(directory_ / "key.pub"));
        write(directory_ / "known", "quen-test " + sandbox_.read(directory_ / "host.pub"));
        write(directory_ / "sshd_config", sshdSettings);
        write(directory_ / "ssh_config", sshSettings);
        if (isRoot()) {
            // The directory that sshd locks itself into; a system that has started its own has it.
            std::filesystem::create_directories("/run/sshd");
        }
        return {{"/usr/sbin/sshd", "-D", "-e", "-f", filled("$DIRECTORY/sshd_config")},
                "svn+ssh://quen-test/repository",
                "",
                {filled("SVN_SSH=ssh -F $DIRECTORY/ssh_config")}};
    }

private:
    std::string filled(std::string text) const {
        const std::vector<std::pair<std::string, std::string>> values = {
            {"$DIRECTORY", directory_.string()},
            {"$ROOT", sandbox_.root().string()},
            {"$PLACE", place_.text()},
            {"$ADDRESS", place_.address},
            {"$PORT", std::to_string(place_.port)},
            {"$MODULES", "/usr/lib/apache2/modules"},
            {"$NOBODY", nobody},
            {"$USER", Server::user},
            {"$PASSWORD", Server::password}};
        for (const auto& [name, value] : values) {
            for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at)) {
                text.replace(at, name.size(), value);
            }
        }
        return text;
    }

    void write(const std::filesystem::path& path, const std::string& text) const {
        sandbox_.write(path, filled(text));
    }

    void giveRepositoryToNobody() const {
        using std::filesystem::perms;
        std::filesystem::permissions(sandbox_.root(), perms::group_exec | perms::others_exec,
                                     std::filesystem::perm_options::add);
        runOrThrow(sandbox_, {"chown", "-R", std::string(nobody) + ":" + nobody,
                              (sandbox_.root() / "repository").string()});
    }

    const Sandbox& sandbox_;
    const Loopback& place_;
    std::filesystem::path directory_;
};

} // namespace

ServerPlan planServer(const Sandbox& sandbox, ServerKind kind, const Loopback& place) {
    const Planner planner(sandbox, place);
    switch (kind) {
    case ServerKind::files: break;
    case ServerKind::svnserve: return planner.svnserve(false);
    case ServerKind::svnserveWithPassword: return planner.svnserve(true);
    case ServerKind::httpd: return planner.httpd();
    case ServerKind::sshd: return planner.sshd();
    }
    return {{}, sandbox.url(), "", {}};
}

} // namespace quen::test
