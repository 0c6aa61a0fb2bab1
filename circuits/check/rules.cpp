#include "circuits/check/rules.h"

#include "text/assertion.h"
#include "text/split.h"

#include <algorithm>
#include <array>

namespace circuits {

namespace {

constexpr auto error = Severity::error;
constexpr auto warning = Severity::warning;
constexpr auto note = Severity::note;

constexpr auto workbook = CheckKind::workbook;
constexpr auto forms = CheckKind::forms;
constexpr auto templates = CheckKind::templates;
constexpr auto run = CheckKind::run;
constexpr auto tables = CheckKind::tables;
constexpr auto saved = CheckKind::saved;
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
    {L"only-with-unknown", workbook, error,
     L"The group {group} is offered only with {option}, which no group above it in CODE {code} has.",
     L"Write the text of an option of a group above it.", L"`Fusible` for the option `Fusible switch`"},
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

    // Circuits built in memory.
    {L"run-form-fails", run, error, L"The form fails in {circuit} with {choices}: {error}.",
     L"Correct the form, or the function of the site's LISP.", L"a form whose function calls `(car 1)`"},
    {L"run-form-loops", run, error, L"The form does not end in {circuit} with {choices}: {error}.",
     L"Correct the loop in the site's LISP. Other circuits were tried, further choices of this one were not.",
     L"`(while T)` in a function that a form calls"},
    {L"run-build-fails", run, error, L"{circuit} cannot be built with {choices}: {error}.",
     L"Correct what is named; a build that fails leaves nothing in the drawing.",
     L"templates that insert each other without end"},
    {L"run-question", run, error, L"{circuit} asks, though it is built without a dialog: {question}",
     L"Correct what the question names.", L"no marker of the template has a record"},
    {L"run-no-tag", run, warning, L"The component {block} has no tag with {choices}.",
     L"Let the form that places it fill TAG1.", L"`TAG1` left empty"},
    {L"run-no-rating", run, warning,
     L"The component {tag} ({block}) has no rating with {choices}, though the tables rate the motor.",
     L"Let the form take the rating from #data2 by a code of MOTOR_I_DESC, or fill RATING1 otherwise.",
     L"`\"BRAKER\"` for the component `BREAKER`"},
    {L"run-no-part", run, warning,
     L"The component {tag} ({block}) does not get the part {part} that was chosen from {table}, with "
     L"{choices}.",
     L"Let the form that places it take the part of {table} from #data, or correct the table in columns 11 "
     L"and 12.",
     L"`DS` in column 11, while the form takes the part of `CB`"},
    {L"run-open-wire", run, warning, L"A wire on layer {layer} ends at nothing here with {choices}.",
     L"Lead it to a symbol or to another wire, or place the marker of a wire where it begins.",
     L"a wire 40 long where the symbol is at 50"},
    {L"run-wire-on-wire", run, warning,
     L"A wire on layer {layer} ends on one on layer {other} without a dot, so it is not clear whether they "
     L"are joined; with {choices}.",
     L"Place a dot, or lead the wire elsewhere.", L"a wire that ends in the middle of another one"},
    {L"run-bridged", run, error,
     L"A wire joins both ends of a pole of {tag}, so it switches nothing, with {choices}.",
     L"End the wires at the terminals of the component.", L"a wire that goes on below a breaker"},
    {L"run-lines-joined", run, error, L"A wire joins the lines {first} and {second} here with {choices}.",
     L"Lead the wire elsewhere: it is a short circuit.", L"a wire across the poles of a breaker"},
    {L"run-texts-overlap", run, warning, L"\"{first}\" and \"{second}\" are on each other with {choices}.",
     L"Move one of them.", L"two texts at one point"},
    {L"run-wire-unsized", run, warning,
     L"The wire is on layer {layer}; its size asks for {expected}. Built with {choices}.",
     L"Let the form take the wire's size and layer from #data.", L"a form that draws on a fixed layer"},
    {L"run-wire-layer", run, warning, L"The layer {layer} is not a wire layer, so its lines are not wires.",
     L"Give the layer wire settings where the site's LISP makes it.", L"`(layer-define \"BLK_14AWG\")`"},

