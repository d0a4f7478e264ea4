#pragma once

#include "hostif/error.h"
#include "hostif/form.h"
#include "hostif/services.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

// A host without a host: its records are maps, its services keep state, write every call into one log, and
// can be told to fail.
namespace genutil::fake {

class FakeRecord : public Record {
public:
    std::map<std::string, Value, std::less<>> values;
    std::map<std::string, RecordPtr, std::less<>> children;

    FakeRecord() = default;
    explicit FakeRecord(std::map<std::string, Value, std::less<>> initial) : values(std::move(initial)) {}

    Value read(std::string_view member) const override {
        const auto found = values.find(member);
        if (found == values.end())
            throw Error(errors::NoSuchMember, "no member '" + std::string(member) + "'");
        return found->second;
    }
    void write(std::string_view member, const Value& value) override { values[std::string(member)] = value; }
    RecordPtr child(std::string_view member) const override {
        const auto found = children.find(member);
        return found == children.end() ? nullptr : found->second;
    }
    RecordPtr Clone() const override { return std::make_shared<FakeRecord>(*this); }
    void CopyFrom(const Record& other) override { values = dynamic_cast<const FakeRecord&>(other).values; }
};

// What every service of one fake host shares.
struct HostState {
    std::vector<std::string> log;
    std::set<std::string> failing; // names of operations that throw a foreign exception
    std::set<std::string> missing; // classes that cannot be created
    std::map<std::string, std::string> settings;
    bool skipNextReport = false;
    std::function<void()> whileRunning; // what goes on while RunAndWait waits
    std::int16_t charSet = 0;

