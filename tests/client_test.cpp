// A host in small: it loads the component from the library named by K_GENUTIL_LIBRARY and knows only the
// public headers.

#include "component_scripted_object.h"

#include <k_genutil.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace fs = std::filesystem;
using namespace k_genutil;
using genutil::fake::ScriptedFactory;
using genutil::fake::ScriptedObject;

namespace {

struct Client : ::testing::Test {
    fs::path folder;
    std::unique_ptr<Server> server;
    Ref<ScriptedObject> errHandler = Ref<ScriptedObject>::adopt(new ScriptedObject);
    DWORD cookie = 0;

    void SetUp() override {
        const char* library = std::getenv("K_GENUTIL_LIBRARY");
        ASSERT_TRUE(library) << "K_GENUTIL_LIBRARY must name the component's library";
        std::string name = (fs::temp_directory_path() / "genutil-client-XXXXXX").string();
        folder = ::mkdtemp(name.data());
        ::setenv("K_GENUTIL_REGISTRY", (folder / "registry.ini").c_str(), 1);
        server = std::make_unique<Server>(Server::load(library));
        ASSERT_EQ(server->registerServer(), S_OK);

        errHandler->withValue("SkipNextReport", false);
        for (const char* report : {"ReportProcError", "ReportEventError"})
            errHandler->with(report, [](const auto&) { return Variant(); });
        const auto factory = Ref<ScriptedFactory>::adopt(new ScriptedFactory(errHandler.get()));
        ASSERT_EQ(
            server->registerClassObject(host_classes::errHandler.clsid, factory.get(), 1, 1, &cookie), S_OK);
    }
    void TearDown() override {
        if (server) {
            EXPECT_EQ(server->revokeClassObject(cookie), S_OK);
            EXPECT_EQ(server->unregisterServer(), S_OK);
        }
        fs::remove_all(folder);
    }

    // What GetErrorInfo gives: "source: description".
    std::string lastError() const {
        Ref<IErrorInfo> info;
        if (server->getErrorInfo(0, info.inOut()) != S_OK)
            return "none";
        Text source, description;
        info->GetSource(source.inOut());
        info->GetDescription(description.inOut());
        return source.utf8() + ": " + description.utf8();
    }

    static HRESULT invoke(
        IDispatch& object, const char* member, std::vector<Variant> arguments, EXCEPINFO& exception) {
        Text name(member);
        LPOLESTR units = name.get();
        DISPID id = 0;
        if (const HRESULT found = object.GetIDsOfNames(IID{}, &units, 1, 0, &id); FAILED(found))
            return found;
        std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
        DISPPARAMS params{reversed.data(), nullptr, UINT(reversed.size()), 0};
        return object.Invoke(id, IID{}, 0, DISPATCH_METHOD, &params, nullptr, &exception, nullptr);
    }
};

template<class Interface>
void expectFreshLoader(const ClassName& name) {
    const Ref<Interface> loader = createObject<Interface>(name.progId);
    VARIANT_BOOL active = VARIANT_FALSE;
    EXPECT_EQ(loader->get_ClassActive(&active), S_OK) << name.progId;
    EXPECT_EQ(active, VARIANT_TRUE) << name.progId;
    if constexpr (requires { loader->SetBlank(); }) {
        EXPECT_EQ(loader->SetBlank(), S_OK) << name.progId;
    }
    Ref<IUnknown> other;
    EXPECT_EQ(loader->QueryInterface(IID_IClassFactory, other.out()), E_NOINTERFACE) << name.progId;
}

TEST_F(Client, CreatesEveryClassByItsProgrammaticIdentifierAndLetsGoOfAll) {
    EXPECT_EQ(server->canUnloadNow(), S_OK);
    expectFreshLoader<_cInternalBrowserLoader>(classes::cInternalBrowserLoader);
    expectFreshLoader<_cFileViewLoader>(classes::cFileViewLoader);
    expectFreshLoader<_cProgress>(classes::cProgress);
    expectFreshLoader<_cJobListLoader>(classes::cJobListLoader);
    expectFreshLoader<_cDefaultsLoader>(classes::cDefaultsLoader);
    expectFreshLoader<_cLS_OptsLoader>(classes::cLS_OptsLoader);
    expectFreshLoader<_cDisplayLoader>(classes::cDisplayLoader);
    expectFreshLoader<_cLS_SaveOptsLoader>(classes::cLS_SaveOptsLoader);
    {
        const auto gauge = createObject<_cProgress>(classes::cProgress.progId);
        EXPECT_EQ(server->canUnloadNow(), S_FALSE) << "an object is alive";
        Ref<IClassFactory> factory;
        ASSERT_EQ(server->getClassObject(classes::cProgress.clsid, IID_IClassFactory, factory.out()), S_OK);
        factory->LockServer(1);
    }
    EXPECT_EQ(server->canUnloadNow(), S_FALSE) << "a factory is locked";
    Ref<IClassFactory> factory;
    ASSERT_EQ(server->getClassObject(classes::cProgress.clsid, IID_IClassFactory, factory.out()), S_OK);
    factory->LockServer(0);
    factory = nullptr;
    EXPECT_EQ(server->canUnloadNow(), S_OK);
    EXPECT_EQ(
        server->getClassObject(typeLibraryId, IID_IClassFactory, factory.out()), CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(Client, DrivesAGaugeByFunctionTableAndByName) {
    auto gauge = createObject<_cProgress>(classes::cProgress.progId);
    Text title("Ausgleichung \xC3\xBC"), label("Iteration "), count("12");
    EXPECT_EQ(gauge->GaugeRemove(), S_OK) << "without a gauge it does nothing";
    EXPECT_EQ(gauge->GaugeSetup(title.inOut(), label.inOut()), S_OK) << lastError();
    EXPECT_EQ(gauge->Gauge(count.inOut(), 40), S_OK) << lastError();
    EXPECT_EQ(count.utf8(), "12");
    EXPECT_EQ(gauge->GaugeRemove(), S_OK);

    EXCEPINFO exception{};
    EXPECT_EQ(invoke(*gauge.get(), "gaugesetup", {Variant("Title"), Variant("Points ")}, exception), S_OK);
    EXPECT_EQ(invoke(*gauge.get(), "GAUGE", {Variant(13), Variant("60")}, exception), S_OK);
    EXPECT_EQ(invoke(*gauge.get(), "Gauge", {Variant(13)}, exception), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(invoke(*gauge.get(), "GaugeHide", {}, exception), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(lastError(), "none");

    // A second set-up leaves the first window open, and an open window keeps the library.
    EXPECT_EQ(gauge->GaugeSetup(title.inOut(), label.inOut()), S_OK);
    gauge = nullptr;
    EXPECT_EQ(server->canUnloadNow(), S_FALSE);
}

TEST_F(Client, SeesAFailureWithItsSourceAndInItsOwnErrorObject) {
    const auto gauge = createObject<_cProgress>(classes::cProgress.progId);
    const std::string source = "(Class Module) cProgress::Sub Gauge";
    Text count("1");
    EXPECT_EQ(gauge->Gauge(count.inOut(), 1), resultCode(0x800A005B));
    EXPECT_EQ(lastError(), source + ": Object reference is not set");
    EXPECT_EQ(lastError(), "none") << "taking it clears it";
    EXPECT_EQ(gauge->Gauge(nullptr, 1), E_POINTER);

    EXCEPINFO exception{};
    EXPECT_EQ(invoke(*gauge.get(), "Gauge", {Variant("1"), Variant(1)}, exception), DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, resultCode(0x800A005B));
    EXPECT_EQ(toUtf8(exception.bstrSource), source);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
}

} // namespace
