#include "browser/c_internal_browser_loader.h"
#include "platform/qt/form/form_window.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/text/text_view_accessible.h"
#include "platform/web/page_rules.h"
#include "support/file_folder.h"
#include "support/world.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QColor>
#include <QLibrary>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest/QtTest>
#include <QUdpSocket>

#include <algorithm>
#include <filesystem>
#include <functional>

namespace genutil {
namespace {

namespace fs = std::filesystem;

TEST(PageRules, ShowOnlyOrdinaryFilesOfThePagesOwnFolder) {
    const fake::FileFolder files;
    fs::create_directories(files.path / "help/sub");
    files.make("help/page.html");
    files.make("help/sub/a b#%41.html");
    files.make("outside.html");
    files.make("help2.html");
    fs::create_symlink("../outside.html", files.path / "help/out.html");
    fs::create_symlink("..", files.path / "help/up");
    fs::create_symlink("sub", files.path / "help/down");
    ASSERT_EQ(::mkfifo((files / "help/pipe").c_str(), 0600), 0);
    const PageFolder folder(files / "help/page.html");
    const std::string here = "file://" + files.path.string();
    const auto shown = [&](const std::string& address) { return folder.faultOf(address).empty(); };
    for (const char* name : {"/help/page.html", "/help/./sub/../page.html?q#f", "/help/%70age.html",
             "/help/sub/a%20b%23%2541.html", "/help/down/a%20b%23%2541.html"})
        EXPECT_TRUE(shown(here + name)) << name;
    EXPECT_TRUE(shown("FILE://localhost" + files.path.string() + "/help/page.html"));
    EXPECT_TRUE(shown(addressOfPath(files / "help/sub/a b#%41.html")));
    for (const char* name : {"/outside.html", "/help/../outside.html", "/help/%2e%2e/outside.html",
             "/help/..%2Foutside.html", "/help/out.html", "/help/up/outside.html", "/help2.html", "/help/",
             "/help/sub", "/help/pipe", "/help/missing.html", "/help/page.html%00.png", "/help/page.html/"})
        EXPECT_FALSE(shown(here + name)) << name;
    for (const char* address : {"", "file:", "file://", "file:page.html", "file://server/help/page.html",
             "http://localhost/", "data:text/html,x", "javascript:0", "chrome://gpu", "view-source:file:///"})
        EXPECT_FALSE(shown(address)) << address;
    EXPECT_FALSE(PageFolder().faultOf(here + "/help/page.html").empty());
    EXPECT_EQ(findPage("FILE://" + (files / "help/page.html") + "#two").fragment, "two");
    EXPECT_EQ(findPage(files / "help/sub/a b#%41.html").fault, "");
    EXPECT_EQ(findPage(files / "help/page.html#the %41nd").fragment, "the%20%41nd");
    EXPECT_EQ(findPage(files / "help/page.html#z").fault, "");
    EXPECT_EQ(findPage("https://example.org/").fault, "Only pages on this computer are shown here.");
}

// The component's browser on a real desktop, in a process that knows nothing of the engine.
// Runs events as a host does, in a loop that waits for them.
bool waitUntil(const std::function<bool()>& come, int milliseconds = 15000) {
    QEventLoop loop;
    QTimer look, end;
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (come())
            loop.quit();
    });
    QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
    look.start(5);
    end.start(milliseconds);
    loop.exec();
    return come();
}
void pass(int milliseconds) {
    waitUntil([] { return false; }, milliseconds);
}

struct RealDesktop {
    fake::FakeHost host;
    fake::FakeFiles noFiles;
    std::unique_ptr<Desktop> desktop = makeQtDesktop();
    Component component{*desktop, noFiles, host};
    cInternalBrowserLoader loader{component};
};

class Page : public testing::Test, protected RealDesktop {
protected:
    fake::FileFolder files;
    int completed = 0;

