#include "component/variant.h"
#include "component_scripted_object.h"
#include "hostif/error.h"
#include "support/error_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

using namespace genutil;
using k_genutil::Variant;

namespace {

using fake::errorOf;

// A variant that refers to the value in another one, as hosts pass arguments by reference.
Variant referenceTo(VARIANT& holder) {
    Variant reference;
    reference.vt = VARTYPE(VT_BYREF | holder.vt);
    reference.byref = &holder.llVal; // all values of a variant stand in the same place
    return reference;
}

TEST(VariantConversion, HandsEveryTypeOnByValueAndByReferenceAndWritesItBack) {
    struct Case {
        VARTYPE type;
        Value value;
        Value assigned; // what the holder holds after 7.5 has been written through a reference
    };
    const Case cases[] = {
        {VT_UI1, std::uint8_t{200}, std::uint8_t{8}},
        {VT_I2, std::int16_t{-5}, std::int16_t{8}},
        {VT_I4, std::int32_t{-70000}, std::int32_t{8}},
        {VT_R4, 0.25f, 7.5f},
        {VT_R8, 1e-300, 7.5},
        {VT_DATE, 45000.5, 7.5},
        {VT_BOOL, true, true},
        {VT_BSTR, "M\xC3\xBCller \xF0\x9F\x98\x80", "7.5"},
    };
    for (const Case& c : cases) {
        Variant holder = toVariant(c.value, c.type);
        ASSERT_EQ(holder.vt, c.type);
        EXPECT_EQ(toValue(holder), c.value) << c.type;
        const Variant reference = referenceTo(holder);
        EXPECT_EQ(toValue(reference), c.value) << c.type;
        Variant outer;
        outer.vt = VT_BYREF | VT_VARIANT;
        outer.pvarVal = const_cast<Variant*>(&reference);
        EXPECT_EQ(toValue(outer), c.value) << c.type;

        assignThrough(reference, Variant(7.5));
        EXPECT_EQ(toValue(holder), c.assigned) << c.type;
        if (c.type != VT_BSTR) {
            EXPECT_EQ(errorOf([&] { assignThrough(outer, Variant("seven")); }), errors::TypeMismatch)
                << c.type;
        }
        EXPECT_EQ(toValue(holder), c.assigned) << "a failed assignment changes nothing";
    }
}

TEST(VariantConversion, TakesTheValuesOwnTypeWhereNothingStandsYet) {
    for (const VARTYPE type : {VT_EMPTY, VT_NULL}) {
        Variant holder;
        holder.vt = type;
        Variant reference;
        reference.vt = VT_BYREF | VT_VARIANT;
        reference.pvarVal = &holder;
        assignThrough(reference, Variant("text"));
        EXPECT_EQ(toValue(holder), Value("text"));
    }
    EXPECT_EQ(toValue(Variant()), Value(""));
    EXPECT_EQ(toValue(converted(Variant(), VT_I4)), Value(std::int32_t{0}));
    EXPECT_TRUE(toValue(toVariant(Value(Null{}))).isNull());
}

TEST(VariantConversion, RefusesWhatIsNoValueAndRingsAndReferencesToNothing) {
    Variant ring;
    ring.vt = VT_BYREF | VT_VARIANT;
    ring.pvarVal = &ring;
    Variant nowhere;
    nowhere.vt = VT_BYREF | VT_I4;
    Variant array;
    array.vt = VT_ARRAY | VT_I4;
    const auto object = k_genutil::Ref<fake::ScriptedObject>::adopt(new fake::ScriptedObject);
    const Variant dispatch(static_cast<IDispatch*>(object.get()));
    for (const VARIANT* unfit : {static_cast<const VARIANT*>(&ring), static_cast<const VARIANT*>(&nowhere),
             static_cast<const VARIANT*>(&array), static_cast<const VARIANT*>(&dispatch)})
        EXPECT_EQ(errorOf([&] { toValue(*unfit); }), errors::TypeMismatch) << unfit->vt;
    EXPECT_EQ(errorOf([&] { converted(dispatch, VT_BSTR); }), errors::TypeMismatch);
    EXPECT_EQ(errorOf([&] { converted(Variant("x"), VT_DISPATCH); }), errors::TypeMismatch);
    EXPECT_EQ(converted(dispatch, VT_UNKNOWN).vt, VT_UNKNOWN);
    array.vt = VT_EMPTY; // nothing to release
}

} // namespace
