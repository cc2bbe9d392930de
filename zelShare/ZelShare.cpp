#include "zelShare/ZelShare.h"

#include <QDebug>

#include <algorithm>
#include <cmath>

QString ZelShare::getScientificFormat(
    const QString &value, int minDecimals, int maxDecimals, bool upperCaseExponent)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (!ok || !std::isfinite(number))
        return value;
    const int least = std::clamp(minDecimals, 0, 17);
    const int most = std::clamp(maxDecimals, least, 17);
    const char format = upperCaseExponent ? 'E' : 'e';
    for (int decimals = least; decimals < most; ++decimals) {
        const QString text = QString::number(number, format, decimals);
        if (text.toDouble() == number)
            return text;
    }
    return QString::number(number, format, most);
}

QString ZelShare::getUnit(int kind)
{
    switch (kind) {
    case UnitRate2D:
        return QStringLiteral("\u00b5m\u00b2/s");
    case UnitRate3D:
        return QStringLiteral("/M/s");
    case UnitRateFirstOrder:
        return QStringLiteral("/s");
    default:
        qDebug() << "Error found at QString ZelShare::getUnit(int kind)" << kind;
        return {};
    }
}

QString ZelShare::getUnicodeString(int type)
{
    switch (type) {
    case SignPlus:
        return QStringLiteral("+");
    case SignArrow:
        return QStringLiteral("\u2192");
    default:
        qDebug() << "Error found at QString ZelShare::getUnicodeString(int type)" << type;
        return {};
    }
}
