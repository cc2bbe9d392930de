#include "ReportBrowser.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

#include <poll.h>
#include <unistd.h>

namespace {

constexpr int Patience = 60000; // milliseconds, for a machine that does other things, too
constexpr int WindowHeight = 800;

} // namespace

ReportBrowser::ReportBrowser()
{
    int to[2];
    int from[2];
    if (::pipe(to) != 0)
        return;
    if (::pipe(from) != 0) {
        ::close(to[0]);
        ::close(to[1]);
        return;
    }
    m_toBrowser = to[1];
    m_fromBrowser = from[0];
    // The browser is led through its descriptors 3 and 4.
    m_process.setChildProcessModifier([to, from] {
        const int in = ::dup(to[0]);
        const int out = ::dup(from[1]);
        ::dup2(in, 3);
        ::dup2(out, 4);
    });
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(QStringLiteral("chromium"),
        {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"),
            QStringLiteral("--disable-gpu"), QStringLiteral("--disable-dev-shm-usage"),
            QStringLiteral("--disable-quic"), QStringLiteral("--no-first-run"),
            QStringLiteral("--disable-background-networking"),
            QStringLiteral("--disable-component-update"), QStringLiteral("--disable-sync"),
            QLatin1String("--user-data-dir=") + m_profile.path(),
            QStringLiteral("--remote-debugging-pipe")});
    const bool started = m_process.waitForStarted(Patience);
    ::close(to[0]);
    ::close(from[1]);
    if (!started)
        return;
    const QJsonObject target = call(QStringLiteral("Target.createTarget"),
        {{QStringLiteral("url"), QStringLiteral("about:blank")}});
    m_session = call(QStringLiteral("Target.attachToTarget"),
        {{QStringLiteral("targetId"), target.value(QStringLiteral("targetId"))},
            {QStringLiteral("flatten"), true}})
                    .value(QStringLiteral("sessionId"))
                    .toString();
    m_isRunning = !m_session.isEmpty();
}

ReportBrowser::~ReportBrowser()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_session.clear();
        call(QStringLiteral("Browser.close"));
        if (!m_process.waitForFinished(Patience))
            m_process.kill();
    }
    m_process.waitForFinished();
    for (const int descriptor : {m_toBrowser, m_fromBrowser}) {
        if (descriptor >= 0)
            ::close(descriptor);
    }
}

QJsonObject ReportBrowser::read()
{
    while (!m_buffer.contains('\0')) {
        pollfd wait{m_fromBrowser, POLLIN, 0};
        char bytes[4096];
        if (::poll(&wait, 1, Patience) <= 0)
            return {};
        const ssize_t count = ::read(m_fromBrowser, bytes, sizeof bytes);
        if (count <= 0)
            return {};
        m_buffer.append(bytes, count);
    }
    const qsizetype end = m_buffer.indexOf('\0');
    const QJsonObject message = QJsonDocument::fromJson(m_buffer.first(end)).object();
    m_buffer.remove(0, end + 1);
    return message;
}

QJsonObject ReportBrowser::call(const QString &method, const QJsonObject &parameters)
{
    QJsonObject message{{QStringLiteral("id"), ++m_lastCall}, {QStringLiteral("method"), method},
        {QStringLiteral("params"), parameters}};
    if (!m_session.isEmpty())
        message.insert(QStringLiteral("sessionId"), m_session);
    const QByteArray bytes = QJsonDocument(message).toJson(QJsonDocument::Compact) + '\0';
    if (::write(m_toBrowser, bytes.constData(), static_cast<std::size_t>(bytes.size()))
        != bytes.size())
        return {};
    for (;;) {
        const QJsonObject answer = read();
        if (answer.isEmpty() || answer.value(QStringLiteral("id")).toInt() == m_lastCall)
            return answer.value(QStringLiteral("result")).toObject();
    }
}

bool ReportBrowser::open(const QString &path, int width, bool isDark)
{
    call(QStringLiteral("Emulation.setDeviceMetricsOverride"),
        {{QStringLiteral("width"), width}, {QStringLiteral("height"), WindowHeight},
            {QStringLiteral("deviceScaleFactor"), 1}, {QStringLiteral("mobile"), width < 500}});
    setMedia(QStringLiteral("screen"), isDark);
    // Another page first, so that what is waited for is not the old one.
    call(QStringLiteral("Page.navigate"), {{QStringLiteral("url"), QStringLiteral("about:blank")}});
    const QUrl url = QUrl::fromLocalFile(path);
    call(QStringLiteral("Page.navigate"), {{QStringLiteral("url"), url.toString()}});
    return evaluate(QStringLiteral("new Promise((done) => { const look = () => "
                                   "document.readyState === 'complete' ? done(location.href) "
                                   ": setTimeout(look, 10); look(); })"))
               .toString()
        == QString::fromLatin1(url.toEncoded());
}

void ReportBrowser::setMedia(const QString &media, bool isDark)
{
    const QJsonObject scheme{{QStringLiteral("name"), QStringLiteral("prefers-color-scheme")},
        {QStringLiteral("value"), isDark ? QStringLiteral("dark") : QStringLiteral("light")}};
    call(QStringLiteral("Emulation.setEmulatedMedia"),
        {{QStringLiteral("media"), media}, {QStringLiteral("features"), QJsonArray{scheme}}});
}

QJsonValue ReportBrowser::evaluate(const QString &expression)
{
    return call(QStringLiteral("Runtime.evaluate"),
        {{QStringLiteral("expression"), expression}, {QStringLiteral("awaitPromise"), true},
            {QStringLiteral("returnByValue"), true}})
        .value(QStringLiteral("result"))
        .toObject()
        .value(QStringLiteral("value"));
}

void ReportBrowser::type(const QString &text)
{
    call(QStringLiteral("Input.insertText"), {{QStringLiteral("text"), text}});
}

void ReportBrowser::press(const QString &key, int code)
{
    QJsonObject event{{QStringLiteral("type"), QStringLiteral("rawKeyDown")},
        {QStringLiteral("key"), key}, {QStringLiteral("code"), key},
        {QStringLiteral("windowsVirtualKeyCode"), code}};
    call(QStringLiteral("Input.dispatchKeyEvent"), event);
    event.insert(QStringLiteral("type"), QStringLiteral("keyUp"));
    call(QStringLiteral("Input.dispatchKeyEvent"), event);
}