    // Engineering tables: files and columns.
    {L"tables-missing", tables, error, L"The site has no engineering tables.",
     L"Add a folder tables with CSV files, or engineering.db, or name a database in "
     L"c:zan_bv_figure_mccdb_fnam.",
     L"a site without `tables/`"},
    {L"table-unreadable", tables, error, L"The table cannot be read: {reason}.",
     L"Correct the file, or the connection string.", L"a database that is cut off"},
    {L"table-encoding", tables, error, L"Row {row} is not UTF-8.", L"Save the file as UTF-8.",
     L"a file saved in Latin 1"},
    {L"table-separator", tables, error, L"The columns are separated by {separator}; only commas are read.",
     L"Save the file with commas, and cells that hold a comma in quotes.", L"`SIZE;SIZE_DESC;75C`"},
    {L"table-row-length", tables, error, L"The row has {count} cells, the header has {columns}.",
     L"Complete the row; a cell that holds a comma belongs in quotes.", L"`14,14 AWG,20`"},
    {L"table-open-quote", tables, error, L"A cell in quotes has no end.", L"Write the closing quote.",
     L"`\"14 AWG`"},
    {L"table-empty", tables, error, L"The file holds no column names.",
     L"Write a header, or delete the file.", L"an empty file"},
    {L"table-header-empty", tables, error, L"Column {column} has no name.", L"Name it, or delete the column.",
     L"`SIZE,,75C`"},
    {L"table-header-twice", tables, error,
     L"The column {column} is there twice; the second is not found by its name.",
     L"Rename or delete one of them.", L"`75C` twice"},
    {L"table-header-blank", tables, error,
     L"The name \"{column}\" begins or ends with a blank and is not found.", L"Delete the blank.",
     L"`SIZE, SIZE_DESC`"},
    {L"table-name", tables, warning,
     L"No part of the program reads a table {table}; did you mean the family {family}?", L"Correct the name.",
     L"`AMPS_CU_AWG_NEC`"},
    {L"table-column", tables, error, L"The table {table} has no column {column}{similar}",
     L"Correct the header.", L"`SIZEDESC` for `SIZE_DESC`"},
    {L"table-without-rows", tables, warning, L"The table {table} has no rows.", L"Fill it, or delete it.",
     L"a header alone"},
    {L"table-cell-empty", tables, error, L"The column {column} must be filled in every row.",
     L"Fill the cell, or delete the row.", L"a motor without a type"},
    {L"table-number", tables, error, L"\"{text}\" is not a number; it is read as {read}.",
     L"Write digits with a decimal point.", L"`2O`"},
    {L"table-decimal-comma", tables, error, L"\"{text}\" has a decimal comma; it is read as {read}.",
     L"Write a decimal point.", L"`17,5`"},
    {L"table-key-twice", tables, error, L"The row has the same key as row {row}: {columns}.",
     L"Delete one of the rows, or correct it.", L"two rows of size `12`"},

    // Engineering tables: families.
    {L"table-borrowed", tables, note, L"There is no table {table}; the code {code} takes {borrowed}.",
     L"Add the table, or accept it with a reason.", L"`MOTOR_I_MAP_IEC` missing"},
    {L"table-missing", tables, error,
     L"There is no table {table}, nor one to borrow: the code {code} lacks {use}.", L"Add the table.",
     L"no `FILL_NEC`"},
    {L"size-missing", tables, error, L"The size {size} is not in {table}: {consequence}.", L"Add {added}.",
     L"`700` in AMP and not in XL&R"},

