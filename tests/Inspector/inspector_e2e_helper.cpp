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
    failures += condition ? 0 : 1;
}

bool waitFor(const std::function<bool()> &condition) { return QTest::qWaitFor(condition, 10000); }

int firstRun(QFile &frameFile)
{
    KQSettings::enableTestMode(true);
    QStringList log;
    RecordingMode alphaMode(QStringLiteral("alpha"), &log), betaMode(QStringLiteral("beta"), &log);
    alphaMode.setTitle(QStringLiteral("Alpha Inspector"));
    betaMode.setTitle(QStringLiteral("Beta Inspector"));
    betaMode.setResizable(false);
    betaMode.setViewSize(QSize(240, 130));
    RecordingOwner alphaOwner(QStringLiteral("A"), &log, &alphaMode), betaOwner(QStringLiteral("B"), &log, &betaMode);
    DocumentWindow alpha(&alphaOwner), beta(&betaOwner);
    alpha.setGeometry(40, 60, 320, 200);
    beta.setGeometry(420, 60, 320, 200);
    alpha.show();
    beta.show();
    check(QTest::qWaitForWindowExposed(&alpha) && QTest::qWaitForWindowExposed(&beta), "document windows mapped");
    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    inspector->orderFont();
    check(QTest::qWaitForWindowExposed(inspector), "inspector mapped");
    const auto follows = [&](QWidget *window, KQInspectorMode *mode, const char *title) {
        window->raise();
        window->activateWindow();
        return waitFor([&] {
            return QApplication::activeWindow() == window && inspector->mode() == mode
                   && inspector->windowTitle() == QLatin1String(title);
        });
    };
    for (int round = 0; round < 2; ++round) {
        check(follows(&alpha, &alphaMode, "Alpha Inspector"), "alpha active: inspector shows the alpha mode and title");
        check(inspector->focusOwner() == &alphaOwner, "alpha's owner owns the inspector");
        check(follows(&beta, &betaMode, "Beta Inspector"), "beta active: inspector shows the beta mode and title");
        check(inspector->geometry().size() == QSize(240, 130), "beta's fixed-size mode sizes the inspector");
        check(alphaMode.view()->parentWidget() == nullptr, "alpha's view left the inspector");
    }
    check(log.contains(QStringLiteral("alpha:didShow")) && log.contains(QStringLiteral("alpha:willHide")),
          "optional hooks were sent");

    const QPoint place(333, 222); // where the user leaves it
    inspector->move(place);
    check(waitFor([&] { return inspector->frameGeometry().topLeft() == place; }), "inspector moved by the window system");
    const QRect frame = inspector->frameGeometry();
    check(frameFile.open(QIODevice::WriteOnly), "frame file written");
    frameFile.write(QByteArray::number(frame.x()) + ' ' + QByteArray::number(frame.y()) + ' '
                    + QByteArray::number(frame.width()) + ' ' + QByteArray::number(frame.height()));
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec(); // quitting saves the frame
    return failures;
}

int secondRun(QFile &frameFile)
{
    KQSettings::enableTestMode(false);
    check(frameFile.open(QIODevice::ReadOnly), "the first run left its frame");
    const QList<QByteArray> numbers = frameFile.readAll().split(' ');
    check(numbers.size() == 4, "four numbers");
    if (numbers.size() != 4)
        return failures;
    const QRect expected(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt());
    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    check(inspector->frameGeometry() == expected, "the restarted inspector has the saved frame");
    inspector->orderFont();
    check(QTest::qWaitForWindowExposed(inspector), "inspector mapped");
    check(waitFor([&] { return inspector->frameGeometry().topLeft() == expected.topLeft(); }), "and is shown there");
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
    QFile frameFile(arguments[2]);
    const int result = arguments[1] == QLatin1String("--first") ? firstRun(frameFile) : secondRun(frameFile);
    std::printf("%s\n", result == 0 ? "PASSED" : "FAILED");
    return result == 0 ? 0 : 1;
}
