// Saved configurations as a table with the data of their motors and loads, from which the user chooses one.
#pragma once

#include "simhost/gui/host_texts.h"
#include "simhost/site/saved_configurations.h"

#include <cstddef>
#include <optional>
#include <vector>

class QWidget;

namespace simhost {

/// Lets the user choose one of `rows`, places in the site's saved configurations. The table is sorted by its headers, and
/// a search field looks in all columns. Nothing when the user cancels.
[[nodiscard]] std::optional<std::size_t> chooseConfiguration(
    QWidget* parent, const HostTexts& texts, const SiteConfigurations& site,
    const std::vector<std::size_t>& rows);

} // namespace simhost
