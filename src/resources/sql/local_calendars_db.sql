CREATE TABLE calendars(
  _id INTEGER PRIMARY KEY AUTOINCREMENT,
  name TEXT,
  dev_id TEXT,
  src_id TEXT
);
CREATE UNIQUE INDEX index_calendars ON calendars(name);
CREATE TABLE events(
  _id INTEGER PRIMARY KEY AUTOINCREMENT,
  calendar_id INTEGER NOT NULL,
  tz TEXT,
  create_date INTEGER,
  start_date INTEGER,
  end_date INTEGER,
  summary TEXT,
  description TEXT,
  rrule TEXT,
  all_day INTEGER,
  dev_id TEXT,
  src_id TEXT,
  hash TEXT,
  FOREIGN KEY(calendar_id) REFERENCES calendars(_id)
);
CREATE INDEX index_events ON events(calendar_id, start_date);
CREATE INDEX index_events_hash ON events(hash);
CREATE TABLE reminders(
  _id INTEGER PRIMARY KEY AUTOINCREMENT,
  event_id INTEGER NOT NULL,
  minutes INTEGER,
  method INTEGER,
  dev_id TEXT,
  src_id TEXT,
  FOREIGN KEY(event_id) REFERENCES events(_id)
);
CREATE INDEX index_reminders ON reminders(event_id);
