#include "GalleryWindow.h"

#include "OutputCapture.h"

#include <QtCore/QDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>

GalleryWindow::GalleryWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_pages(GalleryPages::all())
{
    setWindowTitle(tr("TarnCommon Gallery"));

    auto *splitter = new QSplitter(this);
    m_pageList = new QListWidget(splitter);
    m_pageList->setMaximumWidth(180);
    m_stack = new QStackedWidget(splitter);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({170, 810});
    setCentralWidget(splitter);

    for (const GalleryPage &page : std::as_const(m_pages)) {
        m_pageList->addItem(page.title);
        QWidget *widget = page.create();
        widget->setObjectName(page.id);
        m_stack->addWidget(widget);
    }
    connect(m_pageList, &QListWidget::currentRowChanged, m_stack, &QStackedWidget::setCurrentIndex);

    auto *logDock = new QDockWidget(tr("Log"), this);
    logDock->setObjectName(QStringLiteral("log"));
    logDock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    m_log = new QPlainTextEdit(logDock);
    m_log->setReadOnly(true);
    m_log->setMaximumBlockCount(2000);
    m_log->setPlaceholderText(tr("Warnings, errors and assertion reports of the library appear here."));
    m_log->setMinimumHeight(110);
    logDock->setWidget(m_log);
    addDockWidget(Qt::BottomDockWidgetArea, logDock);
    connect(OutputCapture::instance(), &OutputCapture::textWritten, this, &GalleryWindow::appendLog);

    if (!m_pages.isEmpty())
        m_pageList->setCurrentRow(0);
    resize(980, 660);
}

int GalleryWindow::pageCount() const
{
    return m_pages.size();
}

void GalleryWindow::showPage(int index)
{
    m_pageList->setCurrentRow(index);
}

void GalleryWindow::appendLog(const QString &text)
{
    m_log->moveCursor(QTextCursor::End);
    m_log->insertPlainText(text);
    m_log->moveCursor(QTextCursor::End);
}

QStringList GalleryWindow::writeScreenshots(const QString &directory)
{
    QStringList written;
    if (!QDir().mkpath(directory))
        return written;
    const QDir dir(directory);
    auto save = [&](const QImage &image, const QString &name) {
        const QString path = dir.filePath(name + QStringLiteral(".png"));
        if (image.save(path))
            written.append(path);
    };
    for (int i = 0; i < m_pages.size(); ++i) {
        showPage(i);
        QApplication::processEvents();
        const QString base = QStringLiteral("%1-%2").arg(i + 1, 2, 10, QLatin1Char('0')).arg(m_pages[i].id);
        save(grab().toImage(), base);
        if (m_pages[i].screenshots) {
            const GalleryPage::NamedImages extras = m_pages[i].screenshots(m_stack->widget(i));
            for (const auto &[name, image] : extras)
                save(image, base + QLatin1Char('-') + name);
        }
    }
    return written;
}
