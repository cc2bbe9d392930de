// State codes: what is read from a stream is what a document reader would have read.
// Mode bits: 1 with binding statuses, 2 as a stored alias.
#include "FuzzModel.h"

#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDomDocument>

#include <memory>

namespace {

constexpr int WithStatuses = 1;
constexpr int AsAlias = 2;

std::unique_ptr<SdcCpx> newComplex()
{
    auto cpx = std::make_unique<SdcCpx>(&FuzzModel::instance().db);
    require(cpx->loadCpxFromDb(QStringLiteral("cpx1")), "the complex");
    return cpx;
}

QString textOf(SdcCpx *cpx)
{
    QString text;
    for (SdcMcp *mcp : cpx->getListSdcMcp()) {
        for (ZelRectItemMcpSticky *sticky : mcp->getListSticky())
            text += QString::number(sticky->getStateType());
        text += u':' + mcp->getProperty(SdcProperty::StateCode) + u'!'
            + mcp->getProperty(SdcProperty::Negation) + u' ';
    }
    for (SdcBst *bst : cpx->getListSdcBst())
        text += QString::number(bst->getStoredBindingStatus());
    return text;
}

void applyToMcp(SdcMcp *mcp, const QDomElement &element)
{
    const QString states = element.attribute(QStringLiteral("states"));
    const QStringList names = FuzzModel::instance().db.mcpGetOrderedStateNames(mcp->getPsiimId());
    if (!states.isEmpty() && !names.isEmpty()) {
        const QStringList parts = states.split(u';', Qt::SkipEmptyParts);
        QStringList texts;
        for (int i = 0; i < names.size(); ++i) {
            int state = ComponentStateDontCare;
            if (i < parts.size()) {
                const QString suffix = parts.at(i).right(3);
                state = suffix == QLatin1String("(-)") ? ComponentStateOff
                    : suffix == QLatin1String("(0)")   ? ComponentStateDontCare
                                                       : ComponentStateOn;
                texts.append(names.at(i) + (state == ComponentStateOn ? QString() : suffix));
            }
            mcp->getListSticky().at(i)->setStateType(state, false);
        }
        mcp->setProperty(SdcProperty::StateCode, texts.join(u';'));
    }
    mcp->setProperty(SdcProperty::Negation, element.attribute(QStringLiteral("not")));
}

// The straightforward reading, without any bounds.
bool applyDocument(SdcCpx *cpx, const QString &code, bool withStatuses, int firstPosition)
{
    cpx->setAllMcpStateType(ComponentStateDontCare, false);
    cpx->setAllBstStatus(BindingStatusUnspecified);
    QDomDocument doc;
    if (!doc.setContent(code))
        return false;
    const QString mcpTag = QStringLiteral("mcp");
    const QString bstTag = QStringLiteral("bst");
    for (QDomElement mol = doc.documentElement().firstChildElement(QStringLiteral("mol"));
         !mol.isNull(); mol = mol.nextSiblingElement(QStringLiteral("mol"))) {
        const qint64 molPos = mol.attribute(QStringLiteral("pos")).toInt();
        Sdc *const sdcMol = cpx->getListSdcChildren().value(molPos - firstPosition);
        for (QDomElement mcp = mol.firstChildElement(mcpTag); !mcp.isNull();
             mcp = mcp.nextSiblingElement(mcpTag)) {
            const qint64 mcpPos = mcp.attribute(QStringLiteral("pos")).toInt();
            Sdc *const sdcMcp = sdcMol ? sdcMol->getListSdcChildren().value(mcpPos - 1) : nullptr;
            if (!sdcMcp)
                return true;
            applyToMcp(sdcMcp->toSdcMcp(), mcp);
            for (QDomElement bst = mcp.firstChildElement(bstTag); withStatuses && !bst.isNull();
                 bst = bst.nextSiblingElement(bstTag)) {
                const QString status = bst.attribute(QStringLiteral("bindingStatus"));
                SdcBst *const sdcBst =
                    sdcMol->toSdcMol()->getSdcBstFromPsiimId(bst.attribute(QStringLiteral("id")));
                if (sdcBst)
                    sdcBst->setBindingStatus(status == QLatin1String("Bound") ? BindingStatusBound
                            : status == QLatin1String("Unbound")              ? BindingStatusUnbound
                                                                 : BindingStatusUnspecified);
            }
        }
    }
    return true;
}

void compare(SdcCpx *cpx, const QString &code, bool withStatuses, int firstPosition)
{
    static SdcCpx *const kept = newComplex().release();
    const std::unique_ptr<SdcCpx> fresh = firstPosition == 1 ? newComplex() : nullptr;
    SdcCpx *const expected = fresh ? fresh.get() : kept;
    const bool isRefused = takeRefusal();
    const bool isDeclaring =
        code.contains(QLatin1String("<!ENTITY")) || code.contains(QLatin1String("<!ATTLIST"));
    const bool isDeep = code.count(u'<') > 256;
    // What is refused resets all the same.
    const bool isReadable = applyDocument(
        expected, isRefused || isDeclaring ? QString() : code, withStatuses, firstPosition);
    require(isRefused || isReadable || code.isEmpty(), "a refusal");
    if (isRefused && !isDeclaring && !isDeep)
        require(!QDomDocument().setContent(code), "a reading");
    const QString actualText = textOf(cpx);
    const QString expectedText = textOf(expected);
    require(actualText == expectedText, "what the document says", actualText, expectedText);
}

void readAlias(const QString &code)
{
    ZelDbSqliteModel &db = FuzzModel::instance().db;
    const QString id = QStringLiteral("cpa1");
    require(db.cpaUpdateMcpStateCode(id, code), "a stored alias", db.errorText());
    SdcCpx cpx(&db);
    require(cpx.loadCpaFromDb(id), "an alias");
    compare(&cpx, db.cpaGetHashInfo(id).value(ZelDbColumn::CpaStateCode), true, 1);
    // What is read is written in a form that is read as the same.
    const QString written = SdcCpx::getMcpStateCodeSignature(cpx.getChildMolList(), false);
    require(
        db.cpaUpdateMcpStateCode(id, QLatin1String("<cpx>") + written + QLatin1String("</cpx>")),
        "a stored alias", db.errorText());
    SdcCpx again(&db);
    require(again.loadCpaFromDb(id), "an alias");
    const QString rewritten = SdcCpx::getMcpStateCodeSignature(again.getChildMolList(), false);
    require(rewritten == written, "the code that was written", rewritten, written);
    takeRefusal();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static SdcCpx *const cpx = newComplex().release();
    const FuzzInput input(data, size);
    takeRefusal();
    if (input.has(AsAlias)) {
        readAlias(input.text);
        return 0;
    }
    cpx->loadAliasMcpStateCode(input.text, input.has(WithStatuses));
    compare(cpx, input.text, input.has(WithStatuses), 0);
    return 0;
}
