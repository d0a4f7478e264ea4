#include "component/class_list.h"
#include "component/dispatch_client.h"
#include "component/dual_object.h"
#include "component/error_info.h"
#include "component_scripted_object.h"
#include "support/world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace genutil;
using genutil::fake::ScriptedObject;
using k_genutil::Ref;
using k_genutil::Text;
using k_genutil::Variant;

namespace {

// --- Late-bound calls.

// A file viewer that writes down what arrives and changes every argument that it may.
class RecordingViewer final : public DualObject<k_genutil::_cFileViewLoader> {
public:
    std::string seen;
    bool changes = true;

    HRESULT get_ClassActive(VARIANT_BOOL* value) override { return *value = VARIANT_TRUE, S_OK; }
    HRESULT put_ClassActive(VARIANT_BOOL value) override {
        return seen = value ? "put True" : "put False", S_OK;
    }
    HRESULT SetBlank() override { return E_FAIL; }
    HRESULT LoadFileViewForm(VARIANT_BOOL* instantHelp, VARIANT_BOOL* setModal, short* ViewMode,
        BSTR* FileToView, IDispatch** prog, BSTR* defEditor, VARIANT_BOOL* formCancelled,
        IDispatch** viewer) override {
        std::ostringstream text;
        text << *instantHelp << " " << *setModal << " " << *ViewMode << " " << k_genutil::toUtf8(*FileToView)
             << " " << (*prog ? "prog" : "Nothing") << " " << k_genutil::toUtf8(*defEditor)
             << (formCancelled ? " c" : "") << (viewer ? " v" : "");
        seen = text.str();
        if (!changes)
            return S_OK;
        *ViewMode = 400;
        SysFreeString(std::exchange(*FileToView, k_genutil::newBstr("77")));
        if (*prog)
            std::exchange(*prog, nullptr)->Release();
        if (formCancelled)
            *formCancelled = VARIANT_TRUE;
        return S_OK;
    }
};

struct LateCall : ::testing::Test {
    Ref<RecordingViewer> viewer = Ref<RecordingViewer>::adopt(new RecordingViewer);
    UINT argument = 99;
    std::vector<DISPID> named;

