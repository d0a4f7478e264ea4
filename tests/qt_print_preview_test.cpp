#include "fileview/frm_print_preview.h"
#include "platform/qt/print/qt_printer.h"
#include "platform/qt/windows/form_views.h"
#include "qt_sample_form.h"
#include "support/world.h"

#include <QScrollBar>
#include <QTimer>

namespace genutil {
namespace {

// How dark the middle of the view is between two heights of it: 0 white, 1 black.
double shadeOf(const QImage& view, double from, double to) {
    double shade = 0;
    int dots = 0;
    for (int y = int(view.height() * from); y < int(view.height() * to); ++y)
        for (int x = view.width() * 2 / 5; x < view.width() * 3 / 5; ++x, ++dots)
            shade += 1 - qGray(view.pixel(x, y)) / 255.0;
    return shade / dots;
}

TEST(PrintPreviewWindow, ShowsEachPageAsItIsPrintedAndIsUsedByKeyboardAlone) {
    fake::World world;
    const std::unique_ptr<Desktop> desktop = makeQtDesktop(standardFormViews());
    Component component{*desktop, world.files, world.host};
    std::string report;
    for (int i = 0; i < 200; ++i)
        report += i < 30 ? std::string(90, '#') + "\n" : "\n";
    const auto document = text::TextDocument::fromBytes(report);
    const auto printer = makePdfPrinter("never-written.pdf");
    const ReportPages pages(
        *printer, {.lines = allLines(document), .header = "header", .font = reportFont(false)});
    const auto form = std::make_shared<frmPrintPreview>(component, *printer, pages, "a.log");
    bool looked = false;
    QTimer::singleShot(0, [&] {
        FormWindow* const window = fake::openWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        const auto press = [&](int key, Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(window->windowHandle(), Qt::Key(key), modifiers);
        };
        auto* const view = static_cast<QAbstractScrollArea*>(window->viewOf(form->pagShown));
        QScrollBar* const bar = view->verticalScrollBar();
        ASSERT_EQ(QApplication::focusWidget(), view);
        EXPECT_EQ(bar->maximum(), 0) << "all of the page is seen";
        const QImage first = view->viewport()->grab().toImage();
        EXPECT_GT(shadeOf(first, 0.1, 0.35), 0.2);
        EXPECT_EQ(shadeOf(first, 0.6, 0.9), 0);
        press(Qt::Key_PageDown);
        EXPECT_EQ(form->txtPage.text.get(), "2");
        const QImage second = view->viewport()->grab().toImage();
        EXPECT_EQ(shadeOf(second, 0.1, 0.9), 0) << "the lines of the first page only";
        for (int i = 0; i < 8; ++i)
            press(Qt::Key_Plus);
        EXPECT_EQ(form->pagShown.zoom, 400);
        EXPECT_GT(bar->maximum(), view->height() * 2);
        press(Qt::Key_PageDown);
        EXPECT_GT(bar->value(), 0);
        EXPECT_EQ(form->pagShown.page, 2u) << "it is scrolled first";
        bar->setValue(bar->maximum());
        press(Qt::Key_PageDown);
        EXPECT_EQ(form->pagShown.page, 3u);
        EXPECT_EQ(bar->value(), 0) << "a page begins at its top";
        press(Qt::Key_PageUp);
        EXPECT_EQ(form->pagShown.page, 2u);
        EXPECT_EQ(bar->value(), bar->maximum()) << "and going back one comes from its end";
        press(Qt::Key_Home);
        EXPECT_EQ(form->pagShown.page, 1u);
        press(Qt::Key_Escape);
        looked = true;
    });
    form->Form_Setup(0, "");
    EXPECT_TRUE(looked);
    EXPECT_FALSE(form->isLoaded() || form->PrintChosen);
    EXPECT_FALSE(QFile::exists("never-written.pdf"));
}

} // namespace
} // namespace genutil
