"""Prints the rows of a CSV file as JSON: read_csv.py FILE."""

import csv
import json
import sys

with open(sys.argv[1], encoding="utf-8", newline="") as file:
    print(json.dumps(list(csv.reader(file, strict=True))))
