// `zan_bv_build_circuit`: builds the circuit whose template was inserted. Returns T or nil, never a list.
#pragma once

#include "host/result_list.h"

namespace brenvolt {

/// A form that calls the function again, directly or not, starts a build inside the current one. An inner build with a
/// dialog cannot run while another dialog is open; it reports this on the command line and returns nil.
[[nodiscard]] ResultList buildCircuit(const ResultList& arguments);

/// `zan_bv_build_and_save`: a direct build whose choices are saved as well. Takes the list of `zan_bv_build_circuit` and
/// the name to save under; returns (T), (nil) for a circuit that was built and could not be saved, and nil for one that
/// was not built.
[[nodiscard]] ResultList buildAndSave(const ResultList& arguments);

} // namespace brenvolt
