// The inspector page: three document windows of different kinds and the
// shared inspector following the focus between them.
#include "GalleryPage.h"

#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQInspectorFocusOwner.h>
#include <TarnCommon/KQInspectorMode.h>
#include <TarnCommon/KQInspectorWindow.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QStyle>
#include <QtWidgets/QVBoxLayout>

namespace {

// --- A text document: its inspector counts words and sets the font size; the
// user may resize it within limits.

class TextStatisticsMode : public KQInspectorMode
{
    Q_OBJECT

public:
    TextStatisticsMode(QPlainTextEdit *editor, QObject *parent)
        : KQInspectorMode(parent)
        , m_editor(editor)
    {
        connect(editor, &QPlainTextEdit::textChanged, this, &TextStatisticsMode::refresh);
    }

    QString inspectorTitle() const override { return tr("Text Inspector"); }
    QSizeF minSize() const override { return QSizeF(220, 140); }
    QSizeF maxSize() const override { return QSizeF(480, 360); }

    Q_INVOKABLE void modeDidShow() { refresh(); }

protected:
    void loadView() override
    {
        auto *view = new QWidget;
        auto *form = new QFormLayout(view);
        m_words = new QLabel(view);
        m_characters = new QLabel(view);
        m_lines = new QLabel(view);
        auto *fontSize = new QSpinBox(view);
        fontSize->setRange(8, 32);
        fontSize->setSuffix(tr(" pt"));
        fontSize->setValue(m_editor ? m_editor->font().pointSize() : 10);
        connect(fontSize, &QSpinBox::valueChanged, this, [this](int size) {
            if (!m_editor)
                return;
            QFont font = m_editor->font();
            font.setPointSize(size);
            m_editor->setFont(font);
        });
        form->addRow(tr("Words:"), m_words);
        form->addRow(tr("Characters:"), m_characters);
        form->addRow(tr("Lines:"), m_lines);
        form->addRow(tr("Font size:"), fontSize);
        view->resize(260, 160);
        setView(view);
        refresh();
    }

private:
    void refresh()
    {
        if (!m_editor || !m_words)
            return;
        const QString text = m_editor->toPlainText();
        m_words->setText(QString::number(text.split(QRegularExpression(QStringLiteral("\\s+")),
                                                    Qt::SkipEmptyParts).size()));
        m_characters->setText(QString::number(text.size()));
        m_lines->setText(QString::number(m_editor->blockCount()));
    }

    QPointer<QPlainTextEdit> m_editor;
    QPointer<QLabel> m_words;
    QPointer<QLabel> m_characters;
    QPointer<QLabel> m_lines;
};

// --- A colour swatch: its inspector has a fixed size and mixes the colour.

class Swatch : public QWidget
{
public:
    using QWidget::QWidget;
    QColor colour = QColor(70, 130, 180);

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect().adjusted(12, 12, -12, -12), colour);
    }
};

class ColourMode : public KQInspectorMode
{
    Q_OBJECT

public:
    ColourMode(Swatch *swatch, QObject *parent)
        : KQInspectorMode(parent)
        , m_swatch(swatch)
    {
    }

    QString inspectorTitle() const override
    {
        return m_swatch ? tr("Colour Inspector \u2014 %1").arg(m_swatch->colour.name()) : tr("Colour Inspector");
    }
    bool isResizable() const override { return false; }

protected:
    void loadView() override
    {
        auto *view = new QWidget;
        auto *form = new QFormLayout(view);
        const QColor start = m_swatch ? m_swatch->colour : QColor(Qt::gray);
        const int values[] = {start.red(), start.green(), start.blue()};
        const QString names[] = {tr("Red:"), tr("Green:"), tr("Blue:")};
        for (int channel = 0; channel < 3; ++channel) {
            auto *slider = new QSlider(Qt::Horizontal, view);
            slider->setRange(0, 255);
            slider->setValue(values[channel]);
            connect(slider, &QSlider::valueChanged, this, [this, channel](int value) { setChannel(channel, value); });
            form->addRow(names[channel], slider);
        }
        view->resize(280, 120);
        setView(view);
    }

private:
    void setChannel(int channel, int value)
    {
        if (!m_swatch)
            return;
        QColor colour = m_swatch->colour;
        if (channel == 0)
            colour.setRed(value);
        else if (channel == 1)
            colour.setGreen(value);
        else
            colour.setBlue(value);
        m_swatch->colour = colour;
        m_swatch->update();
        Q_EMIT inspectorTitleChanged(); // the title names the colour
    }

