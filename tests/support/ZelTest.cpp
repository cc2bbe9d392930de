#include "support/ZelTest.h"

#include <QApplication>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <numeric>
#include <string>

namespace {

QStringList &debugLines()
{
    static QStringList lines;
    return lines;
}

std::map<std::string, ZelTest::Factory> &factories()
{
    static std::map<std::string, ZelTest::Factory> map;
    return map;
}

std::map<std::string, ZelTest::Child> &childParts()
{
    static std::map<std::string, ZelTest::Child> map;
    return map;
}

QtMessageHandler previousHandler = nullptr;

void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtInfoMsg || type == QtFatalMsg) {
        previousHandler(type, context, text);
        return;
    }
    // What the windowless platform says about windows.
    if (text.startsWith(QLatin1String("This plugin does not support ")))
        return;
    debugLines().append(text);
}

} // namespace

QStringList ZelTest::takeDebugLines()
{
    return std::exchange(debugLines(), {});
}

void ZelTest::orderRows(int count)
{
    QTest::addColumn<QList<int>>("order");
    QList<int> order(count);
    std::iota(order.begin(), order.end(), 0);
    do {
        QString name;
        for (const int number : std::as_const(order))
            name += QString::number(number);
        QTest::newRow(qPrintable(name)) << order;
    } while (std::next_permutation(order.begin(), order.end()));
}

bool ZelTest::isRow(const char *name)
{
    return qstrcmp(QTest::currentDataTag(), name) == 0;
}

bool ZelTest::registerClass(const char *name, Factory factory)
{
    return factories().emplace(name, std::move(factory)).second;
}

bool ZelTest::registerChild(const char *name, Child child)
{
    return childParts().emplace(name, std::move(child)).second;
}

void ZelTest::init()
{
    debugLines().clear();
    previousHandler = qInstallMessageHandler(record);
}

void ZelTest::cleanup()
{
    qInstallMessageHandler(previousHandler);
    const QStringList lines = takeDebugLines();
    if (!lines.isEmpty() && !QTest::currentTestFailed())
        QFAIL(qPrintable(QLatin1String("unexpected debug lines:\n") + lines.join(u'\n')));
}

// Usage: <executable> [--class tst_Name] [QTest options]; without --class all classes run.
int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    QStringList arguments = app.arguments();
    if (arguments.value(1) == QLatin1String("--child")) {
        const auto child = childParts().find(arguments.value(2).toStdString());
        return child == childParts().end() ? 2 : child->second(arguments.mid(3));
    }
    std::string wanted;
    if (const qsizetype at = arguments.indexOf(QStringLiteral("--class")); at > 0) {
        wanted = arguments.value(at + 1).toStdString();
        arguments.remove(at, 2);
    }
    int failures = 0;
    bool ran = false;
    for (const auto &[name, factory] : factories()) {
        if (!wanted.empty() && wanted != name)
            continue;
        ran = true;
        const std::unique_ptr<QObject> test(factory());
        failures += QTest::qExec(test.get(), arguments);
    }
    if (!ran) {
        std::fprintf(stderr, "no test class %s\n", wanted.c_str());
        return 2;
    }
    return failures == 0 ? 0 : 1;
}
