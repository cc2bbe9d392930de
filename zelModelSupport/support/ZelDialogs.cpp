#include "zelModelSupport/support/ZelDialogs.h"

#include <QApplication>
#include <QDebug>
#include <QMessageBox>
#include <QString>

namespace {

ZelDialogs *&hostDialogs()
{
    static ZelDialogs *dialogs = nullptr;
    return dialogs;
}

} // namespace

ZelDialogs::~ZelDialogs()
{
    if (hostDialogs() == this)
        hostDialogs() = nullptr;
}

void ZelDialogs::tellRefusal(const QString &reason)
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        qDebug().noquote() << reason;
        return;
    }
    QMessageBox(QMessageBox::Information, QString(), reason, QMessageBox::Ok).exec();
}

ZelDialogs *ZelDialogs::current()
{
    static ZelDialogs own;
    return hostDialogs() ? hostDialogs() : &own;
}

void ZelDialogs::setCurrent(ZelDialogs *dialogs)
{
    hostDialogs() = dialogs;
}