    QPointer<Swatch> m_swatch;
};

// --- The window controller of a document window: it drives the inspector
// while its window has the focus, and keeps its mode for the next time.

class DocumentController : public QObject, public KQInspectorFocusOwner
{
    Q_OBJECT
    Q_INTERFACES(KQInspectorFocusOwner)

public:
    using ModeFactory = std::function<KQInspectorMode *(QObject *parent)>;

    DocumentController(QWidget *window, ModeFactory factory)
        : QObject(window)
        , m_factory(std::move(factory))
    {
        kq_setWindowController(window, this);
    }

    Q_INVOKABLE QObject *inspectorFocusOwner() { return this; }

    KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
    {
        if (!m_mode)
            m_mode = m_factory(this);
        return m_mode.data();
    }

private:
    ModeFactory m_factory;
    QPointer<KQInspectorMode> m_mode;
};

struct DocumentWindows
{
    QPointer<QWidget> notes;
    QPointer<QWidget> colour;
    QPointer<QWidget> scratch;
};

// A top-level document window showing content; a file path gives it the
// document icon the empty mode shows.
QWidget *makeDocumentWindow(QWidget *page, const QString &title, const QString &filePath, QRect geometry)
{
    auto *window = new QWidget(page, Qt::Window);
    window->setWindowTitle(title);
    if (!filePath.isEmpty()) {
        window->setWindowFilePath(filePath);
        window->setWindowIcon(window->style()->standardIcon(QStyle::SP_FileIcon));
    }
    new QVBoxLayout(window);
    window->setGeometry(geometry);
    return window;
}

DocumentWindows makeWindows(QWidget *page)
{
    DocumentWindows windows;

    windows.notes = makeDocumentWindow(page, QObject::tr("Notes.txt"), QStringLiteral("/home/user/Notes.txt"),
                                       QRect(80, 120, 360, 220));
    auto *editor = new QPlainTextEdit(windows.notes);
    editor->setPlainText(QObject::tr("The inspector follows the focus.\nClick another window and watch it change."));
    windows.notes->layout()->addWidget(editor);
    new DocumentController(windows.notes,
                           [editor](QObject *parent) { return new TextStatisticsMode(editor, parent); });

    windows.colour = makeDocumentWindow(page, QObject::tr("Swatch"), QString(), QRect(470, 120, 240, 200));
    auto *swatch = new Swatch(windows.colour);
    windows.colour->layout()->addWidget(swatch);
    new DocumentController(windows.colour, [swatch](QObject *parent) { return new ColourMode(swatch, parent); });

    windows.scratch = makeDocumentWindow(page, QObject::tr("Scratch pad"),
                                         QStringLiteral("/home/user/Scratch pad.txt"), QRect(200, 380, 260, 140));
    auto *label = new QLabel(QObject::tr("Nothing here drives the inspector:\nit shows its empty mode."),
                             windows.scratch);
    label->setAlignment(Qt::AlignCenter);
    windows.scratch->layout()->addWidget(label);
    return windows;
}

