// Writes the characters of a report (ASCII, without tabs) as glyphs with the toolkit's own PDF writer and
// nothing of ours: the floor that printing stands on.
//   print_bench FILE PDF
#include <QFont>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QRawFont>

#include <array>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int resolution = 1800;
constexpr int linesPerPage = 77;
constexpr double pointSize = 9;

void writeReport(std::ifstream& report, QPdfWriter& writer) {
    QFont font(QStringLiteral("Liberation Mono"));
    font.setPointSizeF(pointSize);
    font.setBold(true);
    font = QFont(font, &writer);
    const QFontMetricsF metrics(font, &writer);
    const double columnWidth = metrics.horizontalAdvance(QLatin1Char('x'));
    const QRawFont raw = QRawFont::fromFont(font);
    std::array<quint32, 128> glyphOf{};
    for (char c = ' '; c <= '~'; ++c)
        glyphOf[std::size_t(c)] = raw.glyphIndexesForString(QChar(QLatin1Char(c))).value(0);

    QPainter painter(&writer);
    std::vector<quint32> glyphs;
    std::vector<QPointF> places;
    QGlyphRun run;
    run.setRawFont(raw);
    int row = 0;
    for (std::string line; std::getline(report, line); ++row) {
        if (row == linesPerPage) {
            writer.newPage();
            row = 0;
        }
        glyphs.clear();
        places.clear();
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == ' ' && (i == 0 || line[i - 1] == ' '))
                continue;
            glyphs.push_back(glyphOf[std::size_t(line[i]) % glyphOf.size()]);
            places.emplace_back(double(i) * columnWidth, (row + 1) * metrics.lineSpacing());
        }
        run.setRawData(glyphs.data(), places.data(), int(glyphs.size()));
        painter.drawGlyphRun({}, run);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: print_bench FILE PDF\n";
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    std::ifstream report(argv[1]);
    QPdfWriter writer(QString::fromLocal8Bit(argv[2]));
    writer.setResolution(resolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writeReport(report, writer);
}
