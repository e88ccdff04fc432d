#include "Classes/SVNOperations/SVNArguments.h"

#include "Classes/SVNOperations/SVNOperation.h"
#include "Foundation/PathComponents.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <string>

namespace quen {

namespace {

std::string textOf(const Value& value);

std::string textOf(const Dictionary::Entry& entry) {
    return entry.key.str() + " = " + textOf(entry.value);
}

/// The elements between brackets, with a comma and a blank between them.
template <typename Sequence>
std::string listed(const Sequence& sequence, char opening, char closing) {
    std::string text(1, opening);
    for (const auto& element : sequence) {
        text += text.size() > 1 ? ", " : "";
        text += textOf(element);
    }
    return text + closing;
}

std::string textOf(const Value& value) {
    if (const Date* date = value.date()) {
        return dateText(*date);
    }
    if (const FilePathValue* path = value.filePath()) {
        return (*path)->pathString().str();
    }
    if (const Error* error = value.error()) {
        return error->description().str();
    }
    if (const Array* array = value.array()) {
        return listed(*array, '(', ')');
    }
    if (const Dictionary* dictionary = value.dictionary()) {
        return listed(*dictionary, '{', '}');
    }
    return value.stringValue().str();
}

} // namespace

std::size_t fileCountOf(const QuenSourceControlRequest& request) {
    return request.files() ? request.files()->size() : 0;
}

bool hasOption(const QuenSourceControlRequest& request, const String& key) {
    return !request.options()[key].isNothing();
}

String optionText(const QuenSourceControlRequest& request, const String& key) {
    const Value& value = request.options()[key];
    return value.isNothing() ? String() : String(textOf(value));
}

void appendPiece(StringArray& command, const String& piece) {
    if (!piece.isNil()) {
        command.push_back(piece);
    }
}

void appendMessageIfGiven(StringArray& command, const QuenSourceControlRequest& request) {
    if (hasOption(request, QuenSourceControlRequestOptionMessage)) {
        appendRequiredMessage(command, request);
    }
}

void appendRequiredMessage(StringArray& command, const QuenSourceControlRequest& request) {
    command.emplace_back("-m");
    appendPiece(command, optionText(request, QuenSourceControlRequestOptionMessage));
}

String parentOfFirstFile(const QuenSourceControlRequest& request) {
    const String file = firstFileOf(request);
    return file.isNil() ? String() : String(deletingLastPathComponent(file.view()));
}

} // namespace quen
