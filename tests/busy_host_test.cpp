// What the screen shows of a host that computes and handles no events: pixels of the screen itself, taken by
// another program. Run on a screen with a window manager.

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPalette>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QThread>

#include <functional>

namespace {

class BusyHost : public testing::Test {
protected:
    QProcess host;

    void SetUp() override {
        host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        host.start(BUSY_HOST, QStringList());
        ASSERT_TRUE(host.waitForStarted());
    }
    ~BusyHost() override {
        host.closeWriteChannel();
        host.waitForFinished();
        EXPECT_EQ(host.exitCode(), 0);
    }
    void tell(const QByteArray& command) {
        host.write(command + '\n');
        while (!host.canReadLine())
            ASSERT_TRUE(host.waitForReadyRead(20'000)) << command.constData();
        ASSERT_EQ(host.readLine().trimmed(), "done") << command.constData();
    }
    // The middle of the screen, where the gauge stands, once the server has drawn what it was sent.
    static QImage screen() {
        QThread::msleep(60);
        QApplication::processEvents();
        const QRect all = QGuiApplication::primaryScreen()->geometry();
        const QRect middle(all.center() - QPoint(130, 40), QSize(260, 80));
        return QGuiApplication::primaryScreen()->grabWindow(0).copy(middle).toImage();
    }
    static double shareOf(const QImage& image, const std::function<bool(QColor)>& fits) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += fits(image.pixelColor(x, y));
        return double(count) / (image.width() * image.height());
    }
    static double filled(const QImage& image) {
        const QColor bar = QApplication::palette().color(QPalette::Highlight);
        return shareOf(image, [&](QColor colour) { return colour == bar; });
    }
};

TEST_F(BusyHost, TheGaugeIsOnTheScreenBeforeTheCallReturnsAndFollowsEveryOne) {
    const QImage before = screen();
    tell("setup Adjusting the network, please wait a moment");
    const QImage empty = screen();
    EXPECT_NE(empty, before);
    EXPECT_LT(shareOf(empty, [](QColor colour) { return colour.lightness() < 10; }), 0.2) << "no black frame";
    tell("gauge 1 0");
    const QImage first = screen();
    EXPECT_NE(first, empty) << "a count without a percentage is painted, too";
    tell("gauge 1 50");
    const double half = filled(screen());
    tell("gauge 1 100");
    EXPECT_NEAR(filled(screen()), 2 * half, 0.3 * half);
    if (const char* folder = std::getenv("PICTURES"))
        QGuiApplication::primaryScreen()->grabWindow(0).save(QString(folder) + "/gauge.png");
}

TEST_F(BusyHost, TheLastCountOfABurstIsPainted) {
    tell("setup Adjusting the network, please wait a moment");
    tell("burst 11 90");
    const QImage burst = screen();
    tell("gauge 90 0"); // the same count, long after
    EXPECT_EQ(screen(), burst);
    tell("gauge 89 0");
    EXPECT_NE(screen(), burst);
}

TEST_F(BusyHost, TheGaugeThatIsCalledComesToTheFront) {
    tell("setup Adjusting the network, please wait a moment");
    tell("gauge 7 60");
    const QImage alone = screen();
    tell("other Reading the observations, please wait too");
    EXPECT_NE(screen(), alone);
    tell("gauge 7 60");
    EXPECT_EQ(screen(), alone);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
