#!/bin/sh
# Makes the first corpus of sqlite_fuzz in a folder: the SQLite jobs among the samples, and small databases with what
# those lack, each without its first 16 bytes.
#
#   fuzz/sqlite_seeds.sh FOLDER        (needs the program sqlite3)
set -eu
[ $# -eq 1 ] || { sed -n '2,5p' "$0" >&2; exit 2; }
mkdir -p "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

table='CREATE TABLE JobDetails(Description TEXT, Surveyor TEXT, Date TEXT, Zone INTEGER, NValue REAL, ApplyGeoid BOOLEAN)'
row="INSERT INTO JobDetails VALUES('Dam', NULL, '1-May-2026', 56, 12.5, 1)"
long="INSERT INTO JobDetails(Description) VALUES(printf('%.3000c', 'x'))"
sqlite3 "$work/small" 'PRAGMA page_size=512' "$table" "$row" "$long"
sqlite3 "$work/utf16" "PRAGMA encoding='UTF-16le'" 'PRAGMA page_size=512' "$table" "$row"
sqlite3 "$work/log" 'PRAGMA page_size=512' 'PRAGMA journal_mode=WAL' "$table" "$row" >/dev/null
sqlite3 "$work/vacuum" 'PRAGMA page_size=512' 'PRAGMA auto_vacuum=FULL' "$table" "$row" "$long"
sqlite3 "$work/odd" 'PRAGMA page_size=512' "$table" "$row" 'CREATE VIEW Points AS SELECT * FROM JobDetails' \
    'CREATE TABLE AlphaIds(PointNo INTEGER PRIMARY KEY, AlphaId TEXT) WITHOUT ROWID' 'INSERT INTO AlphaIds VALUES(1, 2)' \
    'CREATE TRIGGER t AFTER INSERT ON AlphaIds BEGIN DELETE FROM JobDetails; END' \
    'CREATE INDEX byZone ON JobDetails(Zone) WHERE Zone > 5' 'CREATE TABLE c(X GENERATED ALWAYS AS (1), Y)'

here=$(dirname "$0")
for file in "$work"/* "$here"/../samples/jobs/*; do
    head -c 6 "$file" | grep -qa SQLite || continue
    tail -c +17 "$file" >"$1/$(basename "$file")"
done
