-- The tables of the first versions, filled as they filled them.
PRAGMA encoding = 'UTF-16le';
CREATE TABLE facts (name PRIMARY KEY, value) WITHOUT ROWID;
INSERT INTO facts VALUES ('os.major', 5), ('os.minor', 2), ('os.servicePack', 1), ('os.platform', 2),
  ('os.product', 3), ('os.verifies', 0), ('administrator', 0), ('registry.readable', 1),
  ('registry.writable', 0), ('executable', 'C:\x.exe');
CREATE TABLE printers (id INTEGER PRIMARY KEY AUTOINCREMENT, folded, name, driver, port, processor,
  help, data_file, attributes, administer, writable, record);
INSERT INTO printers VALUES (6, 'P', 'p', 'd', 'q', 'w', '', 'f', 72, 1, 0, x'0100');
CREATE TABLE printer_data (printer, folded, name, type, bytes);
INSERT INTO printer_data VALUES (6, 'N', 'n', 1, x'09');
CREATE TABLE registry_keys (folded, name);
INSERT INTO registry_keys VALUES ('A', 'a');
CREATE TABLE registry_values (key, folded, name, type, bytes);
INSERT INTO registry_values VALUES ('A', 'V', 'v', 4, x'');
PRAGMA user_version = 1;
