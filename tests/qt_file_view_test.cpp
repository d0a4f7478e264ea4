#include "fileview/c_file_view_loader.h"
#include "platform/qt/file_watch.h"
#include "platform/qt/text/text_view.h"
#include "qt_sample_form.h"
#include "support/fake_files.h"
#include "support/fake_host.h"

#include <gtest/gtest.h>

#include <QMenuBar>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QUrl>

#include <cstdio>
#include <utility>

namespace genutil {
namespace {

using fake::openWindow;

TEST(FileViewWindow, ShowsTheFileUnderItsTitleWithTheMenusOfItsMode) {
    const auto desktop = makeQtDesktop();
    fake::FakeHost host;
    fake::FakeFiles files;
    Component component(*desktop, files, host);
    files.put("/jobs/a.log", "first line\nsecond line\n");
    RecordPtr prog = fake::programObject();
    cFileViewLoader loader(component);
    loader.LoadFileViewForm(false, false, 25, "/jobs/a.log", prog, "");

    const auto form = loader.form();
    QWidget* const window = openWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(window->windowTitle(), "Processing Log: /jobs/a.log");
    auto* view = dynamic_cast<TextView*>(window->findChild<QWidget*>("rtbViewText")->focusProxy());
    EXPECT_EQ(view->visibleText(), "first line\nsecond line\n");
    EXPECT_TRUE(view->hasFocus());
    QStringList menus;
    for (const QAction* menu : window->findChild<QMenuBar*>()->actions())
        for (const QAction* item : menu->menu()->actions())
            if (item->isVisible())
                menus << menu->text() + "/" + item->text() + (item->isEnabled() ? "" : " off");
    EXPECT_EQ(menus, QStringList({"&File/&Open ...", "&File/&Save off", "&File/Save-&As", "&File/&Print ...",
                         "&File/Print Pre&view ...", "&File/Export to P&DF ...", "&File/", "&File/&Close",
                         "&View/&Refresh", "&View/Re&load File", "&View/", "&View/&Find ...",
                         "&View/Find &Next", "&View/Find &Previous", "&View/&Go to Line ...", "&View/",
                         "&View/Zoom &In", "&View/Zoom &Out", "&View/Normal Si&ze", "&View/&Wrap Lines"}));
    for (const char* hidden : {"pnlHelp", "pnlButtons", "cmdClose", "pnlFind", "pnlNotice"})
        EXPECT_FALSE(window->findChild<QWidget*>(hidden)->isVisible()) << hidden;

    // A file dropped on the text is opened once the drop is over.
    QTemporaryFile dropped;
    ASSERT_TRUE(dropped.open());
    files.put(dropped.fileName().toStdString(), "dropped");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(dropped.fileName())});
    QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(window, &drop);
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->visibleText() == "dropped"; }));

    window->findChild<QAction*>("mnu_Close")->trigger();
    EXPECT_FALSE(form->isLoaded());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST(FileWatch, TellsWhenTheFileIsWrittenReplacedRemovedAndMadeAgain) {
    QTemporaryDir folder;
    const QString path = folder.filePath("a b.log");
    const auto write = [&](const QString& name, const char* text) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(text);
    };
    write(path, "one");
    int calls = 0;
    auto watch = makeFileWatch(path.toStdString(), [&] { ++calls; });
    const auto tells = [&] { return QTest::qWaitFor([&] { return std::exchange(calls, 0) > 0; }); };
    const std::string path8 = path.toStdString();
    write(path, "two");
    EXPECT_TRUE(tells()) << "written";
    write(folder.filePath("new"), "three");
    ASSERT_EQ(std::rename(folder.filePath("new").toStdString().c_str(), path8.c_str()), 0);
    EXPECT_TRUE(tells()) << "replaced";
    QTest::qWait(400);
    calls = 0;
    write(path, "four");
    EXPECT_TRUE(tells()) << "the new file written";
    QFile::remove(path);
    EXPECT_TRUE(tells()) << "removed";
    QTest::qWait(400);
    calls = 0;
    write(path, "five");
    EXPECT_TRUE(tells()) << "made again";
    watch.reset();
    write(path, "six");
    QTest::qWait(400);
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace genutil
