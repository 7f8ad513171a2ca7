// A page of a document, as large as on paper where the screen has room for that.

#pragma once

#include <QImage>
#include <QWidget>

class PagedDocument;

class PageView final : public QWidget
{
    Q_OBJECT

public:
    // The document outlives it. Shows the first page.
    explicit PageView(const PagedDocument &document, QWidget *parent = nullptr);

    // Counted from 0.
    int currentPage() const { return _page; }
    void goToPage(int page);

    QSize sizeHint() const override;

Q_SIGNALS:
    void pageChanged();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const PagedDocument &_document;
    int _page = 0;
    // Of the page, as it was painted last.
    QImage _image;
};
