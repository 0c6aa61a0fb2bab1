// Setting up a host for the services on engineering tables.
#include "simhost/cli/engineering_run.h"

#include "simhost/cli/code_standard.h"
#include "simhost/host/errors.h"
#include "simhost/site/site_database.h"
#include "text/encoding.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace simhost {

using brenvolt::fromUtf8;

namespace {

constexpr std::wstring_view codeStandardSymbol = L"GBL_qn_electcodestd";

SessionOptions optionsOf(const std::string& site) {
  SessionOptions options;
  options.siteFolder = site;
  return options;
}

std::wstring checkedCode(const std::string& code) {
  const bool isWord = !code.empty() && std::all_of(code.begin(), code.end(), [](unsigned char c) {
    return std::isalnum(c) || c == '-' || c == '.' || c == ' ';
  });
  if (!isWord) throw BadInput("--standard-code: \"" + code + "\" is no code standard");
  return fromUtf8(code);
}

} // namespace

OptionRow SiteOptions::siteRow() {
  return {"--site", &site, "Folder of the site, with its tables", "DIR", {.isRequired = true}};
}

OptionRow SiteOptions::standardRow() {
  return {"--standard-code", &standardCode, "Code standard; " + standardCode + " without it", "CODE"};
}

SiteTables::SiteTables(const std::string& site) : database_(siteDatabase(site)) {
  openDatabase(connection_, database_.string(), DatabaseUse::read);
}

EngineeringRun::EngineeringRun(const std::string& site, const std::string& standardCode)
    : tables_(site), standardCode_(checkedCode(standardCode)) {
  session_ = std::make_unique<Session>(optionsOf(site), windows_);
  Document& document = session_->openDocument({}, std::make_unique<DrawingDatabase>());
  document.interpreter().setValue(codeStandardSymbol, lisp::Value::string(standardCode_));
  if (const auto fault = codeStandardFault(connection(), standardCode_))
    throw BadInput("--standard-code: " + *fault);
}

} // namespace simhost
