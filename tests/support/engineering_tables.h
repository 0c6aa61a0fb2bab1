// A database of engineering tables in a folder of its own, made as an import makes it.
#pragma once

#include "data/engineering_columns.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <map>
#include <string>

namespace brenvolt::test {

/// Name of a table to its CSV text.
using TableTexts = std::map<std::string, std::string>;

class EngineeringTables {
public:
  /// All .csv files of a folder.
  explicit EngineeringTables(const std::filesystem::path& source = "site/tables") {
    import(source, BadCells::refuse);
  }
  explicit EngineeringTables(const TableTexts& tables, BadCells badCells = BadCells::refuse) {
    const std::filesystem::path source = folder_ / "tables";
    std::filesystem::create_directory(source);
    for (const auto& [name, text] : tables)
      writeBytes(source / (name + ".csv"), text);
    import(source, badCells);
  }

  [[nodiscard]] std::string file() const { return (folder_ / "tables.db").string(); }
  /// The form by which LISP names it, with the electrical code in use.
  [[nodiscard]] std::string lisp(const std::string& code = "NEC") const {
    return "(setq GBL_qn_electcodestd \"" + code + "\") (defun c:zan_bv_figure_mccdb_fnam () \"" + file() +
           "\")";
  }

private:
  void import(const std::filesystem::path& source, BadCells badCells) const {
    ImportOptions options = engineeringImport();
    options.badCells = badCells;
    for (const std::wstring& error :
         importTables(fromUtf8(file()), {fromUtf8(source.string())}, options).errors)
      FAIL(toUtf8(error));
  }

  TemporaryFolder folder_;
};

} // namespace brenvolt::test
