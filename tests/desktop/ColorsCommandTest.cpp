// The real program measuring pictures and applications.

#include "desktop/ProgramRunner.h"

#include <QColor>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>

class ColorsCommandTest : public TestCase
{
    Q_OBJECT

    static QImage filled(
        const QSize &size, const QColor &color, QImage::Format format = QImage::Format_ARGB32)
    {
        QImage image(size, format);
        image.fill(color);
        return image;
    }

private Q_SLOTS:
    void pictures_areMeasuredAsTheyAre()
    {
        write(u"large.png"_s, filled({ 256, 64 }, Qt::red));
        write(u"deep.png"_s, filled({ 2, 2 }, QColor(0, 0, 255, 128), QImage::Format_RGBA64));
        write(u"none.png"_s, filled({ 5, 5 }, Qt::transparent));
        _runner.write(u"drawn.svg"_s,
            "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 4 4'>"
            "<rect width='4' height='4' fill='#ff0000'/></svg>");
        const auto result = run({ u"large.png"_s, u"deep.png"_s, u"none.png"_s, u"drawn.svg"_s });
        QCOMPARE(summary(objects(result)),
            u"large.png %1 | deep.png 512 | none.png | drawn.svg %2"_s.arg(128 * 32 * 255)
                .arg(64 * 64 * 255));
        QVERIFY(
            std::abs(objects(result)[0][u"colorSortValue"_s].toDouble() - 12.1744 / 360) < 1e-6);
        const auto small =
            run({ u"large.png"_s, u"--size"_s, u"2"_s, u"--gray-threshold"_s, u"1"_s });
        QCOMPARE(summary(objects(small)), u"large.png 510"_s);
    }

    void applications_areMeasuredByTheirIcons()
    {
        write(u"icon.png"_s, filled({ 16, 16 }, Qt::green));
        _runner.writeEntry(u"shown"_s, "Icon=" + _runner.path(u"icon.png"_s).toUtf8() + "\n");
        _runner.writeEntry(u"bare"_s);
        const auto result = run({ u"apps/shown.desktop"_s, u"--set"_s, u"maximumIconSize=32"_s });
        QCOMPARE(summary(objects(result)), u"apps/shown.desktop %1"_s.arg(32 * 32 * 255));
        const auto without = run({ u"apps/bare.desktop"_s });
        QVERIFY(without.exitCode == 1 && without.errorLines.size() == 1);
    }

    void aFileThatFails_isReported_andTheOthersGoOn()
    {
        write(u"good \"ä\".png"_s, filled({ 2, 2 }, Qt::white));
        _runner.write(u"text.png"_s, "no picture");
        write(u"cut.png"_s, filled({ 64, 64 }, Qt::red));
        _runner.write(u"cut.png"_s, _runner.read(u"cut.png"_s).chopped(20));
        const auto result =
            run({ u"text.png"_s, u"absent.png"_s, u"cut.png"_s, u"apps"_s, u"good \"ä\".png"_s });
        QCOMPARE(result.exitCode, 1);
        const QList<QJsonObject> lines = objects(result);
        QCOMPARE(lines.size(), 5);
        QStringList errors;
        for (const QJsonObject &line : lines.first(4)) {
            errors +=
                u"ortu: "_s + line[u"file"_s].toString() + u": "_s + line[u"error"_s].toString();
        }
        QCOMPARE(result.errorLines, errors);
        QCOMPARE(summary(lines.mid(4)), u"good \"ä\".png 1020"_s);
    }

    void theSheet_standsInOrder()
    {
        const QStringList colors { u"#0000ff"_s, u"#ff0000"_s, u"#00ff00"_s };
        QStringList files;
        for (const QString &color : colors) {
            files.append(color + u".png"_s);
            write(files.last(), filled({ 64, 64 }, QColor(color)));
        }
        const QString sheet = _runner.path(u"sheet.png"_s);
        QCOMPARE(run(files + QStringList { u"--sheet"_s, sheet }).exitCode, 0);
        const QImage image(sheet);
        QStringList seen;
        // Each colour fills a square icon and, beside it, the ring and the pie in it.
        for (int i = 0; i < image.width() * image.height(); ++i) {
            const QString name = image.pixelColor(i % image.width(), i / image.width()).name();
            if (colors.contains(name) && !seen.contains(name)) {
                seen.append(name);
            }
        }
        QCOMPARE(seen.join(u' '), u"#ff0000 #00ff00 #0000ff"_s);

        QCOMPARE(run({ u"absent.png"_s, u"--sheet"_s, sheet }).exitCode, 1);
        QCOMPARE(QImage(sheet), image);
    }

private:
    void write(const QString &name, const QImage &image) const
    {
        QVERIFY(image.save(_runner.path(name), "PNG"));
    }
    // Files are named as they lie in the home of the test.
    ProgramRunner::Result run(const QStringList &arguments) const
    {
        return _runner.run(
            QStringList { u"--colors"_s, u"--json"_s } + arguments, _runner.path(u"."_s));
    }
    static QList<QJsonObject> objects(const ProgramRunner::Result &result)
    {
        QList<QJsonObject> objects;
        for (const QByteArray &line : result.output.trimmed().split('\n')) {
            objects.append(QJsonDocument::fromJson(line).object());
        }
        return objects;
    }
    // Every file with the counts of its colours.
    static QString summary(const QList<QJsonObject> &lines)
    {
        QStringList files;
        for (const QJsonObject &line : lines) {
            files.append(line[u"file"_s].toString());
            const QJsonArray colors = line[u"colors"_s].toArray();
            for (const QJsonValue &color : colors) {
                files.last() += u' ' + QString::number(color[u"count"_s].toInteger());
            }
        }
        return files.join(u" | "_s);
    }

    ProgramRunner _runner;
};

QTEST_GUILESS_MAIN(ColorsCommandTest)
#include "ColorsCommandTest.moc"
