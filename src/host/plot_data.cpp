#include "host/plot_data.h"

#include "host/current_job.h"
#include "host/job_schema.h"
#include "hostif/error.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestal {
namespace {

using genutil::Recordset;

// The value of a field, or nothing where the table lacks it or it does not fit.
template<class T>
std::optional<T> valueOf(Recordset& records, const char* field) {
    try {
        const genutil::Value value = records.field(field);
        if (value.isNull())
            return std::nullopt;
        return value.to<T>();
    } catch (const genutil::Error&) {
        return std::nullopt;
    }
}

QString textOf(Recordset& records, const char* field) {
    return QString::fromStdString(valueOf<std::string>(records, field).value_or("")).simplified();
}

void readConfiguration(PlotData& data, const CurrentJob& job) {
    const RecordObject& cfg = *job.jobCfg.get();
    const int zone = int16Of(cfg.value("Zone"));
    constexpr int lastZone = 60;
    data.isGeographic = truthOf(cfg.value("NoLinearScale"));
    data.heightDecimals = std::clamp<int>(int16Of(cfg.value("OutputDecV")), 0, 6);
    data.geoidFile = QString::fromStdString(cfg.text("GridFile"));
    if (!data.isGeographic && truthOf(cfg.value("GeodeticDisplays")) && zone >= 1 && zone <= lastZone &&
        cfg.text("Projection").find("Mercator") != std::string::npos)
        data.projection.emplace(zone, int16Of(cfg.value("ApproxLat")) < 0);
    data.undulation = "N " + QString::number(numberOf(cfg.value("NValue")), 'f', 3);
    data.deflections = QString("%1\" N-S, %2\" E-W")
                           .arg(numberOf(cfg.value("DeflectionNS")), 0, 'f', 2)
                           .arg(numberOf(cfg.value("DeflectionEW")), 0, 'f', 2);
}

} // namespace

QString PlotData::label(const PlotPoint& point, Mark kind) const {
    switch (kind) {
    case Mark::PointNumbers:
        return QString::number(point.number);
    case Mark::AlphaIds:
        return point.alphaId;
    case Mark::Descriptions:
        return point.code;
    case Mark::Heights:
        return point.height ? QString::number(*point.height, 'f', heightDecimals) : QString();
    case Mark::Undulations:
        return undulation;
    case Mark::Deflections:
        return deflections;
    default:
        return {}; // jobs do not tell how a point was derived
    }
}

PlotReader::PlotReader(const CurrentJob& job) : database_(job.tables) {
    try {
        readConfiguration(data_, job);
        listTables();
    } catch (const std::exception& error) {
        data_.fault = QString("The points of this job cannot be read: %1").arg(error.what());
    }
}

void PlotReader::listTables() {
    const std::int16_t count = database_->tableCount();
    for (std::int16_t i = 0; i < count; ++i) {
        const std::string name = database_->tableName(i);
        if (name.starts_with(job_tables::TraverseSetPrefix))
            tables_.push_back({name, &PlotReader::takeLine});
        else if (name.starts_with(job_tables::LSSetPrefix))
            tables_.push_back({name, &PlotReader::takeAdjusted});
    }
    // The others speak of points, which are read first.
    tables_.push_back({job_tables::Heights, &PlotReader::takeHeight});
    tables_.push_back({job_tables::AlphaIds, &PlotReader::takeAlphaId});
    tables_.push_back({job_tables::Points, &PlotReader::takePoint});
}

// False when no table is left. One that the job lacks has no records.
bool PlotReader::openNext() {
    while (!tables_.empty()) {
        const Table next = tables_.back();
        tables_.pop_back();
        take_ = next.take;
        try {
            records_ = database_->OpenRecordset(next.name);
            return true;
        } catch (const genutil::Error& error) {
            if (error.number() != genutil::errors::TableNotFound)
                throw;
        }
    }
    return false;
}

bool PlotReader::read(int milliseconds) {
    constexpr int recordsBetweenLooks = 64;
    QElapsedTimer clock;
    clock.start();
    try {
        for (int count = 1;; ++count) {
            if (!records_ || records_->EOF_()) {
                if (!openNext())
                    break;
                continue;
            }
            (this->*take_)(*records_);
            records_->MoveNext();
            if (count % recordsBetweenLooks == 0 && clock.elapsed() >= milliseconds)
                return false;
        }
    } catch (const std::exception& error) {
        data_.fault = QString("The points of this job cannot be read: %1").arg(error.what());
    }
    records_.reset();
    tables_.clear();
    for (PlotLine& line : data_.lines)
        line.kind = stations_.contains(line.to) ? Mark::Traverse : Mark::Radiations;
    return true;
}

void PlotReader::takePoint(Recordset& records) {
    constexpr double farthest = 1e9; // metres: nothing that was surveyed is farther
    const auto number = valueOf<std::int32_t>(records, "PointNo");
    const auto x = valueOf<double>(records, "X");
    const auto y = valueOf<double>(records, "Y");
    // Written so that a NaN is left out too.
    if (!number || !x || !y || !(std::abs(*x) < farthest && std::abs(*y) < farthest))
        return;
    positions_[*number] = static_cast<std::uint32_t>(data_.points.size());
    PlotPoint point;
    point.place = {*x, *y};
    point.number = *number;
    point.code = textOf(records, "Code");
    data_.points.push_back(std::move(point));
}

std::optional<std::uint32_t> PlotReader::positionOf(Recordset& records, const char* field) const {
    const auto number = valueOf<std::int32_t>(records, field);
    const auto found = number ? positions_.find(*number) : positions_.end();
    if (found == positions_.end())
        return std::nullopt;
    return found->second;
}

PlotPoint* PlotReader::pointOf(Recordset& records) {
    const auto position = positionOf(records, "PointNo");
    return position ? &data_.points[*position] : nullptr;
}

void PlotReader::takeAlphaId(Recordset& records) {
    if (PlotPoint* const point = pointOf(records))
        point->alphaId = textOf(records, "AlphaId");
}

void PlotReader::takeHeight(Recordset& records) {
    if (PlotPoint* const point = pointOf(records))
        point->height = valueOf<double>(records, "Height");
}

void PlotReader::takeAdjusted(Recordset& records) {
    if (PlotPoint* const point = pointOf(records))
        point->isAdjusted = true;
}

void PlotReader::takeLine(Recordset& records) {
    const auto from = positionOf(records, "FromPt");
    const auto to = positionOf(records, "ToPt");
    if (!from || !to)
        return;
    stations_.insert(*from);
    data_.lines.push_back({Mark::Radiations, *from, *to});
}

PlotData readPlotData(const CurrentJob& job) {
    PlotReader reader(job);
    while (!reader.read(std::numeric_limits<int>::max())) {
    }
    return reader.take();
}

} // namespace kestal
