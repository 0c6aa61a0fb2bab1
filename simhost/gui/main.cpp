// The program `brenvolt-gui`: reads its command line, starts a site and shows the main window.
#include "simhost/gui/gui_run.h"

int main(int argc, char** argv) {
  return simhost::runGui(argc, argv);
}
