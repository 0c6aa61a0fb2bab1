// The words that windows of other layers take from the host's texts, and Qt's own words.
#pragma once

#include "simhost/gui/host_texts.h"
#include "simhost/qt/window_words.h"

namespace simhost {

[[nodiscard]] WindowWords windowWords(const HostTexts& texts);

/// Qt's own words, in the dialog for files and on the buttons of messages, in this language of two letters.
void loadQtWords(const QString& language);

} // namespace simhost
