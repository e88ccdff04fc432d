#include "Host/Credentials/CredentialKeeper.h"
#include "Host/Credentials/HeldOutput.h"

#include <future>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::ElementsAre;

KeptPassword passwordOf(const std::string& realm, const std::string& user,
                        const std::string& text = "x") {
    return {.realm = realm, .user = user, .secret = std::make_shared<const Secret>(text)};
}

std::vector<std::string> usersIn(const SignInFacts& facts) {
    std::vector<std::string> users;
    for (const KeptPassword& password : facts.passwords) {
        users.push_back(password.user);
    }
    return users;
}

TEST(CredentialKeeperTest, GivesOnePasswordForEachRealm) {
    CredentialKeeper keeper;
    keeper.keep(passwordOf("a", "alice"));
    keeper.keep(passwordOf("b", "carol"));
    keeper.keep(passwordOf("a", "bob"));
    EXPECT_THAT(usersIn(keeper.snapshot("").facts), ElementsAre("bob", "carol"));
    EXPECT_THAT(usersIn(keeper.snapshot("alice").facts), ElementsAre("alice"));
    EXPECT_THAT(usersIn(keeper.snapshot("mallory").facts), ElementsAre());
}

TEST(CredentialKeeperTest, GivesTheClientNothingOfTheSecureShells) {
    CredentialKeeper keeper;
    KeptPassword passphrase = passwordOf(secureShellRealm("Enter passphrase: "), "");
    passphrase.isOfSecureShell = true;
    keeper.keep(passphrase);
    EXPECT_THAT(usersIn(keeper.snapshot("").facts), ElementsAre());
    EXPECT_TRUE(keeper.secureShellAnswer(secureShellRealm("Enter passphrase: ")));
    EXPECT_FALSE(keeper.secureShellAnswer("Enter passphrase: "));
}

TEST(CredentialKeeperTest, ForgetsNoAnswerThatReplacedTheOneMeant) {
    CredentialKeeper keeper;
    const auto first = keeper.keep(passwordOf("a", "alice"));
    const auto second = keeper.keep(passwordOf("a", "alice"));
    keeper.forget("a", first);
    EXPECT_EQ(keeper.snapshot("").facts.passwords.size(), 1U);
    keeper.forget("a", second);
    EXPECT_TRUE(keeper.snapshot("").facts.isEmpty());
}

TEST(CredentialKeeperTest, RemembersARefusalForWhoBeganBefore) {
    CredentialKeeper keeper;
    const auto before = keeper.number();
    keeper.noteRefusal("a");
    EXPECT_TRUE(keeper.wasRefusedSince("a", before));
    EXPECT_FALSE(keeper.wasRefusedSince("a", keeper.number()));
    EXPECT_FALSE(keeper.wasRefusedSince("b", before));
}

using Turn = CredentialKeeper::Turn;

TEST(CredentialKeeperTest, LetsOneAskAndTheOthersWaitForTheAnswer) {
    CredentialKeeper keeper;
    SignInFacts waited;
    ASSERT_EQ(keeper.takeTurn("a", 0, waited, {}), Turn::mine);
    auto other = std::async(std::launch::async, [&] {
        SignInFacts facts;
        const Turn turn = keeper.takeTurn("a", 0, facts, {});
        return std::pair(turn, usersIn(facts));
    });
    EXPECT_EQ(other.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    keeper.endTurn("a", keeper.noteAnswer(), {{passwordOf("a", "alice")}, {}});
    EXPECT_EQ(other.get(), std::pair(Turn::answered, std::vector<std::string>{"alice"}));
}

TEST(CredentialKeeperTest, PassesTheTurnOnWhereThereWasNoAnswer) {
    CredentialKeeper keeper;
    SignInFacts waited;
    ASSERT_EQ(keeper.takeTurn("a", 0, waited, {}), Turn::mine);
    auto other = std::async(std::launch::async, [&] {
        SignInFacts facts;
        return keeper.takeTurn("a", 0, facts, {});
    });
    keeper.endTurn("a", 0, {});
    EXPECT_EQ(other.get(), Turn::mine);
}

TEST(CredentialKeeperTest, LetsWhoIsStoppedGo) {
    CredentialKeeper keeper;
    SignInFacts waited;
    ASSERT_EQ(keeper.takeTurn("a", 0, waited, {}), Turn::mine);
    std::stop_source stop;
    auto other = std::async(std::launch::async, [&] {
        SignInFacts facts;
        return keeper.takeTurn("a", 0, facts, stop.get_token());
    });
    stop.request_stop();
    EXPECT_EQ(other.get(), Turn::stopped);
    EXPECT_EQ(keeper.takeTurn("b", 0, waited, {}), Turn::mine) << "another realm is free";
}

TEST(HeldOutputTest, DropsTheFirstWordsOfARunThatIsMadeAgain) {
    std::string seen;
    HeldOutput held([&](std::string_view piece) { seen += piece; });
    held.watcher()("<?xml?><log>");
    held.drop();
    held.watcher()("<?xml?><log><entry/></log>");
    EXPECT_EQ(seen, "");
    held.release();
    EXPECT_EQ(seen, "<?xml?><log><entry/></log>");
}

TEST(HeldOutputTest, PassesOnWhatIsMoreThanFirstWords) {
    std::string seen;
    HeldOutput held([&](std::string_view piece) { seen += piece; });
    const std::string piece(400, 'x');
    held.watcher()(piece);
    EXPECT_EQ(seen, "");
    held.watcher()(piece);
    EXPECT_EQ(seen, piece + piece);
    held.watcher()("y");
    EXPECT_EQ(seen, piece + piece + "y");
    EXPECT_FALSE(HeldOutput({}).watcher());
}

} // namespace

} // namespace quen::test
