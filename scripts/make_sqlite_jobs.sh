#!/usr/bin/env bash
# Makes the sample jobs that the host writes itself, from nothing: `kestal new-job` and the sqlite3 program.
#   scripts/make_sqlite_jobs.sh [KESTAL] [FOLDER]    (build/release/bin/kestal, samples/jobs)
# The figures come from formulas, so a run makes the same jobs again.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
kestal=${1:-$root/build/release/bin/kestal}
folder=${2:-$root/samples/jobs}

# new_job FILE: replaces an earlier one; SQL follows on the standard input.
new_job() {
    rm -f "$folder/$1"
    "$kestal" new-job "$folder/$1"
    { echo "BEGIN;" && echo "$survey" && cat && closing && echo "COMMIT; VACUUM;"; } | sqlite3 -bail "$folder/$1"
}

# What is known of the points, before it goes to the tables of the job.
survey="CREATE TEMP TABLE Survey (Number INTEGER, Name TEXT, Easting REAL, Northing REAL, Height REAL, Code TEXT);"

# The tables of the points, and what the details say of them.
closing() {
    cat <<'SQL'
UPDATE JobDetails SET CreateVersion = '8.2',
    ValidHorizPts = (SELECT COUNT(*) FROM Survey), CurrentMaxPoint = (SELECT COALESCE(MAX(Number), 0) FROM Survey),
    FirstFreePoint = (SELECT COALESCE(MAX(Number), 0) + 1 FROM Survey),
    FirstPointStored = (SELECT COALESCE(MIN(Number), 0) FROM Survey),
    MinimumX = (SELECT COALESCE(MIN(Easting), 0) FROM Survey), MaximumX = (SELECT COALESCE(MAX(Easting), 0) FROM Survey),
    MinimumY = (SELECT COALESCE(MIN(Northing), 0) FROM Survey), MaximumY = (SELECT COALESCE(MAX(Northing), 0) FROM Survey);
INSERT INTO Points SELECT Number, Easting, Northing, Code FROM Survey;
INSERT INTO Heights SELECT Number, Height FROM Survey WHERE Height IS NOT NULL;
INSERT INTO AlphaIds SELECT Number, Name FROM Survey WHERE Name IS NOT NULL;
SQL
}

details() { # COLUMN VALUE ...
    local set=
    while [ $# -gt 0 ]; do
        set+="${set:+, }$1 = $2"
        shift 2
    done
    echo "UPDATE JobDetails SET $set;"
}

# Options for the adjustment of the job's network; what is not said here is not set, and taken from the preferences.
header() { # COLUMN VALUE ...
    local columns= values=
    while [ $# -gt 0 ]; do
        columns+="${columns:+, }$1"
        values+="${values:+, }$2"
        shift 2
    done
    echo "INSERT INTO DataHeader ($columns) VALUES ($values);"
}

# A loop of twelve stations round a quarry, and what was measured from each of them.
traverse() {
    awk 'BEGIN {
        pi = atan2(0, -1); number = 0
        split("FENCE BANK TREE POLE", codes, " ")
        print "CREATE TABLE TravSet_001 (FromPt INTEGER, ToPt INTEGER, Bearing REAL, Distance REAL);"
        for (i = 0; i < 12; ++i) {
            angle = 2 * pi * i / 12; radius = 210 + 35 * sin(3 * angle) + 12 * cos(5 * angle)
            e[i] = 1000 + radius * sin(angle); n[i] = 5000 + radius * cos(angle); h[i] = 82 + 9 * cos(angle)
            printf "INSERT INTO Survey VALUES (%d, '\''ST%d'\'', %.3f, %.3f, %.3f, '\''STN'\'');\n",
                ++number, i + 1, e[i], n[i], h[i]
        }
        for (i = 0; i < 28; ++i) {
            station = i % 12; angle = 1.1 * i; reach = 14 + i % 5 * 6.35
            printf "INSERT INTO Survey VALUES (%d, NULL, %.3f, %.3f, %.3f, '\''%s'\'');\n", ++number,
                e[station] + reach * sin(angle), n[station] + reach * cos(angle), h[station] - 1.2 + i % 3 * 0.47,
                codes[i % 4 + 1]
        }
        for (i = 0; i < 12; ++i) {
            next_ = (i + 1) % 12; de = e[next_] - e[i]; dn = n[next_] - n[i]
            bearing = atan2(de, dn) * 180 / pi
            printf "INSERT INTO TravSet_001 VALUES (%d, %d, %.6f, %.4f);\n", i + 1, next_ + 1,
                bearing < 0 ? bearing + 360 : bearing, sqrt(de * de + dn * dn)
        }
    }'
}

# A grid of 200 points over a valley, ten of them stations of an adjusted network.
grid() {
    awk 'BEGIN {
        print "CREATE TABLE LSSet_001 (PointNo INTEGER, Residual REAL);"
        for (i = 0; i < 200; ++i) {
            row = int(i / 20); column = i % 20
            printf "INSERT INTO Survey VALUES (%d, %s, %.3f, %.3f, %.3f, '\''%s'\'');\n", i + 1,
                i % 20 == row ? sprintf("'\''HC%02d'\''", row + 1) : "NULL",
                331200 + column * 20 + 1.7 * sin(i), 5812400 + row * 25 + 2.1 * cos(2.3 * i),
                214 + 6 * sin(column / 4) - 0.8 * row, i % 20 == row ? "STN" : "SPOT"
            if (i % 20 == row)
                printf "INSERT INTO LSSet_001 VALUES (%d, %.4f);\n", i + 1, 0.0031 * sin(3.7 * i)
        }
    }'
}

