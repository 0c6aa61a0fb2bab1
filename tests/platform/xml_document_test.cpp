#include "platform/xml_document.h"

#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;

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
  CHECK(
      toUtf8(fromUtf16Le(document.serializeUtf16Le(L"version=\"1.0\""))) ==
      "<?xml version=\"1.0\"?>\r\n<root b=\"3\" a=\"2\"/>");
}

TEST_CASE("a long text of UTF-16 is read whole wherever its characters begin; half a character is refused") {
  const std::string mark = "\xFF\xFE";
  for (const wchar_t* start : {L"", L"x", L"\xFFFD"}) {
    std::wstring text = start;
    text.append(40'000, L'\x1F50C'); // two units each: 160,000 bytes
    XmlDocument document;
    document.createRoot(L"root").setAttribute(L"a", text);
    std::string bytes = mark + document.serializeUtf16Le(L"version=\"1.0\"");
    std::wstring reason;
    XmlDocument read;
    REQUIRE(read.read(bytes, reason));
    CHECK(bool(read.root().attribute(L"a") == text));
    const std::size_t half = bytes.rfind("\x3D\xD8"); // the first unit of the last character
    bytes.erase(half, 2);
    CHECK_FALSE(read.read(bytes, reason));
    CHECK(toUtf8(reason) == "There are bytes that do not fit the encoding of the file.");
  }
}
