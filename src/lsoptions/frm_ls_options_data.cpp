#include "lsoptions/frm_ls_options.h"

#include "lsoptions/ls_numbers.h"
#include "text/blanks.h"

// Between the controls and what stores the options.
namespace genutil {
namespace {

// The pages of DataMode 1, 2, 3 and 4.
constexpr std::array pages{0, 3, 2, 1};
constexpr std::string_view fileType = "FileType";

} // namespace

Value frmLS_Options::memberOf(const Record& optionSet, const LSOption& option) const {
    return std::visit([&](const auto& property) { return Value(optionSet.get(property)); }, option.member);
}

// Shows a value in the option's control; a Null one is replaced by the fallback.
void frmLS_Options::fillFrom(const LSOption& option, const Value& value, const Value& fallback) {
    GeneralProcedures& genProcs = component().genProcs();
    switch (option.kind) {
    case LSControl::Box: {
        const Value shown = genProcs.FieldOrDefault(value, fallback);
        boxOf(option.number).text = shown.toTextOrEmpty();
        leaveBox(option);
        break;
    }
    case LSControl::Check:
        checkOf(option.number).ticked = genProcs.FieldOrDefault(value, fallback).toBool();
        break;
    case LSControl::TextList:
    case LSControl::CodeList: {
        ComboBox& list = listOf(option.number);
        list.listIndex = SetComboIndex(value, fallback, list, option.kind == LSControl::CodeList);
        break;
    }
    case LSControl::PointSave:
        return;
    }
    noteStored(option, value);
}

void frmLS_Options::GetLSOptionsData(Recordset& record) {
    run("GetLSOptionsData", [&] {
        for (const int number : lsLoadOrder()) {
            const LSOption& option = lsOption(number);
            try {
                fillFrom(
                    option, record.field(option.name()), memberOf(required(LSOptPref, "LSOptPref"), option));
            } catch (const Error& error) {
                throw Error(
                    error.number(), "The option " + std::string(option.name()) + ": " + error.description());
            }
        }
    });
}

void frmLS_Options::GetDefaultData(const RecordPtr& optionSet) {
    run("GetDefaultData", [&] {
        for (const int number : lsDefaultLoadOrder()) {
            const LSOption& option = lsOption(number);
            const Value value = memberOf(required(optionSet, "the option set"), option);
            fillFrom(option, value, value);
        }
    });
}

void frmLS_Options::SaveLSOptionsData(Recordset& record) {
    run("SaveLSOptionsData", [&] {
        for (const int number : lsSaveOrder()) {
            const LSOption& option = lsOption(number);
            Value value;
            if (option.kind == LSControl::Box) {
                const std::string& text = boxOf(number).text;
                value = text::isBlank(text) ? Value() : Value(text);
            } else if (option.kind == LSControl::Check) {
                value = checkOf(number).ticked.get();
            } else if (const auto item = listOf(number).selectedItem()) {
                value = option.kind == LSControl::TextList ? Value(item->text) : Value(item->code);
            }
            record.setField(option.name(), value);
        }
    });
}

void frmLS_Options::SaveDefaultData() {
    run("SaveDefaultData", [&] {
        for (const int number : lsDefaultSaveOrder()) {
            const LSOption& option = lsOption(number);
            Value value;
            if (option.kind == LSControl::Box)
                value = lsNumberIn(option, boxOf(number).text);
            else if (option.kind == LSControl::Check)
                value = checkOf(number).ticked.get();
            else if (const auto item = listOf(number).selectedItem())
                value = option.kind == LSControl::TextList ? Value(item->text) : Value(item->code);
            // Each member keeps its own type.
            std::visit(
                [&]<class T>(const Property<T>& property) {
                    required(LSOptPref, "LSOptPref").put(property, lsMemberValue<T>(option, value));
                },
                option.member);
        }
        NewRecordSaved = true;
    });
}

// ---- records of a table

Recordset& frmLS_Options::table() const {
    return required(table_, "dataHeaderTable");
}

std::int32_t frmLS_Options::page() const {
    return DataMode >= 1 && std::size_t(DataMode) <= pages.size() ? pages[std::size_t(DataMode) - 1] : -1;
}

bool frmLS_Options::findPage(std::int32_t wanted) {
    if (table().RecordCount() > 0)
        table().MoveFirst();
    for (; !table().EOF_(); table().MoveNext())
        if (const Value found = table().field(fileType); !found.isNull() && found.toDouble() == wanted)
            return true;
    return false;
}

void frmLS_Options::GetDataPage(std::int32_t wanted) {
    run("GetDataPage", [&] {
        if (findPage(wanted))
            GetLSOptionsData(table());
        else
            GetDefaultData(LSOptPrefDefaults);
        dataChanged_ = false;
    });
}

void frmLS_Options::GetTravHeaderData() {
    run("GetTravHeaderData", [&] {
        if (table().RecordCount() != 0) {
            table().MoveFirst();
            GetLSOptionsData(table());
        } else {
            GetDefaultData(LSOptPref);
        }
        dataChanged_ = false;
    });
}

void frmLS_Options::SaveDataPage(std::int32_t wanted) {
    run("SaveDataPage", [&] {
        component().genProcs().BeforeSave(*this);
        if (findPage(wanted)) {
            table().Edit();
        } else {
            table().AddNew();
            table().setField(fileType, wanted);
        }
        NewRecordSaved = true;
        SaveLSOptionsData(table());
        table().Update();
    });
}

void frmLS_Options::SaveHeaderData() {
    run("SaveHeaderData", [&] {
        component().genProcs().BeforeSave(*this);
        if (table().RecordCount() < 1) {
            table().AddNew();
        } else {
            table().MoveFirst();
            table().Edit();
        }
        NewRecordSaved = true;
        SaveLSOptionsData(table());
        table().Update();
    });
}

} // namespace genutil
