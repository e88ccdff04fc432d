#include "Tests/Servers/Failure.h"
#include "Tests/Servers/Passage.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <random>

namespace quen::test {

namespace {

constexpr std::size_t whole = 2 * 1024 * 1024;
constexpr unsigned pieces = 20;

/// Text that no transport makes shorter by much.
std::string noise(std::size_t size, unsigned seed) {
    std::minstd_rand numbers(seed);
    std::string text(size, '\n');
    for (char& letter : text) {
        letter = static_cast<char>('0' + numbers() % 75);
    }
    return text;
}

/// A request whose answer is twice as long as what the server gets to say.
struct Loss {
    std::string name;
    ServerKind kind;
    RequestType type;
};

std::ostream& operator<<(std::ostream& out, const Loss& loss) {
    return out << loss.name;
}

class LostServer : public ::testing::TestWithParam<Loss> {
protected:
    LostServer() : journey_(GetParam().kind) {
        const Sandbox& sandbox = journey_.sandbox();
        for (unsigned n = 1; n <= pieces; ++n) {
            sandbox.write("file" + std::to_string(n), noise(whole / pieces, n));
        }
        sandbox.write("large", noise(whole, 0));
        sandbox.write(journey_.place("message"), noise(whole, 0));
        sandbox.svn({"add", "--quiet", "--force", "."});
        sandbox.svn({"commit", "--quiet", "-F", journey_.place("message").string()});
    }

    Json request() const {
        switch (GetParam().type) {
        case RequestTypeCheckout:
            return {{"files", {journey_.server().url("trunk")}},
                    {"destination", destination().string()}};
        case RequestTypeExportFile: return {{"files", {journey_.server().url("trunk/large")}}};
        default: return {{"files", {journey_.server().url("trunk")}}};
        }
    }

    /// What has come of the working copy is answered. The client leaves it locked, with steps that
    /// it had noted down and not taken; a cleanup takes them, and an update brings the rest.
    void expectCheckoutCanGoOn(const Json& result) const {
        EXPECT_EQ(Journey::column(result, "Path"),
                  Json::array({{{"MarlFilePath", destination().string()}}}));
        const auto client = [&](const Sandbox::Words& words) {
            const Ran ran = journey_.sandbox().run(words, destination());
            EXPECT_EQ(ran.status, 0) << ran.err;
            return ran.out;
        };
        EXPECT_FALSE(std::filesystem::exists(destination() / "large"));
        EXPECT_EQ(client({"svn", "status"}), "! L     .\n");
        client({"svn", "cleanup"});
        client({"svn", "relocate", journey_.sandbox().url("trunk")});
        client({"svn", "update", "--quiet"});
        EXPECT_EQ(journey_.sandbox().read(destination() / "large"), noise(whole, 0));
        EXPECT_EQ(client({"svnversion"}), "2\n");
    }

    std::filesystem::path destination() const { return journey_.place("copy"); }

    Journey journey_;
};

TEST_P(LostServer, EndsTheRequestWithAnError) {
    const Passage passage(journey_.server().place(), whole / 2, [&] { journey_.server().stop(); });
    journey_.server().reachThrough(passage.place());

    const Json answer = journey_.serve(request(), GetParam().type, journey_.repository());

    EXPECT_TRUE(passage.isClosed());
    if (GetParam().kind == ServerKind::httpd) {
        // Reset; refused, when the client tries again; cut, by the transport's rules or by XML's.
        expectLostReply(answer, {104, 111, 120106, 120108, 175009});
    } else {
        expectError(answer, takenForRefused());
    }
    if (GetParam().type == RequestTypeCheckout) {
        expectCheckoutCanGoOn(answer.at("result"));
    } else {
        EXPECT_EQ(answer.at("result"), nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(
    InTheMiddle, LostServer,
    ::testing::Values(Loss{"svnserveCheckout", ServerKind::svnserve, RequestTypeCheckout},
                      Loss{"svnserveExport", ServerKind::svnserve, RequestTypeExportFile},
                      Loss{"svnserveLog", ServerKind::svnserve, RequestTypeLog},
                      Loss{"httpdCheckout", ServerKind::httpd, RequestTypeCheckout},
                      Loss{"httpdExport", ServerKind::httpd, RequestTypeExportFile},
                      Loss{"httpdLog", ServerKind::httpd, RequestTypeLog},
                      Loss{"sshdCheckout", ServerKind::sshd, RequestTypeCheckout},
                      Loss{"sshdExport", ServerKind::sshd, RequestTypeExportFile},
                      Loss{"sshdLog", ServerKind::sshd, RequestTypeLog}),
    ::testing::PrintToStringParamName());

} // namespace

} // namespace quen::test
