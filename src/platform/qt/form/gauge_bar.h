#pragma once

#include <QProgressBar>

namespace genutil {

// A bar filled from the left to a percentage, with the percentage printed in its middle.
class GaugeBar : public QProgressBar {
public:
    explicit GaugeBar(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace genutil
