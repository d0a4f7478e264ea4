#include "component/class_objects.h"
#include "component/form_object.h"
#include "component/host_database.h"
#include "component/host_object.h"
#include "component/host_services.h"
#include "component/object_factory.h"
#include "component_scripted_object.h"
#include "hostif/controls.h"
#include "hostif/error.h"
#include "support/world.h"

#include <k_genutil/interfaces.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

using namespace genutil;
using genutil::fake::ScriptedError;
using genutil::fake::ScriptedFactory;
using genutil::fake::ScriptedObject;
using k_genutil::Ref;
using k_genutil::Variant;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

Ref<ScriptedObject> scripted() {
    return Ref<ScriptedObject>::adopt(new ScriptedObject);
}

template<class Act>
Error errorOf(Act&& act) {
    try {
        act();
    } catch (const Error& error) {
        return error;
    }
    return Error(0, "no error");
}

TEST(HostRecord, ReadsWritesClonesAndHandsObjectsOn) {
    auto prog = scripted();
    auto copy = scripted();
    auto menu = scripted();
    Variant written;
    prog->withValue("ProgramFolder", "/opt/kestal/")
        .withValue("FileViewState", 2.0)
        .withValue("Nothing", (IDispatch*)nullptr);
    prog->with("WipeAfterView",
        [&](const auto& a) { return a.empty() ? Variant(true) : (VariantCopy(&written, a[0]), Variant()); });
    prog->with("Clone", [&](const auto&) { return Variant(static_cast<IDispatch*>(copy.get())); });
    prog->with("mnuView", [&](const auto&) { return Variant(static_cast<IDispatch*>(menu.get())); });
    IDispatch* received = nullptr;
    copy->with("CopyFrom", [&](const auto& a) { return received = a[0]->pdispVal, Variant(); });
    menu->withValue("Checked", true);

    const RecordPtr record = recordOf(prog.get(), "prog");
    EXPECT_EQ(record->read("ProgramFolder").toText(), "/opt/kestal/");
    EXPECT_EQ(record->read("FileViewState").toInt16(), 2);
    record->write("WipeAfterView", Value(false));
    EXPECT_EQ(written.vt, VT_BOOL);
    EXPECT_TRUE(record->child("mnuView")->read("Checked").toBool());
    EXPECT_EQ(record->child("Nothing"), nullptr);
    const RecordPtr clone = record->Clone();
    EXPECT_EQ(objectOf(clone.get()), copy.get());
    clone->CopyFrom(*record);
    EXPECT_EQ(received, prog.get());
    EXPECT_THAT(prog->log,
        ElementsAre("ProgramFolder", "FileViewState", "WipeAfterView=", "mnuView", "Nothing", "Clone"));
}

TEST(HostRecord, NamesTheMemberThatFails) {
    auto object = scripted();
    object->with("Clone", [](const auto&) { return Variant(static_cast<IDispatch*>(nullptr)); })
        .with("Broken",
            [](const auto&) -> Variant {
                throw ScriptedError{53, "no file", "job::Property Get Broken"};
            })
        .with("Odd", [](const auto&) -> Variant { throw resultCode(0x80010108); })
        .with("Refusing",
            [](const auto& a) -> Variant { return a.empty() ? Variant(1) : throw DISP_E_TYPEMISMATCH; })
        .with("Child", [&](const auto&) { return Variant(static_cast<IDispatch*>(object.get())); })
        .withValue("Text", "report");
    const RecordPtr record = recordOf(object.get(), "currentJob");
    const fake::FakeRecord stranger;
    const struct {
        const char* what;
        std::function<void()> act;
        int number;
        const char* text;
        const char* source;
    } cases[] = {
        {"lacks it", [&] { record->read("JobPath"); }, 438, "currentJob has no member 'JobPath'", ""},
        {"object for a value", [&] { record->read("Child"); }, 13, "'Child' of currentJob", ""},
        {"value for an object", [&] { record->child("Text"); }, 13, "'Text' of currentJob", ""},
        {"refuses the value", [&] { record->write("Refusing", Value("x")); }, 13, "'Refusing' of currentJob",
            ""},
        {"raises", [&] { record->read("Broken"); }, 53, "no file", "job::Property Get Broken"},
        {"fails otherwise", [&] { record->read("Odd"); }, 440, "'Odd' of currentJob", ""},
        {"Clone gives Nothing", [&] { record->Clone(); }, 91, "'Clone' of currentJob", ""},
        {"copies from a record that is not the host's", [&] { record->CopyFrom(stranger); }, 13, "", ""},
    };
    for (const auto& c : cases) {
        const Error error = errorOf(c.act);
        EXPECT_EQ(error.number(), c.number) << c.what;
        EXPECT_THAT(error.description(), HasSubstr(c.text)) << c.what;
        EXPECT_EQ(error.source(), c.source) << c.what;
    }
}

