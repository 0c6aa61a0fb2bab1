// The texts of the host's own windows, in the language of the user. They are stored next to those of the plug-in in
// the same format: resources/SimHost/<language>.txt.
#pragma once

#include "simhost/host/resource_module.h"

#include <QString>

#include <filesystem>
#include <initializer_list>
#include <string>

namespace simhost {

/// Numbers of texts; they never change their meaning.
enum class HostText : unsigned {
  none = 0,
  windowTitle = 100, ///< drawing, program
  untitled,
  fileMenu,
  editMenu,
  viewMenu,
  circuitMenu,
  helpMenu,
  languageMenu,
  recentMenu,
  toolbar,
  projectMenu,
  recentProjectsMenu,
  titleWithProject, ///< drawing, project, program

  open = 200,
  save,
  saveAs,
  exportSvg,
  exportPdf,
  print,
  quit,
  newDrawing,
  undo,
  redo,
  zoomExtents,
  zoomWindow,
  zoomIn,
  zoomOut,
  grid,
  darkPaper,
  layerPanel,
  promptPanel,
  newCircuit,
  buildFromHistory,
  motor,
  load,
  wireMotor,
  wireLoad,
  editWireSize,
  help,
  about,
  openProject,
  newProject,
  closeProject,
  circuitPanel,
  configureCircuit,
  moveCircuit,
  copyCircuit,
  deleteCircuit,
  circuitReport,
  saveConfiguration,
  findCircuit,
  propertiesPanel,
  pageSetup,
  printPreview,
  copyPicture,

  openTitle = 300,
  saveTitle,
  drawings,
  pictures,
  documents,
  unsavedTitle,
  unsavedQuestion,
  discard,
  keepEditing,
  saved,
  exported,
  opened,
  cannotPrint,
  aboutText,
  languageLater,
  tooManyShapes,
  openProjectTitle,
  newProjectTitle,
  projects,
  projectOpened,
  projectClosed,
  openElsewhereTitle,
  openElsewhere, ///< file, user
  openReadOnly,
  openAnyway,
  readOnly,
  recoverTitle,
  recoverQuestion, ///< file, time
  recover,
  dropCopy,
  changedElsewhereTitle,
  changedElsewhere, ///< file
  reload,
  overwrite,
  pageSetupTitle,
  paperSize,
  paperOrientation,
  paperScale,
  portrait,
  landscape,
  fitPage,
  previewTitle,
  pictureCopied,

  busy = 400,
  ready,
  cancelled,
  running,
  pickPlace,
  pickEnds,
  pickEndsOrNone,
  corner,
  undone,
  redone,
  nothingToUndo,
  nothingToRedo,
  pointer, ///< x, y
  layerOf,
  handleOf,
  notDone,
  noSite,
  badCoordinates,
  placeKeys,
  overlaps,
  motorResult,
  loadResult,
  wireResult,
  copyResult,
  pickCircuit,
  placeCircuitQuestion, ///< circuit
  circuitMoved,
  circuitCopied, ///< circuit, copy
  circuitDeleted,
  circuitRebuilt,
  noCircuitThere,
  circuitHasNoRecord, ///< circuit
  circuitHasNoType,   ///< circuit, circuit of the workbook, type
  circuitFacts,       ///< tag, what it is
  rebuildQuestion,    ///< circuit
  rebuildTitle,
  rebuild,
  configurationSaved,
  configurationName,
  configurationTitle,
  configurationExists, ///< name
  configurationReplace,
  reportTitle,           ///< circuit
  configurationNotSaved, ///< circuit, reason
  wireOf,                ///< layer
  circuitOf,             ///< circuit
  notRecorded,           ///< command
  onlyMotorFits = 450,
  onlyLoadFits,
  onlyMotorOrLoadFits,
  onlyComponentFits,

  promptHint = 500,
  layersTitle,
  promptTitle,
  noHistory = 505,

