#include "circuits/check/rules.h"

#include "text/assertion.h"
#include "text/split.h"

#include <algorithm>
#include <array>

namespace circuits {

namespace {

constexpr auto error = Severity::error;
constexpr auto warning = Severity::warning;

constexpr auto workbook = CheckKind::workbook;
constexpr auto forms = CheckKind::forms;
constexpr auto templates = CheckKind::templates;
constexpr auto lisp = CheckKind::lisp;
constexpr auto allow = CheckKind::allow;

constexpr std::array<std::wstring_view, kindCount> kindNames = {
    L"workbook", L"forms", L"templates", L"run", L"tables", L"saved", L"lisp", L"allow"};
constexpr std::array<std::wstring_view, 3> severityNames = {L"error", L"warning", L"note"};

constexpr Rule table[] = {
    // Workbook: lists and sheets.
    {L"workbook-unreadable", workbook, error, L"The workbook cannot be read: {reason}.",
     L"Save it again from the spreadsheet program, or pack it from its CSV files.",
     L"a file that is cut off"},
    {L"sheet-missing", workbook, error, L"The workbook has no sheet {sheet} for {user}{similar}",
     L"Add the sheet, or correct its name.",
     L"`M3_REVERSE` in column 4 of `ZAN_CIRCS`, while the sheet is `M3_REV`"},
    {L"sheet-columns", workbook, error, L"The sheet {sheet} has {count} columns, so nothing of it is read.",
     L"It needs at least {needed}. Write a header for each column.", L"a circuit sheet of 8 columns"},
    {L"sheet-empty", workbook, error, L"The sheet {sheet} holds no {content}.",
     L"Fill the sheet, or take it out of the list of circuits.", L"a sheet with its header alone"},
    {L"sheet-unused", workbook, warning, L"No circuit of ZAN_CIRCS names the sheet {sheet}.",
     L"Name it in column 4 of a circuit, or delete the sheet.", L"a copy of `M3_DOL` that no type uses"},
    {L"circuit-field-missing", workbook, error, L"{circuit} has no {field}.",
     L"Fill the cell; a circuit needs a name, a type, a template and a worksheet.", L"an empty column 3"},
    {L"circuit-twice", workbook, warning,
     L"The circuit {circuit} is listed in row {row} already; its types are shown together with those.",
     L"Put all types of a circuit below each other, or give the circuit a name of its own.",
     L"`Power feeds` in two rows"},
    {L"type-twice", workbook, error,
     L"{type} is listed in row {row} already, and only that one can be chosen.",
     L"Give the type a name of its own, or delete the row.", L"`Direct on line` twice below one circuit"},
    {L"preset-key-missing", workbook, error,
     L"ANNO_CODE has no presets under the key {key} of {circuit}{similar}",
     L"Correct the key, or add its rows to ANNO_CODE.", L"`MOTR` in column 5, while ANNO_CODE has `MOTOR`"},
    {L"preset-key-unused", workbook, warning, L"No circuit uses the presets under the key {key}.",
     L"Name the key in column 5 of a circuit, or delete its rows.", L"a key that no circuit names"},
    {L"preset-twice", workbook, warning,
     L"The key {key} has the label {label} with the attribute {attribute} in row {row} already; this row is "
     L"not used.",
     L"Delete the row, or give it another label or attribute.", L"two rows `Location`, `LOC` below one key"},

    // Workbook: records, groups, options.
    {L"code-missing", workbook, error, L"Rows before the first CODE are not read.",
     L"Write a CODE in column 1 of this row or above it.", L"the first row below the header without a CODE"},
    {L"code-twice", workbook, error,
     L"CODE {code} is in row {row} already; the rows from here on are not used.",
     L"Give it a CODE of its own, or write the CODE only in the first row of its record.",
     L"the CODE repeated in each row"},
    {L"code-untitled", workbook, error, L"CODE {code} has no title, so its forms are not run.",
     L"Write a title in column 2, in the row of the CODE.", L"`WT01` with an empty column 2"},
    {L"group-empty", workbook, error, L"The group {group} has no options, so no form of this CODE is run.",
     L"Write its options in column 5 from this row on, or delete the group.",
     L"a title in column 4 and none in 5"},
    {L"group-without-default", workbook, error,
     L"The group {group} has no default, so a build without a question runs no form of CODE {code}.",
     L"Write x in column 3 of one of its options.", L"no `x` in the rows of `Operator`"},
    {L"default-twice", workbook, error,
     L"The group {group} has two defaults, {first} and {second}; their values are added.",
     L"Leave the x at one of them.", L"`x` at `Green` and at `Red`"},
    {L"default-mark", workbook, warning,
     L"The mark \"{mark}\" is not an x, so the option is not the default.", L"Write x, or empty the cell.",
     L"`yes` in column 3"},
    {L"option-without-group", workbook, error, L"The option {option} has no group above it and is not read.",
     L"Write the title of its group in column 4 of this row.", L"an option in a CODE without a group"},
    {L"option-without-value", workbook, warning, L"The option {option} has no value, which counts as 0.",
     L"Write its value in column 6.", L"an empty column 6 beside an option"},
    {L"option-text-missing", workbook, warning,
     L"\"{text}\" is not read, since columns 3 and 6 count only in a row with an option.",
     L"Write the option in column 5, or empty the cell.", L"`x` in a row without an option"},
    {L"option-value-twice", workbook, error,
     L"The options {first} and {second} have the same value {value}, so the same forms run for both.",
     L"Give each option of a group a value of its own.", L"`1` for `Local` and for `Remote`"},
    {L"value-not-whole", workbook, error, L"\"{text}\" is not a whole number; it is read as {read}.",
     L"Write digits only.", L"`40,5` in column 6, or the letter O in `1O`"},
    {L"pair-half", workbook, error,
     L"The row has {present} for its parts, but no {absent}; the pair is not used.",
     L"Fill both cells of the pair, or empty both.", L"`CB` in column 11 and nothing in 12"},
    {L"pair-without-control", workbook, warning, L"The table {table} has no form in column 10 beside it.",
     L"Write the form that looks up a part in column 10, or empty the pair.",
     L"`CB`, `Circuit breaker` alone"},
    {L"control-without-pairs", workbook, warning,
     L"The form names no table of parts in columns 11 and 12, so it shows no group and is never run.",
     L"Name a table of parts and a title, or delete the form.",
     L"`(site_part_lookup ...)` with empty columns 11, 12"},
    {L"control-group-place", workbook, error,
     L"The group {group} must be the first of its CODE: the dialog leaves out the first group, which is "
     L"{first}.",
     L"Move its row above the other groups.", L"`!MCC_CTRL` below another group"},
    {L"control-group-value", workbook, error,
     L"The option of {group} has the value {value}; nobody chooses it, and forms with this code run for no "
     L"other.",
     L"Give it the value 0.", L"`1` in column 6 beside `!MCC_CTRL`"},
    {L"control-forms", workbook, error,
     L"{group} has {count} forms in column 10; the dialog needs one for the motor or load and one for the "
     L"wires.",
     L"Write both forms in column 10.", L"`!MCC_CTRL` with one form"},

    // Workbook: combinations.
    {L"combination-unreached", workbook, error,
     L"No choice gives the code {code}, so these forms never run. The choices give {reached}.",
     L"Correct the code in column 7, or the values of the options.",
     L"forms for `3`, while the options are 1 and 2"},
    {L"forms-without-code", workbook, error,
     L"The code of these forms is blank, so they run only while nothing is chosen, which CODE {code} never "
     L"allows.",
     L"Write in column 7 for which sum of values they run.", L"an empty column 7 in a CODE with groups"},
    {L"combination-without-forms", workbook, warning,
     L"The choice {options} gives the code {sum}, for which CODE {code} draws nothing.",
     L"Write forms for {sum} in column 7, or give a choice that draws nothing the value 0.",
     L"options 1, 2, 3 and forms for 1 and 2"},
    {L"combination-twice", workbook, error, L"{first} and {second} both give the code {sum}.",
     L"Choose values whose sums differ: tens for one group, ones for the other.",
     L"groups with the values 1, 2 and 1, 2"},
    {L"combination-too-many", workbook, warning, L"CODE {code} has too many combinations to be checked.",
     L"Divide it into several CODEs with a marker each.", L"17 groups of two options"},
    {L"second-list-silent", workbook, error,
     L"Column 8 has no form for the code {code}, and then column 9 is not run either.",
     L"Move the form to column 8.", L"code 2 in column 9 alone"},

    // Forms.
    {L"form-unbalanced", forms, error, L"The parentheses do not match; from here on nothing is run.",
     L"Write one closing parenthesis for each that opens; those within quotes count too.",
     L"`(site_dot #xyz #scl 0 0`"},
    {L"form-trailing-text", forms, error, L"\"{text}\" is after the last form and is lost.",
     L"Delete it, or make it a form.", L"`(site_dot #xyz #scl 0 0) 12`"},
    {L"form-not-a-form", forms, error, L"The cell is no form, so it fails when it is run.",
     L"Write a function and its values in parentheses.", L"`site_dot #xyz`"},
    {L"form-without-function", forms, error, L"The form does not begin with the name of a function.",
     L"Write the function's name first.", L"`(12 #xyz)`, `()`"},
    {L"form-unknown-function", forms, error, L"The site's LISP has no function {function}{similar}",
     L"Correct the name, or define the function in the site's LISP.", L"`(site_contctor #xyz ...)`"},
    {L"form-not-exposed", forms, error, L"The function {function} is not exposed to forms.",
     L"Add (vz-korvo-defun '{function}) to the site's LISP.", L"a helper function of the site's LISP"},
    {L"form-argument-count", forms, error, L"{function} takes {takes} values, the form gives {given}.",
     L"Give it the values that its definition names.", L"`(site_dot #xyz #scl 0)`"},
    {L"form-unknown-variable", forms, error,
     L"{word} is not filled in here and arrives as a text{similar} Known here: {known}.",
     L"Correct the word.", L"`#date` for `#data`; `@fla` in column 8"},
    {L"form-word-is-text", forms, warning, L"{word} arrives as a text, not as the value of {variable}.",
     L"Write {variable}; if the text is meant, write it in quotes.", L"`xyz` for `#xyz`"},
    {L"form-number", forms, error, L"{word} is not a number and arrives as a text.",
     L"Write digits, with a decimal point and no sign but -.", L"`40,5`"},
    {L"form-two-points", forms, error, L"{word} has two points and is read as {read}.",
     L"Write one decimal point.", L"`1.2.3`"},
    {L"form-integer-wraps", forms, error,
     L"{word} has fewer than six characters and is passed in 16 bits, as {read}.",
     L"Write it as a real, {word}.0, or with leading zeros to six characters.", L"`40000`"},
    {L"form-nil", forms, error, L"{word} in this spelling is a text and counts as true.", L"Write {meant}.",
     L"`NIL`"},
    {L"form-nested-call", forms, error,
     L"{function} is not run within another form; its words become a list of texts.",
     L"Write (list ...) when a list is meant, or a function that does both steps.",
     L"`(site_dot (site_point 1 2) #scl 0 0)`"},
    {L"form-list-word", forms, error, L"The word list vanishes where it does not follow a parenthesis.",
     L"Write (list 1 2) for a list, \"list\" for the text.", L"`(site_dot #xyz #scl list 0 0)`"},
    {L"form-open-quote", forms, error, L"The text has no closing quote.", L"Write a quote at its end.",
     L"`(site_title #xyz #scl \"PUMP)`"},

    // Templates.
    {L"template-missing", templates, error, L"The site has no drawing {template}.",
     L"Correct the name, or add the drawing to the site.", L"`templates/motr3.json` in column 3"},
    {L"template-damaged", templates, error, L"The drawing cannot be read: {reason}.",
     L"Draw the template again, or take it from a copy.",
     L"a file that is cut off; a reference of a missing block"},
    {L"template-without-markers", templates, error,
     L"The template holds no marker, so nothing is drawn in it.",
     L"Insert references of ZAN_BV_MARKER_BLOCK in its model space.", L"a drawing with lines alone"},
    {L"marker-without-code", templates, error, L"The marker has no CODE and is passed over.",
     L"Give it the CODE of a record, or erase it.", L"an empty attribute `CODE`"},
    {L"marker-attribute", templates, error, L"The marker has no attribute {attribute}.",
     L"Insert the block ZAN_BV_MARKER_BLOCK again: it defines CODE, ORDER and MISC1.",
     L"a marker block of two attributes"},
    {L"marker-order", templates, error, L"ORDER is \"{order}\", which is not a number and is read as {read}.",
     L"Write a number; markers run from low to high.", L"`2O`"},
    {L"marker-order-twice", templates, warning,
     L"{second} has the same ORDER {order} as {first}; which one runs first depends on the drawing.",
     L"Give each its own ORDER.", L"`TITLE` and `DISC` with ORDER 1"},
    {L"marker-twice", templates, error, L"Two markers {code} are in the same place, so its forms run twice.",
     L"Erase one of them.", L"a marker pasted over itself"},
    {L"marker-without-record", templates, error,
     L"The sheet {sheet} has no record {code}, so nothing is drawn at this marker{similar}",
     L"Correct the marker's CODE, or add a record to the sheet.",
     L"a marker `DISK`, while the record is `DISC`"},
    {L"record-without-marker", templates, warning,
     L"No template of this sheet has a marker {code}, so its forms never run{similar}",
     L"Add the marker to a template, or delete the record.", L"a record `STAR` in a template without it"},
    {L"marker-before-motor", templates, error,
     L"{code} takes data of the motor or load, but runs before {motor}, whose ORDER is {order}.",
     L"Give it a higher ORDER.", L"`MOTOR` with ORDER 1, `MCTL` with 2"},
    {L"wire-without-ground", templates, warning,
     L"The template has {wire}, but no {ground} for the grounding conductor.", L"Add a marker {ground}.",
     L"`WT01-A` and `WT01E`"},
    {L"wire-number", templates, error,
     L"The conductors count from 1: {wire} is there, number {missing} is not.",
     L"Correct the numbers of the wire markers.", L"`WT01`, `WT03`"},
    {L"wire-suffix", templates, error,
     L"The wire position {wire} has no motor or load with the same letter; the template has {motor}.",
     L"Give it the letter of its motor or load.", L"`WT01-C` beside `MCTL-A`"},
    {L"wire-format", templates, error,
     L"The layer format {format} can hold the size only once, between two @.",
     L"Write one placeholder, such as BLK_@SIZE@.", L"`_WIRETYPE=@A@_@B@;`"},
    {L"wire-format-size", templates, warning,
     L"The layer format {format} has no @SIZE@, so wires of every size are on one layer.",
     L"Write @SIZE@ where the size belongs.", L"`_WIRETYPE=BLK;`"},
    {L"wire-numbers", templates, warning, L"_WIRENUMBERS is \"{value}\" and counts as 1.", L"Write 1 or 0.",
     L"`_WIRENUMBERS=no;`"},
    {L"wire-setting", templates, warning,
     L"The setting \"{setting}\" is not known and is passed over{similar}",
     L"Correct it; known are _WIRETYPE and _WIRENUMBERS.", L"`_WIRETYP=BLK_@SIZE@;`"},

    // LISP of the site.
    {L"lisp-file", lisp, error, L"The site has no {file}.",
     L"A site's LISP begins with {file} in its folder.", L"a folder without `site.lsp`"},
    {L"lisp-encoding", lisp, warning,
     L"The file {file} is not UTF-8, so letters beyond ASCII arrive changed.", L"Save it as UTF-8.",
     L"an umlaut saved in Latin 1"},
    {L"lisp-load", lisp, error, L"The site's LISP does not load: {error}.",
     L"Correct the form; what follows it in the same file was not loaded.", L"a missing parenthesis"},
    {L"lisp-loops", lisp, error, L"The site's LISP does not end: {error}.", L"Correct the loop.",
     L"`(while T)` in a file of the site"},
    {L"lisp-function-missing", lisp, error,
     L"The site's LISP has no function {function}; without it {without}{similar}",
     L"Define it; the manual on a site's LISP names what it answers.", L"no `c:zan_find_file`"},
    {L"lisp-not-exposed", lisp, error,
     L"The function {function} is not exposed to native code; so {without}.",
     L"Add (vz-korvo-defun '{function}) to the site's LISP.", L"`zan_get_active_dwg_wiretype` defined alone"},
    {L"lisp-function-fails", lisp, error, L"{function} ends with an error: {error}.", L"Correct it.",
     L"`(car 1)` in `qn_mdb_proj_dbfnam`"},
    {L"lisp-wrong-answer", lisp, error, L"{function} answers {answer}; expected is {expected}.",
     L"Correct it.", L"`c:zan_bv_figure_mccdb_fnam` with a file that is not there"},
    {L"lisp-variable", lisp, error, L"The variable {variable} holds {value}; expected is {expected}.",
     L"Set it in the site's LISP.", L"`GBL_qn_electcodestd` that nobody sets"},

    // Allowances.
    {L"allow-syntax", allow, error, L"The line is not \"rule | place | reason\": {reason}.",
     L"Write the rule's id, the place with * for any text, and why the finding is accepted.",
     L"`sheet-unused M3_OLD`"},
    {L"allow-unused", allow, warning, L"The allowance of {rule} matches no finding.",
     L"Delete it, or correct its place.", L"an allowance for a row that was put right"},
};

} // namespace

std::wstring_view severityName(Severity severity) {
  return severityNames[static_cast<std::size_t>(severity)];
}

std::wstring_view kindName(CheckKind kind) {
  return kindNames[static_cast<std::size_t>(kind)];
}

std::optional<CheckKind> kindOf(std::wstring_view name) {
  const auto* const found = std::ranges::find(kindNames, name);
  if (found == kindNames.end()) return std::nullopt;
  return static_cast<CheckKind>(found - kindNames.begin());
}

std::span<const Rule> rules() {
  return table;
}

const Rule* findRule(std::wstring_view id) {
  const auto* const found = std::ranges::find(table, id, &Rule::id);
  return found == std::end(table) ? nullptr : found;
}

const Rule& ruleOf(std::wstring_view id) {
  const Rule* rule = findRule(id);
  BRENVOLT_ASSERT(rule != nullptr, "a check names a rule that is not in the table");
  return *rule;
}

std::wstring rulesTable() {
  std::wstring text;
  for (int number = 0; number < kindCount; ++number) {
    const auto kind = static_cast<CheckKind>(number);
    if (std::ranges::none_of(table, [kind](const Rule& rule) { return rule.kind == kind; })) continue;
    text += L"### " + std::wstring(kindName(kind)) +
            L"\n\n| rule | severity | what is wrong | example | remedy |\n|---|---|---|---|---|\n";
    for (const Rule& rule : table) {
      if (rule.kind != kind) continue;
      text += L"| `" + std::wstring(rule.id) + L"` | ";
      text += std::wstring(severityName(rule.severity)) + L" | ";
      for (const std::wstring_view part : {rule.sentence, rule.example, rule.remedy})
        text += brenvolt::replaceAll(part, L"|", L"\\|") + L" | ";
      text.back() = L'\n';
    }
    text += L"\n";
  }
  text.pop_back();
  return text;
}

} // namespace circuits
