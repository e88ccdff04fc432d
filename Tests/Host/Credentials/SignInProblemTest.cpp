#include "Host/Credentials/SignInProblem.h"
#include "Host/Credentials/SignInRunner.h"

#include <gtest/gtest.h>

namespace quen::test {

namespace {

struct Case {
    std::string name;
    std::string complaint;
    SignInProblem problem;
};

class SignInProblemTest : public ::testing::TestWithParam<Case> {};

TEST_P(SignInProblemTest, IsReadFromTheComplaint) {
    EXPECT_EQ(signInProblemOf(GetParam().complaint), GetParam().problem);
}

const std::string unable = "svn: E170013: Unable to connect to a repository at URL 'svn://h/r'\n";

INSTANTIATE_TEST_SUITE_P(
    Of, SignInProblemTest,
    ::testing::Values(
        Case{"Nothing", "", SignInProblem::none},
        Case{"SvnserveNoPassword", unable + "svn: E170001: Can't get username or password\n",
             SignInProblem::noPassword},
        Case{"SvnserveWrongPassword",
             unable + "svn: E170001: Authentication error from server: Password incorrect\n",
             SignInProblem::wrongPassword},
        Case{"SvnserveUnknownUser",
             unable + "svn: E170001: Authentication error from server: Username not found\n",
             SignInProblem::wrongPassword},
        Case{"SvnserveRules", unable + "svn: E170001: Authorization failed\n",
             SignInProblem::noPermission},
        Case{"Httpd",
             unable + "svn: E215004: No more credentials or we tried too many times.\n"
                      "Authentication failed\n",
             SignInProblem::noPassword},
        Case{"HttpdInTheMiddle",
             "svn: E215004: Authentication failed and interactive prompting is disabled; see the "
             "--force-interactive option\n",
             SignInProblem::noPassword},
        Case{"External",
             "svn: warning: W170001: Can't get username or password\nsvn: E205011: Failure "
             "occurred processing one or more external definitions\n",
             SignInProblem::noPassword},
        Case{"ExternalThatSaysNothing",
             "svn: warning: W205011: Error handling externals definition for 'c/ext':\n"
             "svn: warning: W170013: Unable to connect to a repository at URL 'http://h/r'\n"
             "svn: E205011: Failure occurred processing one or more externals definitions\n",
             SignInProblem::external},
        Case{"Forbidden", "svn: E175013: Access to '/r/a' forbidden\n",
             SignInProblem::noPermission},
        Case{"RulesOfTheRepository", "svn: E220004: Access denied\n", SignInProblem::noPermission},
        Case{"Certificate",
             unable + "svn: E230001: Server SSL certificate verification failed: issuer is not "
                      "trusted\n",
             SignInProblem::certificate},
        Case{"SecureShell",
             unable + "svn: E210002: To better debug SSH connection problems, remove the -q option "
                      "from 'ssh' in the [tunnels] section of your Subversion configuration "
                      "file.\nsvn: E210002: Network connection closed unexpectedly\n",
             SignInProblem::secureShell},
        Case{"HangUp", "svn: E210002: Network connection closed unexpectedly\n",
             SignInProblem::none},
        Case{"Refused", unable + "svn: E000111: Connection refused\n", SignInProblem::unreachable},
        Case{"UnknownHost", unable + "svn: E670002: Unknown hostname 'h'\n",
             SignInProblem::unreachable},
        Case{"NoWorkingCopy", "svn: E155007: '/a' is not a working copy\n", SignInProblem::none}),
    [](const auto& each) { return each.param.name; });

struct ShellCase {
    const char* words;
    SignInProblem problem;
};

TEST(SignInProblemTest, IsReadFromTheSecureShellsWords) {
    for (const ShellCase& each :
         {ShellCase{"", SignInProblem::secureShell},
          ShellCase{"@@@\n@ WARNING: REMOTE HOST IDENTIFICATION HAS CHANGED! @\n@@@\nHost key "
                    "verification failed.\r\n",
                    SignInProblem::hostKeyChanged},
          ShellCase{"Host key verification failed.\r\n", SignInProblem::hostKeyUnknown},
          ShellCase{"alice@h: Permission denied (publickey).\r\n", SignInProblem::keyRefused},
          ShellCase{"ssh: Could not resolve hostname h: Name or service not known\r\n",
                    SignInProblem::unreachable},
          ShellCase{"ssh: connect to host h port 22: Connection refused\r\n",
                    SignInProblem::unreachable}}) {
        EXPECT_EQ(secureShellProblemOf(each.words), each.problem) << each.words;
    }
}

TEST(SignInProblemTest, NamesThePlace) {
    EXPECT_EQ(urlInComplaint(unable + "svn: E170001: x\n"), "svn://h/r");
    EXPECT_EQ(urlInComplaint("svn: E170013: Unable to connect to a repository at URL "
                             "'http://h/it's'\n"),
              "http://h/it's");
    EXPECT_EQ(urlInComplaint("svn: E170001: x\n"), "");
    EXPECT_EQ(serverOf("https://host:443/repository/trunk"), "https://host:443");
    EXPECT_EQ(serverOf("svn://host"), "svn://host");
    EXPECT_EQ(serverOf("/home/a"), "");
}

struct RealmCase {
    const char* realm;
    const char* url;
    bool isOfServer;
};

TEST(SignInProblemTest, TellsWhoseRealmItIs) {
    const std::string long_ = "<svn://h:3690> " + std::string(5000, 'x');
    for (const RealmCase& each :
         {RealmCase{"<svn://h:3690> quen", "svn://h/r", true},
          RealmCase{"<svn://h:3690> quen", "svn://h:3690/r", true},
          RealmCase{"<https://h:443> a > b", "https://H/r", true},
          RealmCase{"<http://[::1]:80> quen", "http://[::1]/r", true},
          RealmCase{"<svn://h:3690> quen", "svn://alice@h/r", true},
          RealmCase{"<svn://h:3690>", "svn://h/r", true},
          RealmCase{"<svn://other:3690> quen", "svn://h/r", false},
          RealmCase{"<svn://h.other:3690> quen", "svn://h/r", false},
          RealmCase{"<svn://h:36901> quen", "svn://h:3690/r", false},
          RealmCase{"<http://h:80> quen", "svn://h/r", false},
          RealmCase{"quen", "svn://h/r", false}, RealmCase{"", "svn://h/r", false},
          RealmCase{"<svn://h:3690> quen", "", false},
          RealmCase{long_.c_str(), "svn://h/r", false}}) {
        EXPECT_EQ(isRealmOf(each.realm, each.url), each.isOfServer)
            << std::string(each.realm).substr(0, 80) << " of " << each.url;
    }
}

TEST(SignInProblemTest, NeverComesFromCommandsThatStayHere) {
    for (const StringArray& local : {StringArray{"status", "--xml", "."}, StringArray{"add", "a"},
                                     StringArray{"revert", "a"}, StringArray{}}) {
        EXPECT_FALSE(mayNeedServer(local));
    }
    for (const StringArray& remote :
         {StringArray{"status", "-u", "."}, StringArray{"info", "a"},
          StringArray{"status", "--show-updates"}, StringArray{"commit", "-m", "add"}}) {
        EXPECT_TRUE(mayNeedServer(remote));
    }
}

} // namespace

} // namespace quen::test
