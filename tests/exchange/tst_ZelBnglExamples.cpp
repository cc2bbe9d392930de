#include "ImportStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/support/zgs.h"

#include <QImage>
#include <QPixmap>
#include <QSet>

/// The models that come with the project, and that what an import brings in can be seen.
class tst_ZelBnglExamples : public ZelTest
{
    Q_OBJECT

private slots:
    void comeInWhole_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("contents"); // types, components, sites, features, species
        QTest::addColumn<QString>("reactions"); // of each kind, as in the report
        const auto add = [](const char *model, const char *contents, const char *reactions) {
            QTest::newRow(model) << QString::fromLatin1(model) << QString::fromLatin1(contents)
                                 << QString::fromLatin1(reactions);
        };
        add("growthFactorReceptor", "4 7 7 2 4", "4 4 2 1 1");
        add("antigenReceptor", "3 6 6 2 3", "4 4 3 0 0");
        add("scaffoldCascade", "5 10 7 6 4", "3 3 6 1 1");
    }

    void comeInWhole()
    {
        QFETCH(QString, model);
        QFETCH(QString, contents);
        QFETCH(QString, reactions);
        ImportStage stage;

        QVERIFY2(
            stage.importer.importFile(QStringLiteral(ZEL_EXAMPLE_MODELS "/%1.bngl").arg(model)),
            qPrintable(stage.report().error));

        const ZelImportReport &report = stage.report();
        QCOMPARE(stage.losses(), QStringList());
        QCOMPARE(QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(report.moleculeTypes)
                     .arg(report.components)
                     .arg(report.sites)
                     .arg(report.features)
                     .arg(report.species),
            contents);
        QCOMPARE(QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(report.associations)
                     .arg(report.dissociations)
                     .arg(report.transformations)
                     .arg(report.productions)
                     .arg(report.degradations),
            reactions);
    }

    void everyMoleculeIsDrawn()
    {
        ImportStage stage;
        QVERIFY(stage.import("begin species\nBare() 1\nA(b!1).B(a!1) 1\nend species\n"));
        QList<QPair<QString, int>> pictured;
        for (const QString &id : stage.db.molGetListPsiimId())
            pictured.append({id, zgs::PictureMol});
        for (const QString &id : stage.db.cpaGetListPsiimId())
            pictured.append({id, zgs::PictureCpa});
        QCOMPARE(pictured.size(), 5);
        for (const auto &[id, kind] : std::as_const(pictured)) {
            const QImage picture =
                zgs::getPixMapFromSdcPsiimId(id, kind, QSize(100, 60), &stage.db).toImage();
            QImage blank(picture.size(), picture.format());
            blank.fill(Qt::transparent);
            QVERIFY2(picture != blank, qPrintable(id));
        }
    }

    void aStateHasOneColorInAllMolecules()
    {
        ImportStage stage;
        QVERIFY(stage.import("begin molecule types\nA(x~U~P)\nB(y~P~Q,z~U)\nend molecule types\n"));
        QMap<QString, QSet<QString>> colors;
        for (const QString &id : stage.db.mcpGetListPsiimId()) {
            for (const ZelDbState &state : stage.db.mcpGetOrderedStates(id))
                colors[state.name].insert(state.color);
        }
        QCOMPARE(colors.size(), 3);
        QSet<QString> all;
        for (const QSet<QString> &ofState : std::as_const(colors)) {
            QCOMPARE(ofState.size(), 1);
            all += ofState;
        }
        QCOMPARE(all.size(), 3);
    }
};

ZEL_TEST(tst_ZelBnglExamples)
#include "tst_ZelBnglExamples.moc"
