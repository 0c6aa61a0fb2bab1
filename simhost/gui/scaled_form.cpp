// The parent product's symbol holds the scales; a form gets a value of its own.
#include "simhost/gui/scaled_form.h"

#include "simhost/host/errors.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "text/encoding.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <optional>
#include <vector>

namespace simhost {
namespace {

constexpr std::wstring_view buildData = L"GBL_qn_bv_data";
constexpr std::size_t circuitPlace = 2;
constexpr std::size_t componentsPlace = 5;

double scaleOf(const std::wstring& text, const lisp::Value& ofSession) {
  if (brenvolt::trimView(text).empty()) return ofSession.isReal() ? ofSession.asReal() : 1.0;
  const std::optional<double> scale = brenvolt::plainNumber(text);
  if (!scale || !(*scale > 0))
    throw BadInput(
        "the scale \"" + brenvolt::toUtf8(text) +
        "\" of the circuit is not a number greater than 0; build a new one");
  return *scale;
}

} // namespace

std::wstring atScale(
    const lisp::Interpreter& interpreter, const std::wstring& form, const std::wstring& circuit,
    const std::wstring& components) {
  const std::vector<lisp::Value> data = lisp::toVector(interpreter.value(buildData));
  // A site without scales has nothing to replace.
  if (data.size() <= componentsPlace) return form;
  const double scale = scaleOf(circuit, data[circuitPlace]);
  const double componentScale = scaleOf(components, data[componentsPlace]);
  const auto isNow = [&data](std::size_t place, double value) {
    return data[place].isReal() && data[place].asReal() == value;
  };
  if (isNow(circuitPlace, scale) && isNow(componentsPlace, componentScale)) return form;
  return L"(let ((GBL_qn_bv_data (append (sublist GBL_qn_bv_data 0 2) (list " + lisp::printReal(scale) +
         L") (sublist GBL_qn_bv_data 3 5) (list " + lisp::printReal(componentScale) +
         L") (nthcdr 6 GBL_qn_bv_data)))) " + form + L")";
}

} // namespace simhost
