// Draws the program's icon at one size during the build:
//
//     ortu_icon_writer DRAWING.svg EDGE OUT.png
//
// The exit code is 1 when the drawing cannot be read or the picture cannot be written.

#include <QDebug>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int edge = arguments.value(2).toInt();
    if (arguments.size() != 4 || edge <= 0) {
        qWarning("usage: ortu_icon_writer DRAWING.svg EDGE OUT.png");
        return 1;
    }
    QSvgRenderer drawing(arguments[1]);
    if (!drawing.isValid()) {
        qWarning().noquote() << "cannot read" << arguments[1];
        return 1;
    }
    QImage picture(edge, edge, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        drawing.render(&painter);
    }
    if (!picture.save(arguments[3])) {
        qWarning().noquote() << "cannot write" << arguments[3];
        return 1;
    }
    return 0;
}
