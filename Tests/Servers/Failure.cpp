#include "Tests/Servers/Failure.h"

#include <gmock/gmock.h>

namespace quen::test {

Failure takenForRefused() {
    return {-21,
            {},
            "QuenSourceControlAuthenticationCredentialsIncorrect",
            "the name or password was incorrect"};
}

void expectError(const Json& answer, const Failure& failure) {
    const Json& error = answer.at("error");
    ASSERT_FALSE(error.is_null()) << answer.dump(1);
    const Json& info = error.at("userInfo");
    const bool isKnown = failure.numbers.is_null();
    EXPECT_EQ(error.at("domain"),
              isKnown ? "QuenSourceControlErrorDomain" : "QuenSourceControlTaskErrorDomain");
    EXPECT_EQ(error.at("code"), failure.code);
    EXPECT_EQ(info.value("QuenSourceControlTaskErrorCodesKey", Json()), failure.numbers);
    EXPECT_EQ(info.value("QuenSourceControlAuthenticationErrorTypeKey", ""),
              failure.authenticationType);
    EXPECT_THAT(info.at("NSLocalizedDescriptionKey").get<std::string>(),
                ::testing::HasSubstr(failure.text));
}

void expectLostReply(const Json& answer, const std::vector<std::int64_t>& numbers) {
    const Json& error = answer.at("error");
    ASSERT_FALSE(error.is_null()) << answer.dump(1);
    EXPECT_EQ(error.at("domain"), "QuenSourceControlTaskErrorDomain");
    EXPECT_THAT(numbers, ::testing::Contains(error.at("code").get<std::int64_t>()))
        << answer.dump(1);
    EXPECT_FALSE(error.at("userInfo").contains("QuenSourceControlAuthenticationErrorTypeKey"));
}

} // namespace quen::test
