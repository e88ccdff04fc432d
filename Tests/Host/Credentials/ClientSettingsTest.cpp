#include "Host/Credentials/ClientSettings.h"

#include <gtest/gtest.h>

namespace quen::test {

namespace {

struct Case {
    std::string name;
    std::string settings;
    std::optional<std::string> stores;
};

class ClientSettingsTest : public ::testing::TestWithParam<Case> {};

TEST_P(ClientSettingsTest, SayWhereTheClientLooksForPasswords) {
    EXPECT_EQ(passwordStoresOf(GetParam().settings), GetParam().stores);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ClientSettingsTest,
    ::testing::Values(
        Case{"Nothing", "", std::nullopt},
        Case{"Comment", "[auth]\n# password-stores = kwallet\n", std::nullopt},
        Case{"Value", "[auth]\npassword-stores = gnome-keyring,kwallet\n", "gnome-keyring,kwallet"},
        Case{"NoValue", "[auth]\npassword-stores =\n", ""},
        Case{"Colon", "[auth]\npassword-stores: kwallet", "kwallet"},
        Case{"OtherCase", "[AUTH]\nPassword-Stores = kwallet\n", "kwallet"},
        Case{"OtherSection", "[helpers]\npassword-stores = kwallet\n", std::nullopt},
        Case{"TwoLines", "[auth]\npassword-stores = kwallet,\n   gpg-agent\n",
             "kwallet, gpg-agent"},
        Case{"LastCounts", "[auth]\npassword-stores = a\n[x]\n[auth]\npassword-stores = b\n", "b"},
        Case{"CarriageReturns", "[auth]\r\npassword-stores = kwallet\r\n", "kwallet"},
        Case{"LongerName", "[auth]\npassword-stores-more = kwallet\n", std::nullopt}),
    [](const auto& each) { return each.param.name; });

TEST(ClientSettingsTest, StayAsTheyAreWhereTheAgentIsAsked) {
    EXPECT_EQ(settingsWithAgent("", ""), std::nullopt);
    EXPECT_EQ(settingsWithAgent("[auth]\npassword-stores = gpg-agent\n", ""), std::nullopt);
    EXPECT_EQ(
        settingsWithAgent("[auth]\npassword-stores = gpg-agent\n", "[auth]\npassword-stores =\n"),
        std::nullopt);
}

TEST(ClientSettingsTest, GetTheAgentWhereItIsNotAsked) {
    const auto storesWith = [](const std::string& settings, const std::string& common) {
        return passwordStoresOf(settingsWithAgent(settings, common).value_or(""));
    };
    EXPECT_EQ(storesWith("[auth]\npassword-stores =\n", ""), "gpg-agent");
    EXPECT_EQ(storesWith("[auth]\npassword-stores = kwallet", ""), "kwallet,gpg-agent");
    EXPECT_EQ(storesWith("", "[auth]\npassword-stores = kwallet\n"), "kwallet,gpg-agent");
    const std::string settings = "[auth]\npassword-stores =\n[tunnels]\nrsh = rsh";
    EXPECT_TRUE(settingsWithAgent(settings, "")->starts_with(settings));
}

} // namespace

} // namespace quen::test
