#include "zelExchange/ZelExportReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

struct Count
{
    const char *key;
    const char *title;
    int ZelExportReport::*value;
};

constexpr Count counts[] = {
    {"moleculeTypes", "Molecule types", &ZelExportReport::moleculeTypes},
    {"species", "Seed species", &ZelExportReport::species},
    {"rules", "Rules", &ZelExportReport::rules},
    {"parameters", "Parameters", &ZelExportReport::parameters},
    {"observables", "Observables", &ZelExportReport::observables},
    {"compartments", "Compartments", &ZelExportReport::compartments},
    {"untranslated", "Untranslated items", &ZelExportReport::untranslated},
};

} // namespace

int ZelExportReport::leftOut() const
{
    return static_cast<int>(
        std::count_if(notes.begin(), notes.end(), [](const Note &note) { return note.isLeftOut; }));
}

QString ZelExportReport::toText() const
{
    if (!error.isEmpty())
        return QStringLiteral("Nothing was exported to %1:\n%2\n").arg(fileName, error);
    QString text = QStringLiteral("Exported to %1\n").arg(fileName);
    for (const Count &count : counts)
        text +=
            QStringLiteral("  %1: %2\n").arg(QLatin1String(count.title)).arg(this->*count.value);
    for (const Note &note : notes) {
        text += QStringLiteral("%1: %2 (%3)\n")
                    .arg(note.isLeftOut ? QStringLiteral("left out") : QStringLiteral("changed"),
                        note.item, note.reason);
    }
    return text;
}

QByteArray ZelExportReport::toJson() const
{
    QJsonObject object{{QStringLiteral("file"), fileName}};
    if (!error.isEmpty())
        object.insert(QStringLiteral("error"), error);
    for (const Count &count : counts)
        object.insert(QLatin1String(count.key), this->*count.value);
    QJsonArray list;
    for (const Note &note : notes) {
        list.append(QJsonObject{{QStringLiteral("item"), note.item},
            {QStringLiteral("reason"), note.reason}, {QStringLiteral("leftOut"), note.isLeftOut}});
    }
    object.insert(QStringLiteral("notes"), list);
    return QJsonDocument(object).toJson();
}
