#pragma once

#include <QFrame>

#include <vector>

class QLabel;

namespace kestal {

/// The sizes that the panel may have, the best one first.
using PanelSizes = std::vector<QSize>;

/// Where instant help stands: outside the window if a side of it has room for one of the sizes; else over a
/// corner of the screen, away from what must stay visible. A panel that is `shown` over
/// the window already stays there as long as it covers nothing of that.
QRect placeBeside(const QRect& window, const QRect& screen, const PanelSizes& sizes,
    const std::vector<QRect>& visible, const QRect& shown);

/// Instant help beside the dialog that it explains. It takes neither keys nor clicks, follows the dialog and
/// goes with it.
class InstantHelpPanel : public QFrame {
public:
    explicit InstantHelpPanel(QWidget& window);

    void showTopic(const QString& title, const QString& text);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    PanelSizes sizes() const;
    void place();

    QWidget& window_;
    QLabel* title_;
    QLabel* text_;
};

/// Shows the topic beside the active window; does nothing where there is none.
void showInstantHelpBeside(const QString& title, const QString& text);

} // namespace kestal
