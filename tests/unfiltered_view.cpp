// A view of pages that lets everything through: what the tests of the component's own view are measured
// against. A module, as the test program itself must not know the engine.

#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace {

// The profile goes after its pages.
class UnfilteredView : public QWebEngineView {
public:
    ~UnfilteredView() override { delete page(); }
    QWebEngineProfile profile;
};

} // namespace

extern "C" Q_DECL_EXPORT QWidget* unfilteredView(const char* file) {
    auto* view = new UnfilteredView;
    auto* page = new QWebEnginePage(&view->profile, view);
    view->setPage(page);
    using Settings = QWebEngineSettings;
    for (const auto allowed : {Settings::LocalContentCanAccessRemoteUrls, Settings::HyperlinkAuditingEnabled,
             Settings::JavascriptCanOpenWindows, Settings::DnsPrefetchEnabled})
        page->settings()->setAttribute(allowed, true);
    view->load(QUrl::fromLocalFile(QString::fromUtf8(file)));
    view->resize(400, 300);
    view->show();
    return view;
}
