// The commands that put the drawing on paper or into a picture: page setup, preview, print and PDF share one page.
#pragma once

#include "simhost/gui/paper_output.h"
#include "simhost/gui/window_services.h"

namespace simhost {

class DrawingFiles;

class PaperCommands final {
public:
  /// The files must outlive it.
  PaperCommands(const WindowServices& services, const DrawingFiles& files)
      : services_(services), files_(files) {}
  PaperCommands(const PaperCommands&) = delete;
  PaperCommands& operator=(const PaperCommands&) = delete;

  /// False, with the reason in the status line, when the file is not written.
  bool exportSvg(const QString& file);
  bool exportPdf(const QString& file);
  /// The same, into a file that the user names.
  void askExportSvg();
  void askExportPdf();
  void askPageSetup();
  void preview();
  void print();
  /// The drawing as a picture on the clipboard.
  void copyPicture();

private:
  /// Of the drawing in its title block: as the user gave it, else the name of its file.
  [[nodiscard]] QString title() const;
  /// Nothing, with the reason in the status line, for a frame that cannot be used.
  [[nodiscard]] std::optional<PaperPage> page() const;
  void showResult(PageResult result);

  WindowServices services_;
  const DrawingFiles& files_;
};

} // namespace simhost
