#include "host/services.h"

#include "host/job_schema.h"

namespace kestal {
namespace {

// A service that only names things: read-only texts and numbers.
class ConstantsObject : public AutomationObject {
public:
    ConstantsObject(const char* className, std::vector<std::pair<const char*, Variant>> constants)
        : AutomationObject(className) {
        for (auto& [name, value] : constants)
            property(name, [value = std::move(value)] { return value; });
    }
};

Ref<IDispatch> makeConstants(const char* className, std::vector<std::pair<const char*, Variant>> constants) {
    return Ref<IDispatch>::adopt(new ConstantsObject(className, std::move(constants)));
}

ServiceClass recordService(const k_genutil::ClassName& name, const RecordClass& record) {
    return {name, [&record](const HostPtr&) { return Ref<IDispatch>::adopt(new RecordObject(record)); }};
}

} // namespace

Ref<IDispatch> makeRegInfo(const HostPtr&) {
    return makeConstants("k_genproc.regInfo", {{"SettingsSection", Variant("Kestal")}});
}

Ref<IDispatch> makeSysInfo(const HostPtr&) {
    return makeConstants(
        "k_genproc.sysInfo", {{"ViewTitle", Variant("View Data File")}, {"CharSet", Variant(std::int16_t{0})},
                                 {"JobDetailsTable", Variant(job_tables::Details)},
                                 {"AlphaIdTable", Variant(job_tables::AlphaIds)},
                                 {"TraverseSetPrefix", Variant(job_tables::TraverseSetPrefix)},
                                 {"LSSetPrefix", Variant(job_tables::LSSetPrefix)}});
}

Ref<IDispatch> makeDispFormats(const HostPtr&) {
    return makeConstants("k_genproc.dispFormats",
        {{"ConstraintFactorFormat", Variant("#######0")}, {"ConvergenceFormat", Variant("0.000####")},
            {"DistanceFormat", Variant("0.000###")}, {"PPMFormat", Variant("0.0###")},
            {"SecondsFormat", Variant("0.0###")}, {"ToleranceFormat", Variant("0.000###")}});
}

Ref<IDispatch> makeInterpNames(const HostPtr&) {
    return makeConstants("k_genproc.interpNames",
        {{"MethodNameA", Variant(interpolation::A.name)}, {"MethodNameB", Variant(interpolation::B.name)},
            {"MethodNameC", Variant(interpolation::C.name)},
            {"LegacyCodeA", Variant(interpolation::A.legacyCode)},
            {"LegacyCodeB", Variant(interpolation::B.legacyCode)},
            {"LegacyCodeC", Variant(interpolation::C.legacyCode)}});
}

const std::vector<ServiceClass>& serviceClasses() {
    namespace names = k_genutil::host_classes;
    static const std::vector<ServiceClass> classes{
        {names::errHandler, makeErrHandler},
        {names::genProcs, makeGenProcs},
        {names::strUtil, makeStrUtil},
        {names::fileProcs, makeFileProcs},
        {names::regInfo, makeRegInfo},
        {names::sysInfo, makeSysInfo},
        {names::dispFormats, makeDispFormats},
        {names::interpNames, makeInterpNames},
        {names::settingsStore, makeSettingsStore},
        {names::instantHelp, makeInstantHelp},
        {names::job, [](const HostPtr&) { return Ref<IDispatch>::adopt(new JobObject); }},
        recordService(names::jobDetails, records::jobDetails()),
        recordService(names::jobCfg, records::jobCfg()),
        recordService(names::jobGeneral, records::jobGeneral()),
    };
    return classes;
}

} // namespace kestal
