#include "flows/rating_picker_kind.h"

#include "data/entity_records.h"
#include "data/option_tables.h"
#include "text/numbers.h"
#include "widgets/roles_rating_picker.h"

namespace brenvolt {

namespace {

constexpr RatingText motorTexts[] = {
    nullptr,
    &RatingSelection::type,
    &RatingSelection::load,
    &RatingSelection::units,
    &RatingSelection::voltage,
    &RatingSelection::phase,
    &RatingSelection::frequency,
    &RatingSelection::speed,
    nullptr,
    nullptr,
};

constexpr const wchar_t* motorKeptTexts[] = {
    nullptr,       L"MotorType",      L"MotorPower", L"MotorUnits", L"MotorVoltage",
    L"MotorPhase", L"MotorFrequency", L"MotorSpeed", nullptr,       nullptr,
};

constexpr RatingText loadTexts[] = {
    nullptr,
    &RatingSelection::type,
    &RatingSelection::phase,
    &RatingSelection::voltage,
    &RatingSelection::load,
    &RatingSelection::units,
    nullptr,
    &RatingSelection::frequency,
    nullptr,
};

constexpr const wchar_t* loadKeptTexts[] = {
    nullptr, L"PFType", L"PFPhase", L"PFVoltage", L"PFPower", L"PFUnits", nullptr, L"PFFrequency", nullptr,
};

// Of a motor the current that stands in for one that was not kept is the multiplier's figure, which is wanted so.
constexpr double absentMotorFla = fallbackFlaMultiplier;
constexpr double absentLoadFla = 1.0;
constexpr double fallbackLoadMultiplier = 1.0;

template <typename Service>
std::unique_ptr<RatingTableService> makeService(ZanOleDbConnection* connection) {
  return std::make_unique<Service>(connection);
}

std::optional<RatingSelection> readPickedMotor(KvDbObjectId id) {
  std::array<std::wstring, 9> fields;
  if (readMotorFields(id, fields) != RecordStatus::ok) return std::nullopt;
  const auto& [type, phase, voltage, speed, load, units, fla, multiplier, frequency] = fields;
  return RatingSelection{
      type, load, units, voltage, phase, frequency, speed, toDouble(fla), toDouble(multiplier)};
}

std::optional<RatingSelection> readPickedLoad(KvDbObjectId id) {
  std::array<std::wstring, 8> fields;
  if (readPowerFeedFields(id, fields) != RecordStatus::ok) return std::nullopt;
  const auto& [type, phase, voltage, load, units, fla, multiplier, frequency] = fields;
  return RatingSelection{
      type, load, units, voltage, phase, frequency, {}, toDouble(fla), toDouble(multiplier)};
}

} // namespace

const RatingPickerKind& motorPicker() {
  static const RatingPickerKind kind = {
      .form = L"ZanDlgMotorSelect",
      .dialogName = L"ZanBrenvolt::ZanDlgMotorSelect",
      .helpTopic = L"select_motor_dialog",
      .makeService = makeService<ZanDlgMotorSelectDbService>,
      .missingTable = AlertKind::motorTable,
      .texts = motorTexts,
      .flaColumn = motorcolumn::fla,
      .filterRoles = {role::typeFilter, role::voltageFilter, role::frequencyFilter},
      .firstColumnTitle = TextId::motorColumnFirst,
      .pickPrompt = TextId::selectMotorPrompt,
      .title = std::nullopt,
      .typeLabel = std::nullopt,
      .keptTexts = motorKeptTexts,
      .keptFla = L"MotorFLA",
      .keptMultiplier = L"Derating",
      .absentFla = absentMotorFla,
      .fallbackMultiplier = fallbackFlaMultiplier,
      .isPicked = isMotorEntity,
      .readPicked = readPickedMotor,
  };
  return kind;
}

const RatingPickerKind& loadPicker() {
  static const RatingPickerKind kind = {
      .form = L"ZanDlgPowerFeed",
      .dialogName = L"ZanBrenvolt::ZanDlgPowerFeed",
      .helpTopic = L"select_load_dialog",
      .makeService = makeService<ZanDlgPowerFeedDbService>,
      .missingTable = AlertKind::loadTable,
      .texts = loadTexts,
      .flaColumn = loadcolumn::fla,
      .filterRoles = {role::typeFilter, role::voltageFilter, role::phaseFilter},
      .firstColumnTitle = TextId::loadColumnFirst,
      .pickPrompt = TextId::selectLoadPrompt,
      .title = TextId::powerFeedTitle,
      .typeLabel = TextId::powerFeedTypeLabel,
      .keptTexts = loadKeptTexts,
      .keptFla = L"PFFLA",
      .keptMultiplier = L"PFDerating",
      .absentFla = absentLoadFla,
      .fallbackMultiplier = fallbackLoadMultiplier,
      .isPicked = isPowerFeedEntity,
      .readPicked = readPickedLoad,
  };
  return kind;
}

} // namespace brenvolt
