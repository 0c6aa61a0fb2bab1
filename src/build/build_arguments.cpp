#include "build/build_arguments.h"

#include "text/numbers.h"

namespace brenvolt {

namespace {

enum class WrongType { ignored, fails, empties };

struct TextArgument {
  int position;
  std::wstring ZanBuildArgs::*field;
  WrongType wrongType;
};
constexpr TextArgument textArguments[] = {
    {0, &ZanBuildArgs::workbook, WrongType::fails},
    {1, &ZanBuildArgs::worksheet, WrongType::fails},
    {2, &ZanBuildArgs::circuit, WrongType::ignored},
    {3, &ZanBuildArgs::type, WrongType::ignored},
    {4, &ZanBuildArgs::historyName, WrongType::ignored},
    {6, &ZanBuildArgs::lastHandleText, WrongType::fails},
    {8, &ZanBuildArgs::presetText, WrongType::empties},
    {9, &ZanBuildArgs::codeHandleText, WrongType::ignored},
    {10, &ZanBuildArgs::drawingIndex, WrongType::ignored},
    {11, &ZanBuildArgs::wireText, WrongType::ignored},
};
constexpr int directBuildPosition = 5;
constexpr int undoPositionPosition = 7;

bool takeText(const TextArgument& argument, const ListReader& item, ZanBuildArgs& args) {
  if (std::optional<std::wstring> text = item.text()) {
    args.*argument.field = std::move(*text);
    return true;
  }
  if (argument.wrongType == WrongType::empties) (args.*argument.field).clear();
  return argument.wrongType != WrongType::fails;
}

void takeDirectBuild(const ListReader& item, ZanBuildArgs& args) {
  if (const auto text = item.text()) args.directBuild = toInt(*text) == 1;
  if (const auto number = item.integer()) args.directBuild = *number == 1;
  if (item.isT()) args.directBuild = true;
  if (item.isNil()) args.directBuild = false;
}

bool takeItem(int position, const ListReader& item, ZanBuildArgs& args) {
  if (position == directBuildPosition) takeDirectBuild(item, args);
  if (position == undoPositionPosition) args.undoPosition = item.integer().value_or(args.undoPosition);
  for (const TextArgument& argument : textArguments)
    if (argument.position == position) return takeText(argument, item, args);
  return true;
}

} // namespace

std::optional<ZanBuildArgs> parseBuildArguments(const ResultList& arguments) {
  ZanBuildArgs args;
  ListReader item(arguments);
  bool inList = item.enterList();
  for (int position = 0;; ++position) {
    // The end of the list is not an item, wherever it is: counting continues after it.
    if (inList && item.atEnd()) inList = !item.leaveList();
    if (item.atEnd()) break;
    if (!takeItem(position, item, args)) return std::nullopt;
    item.skipElement();
  }
  if (args.workbook.empty() || args.worksheet.empty()) return std::nullopt;
  return args;
}

} // namespace brenvolt
