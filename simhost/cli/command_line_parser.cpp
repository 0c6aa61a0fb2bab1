// The one file that knows the library which parses command lines.
#include "simhost/cli/command_table.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <map>

namespace simhost {

namespace {

bool isWordByPlace(const OptionRow& row) {
  return !row.name.starts_with('-');
}

class Parser final {
public:
  /// Where the first word names a command, the options of the others are not set up: they cost more than a small task.
  Parser(const CommandTable& program, const std::string& firstWord)
      : app_(program.description, program.name), firstWord_(firstWord) {
    addTo(app_, program);
  }

  [[nodiscard]] CLI::App& app() { return app_; }

  [[nodiscard]] const CommandTable& givenCommand() {
    const CLI::App* app = &app_;
    while (!app->get_subcommands().empty())
      app = app->get_subcommands().front();
    return *tables_.at(app);
  }

  /// Options that share one order are filled at the end, when the order of all is known.
  void fillOrderedWords() const {
    for (const auto& [app, table] : tables_) {
      std::map<const CLI::Option*, std::size_t> taken;
      for (const CLI::Option* option : app->parse_order())
        if (const auto row = ordered_.find(option); row != ordered_.end())
          std::get<std::vector<OrderedWord>*>(row->second->target)
              ->push_back({row->second->name, option->results().at(taken[option]++)});
    }
  }

private:
  void addTo(CLI::App& app, const CommandTable& table) {
    tables_[&app] = &table;
    if (!table.footer.empty()) app.footer(table.footer); // also that of commands without their own
    for (const OptionRow& row : table.options)
      addOption(app, row);
    for (const OptionRow& row : table.options) {
      CLI::Option* const option = app.get_option(row.name);
      for (const std::string& other : row.rules.excludes)
        option->excludes(app.get_option(other));
      for (const std::string& other : row.rules.needs)
        option->needs(app.get_option(other));
    }
    const auto isFirstWord = [this](const CommandTable& command) { return command.name == firstWord_; };
    const bool isNamed = &app == &app_ && std::ranges::any_of(table.commands, isFirstWord);
    for (const CommandTable& command : table.commands) {
      CLI::App& added = *app.add_subcommand(command.name, command.description);
      if (!isNamed || isFirstWord(command)) addTo(added, command);
    }
    if (!table.commands.empty()) app.require_subcommand(1);
  }

  void addOption(CLI::App& app, const OptionRow& row) {
    CLI::Option* const option =
        std::visit([&](auto* target) { return added(app, row, *target); }, row.target);
    if (isWordByPlace(row))
      option->type_name("");
    else if (!row.typeName.empty())
      option->type_name(row.typeName);
    option->required(row.rules.isRequired);
    if (!row.rules.choices.empty()) option->check(CLI::IsMember(row.rules.choices));
    if (row.rules.path == OptionRules::Path::existingFile) option->check(CLI::ExistingFile);
    if (row.rules.path == OptionRules::Path::existingFolder) option->check(CLI::ExistingDirectory);
  }

  static CLI::Option* added(CLI::App& app, const OptionRow& row, bool& target) {
    return app.add_flag(row.name, target, row.help);
  }

  static CLI::Option* added(CLI::App& app, const OptionRow& row, std::string& target) {
    return app.add_option(row.name, target, row.help);
  }

  static CLI::Option* added(CLI::App& app, const OptionRow& row, std::vector<double>& target) {
    return app.add_option(row.name, target, row.help)->delimiter(',')->expected(2);
  }

  static CLI::Option* added(CLI::App& app, const OptionRow& row, std::vector<std::string>& target) {
    CLI::Option* const option = app.add_option(row.name, target, row.help);
    // An option takes one value each time: the next word may be one by its place.
    return isWordByPlace(row) ? option : option->allow_extra_args(false);
  }

  CLI::Option* added(CLI::App& app, const OptionRow& row, std::vector<OrderedWord>& /*target*/) {
    CLI::Option* const option = added(app, row, unordered_);
    ordered_[option] = &row;
    return option;
  }

  CLI::App app_;
  const std::string firstWord_;
  std::map<const CLI::App*, const CommandTable*> tables_;
  std::map<const CLI::Option*, const OptionRow*> ordered_;
  std::vector<std::string> unordered_;
};

/// The first word, when it should be a subcommand and none has this name.
std::optional<std::string> unknownCommand(const CommandTable& program, int argc, const char* const* argv) {
  const std::string word = argc > 1 ? argv[1] : "";
  if (program.commands.empty() || word.empty() || word.starts_with('-')) return std::nullopt;
  if (std::ranges::find(program.commands, word, &CommandTable::name) != program.commands.end())
    return std::nullopt;
  return word;
}

} // namespace

OptionRows joinedRows(std::initializer_list<OptionRows> parts) {
  OptionRows all;
  for (const OptionRows& part : parts)
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

CommandLineResult readCommandLine(
    const CommandTable& program, const std::string& version, int argc, const char* const* argv) {
  if (const auto word = unknownCommand(program, argc, argv)) {
    std::fprintf(
        stderr, "%s: there is no subcommand \"%s\"; --help lists them\n", program.name.c_str(),
        word->c_str());
    return {.end = static_cast<int>(ExitCode::wrongArguments)};
  }
  Parser parser(program, argc > 1 ? argv[1] : "");
  parser.app().set_version_flag("--version", version);
  try {
    parser.app().parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const bool isDone = parser.app().exit(error) == 0;
    return {.end = static_cast<int>(isDone ? ExitCode::done : ExitCode::wrongArguments)};
  }
  parser.fillOrderedWords();
  return {.command = &parser.givenCommand()};
}

} // namespace simhost
