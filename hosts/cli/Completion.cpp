#include "hosts/cli/Completion.h"

#include "hosts/cli/OptionTable.h"
#include "reading/base/ListText.h"

#include <cctype>
#include <sstream>
#include <string>

namespace scenedetect {
namespace {

// Names of files are left to bash, which knows how to quote them. The word at the cursor may be part of
// --option=word, which bash takes for three.
constexpr const char* kScript = R"(# bash completion for @PROGRAM@; made from its table of options.
_@PROGRAM@() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local words= takes_list= names=default before= i
    if [[ $cur == = ]]; then
        cur=
    elif [[ $prev == = ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        [[ ${COMP_WORDS[i]} == -- ]] && prev=--
    done
    case $prev in
@CASES@    --) ;;
    *)
        [[ $cur == -* ]] && words='@NAMES@'
        ;;
    esac
    [[ $takes_list && $cur == *,* ]] && before=${cur%,*},
    COMPREPLY=()
    if [[ $words ]]; then
        COMPREPLY=($(compgen -P "$before" -W "$words" -- "${cur#"$before"}"))
    elif [[ $names ]]; then
        compopt -o "$names"
    fi
}
complete -F _@PROGRAM@ @PROGRAM@
)";

void ReplaceAll(std::string& text, const std::string& mark, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos; at += by.size())
        text.replace(at, mark.size(), by);
}

// "start|end|N": the parts in lower case are words to type, the others stand for something.
std::string Choices(const std::string& value) {
    std::string choices;
    std::istringstream parts(value);
    for (std::string part; std::getline(parts, part, '|');)
        if (!part.empty() && std::islower(static_cast<unsigned char>(part.front())))
            AppendToList(choices, " ", part);
    return choices;
}

std::string Names(const CLI::Option& option, const char* between) {
    std::string names;
    for (const std::string& name : option.get_snames())
        AppendToList(names, between, "-" + name);
    for (const std::string& name : option.get_lnames())
        AppendToList(names, between, "--" + name);
    return names;
}

std::string Case(const CLI::Option& option) {
    const std::string value = ValueName(option);
    if (value.empty())
        return "";
    std::string action = "names=";
    if (const std::string choices = Choices(value); !choices.empty())
        action = (option.get_delimiter() != '\0' ? "takes_list=1 words='" : "words='") + choices + "'";
    else if (value.starts_with("FILE"))
        action = "";
    else if (value.starts_with("DIR"))
        action = "names=dirnames";
    return "    " + Names(option, " | ") + ") " + action + (action.empty() ? ";;\n" : " ;;\n");
}

} // namespace

std::string CompletionScript(const HostProgram& program) {
    const OptionTable table(program);
    std::string cases;
    std::string names;
    for (const CLI::Option* option : table.app.get_options(
             [](const CLI::Option* each) { return each->nonpositional() && !each->get_group().empty(); })) {
        cases += Case(*option);
        AppendToList(names, " ", Names(*option, " "));
    }
    std::string script = kScript;
    ReplaceAll(script, "@PROGRAM@", program.name);
    ReplaceAll(script, "@CASES@", cases);
    ReplaceAll(script, "@NAMES@", names);
    return script;
}

} // namespace scenedetect
