#include "Host/Embedding/ErrorDescription.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

#include <gtest/gtest.h>
#include <string>

namespace quen::test {
namespace {

Error providerError(std::int64_t code, const Dictionary& facts = Dictionary()) {
    return {QuenSourceControlErrorDomain, code, facts};
}

/// What an ignore or unignore of one file gives whose query failed.
Error failedIgnore(const Error& cause) {
    const Error wrapped = providerError(
        QuenSourceControlErrorNotIgnored,
        {{NSLocalizedDescriptionKey, "An error occurred trying to unignore the file \"a\"."},
         {NSLocalizedRecoverySuggestionErrorKey,
          "Check the file's ignore properties and try again."},
         {QuenSourceControlUnderlyingErrorsKey, cause}});
    return providerError(QuenSourceControlErrorSeveral,
                         {{QuenSourceControlUnderlyingErrorsKey, Array{wrapped}}});
}

struct Case {
    const char* name;
    Error error;
    std::int32_t type;
    const char* text;
};

std::vector<Case> cases() {
    const Error client("QuenSourceControlTaskErrorDomain", 155007,
                       {{NSLocalizedDescriptionKey, "'/w' is not a working copy"}});
    return {
        {"none", Error(), -1, ""},
        {"a text", client, -1, "'/w' is not a working copy"},
        {"text and suggestion",
         providerError(QuenSourceControlErrorBranchesNotFound,
                       {{NSLocalizedDescriptionKey, "No branches."},
                        {NSLocalizedRecoverySuggestionErrorKey, "Check."}}),
         RequestTypeListBranches, "No branches.\nCheck."},
        {"nothing but a number", providerError(-99), -1,
         "Error Domain=QuenSourceControlErrorDomain Code=-99 \"\""},
        {"ignoring", failedIgnore(client), RequestTypeIgnore,
         "An error occurred trying to ignore the file \"a\".\n'/w' is not a working copy\n"
         "Check the file's ignore properties and try again."},
        {"unignoring what is not ignored",
         failedIgnore(providerError(QuenSourceControlErrorNotIgnored)), RequestTypeUnignore,
         "An error occurred trying to unignore the file \"a\".\n"
         "The name is not in the list of ignored names.\n"
         "Check the file's ignore properties and try again."},
    };
}

TEST(ErrorDescription, HasWordsForEveryError) {
    for (const Case& item : cases()) {
        EXPECT_EQ(descriptionOfError(item.error, item.type), item.text) << item.name;
    }
}

TEST(ErrorDescription, AnErrorThatCausesItselfForeverIsToldToADepth) {
    Error error = providerError(-1);
    for (int i = 0; i < 100; ++i) {
        error = providerError(-1, {{QuenSourceControlUnderlyingErrorsKey, error}});
    }
    EXPECT_NE(descriptionOfError(error), "");
}

} // namespace
} // namespace quen::test
