CREATE TABLE manifest(
  file_name VARCHAR PRIMARY KEY,
  last_date INTEGER NOT NULL
);
