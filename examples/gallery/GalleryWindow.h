#pragma once

#include "GalleryPage.h"

#include <QtWidgets/QMainWindow>

class QListWidget;
class QPlainTextEdit;
class QStackedWidget;

// The gallery's main window: the page list on the left, the current page on
// the right and the library's log output underneath.
class GalleryWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit GalleryWindow(QWidget *parent = nullptr);

    int pageCount() const;
    void showPage(int index);
    // Renders every page (and its extra pictures) as PNG files into directory;
    // answers the files written, or an empty list on failure.
    QStringList writeScreenshots(const QString &directory);

private:
    void appendLog(const QString &text);

    QList<GalleryPage> m_pages;
    QListWidget *m_pageList = nullptr;
    QStackedWidget *m_stack = nullptr;
    QPlainTextEdit *m_log = nullptr;
};
