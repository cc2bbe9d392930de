// A window in which a model is edited by hand. Usage: modelHost <model file> [picture.png]
// The file is made when it does not exist. With a picture, the window is drawn into it and closed.
#include "Window.h"

#include <zelDb/ZelDbSqlite.h>

#include <QApplication>
#include <QFileInfo>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2 || arguments.size() > 3) {
        std::fprintf(stderr, "modelHost: usage: modelHost <model file> [picture.png]\n");
        return 2;
    }
    ZelDbSqlite file;
    const QString path = arguments.at(1);
    if (!(QFileInfo::exists(path) ? file.open(path) : file.create(path))) {
        std::fprintf(stderr, "modelHost: %s\n", qPrintable(file.errorText()));
        return 1;
    }
    ZelDbSqliteModel db(&file);
    Window window(&db);
    window.show();
    if (arguments.size() == 2)
        return QApplication::exec();
    window.openFirstEntries();
    QApplication::processEvents();
    return window.grab().save(arguments.at(2)) ? 0 : 1;
}
