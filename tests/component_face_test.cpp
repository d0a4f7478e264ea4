#include "component/class_list.h"
#include "component/dispatch_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

using namespace genutil;

namespace {

// Three descriptions of one public face: the IDL text, the dispatch tables, the function tables.

std::string idlText() {
    std::ostringstream text;
    text << std::ifstream(K_GENUTIL_IDL).rdbuf();
    return std::regex_replace(text.str(), std::regex(R"(//[^\n]*|/\*.*?\*/)"), "");
}

// "id flags name(type name[?], …) -> result" for each member.
std::vector<std::string> membersOf(std::span<const Member> table) {
    static const std::map<VARTYPE, std::string> types{
        {VT_BSTR, "BSTR"}, {VT_I2, "short"}, {VT_BOOL, "VARIANT_BOOL"}, {VT_DISPATCH, "IDispatch*"}};
    std::vector<std::string> members;
    for (const Member& member : table) {
        std::string text =
            std::to_string(member.id) + (member.flags == DISPATCH_PROPERTYGET      ? " propget "
                                            : member.flags == DISPATCH_PROPERTYPUT ? " propput "
                                                                                   : " ");
        text += member.name;
        for (std::size_t i = 0; i < member.count; ++i) {
            const Parameter& p = member.parameters[i];
            text += ", " + types.at(p.type) + (p.byReference ? "* " : " ") + p.name + (p.optional ? "?" : "");
        }
        members.push_back(text + (member.result == VT_EMPTY ? "" : " -> " + types.at(member.result)));
    }
    return members;
}

std::vector<std::string> idlMembersOf(const std::string& idl, const std::string& interface) {
    std::smatch block;
    if (!std::regex_search(
            idl, block, std::regex("interface " + interface + R"( : IDispatch\s*\{([^}]*)\})")))
        return {};
    const std::string body = block[1];
    static const std::regex memberPattern(R"(\[id\((\d+)\)(, (\w+))?\] HRESULT (\w+)\(([^;]*)\);)");
    static const std::regex parameterPattern(R"(\[([^\]]*)\] (\S+) (\w+))");
    std::vector<std::string> members;
    for (std::sregex_iterator m(body.begin(), body.end(), memberPattern), end; m != end; ++m) {
        std::string text = (*m)[1].str() + " " + ((*m)[3].matched ? (*m)[3].str() + " " : "") + (*m)[4].str();
        std::string result;
        const std::string list = (*m)[5];
        for (std::sregex_iterator p(list.begin(), list.end(), parameterPattern); p != end; ++p) {
            const std::string flags = (*p)[1];
            if (flags.find("retval") != flags.npos)
                result = " -> " + (*p)[2].str().substr(0, (*p)[2].str().size() - 1);
            else
                text += ", " + (*p)[2].str() + " " + (*p)[3].str() +
                        (flags.find("optional") != flags.npos ? "?" : "");
        }
        members.push_back(text + result);
    }
    return members;
}

// On this platform's C++ binary interface a pointer to a virtual member is one more than its byte offset in
// the table.
template<auto Function>
std::size_t slotOf() {
    const auto function = Function;
    std::size_t word = 0;
    std::memcpy(&word, &function, sizeof word);
    return (word - 1) / sizeof(void*);
}

template<class Interface, auto... Functions>
void expectSameFace(const std::string& className) {
    const std::string idl = idlText();
    const auto& table = tables::dispatchTable<Interface>;
    EXPECT_THAT(idlMembersOf(idl, "_" + className), ::testing::ElementsAreArray(membersOf(table)))
        << className;

    const std::vector<std::size_t> slots{
        slotOf<&Interface::get_ClassActive>(), slotOf<&Interface::put_ClassActive>(), slotOf<Functions>()...};
    ASSERT_EQ(slots.size(), table.size()) << className;
    for (std::size_t i = 0; i < slots.size(); ++i)
        EXPECT_EQ(slots[i], 7 + i) << className << "." << table[i].name;

    const auto known = std::ranges::find(publicClasses, "k_genutil." + className,
        [](const PublicClass& c) { return std::string(c.name.progId); });
    ASSERT_NE(known, publicClasses.end());
    const auto carries = [&](const GUID& id, const std::string& what) {
        const std::string guid = k_genutil::guidText(id).substr(1, 36);
        return std::regex_search(idl, std::regex(guid + R"(\)[^\]{]*\]\s*)" + what + R"(\b)"));
    };
    EXPECT_TRUE(carries(k_genutil::iidOf<Interface>, "interface _" + className)) << className;
    EXPECT_TRUE(carries(known->name.clsid, "coclass " + className)) << className;
    EXPECT_TRUE(carries(k_genutil::typeLibraryId, "library k_genutil"));
}

TEST(PublicFace, IsTheSameInTheIdlTheDispatchTablesAndTheFunctionTables) {
    using namespace k_genutil;
    expectSameFace<_cInternalBrowserLoader, &_cInternalBrowserLoader::LoadForm>("cInternalBrowserLoader");
    expectSameFace<_cFileViewLoader, &_cFileViewLoader::LoadFileViewForm, &_cFileViewLoader::SetBlank>(
        "cFileViewLoader");
    expectSameFace<_cProgress, &_cProgress::Gauge, &_cProgress::GaugeRemove, &_cProgress::GaugeSetup>(
        "cProgress");
    expectSameFace<_cJobListLoader, &_cJobListLoader::LoadJobListForm, &_cJobListLoader::SetBlank>(
        "cJobListLoader");
    expectSameFace<_cDefaultsLoader, &_cDefaultsLoader::LoadDefaultsForm, &_cDefaultsLoader::SetBlank>(
        "cDefaultsLoader");
    expectSameFace<_cLS_OptsLoader, &_cLS_OptsLoader::LoadLSOptionsForm, &_cLS_OptsLoader::SetBlank>(
        "cLS_OptsLoader");
    expectSameFace<_cDisplayLoader, &_cDisplayLoader::LoadDisplaySettingsForm, &_cDisplayLoader::SetBlank>(
        "cDisplayLoader");
    expectSameFace<_cLS_SaveOptsLoader, &_cLS_SaveOptsLoader::LoadLSSaveOptsForm,
        &_cLS_SaveOptsLoader::SetBlank>("cLS_SaveOptsLoader");
}

} // namespace
