#include "ClosedFamily.h"
#include "ImportStage.h"

#include "support/ZelTest.h"

#include "zelExchange/bngl/ZelBnglParser.h"

#include <algorithm>
#include <functional>

namespace {

/// Molecule types and species over them.
ZelBnglModel network(const QByteArray &types, const QByteArrayList &species)
{
    return ZelBnglParser::parse("begin molecule types\n" + types
            + "\nend molecule types\nbegin species\n" + species.join(" 0\n") + " 0\nend species\n",
        QStringLiteral("m.net"));
}

QByteArray number(int number)
{
    return QByteArray::number(number);
}

} // namespace

/// Families of species whose number is known, and species with many symmetries.
class tst_ZelBnglFamily : public ZelTest
{
    Q_OBJECT

private slots:
    void countsClosedFamily_data()
    {
        QTest::addColumn<ClosedFamily>("family");
        QTest::addColumn<int>("complexes");
        // A complex is free or of either enzyme at each site.
        int distinct = 1;
        for (int n = 1; n <= 6; ++n) {
            distinct *= 3;
            QTest::addRow("%d distinct sites", n) << ClosedFamily{n, false} << distinct + 2;
            QTest::addRow("%d identical sites", n)
                << ClosedFamily{n, true} << (n + 2) * (n + 1) / 2 + 2;
        }
    }

    void countsClosedFamily()
    {
        QFETCH(const ClosedFamily, family);
        QFETCH(const int, complexes);
        ImportStage stage;
        QVERIFY2(stage.import(family.source()), qPrintable(stage.report().error));
        QCOMPARE(stage.report().species, family.speciesCount());
        QCOMPARE(int(stage.identities().size()), family.speciesCount());
        QCOMPARE(stage.report().complexes, complexes);
    }

    void countsArmsOfAHub()
    {
        constexpr int Arms = 12;
        // Every number of arms that are P, each with several choices of these arms.
        QByteArrayList species;
        for (int p = 0; p <= Arms; ++p) {
            for (int first = 0; first < Arms; first += 5) {
                QByteArrayList sites;
                QByteArray arms;
                for (int i = 0; i < Arms; ++i) {
                    const bool isP = (i + first) % Arms < p;
                    sites.append("a!" + number(i));
                    arms += ".L(h!" + number(i) + (isP ? ",s~P)" : ",s~U)");
                }
                species.append("H(" + sites.join(',') + ')' + arms);
            }
        }
        const ZelBnglModel model =
            network("H(" + QByteArrayList(Arms, "a").join(',') + ")\nL(h,s~U~P)", species);
        QRandomGenerator random(3);
        ImportStage original;
        QVERIFY2(original.import(model), qPrintable(original.report().error));
        QCOMPARE(original.report().species, Arms + 1);
        QCOMPARE(original.report().complexes, 1);
        for (int round = 0; round < 3; ++round) {
            ImportStage stage;
            QVERIFY2(stage.import(shuffled(model, random)), qPrintable(stage.report().error));
            QCOMPARE(stage.identities(), original.identities());
        }
    }

    void countsTurnsOfARing()
    {
        constexpr int Size = 20;
        // Two that are P at each distance, once around the ring: half of the distances are others
        // seen from the other side.
        QByteArrayList species;
        for (int first = 0; first < Size; first += 3) {
            for (int distance = 0; distance < Size; ++distance) {
                QByteArrayList mols;
                for (int i = 0; i < Size; ++i) {
                    const bool isP = i == first || i == (first + distance) % Size;
                    mols.append("M(b!" + number(i) + ",b!" + number((i + 1) % Size)
                        + (isP ? ",s~P)" : ",s~U)"));
                }
                species.append(mols.join('.'));
            }
        }
        const ZelBnglModel model = network("M(b,b,s~U~P)", species);
        QRandomGenerator random(3);
        ImportStage original;
        QVERIFY2(original.import(model), qPrintable(original.report().error));
        QCOMPARE(original.report().species, Size / 2 + 1);
        QCOMPARE(original.report().complexes, 1);
        ImportStage stage;
        QVERIFY2(stage.import(shuffled(model, random)), qPrintable(stage.report().error));
        QCOMPARE(stage.identities(), original.identities());
    }

    void bearsSymmetry_data()
    {
        QTest::addColumn<QByteArray>("types");
        QTest::addColumn<QByteArray>("species");
        const auto times = [](int count, const std::function<QByteArray(int)> &part) {
            QByteArrayList parts;
            for (int i = 0; i < count; ++i)
                parts.append(part(i));
            return parts;
        };
        const QByteArrayList free = times(100, [](int) { return QByteArray("b"); });
        QTest::newRow("a hundred free sites alike")
            << "A(" + free.join(',') + ')' << "A(" + free.join(',') + ')';
        QTest::newRow("a hub of two dozen arms of three")
            << QByteArray("H(" + free.join(',') + ")\nL(b,b)")
            << "H(" + times(24, [](int i) { return "b!" + number(i); }).join(',') + ")."
                + times(24, [](int i) {
                      return "L(b!" + number(i) + ",b!" + number(100 + i) + ").L(b!"
                          + number(100 + i) + ",b!" + number(200 + i) + ").L(b!" + number(200 + i)
                          + ",b)";
                  }).join('.');
        QTest::newRow("a chain of a hundred") << QByteArray("A(b,b)")
                                              << "A(b,b!0)."
                + times(98,
                    [](int i) {
                        return "A(b!" + number(i) + ",b!" + number(i + 1) + ')';
                    }).join('.')
                + ".A(b!98,b)";
        QTest::newRow("each of eight bound to each")
            << "A(" + QByteArrayList(7, "b").join(',') + ')' << times(8, [&](int i) {
                   QByteArrayList bonds;
                   for (int k = 0; k < 8; ++k) {
                       if (k != i)
                           bonds.append("b!" + number(std::min(i, k) * 8 + std::max(i, k)));
                   }
                   return "A(" + bonds.join(',') + ')';
               }).join('.');
    }

    void bearsSymmetry()
    {
        QFETCH(const QByteArray, types);
        QFETCH(const QByteArray, species);
        const ZelBnglModel model = network(types, {species});
        QRandomGenerator random(3);
        ImportStage original;
        QVERIFY2(original.import(model), qPrintable(original.report().error));
        QCOMPARE(original.losses(), QStringList());
        ImportStage stage;
        QVERIFY2(stage.import(shuffled(model, random)), qPrintable(stage.report().error));
        QCOMPARE(stage.identities(), original.identities());
    }
};

ZEL_TEST(tst_ZelBnglFamily)
#include "tst_ZelBnglFamily.moc"
