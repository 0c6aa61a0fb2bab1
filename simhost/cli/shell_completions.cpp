// Completions for bash, zsh and fish.
#include "simhost/cli/help_files.h"

#include <algorithm>

namespace simhost {

namespace {

/// A text in single quotes; each of these shells takes it so.
std::string inSingleQuotes(const std::string& text) {
  std::string result = "'";
  for (const char c : text)
    result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return result + "'";
}

bool takesValue(const OptionRow& row) {
  return !std::holds_alternative<bool*>(row.target);
}

/// Which names the shell offers for a value.
enum class Offer { files, folders, choices };
Offer offerFor(const OptionRow& row) {
  if (!row.rules.choices.empty()) return Offer::choices;
  return row.typeName == "DIR" || row.name == "DIR" || row.name == "SITE" ? Offer::folders : Offer::files;
}

std::string choicesOf(const OptionRow& row) {
  std::string all;
  for (const std::string& choice : row.rules.choices)
    all += (all.empty() ? "" : " ") + choice;
  return all;
}

/// Calls `visit(words, table)` for a table and all below it; `words` are the commands that lead there.
template <class Visit>
void forEach(const CommandTable& table, const std::string& words, const Visit& visit) {
  visit(words, table);
  for (const CommandTable& command : table.commands)
    forEach(command, words.empty() ? command.name : words + " " + command.name, visit);
}

std::string bashCompletion(const CommandTable& program) {
  std::string commands;
  std::string values;
  std::string words;
  forEach(program, {}, [&](const std::string& path, const CommandTable& table) {
    if (!path.empty())
      commands += "      " + inSingleQuotes(path) + ") command=" + inSingleQuotes(path) + " ;;\n";
    std::string names;
    for (const CommandTable& command : table.commands)
      names += command.name + " ";
    for (const OptionRow& row : table.options) {
      if (isWordByPlace(row)) {
        if (!row.rules.choices.empty()) names += choicesOf(row) + " ";
        continue;
      }
      names += row.name + " ";
      if (!takesValue(row)) continue;
      const Offer offer = offerFor(row);
      values += "    " + inSingleQuotes(path + ":" + row.name) + ") COMPREPLY=($(compgen " +
                (offer == Offer::choices   ? "-W " + inSingleQuotes(choicesOf(row))
                 : offer == Offer::folders ? std::string("-d")
                                           : std::string("-f")) +
                " -- \"$current\")); return ;;\n";
    }
    words += "    " + inSingleQuotes(path) + ") words=" + inSingleQuotes(names + "--help") + " ;;\n";
  });
  const std::string function = "_" + program.name;
  return "# Completion of " + program.name + " for bash.\n" + function +
         "() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command= words= "
         "i\n"
         "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
         "    case \"${command:+$command }${COMP_WORDS[i]}\" in\n" +
         (commands.empty() ? "      '') ;;\n" : commands) +
         "    esac\n"
         "  done\n"
         "  compopt -o filenames 2>/dev/null\n"
         "  case \"$command:$previous\" in\n" +
         values +
         "  esac\n"
         "  case \"$command\" in\n" +
         words +
         "  esac\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
         "  [ ${#COMPREPLY[@]} -gt 0 ] || COMPREPLY=($(compgen -f -- \"$current\"))\n"
         "}\n"
         "complete -F " +
         function + " " + program.name + "\n";
}

/// One argument of zsh's _arguments. Brackets and colons part it.
std::string zshText(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '[' || c == ']' || c == ':' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

std::string zshArguments(const CommandTable& table) {
  std::string arguments = "'--help[Print this help message and exit]'";
  for (const OptionRow& row : table.options) {
    const Offer offer = offerFor(row);
    const std::string action = offer == Offer::choices   ? "(" + choicesOf(row) + ")"
                               : offer == Offer::folders ? std::string("_files -/")
                                                         : std::string("_files");
    const std::string value = ":" + zshText(row.typeName.empty() ? "text" : row.typeName) + ":" + action;
    const bool isRepeatable = std::holds_alternative<std::vector<std::string>*>(row.target) ||
                              std::holds_alternative<std::vector<OrderedWord>*>(row.target);
    if (isWordByPlace(row))
      arguments += " " + inSingleQuotes((isRepeatable ? "*:" : ":") + zshText(row.name) + ":" + action);
    else
      arguments += " " + inSingleQuotes(
                             (isRepeatable ? "*" : "") + row.name + "[" + zshText(row.help) + "]" +
                             (takesValue(row) ? value : ""));
  }
  return arguments;
}

std::string zshCommands(const CommandTable& table, const std::string& indent) {
  if (table.commands.empty()) return indent + "_arguments " + zshArguments(table) + "\n";
  std::string names;
  std::string cases;
  for (const CommandTable& command : table.commands) {
    names += " " + inSingleQuotes(zshText(command.name) + ":" + command.description);
    cases += indent + "    " + command.name + ")\n" + zshCommands(command, indent + "      ") + indent +
             "      ;;\n";
  }
  return indent + "_arguments -C " + zshArguments(table) + " '1: :->command' '*:: :->words'\n" + indent +
         "case $state in\n" + indent + "command)\n" + indent + "  local -a commands=(" + names + ")\n" +
         indent + "  _describe subcommand commands\n" + indent + "  ;;\n" + indent + "words)\n" + indent +
         "  case $words[1] in\n" + cases + indent + "  esac\n" + indent + "  ;;\n" + indent + "esac\n";
}

std::string zshCompletion(const CommandTable& program) {
  const std::string function = "_" + program.name;
  return "#compdef " + program.name + "\n" + function + "() {\n  local context state state_descr line\n" +
         "  typeset -A opt_args\n" + zshCommands(program, "  ") + "}\n" + function + " \"$@\"\n";
}

std::string fishCompletion(const CommandTable& program) {
  std::string text = "# Completion of " + program.name + " for fish.\n";
  forEach(program, {}, [&](const std::string& path, const CommandTable& table) {
    std::string condition;
    std::size_t begin = 0;
    while (begin < path.size()) {
      const std::size_t end = std::min(path.find(' ', begin), path.size());
      condition += (condition.empty() ? "" : "; and ") +
                   ("__fish_seen_subcommand_from " + path.substr(begin, end - begin));
      begin = end + 1;
    }
    if (path.empty() && !table.commands.empty()) condition = "__fish_use_subcommand";
    if (!path.empty() && !table.commands.empty()) {
      condition += "; and not __fish_seen_subcommand_from";
      for (const CommandTable& command : table.commands)
        condition += " " + command.name;
    }
    const std::string start =
        "complete -c " + program.name + (condition.empty() ? "" : " -n " + inSingleQuotes(condition));
    for (const CommandTable& command : table.commands)
      text += start + " -f -a " + command.name + " -d " + inSingleQuotes(command.description) + "\n";
    for (const OptionRow& row : table.options) {
      if (isWordByPlace(row)) continue;
      const bool isLong = row.name.starts_with("--");
      text += start + (isLong ? " -l " + row.name.substr(2) : " -s " + row.name.substr(1));
      if (takesValue(row))
        text += offerFor(row) == Offer::choices ? " -x -a " + inSingleQuotes(choicesOf(row)) : " -r";
      text += " -d " + inSingleQuotes(row.help) + "\n";
    }
  });
  return text;
}

} // namespace

std::vector<HelpFile> shellCompletions(const CommandTable& program) {
  return {
      {"bash/" + program.name, bashCompletion(program)},
      {"zsh/_" + program.name, zshCompletion(program)},
      {"fish/" + program.name + ".fish", fishCompletion(program)}};
}

} // namespace simhost
