#include "ImportStage.h"

#include "support/ZelTest.h"

#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelLayout/ContactMapLayout.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/contact/ZelSceneContactMap.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QFile>
#include <QGraphicsSimpleTextItem>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

/// The contact map of a whole model.
class tst_ContactMap : public ZelTest
{
    Q_OBJECT
private slots:
    void isFitToPrint_data();
    void isFitToPrint();
    void sameModelSameMap();
    void sitesAreNamedWhereTheyHaveNames();
    void missingSitesAreReported();
    void moleculesWithoutAnything();
    void outlivesItsItems();
    void nothingToShow();
};

namespace {

/// A molecule type for each text, and a rule for each two sites, written "A(x) B(y)".
QByteArray source(const QStringList &types, const QStringList &contacts)
{
    QString text = QStringLiteral("begin parameters\n k 1\nend parameters\nbegin molecule types\n");
    for (const QString &type : types)
        text += u' ' + type + u'\n';
    text += QStringLiteral("end molecule types\nbegin reaction rules\n");
    for (const QString &contact : contacts) {
        const QStringList ends = contact.split(u' ');
        const auto bound = [&ends](int i) { return QString(ends.at(i)).replace(u')', "!1)"); };
        text +=
            QLatin1String(" %1 + %2 -> %3.%4 k\n").arg(ends.at(0), ends.at(1), bound(0), bound(1));
    }
    return (text + QStringLiteral("end reaction rules\n")).toUtf8();
}

/// Types with one to four components; a tree joins them, and further pairs at random.
QByteArray randomSource(int types, int further, quint32 seed)
{
    QRandomGenerator random(seed);
    QStringList names;
    QList<int> sites;
    for (int i = 0; i < types; ++i) {
        QStringList parts;
        sites.append(random.bounded(1, 5));
        for (int k = 0; k < sites.last(); ++k)
            parts.append(
                QLatin1String(random.bounded(3) == 0 ? "s%1~U~P" : "s%1").arg(QString::number(k)));
        names.append(QLatin1String("Mol%1(%2)").arg(QString::number(i), parts.join(u',')));
    }
    const auto site = [&](int type) {
        return QLatin1String("Mol%1(s%2)")
            .arg(QString::number(type), QString::number(random.bounded(sites.at(type))));
    };
    QStringList contacts;
    for (int i = 1; i < types; ++i)
        contacts.append(site(i) + u' ' + site(random.bounded(std::max(0, i - 4), i)));
    for (int i = 0; i < further; ++i)
        contacts.append(site(random.bounded(types)) + u' ' + site(random.bounded(types)));
    contacts.removeDuplicates();
    return source(names, contacts);
}

QByteArray example(const char *name)
{
    QFile file(QLatin1String(ZEL_EXAMPLE_MODELS "/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Round
{
    QPointF centre;
    double radius;
    int mol;
    SdcBst *site; // null for a component
};

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

double gap(const QRectF &rect, const Round &round)
{
    const double dx =
        std::max(std::abs(rect.center().x() - round.centre.x()) - rect.width() / 2.0, 0.0);
    const double dy =
        std::max(std::abs(rect.center().y() - round.centre.y()) - rect.height() / 2.0, 0.0);
    return std::hypot(dx, dy) - round.radius;
}

bool holds(const Round &round, const QRectF &rect)
{
    const QPointF corners[] = {
        rect.topLeft(), rect.topRight(), rect.bottomLeft(), rect.bottomRight()};
    return std::all_of(std::begin(corners), std::end(corners),
        [&](const QPointF &corner) { return distance(corner, round.centre) <= round.radius; });
}

std::vector<Round> rounds(const ZelSceneContactMap &map)
{
    std::vector<Round> list;
    for (int i = 0; i < map.getListSdcMol().size(); ++i) {
        for (SdcMcp *mcp : map.getListSdcMol().at(i)->getListSdcMcp()) {
            const auto add = [&](const ZelEllipseItem *item, SdcBst *site) {
                const QRectF rect = item->mapRectToScene(item->rect());
                list.push_back({rect.center(), rect.width() / 2.0, i, site});
            };
            add(mcp->getZelEllipseItemMcp(), nullptr);
            for (SdcBst *bst : mcp->getListSdcBst())
                add(bst->getZelEllipseItemBst(), bst);
        }
    }
    return list;
}

QList<QPair<QString, QRectF>> names(const ZelSceneContactMap &map)
{
    QList<QPair<QString, QRectF>> list;
    for (QGraphicsItem *item : map.items(Qt::AscendingOrder)) {
        if (auto *const text = qgraphicsitem_cast<QGraphicsSimpleTextItem *>(item))
            list.append({text->text(), text->sceneBoundingRect().adjusted(0.3, 0.3, -0.3, -0.3)});
    }
    return list;
}

/// A path's points, few units apart.
QList<QPointF> pointsOf(const QPainterPath &path)
{
    QList<QPointF> points;
    const QList<QPolygonF> polygons = path.toSubpathPolygons();
    for (const QPolygonF &polygon : polygons) {
        for (qsizetype i = 1; i < polygon.size(); ++i) {
            const QPointF way = polygon.at(i) - polygon.at(i - 1);
            const int steps = 1 + static_cast<int>(distance(way, {}) / 3.0);
            for (int k = 0; k < steps; ++k)
                points.append(polygon.at(i - 1) + way * k / steps);
        }
    }
    return points;
}

/// How often a line runs through an ellipse that it does not join.
int countHits(const ZelSceneContactMap &map, const std::vector<Round> &list)
{
    int hits = 0;
    for (std::size_t i = 0; i < map.paths().size(); ++i) {
        const ZelSceneContactMap::Contact &contact = map.contacts()[i];
        const QList<QPointF> points = pointsOf(map.paths()[i]);
        hits += static_cast<int>(std::count_if(list.cbegin(), list.cend(), [&](const Round &round) {
            return round.site != contact.first && round.site != contact.second
                && std::any_of(points.cbegin(), points.cend(), [&round](const QPointF &point) {
                       return distance(point, round.centre) < round.radius - 0.5;
                   });
        }));
    }
    return hits;
}

} // namespace

void tst_ContactMap::isFitToPrint_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("contacts");
    QTest::addColumn<int>("hits"); ///< at most
    QTest::addColumn<double>("aspect"); ///< at most
    QTest::newRow("growth factor receptor")
        << example("growthFactorReceptor.bngl") << 4 << 0 << 2.0;
    QTest::newRow("antigen receptor") << example("antigenReceptor.bngl") << 4 << 0 << 2.5;
    QTest::newRow("scaffold") << example("scaffoldCascade.bngl") << 3 << 0 << 1.8;
    QTest::newRow("two in a row") << source({"A(b)", "B(a)"}, {"A(b) B(a)"}) << 1 << 0 << 2.6;
    QTest::newRow("homodimer") << source({"A(a)"}, {"A(a) A(a)"}) << 1 << 0 << 1.8;
    QTest::newRow("homodimer that binds others")
        << source({"A(a,b)", "B(a)"}, {"A(a) A(a)", "A(a) B(a)", "A(b) A(b)"}) << 3 << 0 << 2.6;
    QTest::newRow("two sites of one type") << source({"A(a,b)"}, {"A(a) A(b)"}) << 1 << 0 << 2.6;
    QTest::newRow("all with all") << source({"L(r,r,r)", "R(l,l)"}, {"L(r) R(l)"}) << 6 << 0 << 2.0;
    QTest::newRow("nothing binds")
        << source({"A()", "B(x~U~P)", "C()", "D()", "E(x,y)", "F()"}, {}) << 0 << 0 << 2.2;
    QTest::newRow("pairs") << source({"A(x)", "B(x)", "C(x)", "D(x)", "E(x)", "F(x)", "G()"},
        {"A(x) B(x)", "C(x) D(x)", "E(x) F(x)"})
                           << 3 << 0 << 2.0;
    const QString twelve =
        QStringLiteral("P(%1)").arg(QStringLiteral("b,").repeated(12).chopped(1));
    QTest::newRow("twelve equal sites") << source({twelve}, {"P(b) P(b)"}) << 78 << 132 << 1.3;
    const QString many = QStringLiteral("P(%1)").arg(QStringLiteral("b,").repeated(200).chopped(1));
    QTest::newRow("two hundred equal sites")
        << source({many, "X(a)"}, {"P(b) X(a)"}) << 200 << 240 << 1.3;
    const QString name = QStringLiteral("AVeryLongNameOfAMoleculeTypeOrComponent");
    QTest::newRow("long names") << source(
        {name + "(" + name + "~U~P,b)", "B" + name + "(" + name + ")"},
        {name + "(b) B" + name + "(" + name + ")"})
                                << 1 << 0 << 3.8;
    QTest::newRow("ring of six") << source(
        {"A(l,r)", "B(l,r)", "C(l,r)", "D(l,r)", "E(l,r)", "F(l,r)"},
        {"A(r) B(l)", "B(r) C(l)", "C(r) D(l)", "D(r) E(l)", "E(r) F(l)", "F(r) A(l)"})
                                 << 6 << 0 << 2.0;
    for (const quint32 seed : {1U, 2U, 3U})
        QTest::addRow("random, %u", seed) << randomSource(10, 4, seed) << -1 << 1 << 3.0;
    QTest::newRow("thirty") << randomSource(30, 15, 7) << -1 << 8 << 2.4;
    QTest::newRow("hundred") << randomSource(100, 100, 8) << -1 << 80 << 2.4;
}

void tst_ContactMap::isFitToPrint()
{
    QFETCH(const QByteArray, text);
    ImportStage stage;
    QVERIFY(stage.import(text));
    QStringList drawings;
    for (const QString &id : stage.db.molGetListPsiimId())
        drawings.append(stage.db.molGetHashInfo(id).value(ZelDbColumn::GraphicsInfo));
    ZelSceneContactMap map;
    QVERIFY(map.load(&stage.db));
    zel::layout::arrangeContactMap(&map);
    QCOMPARE(map.getListSdcMol().size(), drawings.size());

    // Each interaction has its line, and that ends at its two sites.
    QSet<QPair<QString, QString>> wanted;
    for (const QString &id : stage.db.mliGetListPsiimId()) {
        for (const QStringList &row : stage.db.mliGetArrayBstBst(id))
            wanted.insert(std::minmax({row.at(3), row.at(5)}));
    }
    QFETCH(const int, contacts);
    QVERIFY(contacts < 0 || wanted.size() == contacts);
    const std::vector<Round> list = rounds(map);
    QSet<QPair<QString, QString>> drawn;
    for (std::size_t i = 0; i < map.contacts().size(); ++i) {
        const ZelSceneContactMap::Contact &contact = map.contacts()[i];
        drawn.insert(std::minmax({contact.first->getPsiimId(), contact.second->getPsiimId()}));
        const auto endsAt = [&list](SdcBst *site, const QPointF &end) {
            return std::any_of(list.cbegin(), list.cend(), [&](const Round &round) {
                return round.site == site
                    && std::abs(distance(end, round.centre) - round.radius) < 0.01;
            });
        };
        QVERIFY(endsAt(contact.first, map.paths()[i].elementAt(0)));
        QVERIFY(endsAt(contact.second, map.paths()[i].currentPosition()));
    }
    QCOMPARE(drawn, wanted);
    QCOMPARE(map.paths().size(), std::size_t(wanted.size()));

    // Molecules keep apart, and names keep off everything.
    for (std::size_t i = 0; i < list.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            QVERIFY(list[i].mol == list[j].mol
                || distance(list[i].centre, list[j].centre)
                    > list[i].radius + list[j].radius + 3.5);
        }
    }
    const QList<QPair<QString, QRectF>> texts = names(map);
    QVERIFY(texts.size() >= drawings.size());
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const QRectF &rect = texts.at(i).second;
        QVERIFY(rect.height() > 5.0);
        for (const Round &round : list)
            QVERIFY2(gap(rect, round) > 0.0 || (!round.site && holds(round, rect)),
                qPrintable(texts.at(i).first));
        for (qsizetype j = 0; j < i; ++j)
            QVERIFY(!rect.intersects(texts.at(j).second));
        QVERIFY(map.getMapRect().contains(rect));
    }
    QFETCH(const int, hits);
    const int counted = countHits(map, list);
    QVERIFY2(counted <= hits, qPrintable(QString::number(counted)));
    QFETCH(const double, aspect);
    const double ratio = map.getMapRect().width() / map.getMapRect().height();
    QVERIFY2(ratio <= aspect && ratio >= 0.7, qPrintable(QString::number(ratio)));

