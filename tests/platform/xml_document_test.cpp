#include "platform/xml_document.h"

#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

constexpr std::wstring_view declared = L"version=\"1.0\"";

std::wstring textOf(const XmlDocument& document) {
  return fromUtf16Le(document.serializeUtf16Le(declared));
}

} // namespace

TEST_CASE("what was read is written again, without the white space of a person") {
  const std::wstring line = L"<?xml version=\"1.0\"?>\r\n";
  const struct {
    const wchar_t* read;
    const wchar_t* written;
  } rows[] = {
      {L"<a/>", L"<a/>"},
      {L"<?xml version='1.0' encoding='UTF-8'?>\n<a>\n  <b y='1' x='2'/>\n</a>",
       L"<a><b y=\"1\" x=\"2\"/></a>"},
      {L"<a><!-- why --><?tool data?><b>text</b></a>", L"<a><!-- why --><?tool data?><b>text</b></a>"},
      {L"<a b=\"&lt;&amp;&#10;&quot;'é\x1F600\"/>", L"<a b=\"&lt;&amp;&#10;&quot;'é\x1F600\"/>"},
  };
  TemporaryFolder folder;
  const std::filesystem::path file = folder / "a.xml";
  for (const auto& row : rows) {
    writeBytes(file, toUtf8(row.read));
    XmlDocument document;
    std::wstring reason;
    CHECK(document.load(fromUtf8(file.string()), reason));
    CHECK(toUtf8(textOf(document)) == toUtf8(line + row.written));
  }
}

TEST_CASE("a change that makes no document is refused") {
  XmlDocument document;
  CHECK(document.root().isNull());
  CHECK(document.root().attribute(L"a").empty());
  CHECK(document.root().children(L"a").empty());
  CHECK_THROWS_AS(document.root().appendChild(L"a"), XmlError);
  CHECK_THROWS_AS(document.root().setAttribute(L"a", L"b"), XmlError);

  XmlElement root = document.createRoot(L"root");
  CHECK_THROWS_AS(document.createRoot(L"second"), XmlError);
  for (const wchar_t* name : {L"", L"two words", L"1st", L"a<b"})
    CHECK_THROWS_AS(root.appendChild(name), XmlError);
  XmlElement child = root.appendChild(L"child");
  CHECK_THROWS_AS(child.removeChild(root), XmlError);
  root.setAttribute(L"b", L"1");
  root.setAttribute(L"a", L"2");
  root.setAttribute(L"b", L"3");
  root.removeChild(child);
  CHECK(toUtf8(textOf(document)) == "<?xml version=\"1.0\"?>\r\n<root b=\"3\" a=\"2\"/>");
}
