CREATE TABLE notes(
  _id INTEGER PRIMARY KEY AUTOINCREMENT,
  create_date INTEGER,
  modified_date INTEGER,
  title TEXT,
  summary TEXT,
  content TEXT,
  dev_id TEXT,
  src_id TEXT,
  hash TEXT
);
CREATE INDEX note_create_date_index ON notes(modified_date);
CREATE UNIQUE INDEX note_hash_index ON notes(hash);
