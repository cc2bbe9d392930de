#pragma once

#include <QObject>
#include <QStringList>
#include <QTest>

#include <functional>

/// Base of every test class: records each debug and warning line that a test function causes and
/// fails the function that leaves lines which it did not take.
class ZelTest : public QObject
{
    Q_OBJECT
public:
    using Factory = std::function<QObject *()>;

    using Child = std::function<int(const QStringList &arguments)>;

    /// The lines written since the last call, oldest first; the record is then empty.
    static QStringList takeDebugLines();
    /// Makes a test class known to the executable's main().
    static bool registerClass(const char *name, Factory factory);
    /// Makes a part known that tests start in a process of its own:
    /// QCoreApplication::applicationFilePath() with the arguments "--child", name, ...
    static bool registerChild(const char *name, Child child);

protected slots: // called by overrides
    void init();
    void cleanup();
};

/// Stands once, at the end of each tst_*.cpp, which then includes its own .moc file.
#define ZEL_TEST(Class)                                                                            \
    static const bool registered##Class =                                                          \
        ZelTest::registerClass(#Class, [] { return static_cast<QObject *>(new Class); });

/// Makes a function of the arguments known as a part that tests start in a process of its own.
#define ZEL_TEST_CHILD(name, function)                                                             \
    static const bool registeredChild##function = ZelTest::registerChild(name, function);
