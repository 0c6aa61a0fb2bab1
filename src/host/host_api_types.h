// The host API, first header: status codes, result buffers and the small values passed between host and plug-in.
//
// The host exports every function and class of the host_api*.h family under the names given here; the plug-in module
// leaves them undefined and binds them when it is loaded. Another host implements this family and nothing more. Host
// and plug-in are built with the same compiler and standard library, so standard types may be passed.
// Everything is called on the host's main thread.
#pragma once

#include <cstdint>
#include <string>

/// On functions and classes that the host exports.
#define KV_HOST_API [[gnu::visibility("default")]]

/// The results of the functions named `kved...` and `kvut...`.
namespace kvstatus {
inline constexpr int normal = 5100;        ///< done
inline constexpr int none = -5002;         ///< the user entered nothing (an empty input)
inline constexpr int cancel = -5001;       ///< the user cancelled
inline constexpr int rejected = -5003;     ///< the host refused: unknown name, wrong type
inline constexpr int lispNotReady = -5004; ///< the document cannot run LISP now
inline constexpr int failed = -5005;       ///< a LISP error; the host has reported it on its command line
} // namespace kvstatus

/// Type codes of result buffers.
namespace kvtype {
inline constexpr std::int16_t none = 5000;
inline constexpr std::int16_t real = 5001;
inline constexpr std::int16_t point2d = 5002;
inline constexpr std::int16_t shortInteger = 5003; ///< 16 bits
inline constexpr std::int16_t string = 5005;
inline constexpr std::int16_t entityName = 5006;
inline constexpr std::int16_t point3d = 5009;
inline constexpr std::int16_t longInteger = 5010; ///< 32 bits
inline constexpr std::int16_t listBegin = 5016;
inline constexpr std::int16_t listEnd = 5017;
inline constexpr std::int16_t nil = 5019;
inline constexpr std::int16_t t = 5021;
/// Only when building with `kvutBuildList`: a list that is linked in; it then belongs to the new list.
inline constexpr std::int16_t splice = 5023;
/// Group codes of entity data: application name, brace, text.
inline constexpr std::int16_t applicationName = 1001;
inline constexpr std::int16_t controlString = 1002;
inline constexpr std::int16_t dataString = 1000;
} // namespace kvtype

/// A point in drawing units.
struct KvPoint3d {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  friend bool operator==(const KvPoint3d&, const KvPoint3d&) = default;
};

/// The LISP name of an entity: valid for one session of one drawing. 0 means no entity. It is passed through variadic
/// arguments and therefore has no constructor: write `KvEntityName name{}`.
struct KvEntityName {
  std::uint64_t value;
  friend bool operator==(KvEntityName, KvEntityName) = default;
};

/// One node of a chain. Strings are owned by the node (allocated by the host, see `kvutNewString`). Group codes below
/// 1000 in a wire type's settings carry a string (1 to 4) or an integer (90: longInteger field, 290: shortInteger).
struct KvResultBuffer {
  KvResultBuffer* next = nullptr;
  std::int16_t type = kvtype::none;
  union Value {
    double real;
    double point[3];
    std::int16_t shortInteger;
    std::int32_t longInteger;
    wchar_t* string;
    KvEntityName entityName;
    Value() : point{0.0, 0.0, 0.0} {}
  } value;
};

/// A window of the host, only ever passed on.
class KvWindow;
