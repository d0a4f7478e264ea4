#include "host/late_bound.h"
#include "host/record_object.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace kestal;

namespace {

// An object with one member of each kind.
class Example : public AutomationObject {
public:
    Example() : AutomationObject("test.example") {
        method("Scale", [](std::int16_t factor, double value) { return factor * value; });
        method("Cut", [](std::string& text, bool& wasCut) {
            wasCut = text.size() > 3;
            text.resize(std::min<std::size_t>(text.size(), 3));
        });
        method("Fail", [] { throw AutomationError(53, "The file \u00E4.log is not there"); });
        method("FailWithin", [] { throw AutomationError(75, "No access", "Deeper"); });
        method("Break", [] { throw std::runtime_error("unforeseen"); });
        property("Fixed", [] { return Variant("constant"); });
    }
};

struct Outcome {
    HRESULT result;
    UINT argument = 99;
    EXCEPINFO exception{};
    Variant value;

    ~Outcome() {
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
    }
};

HRESULT identify(IDispatch& object, const char* name, DISPID& id) {
    k_genutil::Text text(name);
    LPOLESTR names[] = {text.get()};
    return object.GetIDsOfNames(GUID_NULL, names, 1, 0, &id);
}

void invoke(
    Outcome& outcome, IDispatch& object, const char* name, WORD flags, std::vector<Variant> lastFirst) {
    DISPID id = 0;
    ASSERT_EQ(identify(object, name, id), S_OK);
    DISPPARAMS params{lastFirst.data(), nullptr, static_cast<UINT>(lastFirst.size()), 0};
    std::vector<VARIANT> arguments(lastFirst.begin(), lastFirst.end());
    params.rgvarg = arguments.data();
    outcome.result = object.Invoke(
        id, GUID_NULL, 0, flags, &params, &outcome.value, &outcome.exception, &outcome.argument);
}

TEST(AutomationObject, RefusesWhatIsNotAMemberOrNotUsedAsOne) {
    const auto object = Ref<Example>::adopt(new Example);
    DISPID id = 0;
    EXPECT_EQ(identify(*object.get(), "Sacle", id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
    EXPECT_EQ(identify(*object.get(), "sCALE", id), S_OK) << "names are compared without case";
    DISPPARAMS none{};
    for (const DISPID wrong : {0, -1, 1000})
        EXPECT_EQ(object->Invoke(wrong, GUID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(object->Invoke(1, GUID_NULL, 0, DISPATCH_PROPERTYPUT, &none, nullptr, nullptr, nullptr),
        DISP_E_MEMBERNOTFOUND)
        << "a method cannot be put";
    EXPECT_EQ(object->Invoke(1, IID_IUnknown, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
        DISP_E_UNKNOWNINTERFACE);
}

TEST(AutomationObject, RefusesWrongArgumentsAndSaysWhich) {
    struct Case {
        std::vector<Variant> lastFirst;
        HRESULT result;
        UINT argument; // index in the array as passed, last argument first
    };
    const Case cases[] = {
        {{}, DISP_E_BADPARAMCOUNT, 99},
        {{Variant(1.0), Variant(1.0), Variant(1.0)}, DISP_E_BADPARAMCOUNT, 99},
        {{Variant(1.0), Variant("two")}, DISP_E_TYPEMISMATCH, 1},
        {{Variant("1,5"), Variant(std::int16_t{2})}, DISP_E_TYPEMISMATCH, 0},
        {{Variant(static_cast<IDispatch*>(nullptr)), Variant(std::int16_t{2})}, DISP_E_TYPEMISMATCH, 0},
        {{Variant(1.0), Variant(32767.5)}, DISP_E_OVERFLOW, 1},
        {{Variant(1.0), Variant(std::nan(""))}, DISP_E_OVERFLOW, 1},
        {{Variant("1.5"), Variant(2.5)}, S_OK, 99},
    };
    const auto object = Ref<Example>::adopt(new Example);
    for (const Case& each : cases) {
        Outcome outcome;
        invoke(outcome, *object.get(), "Scale", DISPATCH_METHOD, each.lastFirst);
        EXPECT_EQ(outcome.result, each.result) << each.lastFirst.size();
        EXPECT_EQ(outcome.argument, each.argument);
        if (each.result == S_OK) {
            EXPECT_EQ(outcome.value.dblVal, 3.0) << "halves go to the even neighbour";
        }
    }
    Variant ring;
    ring.vt = VT_BYREF | VT_VARIANT;
    ring.pvarVal = &ring;
    Outcome outcome;
    invoke(outcome, *object.get(), "Scale", DISPATCH_METHOD, {ring, Variant(std::int16_t{2})});
    EXPECT_EQ(outcome.result, DISP_E_TYPEMISMATCH) << "a variant that refers to itself has no value";
}

TEST(AutomationObject, HandsResultsBackThroughArgumentsByReferenceOnly) {
    const auto object = Ref<Example>::adopt(new Example);
    const LateBound caller(object.get());
    k_genutil::Text text("Tarnbeck");
    VARIANT_BOOL wasCut = VARIANT_FALSE;
    VARIANT flag;
    VariantInit(&flag);
    flag.vt = VT_BYREF | VT_BOOL;
    flag.pboolVal = &wasCut;
    caller.call("Cut", {byReference(text.inOut()), flag});
    EXPECT_EQ(text.utf8(), "Tar");
    EXPECT_EQ(wasCut, VARIANT_TRUE);

    Variant inner("Reservoir");
    VARIANT outer;
    VariantInit(&outer);
    outer.vt = VT_BYREF | VT_VARIANT;
    outer.pvarVal = &inner;
    const Variant copy("Reservoir");
    caller.call("Cut", {outer, flag});
    caller.call("Cut", {copy, flag});
    EXPECT_EQ(textOf(inner), "Res");
    EXPECT_EQ(textOf(copy), "Reservoir");
}

TEST(AutomationObject, AFailingMemberFillsTheExceptionInformation) {
    struct Case {
        const char* member;
        int number;
        const char* source;
        const char* description;
    };
    const Case cases[] = {
        {"Fail", 53, "test.example", "The file \u00E4.log is not there"},
        {"FailWithin", 75, "Deeper", "No access"},
        {"Break", 440, "test.example", "unforeseen"},
    };
    const auto object = Ref<Example>::adopt(new Example);
    for (const Case& each : cases) {
        Outcome outcome;
        invoke(outcome, *object.get(), each.member, DISPATCH_METHOD, {});
        EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
        EXPECT_EQ(outcome.exception.scode, resultCode(0x800A0000u + static_cast<unsigned>(each.number)));
        EXPECT_EQ(k_genutil::toUtf8(outcome.exception.bstrSource), each.source);
        EXPECT_EQ(k_genutil::toUtf8(outcome.exception.bstrDescription), each.description);
        try {
            LateBound(object.get()).call(each.member, {});
            ADD_FAILURE() << each.member;
        } catch (const AutomationError& error) {
            EXPECT_EQ(error.number(), each.number);
            EXPECT_EQ(error.source(), each.source);
        }
    }
}

TEST(RecordObject, TracksChangesAndClonesIndependently) {
    const auto prog = Ref<RecordObject>::adopt(new RecordObject(records::prog()));
    prog->set("FileViewState", Variant(std::int32_t{0}));
    EXPECT_FALSE(prog->isChanged()) << "the same value is no change";
    const LateBound copy(objectOf(LateBound(prog.get()).call("Clone", {})));
    copy.put("FileViewState", Variant("2"));
    EXPECT_TRUE(truthOf(copy.get("Changed")));
    EXPECT_FALSE(prog->isChanged());
    EXPECT_EQ(int16Of(prog->value("FileViewState")), 0);
    EXPECT_THROW(copy.put("FileViewState", Variant("maximised")), AutomationError);

    LateBound(prog.get()).call("CopyFrom", {Variant(copy.object())});
    EXPECT_EQ(int16Of(prog->value("fileviewstate")), 2);
    const auto job = Ref<RecordObject>::adopt(new RecordObject(records::job()));
    EXPECT_THROW(prog->copyFrom(job.get()), AutomationError) << "another class lacks the properties";
    EXPECT_EQ(prog->text("VersionText"), "8.2");
}

} // namespace
