#include "support/ZelTest.h"
#include "zelShare/ZelShare.h"

#include <QRandomGenerator>

class tst_ZelShare : public ZelTest
{
    Q_OBJECT

private slots:
    void scientificFormat_data()
    {
        rows<QString, QString>({"value", "expected"},
            {{"at least two decimals", {"0.001", "1.00e-03"}},
                {"as many as needed", {"0.00123456", "1.23456e-03"}},
                {"at most ten", {"0.123456789012345", "1.2345678901e-01"}},
                {"zero", {"0", "0.00e+00"}}, {"negative", {"-25", "-2.50e+01"}},
                {"three digits of exponent", {"1e-300", "1.00e-300"}},
                {"already formatted", {"6.02214076e+23", "6.02214076e+23"}},
                {"a name of a parameter", {"kon", "kon"}}, {"empty", {"", ""}},
                {"number with a unit", {"1 /s", "1 /s"}}, {"decimal comma", {"0,5", "0,5"}},
                {"not finite", {"inf", "inf"}}, {"too large", {"1e999", "1e999"}}});
    }

    void scientificFormat()
    {
        QFETCH(QString, value);
        QFETCH(QString, expected);
        QCOMPARE(ZelShare::getScientificFormat(value, 2, 10, false), expected);
    }

    void scientificFormatOfOtherWidths()
    {
        QCOMPARE(ZelShare::getScientificFormat("1500", 0, 1, true), "1.5E+03");
        QCOMPARE(ZelShare::getScientificFormat("2000", 0, 1, false), "2e+03");
        // A least number above the greatest one wins; senseless numbers are brought into range.
        QCOMPARE(ZelShare::getScientificFormat("1.25", 3, 1, false), "1.250e+00");
        QCOMPARE(ZelShare::getScientificFormat("1.25", -5, 1000, false), "1.25e+00");
    }

    void scientificFormatReadsBackAndIsStable()
    {
        QRandomGenerator random(7);
        for (int i = 0; i < 1000; ++i) {
            const int digits = 1 + random.bounded(11);
            const double mantissa = 1.0 + random.generateDouble() * 8.9;
            const QString value = QString::number(mantissa, 'f', digits - 1) + u'e'
                + QString::number(random.bounded(-300, 300));
            const QString text = ZelShare::getScientificFormat(value, 2, 10, false);
            QVERIFY2(text.toDouble() == value.toDouble(), qPrintable(value + u' ' + text));
            QCOMPARE(ZelShare::getScientificFormat(text, 2, 10, false), text);
        }
    }

    void unitsAndSignsOfUnknownKinds()
    {
        QCOMPARE(ZelShare::getUnit(ZelShare::UnitRateFirstOrder), "/s");
        QVERIFY(ZelShare::getUnit(ZelShare::UnitRate2D) != ZelShare::getUnit(ZelShare::UnitRate3D));
        QCOMPARE(ZelShare::getUnicodeString(ZelShare::SignArrow), QString(QChar(0x2192)));
        QVERIFY(ZelShare::getUnit(3).isEmpty());
        QVERIFY(ZelShare::getUnicodeString(0).isEmpty());
        QCOMPARE(takeDebugLines().size(), 2);
    }
};

ZEL_TEST(tst_ZelShare)
#include "tst_ZelShare.moc"
