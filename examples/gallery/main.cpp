#include "GalleryWindow.h"
#include "OutputCapture.h"

#include <TarnCommon/KQApplication.h>

#include <QtCore/QCommandLineParser>
#include <QtGui/QPalette>
#include <QtWidgets/QStyleFactory>

#include <cstring>

namespace {

QtMessageHandler s_defaultHandler = nullptr;

// Platform plug-ins without window management (offscreen) complain about
// every size hint; that is noise in the log panel, not the library's output.
void filterPlatformNoise(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.startsWith(QLatin1String("This plugin does not support")))
        return;
    s_defaultHandler(type, context, message);
}

// A dark theme as applications set one: Fusion with a dark palette.
QPalette darkPalette()
{
    QPalette palette;
    const QColor window(53, 53, 53), base(35, 35, 35), text(230, 230, 230), disabled(127, 127, 127);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, QColor(60, 60, 52));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, disabled);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, window);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::red);
    palette.setColor(QPalette::Light, window.lighter(150));
    palette.setColor(QPalette::Midlight, window.lighter(125));
    palette.setColor(QPalette::Mid, window.darker(120));
    palette.setColor(QPalette::Dark, QColor(25, 25, 25));
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::Link, QColor(42, 130, 218));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    return palette;
}

// The device pixel ratio must be chosen before the application exists.
void applyScaleOption(int argc, char *argv[])
{
    for (int i = 1; i < argc; ++i) {
        const char *value = nullptr;
        if (std::strcmp(argv[i], "--scale") == 0 && i + 1 < argc)
            value = argv[i + 1];
        else if (std::strncmp(argv[i], "--scale=", 8) == 0)
            value = argv[i] + 8;
        if (value)
            qputenv("QT_SCALE_FACTOR", value);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    s_defaultHandler = qInstallMessageHandler(&filterPlatformNoise);
    applyScaleOption(argc, argv);
    KQApplication application(argc, argv); // posts the events computed tooltips need
    QApplication::setOrganizationName(QStringLiteral("TarnCommon"));
    QApplication::setApplicationName(QStringLiteral("TarnCommon Gallery"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Demonstrates every component of TarnCommon."));
    parser.addHelpOption();
    const QCommandLineOption screenshots(QStringLiteral("screenshots"),
                                         QStringLiteral("Render every page as PNG files into <dir> and exit."),
                                         QStringLiteral("dir"));
    parser.addOption(screenshots);
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("Use a dark theme (Fusion with a dark palette)."));
    parser.addOption(dark);
    const QCommandLineOption scale(QStringLiteral("scale"),
                                   QStringLiteral("Render at device pixel ratio <factor>, for example 2."),
                                   QStringLiteral("factor"));
    parser.addOption(scale);
    parser.process(application);
    if (parser.isSet(scale) && parser.value(scale).toDouble() <= 0.0) {
        OutputCapture::instance()->printToTerminal(QStringLiteral("--scale needs a positive number\n"));
        return 2;
    }
    if (parser.isSet(dark)) {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(darkPalette());
    }

    OutputCapture::instance();
    GalleryWindow window;
    window.show();

    if (parser.isSet(screenshots)) {
        const QStringList files = window.writeScreenshots(parser.value(screenshots));
        for (const QString &file : files)
            OutputCapture::instance()->printToTerminal(file + QLatin1Char('\n'));
        return files.isEmpty() ? 1 : 0;
    }
    return application.exec();
}
