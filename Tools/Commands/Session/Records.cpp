#include "Tools/Commands/Session/Records.h"

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Terminal/Times.h"

#include <filesystem>
#include <system_error>

namespace quen::tools {

std::string shownText(const Dictionary& record, const String& key) {
    return printable(record[key].stringValue().view());
}

std::string shownPath(std::string_view path) {
    std::error_code error;
    const std::filesystem::path here = std::filesystem::current_path(error);
    const std::string relative = std::filesystem::path(path).lexically_relative(here).string();
    return printable(relative.empty() || relative.starts_with("..") ? path : relative);
}

std::string changeLine(const Dictionary& record, const Palette& palette, Date now) {
    const std::string author = shownText(record, QuenSourceControlOperationAuthorKey);
    std::string line = palette.paint(
        Style::warning, "r" + shownText(record, QuenSourceControlOperationRevisionKey));
    line += "  " + palette.paint(Style::heading, author.empty() ? "(no author)" : author);
    if (const Date* const date = record[QuenSourceControlOperationDateKey].date()) {
        line += "  " + ageText(*date, now) +
                palette.paint(Style::faint, " (" + localDateText(*date) + ")");
    }
    return line;
}

} // namespace quen::tools
