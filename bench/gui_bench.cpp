// The main window on the software renderer, without a screen: how long until it can be used, how fast a large drawing
// is moved, and how long a dialog takes to come up. A pan is measured against painting the whole view anew, which is
// what it would cost without the kept picture.
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/main_window.h"
#include "simhost/gui/picture_cache.h"
#include "simhost/host/files.h"
#include "simhost/host/session.h"
#include "simhost/qt/picture_file.h"
#include "simhost/site/site_run.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QTimer>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace simhost;
using Clock = std::chrono::steady_clock;

constexpr int entityCount = 100'000;
const QSize viewSize(1280, 720);

double milliseconds(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Of the processor for this program: what a machine without other work would take at most.
double processorMilliseconds() {
  return 1e3 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Elapsed and processor time of the same events.
struct Times {
  std::vector<double> elapsed;
  std::vector<double> processor;
};

double middleOf(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

/// Rows of small circuits: wires, symbols and labels as a plant's drawing has them.
void fill(DrawingDatabase& drawing) {
  const KvDbHandle space = drawing.modelSpace();
  drawing.putLayer({L"WIRES", {180, 0, 0}, LineType::continuous});
  constexpr int perRow = 250;
  for (int index = 0; index < entityCount; ++index) {
    const int cell = index / 10;
    const double x = 40.0 * (cell % perRow);
    const double y = 60.0 * (cell / perRow); // NOLINT(bugprone-integer-division): rows of cells
    const double step = 5.0 * (index % 10);
    switch (index % 10) {
    case 0:
      drawing.addEntity(space, {Circle{{x + 20.0, y + 30.0, 0.0}, 8.0}});
      break;
    case 1:
      drawing.addEntity(space, {Text{{x, y + 52.0, 0.0}, L"M" + std::to_wstring(cell), 4.0}});
      break;
    case 2:
      drawing.addEntity(space, {Arc{{x + 20.0, y + 30.0, 0.0}, 12.0, 30.0, 150.0}});
      break;
    default:
      drawing.addEntity(space, {Line{{x, y + step, 0.0}, {x + 35.0, y + step, 0.0}}, L"WIRES"});
    }
  }
}

void measurePan(const Scene& scene, const char* what, double zoom) {
  PictureCache picture(scene);
  picture.resize(viewSize);
  picture.setView(ViewTransform::fitting(scene.extents(), viewSize).zoomed(zoom, {640.0, 360.0}));
  Clock::time_point start = Clock::now();
  picture.finish();
  const double whole = milliseconds(start);
  Times frames;
  for (int frame = 0; frame < 120; ++frame) {
    start = Clock::now();
    const double processor = processorMilliseconds();
    // A fast hand: the view's width in a second and a half at 30 frames.
    picture.pan(frame % 60 < 30 ? QPoint(28, 9) : QPoint(-28, -9));
    picture.finish();
    frames.elapsed.push_back(milliseconds(start));
    frames.processor.push_back(processorMilliseconds() - processor);
  }
  std::printf(
      "pan, %-10s %6.1f ms a frame, processor %5.1f ms, slowest %5.1f ms (33.3 allowed); whole view %6.0f "
      "ms\n",
      what, middleOf(frames.elapsed), middleOf(frames.processor),
      *std::max_element(frames.processor.begin(), frames.processor.end()), whole);
}

void measureStart() {
  const char* folder = std::getenv("BRENVOLT_BIN");
  const std::string program = std::string(folder == nullptr ? "out/bin" : folder) + "/brenvolt-gui";
  const std::string picture = (std::filesystem::temp_directory_path() / "brenvolt_gui_bench.png").string();
  const std::string command =
      "'" + program + "' --site site --settings /dev/null/none --screenshot '" + picture + "'";
  Times times;
  const auto childMilliseconds = [] {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto inMilliseconds = [](const timeval& time) {
      return 1e3 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_usec);
    };
    return inMilliseconds(usage.ru_utime) + inMilliseconds(usage.ru_stime);
  };
  for (int run = 0; run < 5; ++run) {
    const Clock::time_point start = Clock::now();
    const double processor = childMilliseconds();
    if (std::system(command.c_str()) != 0) return;
    times.elapsed.push_back(milliseconds(start));
    times.processor.push_back(childMilliseconds() - processor);
  }
  // The picture's file is as small as it can be, which takes about as long as the window: it does not count as part of
  // the start.
  const QImage shown(QString::fromStdString(picture));
  const Clock::time_point start = Clock::now();
  const double processor = processorMilliseconds();
  static_cast<void>(writePicture(shown, picture));
  const double elapsedForFile = milliseconds(start);
  const double processorForFile = processorMilliseconds() - processor;
  std::filesystem::remove(picture);
  std::printf(
      "start, window painted: %.0f ms, processor %.0f ms (150 allowed); its picture saved: %.0f ms, "
      "processor "
      "%.0f ms\n",
      middleOf(times.elapsed) - elapsedForFile, middleOf(times.processor) - processorForFile, elapsedForFile,
      processorForFile);
}

/// Until the dialog of a command stands there painted; it is left at once.
void measureDialog(MainWindow& window, const wchar_t* form) {
  Times times;
  for (int run = 0; run < 5; ++run) {
    const Clock::time_point start = Clock::now();
    const double processor = processorMilliseconds();
    QTimer look;
    look.callOnTimeout([&] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (dialog == nullptr || !dialog->isVisible()) return;
      static_cast<void>(dialog->grab());
      times.elapsed.push_back(milliseconds(start));
      times.processor.push_back(processorMilliseconds() - processor);
      look.stop();
      dialog->close();
    });
    look.start(0);
    static_cast<void>(window.runner().run(QStringLiteral("bench"), form));
  }
  if (times.elapsed.empty())
    std::printf("dialog %ls: did not come up\n", form);
  else
    std::printf(
        "dialog %-28ls %4.0f ms, processor %4.0f ms (150 allowed)\n", form, middleOf(times.elapsed),
        middleOf(times.processor));
}

/// Circuits as builds leave them: marks on wires and symbols, a record each.
void fillCircuits(DrawingDatabase& drawing, int count) {
  constexpr int entitiesEach = 80;
  for (int circuit = 0; circuit < count; ++circuit) {
    const std::wstring id = L"C" + std::to_wstring(circuit);
    for (int part = 0; part < entitiesEach; ++part) {
      const double x = 200.0 * (circuit % 20) + part;
      const double y = 150.0 * (circuit / 20); // NOLINT(bugprone-integer-division): rows of circuits
      Entity entity{Line{{x, y, 0.0}, {x + 1.0, y + 100.0, 0.0}}, L"BLK_10AWG"};
      setProvenance(entity, {id});
      if (part == 0)
        setData(entity, L"ORL_QN_BV_CIRCPARAMS", {L"Induction;" + std::to_wstring(circuit) + L";HP;460"});
      drawing.addEntity(drawing.modelSpace(), std::move(entity));
    }
    drawing.putCircuit(
        id, {{L"circuit", L"Three-phase motors"},
             {L"type", L"Direct on line"},
             {L"tag", L"P-" + std::to_wstring(circuit)}});
  }
}

/// The panel after a command that changes the drawing, and the search letter by letter.
void measureCircuits(MainWindow& window, DrawingDatabase& drawing) {
  constexpr int circuitCount = 200;
  fillCircuits(drawing, circuitCount);
  Times refreshes;
  for (int run = 0; run < 5; ++run) {
    const Clock::time_point start = Clock::now();
    const double processor = processorMilliseconds();
    static_cast<void>(window.runner().run(QStringLiteral("bench"), L"(draw-line '(0 -50) '(9 -50))"));
    refreshes.elapsed.push_back(milliseconds(start));
    refreshes.processor.push_back(processorMilliseconds() - processor);
  }
  auto* search = window.findChild<QLineEdit*>(QStringLiteral("circuitSearch"));
  QCoreApplication::processEvents(); // what the last command has left to paint is not part of a letter
  Times letters;
  for (const QString& text :
       {QStringLiteral("P"), QStringLiteral("P-"), QStringLiteral("P-1"), QStringLiteral("P-15"),
        QString()}) {
    const Clock::time_point start = Clock::now();
    const double processor = processorMilliseconds();
    search->setText(text);
    QCoreApplication::processEvents();
    letters.elapsed.push_back(milliseconds(start));
    letters.processor.push_back(processorMilliseconds() - processor);
  }
  const auto slowest = [](const Times& times) {
    return *std::max_element(times.processor.begin(), times.processor.end());
  };
  std::printf(
      "%d circuits: a command with its panel %4.0f ms, processor %4.0f ms; a letter of the search %4.0f ms, "
      "slowest "
      "%4.0f ms (50 allowed)\n",
      circuitCount, middleOf(refreshes.elapsed), middleOf(refreshes.processor), middleOf(letters.elapsed),
      slowest(letters));
}

/// A set as the tool writes it: its list comes up, sheets are opened one after the other, and a tag is searched.
void measureSet(MainWindow& window) {
  constexpr int sheetCount = 250;
  constexpr int circuitsEach = 4;
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "brenvolt_gui_bench_set";
  std::filesystem::create_directories(folder / "sheets");
  DrawingDatabase sheet;
  fillCircuits(sheet, circuitsEach);
  std::string list;
  for (int number = 1; number <= sheetCount; ++number) {
    char name[32] = {};
    std::snprintf(name, sizeof name, "sheets/%03d.json", number);
    if (saveDrawing(sheet, (folder / name).wstring())) return;
    list += std::string(number == 1 ? "" : ",") + R"({"file":")" + name + R"(","circuits":["P-)" +
            std::to_string(number) + R"("]})";
  }
  if (!replaceFile(folder / "set.json", R"({"format":"brenvolt-set","sheets":[)" + list + "]}").empty())
    return;
  struct Step {
    const char* what;
    std::function<void(int run)> action;
    int runs;
  };
  auto* search = window.findChild<QLineEdit*>(QStringLiteral("setSearch"));
  const auto sheetFile = [&folder](int run) {
    char name[32] = {};
    std::snprintf(name, sizeof name, "sheets/%03d.json", run * 40 + 1);
    return QString::fromStdString((folder / name).string());
  };
  const Step steps[] = {
      {"opening the set",
       [&](int) { window.sets().open(QString::fromStdString((folder / "set.json").string())); }, 5},
      {"opening a sheet", [&](int run) { window.files().open(sheetFile(run)); }, 5},
      {"a letter of the search", [&](int run) { search->setText(QStringLiteral("P-123").left(run + 1)); },
       5}};
  for (const Step& step : steps) {
    Times times;
    for (int run = 0; run < step.runs; ++run) {
      const Clock::time_point start = Clock::now();
      const double processor = processorMilliseconds();
      step.action(run);
      QCoreApplication::processEvents();
      times.elapsed.push_back(milliseconds(start));
      times.processor.push_back(processorMilliseconds() - processor);
    }
    std::printf(
        "%d sheets: %s %4.0f ms, processor %4.0f ms, slowest %4.0f ms (50 allowed)\n", sheetCount, step.what,
        middleOf(times.elapsed), middleOf(times.processor),
        *std::max_element(times.processor.begin(), times.processor.end()));
  }
  window.action(HostText::newDrawing).trigger(); // lets go of the last sheet
  std::filesystem::remove_all(folder);
}

} // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  {
    DrawingDatabase drawing;
    fill(drawing);
    Scene scene;
    const Clock::time_point start = Clock::now();
    if (!scene.load(drawing, drawing.modelSpace())) return 1;
    std::printf("taking %d entities over: %.0f ms\n", entityCount, milliseconds(start));
    measurePan(scene, "all of it", 1.0);
    measurePan(scene, "a quarter", 2.0);
    measurePan(scene, "close", 12.0);
  }
  measureStart();
  QtWindows windows;
  HostTexts texts("resources", "en");
  SiteRunOptions options;
  options.site = "site";
  options.language = "en";
  options.unnamedSettings = SiteRunOptions::UnnamedSettings::memory;
  SiteRun site(options, windows);
  MainWindow window(site, windows, texts);
  window.show();
  for (const wchar_t* form : {L"(zan_bv_motor_select)", L"(zan_bv_wire_select)", L"(zan_bv_select_circuit)"})
    measureDialog(window, form);
  measureCircuits(window, site.session().documents().current()->drawing());
  window.runner().noteSaved();
  measureSet(window);
  return 0;
}
