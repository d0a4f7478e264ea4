#include "hostif/form.h"
#include "platform/qt/rich/rich_text_convert.h"
#include "platform/qt/rich/rich_text_view.h"
#include "support/scripted_desktop.h"
#include "text/rtf.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QtTest/QtTest>
#include <QVBoxLayout>

#include <algorithm>
#include <climits>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace genutil {
namespace {

using namespace text;
using namespace std::string_literals;

std::string png(QColor colour, int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    image.save(&file, "PNG");
    return file.data().toStdString();
}

// A format with one member set.
template<class Format, class T>
Format with(T Format::*member, std::type_identity_t<T> value) {
    Format result;
    result.*member = std::move(value);
    return result;
}

Run run(std::string text, CharacterFormat format = {}) {
    return {std::move(text), std::move(format), {}};
}

Paragraph paragraph(std::string text, ParagraphFormat format = {}) {
    return {text.empty() ? std::vector<Run>{} : std::vector{run(std::move(text))}, {}, std::move(format)};
}

Table table(const std::vector<std::vector<int>>& rows) {
    Table result;
    for (const auto& edges : rows) {
        TableRow row{{}, edges};
        for (std::size_t i = 0; i < edges.size(); ++i)
            row.cells.push_back({{paragraph("cell " + std::to_string(edges[i]))}});
        result.rows.push_back(row);
    }
    return result;
}

// Rich texts of all that there is.
class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    RichText richText() {
        RichText result;
        for (int i = upTo(8); i >= 0; --i) {
            if (upTo(4) == 0)
                result.blocks.emplace_back(randomTable());
            else
                result.blocks.emplace_back(randomParagraph());
        }
        return result;
    }

private:
    int upTo(int most) { return std::uniform_int_distribution(0, most)(random_); }
    bool maybe() { return upTo(3) == 0; }
    int twips() { return maybe() ? upTo(31680) - 15840 : 0; }
    Colour colour() { return {std::uint8_t(upTo(255)), std::uint8_t(upTo(255)), std::uint8_t(upTo(255))}; }
    template<class T>
    T pick(std::initializer_list<T> these) {
        return these.begin()[upTo(int(these.size()) - 1)];
    }

    CharacterFormat format() {
        CharacterFormat result;
        result.font = pick<std::string>({"", "Courier New", "Ünknown"});
        result.size = 1 + upTo(100) / 2.0;
        result.bold = maybe();
        result.italic = maybe();
        result.underline = maybe();
        result.strike = maybe();
        result.position = VerticalPosition(upTo(2));
        if (maybe())
            result.foreground = colour();
        if (maybe())
            result.background = colour();
        return result;
    }

    Paragraph randomParagraph() {
        Paragraph result;
        for (int i = upTo(4); i > 0; --i) {
            Run next =
                run(pick<std::string>({"word", "a\tb", "one\u2028two", "é測😀", "\u00A0", " "}), format());
            if (maybe())
                next = {"", next.format, Picture{Picture::Kind::Png, picture_, upTo(999), upTo(999)}};
            if (result.runs.empty() || result.runs.back().format != next.format)
                result.runs.push_back(next);
        }
        result.end = format();
        ParagraphFormat& shape = result.format;
        shape = {ParagraphAlignment(upTo(3)), twips(), twips(), twips(), std::abs(twips()), std::abs(twips()),
            twips(), false, {}, maybe(), {}};
        shape.lineMultiple = shape.lineSpacing > 0 && maybe();
        for (int i = upTo(3), position = 0; i > 0; --i)
            shape.tabs.push_back({position += 1 + upTo(3000), TabStop::Kind(upTo(3))});
        if (maybe())
            shape.list = ListEntry{ListEntry::Kind(upTo(5)), upTo(8), 1 + upTo(2)};
        return result;
    }

    Table randomTable() {
        Table result;
        for (int rows = upTo(3); rows >= 0; --rows) {
            TableRow row;
            for (int cells = upTo(3), edge = 0; cells >= 0; --cells) {
                row.rightEdges.push_back(edge += maybe() ? 30 + upTo(2000) : 1440);
                row.cells.emplace_back();
                for (int i = upTo(2); i >= 0; --i)
                    row.cells.back().paragraphs.push_back(randomParagraph());
            }
            result.rows.push_back(row);
        }
        return result;
    }

    std::mt19937 random_;
    std::string picture_ = png(Qt::red, 3, 2);
};

TEST(RichTextDocument, GivesBackEveryTextThatItWasFilledWith) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        const RichText text = Generator(seed).richText();
        richtext::RichDocument document;
        richtext::fill(document, text, seed % 2 ? 1 : 1.5);
        ASSERT_EQ(richtext::read(document), text) << "seed " << seed;
        richtext::scaleIndents(document, 0.7);
        ASSERT_EQ(richtext::read(document), text) << "seed " << seed;
    }
}

