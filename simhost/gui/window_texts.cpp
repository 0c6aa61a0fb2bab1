// Which text is which word.
#include "simhost/gui/window_texts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QPointer>
#include <QTranslator>

namespace simhost {

WindowWords windowWords(const HostTexts& texts) {
  WindowWords words;
  words.hideForGood = texts(HostText::hideForGood);
  words.help = texts(HostText::helpTitle);
  words.noDrawing = texts(HostText::noDrawing);
  words.nothingToSet = texts(HostText::nothingToSet);
  words.searchTree = texts(HostText::searchTree);
  words.insertEverything = texts(HostText::insertEverything);
  words.insertEverythingTip = texts(HostText::insertEverythingTip);
  words.finishedCircuit = texts(HostText::finishedCircuit);
  words.markers = texts(HostText::markers);
  words.phaseColumn = texts(HostText::columnPhase);
  words.noSizeYet = texts(HostText::noSizeYet);
  words.foundByBuild = texts(HostText::foundByBuild);
  words.onlyWith = texts(HostText::onlyWith);
  words.onlyPhase = texts(HostText::onlyPhase);
  words.configurations = texts(HostText::configurationTable);
  words.configurationsTip = texts(HostText::configurationTableTip);
  words.search = texts(HostText::searchRows);
  words.helpBack = texts(HostText::helpBack);
  words.helpForward = texts(HostText::helpForward);
  words.helpContents = texts(HostText::helpContents);
  words.helpSearch = texts(HostText::helpSearch);
  words.nothingFound = texts(HostText::helpNothingFound);
  words.moreInManual = texts(HostText::helpMore);
  return words;
}

void loadQtWords(const QString& language) {
  static QPointer<QTranslator> loaded;
  delete loaded;
  auto* words = new QTranslator(QCoreApplication::instance());
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (words->load(QStringLiteral("qtbase_") + language, folder)) QCoreApplication::installTranslator(words);
  loaded = words;
}

} // namespace simhost
