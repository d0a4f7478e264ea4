#pragma once

#include "hostif/desktop.h"
#include "hostif/error.h"
#include "hostif/form.h"
#include "hostif/printer.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace genutil::fake {

// A desktop without a screen that plays the user. Modal forms are handed to the next act of the script;
// message boxes and file dialogs are answered from queues; everything that a user would notice is kept. A
// character is 100 twips wide in any font of 8.25 points, and the screen is 1024 by 768 pixels of 15 twips.
class ScriptedDesktop : public Desktop {
public:
    Screen theScreen{.width = 15360, .height = 11520, .twipsPerPixel = 15};
    bool fixedPitch = true;

    // What the user does while a modal form is open, one act for each form shown. A form that its act leaves
    // open is closed by its close box; without an act it is closed at once.
    std::deque<std::function<void(Form&)>> acts;
    std::deque<Answer> answers;          // without one left, the default answer
    std::deque<std::string> chosenFiles; // "" cancels; without one left, every file dialog is cancelled
    std::deque<std::string> typed;       // answers to text prompts; "" cancels, as does an empty queue
    std::function<void()> onEvents;      // runs within doEvents
    std::function<void(MenuItem&)> onPopUp;

    std::vector<Message> messages;
    std::vector<FileDialog> dialogs;
    std::vector<TextPrompt> prompts;
    std::map<std::string, std::function<void()>> watched; // by path, while a watch exists
    std::vector<std::shared_ptr<Form>> openForms;         // shown and not closed, the front one last
    int eventRounds = 0;
    int repaints = 0;
    bool showFails = false;
    double time = 46000.375;                   // Tuesday, 9 December 2025, 9 o'clock
    Printer* thePrinter = nullptr;             // the test's own
    std::function<bool(PrintDialog&)> onPrint; // what the user does in a printer dialog; none cancels
    std::function<std::unique_ptr<Printer>(const std::string&)> makePdfPrinter;
    std::vector<PrintDialog> printDialogs; // as they were when they appeared

    Screen screen() override { return theScreen; }
    Pointer pointer() override { return pointer_; }
    void setPointer(Pointer pointer) override { pointer_ = pointer; }

    double textWidth(const Font& font, const std::string& text) override {
        return double(text.size()) * 100 * font.size / 8.25;
    }
    bool isFixedPitch(const Font&) override { return fixedPitch; }

    void showEarly(const std::shared_ptr<Form>& form) override { appear(form); }
    void show(const std::shared_ptr<Form>& form, bool modal) override {
        appear(form);
        if (!modal)
            return;
        if (!acts.empty()) {
            const auto act = std::move(acts.front());
            acts.pop_front();
            act(*form);
        }
        if (form->isLoaded() && form->isShown())
            form->userClose(UnloadReason::CloseBox);
    }
    void popUpMenu(MenuItem& menu) override {
        if (onPopUp)
            onPopUp(menu);
    }
    void hide(Form& form) override {
        form.userActivate(false);
        form.setShown(false);
    }
    void close(Form& form) override {
        std::erase_if(openForms, [&](const auto& open) { return open.get() == &form; });
    }
    void bringToFront(Form& form) override {
        const auto found =
            std::ranges::find_if(openForms, [&](const auto& open) { return open.get() == &form; });
        if (found != openForms.end())
            std::rotate(found, found + 1, openForms.end());
    }
    void repaint(Control&) override { ++repaints; }
    void doEvents() override {
        ++eventRounds;
        if (onEvents)
            onEvents();
    }

    Answer ask(const Message& message) override {
        messages.push_back(message);
        if (answers.empty())
            return message.defaultAnswer;
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
    bool showOpen(Form&, FileDialog& dialog) override { return choose(dialog); }
    bool showSave(Form&, FileDialog& dialog) override { return choose(dialog); }
    std::optional<std::string> askText(Form&, const TextPrompt& prompt) override {
        prompts.push_back(prompt);
        if (typed.empty())
            return std::nullopt;
        const std::string text = std::move(typed.front());
        typed.pop_front();
        return text.empty() ? std::nullopt : std::optional(text);
    }
    std::unique_ptr<FileWatch> watchFile(const std::string& path, std::function<void()> changed) override {
        struct Watch : FileWatch {
            std::map<std::string, std::function<void()>>& all;
            std::string path;
            Watch(std::map<std::string, std::function<void()>>& list, std::string name)
                : all(list), path(std::move(name)) {}
            ~Watch() override { all.erase(path); }
        };
        watched[path] = std::move(changed);
        return std::make_unique<Watch>(watched, path);
    }
    Clipboard& clipboard() override { return clipboard_; }
    Printer* printer() override { return thePrinter; }
    std::unique_ptr<Printer> pdfPrinter(const std::string& path) override {
        return makePdfPrinter ? makePdfPrinter(path) : nullptr;
    }
    bool showPrint(Form&, PrintDialog& dialog) override {
        printDialogs.push_back(dialog);
        return onPrint && onPrint(dialog);
    }
    double localTime() override { return time; }

private:
    struct TextClipboard : Clipboard {
        std::string held;
        void clear() override { held.clear(); }
        void setText(const std::string& text) override { held = text; }
        std::string text() override { return held; }
    };

    void appear(const std::shared_ptr<Form>& form) {
        if (showFails)
            throw Error(errors::InternalError, "no screen");
        if (!form->isShown())
            openForms.push_back(form);
        form->setShown(true);
        form->userActivate(true);
    }

    bool choose(FileDialog& dialog) {
        dialogs.push_back(dialog);
        if (chosenFiles.empty())
            return false;
        const std::string file = std::move(chosenFiles.front());
        chosenFiles.pop_front();
        if (file.empty())
            return false;
        dialog.fileName = file;
        return true;
    }

    Pointer pointer_ = Pointer::Default;
    TextClipboard clipboard_;
};

} // namespace genutil::fake