    // What binds nothing stands beneath.
    double lowest = -1.0e9;
    double highest = 1.0e9;
    for (const Round &round : list) {
        const bool isBound = std::any_of(map.contacts().cbegin(), map.contacts().cend(),
            [&](const ZelSceneContactMap::Contact &contact) {
                SdcMol *const mol = map.getListSdcMol().at(round.mol);
                return contact.first->getParentSdcMol() == mol
                    || contact.second->getParentSdcMol() == mol;
            });
        if (isBound)
            lowest = std::max(lowest, round.centre.y() + round.radius);
        else
            highest = std::min(highest, round.centre.y() - round.radius);
    }
    QVERIFY(lowest < highest);

    QStringList after;
    for (const QString &id : stage.db.molGetListPsiimId())
        after.append(stage.db.molGetHashInfo(id).value(ZelDbColumn::GraphicsInfo));
    QCOMPARE(after, drawings);
}

void tst_ContactMap::sameModelSameMap()
{
    ImportStage stage;
    QVERIFY(stage.import(randomSource(20, 20, 5)));
    std::unique_ptr<ZelSceneContactMap> maps[2];
    for (std::unique_ptr<ZelSceneContactMap> &map : maps) {
        map = std::make_unique<ZelSceneContactMap>();
        QVERIFY(map->load(&stage.db));
        zel::layout::arrangeContactMap(map.get());
    }
    // Nor does it matter what was shown before.
    QVERIFY(maps[1]->load(&stage.db));
    zel::layout::arrangeContactMap(maps[1].get());
    QCOMPARE(maps[1]->paths(), maps[0]->paths());
    QCOMPARE(names(*maps[1]), names(*maps[0]));
    QCOMPARE(maps[1]->items().size(), maps[0]->items().size());
}

