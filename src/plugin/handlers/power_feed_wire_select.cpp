// Answers nil: this module has no wire lookup dialog yet.
#include "plugin/handlers/power_feed_wire_select.h"

namespace brenvolt {

ResultList powerFeedWireSelect(const ResultList& arguments) {
  static_cast<void>(arguments);
  return ResultList();
}

} // namespace brenvolt
