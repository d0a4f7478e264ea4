#pragma once

#include "hostif/controls.h"
#include "hostif/report_text.h"
#include "text/search.h"

namespace genutil {

// The bar below the text in which the user looks for words. It is hidden until it is opened.
class FindBar {
public:
    FindBar(Form& form, ReportText& text);

    Panel pnlFind;
    Label lblFind;
    TextBox txtFind;
    CheckBox chkMatchCase, chkWholeWord;
    Button cmdFindNext, cmdFindPrevious, cmdFindClose;
    Label lblFindResult;

    // Shows the bar with the focus in its field; words selected in one line are proposed.
    void open();
    void close();
    // Selects the next place of the text in the field, beyond the text's end or start if need be; opens the
    // bar when there is nothing to look for yet. Says in the bar what came of it.
    void search(text::SearchDirection direction);
    // While the user types: the first place from the selection's start on. Left to search() in a text so
    // large that typing would wait for it.
    void searchAsTyped();

private:
    text::SearchQuery query() const;
    bool selectFrom(text::TextPosition start, text::SearchDirection direction);

    ReportText& text_;
};

} // namespace genutil
