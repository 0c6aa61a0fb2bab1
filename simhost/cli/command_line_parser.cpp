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
#include <string_view>
#include <system_error>
#include <utility>

namespace simhost {

namespace {

constexpr const char* writeHelpOption = "--write-help";

/// What --help ends with. A table takes what it leaves out from the one above it.
struct HelpEnd {
  HelpEnd(const CommandTable& table, const HelpEnd* above)
      : footer(above != nullptr && table.footer.empty() ? above->footer : table.footer),
        examples(above != nullptr && table.examples.empty() ? above->examples : table.examples),
        page(above != nullptr && table.page.empty() ? above->page : table.page) {}

  [[nodiscard]] std::string text(const std::string& manualPage) const {
    std::string all = footer;
    for (const std::string& example : examples)
      all += (&example == &examples.front() ? "\n\nExamples:\n  " : "\n  ") + example;
    all += "\n\nManual: man " + manualPage;
    return page.empty() ? all : all + ", docs/" + page;
  }

  const std::string& footer;
  const std::vector<std::string>& examples;
  const std::string& page;
};

class Parser final {
public:
  /// Where the first word names a command, the options of the others are not set up, and of its own only those that the
  /// words can mean: all of them cost more than a small task. --help lists all.
  Parser(const CommandTable& program, std::vector<std::string_view> words)
      : app_(program.description, program.name), words_(std::move(words)),
        asksForHelp_(std::ranges::any_of(words_, [](std::string_view word) {
          return word.starts_with("-h") || word.starts_with("--help");
        })) {
    addTo(app_, program, nullptr, program.name);
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
  void addTo(CLI::App& app, const CommandTable& table, const HelpEnd* above, const std::string& manualPage) {
    tables_[&app] = &table;
    const HelpEnd help(table, above);
    if (asksForHelp_) app.footer(help.text(manualPage));
    for (const OptionRow& row : table.options)
      if (canBeMeant(table, row)) addOption(app, row);
    for (const OptionRow& row : table.options) {
      if (!isGiven(row)) continue;
      CLI::Option* const option = app.get_option(row.name);
      for (const std::string& other : row.rules.excludes)
        if (CLI::Option* const excluded = app.get_option_no_throw(other)) option->excludes(excluded);
      for (const std::string& other : row.rules.needs)
        option->needs(app.get_option(other));
    }
    const auto isFirstWord = [this](const CommandTable& command) {
      return !words_.empty() && command.name == words_.front();
    };
    const bool isNamed = &app == &app_ && std::ranges::any_of(table.commands, isFirstWord);
    for (const CommandTable& command : table.commands) {
      CLI::App& added = *app.add_subcommand(command.name, command.description);
      if (!isNamed || isFirstWord(command))
        addTo(added, command, &help, &app == &app_ ? manualPage + "-" + command.name : manualPage);
    }
    if (!table.commands.empty()) app.require_subcommand(1);
  }

  /// Whether a word may be the row's: "--fla" and "--fla=52", "-e" and "-eTEXT".
  [[nodiscard]] bool isGiven(const OptionRow& row) const {
    return asksForHelp_ || isWordByPlace(row) ||
           std::ranges::any_of(words_, [&row](std::string_view word) { return word.starts_with(row.name); });
  }

  /// Whether the row matters: it may be given, or is missed when it is not given.
  [[nodiscard]] bool canBeMeant(const CommandTable& table, const OptionRow& row) const {
    const auto needsRow = [&](const OptionRow& other) {
      return std::ranges::find(other.rules.needs, row.name) != other.rules.needs.end() && isGiven(other);
    };
    return row.rules.isRequired || isGiven(row) || std::ranges::any_of(table.options, needsRow);
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
  const std::vector<std::string_view> words_;
  const bool asksForHelp_;
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
  Parser parser(program, {argv + 1, argv + std::max(argc, 1)});
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
