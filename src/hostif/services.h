#pragma once

#include "hostif/record.h"

#include <cstdint>
#include <memory>
#include <string>

// The service objects of the host installation. The component creates each by its class on first use
// (ObjectFactory) and calls it from the user-interface thread only. A service that fails throws Error.
namespace genutil {

class Control;
class Form;

class ErrorHandler { // errHandler
public:
    virtual ~ErrorHandler() = default;
    virtual bool SkipNextReport() const = 0;
    virtual void setSkipNextReport(bool skip) = 0;
    virtual void ReportProcError(const std::string& description, const std::string& procedure, bool flag) = 0;
    virtual void ReportEventError(const std::string& description, const std::string& procedure) = 0;
};

class GeneralProcedures { // genProcs
public:
    virtual ~GeneralProcedures() = default;
    virtual void ShowHelpFile(Form& form, const std::string& programFolder) = 0;
    virtual void NextControl(Form& form) = 0;
    virtual void FocusNext(Form& form, std::int16_t steps, bool flag) = 0;
    virtual void FocusPrevious(Form& form, std::int16_t steps, bool flag) = 0;
    virtual void SelectAllText(Control& control) = 0;
    virtual void BeforeSave(Form& form) = 0;
    // The two flags belong to the settings service; the file viewer and the job list pass True and False.
    virtual std::string ReadSetting(const std::string& file, const std::string& section,
        const std::string& key, const std::string& fallback, bool createFlag, bool storeFlag) = 0;
    virtual void WriteSetting(const std::string& file, const std::string& section, const std::string& key,
        const std::string& value, std::int16_t flag) = 0;
    virtual Value FieldOrDefault(const Value& field, const Value& fallback) = 0;
    // Takes the extension, dot included, off the name and returns it.
    virtual std::string SplitExtension(std::string& name) = 0;
    virtual void SplitPath(
        const std::string& path, std::string& file, std::string& folder, std::string& drive) = 0;
    virtual bool FileExists(const std::string& path) = 0;
    virtual std::string FitPathToLabel(const std::string& path, Control& label, Form& form) = 0;
    virtual std::string ListFolderFor(
        std::int16_t location, const std::string& dataPath, const std::string& jobPath) = 0;
    // The total width of the grid's columns in twips.
    virtual double GridColumnsWidth(Control& grid, bool firstCall) = 0;
    virtual bool JobUsesGeoid(const RecordPtr& jobCfg, const RecordPtr& jobGeneral, bool flag) = 0;
    virtual bool GeoidFileDefined(const RecordPtr& jobCfg) = 0;
};

class StringUtilities { // strUtil
public:
    virtual ~StringUtilities() = default;
    // The text before the first separator; `text` keeps what follows it ("" when no separator is left).
    virtual std::string NextField(std::string& text, const std::string& separator) = 0;
    virtual void Swap(std::int16_t& a, std::int16_t& b) = 0;
    virtual std::string FormatValue(
        const Value& value, const std::string& format, const std::string& further) = 0;
    virtual std::string AngleText(
        const std::string& degrees, std::int16_t option, const std::string& kind, std::int16_t flag) = 0;
    virtual std::string CaptionText(const std::string& text) = 0;
    virtual double TransformValue(double value, std::int16_t code) = 0;
    virtual std::string EditorCommand(const std::string& editor, const std::string& file) = 0;
};

class FileProcedures { // fileProcs
public:
    virtual ~FileProcedures() = default;
    // Starts the command and returns when it has ended; the windows stay alive meanwhile.
    virtual std::int32_t RunAndWait(const std::string& commandLine) = 0;
    // The file's date and time, in days since 30 December 1899.
    virtual double FileDate(const std::string& file, std::int16_t option, bool flag, std::int16_t kind) = 0;
};

class RegistryInfo { // regInfo
public:
    virtual ~RegistryInfo() = default;
    virtual std::string SettingsSection() = 0;
};

class SystemInfo { // sysInfo
public:
    virtual ~SystemInfo() = default;
    virtual std::string ViewTitle() = 0;
    virtual std::int16_t CharSet() = 0;
    virtual std::string JobDetailsTable() = 0;
    virtual std::string AlphaIdTable() = 0;
    virtual std::string TraverseSetPrefix() = 0;
    virtual std::string LSSetPrefix() = 0;
};

class DisplayFormats { // dispFormats
public:
    virtual ~DisplayFormats() = default;
    virtual std::string ConstraintFactorFormat() = 0;
    virtual std::string ConvergenceFormat() = 0;
    virtual std::string DistanceFormat() = 0;
    virtual std::string PPMFormat() = 0;
    virtual std::string SecondsFormat() = 0;
    virtual std::string ToleranceFormat() = 0;
};

class InterpolationNames { // interpNames
public:
    virtual ~InterpolationNames() = default;
    virtual std::string MethodNameA() = 0;
    virtual std::string MethodNameB() = 0;
    virtual std::string MethodNameC() = 0;
    virtual std::string LegacyCodeA() = 0;
    virtual std::string LegacyCodeB() = 0;
    virtual std::string LegacyCodeC() = 0;
};

// Which settings SaveAllSettings writes, in the order of the host's six leading Booleans.
struct SettingsChoice {
    bool programChanged = false;
    bool programPathMissing = false;
    bool preferences = false;
    bool jobConfiguration = false;
    bool options = false;
    bool further = false;
};

class SettingsStore { // settingsStore, with genProcs' SaveAllSettings
public:
    virtual ~SettingsStore() = default;
    virtual std::string ProgramSectionName() = 0;
    virtual bool OpenSettingsStore(const RecordPtr& prog, bool& storeFlag, bool& workingCopy) = 0;
    virtual void SaveAllSettings(const SettingsChoice& choice, const RecordPtr& prog, const RecordPtr& job,
        const RecordPtr& instantHelp, const RecordPtr& preferences, const RecordPtr& options,
        bool storeFlag) = 0;
    virtual void CloseSettingsStore(
        const RecordPtr& prog, bool storeFlag, bool status, bool& workingCopy) = 0;
};

class InstantHelp { // one object per form that uses instant help
public:
    virtual ~InstantHelp() = default;
    virtual void SetupHelp(Form& form, std::int32_t firstTopic, std::int32_t lastTopic,
        std::int32_t firstShared, std::int32_t lastShared, const std::string& helpSource) = 0;
    virtual void ShowControlHelp(Form& form, Control& control) = 0;
    virtual void ShowFormHelp(Form& form) = 0;
    virtual void AttachComboLabel(Control& dummyLabel, Control& comboBox) = 0;
};

// Creates the host's objects by class. A class that is not registered or cannot be created:
// CannotCreateObject, the description naming the class.
class ObjectFactory {
public:
    virtual ~ObjectFactory() = default;
    virtual std::unique_ptr<ErrorHandler> createErrorHandler() = 0;
    virtual std::unique_ptr<GeneralProcedures> createGeneralProcedures() = 0;
    virtual std::unique_ptr<StringUtilities> createStringUtilities() = 0;
    virtual std::unique_ptr<FileProcedures> createFileProcedures() = 0;
    virtual std::unique_ptr<RegistryInfo> createRegistryInfo() = 0;
    virtual std::unique_ptr<SystemInfo> createSystemInfo() = 0;
    virtual std::unique_ptr<DisplayFormats> createDisplayFormats() = 0;
    virtual std::unique_ptr<InterpolationNames> createInterpolationNames() = 0;
    virtual std::unique_ptr<SettingsStore> createSettingsStore() = 0;
    virtual std::unique_ptr<InstantHelp> createInstantHelp() = 0;
    // Record objects of the host library: "job", "jobDetails", "jobCfg", "jobGeneral".
    virtual RecordPtr createRecord(const std::string& className) = 0;
};

} // namespace genutil
