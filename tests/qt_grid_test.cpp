#include "hostif/error.h"
#include "hostif/grid.h"
#include "platform/qt/form/menu_bar.h"
#include "platform/qt/grid/grid_view.h"
#include "platform/qt/grid/grid_view_cells.h"
#include "qt_sample_form.h"

#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>

namespace genutil {
namespace {

struct GridForm : Form {
    explicit GridForm(Desktop& owner) : Form(owner, "frmSample", "Jobs") {
        width = 7500;
        height = 4500;
        grid.tabIndex = 0;
        cmdOk.tabIndex = 1;
        grid.setFormat("<Job|>Points|^Date|<Note|<Key");
        for (int column = 0; column < 5; ++column)
            grid.setColumnWidth(column, column < 4 ? 1200 : 0);
    }
    Grid grid{*this, "flxJobs"};
    Button cmdOk{*this, "cmdOk", "&OK"};
    MenuItem mnuJob{*this, "mnuJob", "Job"};
    MenuItem mnuCopy{*this, "mnuCopy", "Copy", &mnuJob};
};

FormWindow* makeWindow(const std::shared_ptr<Form>& base) {
    auto& form = static_cast<GridForm&>(*base);
    auto* window = new FormWindow(base);
    auto* view = new GridView(window->contents());
    view->setFixedSize(450, 240);
    bind(view, form.grid);
    bind(new QPushButton(window->contents()), form.cmdOk);
    makePopUpMenu(window, form.mnuJob);
    return window;
}

// Four columns that are seen and one that is not; forty rows.
class GridTest : public testing::Test {
protected:
    std::unique_ptr<Desktop> desktop = makeQtDesktop({{"frmSample", makeWindow}});
    std::shared_ptr<GridForm> form = std::make_shared<GridForm>(*desktop);
    Grid& grid = form->grid;
    GridView* view = nullptr;
    QWidget* cells = nullptr;
    QHeaderView* titles = nullptr;
    std::string heard;

