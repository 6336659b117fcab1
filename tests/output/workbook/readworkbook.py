"""Prints what an independent reader finds in a workbook, one thing a line."""
import sys

import xlrd

book = xlrd.open_workbook(sys.argv[1], formatting_info=True)
print("biff", book.biff_version)
KINDS = {0: "empty", 1: "text", 2: "number", 6: "blank"}


def look_of(index):
    look = book.xf_list[index]
    font = book.font_list[look.font_index]
    pattern = book.format_map[look.format_key].format_str
    weight = "bold" if font.weight >= 700 else "plain"
    return f"{pattern} {font.name} {font.height // 20} {weight} {look.alignment.hor_align}"


looks = [look_of(index) for index in range(len(book.xf_list))]
for sheet in book.sheets():
    print("sheet", sheet.name, sheet.nrows, sheet.ncols)
    for merged in sorted(sheet.merged_cells):
        print("merged", *merged)
    for column, info in sorted(sheet.colinfo_map.items()):
        print("column", column, info.width)
    for row in range(sheet.nrows):
        for column, cell in enumerate(sheet.row(row)):
            if cell.ctype != 0:
                print("cell", row, column, KINDS.get(cell.ctype, cell.ctype), repr(cell.value), looks[cell.xf_index])
