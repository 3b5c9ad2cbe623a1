CREATE TABLE call(
  _id INTEGER PRIMARY KEY AUTOINCREMENT,
  address TEXT,
  date INTEGER,
  duration INTEGER,
  flags INTEGER,
  person TEXT,
  hash TEXT
);
CREATE INDEX date_index ON call(date);
CREATE INDEX hash_index ON call(hash);
