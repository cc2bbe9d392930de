#include "ReactionStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/support/zgs.h"

#include <QApplication>
#include <QProcess>

#include <algorithm>
#include <cmath>

namespace C = ZelDbColumn;

using PictureFunction = QPixmap (*)(
    const QString &, const QSize &, ZelDbSqliteModel *, QHash<QString, QPixmap> *);

Q_DECLARE_METATYPE(PictureFunction)

namespace {

constexpr QSize Size(100, 60);
constexpr int Operator = 50;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

/// The picture's columns from left to right.
QRect columns(int left, int width)
{
    return {left, 0, width, Size.height()};
}

/// What a screen of two pixels per point gets: the sizes in pixels and the ratio.
int pictureAtTwo(const QStringList &)
{
    ReactionStage stage;
    const QPixmap picture = zgs::getPixMapForAssociation(text("cai1"), Size, &stage.db, nullptr);
    const bool good = picture.size() == QSize(800, 120) && picture.devicePixelRatio() == 2.0
        && ReactionStage::ink(picture, QRect(400, 0, 200, 120)) > 1000
        && ReactionStage::ink(picture, QRect(600, 0, 200, 120)) > 1000;
    return good ? 0 : 1;
}

ZEL_TEST_CHILD("pictureAtTwo", pictureAtTwo)

} // namespace

class tst_Pictures : public ZelTest
{
    Q_OBJECT
private slots:
    void showsARecord_data()
    {
        const QColor yellow(ReactionStage::Yellow);
        const QColor blue(ReactionStage::Blue);
        rows<int, QString, QList<QColor>>({"kind", "psiimId", "colors"},
            {{"molecule", {0, "mol1", {yellow}}},
                {"molecule by any other number", {2, "mol2", {blue}}},
                {"complex", {5, "LR", {yellow, blue}}}, {"alias", {6, "LR", {yellow, blue}}}});
    }
    void showsARecord()
    {
        QFETCH(int, kind);
        QFETCH(QString, psiimId);
        QFETCH(QList<QColor>, colors);
        ReactionStage stage;
        if (psiimId == QLatin1String("LR"))
            psiimId = kind == zgs::PictureCpa ? stage.cpaLR : stage.cpxLR;
        const QPixmap picture = zgs::getPixMapFromSdcPsiimId(psiimId, kind, Size, &stage.db);
        QCOMPARE(picture.size(), Size);
        for (const QColor &color : colors)
            QVERIFY2(
                ReactionStage::hasColor(picture, picture.rect(), color), qPrintable(color.name()));
        QCOMPARE(picture.toImage().pixelColor(0, 0).alpha(), 0);
    }

