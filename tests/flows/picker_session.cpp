#include "tests/flows/picker_session.h"

#include "host/resources.h"
#include "plugin/function_table.h"
#include "plugin/process_record.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>
#include <sqlite3.h>

#include <memory>

namespace brenvolt::test {

namespace {

using Database = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

Database openFile(const std::string& file) {
  sqlite3* database = nullptr;
  REQUIRE_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  return {database, sqlite3_close};
}

int addRow(void* text, int count, char** cells, char**) {
  std::string& rows = *static_cast<std::string*>(text);
  for (int i = 0; i < count; ++i)
    rows += (i == 0 ? "" : "|") + std::string(cells[i] == nullptr ? "NULL" : cells[i]);
  rows += "\n";
  return 0;
}

std::vector<simhost::AnswerStep> parseSteps(std::string_view steps) {
  return simhost::parseAnswers(
      R"({"format": "brenvolt-answers", "version": 1, "steps": )" + std::string(steps) + "}", "the test");
}

} // namespace

void PickerTables::run(const std::string& statements) const {
  const Database database = openFile(file());
  REQUIRE_EQ(sqlite3_exec(database.get(), statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
}

std::string PickerTables::rows(const std::string& query) const {
  const Database database = openFile(file());
  std::string text;
  REQUIRE_EQ(sqlite3_exec(database.get(), query.c_str(), addRow, &text, nullptr), SQLITE_OK);
  return text;
}

std::string stepOf(const std::string& dialog, const std::string& actions) {
  return R"~({"dialog": ")~" + dialog + R"~(", "do": [)~" + actions + "]}";
}

std::string stepsOfFile(const std::filesystem::path& file) {
  const std::string text = bytesOf(file);
  const std::size_t list = text.find('[');
  return text.substr(list, text.rfind(']') - list + 1);
}

TableTexts fewMotorsAndLoads() {
  return {
      {"MOTOR_NEC",
       "ID,type,Phase,Voltage (V),Speed (RPM),Load,Units,FLA (A),Frequency (HZ),Description,Maker\n"
       "1,Induction,3,460,1800,5,HP,7.6,60,small,X\n"
       "2,Induction,3,460,1800,10,HP,14,60,,X\n"
       "3,Induction,3,230,1800,10,HP,28,60,,X\n"
       "4,Synchronous,3,460,1200,25,HP,26,60,,X\n"
       "5,Induction,3,460,3600,1,HP,,60,no current,X\n"},
      {"FEED_NEC", "ID,Type,Phase,Voltage (V),Load,Units,FLA (A),Frequency (HZ),Description\n"
                   "1,Heater,1,120,1,kW,8.33,60,\n"
                   "2,Heater,3,480,15,kW,18.04,60,\n"
                   "3,Oven,3,480,20,kW,24.06,60,\n"},
      {"OPT_NEC", "CODE,DEFAULT,LIST\nFLA_MULT,1.15,1;1.15\n"},
  };
}

PickerSession::PickerSession(const std::filesystem::path& database, std::string_view steps)
    : SampleSession(parseSteps(steps)), database_(database.string()) {
  resetProcessRecord();
  registerFunctions();
  eval("(defun c:zan_bv_figure_mccdb_fnam () \"" + database_ + "\")");
}

std::string PickerSession::kept(std::wstring_view dialog, std::wstring_view name) {
  return toUtf8(lisp().host().settings().value(dialog, name).value_or(L"-"));
}

std::string PickerSession::recording() {
  return toUtf8(replaceAll(fromUtf8(lisp().windows().recording()), fromUtf8(database_), L"engineering.db"));
}

} // namespace brenvolt::test
