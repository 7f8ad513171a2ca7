// Another program from which a file, or data of the types that are its arguments, can be dragged: a
// window with the title "Drag Source" in the middle of the screen. Whether that was taken is one
// line of standard output: "taken" or "refused".

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace {

struct Source final : QWidget
{
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!event->buttons().testFlag(Qt::LeftButton)) {
            return;
        }
        auto *const drag = new QDrag(this);
        drag->setMimeData(new QMimeData);
        const QStringList types = QCoreApplication::arguments().mid(1);
        for (const QString &type : types) {
            drag->mimeData()->setData(type, "data");
        }
        if (types.isEmpty()) {
            drag->mimeData()->setUrls({ QUrl::fromLocalFile(QStringLiteral("/etc/hostname")) });
        }
        const Qt::DropAction action = drag->exec(Qt::CopyAction);
        std::puts(action == Qt::IgnoreAction ? "refused" : "taken");
        std::fflush(stdout);
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    Source source;
    source.setWindowTitle(QStringLiteral("Drag Source"));
    source.setWindowFlags(Qt::X11BypassWindowManagerHint);
    source.setGeometry(600, 300, 100, 100);
    source.show();
    return QApplication::exec();
}
