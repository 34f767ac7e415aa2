#include "GalleryWindow.h"
#include "OutputCapture.h"

#include <TarnCommon/KQApplication.h>

#include <QtCore/QCommandLineParser>

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

} // namespace

int main(int argc, char *argv[])
{
    s_defaultHandler = qInstallMessageHandler(&filterPlatformNoise);
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
    parser.process(application);

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
