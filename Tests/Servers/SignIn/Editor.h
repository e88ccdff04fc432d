#pragma once

#include "Tests/Server/RunningServer.h"
#include "Tests/Servers/Server.h"

#include <deque>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace quen::test {

/// An editor with somebody in front of it: the real `quen serve`, whose questions are answered as a
/// test says.
class Editor {
public:
    /// The answer to a question, which is a whole message.
    using Answer = std::function<Json(const Json& question)>;

    /// `variables` are added to those that the server's repository needs.
    Editor(const Sandbox& sandbox, const Server& server, const Sandbox::Words& variables = {});

    /// One for each question, in order; null when there are none left.
    void willAnswer(Answer answer) { answers_.push_back(std::move(answer)); }
    void forgetAnswers() { answers_.clear(); }
    /// The questions so far, whole messages.
    const std::vector<Json>& asked() const { return asked_; }
    std::size_t asked(const std::string& method) const;

    RunningServer& server() { return server_; }
    /// Answers questions until the answer to the request has come; the whole message.
    Json answerOf(int id);
    /// The result of a request, or its error.
    Json ask(const std::string& method, const Json& params);
    /// The next question, left unanswered; null when none comes.
    Json nextQuestion();
    void reply(const Json& question, const Json& result) const;

    /// Everything that the server has said, in one text.
    std::string said() const;

private:
    bool isNewQuestion(const Json& message) const;

    RunningServer server_;
    std::deque<Answer> answers_;
    std::vector<Json> asked_;
    std::set<std::int64_t> seen_;
};

/// Answers of a person to `credentials/get`, `certificate/confirm` and `ssh/ask`.
Editor::Answer signInAs(const std::string& user, const std::string& password,
                        const std::string& keep = "process");
Editor::Answer says(Json result);

} // namespace quen::test
