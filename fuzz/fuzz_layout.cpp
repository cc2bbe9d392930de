// Layouts: whatever they say, every stored part is there, with a place that can be drawn, and a
// document is read as a stream is. Mode bits: 1 into a scene, 2 of a complex.
#include "FuzzModel.h"

#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDomDocument>

#include <cmath>

namespace {

constexpr int IntoScene = 1;
constexpr int OfComplex = 2;

const QString MolId = QStringLiteral("mol1");
const QString CpxId = QStringLiteral("cpx1");

void checkParts(Sdc *sdc, qsizetype mcps, qsizetype sites)
{
    require(sdc->getListSdcMcp().size() == mcps, "every component");
    require(sdc->getListSdcBst().size() == sites, "every site");
    const QRectF rect = sdc->getSdcSceneRectF();
    require(std::isfinite(rect.x()) && std::isfinite(rect.y()) && rect.width() > 0.0
            && rect.height() > 0.0 && rect.width() < 1.0e8 && rect.height() < 1.0e8,
        "a place");
    require(bool(QDomDocument().setContent(sdc->getGraphicsInfo())), "a layout to store");
}

/// The element that the loader takes from a document; null when there is none.
QDomElement elementOf(QDomDocument *doc, const QString &text, const char *tag, bool isRefused)
{
    // The library's own readers refuse what multiplies.
    if (text.isEmpty() || text.contains(QLatin1String("<!ENTITY"))
        || text.contains(QLatin1String("<!ATTLIST")))
        return {};
    const bool isReadable = bool(doc->setContent(text));
    require(isReadable || isRefused, "a refusal");
    return isReadable ? doc->documentElement().firstChildElement(QLatin1String(tag))
                      : QDomElement();
}

void requireSamePlaces(Sdc *fromDocument, Sdc *fromStream)
{
    const QString actual = fromDocument->getGraphicsInfo();
    const QString expected = fromStream->getGraphicsInfo();
    require(actual == expected, "the same places", actual, expected);
}

void readMolecule(const QString &text, ZelScene *scene)
{
    ZelDbSqliteModel &db = FuzzModel::instance().db;
    require(db.molInsert({{ZelDbColumn::PsiimId, MolId}, {ZelDbColumn::GraphicsInfo, text}}),
        "a stored layout", db.errorText());
    SdcMol mol(&db);
    require(mol.loadFromDb(MolId, scene), "a molecule");
    checkParts(&mol, 3, 3);
    const bool isRefused = takeRefusal();
    QDomDocument doc;
    const QDomElement element = elementOf(&doc, text, "mol", isRefused);
    SdcMol fromDocument(&db);
    require(fromDocument.loadDom(MolId, element, scene, QPointF(0.0, 0.0), false), "a molecule");
    checkParts(&fromDocument, 3, 3);
    if (!isRefused)
        requireSamePlaces(&fromDocument, &mol);
}

void readComplex(const QString &text, ZelScene *scene)
{
    ZelDbSqliteModel &db = FuzzModel::instance().db;
    SdcCpx cpx(&db);
    require(cpx.loadCpx(CpxId, text, scene, QPointF(0.0, 0.0), false), "a complex");
    checkParts(&cpx, 7, 8);
    require(cpx.getListSdcBstBstCpx().size() == 2, "every bond");
    const bool isRefused = takeRefusal();
    QDomDocument doc;
    const QDomElement element = elementOf(&doc, text, "cpx", isRefused);
    SdcCpx fromDocument(&db);
    require(fromDocument.loadDom(CpxId, element, scene, QPointF(0.0, 0.0), true), "a complex");
    checkParts(&fromDocument, 7, 8);
    if (!isRefused)
        requireSamePlaces(&fromDocument, &cpx);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const FuzzInput input(data, size);
    ZelScene scene(nullptr);
    ZelScene *const target = input.has(IntoScene) ? &scene : nullptr;
    takeRefusal();
    if (input.has(OfComplex))
        readComplex(input.text, target);
    else
        readMolecule(input.text, target);
    return 0;
}
