#include "support/ZelTest.h"
#include "zelShare/ZelSettings.h"

#include <QSettings>
#include <QTemporaryDir>

class tst_ZelSettings : public ZelTest
{
    Q_OBJECT

private slots:
    void chosenTooltipStyleIsStored()
    {
        // Not among the settings of whoever runs the tests.
        const QTemporaryDir folder;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());

        QCOMPARE(ZelSettings::getMoleculeTooltipsType(), int(ZelSettings::TooltipsPath));
        ZelSettings::setMoleculeTooltipsType(ZelSettings::TooltipsName);
        QCOMPARE(ZelSettings::getMoleculeTooltipsType(), int(ZelSettings::TooltipsName));

        // What a later run reads: one value, under a key of this library.
        const QSettings stored;
        const QStringList keys = stored.allKeys();
        QCOMPARE(keys.size(), 1);
        QCOMPARE(stored.value(keys.first()).toInt(), int(ZelSettings::TooltipsName));
        ZelSettings::setMoleculeTooltipsType(ZelSettings::TooltipsNone);
        QCOMPARE(QSettings().value(keys.first()).toInt(), int(ZelSettings::TooltipsNone));
    }
};

ZEL_TEST(tst_ZelSettings)
#include "tst_ZelSettings.moc"
