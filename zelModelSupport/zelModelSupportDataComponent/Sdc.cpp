#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"

#include <algorithm>

namespace {

template <typename T>
void sortByPsiimId(QList<T *> &list)
{
    std::vector<std::pair<QString, T *>> keyed;
    keyed.reserve(static_cast<std::size_t>(list.size()));
    for (T *entry : std::as_const(list))
        keyed.emplace_back(entry ? entry->getPsiimId() : QString(), entry);
    std::stable_sort(
        keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    for (qsizetype i = 0; i < list.size(); ++i)
        list[i] = keyed[static_cast<std::size_t>(i)].second;
}

} // namespace

Sdc::Sdc(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::None, QString())
{
}

// What setSdcType(), setSdcName() and an empty short name leave behind, written once.
Sdc::Sdc(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent, int type, const QString &name)
    : QObject(parent), m_zelDbSqliteModel(zelDbSqliteModel), m_sdcType(type), m_sdcName(name)
{
    m_properties.emplace_back(SdcProperty::ShortName, QString());
    if (type != SdcType::McpTagSet && type != SdcType::BstSet)
        Sdc::updateStandardItemText();
}

QString Sdc::getProperty(int key) const
{
    if (key == SdcProperty::PsiimId)
        return m_psiimId.value_or(QString());
    for (const auto &[k, value] : m_properties) {
        if (k == key)
            return value;
    }
    return {};
}

int Sdc::getSdcType() const
{
    return m_sdcType;
}

void Sdc::setProperty(int key, const QString &value)
{
    const QString old = getProperty(key);
    const auto at = std::find_if(m_properties.begin(), m_properties.end(),
        [key](const auto &entry) { return entry.first == key; });
    if (key == SdcProperty::PsiimId)
        m_psiimId = value;
    else if (at == m_properties.end())
        m_properties.emplace_back(key, value);
    else
        at->second = value;
    if (key == SdcProperty::ShortName)
        updateStandardItemText();
    if (old != value) {
        emit propertyChanged(key, value);
        setChanged();
    }
}

void Sdc::clearProperty(int key)
{
    if (key == SdcProperty::PsiimId)
        m_psiimId.reset();
    std::erase_if(m_properties, [key](const auto &entry) { return entry.first == key; });
}

QString Sdc::getPsiimId() const
{
    return getProperty(SdcProperty::PsiimId);
}

void Sdc::updatePosIndex()
{
    updateStandardItemText();
}

void Sdc::updateStandardItemText()
{
    if (isSdcMcpTagSet() || isSdcBstSet())
        return;
    QString label = getProperty(SdcProperty::ShortName).trimmed();
    if (label.isEmpty())
        label = QStringLiteral("ShortName not defined");
    QString index;
    if (m_parentSdc) {
        SdcBst *const bst = toSdcBst();
        index = u' ' + QString::number(bst ? bst->getDisplayIndex() : getPosIndex() + 1);
    }
    setText(m_sdcName + index + QLatin1String(": ") + label);
}

QString Sdc::getSdcName() const
{
    return m_sdcName;
}

QString Sdc::getDisplayName(bool withName, bool withIndex) const
{
    QString text;
    if (withName)
        text += m_sdcName;
    if (withIndex) {
        if (withName)
            text += u' ';
        text += QString::number(getPosIndex() + 1);
    }
    if (withName || withIndex)
        text += QLatin1String(": ");
    return text + getProperty(SdcProperty::ShortName);
}

bool Sdc::isConsistentToDb()
{
    return false;
}

Sdc *Sdc::toSdc()
{
    return this;
}

// Every kind answers null and false here; the class of that kind alone overrides its pair.
#define ZEL_SDC_NO_KIND(Kind)                                                                      \
    Sdc##Kind *Sdc::toSdc##Kind()                                                                  \
    {                                                                                              \
        return nullptr;                                                                            \
    }                                                                                              \
    bool Sdc::isSdc##Kind() const                                                                  \
    {                                                                                              \
        return false;                                                                              \
    }

ZEL_SDC_NO_KIND(Bst)
ZEL_SDC_NO_KIND(Mcp)
ZEL_SDC_NO_KIND(Mol)
ZEL_SDC_NO_KIND(Mli)
ZEL_SDC_NO_KIND(Cpx)
ZEL_SDC_NO_KIND(Cxi)
ZEL_SDC_NO_KIND(Trn)
ZEL_SDC_NO_KIND(BstBst)
ZEL_SDC_NO_KIND(BstBstMli)
ZEL_SDC_NO_KIND(BstBstCpx)
ZEL_SDC_NO_KIND(BstBstCxi)
ZEL_SDC_NO_KIND(Cel)
ZEL_SDC_NO_KIND(McpTag)
ZEL_SDC_NO_KIND(McpTagSet)
ZEL_SDC_NO_KIND(BstSet)

#undef ZEL_SDC_NO_KIND

void Sdc::setChanged()
{
    emit signal_changed();
    if (m_parentSdc)
        m_parentSdc->setChanged();
}

void Sdc::setSdcType(int type)
{
    m_sdcType = type;
}

void Sdc::setSdcName(const QString &name)
{
    m_sdcName = name;
    setProperty(SdcProperty::ShortName, QString());
}

ZelDbSqliteModel *Sdc::getZelDbSqliteModel() const
{
    return m_zelDbSqliteModel;
}

void Sdc::setZelDbSqliteModel(ZelDbSqliteModel *model)
{
    m_zelDbSqliteModel = model;
}

QHash<int, QString> Sdc::getProperties() const
{
    QHash<int, QString> hash;
    if (m_psiimId)
        hash.insert(SdcProperty::PsiimId, *m_psiimId);
    for (const auto &[key, value] : m_properties)
        hash.insert(key, value);
    return hash;
}

QStringView Sdc::getPropertyView(int key) const
{
    if (key == SdcProperty::PsiimId)
        return getPsiimIdView();
    const auto at = std::find_if(m_properties.cbegin(), m_properties.cend(),
        [key](const auto &entry) { return entry.first == key; });
    return at != m_properties.cend() ? QStringView(at->second) : QStringView();
}

bool Sdc::hasProperty(int key) const
{
    if (key == SdcProperty::PsiimId)
        return m_psiimId.has_value();
    return std::any_of(m_properties.cbegin(), m_properties.cend(),
        [key](const auto &entry) { return entry.first == key; });
}

void Sdc::clearProperties()
{
    m_psiimId.reset();
    m_properties.clear();
}

QString Sdc::toSentence(const QString &reason)
{
    QString sentence = reason.trimmed();
    if (sentence.isEmpty())
        return sentence;
    sentence[0] = sentence.at(0).toUpper();
    if (sentence.back().isLetterOrNumber() || sentence.endsWith(u'\''))
        sentence += u'.';
    return sentence;
}

void Sdc::initProperties(const QList<std::pair<int, QString>> &properties)
{
    m_properties.reserve(m_properties.size() + static_cast<std::size_t>(properties.size()));
    for (const auto &[key, value] : properties) {
        if (key == SdcProperty::PsiimId)
            m_psiimId = value;
        else if (key == SdcProperty::ShortName) // there from the start
            m_properties.front().second = value;
        else
            m_properties.emplace_back(key, value);
    }
    updateStandardItemText();
}

void Sdc::copyPropertiesTo(Sdc *target)
{
    if (!target || target == this)
        return;
    target->m_psiimId = m_psiimId;
    target->m_properties = m_properties;
    target->updateStandardItemText();
    target->setChanged();
    const qsizetype count = std::min(m_children.size(), target->m_children.size());
    for (qsizetype i = 0; i < count; ++i) {
        Sdc *const from = m_children.at(i);
        Sdc *const to = target->m_children.at(i);
        if (from && to && from->getSdcType() == to->getSdcType())
            from->copyPropertiesTo(to);
    }
}

QList<SdcBstBst *> Sdc::toListSdcBstBst(const QList<SdcBstBstCpx *> &list)
{
    return {list.cbegin(), list.cend()};
}

QList<Sdc *> Sdc::getSortedSdcListByPsiimId(const QList<Sdc *> &list)
{
    QList<Sdc *> sorted = list;
    sortByPsiimId(sorted);
    return sorted;
}

QList<SdcBst *> Sdc::getSortedSdcBstListByPsiimId(const QList<SdcBst *> &list)
{
    QList<SdcBst *> sorted = list;
    sortByPsiimId(sorted);
    return sorted;
}
