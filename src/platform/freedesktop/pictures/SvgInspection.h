// The thorough look at an SVG picture: parses all of it and weighs what the renderer would do with
// it.

#pragma once

#include "platform/freedesktop/pictures/SvgReferences.h"

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>

#include <vector>

class SvgInspection final
{
public:
    explicit SvgInspection(const QByteArray &svg);

    // Why the picture must not be rendered; empty when it may. To be asked once.
    QString refusal();

private:
    void startElement();
    void inspectAttribute(int element, QStringView tag, const QXmlStreamAttribute &attribute);
    void inspectEmbedded(QStringView reference);
    void inspectText();
    void noteDashes(QStringView text);
    void refuse(const QString &why);
    QString refusalOfTotals();

    const QByteArray _svg;
    QXmlStreamReader _xml;
    SvgReferences _references;
    // The elements that are open, outermost first.
    std::vector<int> _open;
    int _openTexts = 0;
    double _elements = 0;
    bool _isInStyle = false;
    qsizetype _styleLength = 0;
    double _styleRules = 0;
    double _shortestDashes = 0;
    qint64 _embeddedBytes = 0;
    QString _refusal;
};
