#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Session/ErrorAdvice.h"
#include "Tools/Commands/Session/ErrorTexts.h"

#include <gmock/gmock.h>

namespace quen::test {

using namespace tools;

namespace {

using testing::ElementsAre;

Error errorOf(const char* description, const Value& underlying = Value(),
              const char* suggestion = nullptr) {
    return {QuenSourceControlErrorDomain,
            -1,
            {{NSLocalizedDescriptionKey, String(description)},
             {NSLocalizedRecoverySuggestionErrorKey, String(suggestion)},
             {QuenSourceControlUnderlyingErrorsKey, underlying}}};
}

TEST(LinesOfError, AreTheDescriptionAndTheSuggestion) {
    EXPECT_THAT(linesOfError(errorOf("It broke.", Value(), "Try again.")),
                ElementsAre("It broke.", "Try again."));
}

TEST(LinesOfError, TellOfEveryErrorBehindIt) {
    const Error first = errorOf("One broke.", errorOf("The disk is full."), "Try again.");
    const Error second = errorOf("Two broke.", Array{errorOf("No such file.")}, "Try again.");

    EXPECT_THAT(linesOfError(errorOf(nullptr, Array{first, second})),
                ElementsAre("One broke.", "Try again.", "Two broke.", "The disk is full.",
                            "No such file."));
}

TEST(LinesOfError, NameAnErrorThatSaysNothing) {
    EXPECT_THAT(linesOfError({QuenSourceControlErrorDomain, -11}),
                ElementsAre(Error(QuenSourceControlErrorDomain, -11).description().str()));
}

/// The numbers of a server that cannot be reached come with a refused password too.
TEST(LinesForPerson, KeepToTheNextStepOfSigningIn) {
    const Error refused{
        QuenSourceControlTaskErrorDomain,
        170013,
        {{NSLocalizedDescriptionKey, String("Unable to connect")},
         {NSLocalizedRecoverySuggestionErrorKey, String("Check the password.")},
         {QuenSourceControlTaskErrorCodesKey, Array{std::int64_t{170013}, std::int64_t{170001}}}}};
    Dictionary userInfo = refused.userInfo();
    userInfo.set(QuenSourceControlSignInFailureKey,
                 static_cast<std::int64_t>(TaskFailure::wrongPassword));
    std::string advice;

    EXPECT_EQ(linesForPerson(refused, nullptr, advice).back(), advice);
    EXPECT_THAT(advice, testing::StartsWith("Check the spelling of the URL"));

    EXPECT_THAT(linesForPerson({refused.domain(), refused.code(), userInfo}, nullptr, advice),
                ElementsAre("Unable to connect", "Check the password."));
    EXPECT_EQ(advice, "Check the password.");
}

TEST(UnderlyingErrors, AreFollowedHoweverDeepTheyLie) {
    Error error = errorOf("the first");
    for (int i = 0; i < 1000; ++i) {
        error = errorOf("another", error);
    }

    const auto errors = withUnderlyingErrors(error);

    ASSERT_EQ(errors.size(), 1001U);
    EXPECT_EQ(errors.back(), errorOf("the first"));
}

} // namespace

} // namespace quen::test
