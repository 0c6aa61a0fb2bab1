// The texts of forms in another language: one plain text file for each, in the folder of the forms, for translators.
#pragma once

#include "simhost/ui/forms.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace simhost {

/// Puts the words that a language file has for this form over those of the form, which are English:
///
///     form NAME
///       title = WORDS
///       ROLE = WORDS            the label
///       ROLE.tooltip = WORDS
///       ROLE.unit = WORDS       the text after the control
///       ROLE.empty = WORDS      its text without entries
///       section TITLE = WORDS   TITLE as English has it
///
/// Words that it lacks stay English. Throws FormError, naming file and line, for a line that is none of these and for a
/// role that the form does not have.
void translateForm(Form& form, std::string_view bytes, const std::string& fileName);

/// The same from `<folder>/<language>.txt`; nothing happens when this file does not exist, and for English.
void translateFormIn(Form& form, const std::filesystem::path& folder, const std::string& language);

} // namespace simhost
