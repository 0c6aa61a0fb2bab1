// The values of a LISP program: 16 bytes of tag and content, shared by reference count where the content is
// on the heap. Values that a program can reach are immutable, so there are no cycles and counting is
// sufficient.
#pragma once

#include "text/assertion.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace simhost::lisp {

class Arguments;
class Cons;
class ListBuilder;
struct Builtin;
struct Lambda;
struct Opaque;
struct Symbol;

/// The heap kinds come last, from `string` on.
enum class Kind : std::uint8_t {
  nil,
  truth,
  integer,
  real,
  symbol,
  entity,
  string,
  cons,
  builtin,
  lambda,
  opaque
};

/// Where a form was read: number of the file in its interpreter's list and line, both from 1; 0 is nowhere.
struct Place {
  std::uint32_t file = 0;
  std::uint32_t line = 0;
};

/// The common part of everything on the heap.
struct Object {
  explicit Object(Kind kindOfObject) : kind(kindOfObject) {} // NOLINT(*-member-init): a union
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  /// Frees an unreferenced object and everything that depends on it, however long or deep: no recursion.
  static void destroy(Object* dead) noexcept;

  union {
    std::size_t references = 0;
    Object* nextDead; ///< once the count is down to 0 its place links the objects still to be freed
  };
  const Kind kind;

protected:
  ~Object() = default;
};

/// A value. Symbols belong to an interpreter, so no value outlives the interpreter that it came from.
class Value final {
public:
  /// nil, which is the empty list and false.
  Value() noexcept : kind_(Kind::nil), content_{.object = nullptr} {}
  Value(const Value& other) noexcept : kind_(other.kind_), content_(other.content_) {
    if (isOnHeap()) ++content_.object->references;
  }
  Value(Value&& other) noexcept : kind_(other.kind_), content_(other.content_) { other.kind_ = Kind::nil; }
  Value& operator=(const Value& other) noexcept {
    Value copy(other);
    swap(copy);
    return *this;
  }
  Value& operator=(Value&& other) noexcept {
    Value taken(std::move(other));
    swap(taken);
    return *this;
  }
  ~Value() {
    if (isOnHeap() && --content_.object->references == 0) Object::destroy(content_.object);
  }

  /// T for true, nil for false.
  [[nodiscard]] static Value truth(bool condition) noexcept;
  [[nodiscard]] static Value integer(std::int32_t number) noexcept;
  [[nodiscard]] static Value real(double number) noexcept;
  [[nodiscard]] static Value symbol(Symbol& symbol) noexcept;
  /// The name by which LISP knows an entity of the drawing; the number is the embedding's.
  [[nodiscard]] static Value entity(std::uint64_t number) noexcept;
  [[nodiscard]] static Value string(std::wstring text);
  [[nodiscard]] static Value cons(Value car, Value cdr, Place place = {});
  [[nodiscard]] static Value builtin(
      std::wstring name, std::size_t minimum, std::size_t maximum, std::function<Value(Arguments&)> function);
  [[nodiscard]] static Value lambda(
      Symbol* name, std::vector<Symbol*> parameters, std::size_t required, bool takesRest, Value body);
  /// A value of the embedding that LISP only passes on; it is printed as `label`.
  [[nodiscard]] static Value opaque(std::shared_ptr<void> content, std::wstring label);

  [[nodiscard]] Kind kind() const noexcept { return kind_; }
  [[nodiscard]] bool isNil() const noexcept { return kind_ == Kind::nil; }
  /// Everything but nil counts as true.
  [[nodiscard]] explicit operator bool() const noexcept { return kind_ != Kind::nil; }
  [[nodiscard]] bool isInteger() const noexcept { return kind_ == Kind::integer; }
  [[nodiscard]] bool isReal() const noexcept { return kind_ == Kind::real; }
  [[nodiscard]] bool isNumber() const noexcept { return isInteger() || isReal(); }
  [[nodiscard]] bool isString() const noexcept { return kind_ == Kind::string; }
  [[nodiscard]] bool isSymbol() const noexcept { return kind_ == Kind::symbol; }
  [[nodiscard]] bool isCons() const noexcept { return kind_ == Kind::cons; }
  [[nodiscard]] bool isList() const noexcept { return isNil() || isCons(); }
  [[nodiscard]] bool isEntity() const noexcept { return kind_ == Kind::entity; }
  [[nodiscard]] bool isFunction() const noexcept { return kind_ == Kind::builtin || kind_ == Kind::lambda; }

  /// The content; asking for another kind than the value has is a bug.
  [[nodiscard]] std::int32_t asInteger() const;
  [[nodiscard]] double asReal() const;
  /// An integer or a real as a real.
  [[nodiscard]] double asNumber() const;
  [[nodiscard]] Symbol& asSymbol() const;
  [[nodiscard]] std::uint64_t asEntity() const;
  [[nodiscard]] const std::wstring& asString() const;
  [[nodiscard]] const Cons& asCons() const;
  [[nodiscard]] const Builtin& asBuiltin() const;
  [[nodiscard]] const Lambda& asLambda() const;
  [[nodiscard]] const Opaque& asOpaque() const;

  void swap(Value& other) noexcept {
    std::swap(kind_, other.kind_);
    std::swap(content_, other.content_);
  }

  /// The same object; numbers and entity names by their value.
  [[nodiscard]] bool isSame(const Value& other) const noexcept;

private:
  friend struct Object;
  union Content {
    std::int32_t integer;
    double real;
    Symbol* symbol;
    std::uint64_t entity;
    Object* object;
  };

  [[nodiscard]] bool isOnHeap() const noexcept { return kind_ >= Kind::string; }
  static Value ofObject(Object* fresh) noexcept;
  void expect(Kind kind) const { BRENVOLT_ASSERT(kind_ == kind, "a LISP value is of another kind"); }

  Kind kind_;
  Content content_;
};

/// Two values that print alike and are of the same kind: strings and lists by content, 1 and 1.0 differ.
[[nodiscard]] bool isEqual(const Value& left, const Value& right);

class Cons final : public Object {
public:
  Cons(Value car, Value cdr, Place place);

  [[nodiscard]] const Value& car() const noexcept { return car_; }
  [[nodiscard]] const Value& cdr() const noexcept { return cdr_; }
  [[nodiscard]] Place place() const noexcept { return place_; }

private:
  friend struct Object;
  friend class ListBuilder; ///< hangs elements on while it alone knows the list

  const Place place_;
  Value car_;
  Value cdr_;
};

/// A function of the embedding.
struct Builtin final : Object {
  Builtin(std::wstring name, std::size_t minimum, std::size_t maximum, std::function<Value(Arguments&)> code);

  const std::wstring name; ///< upper case, for messages
  const std::size_t minimumArguments;
  const std::size_t maximumArguments;
  const std::function<Value(Arguments&)> function;
};

/// A function written in LISP. It keeps no environment: variables are bound dynamically.
struct Lambda final : Object {
  Lambda(Symbol* name, std::vector<Symbol*> parameters, std::size_t required, bool takesRest, Value body);

  Symbol* const name;                    ///< null for a lambda without a name
  const std::vector<Symbol*> parameters; ///< required ones, optional ones, then the one for the rest
  const std::size_t requiredCount;       ///< of `parameters`
  const bool takesRest;                  ///< the last parameter gets the list of all further arguments
  Value body;                            ///< list of forms
};

struct Opaque final : Object {
  Opaque(std::shared_ptr<void> content, std::wstring label);

  const std::shared_ptr<void> content;
  const std::wstring label;
};

} // namespace simhost::lisp
