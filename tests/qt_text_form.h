#pragma once

#include "hostif/form.h"
#include "platform/qt/text/text_view.h"
#include "support/scripted_desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QtTest>

#include <memory>
#include <string>

namespace genutil::fake {

struct TextForm : Form {
    explicit TextForm(Desktop& desktop) : Form(desktop, "frmText", "Text") {}
    ReportText rtbText{*this, "rtbText"};
};

// A view of ten rows, and a form with the text that it shows.
class TextViewTest : public testing::Test {
protected:
    TextViewTest() {
        model.font = Font{.name = "Courier New", .size = 10};
        view.setModel(&model);
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.resize(400, 10 * int(rowHeight()) + 5); // ten whole rows
        view.show();
        view.activateWindow();
        view.setFocus();
    }
    ~TextViewTest() override { view.setModel(nullptr); }

    void showText(const std::string& whole) {
        model.setDocument(std::make_shared<text::TextDocument>(text::TextDocument::fromBytes(whole)));
    }
    void showLines(int count, const std::string& rest = "") {
        std::string whole;
        for (int i = 0; i < count; ++i)
            whole += (i ? "\n" : "") + std::to_string(i) + rest;
        showText(whole);
    }
    // A text for editing in which [ is the selection's start, if there is one, and | the caret.
    void showMarked(std::string marked) {
        model.locked = false;
        const std::size_t caretMark = marked.find('|');
        const std::size_t anchorMark = marked.find('[');
        std::erase_if(marked, [](char c) { return c == '|' || c == '['; });
        showText(marked);
        const auto place = [&](std::size_t mark, std::size_t other) {
            return model.document()->positionAt(mark - (other < mark));
        };
        const text::TextPosition caret = place(caretMark, anchorMark);
        model.userSelect(anchorMark == std::string::npos ? caret : place(anchorMark, caretMark), caret);
    }
    std::string marked() const {
        const text::TextDocument& document = *model.document();
        std::string all = document.text({{}, document.end()});
        const bool selected = model.anchor() != model.caret();
        const bool caretFirst = model.caret() < model.anchor();
        all.insert(document.offsetOf(std::max(model.anchor(), model.caret())), caretFirst ? "[" : "|");
        if (selected)
            all.insert(document.offsetOf(std::min(model.anchor(), model.caret())), caretFirst ? "|" : "[");
        return all;
    }
    double rowHeight() const { return std::ceil(QFontMetricsF(view.font()).height()); }
    QPoint at(int row, double column) const {
        return {int(3 + column * QFontMetricsF(view.font()).horizontalAdvance('x')),
            int((row + 0.5) * rowHeight())};
    }
    void compose(const QString& preedit, const QString& commit, int from = 0, int length = 0) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit, from, length);
        QApplication::sendEvent(&view, &event);
    }
    QImage picture() {
        QCoreApplication::processEvents(); // the bars come and go with them
        return view.viewport()->grab().toImage();
    }

    ScriptedDesktop desktop;
    std::shared_ptr<TextForm> form = std::make_shared<TextForm>(desktop);
    ReportText& model = form->rtbText;
    TextView view;
};

} // namespace genutil::fake