void tst_ContactMap::sitesAreNamedWhereTheyHaveNames()
{
    ImportStage stage;
    QVERIFY(stage.import(source({"A(b)", "B(a)"}, {"A(b) B(a)"})));
    QVERIFY(
        stage.db.bstInsert({{ZelDbColumn::PsiimId, "bst1"}, {ZelDbColumn::ShortName, "pocket"}}));
    ZelSceneContactMap map;
    QVERIFY(map.load(&stage.db));
    zel::layout::arrangeContactMap(&map);
    QStringList texts;
    QRectF pocket;
    for (const auto &[text, rect] : names(map)) {
        texts.append(text);
        if (text == QLatin1String("pocket"))
            pocket = rect;
    }
    texts.sort();
    QCOMPARE(texts, QStringList({"A", "B", "a", "b", "pocket"}));
    for (const Round &round : rounds(map))
        QVERIFY(gap(pocket, round) > 0.0);
    for (const QPointF &point : pointsOf(map.paths().front()))
        QVERIFY(!pocket.contains(point));
}

void tst_ContactMap::missingSitesAreReported()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("m.zel");
    ZelDbSqlite file;
    ZelDbSqliteModel db(&file);
    QVERIFY(file.create(path));
    ZelBnglImport importer(&db);
    QVERIFY(importer.importModel(
        ZelBnglParser::parse(source({"A(b,c)", "B(a)"}, {"A(b) B(a)", "A(c) A(c)"}), "m.bngl")));
    file.close();
    {
        QSqlDatabase raw = QSqlDatabase::addDatabase("QSQLITE", "contact map");
        raw.setDatabaseName(path);
        QVERIFY(raw.open());
        QVERIFY(QSqlQuery(raw).exec("UPDATE mliBstBst SET bst2 = 'bst99' WHERE mli = 'mli1'"));
    }
    QSqlDatabase::removeDatabase("contact map");
    QVERIFY(file.open(path));
    ZelSceneContactMap map;
    QVERIFY(map.load(&db));
    const QStringList lines = takeDebugLines();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().contains("mli1") && lines.first().contains("bst99"));
    zel::layout::arrangeContactMap(&map);
    QCOMPARE(map.paths().size(), std::size_t(1));
    QCOMPARE(map.getListSdcMol().size(), 2);
}