    Page() { installTextViewAccessibility(); } // as where a report was shown before
    ~Page() override {
        if (loader.form())
            loader.form()->unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    frmInternal_Browser& form() { return *loader.form(); }
    void open(const std::string& page) {
        loader.LoadForm(page);
        form().webHistory_viewer.navigateComplete.connect([this] { ++completed; });
        EXPECT_TRUE(waitUntil([this] { return completed > 0; }));
    }
    void show(const std::string& page) {
        const int before = completed;
        form().webHistory_viewer.navigate(page);
        EXPECT_TRUE(waitUntil([&] { return completed > before; }));
    }
    QWidget* view() {
        for (QWidget* each : QApplication::topLevelWidgets())
            if (auto* window = dynamic_cast<FormWindow*>(each); window && window->form() == loader.form())
                return window->viewOf(form().webHistory_viewer);
        return nullptr;
    }
    // How many pixels of the page have the colour now.
    long pixels(QRgb colour) {
        const QImage picture = view()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        long count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
            count += std::count(row, row + picture.width(), colour);
        }
        return count;
    }
    bool comesToShow(QRgb colour) {
        return waitUntil([&] { return pixels(colour) > 0; });
    }
    void clickPage() {
        QWidget* const target = view()->focusProxy()->focusProxy();
        ASSERT_TRUE(target);
        QTest::mouseMove(target, QPoint(50, 50));
        QTest::mouseMove(target, QPoint(60, 60));
        pass(100); // the engine tells which link that is on
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(60, 60));
    }
};

constexpr QRgb green = 0xff00ff00, red = 0xffff0000, blue = 0xff0000ff;

std::string picture(const char* colour) {
    return std::string("<svg xmlns='http://www.w3.org/2000/svg' width='50' height='50'>"
                       "<rect width='50' height='50' fill='") +
           colour + "'/></svg>";
}

TEST_F(Page, ShowsPicturesOfItsFolderAndNoOtherFile) {
    fs::create_directories(files.path / "help/sub");
    files.make("help/sub/in.svg", picture("#0f0"));
    const std::string out = files.make("out.svg", picture("#f00"));
    fs::create_symlink("../out.svg", files.path / "help/link.svg");
    files.make("out.html", "<body style='background: #f00'>");
    open(files.make("help/page.html",
        "<img src=sub/in.svg><img src=../out.svg><img src=link.svg><img src='file://" + out +
            "'><img src='%2e%2e/out.svg'><iframe src=../out.html></iframe><embed src=../out.svg>"
            "<object data=../out.svg></object><p style='background: url(../out.svg)'>text</p>"));
    EXPECT_TRUE(comesToShow(green));
    pass(300);
    EXPECT_EQ(pixels(red), 0);
}

// What pages try to reach a server with. HERE stands for the server's address and port.
struct Attempt {
    const char* name;
    const char* html;
    bool isSure = true; // an unfiltered view does reach the server
};
constexpr Attempt attempts[] = {
    {"picture", "<img src=http://HERE/>"},
    {"style sheet", "<link rel=stylesheet href=http://HERE/>"},
    {"style import", "<style>@import 'http://HERE/';</style>"},
    {"style picture", "<body style='background: url(http://HERE/)'>"},
    {"font", "<style>@font-face { font-family: f; src: url(http://HERE/) } p { font-family: f }</style><p>x"},
    {"frame", "<iframe src=http://HERE/></iframe>"},
    {"frame in a frame", "<iframe srcdoc='<img src=http://HERE/>'></iframe>"},
    {"frame of data", "<iframe src='data:text/html,<img src=http://HERE/>'></iframe>"},
    {"object", "<object data=http://HERE/></object>"},
    {"embedded", "<embed src=http://HERE/>"},
    {"video", "<video src=http://HERE/ autoplay></video>"},
    {"script file", "<script src=http://HERE/></script>"},
    {"refresh", "<meta http-equiv=refresh content='0; url=http://HERE/'>"},
    {"preload", "<link rel=preload as=image href=http://HERE/>"},
    {"prefetch", "<link rel=prefetch href=http://HERE/>", false},
    {"prerender", "<link rel=prerender href=http://HERE/>", false},
    {"preconnect", "<link rel=preconnect href=http://HERE/>", false},
    {"name look-up", "<link rel=dns-prefetch href=http://HERE/>", false},
    {"icon", "<link rel=icon href=http://HERE/>", false},
    {"manifest", "<link rel=manifest href=http://HERE/>", false},
    {"form", "<form id=f action=http://HERE/><input name=a value=b></form><script>f.submit()</script>"},
    {"fetch", "<script>fetch('http://HERE/', {mode: 'no-cors'})</script>"},
    {"request", "<script>r = new XMLHttpRequest; r.open('GET', 'http://HERE/'); r.send()</script>"},
    {"beacon", "<script>navigator.sendBeacon('http://HERE/', 'x')</script>"},
    {"socket", "<script>new WebSocket('ws://HERE/')</script>"},
    {"events", "<script>new EventSource('http://HERE/')</script>"},
    {"window", "<script>open('http://HERE/')</script>", false},
    {"going there", "<script>location = 'http://HERE/'</script>"},
    {"download", "<a id=a href=http://HERE/x.bin download>x</a><script>a.click()</script>"},
    {"link ping", "<a id=a href=#x ping=http://HERE/>x</a><script>a.click()</script>"},
    {"peer connection",
        "<script>c = new RTCPeerConnection({iceServers: [{urls: 'stun:HERE'}]}); c.createDataChannel('x');"
        "c.createOffer().then(o => c.setLocalDescription(o))</script>",
        false},
};

