// The numbered texts of the resource module, by meaning, and the stack that selects the module. The numbers are the
// contract with the translators' file: a text never changes its number.
#pragma once

#include "host/host_api_documents.h"

#include <optional>
#include <string>

namespace brenvolt {

/// The name under which the host finds the plug-in's resource module.
inline constexpr wchar_t resourceModuleName[] = L"ZanBrenvoltRes.dll";
/// The location of the dialogs' tooltips, and the prefix of their keys.
inline constexpr wchar_t tooltipResource[] = L"/ZanDialogTooltipsRes;component/ZanDialogTooltipsRes.xaml";
inline constexpr wchar_t tooltipPrefix[] = L"ZNBV";
/// The levels of controls, below the dialog itself, that have tooltips.
inline constexpr int tooltipsBelow = 2;

/// Images of the resource module on buttons.
enum class ImageId : unsigned {
  // Header buttons of groups.
  lookup = 10028, ///< run the lookup command
  pick = 10059,   ///< pick an object in the drawing

  // Buttons of the configuration dialog.
  insertCurrent = 10034,
  insertUpToCurrent = 10035,
  insertAll = 10036,
  undoInsertion = 10037,
};

/// Texts of the resource module. The program fills in "%s" and "%d".
enum class TextId : unsigned {
  // Circuit selection.
  previewShow = 10001, ///< caption of the preview toggle while the pane is hidden
  previewHide = 10002, ///< and while it is shown: the number above plus the toggle state
  newConfiguration = 10039,
  summaryName = 10040, ///< column titles of a history's summary
  summaryValue = 10041,

  // Groups of the configuration dialog.
  motorGroup = 10004,
  dataType = 10005,
  dataLoad = 10006,
  dataVoltage = 10007,
  dataFrequency = 10008,
  dataSpeed = 10009,
  dataFla = 10010,
  dataPhase = 10060,
  dataUnits = 10061,
  dataMultiplier = 10063,
  wireGroup = 10014,
  wireSizeRow = 10015,  ///< "W%d - ...": the grounding test reads the text before the dash
  wireLayerRow = 10016, ///< "W%d - ..."
  catalogFirst = 10017, ///< manufacturer; the eleven rows of a catalog group run to 10027
  catalogNumber = 10018,
  catalogAssembly = 10019,
  catalogCount = 10020,
  catalogType = 10021,
  catalogRating1 = 10022, ///< ratings 1 to 6 run to 10027
  catalogLast = 10027,
  tipMotorLookup = 10029,
  tipWireLookup = 10030,
  tipCatalogLookup = 10031,
  pickMotorPrompt = 10062,
  tipPickMotor = 10064,
  loadGroup = 10065,
  tipLoadLookup = 10066,
  tipPickLoad = 10070,
  pickLoadPrompt = 10071,
  controlField = 21006,   ///< label of the field that marks a motor or a load row
  groundSizeRow = 21009,  ///< "W0%dE - ..."
  groundLayerRow = 21010, ///< "W0%dE - ..."

  // History file.
  historyOpenFailed = 10037,  ///< "%s": the path
  historyWriteFailed = 10038, ///< "%s": the path

  // Annotation presets.
  presetUse = 20000, ///< column titles: tick, label, attribute, description, value
  presetLabel = 20001,
  presetAttribute = 20002,
  presetDescription = 20003,
  presetValue = 20004,
  valuesFromDrawing = 21000, ///< dialog title, followed directly by the attribute's name
  valuesFromProject = 21001,

  // Existing circuits.
  existingFirstColumn = 20005, ///< titles of columns 2 to 9 run to 20012
  existingLastColumn = 20012,
  existingKeyColumn = 20013, ///< title of column 1
  existingChosen = 20016,    ///< caption of the button once a circuit is chosen
  existingNone = 20017,      ///< and while none is

  // Labels of the exported rows of circuit data, in the order of the rows.
  exportExtraCurrent = 22001,
  exportWireStandard = 22002,
  exportWireMetal = 22003,
  exportInsulation = 22004,
  exportTemperature = 22005,
  exportLength = 22006,
  exportLengthUnits = 22007,
  exportRaceway = 22008,
  exportPowerFactor = 22009,
  exportDropLimit = 22010,
  exportContinuousFactor = 22011,
  exportFillRange = 22012,
  exportFillFactor = 22013,
  exportAmbientRange = 22014,
  exportAmbientFactor = 22015,
  exportOverallFactor = 22016,
  exportParallelCount = 22017,
  exportParallelMinSize = 22018,
  exportEnergyPrice = 22019,
  exportGroundSize = 22020,

  // Prompts and lines of the command line.
  editWireSizePrompt = 22100,
  selectMotorPrompt = 22101,    ///< pick button of the motor picker
  selectLoadPrompt = 22102,     ///< pick button of the load picker
  databaseLine = 22103,         ///< "%s": the path of the tables' database
  standardWithoutTable = 22104, ///< "%s": the missing table; follows the code of a standard

  statementFailed = 22105, ///< "%s", "%s", "%s": the data source, the provider's words, the statement

