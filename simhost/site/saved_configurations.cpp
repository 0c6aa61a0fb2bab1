// Joining the history file with the workbook's list of circuits.
#include "simhost/site/saved_configurations.h"

#include "platform/xml_document.h"
#include "simhost/host/errors.h"
#include "simhost/site/open_database.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

namespace {

struct CircuitRow {
  std::wstring circuit;
  std::wstring type;
  std::wstring drawingTemplate;
  std::wstring worksheet;
};

std::vector<CircuitRow> circuitsOf(const std::string& workbook) {
  brenvolt::ZanOleDbConnection connection;
  openDatabase(connection, workbook, DatabaseUse::read);
  brenvolt::ZanOleDbCommand command;
  command.SetConnection(&connection);
  command.SetCommandText(L"SELECT * FROM [ZAN_CIRCS$]");
  if (command.Execute() != brenvolt::dbStatus::success)
    throw BadInput(workbook + ": " + toUtf8(command.ErrorInfo().GetErrorInfo(false)));
  std::vector<CircuitRow> rows;
  std::wstring circuit; // named once, ahead of its types
  while (command.FetchNext() == brenvolt::dbStatus::success) {
    const std::wstring named = command.FieldAsString(1);
    if (!named.empty()) circuit = named;
    rows.push_back({circuit, command.FieldAsString(2), command.FieldAsString(3), command.FieldAsString(4)});
  }
  return rows;
}

} // namespace

std::vector<SavedConfiguration> savedConfigurations(const std::string& site) {
  const std::filesystem::path workbook =
      std::filesystem::absolute(std::filesystem::path(site) / "zan_brenvolt.xls").lexically_normal();
  const std::vector<CircuitRow> circuits = circuitsOf(workbook.string());
  const std::filesystem::path file = std::filesystem::path(workbook).replace_extension(".xml");
  std::vector<SavedConfiguration> found;
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return found;
  brenvolt::XmlDocument document;
  std::wstring reason;
  if (!document.load(fromUtf8(file.string()), reason)) throw BadInput(file.string() + ": " + toUtf8(reason));
  for (const brenvolt::XmlElement& circuit : document.root().children(L"Circuit"))
    for (const brenvolt::XmlElement& type : circuit.children(L"CircuitType"))
      for (const brenvolt::XmlElement& history : type.children(L"History")) {
        const std::wstring circuitName = circuit.attribute(L"Name");
        const std::wstring typeName = type.attribute(L"Name");
        const auto row = std::find_if(circuits.begin(), circuits.end(), [&](const CircuitRow& known) {
          return brenvolt::equalsOrdinalNoCase(known.circuit, circuitName) &&
                 brenvolt::equalsOrdinalNoCase(known.type, typeName);
        });
        if (row == circuits.end()) continue;
        found.push_back(
            {row->circuit, row->type, history.attribute(L"Name"), row->drawingTemplate, row->worksheet,
             fromUtf8(workbook.string())});
      }
  return found;
}

} // namespace simhost
