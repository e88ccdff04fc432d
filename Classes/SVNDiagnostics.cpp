#include "Classes/SVNDiagnostics.h"

#include "MarlFoundation/MarlAssertionFailureHandler.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlManager.h"

#include <span>
#include <string>
#include <utility>

namespace quen {

namespace {

constexpr std::string_view plainFormat = "Assertion failed: %s";

/// The message inside a method's full name: `-[Class message:with:]`.
std::string_view selectorOf(std::string_view method) noexcept {
    const std::size_t blank = method.find(' ');
    if (blank == std::string_view::npos || !method.ends_with(']')) {
        return method;
    }
    return method.substr(blank + 1, method.size() - blank - 2);
}

} // namespace

bool isLogged(std::uint32_t level) {
    return QuenSourceControlManager::sourceControlLogAspect()->_logLevel.load() >= level;
}

void logAtLevel(std::uint32_t level, std::string_view format,
                std::initializer_list<FormatArgument> arguments) {
    if (isLogged(level)) {
        QuenSourceControlManager::sourceControlLogAspect()->_logAtLogLevel(
            level, format, std::span(arguments.begin(), arguments.size()));
    }
}

Error sourceControlError(std::int64_t code, const String& description, const Dictionary& facts) {
    Dictionary userInfo{{NSLocalizedDescriptionKey, description}};
    for (const auto& fact : facts) {
        userInfo.set(fact.key, fact.value);
    }
    return {QuenSourceControlErrorDomain, code, std::move(userInfo)};
}

void SVNAssertions::fail(std::string_view format, std::vector<String> arguments, Line line) const {
    MarlAssertionFailureHandler({.receiver = receiver_,
                                 .selector = selectorOf(method_),
                                 .method = method_,
                                 .file = file_,
                                 .line = static_cast<int>(line),
                                 .format = format,
                                 .arguments = std::move(arguments)});
}

void SVNAssertions::check(bool holds, std::string_view condition, Line line) const {
    if (!holds) {
        fail(plainFormat, {condition}, line);
    }
}

void SVNAssertions::checkNotNil(bool isNil, std::string_view expression, Line line) const {
    if (isNil) {
        const std::string condition = "(" + std::string(expression) + ") != nil";
        fail("%s should not be nil.", {expression, plainFormat, condition}, line);
    }
}

void SVNAssertions::checkIsRepository(const QuenSourceControlSourceTreePtr& tree,
                                      std::string_view name, Line line) const {
    const String wanted = "QuenSourceControlRepository";
    const std::string object = "(" + std::string(name) + ")";
    if (tree == nullptr) {
        fail("%s should be an instance inheriting from %@, but it is nil",
             {name, wanted, object + " != nil"}, line);
    } else if (dynamic_cast<const QuenSourceControlRepository*>(tree.get()) == nullptr) {
        fail("%s should be an instance inheriting from %@, but it is %@",
             {name, wanted, tree->descriptionForAssertionMessage(),
              "[(id)" + object + " isKindOfClass:[QuenSourceControlRepository class]]"},
             line);
    }
}

void SVNAssertions::checkNonEmptyString(const String& string, std::string_view name,
                                        Line line) const {
    const std::string object = "(" + std::string(name) + ")";
    if (string.isNil()) {
        fail("%s should be a non-empty string, but it is nil", {name, object + " != nil"}, line);
    } else if (string.isEmpty()) {
        fail("%s should be a non-empty string, but it's an empty string",
             {name, "![@\"\" isEqualToString:" + object + "]"}, line);
    }
}

void SVNAssertions::unreachable(Line line) const {
    fail("code which should be unreachable has been reached", {"0"}, line);
}

} // namespace quen
