#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCode.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXml.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXmlScanner.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcMolType.h"

#include <QDebug>
#include <QHash>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

constexpr QLatin1String OffSuffix("(-)");
constexpr QLatin1String DontCareSuffix("(0)");

/// The names of features as stored, by the place of their component in its molecule.
class StoredNames
{
public:
    explicit StoredNames(SdcMolType::Reader *types) : m_types(types) { }

    QStringList of(SdcMcp *mcp)
    {
        const QString id = mcp->getPsiimId();
        if (id.isEmpty() || !m_types->db())
            return {};
        SdcMol *const mol = mcp->getParentSdcMol();
        const auto type = mol ? m_types->read(mol->getPsiimId()) : nullptr;
        const qsizetype index = mcp->getPosIndex();
        return type && index >= 0 && index < type->mcps.size() && type->mcps.at(index).psiimId == id
            ? type->mcps.at(index).stateNames
            : m_types->db()->mcpGetOrderedStateNames(id);
    }

private:
    SdcMolType::Reader *m_types;
};

/// Reads a state code, then sets what it says: nothing when it is not well-formed.
///
/// A code may name a part any number of times: the last time counts, so that each part is set once
/// however long the code is.
class Loader
{
public:
    Loader(SdcCpx *cpx, const QString &code, SdcCpxStateCode::MolPositions positions,
        StoredNames *names)
        : m_cpx(cpx), m_code(code), m_positions(positions), m_names(names)
    {
    }

    void read(bool loadBindingStatus)
    {
        m_loadBindingStatus = loadBindingStatus;
        if (const QString reason = SdcXml::refusal(m_code); !reason.isEmpty()) {
            refuse(reason);
            return;
        }
        SdcXmlScanner scanner(m_code);
        readWith(&scanner);
        if (!scanner.isPlain() && !readInFull())
            return;
        apply();
    }

private:
    bool readInFull()
    {
        m_found = {};
        QXmlStreamReader reader(m_code);
        // As a document without namespaces, in which a colon is part of the name.
        reader.setNamespaceProcessing(false);
        readWith(&reader);
        if (reader.hasError()) {
            refuse(QStringLiteral("%1 (line %2, column %3)")
                       .arg(reader.errorString())
                       .arg(reader.lineNumber())
                       .arg(reader.columnNumber()));
            return false;
        }
        return true;
    }

    template <typename Reader>
    void readWith(Reader *reader)
    {
        if (SdcXml::readRoot(reader)) {
            while (SdcXml::readChild(reader)) {
                if (reader->qualifiedName() == u"mol" && !m_found.stopped)
                    readMol(reader);
                else
                    SdcXml::skipElement(reader);
            }
        }
        SdcXml::readToEnd(reader);
    }

    /// What the code says of one component.
    struct McpEntry
    {
        SdcMcp *mcp;
        QString states; ///< the last that are not empty
        QString negation;
    };

    /// Where a component was expected and not found.
    struct Missing
    {
        QString molPsiimId;
        int molPos = 0;
        int mcpPos = 0;
    };

    /// What has been read so far.
    struct Found
    {
        QList<McpEntry> entries;
        QHash<SdcMcp *, qsizetype> entryOfMcp;
        QList<SdcBst *> sites;
        QHash<SdcBst *, BindingStatusType> statuses;
        qsizetype unknownSites = 0;
        QString firstUnknownSite;
        bool stopped = false;
        Missing missing;
    };

    static void refuse(const QString &reason)
    {
        qDebug().noquote()
            << "Error found at void SdcCpx::loadAliasMcpStateCode(const QString & stateCode)"
            << QLatin1String("the state code cannot be read:") << reason;
    }

    // A position as written that counts from 1; anything else answers null.
    static Sdc *childAtPosition(Sdc *parent, int pos)
    {
        return parent && pos > 0 ? parent->getChildSdcAtIndex(pos - 1) : nullptr;
    }

