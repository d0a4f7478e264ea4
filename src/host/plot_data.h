#pragma once

#include "host/plot_projection.h"
#include "host/view_marks.h"
#include "hostif/database.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kestal {

class CurrentJob;

struct PlotPoint {
    QPointF place; ///< metres, or degrees in a geographic job; x to the east
    std::int32_t number = 0;
    bool isAdjusted = false; ///< by least squares
    std::optional<double> height;
    QString alphaId;
    QString code;
};

struct PlotLine {
    Mark kind = Mark::Traverse; ///< the mark that shows it
    std::uint32_t from = 0;     ///< positions in PlotData::points
    std::uint32_t to = 0;
};

/// What there is to draw of a job.
struct PlotData {
    std::vector<PlotPoint> points;
    std::vector<PlotLine> lines;
    bool isGeographic = false;                ///< the coordinates are degrees
    std::optional<ZoneProjection> projection; ///< of a job in a zone of a transverse Mercator projection
    QString geoidFile;
    QString undulation; ///< the N-value and the deflections of the job, with their decimals
    QString deflections;
    int heightDecimals = 3;
    QString fault; ///< why there are no points, where something is wrong

    /// A label of a point; "" where it has none.
    QString label(const PlotPoint& point, Mark kind) const;
};

/// Reads the points of an open job and the lines that were observed between them, in pieces, since a job may
/// have very many. A line from station to station is a traverse line, one to a point that nothing was
/// observed from a radiation. A point or line with a value that is no place is left out; so is all that the
/// job has no table for.
class PlotReader {
public:
    explicit PlotReader(const CurrentJob& job);
    /// Reads on for about so many milliseconds. True when there is nothing more.
    bool read(int milliseconds);
    /// What was read, from the reader.
    PlotData take() { return std::move(data_); }

private:
    using Take = void (PlotReader::*)(genutil::Recordset& records);
    struct Table {
        std::string name;
        Take take;
    };
    void listTables();
    bool openNext();
    void takePoint(genutil::Recordset& records);
    void takeAlphaId(genutil::Recordset& records);
    void takeHeight(genutil::Recordset& records);
    void takeLine(genutil::Recordset& records);
    void takeAdjusted(genutil::Recordset& records);
    /// Null for a record of no point.
    PlotPoint* pointOf(genutil::Recordset& records);
    std::optional<std::uint32_t> positionOf(genutil::Recordset& records, const char* field) const;

    std::shared_ptr<genutil::Database> database_;
    PlotData data_;
    std::vector<Table> tables_; // that are still to be read, the next one last
    std::shared_ptr<genutil::Recordset> records_;
    Take take_ = nullptr;
    std::unordered_map<std::int32_t, std::uint32_t> positions_; // of points by their numbers
    std::unordered_set<std::uint32_t> stations_;
};

/// All of it at once.
PlotData readPlotData(const CurrentJob& job);

} // namespace kestal
