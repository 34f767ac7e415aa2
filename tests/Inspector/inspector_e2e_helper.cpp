// End-to-end check of the shared inspector with real windows under an X
// server, run twice by inspector_e2e.sh:
//   --first <file>   two document windows are activated in turn and the
//                    inspector's title and mode must follow; the inspector is
//                    then moved and the process quits, which saves its frame
//                    (written to <file> for the second run).
//   --second <file>  a new process: the shared inspector must come back with
//                    the frame from <file>.
#include "InspectorTestSupport.h"

#include <TarnCommon/KQInspectorWindow.h>
#include <TarnCommon/KQSettings.h>

#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace {

int failures = 0;

void check(bool condition, const char *what)
{
    std::printf("%s: %s\n", condition ? "ok  " : "FAIL", what);
    std::fflush(stdout);
    if (!condition)
        ++failures;
}

bool activateAndFollow(QWidget *window, KQInspectorWindow *inspector, KQInspectorMode *mode, const QString &title)
{
    window->raise();
    window->activateWindow();
    return QTest::qWaitFor(
        [&] {
            return QApplication::activeWindow() == window && inspector->mode() == mode
                   && inspector->windowTitle() == title;
        },
        10000);
}

int firstRun(const QString &frameFile)
{
    KQSettings::enableTestMode(true);
    QStringList log;
    RecordingMode alphaMode(QStringLiteral("alpha"), &log);
    alphaMode.setTitle(QStringLiteral("Alpha Inspector"));
    RecordingMode betaMode(QStringLiteral("beta"), &log);
    betaMode.setTitle(QStringLiteral("Beta Inspector"));
    betaMode.setResizable(false);
    betaMode.setViewSize(QSize(240, 130));
    RecordingOwner alphaOwner(QStringLiteral("A"), &log, &alphaMode);
    RecordingOwner betaOwner(QStringLiteral("B"), &log, &betaMode);
    DocumentWindow alpha(&alphaOwner);
    alpha.setWindowTitle(QStringLiteral("Alpha document"));
    alpha.setGeometry(40, 60, 320, 200);
    DocumentWindow beta(&betaOwner);
    beta.setWindowTitle(QStringLiteral("Beta document"));
    beta.setGeometry(420, 60, 320, 200);
    alpha.show();
    beta.show();
    check(QTest::qWaitForWindowExposed(&alpha) && QTest::qWaitForWindowExposed(&beta), "document windows mapped");

    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    inspector->orderFont();
    check(QTest::qWaitForWindowExposed(inspector), "inspector mapped");

    for (int round = 0; round < 2; ++round) {
        check(activateAndFollow(&alpha, inspector, &alphaMode, QStringLiteral("Alpha Inspector")),
              "alpha active: inspector shows the alpha mode and title");
        check(inspector->focusOwner() == &alphaOwner, "alpha's owner owns the inspector");
        check(activateAndFollow(&beta, inspector, &betaMode, QStringLiteral("Beta Inspector")),
              "beta active: inspector shows the beta mode and title");
        check(inspector->geometry().size() == QSize(240, 130), "beta's fixed-size mode sizes the inspector");
        check(alphaMode.view()->parentWidget() == nullptr, "alpha's view left the inspector");
    }
    check(log.contains(QStringLiteral("alpha:didShow")) && log.contains(QStringLiteral("alpha:willHide")),
          "optional hooks were sent");

    // Where the user leaves it.
    const QPoint place(333, 222);
    inspector->move(place);
    check(QTest::qWaitFor([&] { return inspector->frameGeometry().topLeft() == place; }, 10000),
          "inspector moved by the window system");
    const QRect frame = inspector->frameGeometry();
    QFile file(frameFile);
    if (file.open(QIODevice::WriteOnly))
        file.write(QStringLiteral("%1 %2 %3 %4\n").arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height()).toLatin1());
    std::printf("saved frame %d %d %d %d\n", frame.x(), frame.y(), frame.width(), frame.height());

    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec(); // quitting saves the frame
    return failures;
}

int secondRun(const QString &frameFile)
{
    KQSettings::enableTestMode(false);
    QFile file(frameFile);
    check(file.open(QIODevice::ReadOnly), "the first run left its frame");
    const QList<QByteArray> numbers = file.readAll().simplified().split(' ');
    check(numbers.size() == 4, "four numbers");
    if (numbers.size() != 4)
        return failures;
    const QRect expected(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt());

    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    std::printf("restored frame %d %d %d %d\n", inspector->frameGeometry().x(), inspector->frameGeometry().y(),
                inspector->frameGeometry().width(), inspector->frameGeometry().height());
    check(inspector->frameGeometry() == expected, "the restarted inspector has the saved frame");
    inspector->orderFont();
    check(QTest::qWaitForWindowExposed(inspector), "inspector mapped");
    check(QTest::qWaitFor([&] { return inspector->frameGeometry().topLeft() == expected.topLeft(); }, 10000),
          "and is shown there");
    return failures;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("TarnCommon"));
    QApplication::setApplicationName(QStringLiteral("tarn-inspector-e2e"));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: %s --first|--second <frame file>\n", argv[0]);
        return 2;
    }
    const int result = arguments[1] == QLatin1String("--first") ? firstRun(arguments[2]) : secondRun(arguments[2]);
    std::printf("%s\n", result == 0 ? "PASSED" : "FAILED");
    return result == 0 ? 0 : 1;
}
