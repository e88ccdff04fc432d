#include "Host/Credentials/ClientPrompts.h"

#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::ElementsAre;

constexpr std::string_view certificateQuestion =
    "Error validating server certificate for 'https://127.0.0.1:443':\n"
    " - The certificate is not issued by a trusted authority. Use the\n"
    "   fingerprint to validate the certificate manually!\n"
    " - The certificate hostname does not match.\n"
    "Certificate information:\n"
    " - Hostname: quen-test\n"
    " - Valid: from Nov 21 20:32:47 2026 GMT until Dec 21 20:32:47 2026 GMT\n"
    " - Issuer: Team, Example (root@example.org)\n"
    " - Fingerprint: 4E:BF:55:16\n"
    "(R)eject, accept (t)emporarily or accept (p)ermanently? ";

constexpr std::string_view passwordQuestion =
    "Authentication realm: <svn://127.0.0.1:3690> a 'team' of ours\nPassword for 'alice': ";

TEST(ClientPromptsTest, TellWhoIsAskedForAPassword) {
    const auto prompt = promptIn(passwordQuestion);
    ASSERT_TRUE(prompt);
    EXPECT_EQ(prompt->kind, ClientPrompt::Kind::password);
    EXPECT_EQ(prompt->realm, "<svn://127.0.0.1:3690> a 'team' of ours");
    EXPECT_EQ(prompt->user, "alice");
}

TEST(ClientPromptsTest, KnowTheQuestionForAName) {
    const auto prompt = promptIn("Authentication realm: <http://host:80> x\nUsername: ");
    ASSERT_TRUE(prompt);
    EXPECT_EQ(prompt->realm, "<http://host:80> x");
    EXPECT_TRUE(prompt->user.isNil());
}

TEST(ClientPromptsTest, TakeTheLastRealmWhereTheClientAsksAgain) {
    const auto prompt = promptIn("Authentication realm: <a> one\nPassword for 'x': \n"
                                 "Authentication realm: <b> two\nPassword for 'y': ");
    ASSERT_TRUE(prompt);
    EXPECT_EQ(prompt->realm, "<b> two");
    EXPECT_EQ(prompt->user, "y");
}

TEST(ClientPromptsTest, TakeNoRealmOutOfARealm) {
    const auto within = promptIn("Authentication realm: <svn://evil:3690> x Authentication realm: "
                                 "<svn://good:3690> quen\nPassword for 'alice': ");
    ASSERT_TRUE(within);
    EXPECT_EQ(within->realm, "<svn://evil:3690> x Authentication realm: <svn://good:3690> quen");
    EXPECT_FALSE(promptIn("Authentication realm: <svn://evil:3690> x\nfor the second time\n"
                          "Password for 'alice': "));
    EXPECT_FALSE(promptIn("Password for 'alice': "));
}

TEST(ClientPromptsTest, TellWhatACertificateSays) {
    const auto prompt = promptIn(certificateQuestion);
    ASSERT_TRUE(prompt);
    EXPECT_EQ(prompt->kind, ClientPrompt::Kind::certificate);
    EXPECT_EQ(prompt->certificate.hostname, "quen-test");
    EXPECT_EQ(prompt->certificate.validity,
              "from Nov 21 20:32:47 2026 GMT until Dec 21 20:32:47 2026 GMT");
    EXPECT_EQ(prompt->certificate.issuer, "Team, Example (root@example.org)");
    EXPECT_EQ(prompt->certificate.fingerprint, "4E:BF:55:16");
    EXPECT_THAT(prompt->certificate.failures,
                ElementsAre("The certificate is not issued by a trusted authority. Use the "
                            "fingerprint to validate the certificate manually!",
                            "The certificate hostname does not match."));
    EXPECT_TRUE(prompt->canBeKept);
}

TEST(ClientPromptsTest, KnowACertificateThatCannotBeKept) {
    std::string question(certificateQuestion.substr(0, certificateQuestion.rfind('\n') + 1));
    const auto prompt = promptIn(question + "(R)eject or accept (t)emporarily? ");
    ASSERT_TRUE(prompt);
    EXPECT_FALSE(prompt->canBeKept);
}

TEST(ClientPromptsTest, WaitForTheEndOfAQuestion) {
    for (const std::string_view question : {passwordQuestion, certificateQuestion}) {
        for (std::size_t length = 0; length < question.size(); ++length) {
            EXPECT_FALSE(promptIn(question.substr(0, length))) << question.substr(0, length);
        }
        EXPECT_FALSE(promptIn(std::string(question) + "\nsvn: E200015: Caught signal\n"));
    }
}

TEST(ClientPromptsTest, KnowWhatCannotBeAnswered) {
    for (const char* const question :
         {"Authentication realm: https://host:443\nClient certificate filename: ",
          "Authentication realm: https://host:443\nPassphrase for '/home/a/key.p12': "}) {
        const auto prompt = promptIn(question);
        ASSERT_TRUE(prompt) << question;
        EXPECT_EQ(prompt->kind, ClientPrompt::Kind::other);
    }
}

} // namespace

} // namespace quen::test
