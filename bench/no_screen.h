// A dialog that nobody shows: its controls alone.
#pragma once

#include "simhost/ui/dialog_model.h"

namespace brenvolt::bench {

class NoScreen final : public simhost::DialogModel {
public:
  using DialogModel::DialogModel;
  void startTimer(int, int) override {}
  void killTimer(int) override {}
  void run() override {}
};

} // namespace brenvolt::bench
