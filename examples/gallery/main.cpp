#include "GalleryWindow.h"
#include "OutputCapture.h"

#include <QtCore/QCommandLineParser>
#include <TarnCommon/KQApplication.h>

int main(int argc, char *argv[])
{
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
