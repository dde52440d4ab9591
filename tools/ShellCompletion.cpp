#include "tools/ShellCompletion.h"

#include "base/Text.h"

namespace kelvinbar {

namespace {

/// Whether there is something to complete behind a value of the option.
bool takesFurtherValues(const CompletedOption& option) {
    return option.isRepeated && (option.isFile || !option.values.empty());
}

using CompletedOptions = std::span<const CompletedOption>;

std::string joinedWith(std::string_view separator, const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text.append(text.empty() ? "" : separator).append(word);
    return text;
}

/// In single quotes of any shell.
std::string singleQuoted(std::string_view text) { return "'" + replacedAll(text, "'", R"('\'')") + "'"; }

std::string functionName(std::string_view program) { return "_" + replacedAll(program, "-", "_"); }

// bash

std::string bashCase(const CompletedOption& option) {
    const std::string pattern = "    " + joinedWith("|", option.names) + ") ";
    if (option.isFile) return pattern + "compopt -o default; return ;;\n"; // quotes what has to be quoted
    if (!option.values.empty()) {
        return pattern + "COMPREPLY=($(compgen -W " + singleQuoted(joinedWith(" ", option.values)) +
               " -- \"$word\")); return ;;\n";
    }
    return option.valueName.empty() ? std::string() : pattern + "return ;;\n";
}

/// The value belongs to the last option before it, also after "=", which bash takes for a word.
std::string bashScript(std::string_view program, CompletedOptions options) {
    const std::string function = functionName(program);
    std::string cases;
    std::vector<std::string> names;
    for (const CompletedOption& option : options) {
        cases.append(bashCase(option));
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return function + "() {\n  local word=${COMP_WORDS[COMP_CWORD]} option= index\n" +
           "  [[ $word == = ]] && word=\n"
           "  for ((index = COMP_CWORD - 1; index > 0; --index)); do\n"
           "    [[ ${COMP_WORDS[index]} == -* ]] && { option=${COMP_WORDS[index]}; break; }\n  done\n"
           "  COMPREPLY=()\n  [[ $word == -* ]] || case $option in\n" +
           cases + "  esac\n  COMPREPLY=($(compgen -W " + singleQuoted(joinedWith(" ", names)) +
           " -- \"$word\"))\n}\ncomplete -F " + function + " " + std::string(program) + "\n";
}

// zsh

std::string zshHelp(std::string_view help) {
    std::string text(help);
    for (const std::string_view special : {"\\", "[", "]", ":"}) {
        text = replacedAll(text, special, "\\" + std::string(special));
    }
    return text;
}

std::string zshValue(const CompletedOption& option) {
    if (option.valueName.empty()) return {};
    const std::string start = (option.isOptional ? "::" : ":") + option.valueName + ":";
    return start + (option.isFile ? "_files" : "(" + joinedWith(" ", option.values) + ")");
}

std::string zshArgument(const std::string& name, const CompletedOption& option) {
    const std::string start = (option.isRepeated ? "*" : "") + name + (option.valueName.empty() ? "" : "=");
    return singleQuoted(start + "[" + zshHelp(option.help) + "]" + zshValue(option));
}

std::string zshCase(const CompletedOption& option) {
    if (!takesFurtherValues(option)) return {};
    return "    " + joinedWith("|", option.names) + ") " +
           (option.isFile ? "_files" : "compadd -- " + joinedWith(" ", option.values)) + " ;;\n";
}

/// For words that follow a value. An argument of `_arguments` for several values would take the options
/// behind them for values, too.
std::string zshFurtherValues(const std::string& function, CompletedOptions options) {
    std::string cases;
    for (const CompletedOption& option : options) cases.append(zshCase(option));
    return function +
           "() {\n  local -a before=(\"${(@)words[1,CURRENT-1]}\")\n  case ${before[(R)-*]%%=*} in\n" +
           cases + "  esac\n}\n";
}

/// The file is the body of a function where it is loaded on demand, and defines the completion where it is
/// sourced.
std::string zshEnd(const std::string& function, std::string_view program) {
    const std::string name(program);
    return "if [[ $funcstack[1] == _" + name + " ]]; then\n  " + function + "\nelse\n  compdef " + function +
           " " + name + "\nfi\n";
}

std::string zshScript(std::string_view program, CompletedOptions options) {
    const std::string function = functionName(program);
    const std::string furtherValues = function + "_further_values";
    std::string text = "#compdef " + std::string(program) + "\n" + zshFurtherValues(furtherValues, options) +
                       function + "() {\n  _arguments";
    for (const CompletedOption& option : options) {
        for (const std::string& name : option.names) {
            text.append(" \\\n    ").append(zshArgument(name, option));
        }
    }
    return text.append(" \\\n    '*: :")
        .append(furtherValues)
        .append("'\n}\n")
        .append(zshEnd(function, program));
}

// fish

std::string fishLine(std::string_view program, const CompletedOption& option) {
    std::string line = "complete -c " + std::string(program);
    for (const std::string& name : option.names) {
        line.append(name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
    }
    if (!option.valueName.empty()) line.append(option.isFile ? " -r -F" : " -x");
    if (!option.values.empty()) line.append(" -a ").append(singleQuoted(joinedWith(" ", option.values)));
    return line.append(" -d ").append(singleQuoted(option.help)).append("\n");
}

/// For words that follow a value.
std::string fishFurtherValues(std::string_view program, const std::string& function,
                              const CompletedOption& option) {
    if (!takesFurtherValues(option)) return {};
    return "complete -c " + std::string(program) + " -n " +
           singleQuoted(function + " " + joinedWith(" ", option.names)) +
           (option.isFile ? " -F" : " -a " + singleQuoted(joinedWith(" ", option.values))) + "\n";
}

std::string fishScript(std::string_view program, CompletedOptions options) {
    const std::string follows = "_" + functionName(program) + "_follows";
    std::string text =
        "function " + follows +
        "\n  set -l options (commandline -opc | string match -- '-*' | string replace -r '=.*' '')\n"
        "  contains -- \"$options[-1]\" $argv\nend\n"
        "complete -c " +
        std::string(program) + " -f\n";
    for (const CompletedOption& option : options) {
        text.append(fishLine(program, option)).append(fishFurtherValues(program, follows, option));
    }
    return text;
}

} // namespace

std::string completionScript(std::string_view shell, std::string_view program, CompletedOptions options) {
    if (shell == "bash") return bashScript(program, options);
    return shell == "zsh" ? zshScript(program, options) : fishScript(program, options);
}

} // namespace kelvinbar
