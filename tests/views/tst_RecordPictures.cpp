#include "ReactionStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QPainter>

#include <functional>

namespace {

constexpr QSize Size(100, 60);

/// The interaction of L's site with R's second one, as drawn and saved by a user.
QString storeInteraction(ReactionStage *stage)
{
    ZelSceneMli scene;
    scene.setZelDbSqliteModel(&stage->db);
    SdcMol *const first = scene.addMolFromDb(stage->molL, {-120.0, 0.0});
    SdcMol *const second = scene.addMolFromDb(stage->molR, {120.0, 0.0});
    scene.drawBond(first->getListSdcBst().first(), second->getListSdcBst().last());
    SdcMli *const mli = scene.getSdcMli();
    mli->setProperty(SdcProperty::AssociationRate, QStringLiteral("0.1"));
    mli->setProperty(SdcProperty::DissociationRate, QStringLiteral("0.2"));
    return mli->saveToDb() ? mli->getPsiimId() : QString();
}

} // namespace

// The pictures of all kinds of records, those of molecule interactions above all.
class tst_RecordPictures : public ZelTest
{
    Q_OBJECT
private slots:
    void showsAnInteraction()
    {
        ReactionStage stage;
        const QString mli = storeInteraction(&stage);
        const QPixmap picture = zgs::getPixMapFromSdcPsiimId(mli, zgs::PictureMli, Size, &stage.db);
        QCOMPARE(picture.size(), QSize(300, 60));
        // Fitted into the ratio of the size itself, it takes the first third.
        const QRect left(0, 0, 40, 60);
        const QRect right(40, 0, 60, 60);
        QCOMPARE(ReactionStage::ink(picture, QRect(100, 0, 200, 60)), 0);
        QVERIFY(ReactionStage::hasColor(picture, left, QColor(ReactionStage::Yellow)));
        QVERIFY(!ReactionStage::hasColor(picture, left, QColor(ReactionStage::Blue)));
        QVERIFY(ReactionStage::hasColor(picture, right, QColor(ReactionStage::Blue)));
        QVERIFY(!ReactionStage::hasColor(picture, right, QColor(ReactionStage::Yellow)));
        // The bond crosses the gap between the molecules.
        for (int x = 25; x < 55; x += 5)
            QVERIFY2(ReactionStage::ink(picture, QRect(x, 0, 1, 60)) > 0,
                qPrintable(QString::number(x)));
    }

    void aDamagedInteraction_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("isLeft"); // something to be seen
        QTest::newRow("a molecule is missing") << "DELETE FROM mol WHERE psiimId = '%1'"
                                               << "no such molecule" << false;
        QTest::newRow("a site is missing")
            << "DELETE FROM bst WHERE mcp IN (SELECT psiimId FROM mcp WHERE mol = '%1')"
            << "mli1" << false;
        QTest::newRow("a layout that is none") << "UPDATE mli SET graphicsInfo = '<schema><mli'"
                                               << "layout" << true;
        QTest::newRow("no record") << "DELETE FROM mli"
                                   << "mli1" << false;
    }
    void aDamagedInteraction()
    {
        QFETCH(QString, statement);
        QFETCH(QString, message);
        QFETCH(bool, isLeft);
        ReactionStage stage;
        const QString mli = storeInteraction(&stage);
        QCOMPARE(mli, QStringLiteral("mli1"));
        QVERIFY(stage.execute({statement.contains(u'%') ? statement.arg(stage.molL) : statement}));
        const QPixmap picture = zgs::getPixMapFromSdcPsiimId(mli, zgs::PictureMli, Size, &stage.db);
        const QStringList lines = takeDebugLines();
        QVERIFY2(!lines.filter(message).isEmpty(), qPrintable(lines.join(u'\n')));
        QCOMPARE(!picture.isNull(), isLeft);
        if (isLeft)
            QVERIFY(ReactionStage::hasColor(picture, picture.rect(), QColor(ReactionStage::Blue)));
    }

    /// With ZEL_TEST_PICTURES one sheet is written to look at; QT_SCALE_FACTOR=2 makes it fine.
    void allOfOneModel()
    {
        ReactionStage stage;
        const QString mli = storeInteraction(&stage);
        using Draw = std::function<QPixmap(const QSize &)>;
        QList<Draw> rows;
        const QList<QPair<int, QString>> records{{zgs::PictureMol, stage.molL},
            {zgs::PictureMol, stage.molR}, {zgs::PictureMli, mli}, {zgs::PictureCpx, stage.cpxLR},
            {zgs::PictureCpa, stage.cpaLR}, {zgs::PictureCpa, stage.cpaRp}};
        for (const auto &[kind, id] : records)
            rows.append([&stage, kind = kind, id = id](const QSize &size) {
                return zgs::getPixMapFromSdcPsiimId(id, kind, size, &stage.db);
            });
        using Function = QPixmap (*)(
            const QString &, const QSize &, ZelDbSqliteModel *, QHash<QString, QPixmap> *);
        const QList<QPair<Function, const char *>> reactions{{zgs::getPixMapForAssociation, "cai1"},
            {zgs::getPixMapForDissociation, "cad1"}, {zgs::getPixMapForTransformation, "trn1"},
            {zgs::getPixMapForProduction, "pdn1"}, {zgs::getPixMapForDegradation, "deg1"}};
        for (const auto &[function, id] : reactions)
            rows.append([&stage, function = function, id = id](const QSize &size) {
                return function(QString::fromLatin1(id), size, &stage.db, nullptr);
            });
        const QList<QSize> sizes{{60, 36}, {60, 60}, {100, 60}};
        const double ratio = qApp->devicePixelRatio();
        QImage sheet(QSize(1000, int(rows.size()) * 68) * ratio, QImage::Format_RGB32);
        sheet.setDevicePixelRatio(ratio);
        sheet.fill(Qt::white);
        QPainter painter(&sheet);
        for (qsizetype row = 0; row < rows.size(); ++row) {
            int x = 4;
            for (const QSize &size : sizes) {
                const QPixmap picture = rows.at(row)(size);
                QVERIFY(ReactionStage::ink(picture) > 100);
                painter.drawPixmap(x, int(row) * 68 + 4, picture);
                x += 4 * size.width() + 10;
            }
        }
        painter.end();
        if (qEnvironmentVariableIsSet("ZEL_TEST_PICTURES"))
            QVERIFY(sheet.save(QStringLiteral("pictures@%1x.png").arg(ratio)));
    }
};

ZEL_TEST(tst_RecordPictures)
#include "tst_RecordPictures.moc"
