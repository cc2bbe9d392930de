#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCodeWriter.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxReadAhead.h"

#include <QDebug>

#include <cstdlib>
#include <limits>
#include <numeric>

namespace {

constexpr int LostSticky = std::numeric_limits<int>::min();

constexpr QStringView CpxBegin = u"<cpx>";
constexpr QStringView CpxEnd = u"</cpx>";
constexpr QStringView MolBegin = u"<mol";
constexpr QStringView MolEnd = u"</mol>";
constexpr QStringView McpBegin = u"<mcp pos=\"";
constexpr QStringView McpEnd = u"</mcp>";
constexpr QStringView BstBegin = u"<bst id=\"";
constexpr QStringView BstEnd = u" />";
constexpr QStringView Id = u" id=\"";
constexpr QStringView Pos = u" pos=\"";
constexpr QStringView NextPos = u"\" pos=\"";
constexpr QStringView Negated = u" not=\"1\"";
constexpr QStringView States = u" states=\"";
constexpr QStringView Off = u"(-)";
constexpr QStringView DontCare = u"(0)";
constexpr QStringView Bound = u" bindingStatus=\"Bound\"";
constexpr QStringView Unbound = u" bindingStatus=\"Unbound\"";

constexpr qsizetype MolFrame = 48; // no less than what stands before it, but for its id

} // namespace

SdcCpxStateCodeWriter::SdcCpxStateCodeWriter(const QList<SdcMol *> &mols, Content content)
    : m_content(content)
{
    SdcCpxReadAhead::parts(mols);
    m_mols.reserve(mols.size());
    for (SdcMol *mol : mols) {
        Mol entry;
        entry.mol = mol;
        entry.firstMcp = static_cast<int>(m_mcps.size());
        if (mol)
            addMcps(mol);
        entry.mcpCount = static_cast<int>(m_mcps.size()) - entry.firstMcp;
        m_mols.append(entry);
    }
    if (m_content == StatesAndBindings)
        readStates();
}

QString SdcCpxStateCodeWriter::text(std::span<const int> order, bool withMolPsiimId, Form form)
{
    qsizetype size = CpxBegin.size() + CpxEnd.size();
    for (int number : order) {
        Mol &mol = m_mols[number];
        if (!mol.mol)
            continue;
        if (mol.text.size == 0)
            write(mol);
        size += MolFrame + mol.mol->getPsiimIdView().size() + mol.text.size;
    }
    QString text;
    text.reserve(size);
    if (form == WithElement)
        text += CpxBegin;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const Mol &mol = m_mols[order[i]];
        if (!mol.mol)
            continue;
        SdcCpxText<64> frame;
        frame.append(MolBegin);
        if (withMolPsiimId) {
            frame.append(Id);
            frame.append(mol.mol->getPsiimIdView());
            frame.append(u'"');
        }
        frame.append(Pos);
        frame.appendNumber(static_cast<qsizetype>(i) + 1);
        frame.append(u'"');
        frame.append(u'>');
        text += frame.view();
        text += m_text.view(mol.text);
    }
    if (form == WithElement)
        text += CpxEnd;
    return text;
}

QString SdcCpxStateCodeWriter::text(bool withMolPsiimId, Form form)
{
    QVarLengthArray<int, 32> order(m_mols.size());
    std::iota(order.begin(), order.end(), 0);
    return text(std::span<const int>(order.cbegin(), order.cend()), withMolPsiimId, form);
}

void SdcCpxStateCodeWriter::addMcps(Sdc *sdc)
{
    if (SdcMcp *mcp = sdc->toSdcMcp())
        m_mcps.append({mcp, 0, 0});
    for (Sdc *child : sdc->sdcChildren()) {
        if (child && !child->isSdcBst())
            addMcps(child);
    }
}

