#include "lsoptions/c_ls_opts_loader.h"
#include "lsoptions/ls_numbers.h"
#include "support/error_of.h"
#include "support/ls_facts.h"
#include "support/ls_world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace genutil;
using testing::HasSubstr;
using testing::Not;

namespace {

using Texts = std::vector<std::string>;

// The box of an option as the sheet writes it down.
std::string boxOf(const LSOption& option) {
    return {"-SDPFCT"[int(option.format)], "-0BL"[int(option.check)], "-23"[int(option.row)]};
}
// The column that an option stands in, and the caption of its row; or its group and the caption beside it.
std::pair<char, std::string_view> placeOf(int option) {
    for (const LSObservation& row : lsObservations()) {
        const int columns[] = {row.deviation, row.perMillion, row.firstCentring, row.secondCentring};
        if (const auto* at = std::ranges::find(columns, option); at != std::end(columns))
            return {"op12"[at - columns], row.caption};
    }
    for (const LSGroup& group : lsGroups())
        for (const LSCaption& each : group.options)
            if (each.option == option)
                return {"ctvlg"[int(group.frame)], each.caption};
    return {' ', lsOption(option).kind == LSControl::Check ? lsCheckCaption(option) : ""};
}

TEST(LSOptionTable, SaysOfEachOptionWhatTheProductDefines) {
    for (int number = 1; number <= 53; ++number) {
        const LSOption& option = lsOption(number);
        const fake::LSFact& fact = fake::lsFacts[number - 1];
        SCOPED_TRACE(fact.member);
        EXPECT_EQ(option.number, number);
        EXPECT_EQ(option.name(), fact.member);
        EXPECT_EQ("dsilbt"[option.member.index()], fact.type);
        EXPECT_EQ(boxOf(option), fact.box);
        EXPECT_EQ(lsHelpTopic(number), fact.topic);
        if (number > 48)
            continue;
        EXPECT_EQ(std::string_view(option.control), fact.control);
        EXPECT_EQ(std::string_view(option.unit), fact.unit);
        EXPECT_EQ(placeOf(number), std::pair(fact.column, fact.caption));
        const auto focus = std::ranges::find(lsFocusOrder(), number, &LSFocus::option);
        EXPECT_TRUE(fact.focus == 0 ? focus->number > 30 : focus->number == fact.focus) << focus->number;
    }
}

TEST(LSOptionTable, OrdersLoadingAndSavingAsHandlersNeedIt) {
    std::vector<std::string_view> wanted(std::begin(fake::lsLoadFacts), std::end(fake::lsLoadFacts));
    const auto names = [](const LSOrder& order) {
        std::vector<std::string_view> all;
        for (const int number : order)
            all.push_back(lsOption(number).name());
        return all;
    };
    EXPECT_EQ(names(lsLoadOrder()), wanted);
    std::swap(*std::ranges::find(wanted, "Corrections"), *std::ranges::find(wanted, "OutlierTest"));
    EXPECT_EQ(names(lsDefaultLoadOrder()), wanted);
    EXPECT_EQ(names(lsSaveOrder()), wanted);
    wanted.erase(std::ranges::find(wanted, "Iterations"));
    wanted.insert(std::ranges::find(wanted, "ConvLimitV") + 1, "Iterations");
    EXPECT_EQ(names(lsDefaultSaveOrder()), wanted);
}

struct LSDialog : ::testing::Test, fake::LSWorld {
    cLS_OptsLoader loader{component};
    bool saved = false;