    void SetUp() override {
        addRows(40);
        grid.setCurrentCell(1, 0);
        form->show(false);
        ASSERT_TRUE(QTest::qWaitForWindowActive(fake::openWindow()));
        view = static_cast<GridView*>(fake::openWindow()->viewOf(grid));
        cells = view->viewport();
        titles = view->horizontalHeader();
        grid.mouseDown.connect([this](const GridPress& press) {
            heard += press.button == MouseButton::Right ? "right " : press.onHeader ? "title " : "press ";
        });
        grid.click.connect([this] { heard += "click "; });
        grid.layoutChange.connect([this] { heard += "layout "; });
        grid.fitColumn.connect([this](int column) { heard += "fit" + std::to_string(column) + " "; });
    }
    void TearDown() override {
        form->unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void addRows(int count) {
        for (int i = grid.rowCount(); count > 0; --count, ++i)
            grid.addRow("job" + std::to_string(i) + "\t" + std::to_string(i) + "\tdate\tnote\tkey");
    }
    QRect place(int row, int column) { return view->visualRect(view->model()->index(row - 1, column)); }
    QPoint at(int row, int column) { return place(row, column).center(); }
    QPoint border(int column) {
        return {titles->sectionViewportPosition(column) + titles->sectionSize(column) - 1, 10};
    }
    QPoint title(int column) { return border(column) - QPoint(titles->sectionSize(column) * 3 / 4, 0); }
    void drag(QWidget* where, QPoint from, QPoint to) {
        QTest::mousePress(where, Qt::LeftButton, {}, from);
        for (const QPoint& point : {(from + to) / 2, to}) {
            QMouseEvent moved(
                QEvent::MouseMove, point, where->mapToGlobal(point), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(where, &moved);
        }
        QTest::mouseRelease(where, Qt::LeftButton, {}, to);
        desktop->doEvents();
    }
};

TEST_F(GridTest, OnlyAClickOnATitleIsAPressAndMovingAndResizingAColumnAreNone) {
    QTest::mouseClick(titles->viewport(), Qt::LeftButton, {}, title(2));
    EXPECT_EQ(heard, "title click ");
    drag(titles->viewport(), title(3), title(0));
    EXPECT_EQ(grid.columnAt(0), 3);
    drag(titles->viewport(), border(1), border(1) + QPoint(45, 0));
    EXPECT_NEAR(grid.column(1).width, 1200 + TwipScale::ofScreen().twips(45), 15);
    QTest::mouseDClick(titles->viewport(), Qt::LeftButton, {}, border(1));
    QTest::mouseClick(titles->viewport(), Qt::RightButton, {}, title(0));
    EXPECT_EQ(heard, "title click layout layout fit1 layout right ");
    EXPECT_EQ(grid.selection(), (GridRange{1, 2, 40, 2}));
}

TEST_F(GridTest, TheMouseSelectsAndADoubleClickMayCloseTheForm) {
    QTest::mouseClick(cells, Qt::LeftButton, {}, at(3, 1));
    QTest::mouseClick(cells, Qt::LeftButton, Qt::ShiftModifier, at(5, 2));
    EXPECT_EQ(grid.selection(), (GridRange{3, 1, 5, 2}));
    QTest::mouseClick(cells, Qt::RightButton, {}, at(4, 1)); // inside
    EXPECT_EQ(grid.selection(), (GridRange{3, 1, 5, 2}));
    drag(cells, at(2, 0), at(4, 2));
    EXPECT_EQ(grid.selection(), (GridRange{2, 0, 4, 2}));
    EXPECT_EQ(view->selectionModel()->selectedIndexes().size(), 9);
    drag(cells, at(2, 0), at(2, 0) + QPoint(0, cells->height())); // goes on below what is seen
    EXPECT_GT(grid.topRow, 1);
    QTest::mouseClick(cells, Qt::RightButton, {}, at(20, 1));
    EXPECT_EQ(grid.selection(), (GridRange{20, 1, 20, 1}));
    EXPECT_EQ(heard, "press click press click right press click press click right ");
    grid.doubleClick.connect([this] { form->unload(); });
    QTest::mouseDClick(cells, Qt::LeftButton, {}, at(20, 1));
    EXPECT_FALSE(form->isLoaded());
}

TEST_F(GridTest, KeysMoveThroughTheColumnsThatAreSeen) {
    grid.moveColumn(3, 0);
    grid.setColumnHidden(1, true); // seen now: 3 0 2
    grid.setCurrentCell(2, 0);
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers held;
        GridRange selection;
    };
    using enum Qt::Key;
    const auto shift = Qt::ShiftModifier, ctrl = Qt::ControlModifier;
    for (const Case& each : {Case{Key_Right, {}, {2, 2, 2, 2}}, Case{Key_Right, {}, {2, 2, 2, 2}},
             Case{Key_Home, {}, {2, 3, 2, 3}}, Case{Key_Down, shift, {2, 3, 3, 3}},
             Case{Key_Right, shift, {2, 3, 3, 0}}, Case{Key_Up, {}, {1, 3, 1, 3}},
             Case{Key_Up, {}, {1, 3, 1, 3}}, Case{Key_End, ctrl, {40, 2, 40, 2}},
             Case{Key_Home, ctrl | shift, {40, 2, 1, 3}}, Case{Key_A, ctrl, {40, 2, 1, 3}}}) {
        QTest::keyClick(view, each.key, each.held);
        EXPECT_EQ(grid.selection(), each.selection) << each.key;
        EXPECT_TRUE(cells->rect().contains(at(each.selection.endRow, each.selection.endColumn)));
    }
    QTest::keyClick(view, Key_Tab);
    EXPECT_EQ(form->activeControl(), &form->cmdOk);
}

TEST_F(GridTest, TypingWithoutAPauseLeadsToTheNextRowThatBeginsWithIt) {
    grid.clearRows();
    for (const char* name : {"alpha", "beta one", "beta two", "bb", "gamma"})
        grid.addRow(name);
    QApplication::setKeyboardInputInterval(150); // milliseconds
    for (const auto& [typed, row] :
        {std::pair("b", 2), {"beta t", 3}, {" ", 3}, {"bb", 4}, {"gg", 5}, {"aa", 1}}) {
        QTest::keyClicks(view, typed);
        EXPECT_EQ(grid.selection().row, row) << typed;
        QTest::qWait(QApplication::keyboardInputInterval() + 50);
    }
}

TEST_F(GridTest, ATextAsWideAsItsColumnIsShownWholeAndALongerOneEndsInAnEllipsis) {
    const std::string text = "Wavelength AVAVA", endless(100'000, 'i');
    grid.setColumnWidth(0, desktop->textWidth(grid.font, text));
    desktop->doEvents();
    const QFontMetricsF metrics(view->font());
    const int room = place(1, 0).width() - 2 * GridCells::margin;
    EXPECT_FALSE(layOutCell(text, metrics, room).isCut);
    const CellLine cut = layOutCell(text + "i", metrics, room);
    EXPECT_TRUE(cut.isCut && cut.pieces.back().text.endsWith(QChar(0x2026)) && cut.width <= room);
    EXPECT_LT(layOutCell(endless, metrics, room).pieces.back().text.size(), 200);
    EXPECT_LT(cellToolTip(endless).size(), 2100);
    const CellLine marked = layOutCell("a\r\nb\u202Ec", metrics, 500);
    ASSERT_EQ(marked.pieces.size(), 3u);
    EXPECT_EQ(marked.pieces[0].text, "a b");
    EXPECT_TRUE(marked.pieces[1].isMark); // what would turn the text around
    EXPECT_TRUE(cellToolTip("<b>").contains("&lt;b&gt;"));
    EXPECT_TRUE(titles->isSectionHidden(4));
}

TEST_F(GridTest, ThousandsOfRowsAreShownAtOnceAndScrollingIsKept) {
    int rounds = 0;
    QObject::connect(view->model(), &QAbstractItemModel::rowsInserted, view, [&] { ++rounds; });
    QObject::connect(view->model(), &QAbstractItemModel::modelReset, view, [&] { ++rounds; });
    view->verticalScrollBar()->setValue(9);
    EXPECT_EQ(grid.topRow, 10);
    addRows(32767 - 40);
    desktop->doEvents();
    EXPECT_EQ(rounds, 1);
    EXPECT_EQ(view->verticalScrollBar()->value(), 9);
    grid.select({32767, 0, 0, 4}); // all of it, which stays where it is
    desktop->doEvents();
    EXPECT_EQ(grid.topRow, 10);
    grid.topRow = 20'000;
    desktop->doEvents();
    EXPECT_EQ(view->verticalScrollBar()->value(), 19'999);
    grid.clearRows();
    cells->repaint(); // before the view knows
    QTest::keyClick(view, Qt::Key_Down);
    EXPECT_EQ(view->model()->rowCount(), 0);
    EXPECT_EQ(grid.topRow, 1);
}

TEST_F(GridTest, TheKeyboardOpensTheMenuAtTheCurrentCell) {
    form->mnuCopy.click.connect([&] { heard += "copy"; });
    grid.mouseDown.connect([&](const GridPress&) { desktop->popUpMenu(form->mnuJob); });
    grid.setCurrentCell(4, 2);
    QPoint corner;
    QTimer::singleShot(0, qApp, [&] {
        QWidget* menu = QApplication::activePopupWidget();
        corner = menu->pos();
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QTest::keyClick(view, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(heard, "right copy");
    EXPECT_EQ(corner, cells->mapToGlobal(place(4, 2).bottomLeft()));
}

TEST_F(GridTest, AFormShownEarlyGoesOnInTheSameWindowUnlessTheUserHasClosedIt) {
    form->hide();
    form->showEarly();
    const FormWindow* window = fake::openWindow();
    EXPECT_EQ(QApplication::activeModalWidget(), window);
    QTimer::singleShot(0, qApp, [&] {
        EXPECT_EQ(fake::openWindow(), window);
        form->hide();
    });
    form->show(true); // ends with hiding
    EXPECT_FALSE(form->isShown());
    form->showEarly();
    fake::openWindow()->close();
    EXPECT_THROW(form->show(true), Error);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace
} // namespace genutil
