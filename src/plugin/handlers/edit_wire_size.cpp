// Answers nil: this module has no wire lookup dialog yet.
#include "plugin/handlers/edit_wire_size.h"

namespace brenvolt {

ResultList editWireSize(const ResultList& arguments) {
  static_cast<void>(arguments);
  return ResultList();
}

} // namespace brenvolt
