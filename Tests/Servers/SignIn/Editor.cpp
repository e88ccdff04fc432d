#include "Tests/Servers/SignIn/Editor.h"

#include "Tools/Server/Wire/Message.h"

#include <algorithm>
#include <utility>

namespace quen::test {

namespace {

Sandbox::Words all(const Server& server, const Sandbox::Words& more) {
    Sandbox::Words variables = server.variables();
    variables.insert(variables.end(), more.begin(), more.end());
    return variables;
}

} // namespace

Editor::Editor(const Sandbox& sandbox, const Server& server, const Sandbox::Words& variables)
    : server_(sandbox, {"--log-level", "4"}, all(server, variables)) {
    server_.initialize();
}

bool Editor::isNewQuestion(const Json& message) const {
    return message.contains("method") && message.contains("id") &&
           !seen_.contains(message.at("id").get<std::int64_t>());
}

std::size_t Editor::asked(const std::string& method) const {
    return static_cast<std::size_t>(
        std::count_if(asked_.begin(), asked_.end(),
                      [&](const Json& question) { return question.at("method") == method; }));
}

Json Editor::nextQuestion() {
    const auto question =
        server_.client().waitFor([this](const Json& message) { return isNewQuestion(message); });
    if (!question) {
        return nullptr;
    }
    seen_.insert(question->at("id").get<std::int64_t>());
    asked_.push_back(*question);
    return *question;
}

void Editor::reply(const Json& question, const Json& result) const {
    server_.sendRaw(tools::server::framed(
        Json{{"jsonrpc", "2.0"}, {"id", question.at("id")}, {"result", result}}.dump()));
}

Json Editor::answerOf(int id) {
    for (;;) {
        const auto message = server_.client().waitFor([&](const Json& each) {
            return isNewQuestion(each) || (!each.contains("method") && each.at("id") == id);
        });
        if (!message || !message->contains("method")) {
            return message.value_or(nullptr);
        }
        const Json question = nextQuestion();
        Answer answer = says(nullptr);
        if (!answers_.empty()) {
            answer = std::move(answers_.front());
            answers_.pop_front();
        }
        reply(question, answer(question));
    }
}

Json Editor::ask(const std::string& method, const Json& params) {
    const Json whole = answerOf(server_.start(method, params));
    if (whole.is_null()) {
        return "no answer";
    }
    return whole.contains("result") ? whole.at("result") : whole.at("error");
}

std::string Editor::said() const {
    std::string text;
    for (const Json& message : server_.client().messages()) {
        text += message.dump() + "\n";
    }
    return text;
}

Editor::Answer signInAs(const std::string& user, const std::string& password,
                        const std::string& keep) {
    return [=](const Json& /*question*/) {
        return Json{{"user", user}, {"password", password}, {"keep", keep}};
    };
}

Editor::Answer says(Json result) {
    return [result = std::move(result)](const Json& /*question*/) { return result; };
}

} // namespace quen::test
