#include "RandomSpecies.h"
#include "ReactionStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/support/zgs.h"

#include <algorithm>
#include <cstdlib>

namespace C = ZelDbColumn;

namespace {

constexpr QSize Size(100, 60);

/// By how much a pixel's red, green, blue or alpha differs at most; 256 when the sizes do.
int greatestDifference(const QImage &a, const QImage &b)
{
    if (a.size() != b.size() || a.format() != b.format())
        return 256;
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (qsizetype i = 0; i < a.bytesPerLine(); ++i)
            greatest = std::max(greatest, std::abs(a.constScanLine(y)[i] - b.constScanLine(y)[i]));
    }
    return greatest;
}

constexpr int Rounding = 3; // the last digit of a place may decide on a shade of a rim

QImage picture(const QString &cpaPsiimId, ZelDbSqliteModel *db, const QSize &size = Size)
{
    return zgs::getPixMapFromSdcPsiimId(cpaPsiimId, zgs::PictureCpa, size, db).toImage();
}

} // namespace

/// Pictures of aliases are drawn without a scene, and show what one would show.
class tst_SpeciesDrawing : public ZelTest
{
    Q_OBJECT
private slots:
    void showsWhatTheSceneShows_data()
    {
        QTest::addColumn<int>("seed");
        QTest::addColumn<QSize>("size");
        const QSize sizes[] = {QSize(100, 60), QSize(400, 400), QSize(30, 90)};
        for (int seed = 1; seed <= 12; ++seed) {
            const QSize size = sizes[seed % 3];
            QTest::addRow("seed %d at %d x %d", seed, size.width(), size.height()) << seed << size;
        }
    }
    void showsWhatTheSceneShows()
    {
        QFETCH(int, seed);
        QFETCH(QSize, size);
        RandomSpecies species(static_cast<quint32>(seed));
        for (const QString &alias : species.aliases()) {
            int forScene = 0; // only the component of a complex asks for its references
            species.file.setStatementObserver(
                [&forScene](const QString &sql, const QVariantList &values) {
                    forScene += sql.contains(QLatin1String("FROM reference"))
                            && values.contains(QStringLiteral("cpx"))
                        ? 1
                        : 0;
                });
            const QImage drawn = picture(alias, &species.db, size);
            QCOMPARE(forScene, 0);
            const QImage shown = RandomSpecies::sceneImage(alias, size, &species.db);
            QVERIFY(forScene > 0);
            const int difference = greatestDifference(drawn, shown);
            QVERIFY2(difference <= Rounding, qPrintable(QString::number(difference)));
        }
    }