// Items and stickies are many steps away: one step for all components, then the next.
void SdcCpxStateCodeWriter::readStates()
{
    using Stickies = QList<ZelRectItemMcpSticky *>;
    QVarLengthArray<const Stickies *, 32> rows;
    for (const Mcp &mcp : std::as_const(m_mcps)) {
        SdcCpxReadAhead::properties(mcp.mcp);
        ZelEllipseItemMcp *const item = mcp.mcp->getZelEllipseItemMcp();
        rows.append(item ? &item->stickies() : nullptr);
        __builtin_prefetch(rows.last());
    }
    for (const Stickies *row : std::as_const(rows)) {
        if (row)
            __builtin_prefetch(row->constData());
    }
    for (qsizetype i = 0; i < rows.size(); ++i) {
        m_mcps[i].firstState = static_cast<int>(m_states.size());
        if (!rows[i])
            continue;
        for (const ZelRectItemMcpSticky *sticky : *rows[i])
            m_states.append(sticky ? sticky->getStateType() : LostSticky);
        m_mcps[i].stateCount = static_cast<int>(rows[i]->size());
    }
}

void SdcCpxStateCodeWriter::write(Mol &mol)
{
    const SdcCpx *const cpx = mol.mol->getParentSdcCpx();
    if (cpx != m_cpx) {
        m_cpx = cpx;
        m_held.reset();
        if (cpx)
            m_held.emplace(cpx->getListSdcBstBstCpx());
    }
    const qsizetype begin = m_text.size();
    for (int i = 0; i < mol.mcpCount; ++i) {
        const Mcp &mcp = m_mcps[mol.firstMcp + i];
        m_text.append(McpBegin);
        m_text.appendNumber(i + 1);
        m_text.append(u'"');
        if (m_content == StatesAndBindings)
            writeStates(mcp);
        m_text.append(u'>');
        int count = 0;
        writeSites(mcp.mcp, &count);
        m_text.append(McpEnd);
    }
    m_text.append(MolEnd);
    mol.text = m_text.since(begin);
}

void SdcCpxStateCodeWriter::writeStates(const Mcp &mcp)
{
    int end = 0; // behind the last state that is set
    for (int i = 0; i < mcp.stateCount; ++i) {
        const int state = m_states[mcp.firstState + i];
        if (state == LostSticky) {
            // A component that has lost a feature would be stored as another one.
            qDebug() << "Error found at QString SdcCpx::getMcpStateCodeSignature(const "
                        "QList<SdcMol *> & listSdcMol, bool withMolPsiimId)";
            std::exit(1);
        }
        if (state == ComponentStateOff || state == ComponentStateOn)
            end = i + 1;
    }
    if (mcp.mcp->getPropertyView(SdcProperty::Negation) == u'1')
        m_text.append(Negated);
    m_text.append(States);
    for (int i = 0; i < end; ++i) {
        if (i > 0)
            m_text.append(u';');
        m_text.appendNumber(i);
        const int state = m_states[mcp.firstState + i];
        if (state == ComponentStateOff)
            m_text.append(Off);
        else if (state != ComponentStateOn)
            m_text.append(DontCare);
    }
    m_text.append(u'"');
}

void SdcCpxStateCodeWriter::writeSites(Sdc *sdc, int *count)
{
    if (SdcBst *bst = sdc->toSdcBst())
        writeSite(bst, ++*count);
    for (Sdc *child : sdc->sdcChildren()) {
        if (child)
            writeSites(child, count);
    }
}

void SdcCpxStateCodeWriter::writeSite(const SdcBst *bst, int pos)
{
    m_text.append(BstBegin);
    m_text.append(bst->getPsiimIdView());
    m_text.append(NextPos);
    m_text.appendNumber(pos);
    m_text.append(u'"');
    if ((m_held && m_held->find(bst) >= 0) || bst->getStoredBindingStatus() == BindingStatusBound)
        m_text.append(Bound);
    else if (bst->getStoredBindingStatus() == BindingStatusUnbound)
        m_text.append(Unbound);
    m_text.append(BstEnd);
}
