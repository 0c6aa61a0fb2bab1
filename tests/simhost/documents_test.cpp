// Several drawings at once: each has its own LISP, entities and undo, and calls apply to the current one.
#include "host_fixture.h"

#include "host/host_api_database.h"
#include "host/host_api_documents.h"
#include "simhost/drawing/drawing_file.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <memory>

using namespace simhost;

TEST_CASE("documents keep to themselves, and the active one is the working drawing") {
  HostFixture host;
  DocumentManager& documents = host.session.documents();
  Document& first = *documents.current();
  host.eval(L"(setq name \"first\") (draw-line '(0 0) '(1 1))");
  Document& second = host.session.openDocument(L"second.json", std::make_unique<DrawingDatabase>());
  CHECK_EQ(documents.current(), &second);
  CHECK_EQ(kvdbWorkingDatabase(), second.database());
  CHECK_EQ(host.eval(L"(list name (length (entities-in-space)))"), L"(nil 0)");
  host.eval(L"(draw-line '(0 0) '(2 2)) (draw-line '(0 0) '(3 3))");

  const std::string untouched = drawingToJson(second.drawing());
  documents.activate(&first);
  CHECK_EQ(kvdbWorkingDatabase(), first.database());
  CHECK_EQ(host.eval(L"(list name (length (entities-in-space)))"), L"(\"first\" 1)");
  host.eval(L"(undo (undo-count))");
  CHECK_EQ(host.eval(L"(length (entities-in-space))"), L"0");
  CHECK_EQ(drawingToJson(second.drawing()), untouched);

  documents.close(first);
  CHECK_EQ(documents.all().size(), 1);
  documents.activate(&second);
  CHECK_EQ(host.eval(L"(length (entities-in-space))"), L"2");
  documents.activate(nullptr);
  CHECK_EQ(kvDocManagerPtr()->currentDocument(), nullptr);
  CHECK_FALSE(kvDocManagerPtr()->isLispReady());
}

TEST_CASE("a template that has changed is read again, also when its size and its time say nothing") {
  const brenvolt::test::TemporaryFolder folder;
  const std::string file = folder.write("t.json", drawingToJson(DrawingDatabase())).string();
  HostFixture host;
  const std::wstring lines = L"(length (insert-drawing \"" + brenvolt::fromUtf8(file) + L"\" '(0 0)))";
  const std::wstring draw = L"(mapcar (lambda (e) (entity-get e 'from)) (insert-drawing \"" +
                            brenvolt::fromUtf8(file) + L"\" '(0 0)))";
  CHECK(host.eval(lines) == L"0");
  DrawingDatabase drawing;
  drawing.addEntity(drawing.modelSpace(), {Line{{1.0, 1.0, 0.0}, {5.0, 5.0, 0.0}}});
  std::string bytes = drawingToJson(drawing);
  folder.write("t.json", bytes);
  CHECK(host.eval(draw) == L"((1.0 1.0 0.0))");
  const auto time = std::filesystem::last_write_time(file);
  bytes.replace(bytes.find("[1,1]"), 5, "[2,2]");
  folder.write("t.json", bytes);
  std::filesystem::last_write_time(file, time);
  CHECK(host.eval(draw) == L"((2.0 2.0 0.0))");
}
