#pragma once

#include <QObject>
#include <QStringList>
#include <QTest>

#include <array>
#include <functional>
#include <initializer_list>
#include <tuple>
#include <utility>

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
    /// The same as one text.
    static QString takeDebugText() { return takeDebugLines().join(u'\n'); }
    /// Makes a test class known to the executable's main().
    static bool registerClass(const char *name, Factory factory);
    /// Makes a part known that tests start in a process of its own:
    /// QCoreApplication::applicationFilePath() with the arguments "--child", name, ...
    static bool registerChild(const char *name, Child child);

protected:
    /// The columns and rows of a data function; a row is its name and its values.
    template <typename... Types>
    static void rows(const std::array<const char *, sizeof...(Types)> &columns,
        std::initializer_list<std::pair<const char *, std::tuple<Types...>>> list)
    {
        std::size_t i = 0;
        (QTest::addColumn<Types>(columns[i++]), ...);
        for (const auto &[name, values] : list) {
            QTestData &row = QTest::newRow(name);
            std::apply([&row](const Types &...value) { (row << ... << value); }, values);
        }
    }

    /// A column "order" with all orders of 0, 1, 2, ...
    static void orderRows(int count);
    /// Whether that is the present row's name, where the rows differ by more than values.
    static bool isRow(const char *name);

protected slots: // overrides call them
    virtual void init();
    virtual void cleanup();
};

/// Stands once, at the end of each tst_*.cpp, which then includes its own .moc file.
#define ZEL_TEST(Class)                                                                            \
    static const bool registered##Class =                                                          \
        ZelTest::registerClass(#Class, [] { return static_cast<QObject *>(new Class); });

/// Makes a function of the arguments known as a part that tests start in a process of its own.
#define ZEL_TEST_CHILD(name, function)                                                             \
    static const bool registeredChild##function = ZelTest::registerChild(name, function);