    /// Grown by a tenth and centred: the drawing is 1/1.1 of the side that it fills.
    void fitsTheDrawing_data()
    {
        rows<QSize>({"size"},
            {{"wide", {QSize(220, 20)}}, {"tall", {QSize(40, 220)}},
                {"the same ratio", {QSize(140, 40)}}});
    }
    void fitsTheDrawing()
    {
        QFETCH(QSize, size);
        ReactionStage stage;
        const QImage image = zgs::getPixMapFromSdcPsiimId(stage.molR, 0, size, &stage.db).toImage();
        QRect inked;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qAlpha(image.pixel(x, y)) > 40)
                    inked |= QRect(x, y, 1, 1);
            }
        }
        const double share =
            std::max(double(inked.width()) / size.width(), double(inked.height()) / size.height());
        QVERIFY2(share > 0.85 && share < 0.97, qPrintable(QString::number(share)));
        const QPointF off = QRectF(inked).center() - QRectF(image.rect()).center();
        QVERIFY2(std::abs(off.x()) < 1.5 && std::abs(off.y()) < 1.5, "centred");
    }

    void composesReactions_data()
    {
        QTest::addColumn<PictureFunction>("function");
        QTest::addColumn<QString>("psiimId");
        QTest::addColumn<QList<int>>("widths"); // species and, negative, signs
        QTest::addColumn<QString>("species"); // L, R, both
        const int symbol = int(1.2 * int(36.0 * 64 / 48));
        QTest::newRow("association") << PictureFunction(zgs::getPixMapForAssociation) << "cai1"
                                     << QList<int>{100, -50, 100, -50, 100} << "L R B";
        QTest::newRow("dissociation") << PictureFunction(zgs::getPixMapForDissociation) << "cad1"
                                      << QList<int>{100, -50, 100, -50, 100} << "B L R";
        QTest::newRow("dissociation within one complex")
            << PictureFunction(zgs::getPixMapForDissociation) << "cad2" << QList<int>{100, -50, 100}
            << "B B";
        QTest::newRow("transformation") << PictureFunction(zgs::getPixMapForTransformation)
                                        << "trn1" << QList<int>{100, -50, 100} << "R R";
        QTest::newRow("production") << PictureFunction(zgs::getPixMapForProduction) << "pdn1"
                                    << QList<int>{100, -symbol, 100} << "R L";
        QTest::newRow("degradation") << PictureFunction(zgs::getPixMapForDegradation) << "deg1"
                                     << QList<int>{100, -50, -50} << "L";
    }
    void composesReactions()
    {
        QFETCH(PictureFunction, function);
        QFETCH(QString, psiimId);
        QFETCH(QList<int>, widths);
        QFETCH(QString, species);
        ReactionStage stage;
        QVERIFY(stage.db.cadInsert({{C::PsiimId, text("cad2")}, {C::CadSourceCpa, stage.cpaLR},
            {C::CadResultCpa1, stage.cpaLR}, {C::GeometryText, text("Intra Complex")}}));
        QHash<QString, QPixmap> cache;
        const QPixmap picture = function(psiimId, Size, &stage.db, &cache);
        QCOMPARE(function(psiimId, Size, &stage.db, &cache).cacheKey(), picture.cacheKey());
        int x = 0;
        int index = 0;
        const QColor yellow(ReactionStage::Yellow);
        const QColor blue(ReactionStage::Blue);
        for (const int width : widths) {
            const QRect part = columns(x, std::abs(width));
            const bool hasL = ReactionStage::hasColor(picture, part, yellow);
            const bool hasR = ReactionStage::hasColor(picture, part, blue);
            if (width < 0) {
                QVERIFY2(ReactionStage::ink(picture, part) > 40, "a sign");
                QVERIFY(!hasL && !hasR);
            } else {
                const QString what = species.split(u' ').at(index++);
                QCOMPARE(hasL, what != u'R');
                QCOMPARE(hasR, what != u'L');
            }
            x += std::abs(width);
        }
        QCOMPARE(picture.size(), QSize(x, Size.height()));
    }

    void aSourceMayBeNothing()
    {
        ReactionStage stage;
        QVERIFY(stage.db.pdnInsert({{C::PsiimId, text("pdn2")}, {C::PdnProductCpa, stage.cpaL}}));
        const QPixmap picture = zgs::getPixMapForProduction(text("pdn2"), Size, &stage.db, nullptr);
        QVERIFY(ReactionStage::ink(picture, columns(0, 100)) > 40);
        QVERIFY(!ReactionStage::hasColor(picture, columns(0, 100), QColor(ReactionStage::Yellow)));
    }

    void keepsPicturesOfSpecies()
    {
        ReactionStage stage;
        QHash<QString, QPixmap> cache;
        QPixmap red(Size);
        red.fill(Qt::red);
        cache.insert(stage.cpaL, red);
        QPixmap tooSmall(QSize(10, 10));
        tooSmall.fill(Qt::red);
        cache.insert(stage.cpaR, tooSmall);
        const QPixmap picture = zgs::getPixMapForAssociation(text("cai1"), Size, &stage.db, &cache);
        QVERIFY(ReactionStage::hasColor(picture, columns(0, 100), Qt::red));
        QVERIFY2(!ReactionStage::hasColor(picture, columns(150, 100), Qt::red), "another size");
        QCOMPARE(cache.value(stage.cpaR).size(), Size);
        QVERIFY(cache.contains(stage.cpaLR));

        // Nothing is drawn again, until a picture is taken out.
        const QPixmap again = zgs::getPixMapForAssociation(text("cai1"), Size, &stage.db, &cache);
        QCOMPARE(again.cacheKey(), picture.cacheKey());
        cache.remove(stage.cpaL);
        const QPixmap fresh = zgs::getPixMapForAssociation(text("cai1"), Size, &stage.db, &cache);
        QVERIFY(ReactionStage::hasColor(fresh, columns(0, 100), QColor(ReactionStage::Yellow)));
        // So is a reaction of other species.
        QVERIFY(stage.db.caiInsert({{C::PsiimId, text("cai1")}, {C::CaiCpa1, stage.cpaR}}));
        const QPixmap changed = zgs::getPixMapForAssociation(text("cai1"), Size, &stage.db, &cache);
        QVERIFY(ReactionStage::hasColor(changed, columns(0, 100), QColor(ReactionStage::Blue)));
    }

    void reportsUnknownReactions_data()
    {
        QTest::addColumn<PictureFunction>("function");
        QTest::addColumn<QString>("message");
        const QString arguments = text("(const QString & psiimId, const QSize & complexSize, "
                                       "ZelDbSqliteModel * zelDbSqliteModel");
        const QString begin = text("Error found at QPixmap zgs::getPixMapFor");
        QTest::newRow("association") << PictureFunction(zgs::getPixMapForAssociation)
                                     << begin + text("Association") + arguments + u')';
        QTest::newRow("dissociation") << PictureFunction(zgs::getPixMapForDissociation)
                                      << begin + text("Dissociation") + arguments + u')';
        QTest::newRow("transformation") << PictureFunction(zgs::getPixMapForTransformation)
                                        << begin + text("Transformation") + arguments + u')';
        QTest::newRow("degradation") << PictureFunction(zgs::getPixMapForDegradation)
                                     << begin + text("Degradation") + arguments + u')';
        QTest::newRow("production")
            << PictureFunction(zgs::getPixMapForProduction)
            << text("Error found at QPixmap QPixmap zgs::getPixMapForProduction") + arguments
                + text(", QHash<QString, QPixmap> * psiim2Pixmap)  pdnPsiimId:  \"none9\"");
    }
    void reportsUnknownReactions()
    {
        QFETCH(PictureFunction, function);
        QFETCH(QString, message);
        ReactionStage stage;
        QHash<QString, QPixmap> cache;
        QVERIFY(function(text("none9"), Size, &stage.db, &cache).isNull());
        QCOMPARE(takeDebugLines(), QStringList{message});
        QVERIFY(function(text("none9"), Size, nullptr, &cache).isNull());
        QVERIFY(function(text("none9"), QSize(-4, 1000000), &stage.db, &cache).isNull());
        QCOMPARE(takeDebugLines(), (QStringList{message, message}));
        QVERIFY(cache.isEmpty());
    }

    void reportsUnusableRequests()
    {
        ReactionStage stage;
        for (const QSize &size : {QSize(), QSize(0, 10), QSize(10, -1), QSize(1000000, 1000000)}) {
            QVERIFY(zgs::getPixMapFromSdcPsiimId(stage.molL, 0, size, &stage.db).isNull());
            QCOMPARE(takeDebugLines().size(), 1);
        }
        for (const int kind : {0, 4, 5, 6}) {
            QVERIFY(zgs::getPixMapFromSdcPsiimId(text("none9"), kind, Size, &stage.db).isNull());
            QVERIFY(!takeDebugLines()
                         .filter(text("zgs::getPixMapFromSdcPsiimId("))
                         .filter(text("none9"))
                         .isEmpty());
        }
        QVERIFY(zgs::getPixMapFromSdcPsiimId(stage.molL, 0, Size, nullptr).isNull());
        QCOMPARE(takeDebugLines().size(), 1);
    }

    void showsWhatIsLeftOfDamagedRecords()
    {
        ReactionStage stage;
        QHash<QString, QPixmap> cache;
        QVERIFY(stage.execute(
            {QStringLiteral("DELETE FROM cpa WHERE psiimId = '%1'").arg(stage.cpaL)}));
        const QPixmap partial = zgs::getPixMapForAssociation(text("cai1"), Size, &stage.db, &cache);
        QCOMPARE(partial.size(), QSize(400, 60));
        QCOMPARE(ReactionStage::ink(partial, columns(0, 100)), 0);
        QVERIFY(ReactionStage::ink(partial, columns(100, 50)) > 0);
        QVERIFY(ReactionStage::hasColor(partial, columns(150, 100), QColor(ReactionStage::Blue)));
        QVERIFY(!takeDebugLines().filter(text("getPixMapForAssociation")).isEmpty());
        QVERIFY2(cache.contains(stage.cpaR) && !cache.contains(stage.cpaL), "no blank is kept");

        // An alias that has lost its complex, a reaction that has lost all.
        QVERIFY(stage.execute({QStringLiteral("DELETE FROM cpx")}));
        QVERIFY(zgs::getPixMapForAssociation(text("cai1"), Size, &stage.db, nullptr).isNull());
        QVERIFY(!takeDebugLines().isEmpty());
    }

    void isSharpOnFineScreens()
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(text("QT_SCALE_FACTOR"), text("2"));
        process.setProcessEnvironment(environment);
        process.start(
            QCoreApplication::applicationFilePath(), {text("--child"), text("pictureAtTwo")});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
    }
};

ZEL_TEST(tst_Pictures)
#include "tst_Pictures.moc"