TEST(RichTextDocument, GivesBackAndShowsWhatIsOutOfProportion) {
    const ParagraphFormat far{ParagraphAlignment::Left, INT_MIN, INT_MAX, INT_MIN, INT_MAX, INT_MIN, INT_MIN,
        false, {{-5}, {INT_MAX}}, false, {}};
    const auto huge = run("x", with(&CharacterFormat::size, 1e9));
    const auto tiny = run("y", with(&CharacterFormat::size, -3));
    Table longOne = table(std::vector(1100, std::vector{1000, 2000}));
    RichText list;
    for (int i = 0; i < 1100; ++i)
        list.blocks.emplace_back(
            paragraph("e", with(&ParagraphFormat::list, ListEntry{ListEntry::Kind::Decimal, 0, 1})));
    const std::string vast = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF\b\2\0\0\0"s;
    Paragraph pictures = paragraph("");
    for (const Picture& each :
        {Picture{Picture::Kind::Png, vast, 0, 0}, Picture{Picture::Kind::Png, "", INT_MAX, 1},
            Picture{Picture::Kind::Jpeg, png(Qt::red, 2, 2), 0, 7}})
        pictures.runs.push_back({"", {}, each});
    const std::vector<RichText> texts{
        {{Paragraph{{huge, tiny}, {}, far}}},
        {{longOne, paragraph("between"), longOne, longOne}},
        list,
        {{pictures}},
        {{table({{3000, 2000, 1000}, {-5}, {0, 0}})}},
        {{table({std::vector<int>(63, 1)})}},
    };
    for (const RichText& text : texts) {
        richtext::RichDocument document;
        richtext::fill(document, text);
        EXPECT_EQ(richtext::read(document), text);
        document.beShownOn(nullptr);
        document.setTextWidth(300);
        QImage image(300, 300, QImage::Format_RGB32);
        QPainter painter(&image);
        document.drawContents(&painter, {0, 0, 300, 300});
        EXPECT_LT(document.size().width(), 10000);
    }
}

TEST(RichTextDocument, HasALineOfWordsForEachBlockAndFindsEveryPlaceAgain) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        richtext::RichDocument document;
        richtext::fill(document, Generator(seed).richText());
        const std::string words = richtext::words(document);
        ASSERT_EQ(std::ranges::count(words, '\n') + 1, document.blockCount());
        TextPosition place;
        for (const char each : words) {
            if ((each & 0xC0) != 0x80) {
                const int position = richtext::positionOf(document, place);
                ASSERT_EQ(richtext::placeOf(document, position), place) << "seed " << seed;
                if (each != '\n' && (each & 0x80) == 0) {
                    ASSERT_EQ(document.characterAt(position), QChar::fromLatin1(each));
                }
            }
            place = each == '\n' ? TextPosition{place.line + 1, 0} : TextPosition{place.line, place.byte + 1};
        }
        EXPECT_EQ(richtext::placeOf(document, richtext::positionOf(document, {1U << 31, 5})), place);
    }
}

// A view of a form's text, in a window with another control.
class RichTextViewTest : public testing::Test {
protected:
    struct ReportForm : Form {
        using Form::Form;
        ReportText rtbViewText{*this, "rtbViewText"};
    };

    fake::ScriptedDesktop desktop;
    std::shared_ptr<ReportForm> form = std::make_shared<ReportForm>(desktop, "frmReport", "Report");
    ReportText& model = form->rtbViewText;
    QWidget window;
    RichTextView* view = new RichTextView(&window);
    QLineEdit* other = new QLineEdit(&window);
    int changes = 0;

    RichTextViewTest() {
        auto* column = new QVBoxLayout(&window);
        column->addWidget(view);
        column->addWidget(other);
        window.resize(500, 400);
        model.locked = false;
        view->setModel(&model);
        model.change.connect([this] { ++changes; });
    }

    void show(RichText text) {
        model.setRichText(std::make_shared<RichText>(std::move(text)));
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        view->setFocus();
        changes = 0;
    }
    void caretTo(std::size_t line, std::size_t byte) { model.select({line, byte}, {line, byte}); }
    void type(const char* text) { QTest::keyClicks(view, QString::fromUtf8(text)); }
    void press(Qt::Key key, Qt::KeyboardModifiers held = {}) { QTest::keyClick(view, key, held); }
    std::shared_ptr<const RichText> shown() {
        QCoreApplication::processEvents();
        return model.richText();
    }
    static bool accepts(RichTextView& target, const QMimeData& data) {
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target.viewport(), &enter);
        return enter.isAccepted();
    }
};

