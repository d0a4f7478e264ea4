#include "hostif/controls.h"
#include "hostif/error.h"
#include "hostif/grid.h"
#include "hostif/report_text.h"
#include "hostif/value.h"
#include "support/error_of.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <limits>

using namespace genutil;

namespace {

using fake::errorOf;

struct CommaLocale {
    CommaLocale() { setNumberLocale({.decimalPoint = ",", .groupSeparator = "."}); }
    ~CommaLocale() { setNumberLocale({}); }
};

TEST(Value, BecomesAnIntegerByRoundingHalvesToTheEvenNeighbour) {
    const std::pair<double, int> cases[] = {{0.5, 0}, {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}, {-2.5, -2},
        {2.4999, 2}, {32767.49, 32767}, {-32768.5, -32768}};
    for (const auto& [number, expected] : cases)
        EXPECT_EQ(Value(number).toInt16(), expected) << number;
}

TEST(Value, RefusesWhatTheTargetCannotHold) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::tuple<Value, std::function<void(const Value&)>, int> cases[] = {
        {32767.5, [](const Value& v) { v.toInt16(); }, errors::Overflow},
        {nan, [](const Value& v) { v.toInt32(); }, errors::Overflow},
        {256.0, [](const Value& v) { v.toByte(); }, errors::Overflow},
        {-1.0, [](const Value& v) { v.toByte(); }, errors::Overflow},
        {1e39, [](const Value& v) { v.toSingle(); }, errors::Overflow},
        {"1e999", [](const Value& v) { v.toDouble(); }, errors::Overflow},
        {"12a", [](const Value& v) { v.toDouble(); }, errors::TypeMismatch},
        {"", [](const Value& v) { v.toInt32(); }, errors::TypeMismatch},
        {"inf", [](const Value& v) { v.toDouble(); }, errors::TypeMismatch},
        {"perhaps", [](const Value& v) { v.toBool(); }, errors::TypeMismatch},
        {Null{}, [](const Value& v) { v.toText(); }, errors::InvalidNull},
        {Null{}, [](const Value& v) { v.toBool(); }, errors::InvalidNull},
    };
    for (const auto& [value, convert, number] : cases)
        EXPECT_EQ(errorOf([&] { convert(value); }), number) << value.toTextOrEmpty();
}

TEST(Value, WritesAndReadsNumbersInTheUsersLocale) {
    struct Case {
        Value value;
        const char* point;
        const char* comma;
    };
    const Case cases[] = {{0.1, "0.1", "0,1"}, {1234567.875, "1234567.875", "1234567,875"},
        {1e15, "1E+15", "1E+15"}, {123456789012345.0, "123456789012345", "123456789012345"},
        {1e-15, "0.000000000000001", "0,000000000000001"}, {1e-16, "1E-16", "1E-16"},
        {-2.5e20, "-2.5E+20", "-2,5E+20"}, {1.0 / 3, "0.333333333333333", "0,333333333333333"},
        {0.1f, "0.1", "0,1"}, {-0.0, "0", "0"}, {1e300, "1E+300", "1E+300"}, {0.5, "0.5", "0,5"}};
    for (const Case& c : cases) {
        EXPECT_EQ(c.value.toText(), c.point);
        const CommaLocale comma;
        EXPECT_EQ(c.value.toText(), c.comma);
        EXPECT_NEAR(Value(c.comma).toDouble(), c.value.toDouble(), std::abs(c.value.toDouble()) * 1e-7)
            << c.comma;
    }
    EXPECT_EQ(Value(" +1,234,567.5 ").toDouble(), 1234567.5);
    EXPECT_EQ(Value(true).toDouble(), -1);
    EXPECT_TRUE(Value("TRUE").toBool());
    EXPECT_TRUE(Value("-1").toBool());
}