TEST_F(Page, ReachesNoServerInAnyWay) {
    QTcpServer server;
    QUdpSocket datagrams;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    ASSERT_TRUE(datagrams.bind(QHostAddress::LocalHost, server.serverPort()));
    int reached = 0;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        ++reached;
        QTcpSocket* const visitor = server.nextPendingConnection();
        visitor->write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        visitor->disconnectFromHost();
    });
    QObject::connect(&datagrams, &QUdpSocket::readyRead, [&] {
        ++reached;
        while (datagrams.hasPendingDatagrams())
            datagrams.readDatagram(nullptr, 0);
    });
    const std::string server_ = "127.0.0.1:" + std::to_string(server.serverPort());

    open(files.make("first.html", "<p>first"));
    const QString module = QCoreApplication::applicationDirPath() + "/../lib/unfiltered_view.so";
    const auto unfiltered =
        reinterpret_cast<QWidget* (*)(const char*)>(QLibrary::resolve(module, "unfilteredView"));
    ASSERT_TRUE(unfiltered) << module.toStdString();
    for (const Attempt& each : attempts) {
        std::string html = each.html;
        for (auto at = html.find("HERE"); at != html.npos; at = html.find("HERE"))
            html.replace(at, 4, server_);
        const std::string page = files.make("page.html", html);

        reached = 0;
        show(page);
        pass(200);
        const int here = reached;
        reached = 0;
        const std::unique_ptr<QWidget> control(unfiltered(page.c_str()));
        const bool came = waitUntil([&] { return reached > 0; }, each.isSure ? 15000 : 500);
        std::printf("%-18s connections: %d, unfiltered %d\n", each.name, here, reached);
        EXPECT_EQ(here, 0) << each.name;
        EXPECT_TRUE(came || !each.isSure) << each.name;
    }
    reached = 0;
    pass(500);
    EXPECT_EQ(reached, 0) << "afterwards";
}

TEST_F(Page, RefusesLinksThatLeadOutInPlaceAndFollowsTheOthers) {
    const std::string next = files.make("next.html", "<body style='background: #0f0'>");
    struct Case {
        std::string address, attributes, said;
    };
    files.make("page.pdf", "%PDF-1.4\n");
    int shown = 0;
    for (const Case& each :
        {Case{"http://127.0.0.1:9/", "", "Only files in the page's own folder are shown."},
            Case{"missing.html", "", "There is no such file."},
            Case{"./", "target=_blank", "It is a folder."},
            Case{"mailto:somebody@example.org", "", "Only files in the page's own folder are shown."},
            Case{"javascript:alert(1)", "", "Only files in the page's own folder are shown."},
            Case{"data:text/html,x", "", "Only files in the page's own folder are shown."},
            Case{"view-source:next.html", "", "Only files in the page's own folder are shown."},
            Case{"page.pdf", "", "It is not a page but data of type application/pdf."},
            Case{"next.html", "target=_blank ping=http://127.0.0.1:9/", ""}}) {
        // Each page has a colour of its own by which it is known to be there.
        const QRgb colour = blue - QRgb(++shown);
        const std::string page = files.make("page" + std::to_string(shown) + ".html",
            "<a style='display: block; height: 300px; background: " + QColor(colour).name().toStdString() +
                "' href='" + each.address + "' " + each.attributes + ">x</a>");
        loader.form() ? show(page) : open(page);
        ASSERT_TRUE(comesToShow(colour)) << each.address;
        const auto answers = [&] {
            return each.said.empty()
                       ? pixels(green) > 0
                       : form().lblStatus.caption.get().find("Not opened. " + each.said) != std::string::npos;
        };
        // The engine overlooks clicks on a page that has only just come.
        for (int tries = 0; tries < 8 && !answers(); ++tries) {
            clickPage();
            waitUntil(answers, 2000);
        }
        pass(100); // the engine ends what was refused
        EXPECT_TRUE(answers()) << each.address << ": " << form().lblStatus.caption.get();
    }
    EXPECT_TRUE(waitUntil([&] { return form().mnuBack.enabled.get(); }));
}

