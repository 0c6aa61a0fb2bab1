// Lists on the screen: tables that can be read, selected and copied.
#pragma once

#include "circuits/reports/drawing_reports.h"
#include "simhost/gui/host_texts.h"

#include <QString>

#include <vector>

class QWidget;

namespace simhost {

struct ShownList {
  circuits::Report list;
  HostText title; ///< in place of the list's own, which is English
  HostText note;  ///< likewise, of the number that is missing
};

/// The words of a column.
[[nodiscard]] QString columnTitle(const HostTexts& texts, const circuits::ReportColumn& column);

/// Opens the window and returns when the user has closed it. Lists without rows are left out.
void showReport(
    const HostTexts& texts, const QString& title, const std::vector<ShownList>& lists, QWidget* parent);

} // namespace simhost
