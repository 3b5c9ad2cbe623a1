"""Prints the events of an iCalendar file as an independent reader sees them: a JSON list of {property: text}."""

import json
import sys

import icalendar

with open(sys.argv[1], "rb") as source:
    calendar = icalendar.Calendar.from_ical(source.read())
events = []
for event in calendar.walk("VEVENT"):
    events.append({
        name: (value.to_ical().decode() if hasattr(value, "to_ical") else str(value))
        for name, value in event.property_items() if name not in ("BEGIN", "END")
    })
json.dump(events, sys.stdout)
