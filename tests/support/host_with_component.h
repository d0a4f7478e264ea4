#pragma once

#include "host/component_access.h"
#include "host/settings_file.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QTemporaryDir>

#include <fstream>
#include <string>

namespace kestal {

// The host with the component's library beside the test program. The component keeps the services of the
// first host that it meets, so all tests share one.
class HostWithComponent : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = new QTemporaryDir;
        HostPaths paths;
        paths.settings = path("kestal.ini");
        paths.log = path("kestal.log");
        paths.help = path("help.txt");
        paths.samples = path("reports");
        QDir().mkpath(paths.samples);
        std::ofstream(file("help.txt")) << "[1800] Viewer topic\nText\n";
        std::ofstream(file("reports/b.log")) << std::string(500, 'b');
        std::ofstream(file("reports/A.inv")) << "short\n";
        std::ofstream(file("reports/c & d.txt")) << "text\n";
        host_ = std::make_shared<Host>(paths);
        host_->attended = false;
    }
    static void TearDownTestSuite() {
        host_.reset();
        delete folder_;
    }
    void SetUp() override { useRegistry(path("registry.ini")); }

    static QString path(const QString& name) { return folder_->filePath(name); }
    static std::string file(const char* name) { return path(name).toStdString(); }
    static void useRegistry(const QString& name) { qputenv("K_GENUTIL_REGISTRY", name.toLocal8Bit()); }
    static std::string registeredServer() {
        const std::string clsid = k_genutil::guidText(k_genutil::classes::cProgress.clsid);
        return k_genutil::registryValue("class " + clsid, "server", REGDB_E_CLASSNOTREG);
    }
    static std::string setting(const char* key) {
        return readSetting(host_->paths.settings.toStdString(), "Kestal", key, "absent");
    }

    static inline QTemporaryDir* folder_ = nullptr;
    static inline HostPtr host_;
};

// What a key at the keyboard does; a decimal point is the one of the user's locale.
inline void type(QWidget& window, const char* box, QString number) {
    auto* edit = window.findChild<QLineEdit*>(box);
    ASSERT_TRUE(edit) << box;
    edit->setFocus();
    edit->selectAll();
    number.replace('.', QLocale::system().decimalPoint());
    for (const QChar c : number) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, c);
        QApplication::sendEvent(edit, &press);
    }
}
template<class Button>
void press(QWidget& window, const char* name) {
    auto* button = window.findChild<Button*>(name);
    ASSERT_TRUE(button) << name;
    button->click();
}

} // namespace kestal
