#include "LiveObjects.h"

#include "zelModelSupport/graphics/ZelGItem.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <QMutex>
#include <QSet>

// The table through which the toolkit tells tools of each object that comes and goes.
extern Q_DECL_IMPORT quintptr qtHookData[];

namespace {

enum HookIndex { AddObject = 3, RemoveObject = 4 };
using Hook = void (*)(QObject *);

QMutex mutex; // other threads make objects, too
QSet<QObject *> living;

void added(QObject *object)
{
    const QMutexLocker lock(&mutex);
    living.insert(object);
}

void removed(QObject *object)
{
    const QMutexLocker lock(&mutex);
    living.remove(object);
}

void setHooks(Hook add, Hook remove)
{
    qtHookData[AddObject] = reinterpret_cast<quintptr>(add);
    qtHookData[RemoveObject] = reinterpret_cast<quintptr>(remove);
}

} // namespace

LiveObjects::LiveObjects()
{
    living.clear();
    setHooks(added, removed);
}

LiveObjects::~LiveObjects()
{
    setHooks(nullptr, nullptr);
}

QStringList LiveObjects::leftovers() const
{
    QStringList names;
    for (QObject *object : objects()) {
        if (qobject_cast<Sdc *>(object) || qobject_cast<ZelGItem *>(object))
            names.append(QLatin1String(object->metaObject()->className()));
    }
    names.sort();
    return names;
}

QList<QObject *> LiveObjects::objects()
{
    const QMutexLocker lock(&mutex);
    return living.values();
}
