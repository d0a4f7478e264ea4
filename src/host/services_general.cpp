#include "host/form_focus.h"
#include "host/general_preferences.h"
#include "host/help_window.h"
#include "host/services.h"
#include "host/services_settings.h"
#include "host/settings_file.h"
#include "host/text_rules.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QScreen>

#include <cstdlib>
#include <limits>

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
    const QFontMetricsF metrics(QApplication::font());
    const std::string shorter = shortenedPath(path, [&](const std::string& text) {
        return metrics.horizontalAdvance(QString::fromStdString(text)) <= width;
    });
    // A name that is too long by itself is shortened too.
    return shorter.empty()
               ? metrics.elidedText(QString::fromStdString(path), Qt::ElideMiddle, width).toStdString()
               : shorter;
}

// In twips. The first call of a form is no different from its later ones.
double gridColumnsWidth(const LateBound& grid) {
    const std::int32_t count = int32Of(grid.get("Cols"));
    double width = 0;
    for (std::int32_t i = 0; i < count; ++i)
        width += numberOf(grid.call("ColWidth", {Variant(i)}));
    return width;
}

// The settings are opened and given up again: a full disk, a read-only file or a damaged one is told now.
void requireSettingsCanChange(const std::string& file) {
    try {
        SettingsChange trial(file);
        trial.write(trial.settings());
    } catch (const std::exception& error) {
        throw AutomationError(errors::PathAccess, error.what());
    }
}

void requireConstraintFactor(const std::string& text) {
    constexpr double largest = std::numeric_limits<std::int32_t>::max();
    if (std::strtod(text.c_str(), nullptr) > largest)
        throw AutomationError(
            errors::Overflow, "The option SDConstrFactor must be at most 2147483647, not '" + text + "'");
}

class GenProcs : public AutomationObject {
public:
    explicit GenProcs(HostPtr host) : AutomationObject("k_genproc.genProcs"), host_(std::move(host)) {
        addFormMembers();
        addSettingMembers();
        addPathMembers();
        addGeoidMembers();
    }

private:
    void addFormMembers() {
        method("ShowHelpFile", [this](IDispatch* form, const std::string&) {
            showHelpWindow(*host_, int32Of(LateBound(form).get("HelpContextID")));
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
        method("BeforeSave", [this](IDispatch* form) {
            QCoreApplication::sendPostedEvents();
            checkBeforeSave(LateBound(form));
        });
    }

    // What would fail after the first of several steps is refused before it, while the dialog is still open.
    void checkBeforeSave(const LateBound& form) {
        const std::string name = textOf(form.get("Name"));
        if (name == "frmDefaults")
            requireSettingsCanChange(host_->paths.settings.toStdString());
        if (name == "frmLS_Options")
            requireConstraintFactor(textOf(form.child("txtConstrFactor").get("Text")));
    }

    void addSettingMembers() {
        // A settings file is made by the first value stored in it, so neither flag changes how it is read. A
        // value that is no text must not keep a dialog from opening.
        method("ReadSetting", [this](const std::string& file, const std::string& section,
                                  const std::string& key, const std::string& fallback, bool, bool) {
            try {
                return readSetting(file, section, key, fallback);
            } catch (const ConversionError& fault) {
                host_->log.write(QString("A stored setting is not used: %1").arg(fault.what()));
                return fallback;
            }
        });
        method("WriteSetting",
            [](const std::string& file, const std::string& section, const std::string& key,
                const std::string& value, std::int16_t) { writeSetting(file, section, key, value); });
        method("SaveAllSettings",
            [this](bool programChanged, bool programPathMissing, bool preferences, bool jobConfiguration,
                bool options, bool further, IDispatch* prog, IDispatch*, IDispatch*, IDispatch* genPrefs,
                IDispatch*, IDispatch* lsOptions, IDispatch*, bool) {
                saveAllSettings(*host_,
                    {programChanged, programPathMissing, preferences, jobConfiguration, options, further},
                    prog, genPrefs, lsOptions);
            });
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
                return listFolder(location, host_->paths.program.toStdString(), dataPath, jobPath);
            });
    }

    void addGeoidMembers() {
        method("JobUsesGeoid", [](IDispatch* jobCfg, IDispatch* jobGeneral, bool) {
            return (jobCfg && truthOf(LateBound(jobCfg).get("ApplyGeoid"))) ||
                   (jobGeneral && truthOf(LateBound(jobGeneral).get("GeoidUpdate")));
        });
        method("GeoidFileDefined",
            [](IDispatch* jobCfg) { return jobCfg && !textOf(LateBound(jobCfg).get("GridFile")).empty(); });
    }

    HostPtr host_;
};

} // namespace

Ref<IDispatch> makeGenProcs(const HostPtr& host) {
    return Ref<IDispatch>::adopt(new GenProcs(host));
}

} // namespace kestal