    void show(std::int16_t mode, const std::function<void(frmLS_Options&)>& act, std::int16_t dataMode = 0) {
        desktop.acts = {[&](Form& form) { act(dynamic_cast<frmLS_Options&>(form)); }};
        loader.LoadLSOptionsForm(false, mode, saved, options, prog, table, defaults, dataMode);
    }
    // Types into the box and moves on.
    static void type(frmLS_Options& form, int option, const std::string& text) {
        form.boxOf(option).setFocus();
        form.boxOf(option).userEdit(text);
        form.cmdOK.setFocus();
    }
    Texts messages() {
        Texts all;
        for (const Message& message : std::exchange(desktop.messages, {}))
            all.push_back(message.text);
        return all;
    }
};

TEST_F(LSDialog, ShowsAndReturnsEveryOptionUnchangedInEveryLocale) {
    for (const NumberLocale& locale : {NumberLocale{".", ","}, NumberLocale{",", "."}})
        for (const double number : {0.0, 1e-9, 0.0005, 1234.5, 25e6, 1e15, -3.25}) {
            setNumberLocale(locale);
            for (const LSOption& option : lsOptions())
                if (option.kind == LSControl::Box)
                    options->write(option.name(),
                        option.number == 25 ? Value(std::int32_t(std::min(number, 1e9))) : Value(number));
            saved = false;
            messages();
            const RecordPtr before = options->Clone();
            show(1, [&](frmLS_Options& form) {
                form.checkOf(5).userToggle();
                form.cmdOK.userPress();
            });
            EXPECT_TRUE(saved) << locale.decimalPoint << number;
            for (const LSOption& option : lsOptions()) {
                const Value was = before->read(option.name());
                const bool isLimit = option.check == LSCheck::LimitNotZero;
                const Value expected = option.number == 5 ? Value(!was.toBool())
                                       : isLimit          ? Value(std::fabs(was.toDouble()))
                                                          : was;
                EXPECT_EQ(options->read(option.name()), expected)
                    << option.name() << locale.decimalPoint << number;
            }
        }
    setNumberLocale({});
}

TEST_F(LSDialog, RefusesWhatTheOptionDoesNotAllow) {
    const struct {
        int option;
        const char* typed;
        const char* shown;
        const char* message;
    } cases[] = {
        {16, "0", "0", "Cannot be zero!"},
        {11, "1e400", "1e400", "The option AngleCentr cannot hold the number '1e400'"},
        {16, "1 2.5x", "12.5", ""},
        {17, "", "0", ""},
        {25, "none", "0", "Cannot be zero!"},
        {8, "-0.002", "0.002", ""},
        {8, "  ", "  ", "Cannot be zero!"},
        {13, "0", "0", ""}, // the constant part is not
        {12, "0", "0", "Constant and PPM cannot be both zero!"},
    };
    show(1, [&](frmLS_Options& form) {
        for (const auto& each : cases) {
            type(form, each.option, each.typed);
            EXPECT_EQ(form.boxOf(each.option).text.get(), each.shown) << each.typed;
            const bool refused = *each.message;
            EXPECT_EQ(messages(), refused ? Texts{each.message} : Texts{}) << each.option;
            EXPECT_EQ(
                form.boxOf(each.option).backColor.get(), refused ? BackColor::Refused : BackColor::Info);
            EXPECT_EQ(form.activeControl() == &form.boxOf(each.option), refused);
            if (refused)
                form.boxOf(each.option).text = "5";
            form.cmdOK.setFocus();
        }
    });
}

TEST_F(LSDialog, ComplainsOfTheBoxThatIsLeftAndNotOfTheNext) {
    show(1, [&](frmLS_Options& form) {
        form.boxOf(18).text = "0";
        form.boxOf(16).setFocus();
        form.boxOf(16).userEdit("0");
        form.boxOf(18).setFocus();
        EXPECT_EQ(messages(), Texts{"Cannot be zero!"});
        EXPECT_EQ(form.activeControl(), &form.boxOf(16));
    });
}

TEST_F(LSDialog, LocksWhatUnitWeightsMakeIdleAndGreysWhatTheModeHasNot) {
    for (const std::int16_t mode : {std::int16_t{1}, std::int16_t{3}}) {
        table->rows.clear();
        show(mode, [&](frmLS_Options& form) {
            const bool plane = mode == 3;
            EXPECT_EQ(form.cmdDefaults.visible.get(), plane);
            EXPECT_EQ(form.boxOf(24).enabled.get(), !plane);
            EXPECT_FALSE(form.boxOf(37).enabled);
            const auto label = std::ranges::find(form.labels, "lblVectors", &Label::name);
            EXPECT_EQ(label->enabled.get(), !plane);
            form.checkOf(3).userToggle();
            EXPECT_TRUE(form.boxOf(16).locked && !form.boxOf(25).locked && !form.boxOf(37).locked);
            EXPECT_EQ(form.boxOf(24).locked.get(), !plane);
            form.checkOf(3).userToggle();
            EXPECT_FALSE(form.boxOf(16).locked);
            EXPECT_EQ(form.boxOf(16).backColor.get(), BackColor::Info);
            form.checkOf(26).userToggle();
            form.checkOf(7).userToggle();
            EXPECT_FALSE(form.checkOf(26).enabled || form.checkOf(26).ticked);
            form.checkOf(7).userToggle();
            EXPECT_TRUE(form.checkOf(26).enabled && !form.checkOf(26).ticked);
        });
    }
}

TEST_F(LSDialog, LoadsAndSavesTheRecordOfItsMode) {
    const auto change = [&](frmLS_Options& form) {
        type(form, 16, "7.5");
        form.cmdOK.userPress();
    };
    // Mode, data mode, records before: which record is loaded and written; -1: one is added.
    const struct {
        std::int16_t mode, dataMode;
        std::vector<Value> fileTypes;
        int written;
    } cases[] = {
        {2, 4, {0, Value(), 1, 1}, 2},
        {2, 2, {0, 1}, -1},
        {3, 0, {5, 6}, 0},
        {3, 0, {}, -1},
        {4, 0, {5}, 0},
    };
    for (const auto& each : cases) {
        table->rows.clear();
        for (const Value& fileType : each.fileTypes) {
            auto& row = table->addRow();
            row["FileType"] = fileType;
            row["AzimuthSD"] = double(table->rows.size());
            row["OutlierTest"] = std::int16_t{3};
        }
        options->write("AzimuthSD", 55.0);
        defaults->write("AzimuthSD", 66.0);
        saved = false;
        show(
            each.mode,
            [&](frmLS_Options& form) {
                const double shown = each.written >= 0 ? each.written + 1.0 : each.mode == 2 ? 66.0 : 55.0;
                EXPECT_EQ(lsValueOf(form.boxOf(16).text.get()), shown) << each.mode;
                EXPECT_FALSE(form.isChanged());
                change(form);
            },
            each.dataMode);
        EXPECT_TRUE(saved);
        ASSERT_EQ(table->rows.size(), each.fileTypes.size() + (each.written < 0 ? 1 : 0));
        auto& row = each.written < 0 ? table->rows.back() : table->rows[std::size_t(each.written)];
        EXPECT_EQ(row["AzimuthSD"], Value("7.5"));
        EXPECT_EQ(row["OutlierTest"], Value(std::int32_t(each.written < 0 ? 2 : 3)));
        EXPECT_EQ(row["FileType"], each.written >= 0 ? each.fileTypes[std::size_t(each.written)]
                                   : each.mode == 2  ? Value(std::int32_t{3})
                                                     : Value());
        EXPECT_EQ(options->read("AzimuthSD"), Value(each.mode == 4 ? 7.5 : 55.0)) << each.mode;
    }
    saved = false;
    show(2, [&](frmLS_Options& form) {
        EXPECT_EQ(form.boxOf(16).text.get(), " 10.0");
        change(form);
    });
    EXPECT_FALSE(saved) << "no page is selected";
}

TEST_F(LSDialog, SaysWhatIsStoredOtherwiseThanItIsShownAndWhatWasUnderstood) {
    auto& row = table->addRow();
    row["Iterations"] = std::int16_t{7};
    row["ProvPtTolH"] = -0.5; // a limit is shown without its sign
    row["AzimuthSD"] = 10.0;
    defaults->write("ProvPtTolH", 0.5);
    show(3, [&](frmLS_Options& form) {
        const auto says = [&](Control& control) { return control.toolTip.get(); };
        const std::string list = " Stored is 7, which OK replaces by 1 when anything has been changed.";
        EXPECT_THAT(says(form.listOf(15)), HasSubstr(list));
        EXPECT_THAT(says(form.boxOf(1)), HasSubstr(" Stored is -0.5, which OK replaces by 0.5 "));
        EXPECT_TRUE(form.listOf(15).marked && form.boxOf(1).marked);
        EXPECT_THAT(says(form.boxOf(16)), Not(HasSubstr("Stored")));
        form.boxOf(1).setFocus();
        form.boxOf(16).setFocus();
        EXPECT_THAT(says(form.boxOf(1)), HasSubstr("Stored")) << "left as it was";
        type(form, 1, "0.7");
        form.listOf(15).userSelect(2);
        EXPECT_THAT(says(form.boxOf(1)) + says(form.listOf(15)), Not(HasSubstr("Stored")));
        for (const auto& [typed, read] : {std::pair("7 mm", "'7 mm' was read as 7 seconds"),
                 {"1,234.5", "'1,234.5' was read as 1 seconds"}, {"8", ""}, {" +8.5 ", ""}}) {
            type(form, 16, typed);
            EXPECT_EQ(form.lblUnderstood.caption.get(), read);
        }
    });
}

TEST_F(LSDialog, StaysOpenWhenSavingFailsAndSavesAtTheNextAttempt) {
    table->addRow();
    show(4, [&](frmLS_Options& form) {
        type(form, 16, "7.5");
        table->updateFails = true;
        form.cmdOK.userPress();
        EXPECT_TRUE(form.isLoaded());
        EXPECT_TRUE(std::ranges::any_of(host.log, [](const std::string& entry) {
            return entry.starts_with("ReportEventError (Form) LS_Options::Sub cmdOK_Click: ");
        }));
        table->updateFails = false;
        form.cmdOK.userPress();
        EXPECT_FALSE(form.isLoaded());
    });
    EXPECT_EQ(table->rows[0]["AzimuthSD"], Value("7.5"));
}

TEST_F(LSDialog, FallsBackOnWhatItHasWhereTheRecordSaysNothing) {
    auto& row = table->addRow();
    for (auto& [name, value] : row)
        value = Null();
    row["ConfLevelOutliers"] = std::int32_t{995};
    row["Iterations"] = std::int16_t{7};
    row["ConfLevelChiSquared"] = "900";
    options->write("Corrections", Value("2"));
    options->write("AzimuthSD", 12.5);
    show(4, [&](frmLS_Options& form) {
        EXPECT_EQ(form.boxOf(16).text.get(), "12.5");
        EXPECT_EQ(form.boxOf(16).toolTip.get(),
            "Standard deviation of an azimuth or bearing. Unit: seconds. Default: 0.005.");
        EXPECT_TRUE(form.boxOf(16).marked && !form.boxOf(17).marked);
        EXPECT_EQ(form.listOf(28).selectedItem()->text, "Residual");
        EXPECT_EQ(form.listOf(32).selectedItem()->text, "1-Sigma (Std)");
        EXPECT_EQ(form.listOf(15).listIndex.get(), 0);
        EXPECT_EQ(form.listOf(29).selectedItem()->code, 900);
        defaults->write("AzimuthSD", 12.5);
        form.boxOf(17).text = "";
        form.cmdDefaults.userPress();
        EXPECT_EQ(form.boxOf(17).text.get(), "0.005");
        EXPECT_TRUE(form.isChanged());
    });
    EXPECT_EQ(messages(), Texts{"Cancelling will abandon changes - Are you sure ?"});
    EXPECT_FALSE(saved);
    defaults.reset();
    table->rows.clear();
    EXPECT_EQ(fake::errorOf([&] {
        show(
            2, [](auto&) { FAIL(); }, 1);
    }),
        errors::ObjectNotSet);
    table.reset();
    EXPECT_EQ(fake::errorOf([&] { show(3, [](auto&) { FAIL(); }); }), errors::ObjectNotSet);
}

TEST_F(LSDialog, ClosingLeavesTheBoxFirstAndTheEndOfTheApplicationWaitsForAYes) {
    const Texts question{"Cancelling will abandon changes - Are you sure ?"};
    for (const UnloadReason reason : {UnloadReason::CloseBox, UnloadReason::Ending})
        for (const Answer answer : {Answer::Yes, Answer::No})
            show(1, [&](frmLS_Options& form) {
                form.boxOf(16).setFocus();
                form.boxOf(16).userEdit("9");
                desktop.answers = {answer};
                EXPECT_EQ(form.userClose(reason), reason == UnloadReason::CloseBox || answer == Answer::Yes);
                EXPECT_EQ(messages(), question);
                EXPECT_EQ(form.isLoaded() ? form.activeControl() : &form.boxOf(16), &form.boxOf(16));
                form.unload();
            });
    EXPECT_FALSE(saved);
}

TEST_F(LSDialog, FailsBeforeItIsShownOnWhatItCannotUse) {
    const auto failure = [&](std::int16_t mode) {
        return fake::errorOf([&] {
            show(
                mode, [](auto&) { FAIL(); }, 4);
        });
    };
    table->addRow().erase("VectorsCentV");
    EXPECT_EQ(failure(4), errors::ItemNotFound);
    table->rows.clear();
    table->addRow()["UnitWts"] = "perhaps";
    EXPECT_EQ(failure(3), errors::TypeMismatch);
    table->rows.clear();
    table->addRow().erase("FileType");
    EXPECT_EQ(failure(2), errors::ItemNotFound);
    options = std::make_shared<fake::FakeRecord>();
    EXPECT_EQ(failure(1), errors::NoSuchMember);

    // Neither of them loads anything or saves it.
    for (const std::int16_t mode : {std::int16_t{0}, std::int16_t{5}})
        show(mode, [&](frmLS_Options& form) {
            EXPECT_EQ(form.boxOf(16).text.get() + form.boxOf(37).text.get(), " 10.0(Hidden)");
            form.checkOf(5).userToggle();
            form.cmdOK.userPress();
            EXPECT_FALSE(form.isLoaded());
        });
    EXPECT_FALSE(saved);
}

TEST_F(LSDialog, HandsTheLabelsOfItsListsToInstantHelpInTheirOrder) {
    show(1, [&](frmLS_Options&) {
        std::string attached;
        for (const std::string& call : host.log)
            if (call.starts_with("AttachComboLabel "))
                attached +=
                    call.substr(call.rfind(" cbo") + 4) + (call.find("lblDummyCbo") != call.npos ? " " : "?");
        EXPECT_EQ(attached, "ChiSquared Corrections Ellipses Iterations MDE Outliers OutlierTest ");
    });
}

TEST_F(LSDialog, LeavesTheHostsChoiceWhenNothingIsSaved) {
    desktop.answers = {Answer::No, Answer::Yes};
    const RecordPtr before = options;
    show(1, [&](frmLS_Options& form) {
        form.listOf(29).userSelect(4);
        form.cmdCancel.userPress();
        EXPECT_TRUE(form.isLoaded()) << "answered No";
        EXPECT_EQ(desktop.messages.back().defaultAnswer, Answer::No);
        EXPECT_EQ(desktop.messages.back().icon, Icon::Question);
        form.cmdCancel.userPress();
        EXPECT_FALSE(form.isLoaded());
    });
    EXPECT_TRUE(!saved && options == before);
    saved = true;
    show(1, [&](frmLS_Options& form) { form.cmdCancel.userPress(); });
    EXPECT_TRUE(saved && options != before);
}

struct PointSave : LSDialog {
    cLS_SaveOptsLoader saveLoader{component};
    void showSave(std::int16_t mode, const std::function<void(frmLS_SaveOptions&)>& act) {
        desktop.acts = {[&](Form& form) { act(dynamic_cast<frmLS_SaveOptions&>(form)); }};
        saveLoader.LoadLSSaveOptsForm(mode, saved, options, prog, table, defaults);
    }
};

TEST_F(PointSave, KeepsItsChoicesConsistent) {
    showSave(1, [&](frmLS_SaveOptions& form) {
        const auto state = [&] {
            std::string text;
            for (const CheckBox* box :
                {&form.chkDBPoints, &form.chkDBPtsFixed, &form.chkPtEntry, &form.chkPtEntryFixed})
                text += box->ticked ? 'x' : box->enabled ? 'o' : '-';
            return text + (form.optPointEntry[0].enabled ? " on" : " off");
        };
        EXPECT_EQ(state(), "o-o- off");
        form.chkDBPoints.userToggle();
        form.chkDBPtsFixed.userToggle();
        EXPECT_EQ(state(), "xxo- off");
        form.chkDBPoints.userToggle();
        EXPECT_EQ(state(), "o-o- off");
        form.chkPtEntry.userToggle();
        form.optPointEntry[1].userSelect();
        form.chkPtEntryFixed.userToggle();
        EXPECT_EQ(state(), "o-xx on");
        form.optPointEntry[0].userSelect();
        EXPECT_EQ(state(), "o-x- on");
        form.cmdOK.userPress();
    });
    EXPECT_TRUE(saved && options->read("SavePtEntry").toBool());
    EXPECT_EQ(options->read("SavePtEntryOpt"), Value(std::int16_t{0}));
}

TEST_F(PointSave, WritesTheRecordAndTheOptionSet) {
    defaults->write("SaveDBPoints", true);
    defaults->write("SavePtEntryOpt", std::int16_t{-1});
    table->rows.clear();
    showSave(4, [&](frmLS_SaveOptions& form) {
        EXPECT_TRUE(form.chkDBPoints.ticked);
        form.cmdOK.userPress();
    });
    ASSERT_EQ(table->rows.size(), 1u) << "stored although nothing was changed";
    EXPECT_EQ(table->rows[0]["SavePtEntryOpt"], Value(std::int16_t{-1}));
    EXPECT_TRUE(saved && options->read("SaveDBPoints").toBool());

    table->rows[0]["SaveDBPtsFixed"] = Null();
    options->write("SaveDBPtsFixed", true);
    saved = false;
    showSave(4, [&](frmLS_SaveOptions& form) {
        EXPECT_TRUE(form.chkDBPtsFixed.ticked);
        form.chkDBPoints.userToggle();
        form.cmdCancel.userPress();
    });
    EXPECT_TRUE(!saved && table->rows[0]["SaveDBPoints"].toBool());
}

} // namespace
