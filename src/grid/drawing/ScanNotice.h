// The text that stands in place of the grid while a long scan goes on.

#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QString>

class ScanNotice final
{
    Q_DECLARE_TR_FUNCTIONS(OTIconView)

public:
    // A scan that ends sooner than this is not worth hiding the grid for, in milliseconds.
    static constexpr qint64 ShortestScanShown = 150;

    // Takes a step of the scan; a count below 1 ends it. True when the grid is to be repainted at
    // once, since the scan keeps the event loop from doing it.
    bool showProgressStep(int step, int count, const QString &label);

    bool isShown() const { return _isShown; }
    const QString &step() const { return _step; }
    const QString &label() const { return _label; }

private:
    bool _isShown = false;
    QElapsedTimer _scanTime;
    QString _step;
    QString _label;
};
