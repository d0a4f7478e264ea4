// What a key press and a scroll cost in the plain-text view, up to and including the painting, in texts of
// every size: the same work in a small text is the floor that a large one is held against.
#include "fileview/edit_journal.h"
#include "hostif/form.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/text/text_view.h"
#include "platform/system/system_files.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace genutil {
namespace {

struct BenchForm : Form {
    using Form::Form;
    ReportText text{*this, "rtbViewText"};
};

std::string reportOf(std::size_t bytes) {
    std::string text;
    text.reserve(bytes + 100);
    for (std::size_t i = 0; text.size() < bytes; ++i)
        text +=
            std::to_string(i) + "  STN00123  STN00456    301234.5678   6101234.5678    12.3456   0.0021\r\n";
    return text;
}

struct Shown {
    std::unique_ptr<Desktop> desktop = makeQtDesktop();
    std::shared_ptr<BenchForm> form = std::make_shared<BenchForm>(*desktop, "frmBench", "Bench");
    TextView view;

    explicit Shown(std::string text) {
        form->text.locked = false;
        form->text.font = Font{.name = "Courier New", .size = 10};
        form->text.setDocument(
            std::make_shared<text::TextDocument>(text::TextDocument::fromBytes(std::move(text))));
        view.setModel(&form->text);
        view.resize(1000, 800);
        view.show();
        QApplication::processEvents();
    }
    ~Shown() { view.setModel(nullptr); }

    void press(int key, const QString& typed = {}, Qt::KeyboardModifiers held = {}) {
        QKeyEvent event(QEvent::KeyPress, key, held, typed);
        QApplication::sendEvent(&view, &event);
        view.viewport()->repaint();
    }
};

std::string longLineOf(std::size_t bytes) {
    return std::string(bytes, 'x');
}

template<std::string (*Make)(std::size_t)>
void typing(benchmark::State& state) {
    Shown shown(Make(std::size_t(state.range(0))));
    shown.press(Qt::Key_End, {}, Qt::ControlModifier);
    for (int i = 0; i < 3; ++i)
        shown.press(Qt::Key_Left);
    for (auto _ : state)
        shown.press(Qt::Key_A, QStringLiteral("a"));
}

// With every key noted in the log from which unsaved edits are restored.
void typingJournaled(benchmark::State& state) {
    Shown shown(reportOf(std::size_t(state.range(0))));
    const auto files = makeSystemFiles();
    EditJournal journal(*files);
    journal.follow("bench.log", FileStamp{}, shown.form->text.document());
    const Connection noting = shown.form->text.edited.connectScoped(
        [&](const text::TextChange&) { journal.noteEdit(*shown.form->text.document()); });
    shown.press(Qt::Key_End, {}, Qt::ControlModifier);
    for (auto _ : state)
        shown.press(Qt::Key_A, QStringLiteral("a"));
}

template<std::string (*Make)(std::size_t)>
void caret(benchmark::State& state) {
    Shown shown(Make(std::size_t(state.range(0))));
    shown.press(Qt::Key_End, {}, Qt::ControlModifier);
    bool left = false;
    for (auto _ : state)
        shown.press((left = !left) ? Qt::Key_Left : Qt::Key_Right);
}

void scrolling(benchmark::State& state) {
    Shown shown(reportOf(std::size_t(state.range(0))));
    QScrollBar& bar = *shown.view.verticalScrollBar();
    int place = 0;
    for (auto _ : state) {
        place = int((std::int64_t(place) + bar.maximum() / 7 + 1) % (bar.maximum() + 1));
        bar.setValue(place);
        shown.view.viewport()->repaint();
    }
}

constexpr std::int64_t kilobyte = 1000;
constexpr std::int64_t megabyte = 1000 * kilobyte;
constexpr std::int64_t gigabyte = 1000 * megabyte;

BENCHMARK(typing<reportOf>)
    ->Name("type, report of")
    ->Arg(100 * kilobyte)
    ->Arg(gigabyte)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(typingJournaled)
    ->Name("type and note it, report of")
    ->Arg(100 * kilobyte)
    ->Arg(gigabyte)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(caret<reportOf>)
    ->Name("caret, report of")
    ->Arg(100 * kilobyte)
    ->Arg(gigabyte)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(scrolling)
    ->Name("scroll, report of")
    ->Arg(100 * kilobyte)
    ->Arg(gigabyte)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(typing<longLineOf>)
    ->Name("type, line of")
    ->Arg(100)
    ->Arg(10 * megabyte)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(caret<longLineOf>)
    ->Name("caret, line of")
    ->Arg(100)
    ->Arg(10 * megabyte)
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace genutil

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
