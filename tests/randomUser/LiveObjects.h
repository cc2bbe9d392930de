#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

/// Knows every QObject that has been made in its lifetime and is still there. One at a time.
class LiveObjects
{
public:
    LiveObjects();
    ~LiveObjects();
    LiveObjects(const LiveObjects &) = delete;
    LiveObjects &operator=(const LiveObjects &) = delete;

    template <typename T>
    QList<T *> all() const
    {
        QList<T *> list;
        for (QObject *object : objects()) {
            if (T *found = qobject_cast<T *>(object))
                list.append(found);
        }
        return list;
    }
    /// The class names of the data components and of their items that are left.
    QStringList leftovers() const;

private:
    static QList<QObject *> objects();
};
