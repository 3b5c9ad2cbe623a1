CREATE TABLE bookmarks(
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  parent INTEGER,
  type INTEGER,
  title TEXT,
  url TEXT COLLATE NOCASE,
  order_index INTEGER NOT NULL,
  src_id TEXT NOT NULL
);
CREATE INDEX folder_list_index ON bookmarks(parent, type, order_index);
CREATE INDEX bookmarks_list_index ON bookmarks(parent, type, url);
