#include "grid/drawing/ScanNotice.h"

#include <utility>

bool ScanNotice::showProgressStep(int step, int count, const QString &label)
{
    if (count < 1) {
        return std::exchange(*this, {})._isShown;
    }
    if (!_scanTime.isValid()) {
        _scanTime.start();
    }
    _step = tr("Scanning %1 of %2").arg(step).arg(count);
    _label = label;
    _isShown = _isShown || _scanTime.elapsed() >= ShortestScanShown;
    return _isShown;
}