TEST(HostServices, PassTextsByReferenceAndNameAMisfit) {
    auto object = scripted();
    object->with("NextField", [](const auto& a) {
        SysFreeString(std::exchange(*a[0]->pbstrVal, k_genutil::newBstr("rest")));
        return Variant("first");
    });
    object->with("SplitExtension", [](const auto& a) {
        EXPECT_EQ(a[0]->pbstrVal, a[1]->pbstrVal) << "name and result are the same variable";
        SysFreeString(std::exchange(*a[0]->pbstrVal, k_genutil::newBstr("job")));
        return Variant(".gdb");
    });
    object->with("Swap", [](const auto& a) {
        std::swap(*a[0]->piVal, *a[1]->piVal);
        return Variant();
    });
    object->withValue("CharSet", "many").withValue("SkipNextReport", true);
    const auto client = [&] { return DispatchClient(Ref<IDispatch>::share(object.get()), "service"); };
    std::string text = "first,rest";
    EXPECT_EQ(adaptStringUtilities(client())->NextField(text, ","), "first");
    EXPECT_EQ(text, "rest");
    text = "job.gdb";
    EXPECT_EQ(adaptGeneralProcedures(client())->SplitExtension(text), ".gdb");
    EXPECT_EQ(text, "job");
    std::int16_t low = 9, high = 2;
    adaptStringUtilities(client())->Swap(low, high);
    EXPECT_EQ(low, 2);
    EXPECT_EQ(high, 9);
    const Error error = errorOf([&] { adaptSystemInfo(client())->CharSet(); });
    EXPECT_EQ(error.number(), errors::TypeMismatch);
    EXPECT_THAT(error.description(), HasSubstr("'CharSet' of service"));
    adaptErrorHandler(client())->setSkipNextReport(false);
    EXPECT_EQ(object->log.back(), "SkipNextReport=");
}

TEST(ObjectFactory, TakesRegisteredFactoriesAndNamesTheClassThatItCannotCreate) {
    ::setenv("K_GENUTIL_REGISTRY", "/nonexistent/registry.ini", 1);
    AutomationObjectFactory factory;
    auto service = scripted();
    service->withValue("SettingsSection", "Kestal");
    const auto working = Ref<ScriptedFactory>::adopt(new ScriptedFactory(service.get()));
    const auto failing = Ref<ScriptedFactory>::adopt(new ScriptedFactory(nullptr));
    const auto& regInfo = k_genutil::host_classes::regInfo;
    DWORD first = 0, second = 0;
    EXPECT_EQ(registerClassObject(regInfo.clsid, nullptr, 1, 1, &first), E_INVALIDARG);
    EXPECT_EQ(registerClassObject(regInfo.clsid, working.get(), 1, 1, &first), S_OK);
    EXPECT_EQ(registerClassObject(regInfo.clsid, working.get(), 1, 1, &second), resultCode(0x800401FC));
    EXPECT_EQ(factory.createRegistryInfo()->SettingsSection(), "Kestal");
    EXPECT_EQ(revokeClassObject(first), S_OK);
    EXPECT_EQ(revokeClassObject(first), E_INVALIDARG);

    const Error absent = errorOf([&] { factory.createRegistryInfo(); });
    EXPECT_EQ(absent.number(), errors::CannotCreateObject);
    EXPECT_THAT(absent.description(), HasSubstr("k_genproc.regInfo"));
    EXPECT_THAT(absent.description(), HasSubstr("/nonexistent/registry.ini"));
    EXPECT_EQ(registerClassObject(regInfo.clsid, failing.get(), 1, 1, &second), S_OK);
    EXPECT_EQ(errorOf([&] { factory.createRegistryInfo(); }).number(), errors::CannotCreateObject);
    EXPECT_EQ(revokeClassObject(second), S_OK);
    EXPECT_EQ(errorOf([&] { factory.createRecord("unknown"); }).number(), errors::CannotCreateObject);
}

struct ReportForm : Form {
    explicit ReportForm(Desktop& desktop) : Form(desktop, "frmReport", "Report") {}
    TextBox txtName{*this, "txtName", "HW17"};
    Button cmdClose{*this, "cmdClose", "&Close"};
};

