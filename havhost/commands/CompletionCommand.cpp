// havhost completion: the script that lets a command interpreter complete command lines, and
// havhost complete: what that script asks for.
#include <memory>
#include <sstream>

#include "havcore/client/TPluginLoader.h"
#include "havcore/client/Utf8.h"
#include "havhost/CommandLine.h"
#include "havhost/CommandTree.h"
#include "havhost/OpenNamespace.h"
#include "havhost/Paths.h"
#include "havhost/THostLogger.h"
#include "havhost/completion/TBashLine.h"
#include "havhost/completion/TCompletion.h"

namespace havhost {

using namespace hav::client;

namespace {

using TWords = std::vector<std::string>;

// The first line of a reply says what else can stand there, and each other line is one word.
constexpr char kBashScript[] =
    R"sh(# Completion of havhost for bash. It asks the program itself: `havhost completion bash` wrote it.
_havhost() {
  local reply
  mapfile -t reply < <("$1" complete bash -- "${COMP_LINE:0:COMP_POINT}" "$COMP_WORDBREAKS" 2>/dev/null)
  COMPREPLY=("${reply[@]:1}")
  case "${reply[0]-}" in *goes-on*) compopt -o nospace ;; esac
  case "${reply[0]-}" in
    *files*) compopt -o default ;;
    *folders*) compopt -o dirnames ;;
  esac
}
complete -F _havhost havhost
)sh";

constexpr char kZshScript[] = R"sh(#compdef havhost
# Completion of havhost for zsh. It asks the program itself: `havhost completion zsh` wrote it.
_havhost() {
  local -a reply told plain ending
  local line tab=$'\t'
  reply=("${(@f)$("${(Q)words[1]}" complete zsh -- "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)}")
  [[ $reply[1] == *goes-on* ]] && ending=(-S '')
  for line in "${(@)reply[2,-1]}"; do
    if [[ $line == *$tab* ]]; then
      told+=("${${line%%$tab*}//:/\\:}:${line#*$tab}")
    else
      plain+=("$line")
    fi
  done
  local -a folded=(-M 'm:{a-zA-Z}={A-Za-z}')
  (($#told)) && _describe -t havhost havhost told $folded "${(@)ending}"
  (($#plain)) && compadd $folded "${(@)ending}" -- "${(@)plain}"
  if [[ $reply[1] == *files* || $reply[1] == *folders* ]]; then
    [[ $PREFIX == --*=* ]] && compset -P '*='
    if [[ $reply[1] == *files* ]]; then _files; else _path_files -/; fi
  fi
}
if [[ $funcstack[1] == _havhost ]]; then
  _havhost "$@"
else
  compdef _havhost havhost
fi
)sh";

void PrintScript(const std::string& shell, std::ostream& out) {
  out << (shell == "bash" ? kBashScript : kZshScript);
}

// Nobody reads what goes wrong while a word is typed.
TCompleted Complete(const TWords& before, const std::string& word) {
  std::ostringstream ignored;
  const TConsole silent{ignored, ignored};
  std::unique_ptr<THostLogger> logger;
  std::unique_ptr<TPluginLoader> plugin;
  const TCompletion completion(DeclareProgram, [&](TSettings& settings) {
    if (!plugin) {
      logger = std::make_unique<THostLogger>(ignored, false);
      plugin = std::make_unique<TPluginLoader>(settings.plugin.empty() ? InstalledPlugin()
                                                                       : PathOf(settings.plugin));
    }
    return OpenNamespace(*plugin, settings, silent);
  });
  try {
    return completion.Of(before, word);
  } catch (const std::exception&) {
    return {};
  }
}

void PrintWhatElse(const TCompleted& found, std::ostream& out) {
  out << (found.goesOn ? "goes-on " : "") << (found.files ? "files " : "")
      << (found.folders ? "folders " : "") << '\n';
}

void ReplyToBash(const TWords& words, std::ostream& out) {
  if (words.size() != 2) return;
  const auto line = TBashLine::Of(words[0], words[1]);
  if (line.before.empty()) return;
  const auto found = Complete({line.before.begin() + 1, line.before.end()}, line.word);
  PrintWhatElse(found, out);
  for (const auto& word : found.words) out << line.Reply(word.text) << '\n';
}

void ReplyToZsh(const TWords& words, std::ostream& out) {
  if (words.empty()) return;
  const auto found = Complete({words.begin(), words.end() - 1}, words.back());
  PrintWhatElse(found, out);
  for (const auto& word : found.words)
    out << word.text << (word.description.empty() ? "" : '\t' + word.description) << '\n';
}

}  // namespace

void AddCompletionCommand(CLI::App& program, TCommandLine& line) {
  const auto shell = std::make_shared<std::string>();
  auto& command =
      AddCommand(program, line,
                 {"completion", "Write the script that completes command lines in bash or zsh",
                  "havhost completion bash > ~/.local/share/bash-completion/completions/havhost"},
                 [shell](const TConsole& console) { PrintScript(*shell, console.out); });
  command.add_option("SHELL", *shell, "bash or zsh")
      ->type_name("bash|zsh")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh"}).description(""));
}

void AddCompleteCommand(CLI::App& program, TCommandLine& line) {
  const auto shell = std::make_shared<std::string>();
  const auto words = std::make_shared<TWords>();
  auto& command = AddCommand(program, line,
                             {"complete", "What the scripts of havhost completion ask for",
                              "havhost complete zsh -- instances --f"},
                             [shell, words](const TConsole& console) {
                               if (*shell == "bash")
                                 ReplyToBash(*words, console.out);
                               else
                                 ReplyToZsh(*words, console.out);
                             });
  command.add_option("SHELL", *shell, "bash or zsh")->required();
  command.add_option("WORDS", *words, "The line and where words end for bash; the words for zsh");
  Hide(command);
}

}  // namespace havhost
