// The words of forms in another language: one plain text file for each, beside the forms, as a translator edits it.
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
///       ROLE.unit = WORDS       what stands behind the control
///       ROLE.empty = WORDS      what it says while it has no entries
///       section TITLE = WORDS   TITLE as English has it
///
/// Words that it lacks stay English. Throws FormError, naming file and line, for a line that is none of these and for a
/// role that the form does not have.
void translateForm(Form& form, std::string_view bytes, const std::string& fileName);

/// The same from `<folder>/<language>.txt`; nothing happens when there is no such file, and for English.
void translateFormIn(Form& form, const std::filesystem::path& folder, const std::string& language);

} // namespace simhost
