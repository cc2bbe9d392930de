#include "zelShare/ZelSettings.h"

#include <QSettings>

#include <optional>

namespace {

QString tooltipsKey()
{
    return QStringLiteral("drawing/moleculeTooltips");
}

// Read on every change of every item, so the stored value is looked up once.
std::optional<int> &cachedTooltipsType()
{
    static std::optional<int> type;
    return type;
}

} // namespace

int ZelSettings::getMoleculeTooltipsType()
{
    std::optional<int> &type = cachedTooltipsType();
    if (!type) {
        bool ok = false;
        const int stored = QSettings().value(tooltipsKey(), TooltipsPath).toInt(&ok);
        type = ok ? stored : TooltipsPath;
    }
    return *type;
}

void ZelSettings::setMoleculeTooltipsType(int type)
{
    if (type == getMoleculeTooltipsType())
        return;
    QSettings().setValue(tooltipsKey(), type);
    cachedTooltipsType() = type;
}
