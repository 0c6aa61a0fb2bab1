// Problems that need no screen are reported first: wrong options and `--help` work without one.
#include "simhost/gui/gui_run.h"

#include "simhost/cli/command_table.h"
#include "simhost/cli/exit_code.h"
#include "simhost/gui/drawing_set.h"
#include "simhost/gui/main_window.h"
#include "simhost/gui/session_recording.h"
#include "simhost/gui/start_window.h"
#include "simhost/gui/window_texts.h"
#include "simhost/host/errors.h"
#include "simhost/host/program_files.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/picture_file.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/session_player.h"
#include "simhost/site/project_database.h"
#include "simhost/site/site_run.h"
#include "simhost/ui/file_names.h"
#include "text/encoding.h"

#include <QApplication>
#include <QFontMetrics>
#include <QRawFont>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace simhost {
namespace {

/// Between two actions of a session that is watched.
constexpr int pauseToWatch = 500; // milliseconds

struct GuiOptions {
  SiteRunOptions site;
  std::string record;
  std::string theme;
  std::string screenshot;
  std::string play;
  std::string pictures;
};

bool isSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

/// Qt ends the process when it finds no screen, so a missing one must be seen before. Without QT_QPA_PLATFORM Qt takes
/// Wayland or X, whichever the environment names. Throws BadInput.
void needScreen() {
  const std::string platform = isSet("QT_QPA_PLATFORM") ? std::getenv("QT_QPA_PLATFORM") : "";
  const bool isX = platform.starts_with("xcb");
  const bool isWayland = platform.starts_with("wayland");
  if (!platform.empty() && !isX && !isWayland) return;
  if (isSet("DISPLAY") && !isWayland) return;
  if (isSet("WAYLAND_DISPLAY") && !isX) return;
  const std::string missing = isX ? "QT_QPA_PLATFORM is " + platform + ", and DISPLAY is not set"
                              : isWayland
                                  ? "QT_QPA_PLATFORM is " + platform + ", and WAYLAND_DISPLAY is not set"
                                  : "neither DISPLAY nor WAYLAND_DISPLAY is set";
  throw BadInput("there is no screen: " + missing + "; \"brenvolt\" runs without one");
}

/// Without a font each window would show boxes in place of letters. Qt lists font families even then: the sign is that
/// its font has no tables, and that all letters have the same width. Throws BadInput.
void needFonts() {
  const QFont font = QApplication::font();
  const QFontMetrics metrics(font);
  const bool isBoxes =
      metrics.horizontalAdvance(QLatin1Char('i')) == metrics.horizontalAdvance(QLatin1Char('W'));
  if (isBoxes && QRawFont::fromFont(font).fontTable("head").isEmpty())
    throw BadInput("there are no fonts, and no window could show a word: install some (fonts-dejavu-core), "
                   "or look at what "
                   "FONTCONFIG_FILE and QT_QPA_FONTDIR name");
}

/// A display that is named but not reachable also ends Qt's start: it is reported with the same message.
void tellFatal(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
  const QByteArray text = message.toUtf8();
  if (type != QtFatalMsg) {
    if (type == QtCriticalMsg) std::fprintf(stderr, "brenvolt-gui: %s\n", text.constData());
    return;
  }
  std::fprintf(stderr, "brenvolt-gui: no screen can be used: %s\n", text.constData());
  std::_Exit(static_cast<int>(ExitCode::badInput));
}

ExitCode tell(const char* kind, const std::exception& error, ExitCode code) {
  std::fprintf(stderr, "brenvolt-gui: %s%s\n", kind, error.what());
  return code;
}

/// The option, else what the user chose in an earlier run, else the environment.
std::string languageFor(const SiteRunOptions& options) {
  if (!options.language.empty()) return options.language;
  CommandLine silent;
  silent.setSink([](std::wstring_view) {});
  UserSettings settings(
      options.settings.empty() ? defaultSettingsFile() : std::filesystem::path(options.settings), silent);
  const std::wstring chosen = settings.value(L"SimHost", L"language").value_or(L"");
  return chosen.empty() ? languageOfEnvironment() : brenvolt::toUtf8(chosen);
}

bool isStartedWithNothing(const GuiOptions& options) {
  const SiteRunOptions& site = options.site;
  for (const std::string* given :
       {&site.site, &site.drawing, &site.project, &site.module, &options.record, &options.play,
        &options.screenshot})
    if (!given->empty()) return false;
  return true;
}

/// Lets the user choose site, project and drawing; false when the user quits.
bool askStart(GuiOptions& options, const HostTexts& texts) {
  CommandLine silent;
  silent.setSink([](std::wstring_view) {});
  UserSettings settings(
      options.site.settings.empty() ? defaultSettingsFile() : std::filesystem::path(options.site.settings),
      silent);
  const auto list = [&settings](const wchar_t* name) {
    return toQt(settings.value(L"SimHost", name).value_or(L"")).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  };
  StartOffers offers{list(L"recentSites"), list(L"recentProjects"), list(L"recent"), list(L"recentSets")};
  // The sample site of the installation, or of the source tree.
  for (const std::filesystem::path& sample :
       {programFolder() / "site", programFolder() / ".." / ".." / "site"}) {
    const QString folder = QString::fromStdString(sample.lexically_normal().string());
    if (std::filesystem::exists(sample / "site.lsp") && !offers.sites.contains(folder))
      offers.sites.append(folder);
  }
  StartWindow window(texts, offers);
  if (window.exec() != QDialog::Accepted) return false;
  options.site.site = window.choice().site.toStdString();
  options.site.project = window.choice().project.toStdString();
  options.site.drawing = window.choice().drawing.toStdString();
  if (!options.site.project.empty()) checkProject(options.site.project);
  return true;
}

/// The session that is to be played, and on the options what it says of the start.
AnswerFile readPlay(GuiOptions& options) {
  if (options.play.empty()) return {};
  try {
    AnswerFile session = parseAnswerFile(readInput(options.play), options.play);
    if (!session.run || session.run->forms.empty())
      throw BadInput(
          options.play + ": names no LISP forms to run; \"brenvolt replay\" runs what names a circuit");
    session.run = seenFrom(*session.run, std::filesystem::path(options.play).parent_path(), {});
    if (options.site.drawing.empty()) options.site.drawing = session.run->drawing;
    if (options.site.project.empty()) options.site.project = session.run->project;
    if (options.site.language.empty()) options.site.language = session.run->language;
    return session;
  } catch (const AnswerError& error) {
    throw BadInput(error.what());
  }
}

/// Runs the forms of a session in the windows. Throws BadInput with the reason when it cannot go on.
void playSession(
    MainWindow& window, QtWindows& windows, const AnswerFile& session, const GuiOptions& options) {
  std::error_code error;
  if (!options.pictures.empty()) std::filesystem::create_directories(options.pictures, error);
  if (error) throw CannotWrite(options.pictures + ": " + error.message());
  SessionPlayer player(
      windows, session.steps, options.play, {options.pictures, options.pictures.empty() ? pauseToWatch : 0});
  std::vector<std::wstring> forms;
  for (const std::string& form : session.run->forms)
    forms.push_back(brenvolt::fromUtf8(form));
  for (const std::wstring& form : forms) {
    const CommandOutcome outcome = window.runner().run(QStringLiteral("LISP"), form);
    if (!player.failure().empty()) throw BadInput(brenvolt::toUtf8(player.failure()));
    if (outcome.kind == CommandOutcome::Kind::failed) throw BadInput(brenvolt::toUtf8(outcome.message));
  }
  windows.setPicker(&window.picks());
}

ExitCode show(int argc, char** argv, GuiOptions& options) {
  needScreen();
  qInstallMessageHandler(tellFatal);
  QApplication application(argc, argv);
  needFonts();
  QApplication::setApplicationName(QStringLiteral("ZanBrenvolt"));
  const AnswerFile session = readPlay(options);
  options.site.language = languageFor(options.site);
  if (!options.site.project.empty()) checkProject(options.site.project);
  loadQtWords(QString::fromStdString(options.site.language));
  // A replay begins without settings: what this user has hidden or typed before would be missing there.
  if (!options.record.empty()) options.site.unnamedSettings = SiteRunOptions::UnnamedSettings::memory;
  HostTexts texts(defaultResourceFolder(), options.site.language);
  if (isStartedWithNothing(options) && !askStart(options, texts)) return ExitCode::done;
  // A set is opened with its first sheet.
  const std::optional<DrawingSet> set = readSet(QString::fromStdString(options.site.drawing));
  if (set) options.site.drawing = set->sheets.front().file.toStdString();
  QtWindows windows;
  windows.setHelpFolder(dataFolder("docs"));
  SiteRun site(options.site, windows);
  MainWindow window(site, windows, texts);
  if (set) window.sets().open(set->file);
  if (!options.theme.empty()) window.setPaper(options.theme == "dark" ? Paper::dark : Paper::light);
  std::optional<SessionRecording> recording;
  if (!options.record.empty()) recording.emplace(options.record, options.site, windows, window.runner());
  window.show();
  if (session.run) playSession(window, windows, session, options);
  if (!options.screenshot.empty()) {
    QCoreApplication::processEvents();
    window.view().port().fit();
    window.view().port().finishPainting();
    const std::string reason = writePicture(window.grab().toImage(), options.screenshot);
    if (!reason.empty()) throw CannotWrite(reason);
    return ExitCode::done;
  }
  if (!options.pictures.empty()) return ExitCode::done;
  window.files().askAtStart();
  QApplication::exec();
  if (recording) recording->write();
  return ExitCode::done;
}

} // namespace

