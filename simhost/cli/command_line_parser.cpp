// The one file that knows the library which parses command lines.
#include "simhost/cli/command_table.h"

#include "simhost/cli/help_files.h"
#include "simhost/cli/nearest_name.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <system_error>
#include <utility>

namespace simhost {

namespace {

constexpr const char* writeHelpOption = "--write-help";

/// What --help ends with.
std::string endOfHelp(const CommandTable& table, const std::string& manualPage) {
  std::string text = table.footer;
  for (const std::string& example : table.examples)
    text += (&example == &table.examples.front() ? "\n\nExamples:\n  " : "\n  ") + example;
  text += "\n\nManual: man " + manualPage;
  return table.page.empty() ? text : text + ", docs/" + table.page;
}

class Parser final {
public:
  /// Where the first word names a command, the options of the others are not set up: they cost more than a small task.
  Parser(const CommandTable& program, const std::string& firstWord)
      : app_(program.description, program.name), firstWord_(firstWord) {
    addTo(app_, program, program, program.name);
    app_.add_option(writeHelpOption, "Write manual pages and shell completions to this folder")
        ->type_name("DIR");
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
  /// `above` gives what the table leaves out: footer, examples, page.
  void addTo(
      CLI::App& app, const CommandTable& table, const CommandTable& above, const std::string& manualPage) {
    tables_[&app] = &table;
    CommandTable whole = table;
    if (whole.footer.empty()) whole.footer = above.footer;
    if (whole.examples.empty()) whole.examples = above.examples;
    if (whole.page.empty()) whole.page = above.page;
    app.footer(endOfHelp(whole, manualPage));
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
      if (!isNamed || isFirstWord(command))
        addTo(added, command, whole, &app == &app_ ? manualPage + "-" + command.name : manualPage);
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

/// A word that names nothing, with what it may have meant.
std::string unknownName(const char* kind, const std::string& name, const std::vector<std::string>& names) {
  std::string message = std::string("there is no ") + kind + " \"" + name + "\"";
  if (const auto nearest = nearestName(name, names)) message += "; the nearest is \"" + *nearest + "\"";
  return message + "; --help lists them";
}

std::vector<std::string> optionNames(const CommandTable& table) {
  std::vector<std::string> names = {"--help"};
  for (const OptionRow& row : table.options)
    if (row.name.starts_with("--")) names.push_back(row.name);
  return names;
}

/// The first subcommand or long option that does not exist. The library reports others first, such as an option that
/// is missing because its name is mistyped.
std::optional<std::string> unknownWord(const CommandTable& program, int argc, const char* const* argv) {
  const CommandTable* table = &program;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--") return std::nullopt;
    if (!table->commands.empty() && !word.empty() && word.front() != '-') {
      const auto command = std::ranges::find(table->commands, word, &CommandTable::name);
      if (command != table->commands.end()) {
        table = &*command;
        continue;
      }
      std::vector<std::string> names;
      for (const CommandTable& each : table->commands)
        names.push_back(each.name);
      return unknownName("subcommand", word, names);
    }
    if (word.size() < 3 || !word.starts_with("--")) continue;
    std::vector<std::string> names = optionNames(*table);
    if (table == &program) names.insert(names.end(), {"--version", writeHelpOption});
    const std::string name = word.substr(0, word.find('='));
    if (std::ranges::find(names, name) == names.end()) return unknownName("option", name, names);
  }
  return std::nullopt;
}

ExitCode writeHelp(const CommandTable& program, const std::string& version, const std::string& folder) {
  std::vector<HelpFile> files = manualPages(program, version);
  for (HelpFile& file : shellCompletions(program))
    files.push_back(std::move(file));
  for (const HelpFile& file : files) {
    const std::filesystem::path path = std::filesystem::path(folder) / file.name;
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    std::ofstream out(path, std::ios::binary);
    out << file.text;
    if (out.flush()) continue;
    std::fprintf(stderr, "%s: cannot write %s\n", program.name.c_str(), path.c_str());
    return ExitCode::cannotWrite;
  }
  return ExitCode::done;
}

} // namespace

bool isWordByPlace(const OptionRow& row) {
  return !row.name.starts_with('-');
}

OptionRows joinedRows(std::initializer_list<OptionRows> parts) {
  OptionRows all;
  for (const OptionRows& part : parts)
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

CommandLineResult readCommandLine(
    const CommandTable& program, const std::string& version, int argc, const char* const* argv) {
  if (argc == 3 && std::string_view(argv[1]) == writeHelpOption)
    return {.end = static_cast<int>(writeHelp(program, version, argv[2]))};
  if (const auto unknown = unknownWord(program, argc, argv)) {
    std::fprintf(stderr, "%s: %s\n", program.name.c_str(), unknown->c_str());
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
