// From the making of the least-squares options dialog to its first painting, with a host that answers at
// once.

#include "lsoptions/c_ls_opts_loader.h"
#include "platform/qt/qt_desktop.h"
#include "support/ls_world.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <benchmark/benchmark.h>

namespace {

using namespace genutil;

// Notes when the dialog is painted for the first time, and closes it.
class FirstPainting : public QObject {
public:
    std::chrono::steady_clock::time_point seen;

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const widget = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Paint && widget && widget->isWindow() && !isSeen_) {
            isSeen_ = true;
            // The contents are painted with the window.
            QMetaObject::invokeMethod(
                widget,
                [this, widget] {
                    seen = std::chrono::steady_clock::now();
                    widget->close();
                },
                Qt::QueuedConnection);
        }
        return false;
    }
    void again() { isSeen_ = false; }

private:
    bool isSeen_ = false;
};

void openOptions(benchmark::State& state) {
    fake::LSHost host;
    fake::FakeFiles files;
    const auto desktop = makeQtDesktop();
    Component component(*desktop, files, host);
    FirstPainting painting;
    qApp->installEventFilter(&painting);
    for (auto _ : state) {
        RecordPtr options = fake::optionSet();
        bool saved = false;
        painting.again();
        const auto start = std::chrono::steady_clock::now();
        cLS_OptsLoader loader(component);
        loader.LoadLSOptionsForm(
            false, 1, saved, options, fake::programObject(), nullptr, fake::optionSet(), 0);
        state.SetIterationTime(std::chrono::duration<double>(painting.seen - start).count());
    }
}
BENCHMARK(openOptions)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
