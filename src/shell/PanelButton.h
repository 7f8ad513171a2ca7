// The small round buttons of the panel: close and preferences.
//
// They leave the keyboard to the grid. Their pictures exist in black and in white, so that one of
// them can be told from the window; they are drawn as sharp as the screen is.

#pragma once

#include <QAbstractButton>
#include <QPixmap>

class PanelButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Kind { Close, Gear };

    explicit PanelButton(Kind kind, QWidget *parent = nullptr);

    void setIsBlack(bool isBlack);
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
    bool _isBlack = false;
    // For the ratio and the colour that it was last drawn with.
    QPixmap _picture;
};

// Whether white buttons would be lost on a window: one that is not to be seen, or a bright one.
bool needsBlackButtons(float winAlpha, const QColor &winColor);
