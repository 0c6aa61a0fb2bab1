// The words of windows that no form holds.
#pragma once

#include <QString>

namespace simhost {

/// In English until the texts of the user's language are set.
struct WindowWords {
  QString hideForGood = QStringLiteral("&Do not ask this again");
  QString help = QStringLiteral("Help");
  QString noDrawing = QStringLiteral("No drawing");
  QString nothingToSet = QStringLiteral("Nothing to set here");
  QString searchTree = QStringLiteral("Search");
  QString insertEverything = QStringLiteral("Insert everything");
  QString insertEverythingTip =
      QStringLiteral("Insert all units, and those that come with them, until none waits");
  QString finishedCircuit = QStringLiteral("Finished circuit");
  QString markers = QStringLiteral("Markers");
  QString phaseColumn = QStringLiteral("Phase");
  QString noSizeYet = QStringLiteral("Proposed: the wire has no size yet");
  QString foundByBuild = QStringLiteral("Found by the build, not chosen");
  QString onlyWith = QStringLiteral("Only with: %1");  ///< with options
  QString onlyPhase = QStringLiteral("Only %1-phase"); ///< with the number
  QString configurations = QStringLiteral("Table...");
  QString configurationsTip =
      QStringLiteral("Choose from a table of the saved configurations with their data");
  QString search = QStringLiteral("Search, such as 15 460");
  QString helpBack = QStringLiteral("Back");
  QString helpForward = QStringLiteral("Forward");
  QString helpContents = QStringLiteral("Contents");
  QString helpSearch = QStringLiteral("Search the manual");
  QString nothingFound = QStringLiteral("Nothing found");
  QString moreInManual = QStringLiteral("More in the manual");
};

} // namespace simhost