    // Engineering tables: wires.
    {L"ampacity-order", tables, error, L"The ampacity {value} is below that of the size above it, {before}.",
     L"Correct it, or the order of the rows.", L"25 A after 30 A"},
    {L"ampacity-columns", tables, error,
     L"The ampacity {value} is below the {before} of the cooler column {column}.", L"Correct it.",
     L"20 A at 90C, 25 A at 75C"},
    {L"ambient-bracket", tables, error,
     L"The column \"{column}\" is not an ambient temperature above {before}C.",
     L"Name the brackets by their upper end and a letter, rising, from the fifth column on.",
     L"`40C`, `35C`"},
    {L"factor-hole", tables, warning, L"The factor to the left is empty, between two that are filled.",
     L"Fill the gap; an empty bracket cannot be chosen.", L"`1.00,,0.88`"},
    {L"factor-value", tables, error, L"The factor {factor} cannot be right: {rule}.", L"Correct it.",
     L"`8.0` for `0.80`"},
    {L"insulation-column", tables, error,
     L"The table {table} has no column {column} for this insulation{similar}",
     L"Correct TEMP, or add the column.", L"`57C` for `75C`"},
    {L"insulation-description", tables, error,
     L"The description {fault}, so the insulation is not found by it.",
     L"Begin it with the insulation's code, without a slash.", L"`wet/dry`"},
    {L"impedance-cell", tables, error, L"\"{text}\" is not \"reactance;resistance\" in ohms per kilometre.",
     L"Write two numbers with a semicolon, or leave the cell empty to have it interpolated.", L"`0.177,6.6`"},
    {L"impedance-alone", tables, error,
     L"The cell of {size} is empty, and no other size of the same unit has a value to interpolate from.",
     L"Fill the cell.", L"a column without any value"},
    {L"impedance-order", tables, warning,
     L"The resistance {value} is above that of the size above it, {before}.",
     L"Correct it, or the order of the rows.", L"`0.17;66` for `0.17;6.6`"},
    {L"raceway-unknown", tables, warning, L"The table {table} has no column {raceway}{similar}",
     L"Correct the code.", L"`STEL` for `STEEL`"},
    {L"fill-rows", tables, error, L"The table has {count} rows; the last is for \"more\", so two are needed.",
     L"Add the ranges.", L"one row"},
    {L"fill-order", tables, error,
     L"The limit {value} is not above the one before it, {before}: the ranges overlap.",
     L"Write the limits in rising order.", L"3, 6, 6"},
    {L"fill-factor-order", tables, warning,
     L"The factor {value} is above the one for fewer conductors, {before}.", L"Correct it.", L"0.70, 0.80"},
    {L"ground-limit-twice", tables, error,
     L"The limit {value} is there twice; which size serves it is not clear.", L"Correct one of them.",
     L"two rows with MAX 60"},
    {L"ground-order", tables, warning, L"The limit {value} is below the one of the size above it, {before}.",
     L"Correct it, or the order of the rows.", L"100, 60"},
    {L"ground-end", tables, warning,
     L"The rating reaches {value}, and {table} ends at {largest}: no grounding conductor is found for it.",
     L"Add larger sizes, or correct the formula.", L"`i*250`"},

    // Engineering tables: motors and components.
    {L"motor-without-current", tables, error,
     L"A row of {table} has no full-load current, so nothing is sized by it.", L"Fill FLA (A).",
     L"an empty `FLA (A)`"},
    {L"motor-choice", tables, warning, L"{setting} of {options} does not offer {value}.",
     L"Add it to the list, or correct the row.", L"a motor for 4600 V"},
    {L"motor-type-unrated", tables, warning,
     L"The table {table} has no formulas for motors of the type {type}.", L"Add a row for the type.",
     L"`Inducton`"},
    {L"component-without-formula", tables, error, L"The table {table} has no column {component}{similar}",
     L"Add the column, or correct the code.", L"`BRAKER`"},
    {L"component-without-steps", tables, error, L"The table {table} has no ratings for {component}.",
     L"Add its rows.", L"no row `BREAKER`"},
    {L"formula-empty", tables, warning, L"The formula is empty, which counts as 1 ampere.",
     L"Write the formula.", L"an empty cell of MOTOR_I_CALC"},
    {L"formula-illegal", tables, error,
     L"\"{formula}\" is not a formula: for {current} A it cannot be worked out, and the component gets no "
     L"rating.",
     L"Try it with brenvolt expr.", L"`i*2,5`"},
    {L"formula-slip", tables, error, L"\"{formula}\" is not what it seems: {slip}.",
     L"Try it with brenvolt expr.", L"`2(i)`, `i*`, `i==20`"},
    {L"formula-value", tables, error, L"\"{formula}\" gives {value} for {current} A.",
     L"Try it with brenvolt expr.", L"`0-i`"},
    {L"steps-end", tables, warning,
     L"{component} reaches {value} A for the motors of {table}, and its ratings end at {largest} A: the "
     L"largest motors have none.",
     L"Add larger ratings.", L"a 40 A breaker as the last, and a motor of 30 A"},
    {L"steps-gap", tables, warning, L"The ratings of {component} jump from {from} to {to} A.",
     L"Add the ratings between.", L"20, 100"},

