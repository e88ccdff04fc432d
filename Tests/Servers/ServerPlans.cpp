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

constexpr const char* svnserveOpenToRead = R"([general]
anon-access = read
password-db = passwd
realm = quen
)";

constexpr const char* svnserveWithSASL = R"([general]
anon-access = none
realm = quen
[sasl]
use-sasl = true
)";

constexpr const char* saslSettings = R"(pwcheck_method: auxprop
auxprop_plugin: sasldb
sasldb_path: $DIRECTORY/sasldb
mech_list: DIGEST-MD5
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
    AuthName quen
    AuthUserFile $DIRECTORY/users
)";

constexpr const char* basicSettings = R"(    AuthType Basic
    AuthBasicProvider file
    Require valid-user
</Location>
)";

constexpr const char* openToReadSettings = R"(    AuthType Basic
    AuthBasicProvider file
    <LimitExcept GET PROPFIND OPTIONS REPORT>
        Require valid-user
    </LimitExcept>
</Location>
)";

constexpr const char* digestSettings = R"(    AuthType Digest
    AuthDigestProvider file
    Require valid-user
</Location>
LoadModule auth_digest_module $MODULES/mod_auth_digest.so
)";

constexpr const char* tlsSettings = R"(LoadModule ssl_module $MODULES/mod_ssl.so
SSLSessionCache none
SSLEngine on
SSLCertificateFile $DIRECTORY/certificate.pem
SSLCertificateKeyFile $DIRECTORY/key.pem
)";

/// The password as httpd keeps it: `wonder land`.
constexpr const char* httpdUsers = "$USER:{SHA}w24zq5KWQmx3ubdRSJwinHNdFYQ=\n";
/// The same for a digest.
constexpr const char* digestUsers = "$USER:quen:$DIGEST\n";

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

/// A name that belongs to no other host leads to the server.
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

    ServerPlan svnserve(const char* settings) const {
        const bool wantsPassword = settings != svnserveOpen;
        const auto configuration = sandbox_.root() / "repository/conf";
        write(configuration / "svnserve.conf", settings);
        write(configuration / "passwd", svnserveUsers);
        return {{"svnserve", "--daemon", "--foreground", "--listen-host", place_.address,
                 "--listen-port", std::to_string(place_.port), "--root", sandbox_.root().string()},
                filled("svn://$PLACE/repository"),
                wantsPassword ? filled("<svn://$PLACE> quen") : "",
                {}};
    }

    ServerPlan svnserveBySASL() const {
        ServerPlan plan = svnserve(svnserveWithSASL);
        write(directory_ / "svn.conf", saslSettings);
        const std::string makeUser = filled("printf %s '$PASSWORD' | saslpasswd2 -c -p -u quen "
                                            "-f '$DIRECTORY/sasldb' $USER");
        runOrThrow(sandbox_, {"sh", "-c", makeUser});
        plan.command.insert(plan.command.begin(), {"env", filled("SASL_CONF_PATH=$DIRECTORY")});
        return plan;
    }

    ServerPlan httpsd() const {
        runOrThrow(sandbox_,
                   {"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2",
                    "-subj", "/CN=quen-test", "-addext", filled("subjectAltName=IP:$ADDRESS"),
                    "-keyout", filled("$DIRECTORY/key.pem"), "-out",
                    filled("$DIRECTORY/certificate.pem")});
        std::string settings(basicSettings);
        settings.append(tlsSettings);
        ServerPlan plan = httpd(settings);
        plan.url.replace(0, 4, "https");
        plan.realm.replace(0, 5, "<https");
        return plan;
    }

    ServerPlan httpd(const std::string& settings) const {
        write(directory_ / "users", settings == digestSettings ? digestUsers : httpdUsers);
        write(directory_ / "httpd.conf",
              httpdSettings + settings + (isRoot() ? "User #$NOBODY\nGroup #$NOBODY\n" : ""));
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
            {"$DIGEST", "ac006c9b0192b95852b5ed2223e8b74f"},
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
    case ServerKind::svnserve: return planner.svnserve(svnserveOpen);
    case ServerKind::svnserveWithPassword: return planner.svnserve(svnserveClosed);
    case ServerKind::svnserveWithSASL: return planner.svnserveBySASL();
    case ServerKind::svnserveOpenToRead: return planner.svnserve(svnserveOpenToRead);
    case ServerKind::httpd: return planner.httpd(basicSettings);
    case ServerKind::httpdWithDigest: return planner.httpd(digestSettings);
    case ServerKind::httpdOpenToRead: return planner.httpd(openToReadSettings);
    case ServerKind::httpsd: return planner.httpsd();
    case ServerKind::sshd: return planner.sshd();
    }
    return {{}, sandbox.url(), "", {}};
}

} // namespace quen::test
