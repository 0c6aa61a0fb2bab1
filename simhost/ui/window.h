// The host's windows as the plug-in may hand them around.
#pragma once

#include "host/host_api_types.h"

/// A window of a window system; without a screen only the frame that prompts belong to.
class KvWindow {
public:
  KvWindow() = default;
  KvWindow(const KvWindow&) = delete;
  KvWindow& operator=(const KvWindow&) = delete;
  virtual ~KvWindow() = default;
};
