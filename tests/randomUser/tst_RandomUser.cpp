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
    void sceneStaysConsistent_data()
    {
        addRows<SceneHost::Kind>({{"one molecule", SceneHost::OneMolecule},
            {"loose molecules", SceneHost::LooseMolecules}});
    }
    void sceneStaysConsistent()
    {
        QFETCH(SceneHost::Kind, kind);
        play<RandomUser>(kind);
    }

    void editingStaysConsistent_data()
    {
        addRows<EditingUser::Kind>({{"a complex", EditingUser::Complex},
            {"a passing complex", EditingUser::TemporaryComplex},
            {"a molecule interaction", EditingUser::MoleculeInteraction},
            {"a complex interaction", EditingUser::ComplexInteraction}});
    }
    void editingStaysConsistent()
    {
        QFETCH(EditingUser::Kind, kind);
        play<EditingUser>(kind);
    }

    void viewsStayConsistent_data() { addRows<int>({{"views", 0}}); }
    void viewsStayConsistent() { play<ViewUser>(); }

private:
    template <typename Kind>
    static void addRows(std::initializer_list<std::pair<const char *, Kind>> kinds)
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<int>("seed");
        const int chosen = environmentInt("ZEL_RANDOM_SEED", 0);
        for (const int seed : chosen > 0 ? QList<int>{chosen} : QList<int>{1, 2}) {
            for (const auto &[name, kind] : kinds)
                QTest::addRow("%s, seed %d", name, seed) << kind << seed;
        }
    }

    template <typename User, typename... Kind>
    void play(Kind... kind)
    {
        QFETCH(int, seed);
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
