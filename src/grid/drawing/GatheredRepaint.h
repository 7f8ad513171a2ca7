// Repaints the parts of a widget that change by the hundred in one go, as icons arrive: painting
// each on its own would take longer than loading it.

#pragma once

#include <QRegion>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>

class GatheredRepaint final
{
public:
    // The widget must outlive this.
    explicit GatheredRepaint(QWidget &widget)
    {
        using namespace std::chrono_literals;
        _timer.setSingleShot(true);
        // Less than a frame of a screen.
        _timer.setInterval(10ms);
        _timer.callOnTimeout(
            &widget, [this, &widget] { widget.update(std::exchange(_region, {})); });
    }

    // In the widget's own coordinates.
    void add(const QRect &rect)
    {
        _region += rect;
        if (!_timer.isActive()) {
            _timer.start();
        }
    }

private:
    QRegion _region;
    QTimer _timer;
};
