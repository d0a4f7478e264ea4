#include "component/host_services.h"

#include "component/form_object.h"
#include "component/host_object.h"
#include "hostif/error.h"
#include "hostif/form.h"

namespace genutil {
namespace {

using k_genutil::Variant;

// An argument of any kind that the services' operations take.
Variant argument(const std::string& text) {
    return Variant(std::string_view(text));
}
Variant argument(bool truth) {
    return Variant(truth);
}
Variant argument(std::int16_t number) {
    return Variant(number);
}
Variant argument(std::int32_t number) {
    return Variant(number);
}
Variant argument(double number) {
    return Variant(number);
}
Variant argument(const Value& value) {
    return toVariant(value);
}
Variant argument(Control& control) {
    return Variant(automationObject(control).get());
}
Variant argument(const RecordPtr& record) {
    return Variant(objectOf(record.get()));
}
Variant argument(TextArgument& text) {
    return text.reference();
}
Variant argument(std::nullptr_t) {
    return Variant(static_cast<IDispatch*>(nullptr));
}

// A 16-bit number that an operation may change.
template<VARTYPE type>
class ReferenceArgument {
public:
    explicit ReferenceArgument(std::int16_t value) : value_(value) {}
    Variant reference() {
        Variant reference;
        reference.vt = type | VT_BYREF;
        reference.piVal = &value_;
        return reference;
    }
    std::int16_t value() const { return value_; }

private:
    std::int16_t value_;
};
using NumberArgument = ReferenceArgument<VT_I2>;

// A flag that an operation may change.
class FlagArgument : public ReferenceArgument<VT_BOOL> {
public:
    explicit FlagArgument(bool flag) : ReferenceArgument(flag ? VARIANT_TRUE : VARIANT_FALSE) {}
    bool isSet() const { return value() != VARIANT_FALSE; }
};

template<VARTYPE type>
Variant argument(ReferenceArgument<type>& value) {
    return value.reference();
}

// A service's object with its members called by name.
class Service {
protected:
    explicit Service(DispatchClient client) : client_(std::move(client)) {}

    template<class... Arguments>
    void call(std::string_view member, Arguments&&... arguments) const {
        client_.call(member, {argument(arguments)...});
    }
    template<class Result, class... Arguments>
    Result ask(std::string_view member, Arguments&&... arguments) const {
        const Value value = client_.valueOf(client_.call(member, {argument(arguments)...}), member);
        if constexpr (std::is_same_v<Result, Value>) {
            return value;
        } else {
            try {
                return value.to<Result>();
            } catch (const Error& error) {
                throw Error(error.number(), "'" + std::string(member) + "' of " + client_.name() +
                                                " gives a value that does not fit: " + error.description());
            }
        }
    }

