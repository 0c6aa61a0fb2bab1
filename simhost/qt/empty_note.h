// What a list or a grid says in its place while it has no entries.
#pragma once

#include <QString>

class QAbstractItemView;

namespace simhost {

/// Shows `words` over the view as long as it shows no rows; nothing for no words. The view owns what is made.
void showWhenEmpty(QAbstractItemView& view, const QString& words);

} // namespace simhost