TEST_F(RichTextViewTest, TellsTheModelOfEditsAndOfTheCaret) {
    show({{paragraph("first é"), paragraph("last")}});
    caretTo(0, 8);
    EXPECT_EQ(changes, 0);
    type("!");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(*shown(), (RichText{{paragraph("first é!"), paragraph("last")}}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return model.caret() == TextPosition{0, 9}; }));
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(model.selection(), (TextRange{{0, 9}, {1, 4}}));
    EXPECT_EQ(model.selectedText(), "\nlast");
    model.sentCommand(ReportText::Command::Delete);
    model.sentCommand(ReportText::Command::Undo);
    model.sentCommand(ReportText::Command::Undo);
    EXPECT_EQ(*shown(), (RichText{{paragraph("first é"), paragraph("last")}}));
}

TEST_F(RichTextViewTest, KeysChangeJustWhatTheyShould) {
    const auto page = with(&ParagraphFormat::pageBreakBefore, true);
    const auto itemNoMore = with(&ParagraphFormat::leftIndent, 720);
    ParagraphFormat item = itemNoMore;
    item.list = ListEntry{ListEntry::Kind::Bullet, 1, 1};
    const Table cells = table({{1440}});
    const Paragraph plain = paragraph("ab");
    const Paragraph pictured{{{"", {}, Picture{Picture::Kind::Png, png(Qt::red, 2, 2), 0, 0}}}, {}, {}};
    struct Case {
        const char* rule;
        RichText before;
        TextPosition caret;
        std::function<void()> act;
        RichText after;
    };
    const auto pressed = [this](Qt::Key key, Qt::KeyboardModifiers held = {}) {
        return [=, this] { press(key, held); };
    };
    const std::vector<Case> cases{
        {"a new paragraph begins no page", {{paragraph("ab", page)}}, {0, 1}, pressed(Qt::Key_Return),
            {{paragraph("a", page), paragraph("b")}}},
        {"a new paragraph is in the same list", {{paragraph("ab", item)}}, {0, 1}, pressed(Qt::Key_Return),
            {{paragraph("a", item), paragraph("b", item)}}},
        {"going back ends a list", {{paragraph("ab", item)}}, {0, 0}, pressed(Qt::Key_Backspace),
            {{paragraph("ab", itemNoMore)}}},
        {"writing before a table makes a paragraph", {{cells}}, {0, 0}, [this] { type("x"); },
            {{paragraph("x"), cells}}},
        {"an empty paragraph behind a table stays", {{cells}}, {2, 0}, pressed(Qt::Key_Return),
            {{cells, paragraph(""), paragraph("")}}},
        {"an empty entry ends its list", {{paragraph("", item)}}, {0, 0}, pressed(Qt::Key_Return),
            {{paragraph("", itemNoMore)}}},
        {"writing behind a picture is no picture", {{pictured}}, {0, 3}, [this] { type("x"); },
            {{Paragraph{{pictured.runs[0], run("x")}, {}, {}}}}},
        {"bold goes on", {{plain}}, {0, 2},
            [this] {
                press(Qt::Key_B, Qt::ControlModifier);
                type("c");
            },
            {{Paragraph{{run("ab"), run("c", with(&CharacterFormat::bold, true))}, {}, {}}}}},
        {"a selection becomes italic", {{plain}}, {0, 0},
            [this] {
                press(Qt::Key_Right, Qt::ShiftModifier);
                press(Qt::Key_I, Qt::ControlModifier);
            },
            {{Paragraph{{run("a", with(&CharacterFormat::italic, true)), run("b")}, {}, {}}}}},
        {"a tab is written", {{plain}}, {0, 1}, pressed(Qt::Key_Tab), {{paragraph("a\tb")}}},
        {"a line is broken", {{plain}}, {0, 1}, pressed(Qt::Key_Return, Qt::ShiftModifier),
            {{paragraph("a\u2028b")}}},
    };
    for (const Case& each : cases) {
        show(each.before);
        caretTo(each.caret.line, each.caret.byte);
        each.act();
        EXPECT_EQ(*shown(), each.after) << each.rule;
        while (view->document()->isUndoAvailable())
            view->undo();
        EXPECT_EQ(*shown(), each.before) << "undone: " << each.rule;
    }
    press(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_FALSE(view->hasFocus());
}

TEST_F(RichTextViewTest, LockedEditsNothingButCanBeReadByKeyboard) {
    const RichText text{{paragraph("line one"), paragraph("line two")}};
    model.locked = true;
    show(text);
    QGuiApplication::clipboard()->setText("pasted");
    type("abc");
    for (const Qt::Key key : {Qt::Key_B, Qt::Key_V, Qt::Key_X, Qt::Key_Z})
        press(key, Qt::ControlModifier);
    press(Qt::Key_Return);
    for (const auto command :
        {ReportText::Command::Paste, ReportText::Command::Cut, ReportText::Command::Delete})
        model.sentCommand(command);
    QMimeData plain;
    plain.setText("dropped");
    EXPECT_FALSE(accepts(*view, plain));
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(richtext::read(*view->document()), text);
    model.sentKey(key::Home);
    press(Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(model.selectedText(), "line one\nline two");
    press(Qt::Key_Tab);
    EXPECT_TRUE(other->hasFocus());
}

TEST_F(RichTextViewTest, AZoomIsNoEditAndKeepsWhatCanBeUndone) {
    show({{paragraph("text", with(&ParagraphFormat::leftIndent, 1440)),
        Paragraph{{run("big", with(&CharacterFormat::size, 33.5))}, {}, {}}}});
    const int width = int(view->document()->idealWidth());
    model.zoom = 2;
    EXPECT_NEAR(view->document()->idealWidth() / width, 2, 0.15);
    type("x");
    EXPECT_EQ(changes, 1);
    model.zoom = 1;
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(std::get<Paragraph>(shown()->blocks[1]).runs[0].format.size, 33.5);
    view->undo();
    EXPECT_NEAR(view->document()->idealWidth() / width, 1, 0.7);
    EXPECT_EQ(plainText(*shown()), "text\nbig");
    int steps = 0;
    view->zoomRequested.connect([&](int more) { steps += more; });
    for (const int angle : {60, 60, -240}) {
        QWheelEvent wheel(
            {9, 9}, {9, 9}, {}, {0, angle}, Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view->viewport(), &wheel);
    }
    EXPECT_EQ(steps, -1);
}

TEST_F(RichTextViewTest, CopiesAndTakesRichTextAndPlainTextAndNothingElse) {
    const Picture shot{Picture::Kind::Png, png(Qt::green, 30, 20), 0, 0};
    const RichText text{{Paragraph{{run("bold", with(&CharacterFormat::bold, true)), {"", {}, shot}}, {}, {}},
        table({{1440, 2880}, {2000}}), paragraph("end")}};
    show(text);
    caretTo(0, 4); // before the picture
    const QPoint inside = view->viewport()->pos() + view->cursorRect().bottomRight() + QPoint(9, -9);
    const QImage seen = view->grab().toImage();
    EXPECT_EQ(seen.pixelColor(inside * seen.devicePixelRatio()), QColor(Qt::green));
    model.sentCommand(ReportText::Command::SelectAll);
    model.sentCommand(ReportText::Command::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->text().section('\n', 0, 0), "bold");
    model.setRichText(std::make_shared<RichText>(RichText{{paragraph("")}}));
    model.sentCommand(ReportText::Command::Paste);
    EXPECT_EQ(*shown(), text);

    auto* foreign = new QMimeData;
    foreign->setHtml("<img src='file:///etc/hostname'><b>remote</b>");
    QGuiApplication::clipboard()->setMimeData(foreign);
    model.sentCommand(ReportText::Command::Paste);
    EXPECT_EQ(*shown(), text);
    EXPECT_FALSE(
        view->document()->resource(QTextDocument::ImageResource, QUrl("file:///etc/hostname")).isValid());
    QMimeData file;
    file.setUrls({QUrl("file:///report.rtf")});
    file.setText("file:///report.rtf");
    EXPECT_FALSE(accepts(*view, file)); // so that the window is asked

    model.setRichText(
        std::make_shared<RichText>(RichText{{paragraph("ab", with(&ParagraphFormat::leftIndent, 720))}}));
    caretTo(0, 1);
    QGuiApplication::clipboard()->setText(QString::fromUtf8("1\r\n2\a\uFDD0"));
    model.sentCommand(ReportText::Command::Paste);
    EXPECT_EQ(plainText(*shown()), "a1\n2b");
}

TEST_F(RichTextViewTest, TheModelHasTheLatestTextWhoeverGoesFirst) {
    show({{table({{1440}}), paragraph("text")}});
    model.sentCommand(ReportText::Command::SelectAll);
    type("x");
    view->setModel(nullptr);
    EXPECT_EQ(*model.richText(), (RichText{{paragraph("x")}}));
    type("y");
    EXPECT_EQ(plainText(*model.richText()), "x");
    view->setModel(&model);
    type("z");
    delete view;
    EXPECT_EQ(plainText(*model.richText()), "xz");
}

TEST_F(RichTextViewTest, AHandlerOfAnEditMayShowAnotherText) {
    show({{paragraph("one")}});
    bool done = false;
    model.change.connect([&] {
        if (!std::exchange(done, true))
            model.setRichText(std::make_shared<RichText>(RichText{{paragraph("two")}}));
    });
    type("x");
    EXPECT_EQ(plainText(*shown()), "two");
    EXPECT_EQ(view->toPlainText(), "two");
    model.clear();
    EXPECT_EQ(view->toPlainText(), "");
}

} // namespace
} // namespace genutil