    // Engineering tables: options.
    {L"option-missing", tables, warning, L"{table} has no {setting}; {without}.", L"Add it.",
     L"no row `FLA_MULT`"},
    {L"option-unknown", tables, warning, L"The setting {setting} is not known{similar}", L"Correct the code.",
     L"`FLA_MULTI`"},
    {L"option-value", tables, error, L"{setting} is {value}; expected is {expected}.", L"Correct it.",
     L"a power factor of `85`"},
    {L"option-list", tables, error, L"The list has an empty item; what follows it is not offered.",
     L"Delete the empty item.", L"`230;;460`"},
    {L"option-default", tables, warning, L"The default {value} of {setting} is not in its list.",
     L"Add it to the list, or choose one of it.", L"`480` with the list `230;460`"},
    {L"option-size", tables, warning,
     L"None of the sizes {value} is in {table}, so nothing runs in parallel.",
     L"Write a size as the column SIZE has it.", L"`1/0AWG`"},
    {L"option-insulation", tables, error, L"No table has the insulation {value}{similar}", L"Correct it.",
     L"`THWM`"},

    // Saved configurations.
    {L"saved-unreadable", saved, error, L"The saved configurations cannot be read: {reason}.",
     L"Take the file from a copy; the next save keeps it beside a new one.", L"a file that is cut off"},
    {L"saved-twice", saved, warning, L"The configuration {saved} is there twice; only the first is used.",
     L"Delete one with brenvolt history.", L"the file edited by hand"},
    {L"saved-circuit-gone", saved, error, L"The workbook has no such circuit any more: {saved}{similar}",
     L"Bring the circuit back, or delete the configuration.", L"a circuit that was renamed"},
    {L"saved-sheet", saved, warning, L"{saved} was saved with the sheet {sheet}; today the type has {today}.",
     L"Build it and save it again.", L"a type that got another sheet"},
    {L"saved-code-gone", saved, error,
     L"{saved} holds choices for {code}, which the sheet {sheet} has no more.",
     L"Build it and save it again.", L"a CODE that was renamed"},
    {L"saved-group-gone", saved, error,
     L"{saved} holds \"{option}\" for the group {group}, which is gone; the default is taken.",
     L"Build it and save it again.", L"a group that was renamed"},
    {L"saved-option-gone", saved, error,
     L"{saved} holds \"{option}\" for {group}; no option has its value {value}, and the default is taken.",
     L"Build it and save it again.", L"an option that was deleted"},
    {L"saved-option-changed", saved, error,
     L"{saved} holds \"{option}\" for {group}; its value belongs to \"{today}\" today, which is taken "
     L"instead.",
     L"Give the options their old values, or build it and save it again.", L"values of two options swapped"},
    {L"saved-part-gone", saved, warning,
     L"{saved} holds a part of {table} for \"{title}\"; the sheet no longer has this table with this title.",
     L"Build it and save it again.", L"a pair of columns 11 and 12 that was renamed"},
    {L"saved-table-gone", saved, error, L"{saved} holds a wire of {metal} in {standard}, which has no table.",
     L"Add the table, or build it and save it again.", L"a metal that was taken out"},
    {L"saved-size-gone", saved, error, L"{saved} holds the size {size}, which {table} no longer has.",
     L"Build it and save it again.", L"a size that was deleted"},
    {L"saved-motor-gone", saved, warning, L"{saved} holds {motor}, which the tables no longer have.",
     L"Add the row, or build it and save it again.", L"a motor that was deleted, or got another speed"},
    {L"saved-current-changed", saved, error,
     L"{saved} holds {motor} with {current} A, for which its wires are sized; the tables have {today} A.",
     L"Choose the motor again in the configuration, build it and save it again; or correct the row.",
     L"`14` A corrected to `44` A"},

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

} // namespace circuits
