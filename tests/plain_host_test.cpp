#include "platform/qt/qt_desktop.h"
#include "progress/c_progress.h"
#include "support/fake_files.h"
#include "support/fake_host.h"

#include <gtest/gtest.h>

#include <QApplication>

namespace genutil {
namespace {

TEST(PlainHost, ShowsGaugesUnderItsOwnNameAndNoWindowStays) {
    const auto desktop = makeQtDesktop();
    fake::FakeHost host;
    fake::FakeFiles files;
    Component component{*desktop, files, host};
    EXPECT_EQ(QGuiApplication::applicationDisplayName(), "plain_host_test");

    cProgress progress(component);
    qsizetype most = 0;
    for (int i = 0; i < 20; ++i) {
        progress.GaugeSetup("Adjusting", "Observation ");
        progress.Gauge("1", 10);
        most = std::max(most, QApplication::topLevelWidgets().size());
        progress.GaugeRemove();
    }
    EXPECT_LE(most, 2) << "the gauge, and the one before it";
    EXPECT_LE(Form::aliveCount(), 1);
}

} // namespace
} // namespace genutil
