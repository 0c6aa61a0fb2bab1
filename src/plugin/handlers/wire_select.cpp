// Answers nil: this module has no wire lookup dialog yet.
#include "plugin/handlers/wire_select.h"

namespace brenvolt {

ResultList wireSelect(const ResultList& arguments) {
  static_cast<void>(arguments);
  return ResultList();
}

} // namespace brenvolt
