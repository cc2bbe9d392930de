#include "EditingUser.h"
#include "RandomUser.h"
#include "ViewUser.h"
#include "support/ZelTest.h"

namespace {

// A failure in a short session is soon reached again.
constexpr int SessionLength = 5000;
constexpr quint32 NextSession = 7919;

int environmentInt(const char *name, int otherwise)
{
    bool good = false;
    const int value = qEnvironmentVariableIntValue(name, &good);
    return good && value > 0 ? value : otherwise;
}

} // namespace

/// Random users of a few fixed seeds; ZEL_RANDOM_SEED and ZEL_RANDOM_STEPS choose other ones and
/// longer runs.
class tst_RandomUser : public ZelTest
{
    Q_OBJECT

private slots:
    void staysConsistent_data()
    {
        QTest::addColumn<SceneHost::Kind>("kind");
        QTest::addColumn<int>("seed");
        const int seed = environmentInt("ZEL_RANDOM_SEED", 0);
        const int seeds = seed > 0 ? 1 : 2;
        for (int i = 0; i < seeds; ++i) {
            const int s = seed > 0 ? seed : i + 1;
            QTest::addRow("one molecule, seed %d", s) << SceneHost::OneMolecule << s;
            QTest::addRow("loose molecules, seed %d", s) << SceneHost::LooseMolecules << s;
            QTest::addRow("a complex, seed %d", s) << SceneHost::Complex << s;
        }
    }

    void staysConsistent()
    {
        QFETCH(SceneHost::Kind, kind);
        QFETCH(int, seed);
        play<RandomUser>(seed, kind);
    }

    void editingStaysConsistent_data()
    {
        QTest::addColumn<EditingUser::Kind>("kind");
        QTest::addColumn<int>("seed");
        const int seed = environmentInt("ZEL_RANDOM_SEED", 0);
        const int seeds = seed > 0 ? 1 : 2;
        for (int i = 0; i < seeds; ++i) {
            const int s = seed > 0 ? seed : i + 1;
            QTest::addRow("a complex, seed %d", s) << EditingUser::Complex << s;
            QTest::addRow("a passing complex, seed %d", s) << EditingUser::TemporaryComplex << s;
            QTest::addRow("a molecule interaction, seed %d", s)
                << EditingUser::MoleculeInteraction << s;
            QTest::addRow("a complex interaction, seed %d", s)
                << EditingUser::ComplexInteraction << s;
        }
    }

    void editingStaysConsistent()
    {
        QFETCH(EditingUser::Kind, kind);
        QFETCH(int, seed);
        play<EditingUser>(seed, kind);
    }

    void viewsStayConsistent_data()
    {
        QTest::addColumn<int>("seed");
        const int seed = environmentInt("ZEL_RANDOM_SEED", 0);
        for (int i = 0; i < (seed > 0 ? 1 : 2); ++i) {
            const int s = seed > 0 ? seed : i + 1;
            QTest::addRow("views, seed %d", s) << s;
        }
    }

    void viewsStayConsistent()
    {
        QFETCH(int, seed);
        play<ViewUser>(seed);
    }

private:
    template <typename User, typename... Kind>
    void play(int seed, Kind... kind)
    {
        const int steps = environmentInt("ZEL_RANDOM_STEPS", 1000);
        auto sessionSeed = static_cast<quint32>(seed);
        for (int done = 0; done < steps; done += SessionLength, sessionSeed += NextSession) {
            User user(kind..., sessionSeed);
            const bool good = user.play(std::min(SessionLength, steps - done)) && user.finish();
            QVERIFY2(good,
                qPrintable(user.failure()
                    + QStringLiteral("\nsee it again with ZEL_RANDOM_SEED=%1 ZEL_RANDOM_STEPS=%2")
                          .arg(sessionSeed)
                          .arg(std::min(SessionLength, steps - done))));
        }
    }
};

ZEL_TEST(tst_RandomUser)
#include "tst_RandomUser.moc"