QWidget *createInspectorPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    auto *intro = new QLabel(QObject::tr(
        "<h3>Inspector</h3>"
        "<p>One floating inspector serves every window. Each document window's controller "
        "hands it a mode when its window gets the focus: <b>Notes.txt</b> a text inspector that "
        "can be resized within limits, <b>Swatch</b> a colour inspector of fixed size. "
        "<b>Scratch pad</b> has no controller, so the inspector shows its empty mode naming "
        "the window. The inspector keeps its top edge when it changes size and comes back "
        "where you left it after a restart.</p>"),
        page);
    intro->setWordWrap(true);
    layout->addWidget(intro);

    const DocumentWindows windows = makeWindows(page);
    page->setProperty("notesWindow", QVariant::fromValue<QObject *>(windows.notes.data()));
    page->setProperty("colourWindow", QVariant::fromValue<QObject *>(windows.colour.data()));
    page->setProperty("scratchWindow", QVariant::fromValue<QObject *>(windows.scratch.data()));

    auto *buttons = new QHBoxLayout;
    auto *open = new QPushButton(QObject::tr("Open the document windows"), page);
    auto *show = new QPushButton(QObject::tr("Show the inspector"), page);
    buttons->addWidget(open);
    buttons->addWidget(show);
    buttons->addStretch();
    layout->addLayout(buttons);
    QObject::connect(open, &QPushButton::clicked, page, [windows] {
        for (QWidget *window : {windows.scratch.data(), windows.colour.data(), windows.notes.data()}) {
            if (window) {
                window->show();
                window->raise();
            }
        }
        if (windows.notes)
            windows.notes->activateWindow();
    });
    QObject::connect(show, &QPushButton::clicked, page, [] { KQInspectorWindow::sharedInspectorWindow()->orderFont(); });

    auto *status = new QLabel(page);
    status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(status);
    layout->addStretch();
    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    const auto describe = [status, inspector] {
        QObject *owner = inspector->focusOwner();
        const QString who = owner ? owner->parent()->property("windowTitle").toString() : QObject::tr("none");
        status->setText(QObject::tr("Focus owner: %1 \u2014 inspector title: \u201c%2\u201d").arg(who, inspector->windowTitle()));
    };
    QObject::connect(inspector, &KQInspectorWindow::modeChanged, status, describe);
    QObject::connect(inspector, &QWidget::windowTitleChanged, status, describe);
    describe();
    return page;
}

// A window's picture under a title bar of its own, since grabbing a widget
// leaves the window manager's decoration out.
QImage withTitleBar(QWidget *window)
{
    const QImage content = window->grab().toImage();
    const int bar = 24;
    QImage image(content.width(), content.height() + bar, QImage::Format_RGB32);
    image.fill(window->palette().color(QPalette::Mid));
    QPainter painter(&image);
    painter.setPen(window->palette().color(QPalette::WindowText));
    painter.drawText(QRect(0, 0, image.width(), bar), Qt::AlignCenter, window->windowTitle());
    painter.drawImage(0, bar, content);
    return image;
}

// The inspector as each window sees it, for the screenshots.
GalleryPage::NamedImages inspectorScreenshots(QWidget *page)
{
    GalleryPage::NamedImages images;
    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    inspector->orderFont();
    const std::pair<const char *, const char *> shots[] = {
        {"notesWindow", "text-mode"},
        {"colourWindow", "colour-mode"},
        {"scratchWindow", "empty-mode"},
    };
    for (const auto &[property, name] : shots) {
        auto *window = qobject_cast<QWidget *>(page->property(property).value<QObject *>());
        if (!window)
            continue;
        window->show();
        window->activateWindow();
        QApplication::processEvents();
        inspector->updateFocusOwner(window);
        QApplication::processEvents();
        images.append({QString::fromLatin1(name), withTitleBar(inspector)});
        images.append({QString::fromLatin1(name) + QStringLiteral("-window"), withTitleBar(window)});
    }
    for (const char *property : {"notesWindow", "colourWindow", "scratchWindow"}) {
        if (auto *window = qobject_cast<QWidget *>(page->property(property).value<QObject *>()))
            window->hide();
    }
    inspector->orderOut();
    return images;
}

const bool registered = GalleryPages::add({10, QStringLiteral("inspector"), QObject::tr("Inspector"),
                                           &createInspectorPage, &inspectorScreenshots});

} // namespace

#include "InspectorPage.moc"
