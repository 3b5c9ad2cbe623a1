CREATE TABLE contact_group(
  _id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
  name text NOT null
);
CREATE TABLE contact(
  _id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
  src_id TEXT NULL,
  full_name TEXT NULL
);
CREATE INDEX index_contacts_src_id ON contact(src_id ASC);
CREATE INDEX index_contacts_full_name ON contact(full_name ASC);
CREATE TABLE data(
  _id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL,
  type INTEGER NOT NULL,
  contact_id INTEGER NOT NULL,
  src_id TEXT NULL,
  data1 TEXT DEFAULT '',
  data2 TEXT DEFAULT '',
  data3 TEXT DEFAULT '',
  data4 TEXT DEFAULT '',
  data5 TEXT DEFAULT '',
  data6 TEXT DEFAULT '',
  data7 TEXT DEFAULT '',
  data8 TEXT DEFAULT '',
  data9 TEXT DEFAULT '',
  data10 TEXT DEFAULT '',
  data11 TEXT DEFAULT '',
  data12 TEXT DEFAULT '',
  data13 TEXT DEFAULT '',
  data14 TEXT DEFAULT '',
  data15 BLOB NULL
);
CREATE INDEX index_data_contact ON data(contact_id ASC, type ASC);
CREATE INDEX index_data_data ON data(type ASC, data1 ASC);
CREATE INDEX index_data_src_id ON data(src_id ASC);
