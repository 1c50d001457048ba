// bash_completion.cpp - completes the words of a program's command line in bash
#include "apps/pages/bash_completion.h"

#include <algorithm>

namespace {

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
    return text;
}

/// Within single quotes.
std::string Quoted(const std::string& text) {
    return "'" + Replaced(text, "'", "'\\''") + "'";
}

void AppendWord(std::string& words, const std::string& word) {
    words += (words.empty() ? "" : " ") + word;
}

/// What can be named a file: FILE, FILE.ini, [FILE], DIR, IN and the like.
bool IsFile(const OptionDescription& option) {
    return option.value.find("FILE") != std::string::npos ||
           option.value.find("DIR") != std::string::npos;
}

/// The words that a value may be: the choices, or those of a placeholder such as "a|b|DIR".
std::string ChoicesOf(const OptionDescription& option) {
    std::string words;
    for (const std::string& choice : option.choices) {
        AppendWord(words, choice);
    }
    std::string rest = option.choices.empty() ? option.value + "|" : "";
    for (std::size_t end = 0; (end = rest.find('|')) != std::string::npos; rest.erase(0, end + 1)) {
        const std::string word = rest.substr(0, end);
        const bool isLiteral =
            std::all_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
        if (!word.empty() && isLiteral) {
            AppendWord(words, word);
        }
    }
    return words;
}

/// The tables of the script, each the branches of a "case".
struct Tables {
    std::string commands; ///< path of a command: its commands and options
    std::string valued;   ///< path and option that takes a value
    std::string values;   ///< path and option: its values
};

std::string CaseOf(const std::string& path, const std::vector<std::string>& names) {
    std::string patterns;
    for (const std::string& name : names) {
        patterns += (patterns.empty() ? "" : "|") + Quoted(path + " " + name);
    }
    return "    " + patterns + ")";
}

void AppendTables(Tables& tables, const CommandDescription& command, const std::string& path) {
    std::string commands;
    for (const CommandDescription& inner : command.commands) {
        AppendWord(commands, inner.name);
    }
    std::string options = "-h --help";
    for (const OptionDescription& option : command.options) {
        if (option.isPositional) {
            continue;
        }
        for (const std::string& name : option.names) {
            AppendWord(options, name);
        }
        if (option.value.empty()) {
            continue;
        }
        if (!option.isValueOptional) {
            tables.valued += CaseOf(path, option.names) + " return 0 ;;\n";
        }
        const std::string choices = ChoicesOf(option);
        if (!choices.empty() || IsFile(option)) {
            tables.values += CaseOf(path, option.names) + " values=" + Quoted(choices) +
                             (IsFile(option) ? " files=1" : "") + " ;;\n";
        }
    }
    tables.commands += "    " + Quoted(path) + ") commands=" + Quoted(commands) +
                       " options=" + Quoted(options) + " ;;\n";
    for (const CommandDescription& inner : command.commands) {
        AppendTables(tables, inner, path.empty() ? inner.name : path + " " + inner.name);
    }
}

// The path of a command is empty for the program itself. Options of the program may follow the
// command, so they are looked for after those of the command.
constexpr const char* kScript =
    R"(# Completion of PROGRAM in bash; made from the program's own definitions.

_FUNCTION_words() {
    commands= options=
    case $1 in
COMMANDS    esac
}

# Whether an option takes a value.
_FUNCTION_valued() {
    case "$1 $2" in
VALUED    esac
    return 1
}

_FUNCTION_values() {
    values= files=
    case "$1 $2" in
VALUES    *) return 1 ;;
    esac
}

_FUNCTION() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local path= i one commands options values files common
    # "--name=value" comes as three words.
    if [ "$word" = = ]; then
        word=
    elif [ "$previous" = = ]; then
        previous=${COMP_WORDS[COMP_CWORD-2]}
    fi
    for ((i = 1; i < COMP_CWORD; i++)); do
        one=${COMP_WORDS[i]}
        if [[ $one == -* ]]; then
            if _FUNCTION_valued "$path" "$one" || _FUNCTION_valued '' "$one"; then
                [ "${COMP_WORDS[i+1]}" = = ] && ((i++))
                ((i++))
                ((i == COMP_CWORD - 1)) && previous= # a value, whatever it looks like
            fi
            continue
        fi
        _FUNCTION_words "$path"
        [[ " $commands " == *" $one "* ]] && path=${path:+$path }$one
    done
    COMPREPLY=()
    if [[ $previous == -* ]] &&
        { _FUNCTION_values "$path" "$previous" || _FUNCTION_values '' "$previous"; }; then
        COMPREPLY=($(compgen -W "$values" -- "$word"))
        [ -n "$files" ] && compopt -o default 2>/dev/null
        return
    fi
    if [[ $previous == -* ]] &&
        { _FUNCTION_valued "$path" "$previous" || _FUNCTION_valued '' "$previous"; }; then
        return
    fi
    _FUNCTION_words ''
    common=$options
    _FUNCTION_words "$path"
    if [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W "$options $common" -- "$word"))
    elif [ -n "$commands" ]; then
        COMPREPLY=($(compgen -W "$commands" -- "$word"))
    else
        compopt -o default 2>/dev/null
    fi
}

complete -F _FUNCTION PROGRAM
)";

} // namespace

std::string BashCompletion(const CommandDescription& program) {
    Tables tables;
    AppendTables(tables, program, "");
    std::string script = Replaced(kScript, "PROGRAM", program.name);
    script = Replaced(script, "FUNCTION", Replaced(program.name, "-", "_"));
    script = Replaced(script, "COMMANDS    esac", tables.commands + "    esac");
    script = Replaced(script, "VALUED    esac", tables.valued + "    esac");
    return Replaced(script, "VALUES    *)", tables.values + "    *)");
}
