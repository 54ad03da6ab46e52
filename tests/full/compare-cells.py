#!/usr/bin/env python3
"""Compares a CSV file cell by cell with the OpenDocument spreadsheet that an office program made of it."""
import csv
import re
import sys
import xml.etree.ElementTree as ElementTree
import zipfile

TABLE = "{urn:oasis:names:tc:opendocument:xmlns:table:1.0}"
OFFICE = "{urn:oasis:names:tc:opendocument:xmlns:office:1.0}"


def seconds(hours, minutes, rest):
    return int(hours) * 3600 + int(minutes) * 60 + float(rest)


def value(cell):
    kind = cell.get(OFFICE + "value-type")
    if kind == "float":
        return float(cell.get(OFFICE + "value"))
    if kind == "time":
        return seconds(*re.fullmatch(r"PT(\d+)H(\d+)M([\d.]+)S", cell.get(OFFICE + "time-value")).groups())
    return "".join(cell.itertext())


def wanted(text):
    time = re.fullmatch(r"(\d+):(\d\d):(\d\d\.\d+)", text)
    if time:
        return seconds(*time.groups())
    return float(text) if re.fullmatch(r"-?\d+(\.\d+)?", text) else text


def without_end(row):  # of empty cells, which sheets have as many of as they like
    while row and row[-1] == "":
        row.pop()
    return row


def cells(row):
    found = []
    for cell in row.findall(TABLE + "table-cell"):
        found += [value(cell)] * int(cell.get(TABLE + "number-columns-repeated", "1"))
    return without_end(found)


def rows(table):
    for row in table.iter(TABLE + "table-row"):
        found = cells(row)
        if found:
            yield from [found] * int(row.get(TABLE + "number-rows-repeated", "1"))


def differ(a, b):
    return a != b if isinstance(a, str) or isinstance(b, str) else abs(a - b) > 1e-6


def main(table, sheet):
    with open(table, newline="", encoding="utf-8") as file:
        expected = [without_end([wanted(text) for text in row]) for row in csv.reader(file)]
    content = ElementTree.fromstring(zipfile.ZipFile(sheet).read("content.xml"))
    found = list(rows(content))
    if len(expected) < 2 or [len(row) for row in expected] != [len(row) for row in found]:
        sys.exit(f"{sheet}: has other cells than {table}: {found}")
    wrong = [(a, b) for one, other in zip(expected, found) for a, b in zip(one, other) if differ(a, b)]
    if wrong:
        sys.exit(f"{sheet}: wanted and found: {wrong}")


main(*sys.argv[1:])
