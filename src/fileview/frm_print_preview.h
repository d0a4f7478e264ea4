#pragma once

#include "fileview/report_print.h"
#include "frame/dialog_form.h"
#include "hostif/controls.h"
#include "hostif/printed_page.h"

#include <cstddef>
#include <string>

namespace genutil {

// The pages of a report as its printer would print them, one at a time: a page under a strip of controls.
// Lengths are twips.
class frmPrintPreview : public DialogForm {
public:
    // The pages were laid out for this printer; both must outlive the form. `file` is the report's.
    frmPrintPreview(
        Component& component, Printer& printer, const ReportPages& pages, const std::string& file);

    PrintedPage pagShown;
    Button cmdFirst, cmdPrevious;
    TextBox txtPage;
    Label lblPages; // "of" how many
    Button cmdNext, cmdLast;
    Label lblZoom;
    ComboBox cboZoom;
    Button cmdPrint, cmdClose;
    Label lblCutOff; // what the paper cuts off

    // Result: the user wants to print.
    bool PrintChosen = false;

    // Shows the form, as high as the screen lets it be. Every other window waits. F1 opens the help at the
    // topic.
    // The width, inside the window's frame, that shows all buttons.
    double leastRoom() const;

    void Form_Setup(int helpTopic, const std::string& programFolder);

private:
    void connectPages();
    void connectZoom();
    void connectKeys();
    void layOut();
    PagePicture picture(std::size_t page, int width, int height);
    // The nearest page that there is.
    void goTo(std::ptrdiff_t page);
    void zoomBy(int steps, double shownPercent);
    void pageEdited();
    void showPage();
    void enableButtons();

    Printer& printer_;
    const ReportPages& pages_;
};

} // namespace genutil