  hideForGood = 600,
  helpTitle,
  noDrawing,
  nothingToSet,
  searchRows,
  drawingName,
  drawingDescription,
  searchTree,
  insertEverything,
  insertEverythingTip,
  finishedCircuit,
  markers,
  configurationTable,
  configurationTableTip,
  previewMaking,
  previewFailed, ///< reason
  configurationsTitle,
  configurationSearch,
  columnConfiguration,
  columnVoltage,
  columnPhase,
  columnSpeed,
  columnCurrent,
  columnCircuit,
  onlyPhase, ///< number
  onlyWith,  ///< options
  noSizes,   ///< circuit
  noSizeYet,
  foundByBuild,

  circuitsTitle = 650,
  columnNumber,
  columnTag,
  columnType,
  columnLoad,
  columnWire,
  columnSheet,
  columnState,
  circuitSearch,
  noCircuits,
  circuitBuilt,
  circuitOutOfDate,
  circuitFindings, ///< how many
  circuitNoRecord,
  circuitNoLoadData,           ///< tag
  circuitNoWireSize,           ///< tag
  circuitTagTwice,             ///< tag
  circuitTypeGone,             ///< circuit, type
  circuitConfigurationChanged, ///< name
  propertiesTitle,
  nothingSelected,
  kindLine,
  kindPolyline,
  kindCircle,
  kindArc,
  kindText,
  kindSymbol,
  propertyKind,
  propertyLayer,
  propertySymbol,
  propertyHandle,
  propertyCircuit,
  propertyConfiguration,
  propertyPlace,

  startSite = 700,
  startProject,
  startDrawings,
  startNoSite,
  startNoProject,
  startNoDrawings,
  startBrowse,
  startNew,
  startOpen,
  startLeave,
  startSiteTitle,
  startBrowseProject,

  checkTitle = 800,
  checkPanel,
  checkSite,
  checkRun,
  checkStop,
  checkRunning,
  checkSeverity,
  checkRule,
  checkPlace,
  checkWhat,
  checkRemedy,
  checkAll,
  checkAllRules,
  checkError,
  checkWarning,
  checkNote,
  checkEmpty,
  checkClean,
  checkCount, ///< how many
  checkOffer,
  checkNoFile, ///< file

  helpBack = 900,
  helpForward,
  helpContents,
  helpSearch,
  helpNothingFound,
  helpMore,
  firstCircuit,
  whatsThis,
  languageChanged,

  pageFrame = 920,
  pageNoFrame,
  pageOwnFrame,
  pageTitleBlock,
  pageProject,
  pageName,
  pageDrawnBy,
  pageRevision,
  pageDate,
  pageToday,
  pageCutOff,

  openSet = 940,
  setPanel,
  setTitle,
  setSearch,
  openSetTitle,
  sets,
  notASet,   ///< file
  setOpened, ///< title, how many sheets

  drawnByUnit = 950,

  reportLoads = 960,
  reportParts,
  reportNoLoad, ///< how many
  reportNoPart, ///< how many
  reportTag,
  reportCircuit,
  reportType,
  reportLoad,
  reportUnits,
  reportVoltage,
  reportPhase,
  reportFrequency,
  reportSpeed,
  reportCurrent,
  reportWires,
  reportLength,
  reportDrop,
  reportProtection,
  reportSheet,
  reportQuantity,
  reportFamily,
  reportMaker,
  reportCatalogue,
  reportAssembly,
  reportRating,
  reportTags,
};

/// The explanation of a command for help on it.
[[nodiscard]] constexpr HostText helpOf(HostText command) {
  constexpr unsigned distance = 1000;
  return static_cast<HostText>(static_cast<unsigned>(command) + distance);
}

class HostTexts final {
public:
  /// Throws BadInput for a damaged file, and when the English one is missing.
  HostTexts(const std::filesystem::path& folder, const std::string& language);

  /// From now on in this language; throws as when it is made, and nothing has changed.
  void choose(const std::string& language) { library_.choose(language); }

  /// The words; the number in angle brackets for a text that is nowhere.
  [[nodiscard]] QString operator()(HostText text) const;
  /// The same, with %1, %2, ... filled in.
  [[nodiscard]] QString operator()(HostText text, std::initializer_list<QString> parts) const;

private:
  ResourceLibrary library_;
  const KvResourceModule* module_;
};

} // namespace simhost