void tst_ContactMap::moleculesWithoutAnything()
{
    ImportStage stage;
    for (const char *id : {"mol1", "mol2"})
        QVERIFY(stage.db.molInsert({{ZelDbColumn::PsiimId, id}, {ZelDbColumn::ShortName, "\n"}}));
    ZelSceneContactMap map;
    QVERIFY(map.load(&stage.db));
    zel::layout::arrangeContactMap(&map);
    const QList<QPair<QString, QRectF>> texts = names(map);
    QCOMPARE(texts.size(), 2);
    QCOMPARE(texts.at(0).first, QString("mol1"));
    QVERIFY(!texts.at(0).second.intersects(texts.at(1).second));
}

// A host may do with the scene what it may do with any.
void tst_ContactMap::outlivesItsItems()
{
    ImportStage stage;
    QVERIFY(stage.import(randomSource(5, 3, 1)));
    ZelSceneContactMap map;
    QVERIFY(map.load(&stage.db));
    const qsizetype count = map.items().size();
    delete map.getListSdcMol().first();
    zel::layout::arrangeContactMap(&map);
    map.moveMol(0, {1.0, 1.0});
    map.removeAllItems();
    map.updateNames();
    map.updateMap();
    zel::layout::arrangeContactMap(&map);
    QVERIFY(map.load(&stage.db));
    QCOMPARE(map.items().size(), count);
}

void tst_ContactMap::nothingToShow()
{
    zel::layout::arrangeContactMap(nullptr);
    ZelSceneContactMap map;
    zel::layout::arrangeContactMap(&map);
    QVERIFY(!map.load(nullptr));
    QCOMPARE(takeDebugLines().size(), 1);
    ImportStage stage;
    QVERIFY(!map.load(&stage.db));
    QVERIFY(map.getMapRect().isNull());
    QVERIFY(map.items().isEmpty() || names(map).isEmpty());
}

ZEL_TEST(tst_ContactMap)
#include "tst_ContactMap.moc"
