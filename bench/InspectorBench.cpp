// The cost of the inspector following the focus: one owner change installs
// the new owner's mode and sizes the window for it.
#include <TarnCommon/KQInspectorFocusOwner.h>
#include <TarnCommon/KQInspectorMode.h>
#include <TarnCommon/KQInspectorWindow.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

#include <benchmark/benchmark.h>

namespace {

class BenchMode : public KQInspectorMode
{
public:
    BenchMode(bool resizable, QSize viewSize)
        : m_resizable(resizable)
        , m_viewSize(viewSize)
    {
    }

    bool isResizable() const override { return m_resizable; }
    QSizeF minSize() const override { return QSizeF(150, 100); }
    QSizeF maxSize() const override { return QSizeF(600, 500); }
    QString inspectorTitle() const override { return m_resizable ? QStringLiteral("Text") : QStringLiteral("Colour"); }

protected:
    void loadView() override
    {
        // A modest form, like a real inspector page.
        auto *view = new QWidget;
        auto *form = new QFormLayout(view);
        for (int row = 0; row < 6; ++row)
            form->addRow(new QLabel(QStringLiteral("Field %1").arg(row), view), new QLineEdit(view));
        view->resize(m_viewSize);
        setView(view);
    }

private:
    bool m_resizable;
    QSize m_viewSize;
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

void BM_InspectorModeSwitch(benchmark::State &state)
{
    const bool visible = state.range(0) != 0;
    KQInspectorWindow inspector;
    inspector.setHidesOnDeactivate(false);
    inspector.setGeometry(100, 100, 320, 240);
    if (visible)
        inspector.show();
    BenchMode resizable(true, QSize(300, 200));
    BenchMode fixed(false, QSize(260, 180));
    BenchOwner first(&resizable);
    BenchOwner second(&fixed);
    for (auto _ : state) {
        inspector.setFocusOwner(&first);
        inspector.setFocusOwner(&second);
    }
    state.SetItemsProcessed(state.iterations() * 2); // two switches per iteration
    inspector.setFocusOwner(nullptr);
    inspector.hide();
    QCoreApplication::processEvents();
}
BENCHMARK(BM_InspectorModeSwitch)->Arg(1)->Arg(0)->ArgName("visible");

} // namespace

#include "InspectorBench.moc"