    SdcMol *molAt(int pos) const
    {
        Sdc *const child = m_positions == SdcCpxStateCode::MolPositions::AsWritten
            ? m_cpx->getChildSdcAtIndex(pos)
            : childAtPosition(m_cpx, pos);
        return child ? child->toSdcMol() : nullptr;
    }

    template <typename Reader>
    void readMol(Reader *reader)
    {
        const int molPos = reader->attributes().value(QLatin1String("pos")).toInt();
        SdcMol *const mol = molAt(molPos);
        while (SdcXml::readChild(reader)) {
            if (reader->qualifiedName() != u"mcp" || m_found.stopped) {
                SdcXml::skipElement(reader);
                continue;
            }
            const int mcpPos = reader->attributes().value(QLatin1String("pos")).toInt();
            Sdc *const child = childAtPosition(mol, mcpPos);
            if (SdcMcp *mcp = child ? child->toSdcMcp() : nullptr) {
                readMcp(reader, mol, mcp);
                continue;
            }
            m_found.stopped = true;
            m_found.missing = {mol ? mol->getPsiimId() : QString(), molPos, mcpPos};
            SdcXml::skipElement(reader);
        }
    }

    template <typename Reader>
    void readMcp(Reader *reader, SdcMol *mol, SdcMcp *mcp)
    {
        const auto &attributes = reader->attributes(); // of a scanner, until the next element
        auto at = m_found.entryOfMcp.constFind(mcp);
        if (at == m_found.entryOfMcp.cend()) {
            at = m_found.entryOfMcp.insert(mcp, m_found.entries.size());
            m_found.entries.append({mcp, {}, {}});
        }
        McpEntry &entry = m_found.entries[*at];
        if (const QStringView states = attributes.value(QLatin1String("states")); !states.isEmpty())
            entry.states = states.toString();
        entry.negation = attributes.value(QLatin1String("not")).toString();
        while (SdcXml::readChild(reader)) {
            if (reader->qualifiedName() == u"bst" && m_loadBindingStatus)
                readSite(reader->attributes(), mol);
            SdcXml::skipElement(reader);
        }
    }

    template <typename Attributes>
    void readSite(const Attributes &attributes, SdcMol *mol)
    {
        const QString id = attributes.value(QLatin1String("id")).toString();
        SdcBst *const bst = sitesOf(mol).value(id);
        if (!bst) {
            if (m_found.unknownSites++ == 0)
                m_found.firstUnknownSite = id;
            return;
        }
        const QStringView status = attributes.value(QLatin1String("bindingStatus"));
        const auto at = m_found.statuses.constFind(bst);
        if (at == m_found.statuses.cend())
            m_found.sites.append(bst);
        m_found.statuses.insert(bst,
            status == u"Bound"         ? BindingStatusBound
                : status == u"Unbound" ? BindingStatusUnbound
                                       : BindingStatusUnspecified);
    }

    // The first site of each id, looked up once for each molecule.
    const QHash<QString, SdcBst *> &sitesOf(SdcMol *mol)
    {
        const auto at = m_sitesOfMol.constFind(mol);
        if (at != m_sitesOfMol.cend())
            return *at;
        QHash<QString, SdcBst *> sites;
        const QList<SdcBst *> list = mol->getListSdcBst();
        for (SdcBst *bst : list) {
            const QString id = bst->getPsiimId();
            if (!sites.contains(id))
                sites.insert(id, bst);
        }
        return *m_sitesOfMol.insert(mol, sites);
    }

