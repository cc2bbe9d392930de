#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcLayout.h"

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXml.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXmlScanner.h"

#include <QDomElement>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace {

constexpr int MaxDepth = 4; // a complex, its molecules, their components, their sites
constexpr double MaxNumber = 1.0e6; // beyond, nobody can have drawn it

// As the toolkit reads it, but without its detour through locales for what is plainly written.
double numberOf(QStringView text)
{
    std::array<char, 32> plain;
    if (text.size() <= static_cast<qsizetype>(plain.size())) {
        std::transform(text.cbegin(), text.cend(), plain.begin(),
            [](QChar c) { return c.unicode() < 128 ? static_cast<char>(c.unicode()) : '?'; });
        const char *const end = plain.data() + text.size();
        double number = 0.0;
        const auto [stop, error] = std::from_chars(plain.data(), end, number);
        if (error == std::errc() && stop == end)
            return number;
    }
    return text.toDouble();
}

bool isUsable(double number)
{
    return std::isfinite(number) && std::abs(number) <= MaxNumber;
}

constexpr QLatin1String RectTag("boundingRect");

int typeOf(QStringView tag)
{
    if (tag == QLatin1String("bst"))
        return SdcType::Bst;
    if (tag == QLatin1String("mcp"))
        return SdcType::Mcp;
    if (tag == QLatin1String("mol"))
        return SdcType::Mol;
    return tag == QLatin1String("cpx") ? SdcType::Cpx : SdcType::None;
}

QString textOf(const QString &text)
{
    return text;
}

QString textOf(QStringView text)
{
    return text.toString();
}

// The text of an attribute, null when it is absent, from a document or from a stream.
struct DomAttributes
{
    const QDomElement &element;
    QString operator()(const char *name) const { return element.attribute(QLatin1String(name)); }
};

template <typename Reader>
struct StreamAttributes
{
    decltype(std::declval<const Reader &>().attributes()) attributes;
    QStringView operator()(const char *name) const { return attributes.value(QLatin1String(name)); }
};

template <typename Attributes>
void readComponent(SdcLayout *layout, const Attributes &attribute)
{
    layout->psiimId = textOf(attribute("psiimId"));
    bool isNumber = false;
    const int posIndex = attribute("posIndex").toInt(&isNumber);
    layout->posIndex = isNumber && posIndex >= 0 ? posIndex : -1;
    layout->tagDirectionCode = std::clamp(attribute("tagDirectCode").toInt(), 0, 4);
    const auto size = attribute("tagSize");
    const auto gap = attribute("tagGap");
    if (size.isNull() || gap.isNull())
        return;
    const double sizeNumber = numberOf(size);
    const double gapNumber = numberOf(gap);
    if (isUsable(sizeNumber) && isUsable(gapNumber) && sizeNumber >= 0.0 && gapNumber >= 0.0)
        layout->tagSizeAndGap = {sizeNumber, gapNumber};
}

template <typename Attributes>
void readRect(SdcLayout *layout, const Attributes &attribute)
{
    const QRectF rect(numberOf(attribute("x")), numberOf(attribute("y")), numberOf(attribute("w")),
        numberOf(attribute("h")));
    if (!isUsable(rect.x()) || !isUsable(rect.y()))
        return;
    layout->topLeft = rect.topLeft();
    if (isUsable(rect.width()) && isUsable(rect.height()) && rect.width() > 0.0
        && rect.height() > 0.0)
        layout->rect = rect;
}

SdcLayout fromElementAtDepth(const QDomElement &element, int sdcType, int depth)
{
    SdcLayout layout;
    layout.sdcType = sdcType;
    readComponent(&layout, DomAttributes{element});
    bool hasRect = false;
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const int childType = typeOf(child.tagName());
        if (childType != SdcType::None && depth < MaxDepth)
            layout.children.append(fromElementAtDepth(child, childType, depth + 1));
        else if (child.tagName() == RectTag && !std::exchange(hasRect, true))
            readRect(&layout, DomAttributes{child});
    }
    return layout;
}

/// Reads the element that the reader stands on, to its end.
template <typename Reader>
SdcLayout fromStreamAtDepth(Reader *reader, int sdcType, int depth)
{
    SdcLayout layout;
    layout.sdcType = sdcType;
    readComponent(&layout, StreamAttributes<Reader>{reader->attributes()});
    bool hasRect = false;
    while (SdcXml::readChild(reader)) {
        const int childType = typeOf(reader->qualifiedName());
        if (childType != SdcType::None && depth < MaxDepth) {
            layout.children.append(fromStreamAtDepth(reader, childType, depth + 1));
            continue;
        }
        if (reader->qualifiedName() == RectTag && !std::exchange(hasRect, true))
            readRect(&layout, StreamAttributes<Reader>{reader->attributes()});
        SdcXml::skipElement(reader);
    }
    return layout;
}

/// Reads the whole text.
template <typename Reader>
SdcLayout fromStream(Reader *reader, int sdcType)
{
    SdcLayout layout;
    if (SdcXml::readRoot(reader)) {
        while (SdcXml::readChild(reader)) {
            if (layout.isNull() && typeOf(reader->qualifiedName()) == sdcType)
                layout = fromStreamAtDepth(reader, sdcType, 1);
            else
                SdcXml::skipElement(reader);
        }
    }
    SdcXml::readToEnd(reader);
    return layout;
}

} // namespace

SdcLayout SdcLayout::fromElement(const QDomElement &element)
{
    const int type = typeOf(element.tagName());
    return type == SdcType::None ? SdcLayout() : fromElementAtDepth(element, type, 1);
}

SdcLayout SdcLayout::fromXml(const QString &xml, int sdcType, QString *error)
{
    if (const QString reason = SdcXml::refusal(xml); !reason.isEmpty()) {
        *error = reason;
        return {};
    }
    SdcXmlScanner scanner(xml);
    if (SdcLayout layout = fromStream(&scanner, sdcType); scanner.isPlain())
        return layout;
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false); // as documents are read: a colon is part of the name
    const SdcLayout layout = fromStream(&reader, sdcType);
    if (!reader.hasError())
        return layout;
    *error = reader.errorString();
    return {};
}

SdcLayoutChildren::SdcLayoutChildren(const SdcLayout &parent, int sdcType)
{
    const auto isRegular = [&parent, sdcType](const SdcLayout &child) {
        return child.sdcType == sdcType && child.posIndex == &child - parent.children.constData();
    };
    if (std::all_of(parent.children.cbegin(), parent.children.cend(), isRegular)) {
        m_regular = &parent.children;
        return;
    }
    for (const SdcLayout &child : parent.children) {
        if (child.sdcType != sdcType)
            continue;
        if (child.posIndex >= 0)
            m_byPosIndex.insert(child.posIndex, &child);
        m_inOrder.append(&child);
    }
}

const SdcLayout &SdcLayoutChildren::find(const QString &psiimId, int index) const
{
    static const SdcLayout none;
    if (m_regular)
        return index >= 0 && index < m_regular->size() ? m_regular->at(index) : none;
    const SdcLayout *first = nullptr; // a multi-hash answers the last inserted first
    const auto [begin, end] = m_byPosIndex.equal_range(index);
    for (auto it = begin; it != end; ++it) {
        if (it.value()->psiimId == psiimId)
            return *it.value();
        first = it.value();
    }
    if (first)
        return *first;
    return index < m_inOrder.size() ? *m_inOrder.at(index) : none;
}