    void call(const std::string& operation, const std::string& arguments = {}) {
        log.push_back(arguments.empty() ? operation : operation + " " + arguments);
        if (failing.contains(operation))
            throw std::runtime_error(operation + " failed");
    }
    bool logged(const std::string& entry) const { return std::ranges::count(log, entry) > 0; }
};

struct FakeErrorHandler : ErrorHandler {
    HostState& host;
    explicit FakeErrorHandler(HostState& state) : host(state) {}
    bool SkipNextReport() const override { return host.skipNextReport; }
    void setSkipNextReport(bool skip) override { host.skipNextReport = skip; }
    void ReportProcError(const std::string& description, const std::string& procedure, bool) override {
        host.call("ReportProcError", procedure + ": " + description);
    }
    void ReportEventError(const std::string& description, const std::string& procedure) override {
        host.call("ReportEventError", procedure + ": " + description);
    }
};

struct FakeGeneralProcedures : GeneralProcedures {
    HostState& host;
    explicit FakeGeneralProcedures(HostState& state) : host(state) {}
    void ShowHelpFile(Form& form, const std::string& folder) override {
        host.call("ShowHelpFile", form.name() + " " + folder);
    }
    void NextControl(Form&) override { host.call("NextControl"); }
    void FocusNext(Form&, std::int16_t, bool) override { host.call("FocusNext"); }
    void FocusPrevious(Form&, std::int16_t, bool) override { host.call("FocusPrevious"); }
    void SelectAllText(Control&) override { host.call("SelectAllText"); }
    void BeforeSave(Form&) override { host.call("BeforeSave"); }
    std::string ReadSetting(const std::string& file, const std::string& section, const std::string& key,
        const std::string& fallback, bool, bool) override {
        host.call("ReadSetting", file + " " + section + " " + key);
        const auto found = host.settings.find(key);
        return found == host.settings.end() ? fallback : found->second;
    }
    void WriteSetting(const std::string&, const std::string&, const std::string& key,
        const std::string& value, std::int16_t) override {
        host.call("WriteSetting", key + "=" + value);
        host.settings[key] = value;
    }
    Value FieldOrDefault(const Value& field, const Value& fallback) override {
        return field.isNull() ? fallback : field;
    }
    std::string SplitExtension(std::string& name) override {
        const auto dot = name.rfind('.');
        const std::string extension = dot == std::string::npos ? "" : name.substr(dot);
        name.erase(name.size() - extension.size());
        return extension;
    }
    void SplitPath(const std::string&, std::string&, std::string&, std::string&) override {
        host.call("SplitPath");
    }
    bool FileExists(const std::string&) override { return false; }
    std::string FitPathToLabel(const std::string& path, Control&, Form&) override { return path; }
    std::string ListFolderFor(std::int16_t, const std::string& data, const std::string&) override {
        return data;
    }
    double GridColumnsWidth(Control&, bool) override { return 0; }
    bool JobUsesGeoid(const RecordPtr&, const RecordPtr&, bool) override { return false; }
    bool GeoidFileDefined(const RecordPtr&) override { return false; }
};

struct FakeStringUtilities : StringUtilities {
    std::string NextField(std::string& text, const std::string& separator) override {
        const auto end = text.find(separator);
        const std::string field = text.substr(0, end);
        text = end == std::string::npos ? "" : text.substr(end + separator.size());
        return field;
    }
    void Swap(std::int16_t& a, std::int16_t& b) override { std::swap(a, b); }
    std::string FormatValue(const Value& value, const std::string&, const std::string&) override {
        return value.toText();
    }
    std::string AngleText(
        const std::string& degrees, std::int16_t, const std::string&, std::int16_t) override {
        return degrees;
    }
    std::string CaptionText(const std::string& text) override { return text; }
    double TransformValue(double value, std::int16_t) override { return value; }
    std::string EditorCommand(const std::string& editor, const std::string& file) override {
        return editor + " " + file;
    }
};

struct FakeFileProcedures : FileProcedures {
    HostState& host;
    explicit FakeFileProcedures(HostState& state) : host(state) {}
    std::int32_t RunAndWait(const std::string& command) override {
        host.call("RunAndWait", command);
        if (host.whileRunning)
            host.whileRunning();
        return 0;
    }
    double FileDate(const std::string&, std::int16_t, bool, std::int16_t) override { return 0; }
};

struct FakeRegistryInfo : RegistryInfo {
    std::string SettingsSection() override { return "Kestal"; }
};

struct FakeSystemInfo : SystemInfo {
    HostState& host;
    explicit FakeSystemInfo(HostState& state) : host(state) {}
    std::string ViewTitle() override { return "View Data File"; }
    std::int16_t CharSet() override { return host.charSet; }
    std::string JobDetailsTable() override { return "JobDetails"; }
    std::string AlphaIdTable() override { return "AlphaIds"; }
    std::string TraverseSetPrefix() override { return "TravSet_"; }
    std::string LSSetPrefix() override { return "LSSet_"; }
};

struct FakeInstantHelp : InstantHelp {
    HostState& host;
    explicit FakeInstantHelp(HostState& state) : host(state) {}
    ~FakeInstantHelp() override { host.log.push_back("InstantHelp released"); }
    void SetupHelp(Form& form, std::int32_t first, std::int32_t last, std::int32_t firstShared,
        std::int32_t lastShared, const std::string& source) override {
        host.call("SetupHelp", form.name() + " " + std::to_string(first) + " " + std::to_string(last) + " " +
                                   std::to_string(firstShared) + " " + std::to_string(lastShared) + " " +
                                   source);
    }
    void ShowControlHelp(Form&, Control& control) override { host.call("ShowControlHelp", control.name()); }
    void ShowFormHelp(Form& form) override { host.call("ShowFormHelp", form.name()); }
    void AttachComboLabel(Control& label, Control& list) override {
        host.call("AttachComboLabel", label.name() + " " + list.name());
    }
};

class FakeHost : public ObjectFactory, public HostState {
public:
    std::unique_ptr<ErrorHandler> createErrorHandler() override {
        return make<FakeErrorHandler>("errHandler");
    }
    std::unique_ptr<GeneralProcedures> createGeneralProcedures() override {
        return make<FakeGeneralProcedures>("genProcs");
    }
    std::unique_ptr<StringUtilities> createStringUtilities() override {
        return std::make_unique<FakeStringUtilities>();
    }
    std::unique_ptr<FileProcedures> createFileProcedures() override {
        return make<FakeFileProcedures>("fileProcs");
    }
    std::unique_ptr<RegistryInfo> createRegistryInfo() override {
        return std::make_unique<FakeRegistryInfo>();
    }
    std::unique_ptr<SystemInfo> createSystemInfo() override { return make<FakeSystemInfo>("sysInfo"); }
    std::unique_ptr<InstantHelp> createInstantHelp() override { return make<FakeInstantHelp>("instantHelp"); }
    std::unique_ptr<DisplayFormats> createDisplayFormats() override {
        return absent<DisplayFormats>("dispFormats");
    }
    std::unique_ptr<InterpolationNames> createInterpolationNames() override {
        return absent<InterpolationNames>("interpNames");
    }
    std::unique_ptr<SettingsStore> createSettingsStore() override {
        return absent<SettingsStore>("settingsStore");
    }
    RecordPtr createRecord(const std::string&) override { return std::make_shared<FakeRecord>(); }

private:
    template<class Service>
    std::unique_ptr<Service> make(const std::string& className) {
        if (missing.contains(className))
            return absent<Service>(className);
        return std::make_unique<Service>(static_cast<HostState&>(*this));
    }
    template<class Service>
    std::unique_ptr<Service> absent(const std::string& className) {
        throw Error(errors::CannotCreateObject, "The class '" + className + "' cannot be created");
    }
};

inline std::shared_ptr<FakeRecord> programObject() {
    return std::make_shared<FakeRecord>(std::map<std::string, Value, std::less<>>{
        {"ProgramFolder", "/opt/kestal/"},
        {"HelpSource", "kestal-help.txt"},
        {"SettingsFile", "kestal.ini"},
        {"FileViewState", std::int16_t{0}},
        {"WipeAfterView", false},
        {"Changed", false},
    });
}

} // namespace genutil::fake