    // Arguments first one first; named ones last, in the order of `named`.
    HRESULT call(std::vector<Variant> arguments, DISPID id = 2, WORD flags = DISPATCH_METHOD) {
        std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
        std::vector<DISPID> ids(named.rbegin(), named.rend());
        DISPPARAMS params{reversed.data(), ids.data(), UINT(reversed.size()), UINT(ids.size())};
        Variant result;
        return viewer->Invoke(id, IID{}, 0, flags, &params, &result, nullptr, &argument);
    }
    static std::vector<Variant> plain() {
        return {Variant(true), Variant(false), Variant(3), Variant("a.log"),
            Variant(static_cast<IDispatch*>(nullptr)), Variant("vi")};
    }
    template<class T>
    static Variant byRef(T* value, int type) {
        Variant reference;
        reference.vt = VARTYPE(VT_BYREF | type);
        reference.byref = value;
        return reference;
    }
    static std::vector<Variant> plainBut(std::size_t position, Variant value) {
        auto arguments = plain();
        arguments[position] = std::move(value);
        return arguments;
    }
};

TEST_F(LateCall, ConvertsArgumentsAndRefusesUnfitOnesByTheirPlace) {
    auto unfit = Ref<ScriptedObject>::adopt(new ScriptedObject);
    const auto with = [](std::initializer_list<Variant> more) {
        auto arguments = plain();
        arguments.insert(arguments.end(), more);
        return arguments;
    };
    const struct {
        const char* what;
        std::vector<Variant> arguments;
        HRESULT result;
        UINT argument; // counted from the last one, 99: none
        const char* seen;
    } cases[] = {
        {"plain values", plain(), S_OK, 99, "-1 0 3 a.log Nothing vi"},
        {"text for a number", plainBut(2, Variant("12")), S_OK, 99, "-1 0 12 a.log Nothing vi"},
        {"halves to even", plainBut(2, Variant(2.5)), S_OK, 99, "-1 0 2 a.log Nothing vi"},
        {"number for text", plainBut(3, Variant(15)), S_OK, 99, "-1 0 3 15 Nothing vi"},
        {"number for Boolean", plainBut(0, Variant(7)), S_OK, 99, "-1 0 3 a.log Nothing vi"},
        {"Empty for a number", plainBut(2, Variant()), S_OK, 99, "-1 0 0 a.log Nothing vi"},
        {"an object", plainBut(4, Variant(unfit.get())), S_OK, 99, "-1 0 3 a.log prog vi"},
        {"optional ones left out by mark", with({Variant::missing(), Variant::missing()}), S_OK, 99,
            "-1 0 3 a.log Nothing vi"},
        {"first optional one given", with({Variant(false)}), S_OK, 99, "-1 0 3 a.log Nothing vi c"},
        {"text that is no number", plainBut(2, Variant("twelve")), DISP_E_TYPEMISMATCH, 3, ""},
        {"number beyond 16 bits", plainBut(2, Variant(40000)), DISP_E_OVERFLOW, 3, ""},
        {"object for text", plainBut(5, Variant(unfit.get())), DISP_E_TYPEMISMATCH, 0, ""},
        {"text for an object", plainBut(4, Variant("prog")), DISP_E_TYPEMISMATCH, 1, ""},
        {"null reference", plainBut(3, byRef<BSTR>(nullptr, VT_BSTR)), DISP_E_TYPEMISMATCH, 2, ""},
        {"required one left out by mark", plainBut(1, Variant::missing()), DISP_E_PARAMNOTOPTIONAL, 4, ""},
        {"too few", {Variant(true)}, DISP_E_PARAMNOTOPTIONAL, 99, ""},
        {"too many", with({Variant(1), Variant(2), Variant(3)}), DISP_E_BADPARAMCOUNT, 99, ""},
    };
    for (const auto& c : cases) {
        argument = 99;
        viewer->seen.clear();
        EXPECT_EQ(call(c.arguments), c.result) << c.what;
        EXPECT_EQ(argument, c.argument) << c.what;
        EXPECT_EQ(viewer->seen, c.seen) << c.what;
    }
    EXPECT_EQ(call({}, 9), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(call(plain(), 2, DISPATCH_PROPERTYGET), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(call({Variant(false)}, 1, DISPATCH_PROPERTYPUT), S_OK);
    EXPECT_EQ(viewer->seen, "put False");
}

TEST_F(LateCall, WritesResultsBackInTheCallersTypes) {
    Text text("a.log");
    short mode = 3;
    std::int32_t wideMode = 3;
    std::uint8_t byteMode = 3;
    VARIANT_BOOL cancelled = VARIANT_FALSE;
    IDispatch* prog = new ScriptedObject;
    Variant holder("a.log"), empty, numeric(5);
    auto all = plain();
    all[2] = byRef(&mode, VT_I2);
    all[3] = byRef(text.inOut(), VT_BSTR);
    all[4] = byRef(&prog, VT_DISPATCH);
    all.push_back(byRef(&cancelled, VT_BOOL));
    EXPECT_EQ(call(all), S_OK);
    EXPECT_EQ(viewer->seen, "-1 0 3 a.log prog vi c");
    EXPECT_EQ(mode, 400);
    EXPECT_EQ(text.utf8(), "77");
    EXPECT_EQ(prog, nullptr);
    EXPECT_EQ(ScriptedObject::alive, 0);
    EXPECT_EQ(cancelled, VARIANT_TRUE);

    EXPECT_EQ(call(plainBut(2, byRef(&wideMode, VT_I4))), S_OK);
    EXPECT_EQ(wideMode, 400);
    EXPECT_EQ(call(plainBut(2, byRef(&byteMode, VT_UI1))), DISP_E_OVERFLOW) << "400 does not fit a byte";
    EXPECT_EQ(call(plainBut(3, byRef(static_cast<VARIANT*>(&holder), VT_VARIANT))), S_OK);
    EXPECT_EQ(k_genutil::toUtf8(holder.bstrVal), "77");
    EXPECT_EQ(call(plainBut(3, byRef(static_cast<VARIANT*>(&numeric), VT_VARIANT))), S_OK);
    EXPECT_EQ(numeric.vt, VT_I4) << "a variant keeps its type";
    EXPECT_EQ(numeric.lVal, 77);
    EXPECT_EQ(call(plainBut(3, byRef(static_cast<VARIANT*>(&empty), VT_VARIANT))), S_OK);
    EXPECT_EQ(empty.vt, VT_BSTR);

    viewer->changes = false;
    double exact = 2.6;
    EXPECT_EQ(call(plainBut(2, byRef(&exact, VT_R8))), S_OK);
    EXPECT_EQ(exact, 2.6) << "an argument that the member leaves alone stays as it was";
}

TEST_F(LateCall, FindsNamesInAnyCaseAndTakesArgumentsByName) {
    Text member("LOADfileviewFORM"), editor("DEFEDITOR"), cancelled("formCancelled"), unknown("nothing");
    LPOLESTR names[] = {member.get(), editor.get(), cancelled.get()};
    DISPID ids[3] = {};
    EXPECT_EQ(viewer->GetIDsOfNames(IID{}, names, 3, 0, ids), S_OK);
    EXPECT_THAT(ids, ::testing::ElementsAre(2, 5, 6));
    names[1] = unknown.get();
    EXPECT_EQ(viewer->GetIDsOfNames(IID{}, names, 3, 0, ids), DISP_E_UNKNOWNNAME);
    EXPECT_THAT(ids, ::testing::ElementsAre(2, DISPID_UNKNOWN, 6));

    auto arguments = plain();
    arguments.push_back(Variant(true));
    std::swap(arguments[5], arguments[6]);
    named = {6, 5}; // formCancelled, defEditor
    EXPECT_EQ(call(arguments), S_OK);
    EXPECT_EQ(viewer->seen, "-1 0 3 a.log Nothing vi c");
    named = {5, 5};
    EXPECT_EQ(call(arguments), DISP_E_PARAMNOTFOUND);
    named = {6, 42};
    EXPECT_EQ(call(arguments), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(argument, 0u);
}

// --- Errors on their way out and in.

struct Raised {
    HRESULT result;
    std::string description, source;
};

Raised takeRaised(HRESULT result) {
    Ref<IErrorInfo> info;
    if (takeErrorInfo(0, info.inOut()) != S_OK)
        return {result, "", "none"};
    Text description, source;
    info->GetDescription(description.inOut());
    info->GetSource(source.inOut());
    return {result, description.utf8(), source.utf8()};
}

TEST(ErrorBoundary, TurnsEveryExceptionIntoAResultAndErrorInformation) {
    const struct {
        std::function<void()> body;
        unsigned result;
        const char* description;
        const char* source;
    } cases[] = {
        {[] { throw Error(53, "no such report", "(Form) X::Sub Y"); }, 0x800A0035, "no such report",
            "(Form) X::Sub Y"},
        {[] { throw Error(-2147220991, "of the host"); }, 0x80040201, "of the host", "k_genutil"},
        {[] { throw Error(70000, "too large a number"); }, 0x800A0033, "too large a number", "k_genutil"},
        {[] { throw std::bad_alloc(); }, 0x800A0007, "Out of memory", "k_genutil"},
        {[] { throw std::runtime_error("foreign"); }, 0x800A0033, "foreign", "k_genutil"},
        {[] { throw 42; }, 0x800A0033, "An exception of an unknown type", "k_genutil"},
    };
    for (const auto& c : cases) {
        const Raised raised = takeRaised(guarded(c.body));
        EXPECT_EQ(unsigned(raised.result), c.result) << c.description;
        EXPECT_EQ(raised.description, c.description);
        EXPECT_EQ(raised.source, c.source);
    }
    guarded([] { throw Error(5); });
    EXPECT_EQ(guarded([] { guarded([] { throw Error(6); }); }), S_OK);
    EXPECT_EQ(takeRaised(S_OK).source, "none") << "a call that succeeds leaves no error behind";
}

struct PublicObjects : ::testing::Test, fake::World {
    Ref<IDispatch> make(const k_genutil::ClassName& name) {
        const auto factory = makeClassFactory([&] { return findPublicClass(name.clsid)->create(component); });
        Ref<IDispatch> object;
        EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IDispatch, object.out()), CLASS_E_NOAGGREGATION);
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, object.out()), S_OK);
        return object;
    }
};

