#include "Tools/Commands/Changes/Confirmation.h"

#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Terminal/Question.h"

#include <iostream>

namespace quen::tools {

namespace {

/// No more than a screen holds.
constexpr std::size_t mostShown = 20;

} // namespace

void Confirmation::add(std::string words, std::string item) {
    if (count_++ < mostShown) {
        shown_.add({{"  " + words}, {std::move(item)}});
    }
}

void Confirmation::show(const Session& session) const {
    session.tell(heading_);
    shown_.print(std::cerr, Palette(Palette::Use::never));
    if (count_ > mostShown) {
        std::cerr << "  ... and " << counted(count_ - mostShown, "more item") << '\n';
    }
}

int Confirmation::obtain(const Session& session, bool isSure) const {
    if (isEmpty() || (isSure && !session.options().dryRun)) {
        return ExitSuccess;
    }
    show(session);
    if (session.options().dryRun) {
        return ExitSuccess;
    }
    if (!canAsk()) {
        return session
            .fail("Nothing was done, because nobody can be asked here. Use --yes to go ahead "
                  "without a question.")
            .status;
    }
    return ask(question_) ? ExitSuccess : session.fail("Nothing was done.").status;
}

} // namespace quen::tools
