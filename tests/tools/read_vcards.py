"""Prints the vCards of a file as an independent reader sees them: one JSON list of {property: [values]}."""

import base64
import json
import sys

import vobject

cards = []
with open(sys.argv[1], encoding="utf-8", newline="") as source:
    for card in vobject.readComponents(source.read()):
        values = {}
        for child in card.getChildren():
            value = child.value
            if isinstance(value, bytes):
                value = base64.b64encode(value).decode()
            elif isinstance(value, (list, tuple)):
                value = [str(part) for part in value]
            else:
                value = str(value)
            values.setdefault(child.name, []).append(value)
        cards.append(values)
json.dump(cards, sys.stdout)
