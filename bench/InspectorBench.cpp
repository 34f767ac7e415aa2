// The cost of the inspector following the focus: one owner change installs
// the new owner's mode and sizes the window for it. Its peers swap the
// widget of a floating QDockWidget and the page of a QStackedWidget.
#include "BenchPairs.h"

#include <TarnCommon/KQInspectorFocusOwner.h>
#include <TarnCommon/KQInspectorMode.h>
#include <TarnCommon/KQInspectorWindow.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QStackedWidget>

#include <benchmark/benchmark.h>

#include <string>

namespace {

// A form of rows label-and-field rows, like a real inspector page.
QWidget *makeForm(int rows, QSize size)
{
    auto *view = new QWidget;
    auto *form = new QFormLayout(view);
    for (int row = 0; row < rows; ++row)
        form->addRow(new QLabel(QStringLiteral("Field %1").arg(row), view), new QLineEdit(view));
    view->resize(size);
    return view;
}

class BenchMode : public KQInspectorMode
{
public:
    BenchMode(bool resizable, QSize viewSize, int rows)
        : m_resizable(resizable)
        , m_viewSize(viewSize)
        , m_rows(rows)
    {
    }

    bool isResizable() const override { return m_resizable; }
    QSizeF minSize() const override { return QSizeF(150, 100); }
    QSizeF maxSize() const override { return QSizeF(600, 500); }
    QString inspectorTitle() const override { return m_resizable ? QStringLiteral("Text") : QStringLiteral("Colour"); }

protected:
    void loadView() override { setView(makeForm(m_rows, m_viewSize)); }

private:
    bool m_resizable;
    QSize m_viewSize;
    int m_rows;
};

class BenchOwner : public QObject, public KQInspectorFocusOwner
{
    Q_OBJECT
    Q_INTERFACES(KQInspectorFocusOwner)

public:
    explicit BenchOwner(KQInspectorMode *mode)
        : m_mode(mode)
    {
    }
    KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override { return m_mode; }

private:
    KQInspectorMode *m_mode;
};

// The size is the rows per page; each runs with the window shown and hidden.
void inspectorModeSwitch(benchmark::State &state, bool visible)
{
    const int rows = int(state.range(0));
    KQInspectorWindow inspector;
    inspector.setHidesOnDeactivate(false);
    inspector.setGeometry(100, 100, 320, 240);
    if (visible)
        inspector.show();
    BenchMode resizable(true, QSize(300, 200), rows);
    BenchMode fixed(false, QSize(260, 180), rows);
    BenchOwner first(&resizable);
    BenchOwner second(&fixed);
    QCoreApplication::processEvents();
    int i = 0;
    for (auto _ : state) {
        inspector.setFocusOwner((++i & 1) ? &first : &second);
        TarnBench::settle();
    }
    state.SetComplexityN(rows);
    inspector.setFocusOwner(nullptr);
    inspector.hide();
    QCoreApplication::processEvents();
}

// A floating dock of a main window whose content is set to one of two forms.
void dockWidgetSwap(benchmark::State &state, bool visible)
{
    const int rows = int(state.range(0));
    QMainWindow window;
    window.setCentralWidget(new QWidget);
    auto *dock = new QDockWidget(QStringLiteral("Inspector"), &window);
    window.addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->setFloating(true);
    dock->setGeometry(100, 100, 320, 240);
    QWidget *forms[] = {makeForm(rows, QSize(300, 200)), makeForm(rows, QSize(260, 180))};
    for (QWidget *form : forms)
        form->setParent(dock);
    dock->setWidget(forms[0]);
    if (visible)
        dock->show();
    QCoreApplication::processEvents();
    int i = 0;
    for (auto _ : state) {
        dock->setWidget(forms[++i & 1]);
        TarnBench::settle();
    }
    state.SetComplexityN(rows);
}
void stackedWidgetSwitch(benchmark::State &state, bool visible)
{
    const int rows = int(state.range(0));
    QStackedWidget stack(nullptr);
    stack.setWindowFlags(Qt::Tool);
    stack.setGeometry(100, 100, 320, 240);
    stack.addWidget(makeForm(rows, QSize(300, 200)));
    stack.addWidget(makeForm(rows, QSize(260, 180)));
    if (visible)
        stack.show();
    QCoreApplication::processEvents();
    int i = 0;
    for (auto _ : state) {
        stack.setCurrentIndex(++i & 1);
        TarnBench::settle();
    }
    state.SetComplexityN(rows);
}

[[maybe_unused]] const int registered = [] {
    for (bool visible : {true, false}) {
        const std::string variant = visible ? "/visible:1" : "/visible:0";
        TarnBench::registerSized("BM_InspectorModeSwitch" + variant, "rows", {6, 60},
                                 [visible](benchmark::State &state) { inspectorModeSwitch(state, visible); });
        TarnBench::registerSized("BM_QDockWidgetSwap" + variant, "rows", {6, 60},
                                 [visible](benchmark::State &state) { dockWidgetSwap(state, visible); });
        TarnBench::registerSized("BM_QStackedWidgetSwitch" + variant, "rows", {6, 60},
                                 [visible](benchmark::State &state) { stackedWidgetSwitch(state, visible); });
    }
    return 0;
}();
TARN_BENCH_PAIR("inspector mode switch", BM_InspectorModeSwitch, BM_QDockWidgetSwap);
TARN_BENCH_PAIR("inspector mode switch", BM_InspectorModeSwitch, BM_QStackedWidgetSwitch);

} // namespace

#include "InspectorBench.moc"
