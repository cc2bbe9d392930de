#include "zelModelSupport/support/zgs.h"

#include <QDebug>
#include <QDomElement>
#include <QSize>
#include <QString>

namespace {

constexpr int LeastOperatorWidth = 10;
constexpr int NarrowWidth = 22; // pictures below this have the least operator width

} // namespace

QRectF zgs::getBoundingRectFromElt(const QDomElement &domEltBoundingRect)
{
    if (domEltBoundingRect.isNull()) {
        qDebug() << "Error found at QRectF zgs::getBoundingRectFromElt(const QDomElement & "
                    "domEltBoundingRect)";
        return {};
    }
    const auto number = [&](const QString &name) {
        return domEltBoundingRect.attribute(name).toDouble();
    };
    return {number(QStringLiteral("x")), number(QStringLiteral("y")), number(QStringLiteral("w")),
        number(QStringLiteral("h"))};
}

QDomElement zgs::getEltChildSdcAtPosIndex(
    const QDomElement &domElt, const QString &childTag, const QString &posIndex)
{
    QDomElement found;
    for (QDomElement child = domElt.firstChildElement(childTag); !child.isNull();
         child = child.nextSiblingElement(childTag)) {
        if (child.attribute(QStringLiteral("posIndex")) != posIndex)
            continue;
        if (!found.isNull()) {
            qDebug() << "Error found at QDomElement zgs::getEltChildSdcAtPosIndex(const "
                        "QDomElement & domElt, const QString & childTag, const QString & posIndex)"
                     << "multiple records with same posIndex";
            found.clear();
            return found;
        }
        found = child;
    }
    if (found.isNull())
        qDebug() << "Error found at QDomElement zgs::getEltChildSdcAtPosIndex(const QDomElement & "
                    "domElt, const QString & childTag, const QString & posIndex): not found";
    return found;
}

int zgs::getOperatorWidth(const QSize &size)
{
    return size.width() < NarrowWidth ? LeastOperatorWidth : size.width() / 2;
}
