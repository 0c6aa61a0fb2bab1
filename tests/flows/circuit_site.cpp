#include "tests/flows/circuit_site.h"

#include "tests/support/golden.h"
#include "tests/support/sheets.h"

namespace brenvolt::test {

CircuitSite::CircuitSite(const SheetTexts& sheets, const std::map<std::string, std::string>& project)
    : project_(project) {
  if (!sheets.empty()) writeWorkbook(sheets);
  writeHistory(usualHistory());
}

void CircuitSite::writeWorkbook(const SheetTexts& sheets) const {
  std::vector<BookSheet> book;
  for (const auto& [name, rows] : sheets)
    book.push_back(sheetOf(fromUtf8(name), rows));
  writeBook(workbook(), book);
}

SheetTexts CircuitSite::usualSheets() {
  return {
      {"ZAN_CIRCS",
       {"circuit|type|template|sheet|presets", "Motors|Direct|dol.json|M_DOL|MOTOR",
        "|Reversing|rev.json|M_REV|", "Feeds|Heater|feed.json|FEED|NONE"}},
      {"ANNO_CODE",
       {"key|label|attribute|description|value|extra", "MOTOR|Place|LOC|Where it stands|mcc1|x",
        "|Purpose|DESC1|What it drives||", "|Tag|tag1|Its name||y"}},
  };
}

std::map<std::string, std::string> CircuitSite::usualProject() {
  return {
      {"BRENVOLT", "DWGIX,HDL,CIRCUIT,A,B,CODES,KEY\n"
                   "1,h=A1,t;w;s;\" Motors \";Direct;;1;0;0,,,M1=B1=1;M2=B2=2;K=C3=1,1-A1\n"
                   "1,h=A2,t;w;s;Feeds;Heater;;1;0;0,p,q,,1-A2\n"},
      {"COMP", "DWGIX,HDL,TAGNAME,INST,LOC,DESC1,DESC2,DESC3\n1,h=A1,1M,PLANT,MCC1,PUMP,,\n1,H=a2,1H,,,,,\n"
               "1,h=B1,1CB,HALL,MCC7,,,\n1,h=B2,1OL,HALL,MCC8,,,\n1,h=B2,1OLC,HALL,MCC9,,,\n"},
      {"TERMS", "DWGIX,HDL,TAGSTRIP,INST,LOC\n1,h=B1,TB1,,\n"},
      {"QN_M", "DWGIX,ATTR_NAME,ATTR_VAL\n1,IEC_INST,SITE\n1,IEC_LOC,ROOM\n"},
  };
}

std::string CircuitSite::history() const {
  return toUtf8(fromUtf16Le(bytesOf(folder_ / "zan_brenvolt.xml").substr(2)));
}

void CircuitSite::writeHistory(const std::string& xml) const {
  writeBytes(folder_ / "zan_brenvolt.xml", "\xFF\xFE" + toUtf16Le(fromUtf8(xml)));
}

std::string CircuitSite::usualHistory() {
  return R"(<?xml version="1.0" encoding="UTF-16"?><BrenvoltHistory Context="x" Version="1.0">)"
         R"(<Circuit Name="Motors"><CircuitType Name="Reversing">)"
         R"(<History Name="Pump" ComponentScale="2.000000" CircuitScale="3.500000"><Marker Code="M" Tag="M.1.1">)"
         R"(<SelectOption UI_TITLE="Switch" UI_PROMPT="Breaker" UI_VAL="1"/>)"
         R"(<ControlGroup><MotorSetup><Property Name="Load" Value="10"/></MotorSetup></ControlGroup></Marker></History>)"
         R"(<History Name="Fan"/></CircuitType></Circuit></BrenvoltHistory>)";
}

std::unique_ptr<PickerSession> CircuitSite::session(const std::string& steps) const {
  auto session = std::make_unique<PickerSession>(project_.file(), "[" + steps + "]");
  session->lisp().eval(
      "(defun c:zan_find_file (name where) (cond ((string=? name \"zan_brenvolt.xls\") \"" + workbook() +
      "\") ((string=? name \"none.xls\") nil) (T (string-append \"/templates/\" name))))"
      "(defun qn_mdb_proj_dbfnam (&optional project) project-database)"
      "(vz-korvo-defun 'qn_mdb_proj_dbfnam) (setq project-database \"" +
      project_.file() + "\" GBL_qn_bv_data (list \"\" nil 1.0 20.0 30.0 1.5 0 \"zan_brenvolt.xls\"))");
  return session;
}

std::string circuitStep(const std::string& actions) {
  return stepOf("ZanDlgCircuit", actions);
}

} // namespace brenvolt::test
