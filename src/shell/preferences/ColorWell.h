// A button that shows a colour and lets the user choose another one, which counts while it is being
// chosen.

#pragma once

#include <QColor>
#include <QPointer>
#include <QToolButton>

class QColorDialog;

class ColorWell final : public QToolButton
{
    Q_OBJECT

public:
    // The title is that of the chooser, and the button's name for screen readers.
    explicit ColorWell(const QString &title, QWidget *parent = nullptr);

    const QColor &color() const { return _color; }
    // Announces nothing. A chooser that is open shows it too.
    void setColor(const QColor &color);
    // Whatever was chosen stays.
    void closeChooser();

Q_SIGNALS:
    // By the user.
    void colorChosen(const QColor &color);

protected:
    void changeEvent(QEvent *event) override;

private:
    void openChooser();
    void choose(const QColor &color);
    void updateSwatch();

    QString _title;
    QColor _color;
    QPointer<QColorDialog> _chooser;
};
