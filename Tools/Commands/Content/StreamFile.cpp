#include "Tools/Commands/Content/StreamFile.h"

#include "Foundation/PegPath.h"
#include "Host/ClientCommand.h"
#include "Host/ClientRunner.h"
#include "Host/Places/Locations.h"
#include "Host/StreamingRunner.h"
#include "Tools/Commands/Session/ErrorFacts.h"
#include "Tools/Commands/Session/HostQueries.h"

#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

std::vector<std::string> wordsFor(const SourceTree& source, const FileToFetch& file) {
    std::vector<std::string> words = userOption(source);
    words.emplace_back("cat");
    if (!file.revision.empty()) {
        words.insert(words.end(), {"-r", file.revision});
    }
    const String place = file.pegs ? withPeg(clientPath(file.location), file.revision)
                                   : closedClientPath(file.location);
    words.push_back(place.str());
    return words;
}

bool saysDirectory(const Error& error) {
    constexpr std::int64_t isDirectory = 195007; // the client's own number
    return ErrorFacts::of(error, nullptr).has({isDirectory});
}

} // namespace

StreamedFile streamFile(const SourceTree& source, const FileToFetch& file) {
    StreamedFile streamed;
    const auto take = [&](std::string_view piece) {
        streamed.hasBegun = true;
        return std::cout.write(piece.data(), static_cast<std::streamsize>(piece.size())).good();
    };
    const RunContext context = RunContext::current();
    const auto runner = std::make_shared<StreamingRunner>(
        context, ClientRunner::Options{.endsWithHost = true}, take, "");
    const RunContext::Scope scope(runner->contextFor(context));
    const auto command = ClientCommand::make(wordsFor(source, file), {});
    runHostQuery(*command);
    if (command->error() && !runner->hadEnough()) {
        streamed.failed = command;
        streamed.isDirectory = saysDirectory(command->error());
    }
    return streamed;
}

} // namespace quen::tools