    void apply()
    {
        for (const McpEntry &entry : std::as_const(m_found.entries)) {
            if (!entry.states.isEmpty())
                setStates(entry.mcp, entry.states);
            entry.mcp->setProperty(SdcProperty::Negation, entry.negation);
            entry.mcp->updateMcpNot();
        }
        for (SdcBst *bst : std::as_const(m_found.sites))
            bst->setBindingStatus(m_found.statuses.value(bst));
        if (m_found.unknownSites > 0)
            qDebug() << "Error found at void SdcCpx::loadAliasMcpStateCode(const QString & "
                        "stateCode, bool loadBindingStatus): unknown binding sites"
                     << m_found.unknownSites << "the first is" << m_found.firstUnknownSite;
        if (m_found.stopped)
            qDebug()
                << "Error found at void SdcCpx::loadAliasMcpStateCode(const QString & stateCode)"
                << m_cpx->getPsiimId() << m_cpx->getProperty(SdcProperty::CpaPsiimId)
                << m_found.missing.molPsiimId << m_found.missing.molPos << m_found.missing.mcpPos;
    }

    // Parts belong to names by their place; the number in a part is not looked at.
    void setStates(SdcMcp *mcp, const QString &states)
    {
        const QStringList names = m_names->of(mcp);
        if (names.isEmpty())
            return;
        const QList<QStringView> parts = QStringView(states).split(u';', Qt::SkipEmptyParts);
        QStringList texts;
        for (qsizetype i = 0; i < std::min(names.size(), parts.size()); ++i) {
            QString text = names.at(i);
            if (SdcCpxStateCode::stateOf(parts.at(i)) == ComponentStateOff)
                text += OffSuffix;
            else if (SdcCpxStateCode::stateOf(parts.at(i)) == ComponentStateDontCare)
                text += DontCareSuffix;
            texts.append(text);
        }
        mcp->setProperty(SdcProperty::StateCode, texts.join(u';'));
        const QList<ZelRectItemMcpSticky *> stickies = mcp->getListSticky();
        for (qsizetype i = 0; i < names.size(); ++i) {
            const ComponentStateType state =
                i < parts.size() ? SdcCpxStateCode::stateOf(parts.at(i)) : ComponentStateDontCare;
            if (ZelRectItemMcpSticky *sticky = stickies.value(i))
                sticky->setStateType(state, false);
            else
                reportMissingSticky();
        }
    }

    void reportMissingSticky() const
    {
        qDebug() << "Error found in void SdcCpx::loadAliasMcpStateCode(const QString & stateCode, "
                    "bool loadBindingStatus): ";
        // Every missing sticky repeats the code: no line may be as long as a file can make it.
        qDebug().noquote() << "\tstatdeCode:" << (u'"' + m_code.left(MaxReportedLength) + u'"');
        qDebug() << "\tloadBindingStatus: " << (m_loadBindingStatus ? "true" : "false");
    }

    static constexpr qsizetype MaxReportedLength = 65536;

    SdcCpx *m_cpx;
    const QString &m_code;
    SdcCpxStateCode::MolPositions m_positions;
    bool m_loadBindingStatus = false;

    StoredNames *m_names;
    Found m_found;
    QHash<SdcMol *, QHash<QString, SdcBst *>> m_sitesOfMol;
};

} // namespace

namespace SdcCpxStateCode {

void apply(SdcCpx *cpx, const QString &stateCode, bool loadBindingStatus, MolPositions positions,
    SdcMolType::Reader *types)
{
    if (!cpx)
        return;
    if (!types) {
        SdcMolType::Reader own(cpx->getZelDbSqliteModel());
        apply(cpx, stateCode, loadBindingStatus, positions, &own);
        return;
    }
    StoredNames names(types);
    const QList<SdcMcp *> mcps = cpx->getListSdcMcp();
    for (SdcMcp *mcp : mcps) {
        mcp->setAllStickyState(ComponentStateDontCare);
        mcp->updateStatePropertyFromSticky(names.of(mcp));
    }
    cpx->setAllBstStatus(BindingStatusUnspecified);
    if (!stateCode.isEmpty())
        Loader(cpx, stateCode, positions, &names).read(loadBindingStatus);
}

ComponentStateType stateOf(QStringView part)
{
    if (part.endsWith(OffSuffix))
        return ComponentStateOff;
    return part.endsWith(DontCareSuffix) ? ComponentStateDontCare : ComponentStateOn;
}

} // namespace SdcCpxStateCode
