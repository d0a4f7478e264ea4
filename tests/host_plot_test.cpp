#include "host/current_job.h"
#include "host/help_window.h"
#include "host/job_schema.h"
#include "host/plot_view.h"
#include "support/plot_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QWheelEvent>

#include <cmath>
#include <fstream>
#include <map>

using namespace kestal;

namespace {

CurrentJob sampleJob(const char* name) {
    CurrentJob job;
    job.open(QString(KESTAL_SAMPLES "/jobs/") + name);
    return job;
}

void show(PlotView& view, const char* name) {
    view.showJob(sampleJob(name));
    while (view.sentence() == "The points are being read")
        QApplication::processEvents();
}

// How many pixels of the view are red, as traverse lines are.
int redPixelsOf(PlotView& view) {
    const QImage image = view.grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y).red() > 150 && image.pixelColor(x, y).green() < 90;
    return count;
}

TEST(Plot, AJobsLinesAndLabelsAreThoseOfItsTables) {
    const PlotData quarry = readPlotData(sampleJob("Millbrook Quarry.gdb"));
    ASSERT_EQ(quarry.points.size(), 40u);
    EXPECT_EQ(quarry.lines.size(), 12u);
    for (const PlotLine& line : quarry.lines)
        EXPECT_EQ(line.kind, Mark::Traverse) << "from station to station";
    const std::pair<Mark, const char*> labels[] = {{Mark::PointNumbers, "2"}, {Mark::AlphaIds, "ST2"},
        {Mark::Descriptions, "STN"}, {Mark::Heights, "89.794"}, {Mark::Derivations, ""}};
    for (const auto& [mark, text] : labels)
        EXPECT_EQ(quarry.label(quarry.points[1], mark).toStdString(), text);
    const PlotData creek = readPlotData(sampleJob("Harrow Creek.gdb"));
    EXPECT_EQ(std::ranges::count_if(creek.points, &PlotPoint::isAdjusted), 10);
    EXPECT_TRUE(creek.projection && !readPlotData(sampleJob("Gannet Islands.mdb")).projection);
    EXPECT_EQ(readPlotData(sampleJob("JET3_NULLS.MDB")).fault, "");
    PlotReader pieces(sampleJob("Harrow Creek.gdb"));
    int count = 1;
    while (!pieces.read(0))
        ++count;
    EXPECT_GT(count, 3);
    EXPECT_EQ(pieces.take().points.size(), 200u);
    EXPECT_FALSE(sampleJob("NoAlpha.MDB").hasAlphaIds());
    EXPECT_TRUE(sampleJob("Smith Farm.mdb").hasAlphaIds());
}

