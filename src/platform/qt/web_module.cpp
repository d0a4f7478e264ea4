#include "platform/qt/web_module.h"

#include "hostif/error.h"
#include "platform/web/page_view.h"

#include <QFileInfo>
#include <QLibrary>
#include <QOpenGLContext>

#include <exception>

#include <dlfcn.h>

QT_BEGIN_NAMESPACE
// What the toolkit exports for its own modules.
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
QT_END_NAMESPACE

namespace genutil {
namespace {

constexpr const char* moduleName = "k_genutil_web.so";

QString modulePath() {
    Dl_info here{};
    ::dladdr(reinterpret_cast<const void*>(&makePageView), &here);
    const QString folder = QFileInfo(QString::fromLocal8Bit(here.dli_fname)).canonicalPath();
    const QString beside = folder + QLatin1Char('/') + QLatin1String(moduleName);
    const QString inLib = folder + QStringLiteral("/../lib/") + QLatin1String(moduleName);
    return QFileInfo::exists(beside) || !QFileInfo::exists(inLib) ? beside
                                                                  : QFileInfo(inLib).canonicalFilePath();
}

// The engine ends the process where it finds no graphics context to share. An attribute of the application
// (AA_ShareOpenGLContexts) would make one, but as every process starts, and a host may not have asked for it.
void shareGraphics() {
    if (qt_gl_global_share_context())
        return;
    auto* context = new QOpenGLContext; // for the rest of the process
    context->create();                  // without graphics it stays empty, which is enough
    qt_gl_set_global_share_context(context);
}

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw Error(errors::CannotCreateObject,
        "The page viewer " + path.toStdString() + " cannot be used: " + reason.toStdString());
}

} // namespace

PageView* makePageView(QWidget* parent) {
    static MakePageView make = nullptr;
    const QString path = modulePath();
    if (!make) {
        if (!QFileInfo(path).isFile())
            fail(path, QStringLiteral("there is no such file"));
        shareGraphics();
        QLibrary module(path);
        make = reinterpret_cast<MakePageView>(module.resolve(makePageViewName));
        if (!make)
            fail(path, module.errorString());
    }
    try {
        return make(parent);
    } catch (const std::exception& failure) {
        fail(path, QString::fromUtf8(failure.what()));
    }
}

} // namespace genutil
