// Draws one page for each rule of the drawings, as pictures and as vector graphics.
// Usage: pictureBook <folder>; needs no display.
#include "Pages.h"

#include <QApplication>
#include <QDir>
#include <QFont>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: pictureBook <folder to write the pages to>\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setFont(QFont("DejaVu Sans", 9)); // the same pages on every machine
    const QString folder = QString::fromLocal8Bit(argv[1]);
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "pictureBook: cannot make the folder %s\n", argv[1]);
        return 1;
    }
    const QList<Page> pages =
        moleculePages() + featurePages() + sitePages() + bondPages() + reactionPages();
    for (qsizetype i = 0; i < pages.size(); ++i) {
        const Page &page = pages.at(i);
        const QString footer = i == 0 ? QString() : QString::number(i);
        if (const QString error = writePage(page, folder, footer); !error.isEmpty()) {
            std::fprintf(stderr, "pictureBook: %s\n", qPrintable(error));
            return 1;
        }
        std::printf("%2d of %d  %s\n", int(i + 1), int(pages.size()), qPrintable(page.title));
    }
    return 0;
}