TEST_F(PublicObjects, ReportFailuresWithTheirQualifiedNameByEitherBinding) {
    using namespace k_genutil;
    const struct {
        ClassName name;
        std::span<const Member> table;
        int number;
        const char* source;
    } cases[] = {
        {classes::cProgress, tables::dispatchTable<_cProgress>, 91, "(Class Module) cProgress::Sub Gauge"},
        {classes::cFileViewLoader, tables::dispatchTable<_cFileViewLoader>, 91,
            "(Class Module) cFileViewLoader::Sub LoadFileViewForm"},
        {classes::cInternalBrowserLoader, tables::dispatchTable<_cInternalBrowserLoader>, 51,
            "(Class Module) cInternalBrowserLoader::Sub LoadForm"},
        {classes::cJobListLoader, tables::dispatchTable<_cJobListLoader>, 91,
            "(Class Module) cJobListLoader::Function LoadJobListForm"},
        {classes::cDefaultsLoader, tables::dispatchTable<_cDefaultsLoader>, 91,
            "(Class Module) cDefaultsLoader::Function LoadDefaultsForm"},
        {classes::cLS_OptsLoader, tables::dispatchTable<_cLS_OptsLoader>, 91,
            "(Class Module) cLS_OptsLoader::Sub LoadLSOptionsForm"},
        {classes::cDisplayLoader, tables::dispatchTable<_cDisplayLoader>, 91,
            "(Class Module) cDisplayLoader::LoadDisplaySettingsForm"},
        {classes::cLS_SaveOptsLoader, tables::dispatchTable<_cLS_SaveOptsLoader>, 91,
            "(Class Module) cLS_SaveOptsLoader::Sub LoadLSSaveOptsForm"},
    };
    desktop.showFails = true; // the browser needs nothing but a screen
    for (const auto& c : cases) {
        const DispatchClient client(make(c.name), c.name.progId);
        EXPECT_TRUE(client.valueOf(client.get("ClassActive"), "ClassActive").toBool()) << c.source;
        client.put("ClassActive", Variant(false));
        EXPECT_FALSE(client.valueOf(client.get("classactive"), "ClassActive").toBool()) << c.source;

        const Member& operation = c.table[2];
        std::vector<VARIANT> arguments(operation.count); // Nothing for objects, Empty for the rest
        for (std::size_t i = 0; i < operation.count; ++i)
            arguments[operation.count - 1 - i].vt =
                operation.parameters[i].type == VT_DISPATCH ? VT_DISPATCH : VT_EMPTY;
        DISPPARAMS params{arguments.data(), nullptr, UINT(arguments.size()), 0};
        EXCEPINFO exception{};
        EXPECT_EQ(client.object()->Invoke(
                      operation.id, IID{}, 0, DISPATCH_METHOD, &params, nullptr, &exception, nullptr),
            DISP_E_EXCEPTION)
            << c.source;
        EXPECT_EQ(exception.scode, resultOf(c.number)) << c.source;
        EXPECT_EQ(toUtf8(exception.bstrSource), c.source);
        EXPECT_EQ(toUtf8(exception.bstrDescription), standardDescription(c.number));
        EXPECT_TRUE(std::ranges::any_of(host.log, [&](const std::string& entry) {
            return entry.starts_with(std::string("ReportProcError ") + c.source);
        })) << c.source;
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
    }
    Ref<_JobListing> listing;
    ASSERT_EQ(make(classes::cJobListLoader)->QueryInterface(iidOf<_JobListing>, listing.out()), S_OK);
    Text format("xml"), column, written("as it was");
    const Raised refused =
        takeRaised(listing->Write(format.inOut(), column.inOut(), VARIANT_FALSE, written.inOut()));
    EXPECT_EQ(refused.source, "(Class Module) cJobListLoader::Function Write");
    EXPECT_EQ(written.utf8(), "as it was");
    Ref<_cProgress> progress;
    ASSERT_EQ(make(classes::cProgress)->QueryInterface(iidOf<_cProgress>, progress.out()), S_OK);
    Text count("1");
    const Raised raised = takeRaised(progress->Gauge(count.inOut(), 10));
    EXPECT_EQ(raised.result, resultOf(91));
    EXPECT_EQ(raised.source, "(Class Module) cProgress::Sub Gauge");
    EXPECT_EQ(progress->Gauge(nullptr, 10), E_POINTER);
    Ref<ISupportErrorInfo> support;
    ASSERT_EQ(progress->QueryInterface(IID_ISupportErrorInfo, support.out()), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(iidOf<_cProgress>), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IClassFactory), S_FALSE);
}