TEST_F(Page, ShowsSomethingAndStaysUsableWhateverThePageIs) {
    std::string nested = "<html>", binary;
    for (int i = 0; i < 300000; ++i) {
        nested += "<div>";
        binary += char((i * 131) >> 5);
    }
    const std::string pages[] = {"", "/missing.html", "http://127.0.0.1:9/", "/", "/dev/zero",
        files.make("empty", ""), files.make("data.bin", binary), files.make("data.html", "<html>" + binary),
        std::string(100000, 'x'), files.make("loop.html", "<script>for (;;);</script>"),
        files.make("nested.html", nested)};
    for (const std::string& page : pages) {
        loader.form() ? show(page) : open(page);
        EXPECT_TRUE(form().cmdClose.enabled) << page.substr(0, 100);
        QElapsedTimer timer;
        timer.start();
        pass(50);
        EXPECT_LT(timer.elapsed(), 3000) << page.substr(0, 100);
    }
    // What is no page has the reason in its place.
    for (const std::string& page : {files.make("a.pdf", "%PDF-1.4\n"), files.make("a.tar.gz", "\x1f\x8b\x08"),
             files.make("a.zip", "PK\3\4")}) {
        show(page);
        EXPECT_TRUE(comesToShow(0xff000000)) << page;
    }
    form().cmdClose.userPress();
    EXPECT_EQ(view(), nullptr);
    EXPECT_TRUE(host.log.empty());
}

TEST_F(Page, FindsWordsAndZoomsByKeys) {
    open(files.make("page.html", "<p style='background: #0f0'>k and k, chord and K</p>"));
    ASSERT_TRUE(comesToShow(green));
    const long usual = pixels(green);
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers held = {}) {
        QTest::keyClick(view()->window()->windowHandle(), key, held);
    };
    // "2 of 3" and the like; which of them comes first is the engine's choice.
    const auto moves = [&](const std::string& from) {
        return waitUntil([&] {
            const std::string& now = form().lblStatus.caption;
            return now != from && now.ends_with(" of 3");
        });
    };
    ASSERT_TRUE(QTest::qWaitForWindowActive(view()->window()));
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_K);
    EXPECT_TRUE(moves(""));
    for (const auto held : {Qt::NoModifier, Qt::ShiftModifier}) {
        const std::string place = form().lblStatus.caption;
        press(Qt::Key_F3, held);
        EXPECT_TRUE(moves(place)) << place;
    }
    press(Qt::Key_Escape);
    for (int i = 0; i < 3; ++i)
        press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([&] { return pixels(green) > usual; }));
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(form().isLoaded());
}

// Run by the test below as a program without its module.
TEST_F(Page, DISABLED_SaysWhatIsMissing) {
    EXPECT_THROW(loader.LoadForm("page.html"), Error);
    std::puts(host.log.front().c_str());
}

TEST_F(Page, NamesTheModuleThatIsMissing) {
    const std::string alone = files / "alone";
    fs::copy_file("/proc/self/exe", alone);
    QProcess program;
    program.start(QString::fromStdString(alone),
        {"--gtest_also_run_disabled_tests", "--gtest_filter=Page.DISABLED_SaysWhatIsMissing"});
    ASSERT_TRUE(program.waitForFinished(60000));
    const std::string said = program.readAllStandardOutput().toStdString();
    EXPECT_NE(said.find(files / "k_genutil_web.so cannot be used: there is no such file"), said.npos) << said;
    EXPECT_EQ(program.exitCode(), 0);
}

TEST(PageLeftOpen, DoesNotDisturbTheEndOfTheProgram) {
    static auto* const left = new RealDesktop; // as a host leaves it: nothing is closed, nothing is destroyed
    const fake::FileFolder files;
    static bool completed = false;
    left->loader.LoadForm(files.make("page.html", "<p>x"));
    left->loader.form()->webHistory_viewer.navigateComplete.connect([] { completed = true; });
    EXPECT_TRUE(waitUntil([&] { return completed; }));
}

} // namespace
} // namespace genutil
