#!/usr/bin/env bash
# The dialogs know no desktop and no database: what floors 0 to 3 are built from refers to neither. The host knows the
# component's public face and the database engine.
#   check_floors.sh SOURCE_DIR LIBRARY... -- PROGRAM...
set -u
source_dir=$1
shift
bad=0
while [ "$1" != -- ]; do
    # Mangled names of Qt classes begin with Q after their length; the C libraries have prefixes.
    if nm --undefined-only "$1" 2>/dev/null | grep -E ' U (_ZN?K?[0-9]+Q[A-Z]|_ZTI?[0-9]+Q[A-Z]|q[A-Z]|mdb_|sqlite3_)'; then
        echo "$1 refers to a desktop or a database"
        bad=1
    fi
    shift
done
shift
for program in "$@"; do
    if ldd "$program" | grep -E 'Qt6|sqlite3'; then
        echo "$program links a desktop or a database"
        bad=1
    fi
done
floors="text hostif frame fileview progress joblist lsoptions preferences display browser"
for floor in $floors; do
    [ -d "$source_dir/src/$floor" ] || continue
    if grep -nE '#include <(Q|unistd|fcntl|sys/|dlfcn|windows|mdb|sqlite3|glib)' -r "$source_dir/src/$floor"; then
        echo "src/$floor includes a header of a desktop, a database or the system"
        bad=1
    fi
done
# Of the component's insides the host shares the database engine, and nothing else.
if grep -nE '#include "' -r "$source_dir/src/host" |
    grep -vE '#include "(host/|platform/database/(database_engine|new_database)\.h|hostif/(database|value|error)\.h)'; then
    echo "src/host includes a header of the component's insides"
    bad=1
fi
exit $bad