int runGui(int argc, char** argv) {
  GuiOptions options;
  const CommandTable program = {
      .name = "brenvolt-gui",
      .description = "Electrical circuits in a simulated CAD host, with windows",
      .options =
          {{"--site",
            &options.site.site,
            "Folder of the site: its site.lsp is run first",
            "DIR",
            {.path = OptionRules::Path::existingFolder}},
           {"--drawing", &options.site.drawing, "Open this drawing instead of an empty one", "FILE"},
           {"FILE", &options.site.drawing, "The same, as passed by a desktop"},
           {"--project", &options.site.project, "Write the records of circuits to this project database",
            "FILE"},
           {"--language", &options.site.language,
            "Two letters; default: the one chosen before, or from the environment", "CODE"},
           {"--record", &options.record, "Record the commands for `brenvolt replay`", "FILE"},
           {"--settings", &options.site.settings, "The user's settings", "FILE"},
           {"--theme",
            &options.theme,
            "light or dark; default: as used last",
            "NAME",
            {.choices = {"light", "dark"}}},
           {"--module", &options.site.module, "The plug-in; default: ZanBrenvolt.kvx of the installation",
            "FILE"},
           {"--screenshot", &options.screenshot, "Write a picture of the window and exit", "FILE"},
           {"--play", &options.play, "Play this session in the windows", "FILE"},
           {"--pictures",
            &options.pictures,
            "Write a picture of each window of the session and exit",
            "DIR",
            {.needs = {"--play"}}}},
      .footer = "Exit codes: 0 done, 1 wrong arguments, 2 unexpected, 3 bad input, no screen or no fonts, 4 "
                "cannot write.",
      .examples =
          {"brenvolt-gui --site site --screenshot window.png",
           "brenvolt-gui --site site --language de --theme dark --screenshot dunkel.png"},
      .page = "main-window.md",
  };
  const CommandLineResult given = readCommandLine(program, "brenvolt-gui " BRENVOLT_VERSION, argc, argv);
  if (given.end) return *given.end;
  try {
    return static_cast<int>(show(argc, argv, options));
  } catch (const BadInput& error) {
    return static_cast<int>(tell("", error, ExitCode::badInput));
  } catch (const CannotWrite& error) {
    return static_cast<int>(tell("cannot write ", error, ExitCode::cannotWrite));
  } catch (const std::exception& error) {
    return static_cast<int>(tell("unexpected: ", error, ExitCode::unexpected));
  }
}

} // namespace simhost
