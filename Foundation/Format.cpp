#include "Foundation/Format.h"

#include <array>
#include <charconv>
#include <string>

namespace quen {

namespace {

struct Placeholder {
    std::size_t length = 0;
    int precision = 6;
};

/// The placeholder at the start of `text`; length 0 where there is none.
Placeholder placeholderAt(std::string_view text) noexcept {
    if (text.starts_with("%@") || text.starts_with("%s")) {
        return {2};
    }
    if (text.starts_with("%ld")) {
        return {3};
    }
    if (text.size() > 3 && text.starts_with("%.") && text[2] >= '0' && text[2] <= '9' &&
        text[3] == 'f') {
        return {4, text[2] - '0'};
    }
    return {};
}

void append(std::string& out, const FormatArgument& argument, int precision) {
    if (const auto* text = std::get_if<String>(&argument)) {
        out += text->isNil() ? std::string_view("(null)") : text->view();
    } else if (const auto* number = std::get_if<std::int64_t>(&argument)) {
        out += std::to_string(*number);
    } else {
        // Not through the C library, which asks the host's locale for the decimal point.
        std::array<char, 400> digits{};
        const auto end =
            std::to_chars(digits.data(), digits.data() + digits.size(), std::get<double>(argument),
                          std::chars_format::fixed, precision);
        out.append(digits.data(), end.ptr);
    }
}

} // namespace

String formatText(std::string_view format, std::span<const FormatArgument> arguments) {
    std::string out;
    while (!format.empty()) {
        const Placeholder placeholder =
            format.front() == '%' && !arguments.empty() ? placeholderAt(format) : Placeholder{};
        if (placeholder.length == 0) {
            out += format.front();
            format.remove_prefix(1);
            continue;
        }
        append(out, arguments.front(), placeholder.precision);
        arguments = arguments.subspan(1);
        format.remove_prefix(placeholder.length);
    }
    return out;
}

String formatText(std::string_view format, std::initializer_list<FormatArgument> arguments) {
    return formatText(format, std::span(arguments.begin(), arguments.size()));
}

} // namespace quen
