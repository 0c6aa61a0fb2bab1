// Answers nil: this module has no reader of option tables yet.
#include "plugin/handlers/code_standard_description.h"

namespace brenvolt {

ResultList codeStandardDescription(const ResultList& arguments) {
  static_cast<void>(arguments);
  return ResultList();
}

} // namespace brenvolt
