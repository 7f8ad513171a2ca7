// The small round buttons of the panel: close and preferences.
//
// They leave the keyboard to the grid. Their pictures exist in black and in white, so that one of
// them can be told from the window; they are drawn as sharp as the screen is.

#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QPixmap>

// How the buttons look on a window.
struct PanelButtonLook
{
    PanelButtonLook() = default;
    // Black on a window that is not to be seen and on a bright one, otherwise white; the other one
    // of the two where that could not be told from the window.
    PanelButtonLook(float winAlpha, const QColor &winColor);

    bool operator==(const PanelButtonLook &) const = default;

    bool isBlack = false;
    // While the pointer is elsewhere.
    qreal restingOpacity = 0.75;
    // What has to lie behind them, transparent where the window will do.
    QColor plate = Qt::transparent;
};

class PanelButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Kind { Close, Gear };

    explicit PanelButton(Kind kind, QWidget *parent = nullptr);

    void setLook(const PanelButtonLook &look);
    // The picture's name among the images.
    QString imageName() const;
    QSize sizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void updateTexts();
    const QPixmap &picture();

    const Kind _kind;
    PanelButtonLook _look;
    // For the ratio and the colour that it was last drawn with.
    QPixmap _picture;
};
