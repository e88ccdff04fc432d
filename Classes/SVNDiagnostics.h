#pragma once

#include "Foundation/Format.h"
#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlSourceTree.h"

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace quen {

/// The levels of the log: an error, the description of an error that was met, how long work took.
inline constexpr std::uint32_t levelOfErrors = 1;
inline constexpr std::uint32_t levelOfDescriptions = 2;
inline constexpr std::uint32_t levelOfTimes = 3;

/// Whether a message of that level reaches the host's source-control log now.
bool isLogged(std::uint32_t level);

/// Formats the message and sends it to the host's source-control log; does neither when the level
/// is not logged.
void logAtLevel(std::uint32_t level, std::string_view format,
                std::initializer_list<FormatArgument> arguments);

/// An error of the provider's own domain with a description, and further facts where given.
Error sourceControlError(std::int64_t code, const String& description,
                         const Dictionary& facts = {});

/// Checks what callers should never get wrong, on behalf of one method. A check that fails is
/// reported to the host's assertion handler, and the code goes on as if it had passed.
///
/// Where a line is not given it is the line of the check.
class SVNAssertions {
public:
    using Line = std::uint_least32_t;

    /// `method` in full, as in `-[SVNController operationForRequest:]`; `file` is one of the two
    /// names below.
    SVNAssertions(const void* receiver, std::string_view method, std::string_view file)
        : receiver_(receiver), method_(method), file_(file) {}

    static constexpr std::string_view controllerFile = "Classes/SVNController";
    static constexpr std::string_view operationsFile = "Classes/SVNOperations";

    /// The plain form; `condition` is its text.
    void check(bool holds, std::string_view condition, Line line = __builtin_LINE()) const;

    /// The nil form; `expression` in parentheses, as in `(string)`.
    void checkNotNil(bool isNil, std::string_view expression, Line line = __builtin_LINE()) const;

    /// The instance form: the tree called `name` must be a repository. Two checks, in this order:
    /// that it is not null, that it is of the class.
    void checkIsRepository(const QuenSourceControlSourceTreePtr& tree, std::string_view name,
                           Line line) const;

    /// The text form: the string called `name` must hold something. Two checks, in this order: that
    /// it is not nil, that it is not empty. (Between the two the form has a third, that the object
    /// is a string at all; here it cannot be anything else.)
    void checkNonEmptyString(const String& string, std::string_view name, Line line) const;

    /// The form of a place that is never reached.
    void unreachable(Line line = __builtin_LINE()) const;

    /// Any form: reports a failure whatever the cause. `arguments` fill the format and end in the
    /// text of the condition.
    void fail(std::string_view format, std::vector<String> arguments, Line line) const;

private:
    const void* receiver_;
    std::string_view method_;
    std::string_view file_;
};

} // namespace quen