  tablesNotOpened = 22107, ///< "%s": the provider's words, with the data source
  tableFallback = 22106,   ///< "%s", "%s": the missing table, the one that is used instead

  // Motor and load pickers.
  allEntries = 22200,   ///< first entry of each filter list
  closeCaption = 22201, ///< the Cancel button while the grid is edited
  powerFeedTitle = 22202,
  powerFeedTypeLabel = 22203,
  motorColumnFirst =
      22210, ///< plus the column's index: ID, Type, Load, Units, Voltage, Phase, Frequency, Speed, FLA,
             ///< Description
  motorColumnLast = 22219,
  loadColumnFirst = 22220, ///< ID, Type, Phase, Voltage, Load, Units, FLA, Frequency, Description
  loadColumnLast = 22228,

  // Wire lookup: column titles, a note, and what its report needs beyond the dialog's own labels.
  wireColumnSize = 22300,
  wireColumnCount = 22301,
  wireColumnFillRange = 22302,
  wireColumnAmpacity = 22303,
  wireColumnLoadPercent = 22304,
  wireColumnDrop = 22305,
  wireColumnDropPercent = 22306,
  wireColumnPowerLoss = 22307,
  wireColumnYearlyCost = 22308,
  energyCostNote = 22309,
  wireDropUnknown = 22310, ///< what "-" in the drop columns says of sizes without impedance
  reportTitle = 22320,
  reportCircuit = 22321,
  reportLoad = 22322,
  reportType = 22323,
  reportSpeed = 22324,
  reportSpeedUnits = 22325,
  reportFrequency = 22326,
  reportFrequencyUnits = 22327,
  reportVoltage = 22328,
  reportPhase = 22329,
  reportCurrent = 22330,
  reportMultiplier = 22331,
  reportExtraCurrent = 22332,
  reportTotal = 22333,
  reportStandard = 22334,
  reportMetal = 22335,
  reportInsulation = 22336,
  reportRaceway = 22337,
  reportPowerFactor = 22338,
  reportEnergyPrice = 22339,
  reportGroundSize = 22340,
  fileTypeWorkbook = 22350, ///< names of the report's file types
  fileTypeCsv = 22351,
  fileTypeReport = 22352,
  reportNotWritten = 22353, ///< "%s", "%s": the path, the reason

  // Configuration dialog.
  undoRefused = 22400,
  rollbackRefused = 22401,
  historyRefused = 22402, ///< "%s": the reason

  // History file, what others have to do with it.
  historyBusy = 22410,           ///< "%s" four times: path, user, machine, process number
  historyKept = 22411,           ///< "%s", "%s": the file that was not a history, where it is kept
  historyDeletionStayed = 22412, ///< "%s": the name of the configuration
  buildDataReplaced = 22413,     ///< the parent product's settings

  // Building.
  nestingTooDeep = 22420,     ///< "%s", "%s": the marker's CODE, the number of levels
  dialogInsideDialog = 22421, ///< "%s": the worksheet
  buildsTooDeep = 22422,      ///< "%s": the worksheet

  // Wires of a build.
  wiresWithoutCurrent = 22430,     ///< "%s": the marker's CODE
  wiresWithoutTables = 22431,      ///< "%s": the marker's CODE
  wiresTooSmall = 22432,           ///< "%s", "%s": the marker's CODE, the largest size
  tipDefaultLayer = 22434,         ///< what the layer names "3-" and "1-" of a wire are
  groundingWithoutSize = 22435,    ///< "%s": the marker's CODE
  groundingWithoutCurrent = 22436, ///< "%s": the marker's CODE
  groundingWithoutTables = 22437,  ///< "%s": the marker's CODE
  groundingWithoutArea = 22438,    ///< "%s", "%s": the marker's CODE, a size

  // Where a form of the worksheet is, and why it failed.
  formPlace = 22440,    ///< five "%s": workbook, worksheet, row, column, CODE
  formNoReason = 22441, ///< the host gave none
};

/// The text with the number of `first` plus `offset`, for rows that are counted.
[[nodiscard]] constexpr TextId textAt(TextId first, unsigned offset) {
  return static_cast<TextId>(static_cast<unsigned>(first) + offset);
}

/// The text of a number from the module on top of the resource stack; nothing when there is none.
[[nodiscard]] std::optional<std::wstring> findText(TextId id);

/// The same; a missing text is empty, so that a missing resource module costs words and no function.
[[nodiscard]] std::wstring loadText(TextId id);

/// The plug-in's resource module, null while none is loaded. Set by the application class; not owned here.
[[nodiscard]] KvResourceModule* resourceModule();
void setResourceModule(KvResourceModule* module);

/// Makes the plug-in's resource module the one that texts, forms and task dialogs are loaded from, for as long as the
/// scope lasts, on every way out. Scopes may nest. Without a document manager it does nothing.
class ResourceScope final {
public:
  ResourceScope();
  ResourceScope(const ResourceScope&) = delete;
  ResourceScope& operator=(const ResourceScope&) = delete;
  ~ResourceScope();

private:
  KvApDocManager* manager_;
};

} // namespace brenvolt
