#include "platform/DesignerNotify.h"

#include <QHash>
#include <QObject>

namespace {

QHash<const QObject*, IDesignerNotify*>& Roots() {
    static QHash<const QObject*, IDesignerNotify*> roots;
    return roots;
}

} // namespace

void SetDesignRoot(QObject* ARoot, IDesignerNotify* ANotify) {
    if (!Roots().contains(ARoot))
        QObject::connect(ARoot, &QObject::destroyed, [ARoot] { Roots().remove(ARoot); });
    Roots().insert(ARoot, ANotify);
}

void ClearDesignRoot(QObject* ARoot) { Roots().remove(ARoot); }

QObject* ComponentOwner(const QObject* AComponent) {
    return Roots().contains(AComponent) ? nullptr : AComponent->parent();
}

bool IsDesigning(const QObject* AComponent) {
    for (const QObject* object = AComponent; object; object = object->parent()) {
        if (Roots().contains(object))
            return true;
    }
    return false;
}

IDesignerNotify* DesignerOfRoot(const QObject* ARoot) { return Roots().value(ARoot, nullptr); }