TEST(FormObject, ShowsTheModelByNameAndEndsWithTheForm) {
    fake::ScriptedDesktop desktop;
    alignas(ReportForm) std::byte place[sizeof(ReportForm)];
    const auto make = [&] {
        return std::shared_ptr<ReportForm>(
            new (place) ReportForm(desktop), [](ReportForm* f) { f->~ReportForm(); });
    };
    auto form = make();
    form->txtName.tabIndex = 0;
    const DispatchClient object(automationObject(*form), "form");
    EXPECT_EQ(automationObject(*form).get(), object.object()) << "one form, one identity";
    const auto value = [](const DispatchClient& of, const char* name) {
        return of.valueOf(of.get(name), name);
    };
    EXPECT_EQ(value(object, "caption").toText(), "Report");
    object.put("Left", Variant(240));
    EXPECT_EQ(form->left, 240);

    const DispatchClient box(object.objectOf(object.get("txtname"), "txtName"), "txtName");
    EXPECT_EQ(box.objectOf(box.get("Parent"), "Parent").get(), object.object());
    box.put("Text", Variant("HW18"));
    EXPECT_EQ(form->txtName.text.get(), "HW18");
    EXPECT_EQ(object.objectOf(object.get("ActiveControl"), "ActiveControl").get(), nullptr);
    box.call("SetFocus", {});
    EXPECT_EQ(object.objectOf(object.get("ActiveControl"), "ActiveControl").get(), box.object());

    const DispatchClient all(object.objectOf(object.get("Controls"), "Controls"), "Controls");
    EXPECT_EQ(value(all, "Count").toInt32(), 2);
    EXPECT_EQ(all.objectOf(all.call("Item", {Variant(0)}), "Item").get(), box.object());
    EXPECT_EQ(all.objectOf(all.call("Item", {Variant("TXTNAME")}), "Item").get(), box.object());
    EXPECT_EQ(errorOf([&] { all.call("Item", {Variant(2)}); }).number(), errors::OutOfRange);
    EXPECT_EQ(errorOf([&] { box.get("Controls"); }).number(), errors::NoSuchMember);
    EXPECT_EQ(errorOf([&] { object.put("cmdClose", Variant(1)); }).number(), errors::InvalidCall);

    form.reset();
    for (const DispatchClient* gone : {&object, &box, &all})
        EXPECT_EQ(errorOf([&] { gone->get(gone == &all ? "Count" : "Left"); }).number(), errors::ObjectNotSet)
            << gone->name();
    form = make();
    EXPECT_NE(automationObject(*form).get(), object.object())
        << "a new form at the same place is another object";
}

TEST(HostDatabase, IsReachedThroughItsCollections) {
    using Arguments = ScriptedObject::Arguments;
    const auto object = [](const Ref<ScriptedObject>& from) {
        return Variant(static_cast<IDispatch*>(from.get()));
    };
    auto field = scripted();
    Variant stored(7.5);
    field->with("Value",
        [&](const Arguments& a) { return a.empty() ? stored : (VariantCopy(&stored, a[0]), Variant()); });
    auto fields = scripted();
    fields->with("Item", [&](const Arguments& a) -> Variant {
        if (toValue(*a[0]).toText() != "Zone")
            throw ScriptedError{errors::ItemNotFound, "no such field", "engine"};
        return object(field);
    });
    auto rows = scripted();
    rows->withValue("RecordCount", std::int32_t{70000}).withValue("BOF", false).withValue("EOF", true);
    rows->with("Fields", [&](const Arguments&) { return object(fields); });
    rows->with("Edit", [](const Arguments&) -> Variant {
        throw ScriptedError{errors::ReadOnlyDatabase, "read-only", "engine"};
    });
    auto table = scripted();
    table->withValue("Name", "AlphaIds").withValue("RecordCount", std::int32_t{12});
    auto tables = scripted();
    tables->withValue("Count", std::int16_t{1});
    tables->with("Item", [&](const Arguments&) { return object(table); });
    auto host = scripted();
    host->with("TableDefs", [&](const Arguments&) { return object(tables); });
    host->with("OpenRecordset", [&](const Arguments&) { return object(rows); });

    const auto database = databaseOf(host.get());
    EXPECT_EQ(database->tableCount(), 1);
    EXPECT_EQ(database->tableName(0) + std::to_string(database->tableRecordCount(0)), "AlphaIds12");
    const auto recordset = database->OpenRecordset("JobDetails");
    EXPECT_EQ(host->log.back(), "OpenRecordset|JobDetails");
    EXPECT_EQ(recordset->RecordCount(), 70000);
    EXPECT_TRUE(!recordset->BOF() && recordset->EOF_());
    recordset->setField("Zone", Value(std::int16_t{56}));
    EXPECT_EQ(recordset->field("Zone"), Value(std::int16_t{56}));
    EXPECT_EQ(errorOf([&] { recordset->field("Datum"); }).number(), errors::ItemNotFound);
    EXPECT_EQ(errorOf([&] { recordset->Edit(); }).description(), "read-only");
    EXPECT_FALSE(databaseOf(nullptr) || recordsetOf(nullptr, "none"));
}

} // namespace