TEST_F(PublicObjects, HandTheViewersResultsToTheCallersReferences) {
    using namespace k_genutil;
    const auto program = [] {
        auto object = Ref<ScriptedObject>::adopt(new ScriptedObject);
        object->withValue("HelpSource", "help.txt").withValue("SettingsFile", "kestal.ini");
        object->withValue("FileViewState", std::int16_t{0}).withValue("WipeAfterView", false);
        object->withValue("Changed", true);
        return object;
    };
    auto copy = program();
    auto handedBack = program();
    {
        auto own = program();
        own->with("Clone", [&](const auto&) { return Variant(copy.get()); });
        copy->with("Clone", [&](const auto&) { return Variant(handedBack.get()); });
        Ref<_cFileViewLoader> loader;
        ASSERT_EQ(
            make(classes::cFileViewLoader)->QueryInterface(iidOf<_cFileViewLoader>, loader.out()), S_OK);
        VARIANT_BOOL help = VARIANT_FALSE, modal = VARIANT_FALSE, cancelled = VARIANT_TRUE;
        short mode = 24;
        Text file, editor("vi");
        auto prog = Ref<IDispatch>::share(own.get());
        auto viewer = Ref<IDispatch>::share(own.get());
        EXPECT_EQ(loader->LoadFileViewForm(
                      &help, &modal, &mode, file.inOut(), prog.inOut(), editor.inOut(), nullptr, nullptr),
            S_OK);
        EXPECT_EQ(prog.get(), handedBack.get()) << "the form's program object has changed";
        prog = Ref<IDispatch>::share(own.get());
        EXPECT_EQ(loader->LoadFileViewForm(&help, &modal, &mode, file.inOut(), prog.inOut(), editor.inOut(),
                      &cancelled, viewer.inOut()),
            S_OK);
        EXPECT_EQ(cancelled, VARIANT_FALSE);
        const DispatchClient text(viewer, "rtbTextViewer");
        EXPECT_EQ(text.valueOf(text.get("Name"), "Name").toText(), "rtbViewText");
        for (const auto& form : std::vector(desktop.openForms))
            form->unload();
        loader = nullptr;
        EXPECT_EQ(takeRaised(guarded([&] { text.get("Left"); })).result, resultOf(91)) << "its form has gone";
    }
    EXPECT_EQ(ScriptedObject::alive, 2) << "nothing else holds the host's objects";
}

} // namespace