    /// What does not fit together is drawn, and reported, as by the scene.
    void leavesTheRestToTheScene_data()
    {
        QTest::addColumn<QString>("damage");
        const auto inLayout = [](const char *from, const char *to) {
            return QStringLiteral("UPDATE cpx SET graphicsInfo = replace(graphicsInfo, '%1', '%2')")
                .arg(QLatin1String(from), QLatin1String(to));
        };
        const auto inCode = [](const char *from, const char *to) {
            return QStringLiteral("UPDATE cpa SET stateCode = replace(stateCode, '%1', '%2')")
                .arg(QLatin1String(from), QLatin1String(to));
        };
        QTest::newRow("no layout") << QStringLiteral("UPDATE cpx SET graphicsInfo = ''");
        QTest::newRow("a broken layout") << inLayout("</cpx>", "");
        QTest::newRow("another complex' layout") << inLayout("\"cpx", "\"xpc");
        QTest::newRow("another molecule's layout") << inLayout("\"mol2\"", "\"mol9\"");
        QTest::newRow("another component's layout") << inLayout("\"mcp2\"", "\"mcp9\"");
        QTest::newRow("another site's layout") << inLayout("\"bst2\"", "\"bst9\"");
        QTest::newRow("places out of order") << inLayout("posIndex=\"1\"", "posIndex=\"7\"");
        QTest::newRow("a part without extent") << inLayout("w=\"60\"", "w=\"0\"");
        QTest::newRow("features without measure") << inLayout("tagSize", "tagSite");
        QTest::newRow("features of no size") << inLayout("tagSize=\"", "tagSize=\"0\" x=\"");
        QTest::newRow("comments in the layout") << inLayout("</mcp>", "<!-- --></mcp>");
        QTest::newRow("a broken state code") << inCode("</mol>", "");
        QTest::newRow("states of a missing molecule") << inCode("<mol pos=\"1\"", "<mol pos=\"4\"");
        QTest::newRow("states of a missing component")
            << inCode("<mcp pos=\"1\"", "<mcp pos=\"3\"");
        QTest::newRow("states of a missing site") << inCode("bst id=\"bst1\"", "bst id=\"bst9\"");
        QTest::newRow("other words in the state code") << inCode("</mcp>", "<more/></mcp>");
        QTest::newRow("an entity in the state code") << inCode("pos=\"1\"", "pos=\"&#49;\"");
        QTest::newRow("no colour") << QStringLiteral("UPDATE mol SET color = ''");
        QTest::newRow("no molecule") << QStringLiteral("DELETE FROM mol WHERE psiimId = 'mol1'");
        QTest::newRow("no state") << QStringLiteral("DELETE FROM mcpState");
        QTest::newRow("a backbone to nowhere") << QStringLiteral("UPDATE mcpMcp SET b = 5");
        QTest::newRow("a bond to nowhere") << QStringLiteral("UPDATE cpxBstBst SET molPos2 = 5");
        QTest::newRow("no complex") << QStringLiteral("DELETE FROM cpx");
        QTest::newRow("no alias") << QStringLiteral("DELETE FROM cpa");
    }
    void leavesTheRestToTheScene()
    {
        QFETCH(QString, damage);
        ReactionStage stage;
        QVERIFY(stage.execute({damage}));
        for (const QString &alias : {stage.cpaL, stage.cpaR, stage.cpaRp, stage.cpaLR}) {
            const QImage expected = RandomSpecies::sceneImage(alias, Size, &stage.db);
            QStringList lines = takeDebugLines();
            const int difference = greatestDifference(picture(alias, &stage.db), expected);
            QVERIFY2(difference <= Rounding, qPrintable(QString::number(difference)));
            QStringList reported = takeDebugLines();
            if (expected.isNull())
                QVERIFY(reported.takeLast().contains(QLatin1String("getPixMapFromSdcPsiimId")));
            QCOMPARE(reported, lines);
        }
    }

    void readsMoleculesOnce()
    {
        RandomSpecies species(3);
        // Whatever is written of a molecule, what was read of molecules before is read again.
        QVERIFY(species.db.molInsert({{C::PsiimId, species.mols().first()}, {C::Notes, "new"}}));
        int asked = 0;
        species.file.setStatementObserver([&asked](const QString &sql, const QVariantList &) {
            asked += sql.contains(QLatin1String("FROM mcpState")) ? 1 : 0;
        });
        for (const QString &alias : species.aliases())
            picture(alias, &species.db);
        const int first = asked;
        QVERIFY(first > 0);
        for (const QString &alias : species.aliases())
            picture(alias, &species.db);
        QCOMPARE(asked, first);
    }

    void followsChanges()
    {
        ReactionStage stage;
        const QImage before = picture(stage.cpaL, &stage.db);
        const auto paint = [&](ZelDbSqliteModel *db, const char *color) {
            return db->molInsert(
                {{C::PsiimId, stage.molL}, {C::Color, QString::fromLatin1(color)}});
        };
        {
            ZelDbTransaction transaction(&stage.file);
            QVERIFY(paint(&stage.db, "#123456"));
            QVERIFY(ReactionStage::hasColor(QPixmap::fromImage(picture(stage.cpaL, &stage.db)),
                QRect(QPoint(), Size), QColor(0x12, 0x34, 0x56)));
        }
        QVERIFY2(picture(stage.cpaL, &stage.db) == before, "taken back");

        ZelDbSqlite otherFile;
        QVERIFY(otherFile.open(stage.file.path()));
        ZelDbSqliteModel other(&otherFile);
        QVERIFY(paint(&other, "#654321"));
        const QImage after = picture(stage.cpaL, &stage.db);
        QVERIFY2(ReactionStage::hasColor(
                     QPixmap::fromImage(after), after.rect(), QColor(0x65, 0x43, 0x21)),
            "changed through another connection");

        // Another file with records of the same names.
        ReactionStage second;
        QCOMPARE(second.molL, stage.molL);
        QVERIFY(picture(second.cpaL, &second.db) == before);
        QVERIFY(picture(stage.cpaL, &stage.db) == after);
    }
};

ZEL_TEST(tst_SpeciesDrawing)
#include "tst_SpeciesDrawing.moc"
