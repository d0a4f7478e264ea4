#include "host/form_focus.h"
#include "host/help_window.h"
#include "host/services.h"
#include "host/settings_file.h"
#include "host/text_rules.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFontMetrics>
#include <QScreen>

namespace kestal {
namespace {

// Shortened in the middle to the width of the label. A label that has no width, or none that can be read,
// takes all.
std::string fitPathToLabel(const std::string& path, const LateBound& label) {
    constexpr double twipsPerInch = 1440;
    const QScreen* const screen = QGuiApplication::primaryScreen();
    if (!screen || !label.has("Width"))
        return path;
    const double width = numberOf(label.get("Width")) / twipsPerInch * screen->logicalDotsPerInch();
    if (width <= 0)
        return path;
    const QFontMetrics metrics(QApplication::font());
    return metrics.elidedText(QString::fromStdString(path), Qt::ElideMiddle, static_cast<int>(width))
        .toStdString();
}

// In twips. The first call of a form is no different from its later ones.
double gridColumnsWidth(const LateBound& grid) {
    const std::int32_t count = int32Of(grid.get("Cols"));
    double width = 0;
    for (std::int32_t i = 0; i < count; ++i)
        width += numberOf(grid.call("ColWidth", {Variant(i)}));
    return width;
}

// Where list files go: location 0 is the program's own list folder, 1 the data folder's, 2 the folder of the
// data files themselves (the open job's, or the data folder while none is open). Folders end in a separator.
std::string listFolderFor(
    const std::string& programFolder, int location, const std::string& dataPath, const std::string& jobPath) {
    switch (location) {
    case 0:
        return programFolder + "List/";
    case 1:
        return dataPath + "List/";
    case 2:
        return jobPath.empty() ? dataPath : jobPath;
    default:
        throw AutomationError(errors::InvalidCall,
            "ListFolderFor: the location must be 0, 1 or 2, not " + std::to_string(location));
    }
}

class GenProcs : public AutomationObject {
public:
    explicit GenProcs(HostPtr host) : AutomationObject("k_genproc.genProcs"), host_(std::move(host)) {
        addFormMembers();
        addSettingMembers();
        addPathMembers();
    }

private:
    void addFormMembers() {
        method("ShowHelpFile", [this](IDispatch* form, const std::string&) {
            showHelpWindow(host_->help, int32Of(LateBound(form).get("HelpContextID")));
        });
        method("NextControl", [](IDispatch* form) { moveFocus(LateBound(form), 1, false); });
        method("FocusNext", [](IDispatch* form, std::int16_t steps, bool stopAtEnds) {
            moveFocus(LateBound(form), steps, stopAtEnds);
        });
        method("FocusPrevious", [](IDispatch* form, std::int16_t steps, bool stopAtEnds) {
            moveFocus(LateBound(form), -steps, stopAtEnds);
        });
        method("SelectAllText", [](IDispatch* control) { selectAllText(LateBound(control)); });
        method("GridColumnsWidth", [](IDispatch* grid, bool) { return gridColumnsWidth(LateBound(grid)); });
        // Keys that the user has pressed already reach the form before its contents are saved.
        method("BeforeSave", [](IDispatch*) { QCoreApplication::sendPostedEvents(); });
    }

    void addSettingMembers() {
        // A settings file is made by the first value stored in it, so neither flag changes how it is read.
        method("ReadSetting", [](const std::string& file, const std::string& section, const std::string& key,
                                  const std::string& fallback, bool,
                                  bool) { return readSetting(file, section, key, fallback); });
        method("WriteSetting",
            [](const std::string& file, const std::string& section, const std::string& key,
                const std::string& value, std::int16_t) { writeSetting(file, section, key, value); });
        method("FieldOrDefault", [](const Variant& field, const Variant& fallback) {
            return field.vt == VT_NULL ? fallback : field;
        });
    }

    void addPathMembers() {
        // The name is both the argument and the place of the result.
        method("SplitExtension",
            [](std::string& name, const std::string&, std::int16_t) { return splitExtension(name); });
        method("SplitPath",
            [](const std::string& path, std::string& file, std::string& folder, std::string& drive) {
                PathParts parts = splitPath(path);
                file = std::move(parts.file);
                folder = std::move(parts.folder);
                drive = std::move(parts.drive);
            });
        method("FileExists", [](const std::string& path, bool foldersToo) {
            const QFileInfo info(QString::fromStdString(path));
            return info.isFile() || (foldersToo && info.isDir());
        });
        method("FitPathToLabel", [](const std::string& path, IDispatch* label, IDispatch*) {
            return fitPathToLabel(path, LateBound(label));
        });
        method("ListFolderFor",
            [this](std::int16_t location, const std::string& dataPath, const std::string& jobPath) {
                return listFolderFor(host_->paths.program.toStdString(), location, dataPath, jobPath);
            });
    }

    HostPtr host_;
};

} // namespace

Ref<IDispatch> makeGenProcs(const HostPtr& host) {
    return Ref<IDispatch>::adopt(new GenProcs(host));
}

} // namespace kestal
