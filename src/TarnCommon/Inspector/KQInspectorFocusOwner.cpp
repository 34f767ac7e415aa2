#include <TarnCommon/KQInspectorFocusOwner.h>

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QMetaMethod>

KQInspectorFocusOwner::~KQInspectorFocusOwner() = default;

void KQInspectorFocusOwner::didGainFocusOfInspector(KQInspectorWindow *)
{
}

void KQInspectorFocusOwner::willLoseFocusOfInspector(KQInspectorWindow *)
{
}

void KQInspectorFocusOwner::didLoseFocusOfInspector(KQInspectorWindow *)
{
}

QObject *kq_inspectorFocusOwnerAlong(const QList<QObject *> &chain)
{
    static const QByteArrayView name("inspectorFocusOwner");
    for (QObject *candidate : chain) {
        const int index = kq_indexOfMethodNamed(candidate, name);
        if (index < 0)
            continue;
        const QMetaMethod method = candidate->metaObject()->method(index);
        // Any QObject pointer type will do as the answer, so the generic
        // return argument is filled through the method's own type name.
        KQAssertText("inspectorFocusOwner returns a QObject pointer",
                     method.parameterCount() == 0
                         && (method.returnMetaType().flags() & QMetaType::PointerToQObject),
                     nullptr);
        QObject *answer = nullptr;
        if (!method.invoke(candidate, Qt::DirectConnection,
                           QGenericReturnArgument(method.typeName(), &answer)))
            return nullptr;
        if (answer && !qobject_cast<KQInspectorFocusOwner *>(answer)) {
            ZLLogError("%s does not implement KQInspectorFocusOwner; the inspector ignores it",
                       answer->metaObject()->className());
            return nullptr;
        }
        return answer;
    }
    return nullptr;
}

QObject *kq_inspectorFocusOwner(QWidget *start)
{
    return kq_inspectorFocusOwnerAlong(kq_responderChain(start));
}
