#include "Host/Credentials/AgentConversation.h"
#include "Host/Credentials/KeptPassword.h"
#include "Host/Credentials/LocalService.h"
#include "Host/Credentials/PersonsAgent.h"
#include "Host/Credentials/PrivateDirectory.h"

#include <array>
#include <cstdlib>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>

namespace quen::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// One side of a conversation, and an agent on the other.
class Client {
public:
    explicit Client(const AgentConversation& agent) {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0) {
            mine_ = FileDescriptor(ends[0]);
            theirs_ = FileDescriptor(ends[1]);
        }
        thread_ = std::thread([this, &agent] {
            agent.hold(theirs_.number());
            theirs_.close();
        });
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() {
        shutdown(mine_.number(), SHUT_RDWR);
        thread_.join();
    }

    void say(const std::string& line) const { writeAll(mine_.number(), line + "\n"); }
    std::string hear() const {
        const auto line = readSecretLine(mine_.number());
        return line ? std::string(line->view()) : "(end)";
    }

private:
    FileDescriptor mine_;
    FileDescriptor theirs_;
    std::thread thread_;
};

const std::string realm = "<svn://host:3690> quen";
const std::string question = "GET_PASSPHRASE --data --no-ask " + entryNameOf(realm) +
                             " X Password+for+'alice+b':+ Enter+your+password";

AgentConversation agentKnowing(const std::string& password, std::vector<std::string> others = {}) {
    return {"/private/agent",
            [password](const AgentQuestion& asked) {
                return asked.entry == entryNameOf(realm) && asked.isAbout("alice b")
                           ? std::make_shared<const Secret>(password)
                           : nullptr;
            },
            std::move(others)};
}

TEST(AgentConversationTest, GoesAsTheClientExpects) {
    const AgentConversation agent = agentKnowing("won+der %\nland");
    const Client client(agent);
    EXPECT_EQ(client.hear(), "OK");
    client.say("GETINFO socket_name");
    EXPECT_EQ(client.hear(), "D /private/agent");
    EXPECT_EQ(client.hear(), "OK");
    client.say("OPTION ttyname=/dev/null");
    EXPECT_EQ(client.hear(), "OK");
    client.say(question);
    EXPECT_EQ(client.hear(), "D won%2Bder%20%25%0Aland");
    EXPECT_EQ(client.hear(), "OK");
    client.say("BYE");
    EXPECT_EQ(client.hear(), "OK");
    EXPECT_EQ(client.hear(), "(end)");
}

TEST(AgentConversationTest, TellsNothingAboutOtherRealmsAndUsers) {
    const AgentConversation agent = agentKnowing("wonder land");
    const Client client(agent);
    EXPECT_EQ(client.hear(), "OK");
    for (const std::string& other :
         {std::string("GET_PASSPHRASE --data --no-ask " + entryNameOf("<svn://evil:1> quen") +
                      " X Password+for+'alice+b':+ x"),
          std::string("GET_PASSPHRASE --data --no-ask " + entryNameOf(realm) +
                      " X Password+for+'mallory':+ x"),
          std::string("GET_PASSPHRASE "), std::string("GET_PASSPHRASE --data")}) {
        client.say(other);
        EXPECT_EQ(client.hear(), "ERR 67108922 No data") << other;
    }
}

TEST(AgentConversationTest, RefusesAPasswordThatTheClientWouldCut) {
    const AgentConversation agent = agentKnowing(std::string(1001, 'x'));
    const Client client(agent);
    EXPECT_EQ(client.hear(), "OK");
    client.say(question);
    EXPECT_EQ(client.hear(), "ERR 67108906 Too long");
}

TEST(AgentConversationTest, PassesOtherQuestionsToThePersonsOwnAgent) {
    const auto directory = PrivateDirectory::make("/tmp");
    ASSERT_NE(directory, nullptr);
    const std::string persons = directory->path("persons");
    const AgentConversation theirs = agentKnowing("theirs");
    const auto service =
        LocalService::start({{persons, [&](int connection) { theirs.hold(connection); }}});
    ASSERT_NE(service, nullptr);
    const AgentConversation ours("/private/agent", [](const AgentQuestion&) { return SecretPtr(); },
                                 {directory->path("nobody"), persons});
    const Client client(ours);
    EXPECT_EQ(client.hear(), "OK");
    client.say(question);
    EXPECT_EQ(client.hear(), "D theirs");
    EXPECT_EQ(client.hear(), "OK");
    client.say("GET_PASSPHRASE --data " + entryNameOf("other") + " X y z");
    EXPECT_EQ(client.hear(), "ERR 67108922 No data");
}

TEST(PersonsAgentTest, IsLookedForWhereTheClientLooks) {
    EXPECT_THAT(socketsOfPersonsAgent("/a/S:12:1", "/home", "/run"), ElementsAre("/a/S"));
    EXPECT_THAT(socketsOfPersonsAgent(nullptr, "/home", "/run"),
                ElementsAre("/run/gnupg/S.gpg-agent", "/home/.gnupg/S.gpg-agent"));
    EXPECT_THAT(socketsOfPersonsAgent("", "", nullptr), IsEmpty());
}

TEST(LocalServiceTest, IsForItsOwnerAlone) {
    const auto directory = PrivateDirectory::make("/tmp");
    ASSERT_NE(directory, nullptr);
    const auto service = LocalService::start({{directory->path("socket"), [](int) {}}});
    ASSERT_NE(service, nullptr);
    struct stat status {};
    ASSERT_EQ(stat(directory->path("socket").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    ASSERT_EQ(stat(directory->path("").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST(PrivateDirectoryTest, IsMadeNowhereThatOthersCanTakeItFrom) {
    unsetenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe): it would be taken first
    const auto outer = PrivateDirectory::make("/tmp");
    ASSERT_NE(outer, nullptr);
    const std::string place = outer->path("place");
    ASSERT_EQ(mkdir(place.c_str(), 0700), 0);
    struct Place {
        mode_t mode;
        bool isTaken;
    };
    for (const Place& each : {Place{0700, true}, Place{0755, true}, Place{01777, true},
                              Place{0777, false}, Place{0770, false}}) {
        ASSERT_EQ(chmod(place.c_str(), each.mode), 0);
        const auto made = PrivateDirectory::make(place);
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(made->path("").starts_with(place), each.isTaken) << std::oct << each.mode;
    }
}

TEST(LocalServiceTest, HangsUpOnWhoeverIsStillThere) {
    const auto directory = PrivateDirectory::make("/tmp");
    ASSERT_NE(directory, nullptr);
    auto service = LocalService::start(
        {{directory->path("socket"), [](int connection) { readSecretLine(connection); }}});
    ASSERT_NE(service, nullptr);
    const FileDescriptor caller(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    directory->path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(connect(caller.number(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    service = nullptr;
    EXPECT_FALSE(readSecretLine(caller.number()));
}

TEST(KeptPasswordTest, IsAnEntryWithoutThePassword) {
    const KeptPassword kept{
        .realm = realm, .user = "alice", .secret = std::make_shared<const Secret>("wonder land")};
    EXPECT_EQ(agentEntry(kept), "K 8\npasstype\nV 9\ngpg-agent\nK 15\nsvn:realmstring\nV 22\n" +
                                    realm + "\nK 8\nusername\nV 5\nalice\nEND\n");
    EXPECT_EQ(entryNameOf("<svn://127.9.9.9:3777> quen"), "8ae96c2d2581a44219ba86df89e32013");
}

} // namespace

} // namespace quen::test
