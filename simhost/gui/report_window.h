// Lists on the screen: tables that can be read, selected and copied.
#pragma once

#include "circuits/reports/drawing_reports.h"

#include <QString>

#include <vector>

class QWidget;

namespace simhost {

/// Opens the window and returns when the user has closed it. Lists without rows are left out.
void showReport(const QString& title, const std::vector<circuits::Report>& lists, QWidget* parent);

} // namespace simhost
