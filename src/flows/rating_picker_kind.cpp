#include "flows/rating_picker_kind.h"

#include "data/entity_records.h"
#include "data/option_tables.h"
#include "widgets/roles_rating_picker.h"

namespace brenvolt {

namespace {

std::vector<RatingText> textsOf(const RatingTable& table) {
  std::vector<RatingText> texts;
  for (std::size_t column = 0; column < table.columnCount(); ++column) {
    const RatingField* field = table.fieldOf(column);
    texts.push_back(field == nullptr ? nullptr : field->text);
  }
  return texts;
}

constexpr const wchar_t* motorKeptTexts[] = {
    nullptr,       L"MotorType",      L"MotorPower", L"MotorUnits", L"MotorVoltage",
    L"MotorPhase", L"MotorFrequency", L"MotorSpeed", nullptr,       nullptr,
};

constexpr const wchar_t* loadKeptTexts[] = {
    nullptr, L"PFType", L"PFPhase", L"PFVoltage", L"PFPower", L"PFUnits", nullptr, L"PFFrequency", nullptr,
};

// The default of a motor's current is the multiplier's figure, which is intentional.
constexpr double absentMotorFla = fallbackFlaMultiplier;
constexpr double absentLoadFla = 1.0;
constexpr double fallbackLoadMultiplier = 1.0;

template <typename Service>
std::unique_ptr<RatingTableService> makeService(ZanOleDbConnection* connection) {
  return std::make_unique<Service>(connection);
}

/// The ratings of a placed component; `order` has the place of each field in the table of ratings.
template <std::size_t size>
std::optional<RatingSelection> readPicked(
    KvDbObjectId id, RecordStatus (*read)(KvDbObjectId, std::array<std::wstring, size>&),
    const std::array<std::size_t, size>& order) {
  std::array<std::wstring, size> fields;
  if (read(id, fields) != RecordStatus::ok) return std::nullopt;
  RatingSelection picked;
  for (std::size_t place = 0; place < size; ++place)
    setRating(picked, order[place], fields[place]);
  return picked;
}

std::optional<RatingSelection> readPickedMotor(KvDbObjectId id) {
  return readPicked(id, readMotorFields, motorFieldOrder);
}

std::optional<RatingSelection> readPickedLoad(KvDbObjectId id) {
  return readPicked(id, readPowerFeedFields, powerFeedFieldOrder);
}

} // namespace

const RatingPickerKind& motorPicker() {
  static const RatingPickerKind kind = {
      .form = L"ZanDlgMotorSelect",
      .dialogName = L"ZanBrenvolt::ZanDlgMotorSelect",
      .helpTopic = L"select_motor_dialog",
      .makeService = makeService<ZanDlgMotorSelectDbService>,
      .missingTable = AlertKind::motorTable,
      .texts = textsOf(motorTable()),
      .flaColumn = motorTable().columnOf(Rating::fla),
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
      .texts = textsOf(loadTable()),
      .flaColumn = loadTable().columnOf(Rating::fla),
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
