#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

namespace quen {

/// A nullable URL, kept as the text it was made from. Immutable.
class QUEN_EXPORT URL {
public:
    URL() noexcept = default;

    /// nil when the text is nil or does not follow the URI grammar (RFC 3986, relative references
    /// included): a blank, a bracket in a path, a stray `%` or a character outside ASCII must be
    /// percent-encoded first.
    static URL fromString(const String& text);

    bool isNil() const noexcept { return text_.isNil(); }
    /// The text; nil for nil.
    const String& absoluteString() const noexcept { return text_; }
    /// What stands before the first `:`, as written; nil for a relative reference and for nil.
    String scheme() const;
    /// The scheme is `file`, in any case.
    bool isFileURL() const noexcept;

    friend bool operator==(const URL& a, const URL& b) noexcept = default;

private:
    String text_;
};

} // namespace quen