# Points of islands as longitude and latitude in degrees.
islands() {
    awk 'BEGIN {
        for (i = 0; i < 18; ++i)
            printf "INSERT INTO Survey VALUES (%d, '\''GI%d'\'', %.8f, %.8f, NULL, '\''GPS'\'');\n", 10 * (i + 1), i + 1,
                148.5 + 0.021 * i + 0.004 * sin(5 * i), -40.25 + 0.013 * i + 0.006 * cos(4 * i)
    }'
}

{
    details Description "'Stockpile volumes, east face' || char(13, 10) || 'Second epoch'" Surveyor "'M. Okafor'" \
        Date "'Thursday, 14-Mar-2024'" Reference "'MQ-2024-02'" EarthRadius 6370000 ApproxLat -37
    traverse
} | new_job "Millbrook Quarry.gdb"
{
    details Description "'Valley floor levels for the flood study'" Surveyor "'J. Carter'" Date "'2-Sep-2024'" \
        Reference "'HC-118'" CoordType 1 Projection "'Transverse Mercator'" Zone 55 NValue 12.84613 DatumV "'AHD'" \
        EarthRadius 6378137 ApplyGeoid 1 InterpMethod "'Bilinear'" GridFile "'harrow.grd'" Spheroid "'GRS80'" \
        DatumH "'GDA2020'" DeflectionNS -4.25 DeflectionEW 3.5 ApproxLat -38 TransType "'7 Parameter'"
    header ProvPtTolH 5 ProvPtTolV 5 UnitWts 0 CSD 0 Dump 0 SP1 1 ScaleEE 1 ConvLimitH 0.0002 ConvLimitV 0.0005 \
        AngleSD 3 AngleCentr 0.001 DisConst 0.002 DisPPM 2 HtDiffSD 0.004 Iterations 15 AzimuthSD 5 AzimuthCent 0.001 \
        DirectionSD 2 DirectionCent 0.001 SlopeDisPPM 2 SlopeDisConst 0.002 ZenAngSD 4 CoordsSD 0.008 VectorsSD 0.006 \
        SDConstrFactor 1000 AutoRescale 0 RelaxObsInErr 0 Corrections "'2'" ConfLevelChiSquared 950 \
        ConfLevelEllipses 950 ConfLevelMDE "'9980'" ConfLevelOutliers 999 HorDistCent 0.001 SlopeDistCentH 0.001 \
        HtDiffCent 0.002 ZenAngleCentH 0.001 CoordsCentH 0 CoordsCentV 0 VectorsCentH 0 AngleTgtCentr 0.002 \
        AzimuthTgtCent 0.002 DirectionTgtCent 0.002 HorDistTgtCent 0.002 SlopeDistCentV 0.002 HtDiffTgtCent 0.002 \
        ZenAngleCentV 0.002 VectorsCentV 0 OutlierTest 1 SaveDBPoints 1 SaveDBPtsFixed 0 SavePtEntry 1 \
        SavePtEntryFixed 0 SavePtEntryOpt 0
    grid
} | new_job "Harrow Creek.gdb"
{
    details Description "'Control for the lights'" Surveyor "'A. Lindqvist'" Date "'21-Jan-2025'" \
        Reference "'GI 7'" OutputDecH 5 CoordType 2 Projection "'Geographic'" EarthRadius 6378137 \
        Spheroid "'GRS80'" DatumH "'GDA2020'" ApproxLat -40
    islands
} | new_job "Gannet Islands.mdb"
details Description "'Not begun yet'" Surveyor "'M. Okafor'" Date "'3-Feb-2025'" | new_job "Tarnbeck Stage 2.gdb"
