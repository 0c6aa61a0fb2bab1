// Setting up a host for the services on engineering tables.
#include "simhost/site/engineering_run.h"

#include "simhost/host/errors.h"
#include "simhost/site/code_standard.h"
#include "simhost/site/site_database.h"
#include "text/encoding.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <utility>

namespace simhost {

using brenvolt::fromUtf8;

namespace {

SessionOptions optionsOf(const std::string& site) {
  SessionOptions options;
  options.siteFolder = site;
  return options;
}

std::wstring checkedCode(const std::string& code) {
  const bool isWord = !code.empty() && std::all_of(code.begin(), code.end(), [](unsigned char c) {
    return std::isalnum(c) || c == '-' || c == '.' || c == ' ';
  });
  if (!isWord) throw BadInput("--standard-code: \"" + code + "\" is not an electrical code");
  return fromUtf8(code);
}

} // namespace

SiteTables::SiteTables(const std::string& site) {
  openDatabase(connection_, siteDataSource(site), DatabaseUse::read);
  std::wstring source;
  connection_.GetDatasource(source);
  database_ = brenvolt::toUtf8(source);
}

EngineeringRun::EngineeringRun(const std::string& site, const std::string& standardCode)
    : tables_(site), standardCode_(checkedCode(standardCode)) {
  session_ = std::make_unique<Session>(optionsOf(site), windows_);
  Document& document = session_->openDocument({}, std::make_unique<DrawingDatabase>());
  needStandard();
  document.interpreter().setValue(codeStandardSymbol, lisp::Value::string(standardCode_));
}

EngineeringRun::EngineeringRun(Session& running, const std::string& site, const std::string& standardCode)
    : tables_(site), standardCode_(checkedCode(standardCode)) {
  needStandard();
  borrowed_ = running.documents().current();
  former_ = borrowed_->interpreter().value(codeStandardSymbol);
  borrowed_->interpreter().setValue(codeStandardSymbol, lisp::Value::string(standardCode_));
}

EngineeringRun::~EngineeringRun() {
  if (borrowed_ != nullptr) borrowed_->interpreter().setValue(codeStandardSymbol, former_);
}

void EngineeringRun::needStandard() {
  if (const auto fault = codeStandardFault(connection(), standardCode_))
    throw BadInput("--standard-code: " + *fault);
}

SiteTables::~SiteTables() {
  if (!isChecked_)
    for (const brenvolt::StatementFailure& failure : watch_.failures())
      std::fprintf(
          stderr, "brenvolt: %s: %s (%s)\n", database_.c_str(), brenvolt::toUtf8(failure.reason).c_str(),
          brenvolt::toUtf8(failure.statement).c_str());
  for (const brenvolt::TableFallback& fallback : watch_.fallbacks())
    std::fprintf(
        stderr, "brenvolt: table %s is missing; %s is used instead\n",
        brenvolt::toUtf8(fallback.wanted).c_str(), brenvolt::toUtf8(fallback.used).c_str());
}

void SiteTables::needSuccess() {
  isChecked_ = true;
  for (const brenvolt::StatementFailure& failure : watch_.failures())
    throw BadInput(
        database_ + ": " + brenvolt::toUtf8(failure.reason) + " (" + brenvolt::toUtf8(failure.statement) +
        ")");
}

} // namespace simhost