TEST(Value, TakesTheLeadingNumberOfATextWithAPointInEveryLocale) {
    const CommaLocale comma;
    const std::pair<const char*, double> cases[] = {{"0.13xyz", 0.13}, {"abc", 0}, {"", 0},
        {" 1 2 . 5 m", 12.5}, {"-3e2", -300}, {"+4", 4}, {"inf", 0}, {"nan", 0}, {"-", 0}, {".5", 0.5},
        {"1,5", 1}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(leadingNumber(text), expected) << text;
}

TEST(Error, KeepsTheMeaningOfForeignExceptions) {
    const auto converted = [](const std::function<void()>& raise) {
        try {
            raise();
        } catch (...) {
            return toError(std::current_exception());
        }
        return Error(0);
    };
    EXPECT_EQ(converted([] { throw 7; }).number(), errors::InternalError);
    EXPECT_EQ(converted([] { throw std::bad_alloc(); }).number(), errors::OutOfMemory);
    EXPECT_EQ(converted([] { throw std::runtime_error("why"); }).description(), "why");
    EXPECT_EQ(converted([] { throw Error(9, "what", "where"); }).source(), "where");
    EXPECT_EQ(converted([] { std::filesystem::directory_iterator("/nowhere/at/all"); }).number(),
        errors::FileNotFound);
}

struct TestForm : Form {
    explicit TestForm(Desktop& desktop) : Form(desktop, "frmTest", "Test") {
        first.tabIndex = 0;
        second.tabIndex = 1;
    }
    TextBox first{*this, "txtFirst", "one"};
    TextBox second{*this, "txtSecond"};
    Label wide{*this, "lblWide", "12345", Label::Sizing::Auto};
    CheckBox box{*this, "chkBox", "Box"};
};

TEST(Form, SeesKeysBeforeTheFocusedControlAndMayConsumeThem) {
    fake::ScriptedDesktop desktop;
    const auto form = std::make_shared<TestForm>(desktop);
    int seenByControl = 0;
    form->first.keyDown.connect([&](KeyEvent& event) { seenByControl = event.code; });
    form->first.setFocus();
    form->keyDown.connect([](KeyEvent& event) { event.code = event.code == key::F1 ? 0 : event.code; });

    EXPECT_FALSE(form->userKey({.code = key::F1}));
    EXPECT_EQ(seenByControl, key::F1) << "without key preview the form does not see keys";
    form->keyPreview = true;
    EXPECT_FALSE(form->userKey({.code = key::Home}));
    EXPECT_EQ(seenByControl, key::Home);
    EXPECT_TRUE(form->userKey({.code = key::F1}));
    EXPECT_EQ(seenByControl, key::Home);
}

TEST(Form, UnloadsOnceUnlessAHandlerRefusesAndMayDieInTheAttempt) {
    fake::ScriptedDesktop desktop;
    auto form = std::make_shared<TestForm>(desktop);
    bool refuse = true;
    int unloads = 0;
    form->queryUnload.connect([&](bool& refused, UnloadReason) { refused = refuse; });
    form->unloaded.connect([&] { ++unloads; });
    form->show(false);
    EXPECT_FALSE(form->unload());
    EXPECT_EQ(desktop.openForms.size(), 1u);
    refuse = false;
    Form* const raw = form.get();
    form.reset(); // now only the desktop keeps it
    EXPECT_TRUE(raw->unload(UnloadReason::CloseBox));
    EXPECT_EQ(unloads, 1);
    EXPECT_TRUE(desktop.openForms.empty());
}

TEST(Form, RaisesResizeForItsOwnAndTheUsersChangesOfSizeButNotOfPlace) {
    fake::ScriptedDesktop desktop;
    const auto form = std::make_shared<TestForm>(desktop);
    int resizes = 0;
    form->resize.connect([&] { ++resizes; });
    form->width = 5000;
    form->left = 700;
    EXPECT_EQ(resizes, 1);
    form->userResize(6000, 3000, WindowState::Normal);
    form->userResize(6000, 3000, WindowState::Normal);
    EXPECT_EQ(resizes, 2);
    form->windowState = WindowState::Maximized;
    EXPECT_EQ(resizes, 3);
}

TEST(Control, LosesTheFocusBeforeTheNextOneGainsIt) {
    fake::ScriptedDesktop desktop;
    const auto form = std::make_shared<TestForm>(desktop);
    std::string order;
    form->first.lostFocus.connect([&] { order += "lost "; });
    form->second.gotFocus.connect([&] { order += "got"; });
    form->first.setFocus();
    form->second.setFocus();
    EXPECT_EQ(order, "lost got");
    // A check that refuses to be left takes the focus back.
    form->second.lostFocus.connect([&] { form->second.setFocus(); });
    form->first.setFocus();
    EXPECT_EQ(form->activeControl(), &form->second);
}

TEST(Control, OffersItsPropertiesByNameAndRefusesOthers) {
    fake::ScriptedDesktop desktop;
    const auto form = std::make_shared<TestForm>(desktop);
    EXPECT_EQ(form->wide.readMember("WIDTH").toDouble(), 500);
    form->wide.writeMember("caption", Value("1234567890"));
    EXPECT_EQ(form->wide.width, 1000) << "an auto-sized label follows its caption";
    int clicks = 0;
    form->box.click.connect([&] { ++clicks; });
    form->box.writeMember("Value", Value("True"));
    form->box.writeMember("Value", Value(true));
    EXPECT_EQ(clicks, 1) << "a box that does not change is not clicked";
    // As the host selects the whole text of a box that gains the focus.
    form->first.writeMember("SelStart", Value(std::int32_t{0}));
    form->first.writeMember("SelLength", Value(std::int32_t{3}));
    EXPECT_EQ(form->first.selectionLength, 3u);
    form->first.writeMember("SelStart", Value(std::int32_t{2}));
    form->first.writeMember("SelLength", Value(std::int32_t{9}));
    EXPECT_EQ(form->first.readMember("SelStart").toInt32(), 2);
    EXPECT_EQ(form->first.readMember("SelLength").toInt32(), 1) << "no further than the text goes";
    EXPECT_EQ(errorOf([&] { form->first.writeMember("SelLength", Value(-1.0)); }), errors::InvalidCall);
    EXPECT_EQ(errorOf([&] { form->first.readMember("Colour"); }), errors::NoSuchMember);
    EXPECT_EQ(errorOf([&] { form->first.writeMember("Name", Value("x")); }), errors::InvalidCall);
    EXPECT_EQ(errorOf([&] { form->writeMember("WindowState", Value(7.0)); }), errors::InvalidCall);
}

TEST(Event, SurvivesHandlersThatGoWhileItIsRaised) {
    auto event = std::make_unique<Event<>>();
    int calls = 0;
    Connection second;
    event->connect([&] {
        ++calls;
        second = Connection();
    });
    second = event->connectScoped([&] { calls += 10; });
    event->connect([&] { event.reset(); });
    event->connect([&] { ++calls; });
    (*event)();
    EXPECT_EQ(calls, 2);
}

TEST(ReportText, IsReadAndEditedByNameAndSaysWhatHasChanged) {
    fake::ScriptedDesktop desktop;
    const auto form = std::make_shared<TestForm>(desktop);
    ReportText box(*form, "rtbTest");
    std::vector<std::string> log;
    box.change.connect([&] { log.push_back("change"); });
    box.selectionChanged.connect([&] { log.push_back("selection"); });
    box.edited.connect([&](const text::TextChange& edit) {
        log.push_back("edited " + std::to_string(edit.newEnd.line) + "." + std::to_string(edit.newEnd.byte));
    });
    box.writeMember("Text", Value("one\ntwo"));
    EXPECT_EQ(box.readMember("Text"), Value("one\r\ntwo"));
    box.writeMember("SelStart", Value(std::int32_t(2)));
    box.writeMember("SelLength", Value(std::int32_t(3)));
    EXPECT_EQ(box.readMember("SelText"), Value("e\nt"));
    log.clear();
    box.writeMember("SelText", Value("X\nY")); // the lock holds the user back, not the host
    EXPECT_EQ(box.readMember("Text"), Value("onX\r\nYwo"));
    EXPECT_EQ(box.readMember("SelStart"), Value(std::int32_t(5)));
    EXPECT_EQ(log, (std::vector<std::string>{"edited 1.1", "selection", "change"}));
    EXPECT_FALSE(box.userUndo()) << "locked";
    box.locked = false;
    EXPECT_TRUE(box.userUndo() && !box.userUndo() && box.userRedo());
    for (const std::int32_t wrong : {-1, std::numeric_limits<std::int32_t>::min()})
        EXPECT_EQ(errorOf([&] { box.writeMember("SelStart", Value(wrong)); }), errors::InvalidCall);
    auto rich = std::make_shared<text::RichText>();
    rich->blocks.emplace_back(text::Paragraph{{{"rich", {}, {}}}, {}, {}});
    box.setRichText(rich);
    EXPECT_EQ(box.readMember("Text"), Value("rich"));
    EXPECT_EQ(errorOf([&] { box.writeMember("SelText", Value("x")); }), errors::InvalidCall);
    EXPECT_FALSE(box.userReplace({}, "x"));
}

TEST(Grid, ReadsItsFormatAndKeepsShortRows) {
    fake::ScriptedDesktop desktop;
    const auto form = std::make_shared<TestForm>(desktop);
    Grid grid(*form, "flxTest");
    grid.setFormat("<Job|^Zone|>Points|");
    grid.addRow("a\tb");
    ASSERT_EQ(grid.columnCount(), 4);
    EXPECT_EQ(grid.column(2).alignment, Alignment::Right);
    EXPECT_EQ(grid.text(0, 1), "Zone");
    EXPECT_EQ(grid.text(1, 1), "b");
    EXPECT_EQ(grid.text(1, 3), "");
    EXPECT_EQ(errorOf([&] { grid.text(2, 0); }), errors::OutOfRange);
}

} // namespace