// Coordinates that surveyors publish for a zone: of a station of zone 55 and one north of the equator.
TEST(Plot, TheProjectionOfAZoneAgreesWithKnownPlacesAndWithItsInverse) {
    struct Case {
        int zone;
        bool isSouthern;
        QPointF degrees, grid;
    };
    const Case cases[] = {
        {55, true, {147, 0}, {500'000, 10'000'000}},
        // Flinders Peak, as in the technical manual of the Australian datum.
        {55, true, {144.42486788, -37.95103341}, {273'741.2966, 5'796'489.7769}},
    };
    for (const Case& each : cases) {
        const ZoneProjection zone(each.zone, each.isSouthern);
        const QPointF grid = zone.toGrid(each.degrees);
        EXPECT_NEAR(grid.x(), each.grid.x(), 0.002);
        EXPECT_NEAR(grid.y(), each.grid.y(), 0.002);
        const QPointF back = zone.toDegrees(grid);
        EXPECT_NEAR(back.x(), each.degrees.x(), 1e-9);
        EXPECT_NEAR(back.y(), each.degrees.y(), 1e-9);
    }
}

TEST(Plot, LinesAndMenuAreThoseThatTheProductDefines) {
    ASSERT_EQ(viewMarks().size(), std::size(genutil::fake::plotFacts));
    const std::map<Qt::PenStyle, char> styles{
        {Qt::DotLine, '.'}, {Qt::SolidLine, '-'}, {Qt::DashLine, 'd'}, {Qt::DashDotLine, 'x'}};
    for (const genutil::fake::PlotFact& fact : genutil::fake::plotFacts) {
        const auto mark = std::ranges::find(viewMarks(), fact.menuItem, &ViewMark::name);
        ASSERT_NE(mark, viewMarks().end()) << fact.menuItem;
        if (fact.width == 0)
            continue;
        const QPen pen = linePen(static_cast<Mark>(mark - viewMarks().begin()));
        EXPECT_EQ((std::array{pen.color().red(), pen.color().green(), pen.color().blue()}), fact.colour)
            << fact.caption;
        EXPECT_EQ(styles.at(pen.style()), fact.style) << fact.caption;
        EXPECT_EQ(pen.width(), fact.width) << fact.caption;
    }
}

TEST(Plot, MarksSayWhatIsDrawn) {
    ViewMarks marks;
    PlotView view(marks);
    view.resize(400, 300);
    EXPECT_EQ(view.sentence(), "No job is open");
    show(view, "Tarnbeck Stage 2.gdb");
    EXPECT_EQ(view.sentence(), "This job has no points yet");
    show(view, "Millbrook Quarry.gdb");
    EXPECT_GT(redPixelsOf(view), 20);
    marks.set(Mark::Traverse, false);
    view.marksChanged();
    EXPECT_EQ(redPixelsOf(view), 0);
    show(view, "Harrow Creek.gdb");
    const double metres = view.frame().scale;
    marks.set(Mark::PlotGeographic, true);
    marks.set(Mark::ZoneBoundaries, true);
    view.marksChanged();
    EXPECT_GT(view.frame().scale / metres, 50'000) << "pixels for a degree now";
}

TEST(Plot, TheWheelKeepsThePlaceUnderThePointerAndZeroShowsAllAgain) {
    ViewMarks marks;
    PlotView view(marks);
    view.resize(400, 300);
    show(view, "Millbrook Quarry.gdb");
    view.grab();
    const PlotFrame whole = view.frame();
    const QPointF pointer(300, 70);
    const QPointF place = whole.toPlace(pointer);
    QWheelEvent wheel(pointer, pointer, {}, {0, 360}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &wheel);
    EXPECT_NEAR(view.frame().scale / whole.scale, std::pow(1.25, 3), 1e-9);
    EXPECT_LT(QLineF(view.frame().toPixel(place), pointer).length(), 1e-6);
    const auto mouse = [&](QEvent::Type type, QPointF at) {
        QMouseEvent event(type, at, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &event);
    };
    mouse(QEvent::MouseButtonPress, pointer);
    mouse(QEvent::MouseMove, pointer + QPointF(30, 40));
    EXPECT_LT(QLineF(view.frame().toPixel(place), pointer + QPointF(30, 40)).length(), 1e-6);
    mouse(QEvent::MouseButtonRelease, pointer);
    view.resize(400, 150);
    QKeyEvent zero(QEvent::KeyPress, Qt::Key_0, Qt::NoModifier);
    QApplication::sendEvent(&view, &zero);
    EXPECT_NEAR(view.frame().scale, whole.scale / 2, 1e-9);
}

TEST(Plot, AHundredThousandPointsPaintAtOnceAtAnyScale) {
    PlotData data;
    for (int i = 0; i < 100'000; ++i) {
        PlotPoint point;
        point.place = {i % 400 * 10.0, i / 400 * 10.0};
        point.number = i;
        data.points.push_back(point);
        data.lines.push_back({Mark::ReferenceLines, static_cast<std::uint32_t>(i), 0});
    }
    const ViewMarks marks;
    const PlotScene scene = makeScene(data, marks);
    QImage image(800, 600, QImage::Format_RGB32);
    for (const double scale : {0.001, 0.2, 50.0, 1e7}) {
        QElapsedTimer timer;
        timer.start();
        QPainter painter(&image);
        paintPlot(painter, data, scene, {image.size(), scene.bounds.center(), scale}, marks);
        std::printf("100,000 points and lines, %g pixels for a metre: %lld ms\n", scale,
            static_cast<long long>(timer.elapsed()));
        EXPECT_LT(timer.elapsed(), 10'000);
    }
}

TEST(Help, ThePageIsTheManualsOrElseTheTextAndNothingOutsideIsRead) {
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir("help");
    const auto put = [&](const char* name, const char* text) {
        std::ofstream(folder.filePath(name).toStdString()) << text;
    };
    put("secret.html", "SECRET");
    put("help/texts.txt", "[8600] Display\nfrom the texts\n[8700] Other\nonly in the texts\n");
    put("help/manual.html", "<h2 id='topic-8600'>Display settings</h2><p>from the manual</p>");
    QFile::link(folder.filePath("secret.html"), folder.filePath("help/link.html"));
    HostPaths paths;
    paths.settings = folder.filePath("kestal.ini");
    paths.log = folder.filePath("kestal.log");
    paths.help = folder.filePath("help/texts.txt");
    const Host host(paths);
    HelpWindow window(host, nullptr);
    auto* page = window.findChild<QTextBrowser*>("webHelp");
    const std::pair<int, const char*> topics[] = {{8600, "from the manual"}, {8700, "only in the texts"},
        {1, "There is no help"}, {8600, "from the manual"}};
    for (const auto& [number, text] : topics) {
        window.showTopic(number);
        EXPECT_THAT(page->toPlainText().toStdString(), testing::HasSubstr(text));
    }
    for (const char* address : {"../secret.html", "link.html", "file:///etc/passwd",
             "http://example.com/x.html", "//etc/passwd", "qrc:/x", "data:text/html,SECRET", "."})
        EXPECT_FALSE(page->loadResource(QTextDocument::HtmlResource, QUrl(address)).isValid()) << address;
    EXPECT_TRUE(page->loadResource(QTextDocument::HtmlResource, QUrl("manual.html")).isValid());
}

} // namespace
