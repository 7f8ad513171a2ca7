#include "shell/ScanProgress.h"

#include "icons/ProgramImages.h"
#include "platform/TaskBarProgress.h"
#include "shell/IconProgress.h"

#include <QApplication>
#include <QWidget>

namespace {

// Between two pictures, in milliseconds.
constexpr int progressInterval = 100;
constexpr QSize iconSize(128, 128);

} // namespace

void ScanProgress::show(int step, int count)
{
    if (_lastProgress.isValid() && !_lastProgress.hasExpired(progressInterval)) {
        return;
    }
    _lastProgress.start();
    _taskBar.show(step, count);
    static const QImage blank = ProgramImages::picture(QStringLiteral("ortu_icon_blank"), iconSize);
    _window.setWindowIcon(QPixmap::fromImage(IconProgress::progressIcon(blank, step, count)));
}

void ScanProgress::end()
{
    if (_lastProgress.isValid()) {
        _lastProgress.invalidate();
        _taskBar.end();
        _window.setWindowIcon(QApplication::windowIcon());
    }
}
