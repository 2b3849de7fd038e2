#!/usr/bin/python3
"""Prints what an .xlsx file holds, as a reader sees it that does not know who wrote it.

The names of the sheets, then a line for each cell of the first, row by row: "R1C3 text Flow" or
"R2C3 number 42".
"""

import sys

import openpyxl

book = openpyxl.load_workbook(sys.argv[1])
print(" ".join(book.sheetnames))
# The cells that are there; walking a whole sheet with one cell at its end would take ages.
for (row, column), cell in sorted(book.worksheets[0]._cells.items()):
    if cell.value is None:
        continue
    is_text = isinstance(cell.value, str)
    value = cell.value if is_text else format(cell.value, ".15g")
    print(f"R{row}C{column} {'text' if is_text else 'number'} {value}")
