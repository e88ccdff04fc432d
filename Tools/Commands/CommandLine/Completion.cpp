#include "Tools/Commands/CommandLine/Completion.h"

#include "Tools/Commands/CommandLine/CommandLine.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace quen::tools {

namespace {

using Kind = Completion::Kind;

/// Commands about what has changed here: only such files are worth naming.
constexpr std::array<std::string_view, 4> ofChanges{"commit", "revert", "diff", "resolve"};

Kind kindOfPath(const std::string& command) {
    if (std::find(ofChanges.begin(), ofChanges.end(), command) != ofChanges.end()) {
        return Kind::changedFiles;
    }
    return command == "add" || command == "ignore" ? Kind::unversionedFiles : Kind::files;
}

Kind kindOfValue(const std::string& name, const CommandText& command) {
    if (name == "REV") {
        return Kind::revisions;
    }
    const bool isBranch = name == "BRANCH" || (command.name == "branch delete" && name == "NAME");
    if (isBranch) {
        return Kind::branches;
    }
    const bool isOther = name == "N" || name == "MESSAGE" || name == "NAME" || name == "URL";
    return isOther ? Kind::words : kindOfPath(command.name);
}

/// The words of a command line, read up to the last one.
class Reading {
public:
    explicit Reading(const CommandText& program) : program_(program), command_(&program) {}

    void take(const std::string& word) {
        if (option_ != nullptr) {
            option_ = nullptr;
        } else if (!onlyNames_ && word == "--") {
            onlyNames_ = true;
        } else if (!onlyNames_ && word.starts_with('-')) {
            const OptionText* const option = command_->option(word);
            option_ = option != nullptr && option->takesValue() ? option : nullptr;
        } else if (const CommandText* const next =
                       onlyNames_ || names_ > 0 ? nullptr : command_->find(word)) {
            command_ = next;
        } else {
            ++names_;
        }
    }

    Completion completion(const std::string& last) const {
        if (option_ != nullptr) {
            return valueOf(*option_, last);
        }
        const std::size_t equals = last.find('=');
        if (!onlyNames_ && last.starts_with("--") && equals != std::string::npos) {
            const OptionText* const option = command_->option(last.substr(0, equals));
            return option == nullptr ? Completion() : valueOf(*option, last.substr(equals + 1));
        }
        return !onlyNames_ && last.starts_with('-') ? options(last) : argument(last);
    }

private:
    Completion valueOf(const OptionText& option, const std::string& last) const {
        Completion completion{kindOfValue(option.value, *command_), {}, last};
        for (const std::string& choice : option.choices()) {
            completion.kind = Kind::words;
            completion.candidates.push_back({choice, ""});
        }
        const bool isFile = option.value == "FILE" || option.value == "DIR";
        completion.kind = isFile ? Kind::files : completion.kind;
        return completion;
    }

    Completion options(const std::string& last) const {
        Completion completion{Kind::words, {}, last};
        for (const OptionText& option : command_->options) {
            completion.candidates.push_back(
                {option.longName.empty() ? option.shortName : option.longName, option.help});
        }
        if (command_->name == "quen") {
            completion.candidates.push_back({"--version", "Show versions"});
            completion.candidates.push_back({"-C", "Run as if started in DIR"});
        }
        return completion;
    }

    static void addCommands(const CommandText& command, Completion& completion) {
        for (const CommandText& each : command.commands) {
            if (!each.isHidden) {
                completion.candidates.push_back(
                    {each.name.substr(each.name.rfind(' ') + 1), each.help});
            }
        }
    }

    Completion argument(const std::string& last) const {
        Completion completion{Kind::words, {}, last};
        const auto& arguments = command_->arguments;
        if (names_ == 0) {
            addCommands(*command_, completion);
        }
        if (names_ == 0 && !arguments.empty() && arguments[0].name == "COMMAND") {
            addCommands(program_, completion);
        }
        if (completion.candidates.empty() && !arguments.empty()) {
            const std::size_t index = std::min(names_, arguments.size() - 1);
            const bool isThere = names_ < arguments.size() || arguments.back().isRepeated;
            completion.kind = isThere ? kindOfValue(arguments[index].name, *command_) : Kind::words;
        }
        return completion;
    }

    const CommandText& program_;
    const CommandText* command_;
    const OptionText* option_ = nullptr;
    bool onlyNames_ = false;
    std::size_t names_ = 0;
};

constexpr const char* bashScript = R"script(# Completion of quen for bash.
_quen() {
    local line IFS=$'\n'
    COMPREPLY=()
    for line in $(quen complete words -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null); do
        line=${line%%$'\t'*}
        [[ $line == */ ]] && compopt -o nospace
        COMPREPLY+=("$(printf '%q' "$line")")
    done
    ((${#COMPREPLY[@]})) || compopt -o default
}
complete -F _quen quen
)script";

constexpr const char* zshScript = R"script(#compdef quen
# Completion of quen for zsh.
_quen() {
    local line
    local -a candidates
    for line in ${(f)"$(quen complete words -- "${(@)words[2,CURRENT]}" 2>/dev/null)"}; do
        if [[ $line == *$'\t'* ]]; then
            candidates+=("${${line%%$'\t'*}//:/\\:}:${line#*$'\t'}")
        else
            candidates+=("${line//:/\\:}")
        fi
    done
    if (( ${#candidates} )); then
        _describe -V quen candidates
    else
        _files
    fi
}
if [ "$funcstack[1]" = "_quen" ]; then
    _quen "$@"
else
    compdef _quen quen
fi
)script";

constexpr const char* fishScript = R"script(# Completion of quen for fish.
function __quen_complete
    set --local words (commandline --tokenize --cut-at-cursor --current-process)
    set --local last (commandline --cut-at-cursor --current-token)
    set --local candidates (quen complete words -- $words[2..] "$last" 2>/dev/null)
    if test (count $candidates) -gt 0
        printf '%s\n' $candidates
    else
        __fish_complete_path "$last"
    end
end
complete --command quen --no-files --keep-order --arguments '(__quen_complete)'
)script";

} // namespace

Completion completionOf(const CommandText& program, const std::vector<std::string>& words) {
    // Some shells take `--color=al` for three words.
    std::vector<std::string> read;
    for (const std::string& word : words) {
        if (word != "=" || &word == &words.back()) {
            read.push_back(word == "=" ? "" : word);
        }
    }
    Reading reading(program);
    for (std::size_t i = indexOfCommand(read); i + 1 < read.size(); ++i) {
        reading.take(read[i]);
    }
    Completion completion = reading.completion(read.back());
    std::erase_if(completion.candidates, [&](const Candidate& candidate) {
        return !candidate.word.starts_with(completion.beginning);
    });
    return completion;
}

std::string completionScript(const std::string& shell) {
    if (shell == "bash") {
        return bashScript;
    }
    if (shell == "zsh") {
        return zshScript;
    }
    return shell == "fish" ? fishScript : "";
}

} // namespace quen::tools
