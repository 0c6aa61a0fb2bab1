// Manual pages in the macros of man(7).
#include "simhost/cli/help_files.h"

#include <cctype>

namespace simhost {

namespace {

/// A text of the tables inside a page: hyphens are typed as they are, and no line begins with a request.
std::string inPage(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if ((escaped.empty() || escaped.back() == '\n') && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == '\\')
      escaped += "\\e";
    else if (c == '-')
      escaped += "\\-";
    else
      escaped += c;
  }
  return escaped;
}

std::string upperCase(std::string text) {
  for (char& c : text)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string valueOf(const OptionRow& row) {
  if (std::holds_alternative<bool*>(row.target)) return {};
  return row.typeName.empty() ? "TEXT" : row.typeName;
}

class Page final {
public:
  Page(const std::string& name, const std::string& version) {
    text_ = ".TH " + upperCase(inPage(name)) + " 1 \"\" \"" + inPage(version) + "\" \"User Commands\"\n";
  }

  void section(const char* title) { text_ += std::string(".SH ") + title + "\n"; }
  void subsection(const std::string& title) { text_ += ".SS " + inPage(title) + "\n"; }
  void paragraph(std::string_view text) { text_ += ".PP\n" + inPage(text) + "\n"; }
  void line(std::string_view text) { text_ += inPage(text) + "\n"; }

  void synopsis(const std::string& command, const CommandTable& table) {
    text_ += ".B " + inPage(command) + "\n";
    bool hasMore = false;
    for (const OptionRow& row : table.options) {
      if (isWordByPlace(row)) continue;
      if (!row.rules.isRequired)
        hasMore = true;
      else
        text_ += ".BI \"" + inPage(row.name) + " \" " + inPage(valueOf(row)) + "\n";
    }
    if (hasMore) text_ += "[\\fIOPTIONS\\fR]\n";
    for (const OptionRow& row : table.options)
      if (isWordByPlace(row))
        text_ +=
            row.rules.isRequired ? ".I " + inPage(row.name) + "\n" : "[\\fI" + inPage(row.name) + "\\fR]\n";
    if (!table.commands.empty()) text_ += ".I SUBCOMMAND\n";
    text_ += ".br\n";
  }

  void options(const CommandTable& table) {
    for (const OptionRow& row : table.options) {
      if (isWordByPlace(row))
        text_ += ".TP\n.I " + inPage(row.name) + "\n";
      else
        text_ += ".TP\n.BI \"" + inPage(row.name) + (valueOf(row).empty() ? "" : " ") + "\" \"" +
                 inPage(valueOf(row)) + "\"\n";
      text_ += (row.help.empty() ? "\\&" : inPage(row.help)) + (row.help.ends_with('.') ? "\n" : ".\n");
    }
  }

  void example(const std::string& command) { text_ += ".PP\n.nf\n" + inPage(command) + "\n.fi\n"; }

  void entry(const std::string& name, const std::string& description) {
    text_ += ".TP\n.B " + inPage(name) + "\n" + inPage(description) + ".\n";
  }

  [[nodiscard]] const std::string& text() const { return text_; }

private:
  std::string text_;
};

void addCommandParts(Page& page, const std::string& words, const CommandTable& table) {
  page.section("SYNOPSIS");
  if (table.commands.empty()) page.synopsis(words, table);
  for (const CommandTable& command : table.commands)
    page.synopsis(words + " " + command.name, command);
  page.section("DESCRIPTION");
  page.line(upperCase(table.description.substr(0, 1)) + table.description.substr(1) + ".");
  if (!table.footer.empty()) page.paragraph(table.footer);
  if (!table.options.empty()) page.section("OPTIONS");
  page.options(table);
  if (!table.commands.empty()) page.section("SUBCOMMANDS");
  for (const CommandTable& command : table.commands) {
    page.subsection(command.name);
    page.line(upperCase(command.description.substr(0, 1)) + command.description.substr(1) + ".");
    page.options(command);
  }
  if (!table.examples.empty()) page.section("EXAMPLES");
  for (const std::string& example : table.examples)
    page.example(example);
}

void addEnd(Page& page, const CommandTable& program, const CommandTable& table) {
  page.section("EXIT STATUS");
  page.line(
      "0 done, 1 wrong arguments, 2 unexpected error, 3 bad input, 4 cannot write, 5 findings of a check.");
  page.section("SEE ALSO");
  page.line(
      (&program == &table ? program.name + " --help" : program.name + "(1)") +
      (table.page.empty() ? "" : ", /usr/share/doc/brenvolt/" + table.page));
}

} // namespace

std::vector<HelpFile> manualPages(const CommandTable& program, const std::string& version) {
  std::vector<HelpFile> pages;
  Page whole(program.name, version);
  whole.section("NAME");
  whole.line(program.name + " - " + program.description);
  if (program.commands.empty()) {
    addCommandParts(whole, program.name, program);
  } else {
    whole.section("SYNOPSIS");
    whole.synopsis(program.name, program);
    whole.section("DESCRIPTION");
    whole.line(
        program.description + ". Each subcommand has a page of its own, as " + program.name + "-" +
        program.commands.front().name + "(1).");
    whole.section("SUBCOMMANDS");
    for (const CommandTable& command : program.commands)
      whole.entry(command.name, command.description);
  }
  addEnd(whole, program, program);
  pages.push_back({"man/" + program.name + ".1", whole.text()});
  for (const CommandTable& command : program.commands) {
    const std::string name = program.name + "-" + command.name;
    Page page(name, version);
    page.section("NAME");
    page.line(name + " - " + command.description);
    addCommandParts(page, program.name + " " + command.name, command);
    addEnd(page, program, command);
    pages.push_back({"man/" + name + ".1", page.text()});
  }
  return pages;
}

} // namespace simhost
