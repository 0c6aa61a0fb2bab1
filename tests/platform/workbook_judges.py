"""Compares a workbook, as independent programs read it, with the cells that our reader found.

Usage: workbook_judges.py xlrd|ssconvert WORKBOOK CELLS
CELLS has a line for each cell: sheet number, row, column, kind and text (as JSON), tabs between.
Exit status: 0 the same, 1 different (told on standard output), 77 the judge is not installed.
"""
import csv
import json
import os
import shutil
import subprocess
import sys
import tempfile


def fail(place, ours, theirs):
    print(f"sheet {place[0]} row {place[1]} column {place[2]}: ours {ours!r}, theirs {theirs!r}")
    sys.exit(1)


def same_number(text, number):
    return abs(float(text) - number) <= 1e-14 * abs(number)


def read_cells(path):
    cells = {}
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            sheet, row, column, kind, text = line.rstrip("\n").split("\t")
            cells[int(sheet), int(row), int(column)] = kind, json.loads(text)
    return cells


def date_text(xlrd, value, mode):
    year, month, day, hour, minute, second = xlrd.xldate_as_tuple(value, mode)
    return (f"{year:04}-{month:02}-{day:02}", f"{hour:02}:{minute:02}:{second:02}")


def judge_xlrd(path, ours):
    try:
        import xlrd
    except ImportError:
        sys.exit(77)
    book = xlrd.open_workbook(path, logfile=open(os.devnull, "w"))
    for index, sheet in enumerate(book.sheets()):
        for row in range(sheet.nrows):
            for column in range(sheet.ncols):
                cell = sheet.cell(row, column)
                if cell.ctype in (xlrd.XL_CELL_EMPTY, xlrd.XL_CELL_BLANK):
                    continue
                place = index, row, column
                kind, text = ours.pop(place, ("none", ""))
                if cell.ctype == xlrd.XL_CELL_TEXT:
                    same = kind == "text" and text == cell.value
                elif cell.ctype == xlrd.XL_CELL_NUMBER:
                    same = kind == "number" and same_number(text, cell.value)
                elif cell.ctype == xlrd.XL_CELL_DATE:
                    day, clock = date_text(xlrd, cell.value, book.datemode)
                    same = kind == "date" and text in (day, clock, f"{day} {clock}")
                elif cell.ctype == xlrd.XL_CELL_BOOLEAN:
                    same = kind == "boolean" and text == ("TRUE" if cell.value else "FALSE")
                else:
                    same = kind == "error" and text == xlrd.error_text_from_code[cell.value]
                if not same:
                    fail(place, (kind, text), (cell.ctype, cell.value))
    for place, cell in ours.items():
        fail(place, cell, None)


def judge_ssconvert(path, ours):
    if shutil.which("ssconvert") is None:
        sys.exit(77)
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(
            ["ssconvert", "-S", path, os.path.join(folder, "%n.csv")], check=True, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, env={**os.environ, "LC_ALL": "C.UTF-8"})
        for index in range(len(os.listdir(folder))):
            with open(os.path.join(folder, f"{index}.csv"), encoding="utf-8", newline="") as lines:
                for row, texts in enumerate(csv.reader(lines)):
                    for column, theirs in enumerate(texts):
                        place = index, row, column
                        kind, text = ours.pop(place, ("none", ""))
                        same = same_number(text, float(theirs)) if kind == "number" else text == theirs
                        if not same:
                            fail(place, (kind, text), theirs)
    for place, cell in ours.items():
        if cell[1]:
            fail(place, cell, None)


csv.field_size_limit(10**6)
{"xlrd": judge_xlrd, "ssconvert": judge_ssconvert}[sys.argv[1]](sys.argv[2], read_cells(sys.argv[3]))
