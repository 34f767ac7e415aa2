// One run of an application holding a collapsible list with an autosave
// name. tst_collapsible starts it several times:
//   --clear            start from empty settings
//   --collapse A,C     collapse those views, then quit through the event loop
//   --print            print the titles of the views collapsed after loading
#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQSettings.h>

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("TarnCommonTests"));
    QApplication::setApplicationName(QStringLiteral("CollapsibleRestart"));
    const QStringList arguments = QApplication::arguments();
    KQSettings::enableTestMode(arguments.contains(QStringLiteral("--clear")));

    // Never deleted on purpose: only the exit hook can save the state of a
    // --collapse run, which is what the test is about.
    auto *list = new KQCollapsibleListView(QRect(0, 0, 200, 400));
    for (const char *title : {"A", "B", "C"}) {
        auto *content = new QWidget;
        content->resize(200, 50);
        list->addCollapsableView(new KQCollapsibleView(QString::fromLatin1(title), content, true, false));
    }
    list->setAutosaveName(QStringLiteral("RestartList"));

    const qsizetype collapse = arguments.indexOf(QStringLiteral("--collapse"));
    if (collapse >= 0 && collapse + 1 < arguments.size()) {
        const QStringList titles = arguments.at(collapse + 1).split(QLatin1Char(','));
        for (KQCollapsibleView *view : list->collapsableViews())
            view->setCollapsed(titles.contains(view->title()), false);
        QTimer::singleShot(0, &application, &QCoreApplication::quit);
        return application.exec();
    }

    if (arguments.contains(QStringLiteral("--print"))) {
        QStringList collapsed;
        for (const KQCollapsibleView *view : list->collapsableViews()) {
            if (view->isCollapsed())
                collapsed.append(view->title());
        }
        std::printf("collapsed: %s\n", qPrintable(collapsed.join(QLatin1Char(','))));
    }
    delete list;
    return 0;
}
