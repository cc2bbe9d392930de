#include "zelExchange/ZelImportReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

struct Count
{
    const char *key;
    const char *title;
    int ZelImportReport::*value;
};

constexpr Count counts[] = {
    {"moleculeTypes", "Molecule types", &ZelImportReport::moleculeTypes},
    {"components", "Components", &ZelImportReport::components},
    {"sites", "Binding sites", &ZelImportReport::sites},
    {"features", "Features", &ZelImportReport::features},
    {"interactions", "Molecule interactions", &ZelImportReport::interactions},
    {"complexes", "Complexes", &ZelImportReport::complexes},
    {"species", "Species", &ZelImportReport::species},
    {"patterns", "Patterns", &ZelImportReport::patterns},
    {"associations", "Associations", &ZelImportReport::associations},
    {"dissociations", "Dissociations", &ZelImportReport::dissociations},
    {"transformations", "Transformations", &ZelImportReport::transformations},
    {"productions", "Productions", &ZelImportReport::productions},
    {"degradations", "Degradations", &ZelImportReport::degradations},
    {"parameters", "Parameters", &ZelImportReport::parameters},
    {"observables", "Observables", &ZelImportReport::observables},
    {"compartments", "Compartments", &ZelImportReport::compartments},
};

} // namespace

int ZelImportReport::untranslated() const
{
    return static_cast<int>(
        std::count_if(losses.begin(), losses.end(), [](const Loss &loss) { return loss.isKept; }));
}

QString ZelImportReport::toText() const
{
    if (!error.isEmpty())
        return QStringLiteral("Nothing was imported from %1:\n%2\n").arg(fileName, error);
    QString text = QStringLiteral("Imported from %1\n").arg(fileName);
    for (const Count &count : counts)
        text +=
            QStringLiteral("  %1: %2\n").arg(QLatin1String(count.title)).arg(this->*count.value);
    text += QStringLiteral("  Untranslated items: %1\n").arg(untranslated());
    for (const Loss &loss : losses) {
        text +=
            QStringLiteral("%1:%2: %3: %4 (%5)\n")
                .arg(fileName)
                .arg(loss.line)
                .arg(loss.isKept ? QStringLiteral("kept untranslated") : QStringLiteral("left out"),
                    loss.text, loss.reason);
    }
    return text;
}

QByteArray ZelImportReport::toJson() const
{
    QJsonObject object{{QStringLiteral("file"), fileName}};
    if (!error.isEmpty())
        object.insert(QStringLiteral("error"), error);
    for (const Count &count : counts)
        object.insert(QLatin1String(count.key), this->*count.value);
    object.insert(QStringLiteral("untranslated"), untranslated());
    QJsonArray list;
    for (const Loss &loss : losses) {
        list.append(
            QJsonObject{{QStringLiteral("line"), loss.line}, {QStringLiteral("text"), loss.text},
                {QStringLiteral("reason"), loss.reason}, {QStringLiteral("kept"), loss.isKept}});
    }
    object.insert(QStringLiteral("losses"), list);
    return QJsonDocument(object).toJson();
}