    DispatchClient client_;
};

using Text = std::string;
using Short = std::int16_t;

class HostErrorHandler final : public ErrorHandler, Service {
public:
    explicit HostErrorHandler(DispatchClient client) : Service(std::move(client)) {}
    bool SkipNextReport() const override { return ask<bool>("SkipNextReport"); }
    void setSkipNextReport(bool skip) override { client_.put("SkipNextReport", Variant(skip)); }
    void ReportProcError(const Text& description, const Text& procedure, bool flag) override {
        call("ReportProcError", description, procedure, flag);
    }
    void ReportEventError(const Text& description, const Text& procedure) override {
        call("ReportEventError", description, procedure);
    }
};

class HostGeneralProcedures final : public GeneralProcedures, Service {
public:
    explicit HostGeneralProcedures(DispatchClient client) : Service(std::move(client)) {}
    void ShowHelpFile(Form& form, const Text& programFolder) override {
        call("ShowHelpFile", form, programFolder);
    }
    void NextControl(Form& form) override { call("NextControl", form); }
    void FocusNext(Form& form, Short steps, bool flag) override { call("FocusNext", form, steps, flag); }
    void FocusPrevious(Form& form, Short steps, bool flag) override {
        call("FocusPrevious", form, steps, flag);
    }
    void SelectAllText(Control& control) override { call("SelectAllText", control); }
    void BeforeSave(Form& form) override { call("BeforeSave", form); }
    Text ReadSetting(const Text& file, const Text& section, const Text& key, const Text& fallback,
        bool createFlag, bool storeFlag) override {
        return ask<Text>("ReadSetting", file, section, key, fallback, createFlag, storeFlag);
    }
    void WriteSetting(
        const Text& file, const Text& section, const Text& key, const Text& value, Short flag) override {
        call("WriteSetting", file, section, key, value, flag);
    }
    Value FieldOrDefault(const Value& field, const Value& fallback) override {
        return ask<Value>("FieldOrDefault", field, fallback);
    }
    Text SplitExtension(Text& name) override {
        TextArgument both(name);
        Text extension = ask<Text>("SplitExtension", both, both, Short{0});
        name = both.utf8();
        return extension;
    }
    void SplitPath(const Text& path, Text& file, Text& folder, Text& drive) override {
        TextArgument fileOut(file);
        TextArgument folderOut(folder);
        TextArgument driveOut(drive);
        call("SplitPath", path, fileOut, folderOut, driveOut);
        file = fileOut.utf8();
        folder = folderOut.utf8();
        drive = driveOut.utf8();
    }
    bool FileExists(const Text& path) override { return ask<bool>("FileExists", path, false); }
    Text FitPathToLabel(const Text& path, Control& label, Form& form) override {
        return ask<Text>("FitPathToLabel", path, label, form);
    }
    Text ListFolderFor(Short location, const Text& dataPath, const Text& jobPath) override {
        return ask<Text>("ListFolderFor", location, dataPath, jobPath);
    }
    double GridColumnsWidth(Control& grid, bool firstCall) override {
        return ask<double>("GridColumnsWidth", grid, firstCall);
    }
    bool JobUsesGeoid(const RecordPtr& jobCfg, const RecordPtr& jobGeneral, bool flag) override {
        return ask<bool>("JobUsesGeoid", jobCfg, jobGeneral, flag);
    }
    bool GeoidFileDefined(const RecordPtr& jobCfg) override { return ask<bool>("GeoidFileDefined", jobCfg); }
};

class HostStringUtilities final : public StringUtilities, Service {
public:
    explicit HostStringUtilities(DispatchClient client) : Service(std::move(client)) {}
    Text NextField(Text& text, const Text& separator) override {
        TextArgument rest(text);
        Text field = ask<Text>("NextField", rest, separator);
        text = rest.utf8();
        return field;
    }
    void Swap(Short& a, Short& b) override {
        NumberArgument first(a);
        NumberArgument second(b);
        call("Swap", first, second);
        a = first.value();
        b = second.value();
    }
    Text FormatValue(const Value& value, const Text& format, const Text& further) override {
        return ask<Text>("FormatValue", value, format, further);
    }
    Text AngleText(const Text& degrees, Short option, const Text& kind, Short flag) override {
        return ask<Text>("AngleText", degrees, option, kind, flag);
    }
    Text CaptionText(const Text& text) override { return ask<Text>("CaptionText", text); }
    double TransformValue(double value, Short code) override {
        return ask<double>("TransformValue", value, code);
    }
    Text EditorCommand(const Text& editor, const Text& file) override {
        return ask<Text>("EditorCommand", editor, file);
    }
};

class HostFileProcedures final : public FileProcedures, Service {
public:
    explicit HostFileProcedures(DispatchClient client) : Service(std::move(client)) {}
    std::int32_t RunAndWait(const Text& commandLine) override {
        return ask<std::int32_t>("RunAndWait", commandLine);
    }
    double FileDate(const Text& file, Short option, bool flag, Short kind) override {
        return ask<double>("FileDate", file, option, flag, kind);
    }
};

class HostRegistryInfo final : public RegistryInfo, Service {
public:
    explicit HostRegistryInfo(DispatchClient client) : Service(std::move(client)) {}
    Text SettingsSection() override { return ask<Text>("SettingsSection"); }
};

class HostSystemInfo final : public SystemInfo, Service {
public:
    explicit HostSystemInfo(DispatchClient client) : Service(std::move(client)) {}
    Text ViewTitle() override { return ask<Text>("ViewTitle"); }
    Short CharSet() override { return ask<Short>("CharSet"); }
    Text JobDetailsTable() override { return ask<Text>("JobDetailsTable"); }
    Text AlphaIdTable() override { return ask<Text>("AlphaIdTable"); }
    Text TraverseSetPrefix() override { return ask<Text>("TraverseSetPrefix"); }
    Text LSSetPrefix() override { return ask<Text>("LSSetPrefix"); }
};

class HostDisplayFormats final : public DisplayFormats, Service {
public:
    explicit HostDisplayFormats(DispatchClient client) : Service(std::move(client)) {}
    Text ConstraintFactorFormat() override { return ask<Text>("ConstraintFactorFormat"); }
    Text ConvergenceFormat() override { return ask<Text>("ConvergenceFormat"); }
    Text DistanceFormat() override { return ask<Text>("DistanceFormat"); }
    Text PPMFormat() override { return ask<Text>("PPMFormat"); }
    Text SecondsFormat() override { return ask<Text>("SecondsFormat"); }
    Text ToleranceFormat() override { return ask<Text>("ToleranceFormat"); }
};

class HostInterpolationNames final : public InterpolationNames, Service {
public:
    explicit HostInterpolationNames(DispatchClient client) : Service(std::move(client)) {}
    Text MethodNameA() override { return ask<Text>("MethodNameA"); }
    Text MethodNameB() override { return ask<Text>("MethodNameB"); }
    Text MethodNameC() override { return ask<Text>("MethodNameC"); }
    Text LegacyCodeA() override { return ask<Text>("LegacyCodeA"); }
    Text LegacyCodeB() override { return ask<Text>("LegacyCodeB"); }
    Text LegacyCodeC() override { return ask<Text>("LegacyCodeC"); }
};

class HostSettingsStore final : public SettingsStore, Service {
public:
    HostSettingsStore(DispatchClient client, DispatchClient genProcs)
        : Service(std::move(client)), genProcs_(std::move(genProcs)) {}
    Text ProgramSectionName() override { return ask<Text>("ProgramSectionName"); }
    bool OpenSettingsStore(const RecordPtr& prog, bool& storeFlag, bool& workingCopy) override {
        FlagArgument store(storeFlag);
        FlagArgument copy(workingCopy);
        const bool success = ask<bool>("OpenSettingsStore", prog, store, copy);
        storeFlag = store.isSet();
        workingCopy = copy.isSet();
        return success;
    }
    void SaveAllSettings(const SettingsChoice& choice, const RecordPtr& prog, const RecordPtr& job,
        const RecordPtr& instantHelp, const RecordPtr& preferences, const RecordPtr& options,
        bool storeFlag) override {
        // Neither a job configuration nor the further object is ever saved from here.
        genProcs_.call("SaveAllSettings",
            {argument(choice.programChanged), argument(choice.programPathMissing),
                argument(choice.preferences), argument(choice.jobConfiguration), argument(choice.options),
                argument(choice.further), argument(prog), argument(job), argument(instantHelp),
                argument(preferences), argument(nullptr), argument(options), argument(nullptr),
                argument(storeFlag)});
    }
    void CloseSettingsStore(const RecordPtr& prog, bool storeFlag, bool status, bool& workingCopy) override {
        FlagArgument copy(workingCopy);
        call("CloseSettingsStore", prog, storeFlag, status, copy);
        workingCopy = copy.isSet();
    }

private:
    DispatchClient genProcs_;
};

class HostInstantHelp final : public InstantHelp, Service {
public:
    explicit HostInstantHelp(DispatchClient client) : Service(std::move(client)) {}
    void SetupHelp(Form& form, std::int32_t firstTopic, std::int32_t lastTopic, std::int32_t firstShared,
        std::int32_t lastShared, const Text& helpSource) override {
        call("SetupHelp", form, firstTopic, lastTopic, firstShared, lastShared, helpSource);
    }
    void ShowControlHelp(Form& form, Control& control) override { call("ShowControlHelp", form, control); }
    void ShowFormHelp(Form& form) override { call("ShowFormHelp", form); }
    void AttachComboLabel(Control& dummyLabel, Control& comboBox) override {
        call("AttachComboLabel", dummyLabel, comboBox);
    }
};

} // namespace

std::unique_ptr<ErrorHandler> adaptErrorHandler(DispatchClient errHandler) {
    return std::make_unique<HostErrorHandler>(std::move(errHandler));
}
std::unique_ptr<GeneralProcedures> adaptGeneralProcedures(DispatchClient genProcs) {
    return std::make_unique<HostGeneralProcedures>(std::move(genProcs));
}
std::unique_ptr<StringUtilities> adaptStringUtilities(DispatchClient strUtil) {
    return std::make_unique<HostStringUtilities>(std::move(strUtil));
}
std::unique_ptr<FileProcedures> adaptFileProcedures(DispatchClient fileProcs) {
    return std::make_unique<HostFileProcedures>(std::move(fileProcs));
}
std::unique_ptr<RegistryInfo> adaptRegistryInfo(DispatchClient regInfo) {
    return std::make_unique<HostRegistryInfo>(std::move(regInfo));
}
std::unique_ptr<SystemInfo> adaptSystemInfo(DispatchClient sysInfo) {
    return std::make_unique<HostSystemInfo>(std::move(sysInfo));
}
std::unique_ptr<DisplayFormats> adaptDisplayFormats(DispatchClient dispFormats) {
    return std::make_unique<HostDisplayFormats>(std::move(dispFormats));
}
std::unique_ptr<InterpolationNames> adaptInterpolationNames(DispatchClient interpNames) {
    return std::make_unique<HostInterpolationNames>(std::move(interpNames));
}
std::unique_ptr<SettingsStore> adaptSettingsStore(DispatchClient settingsStore, DispatchClient genProcs) {
    return std::make_unique<HostSettingsStore>(std::move(settingsStore), std::move(genProcs));
}
std::unique_ptr<InstantHelp> adaptInstantHelp(DispatchClient instantHelp) {
    return std::make_unique<HostInstantHelp>(std::move(instantHelp));
}

} // namespace genutil
