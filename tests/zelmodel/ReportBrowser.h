#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A browser without a window that a test leads through pages.
class ReportBrowser
{
public:
    ReportBrowser();
    ~ReportBrowser();

    /// False when there is no browser.
    bool isRunning() const { return m_isRunning; }
    /// Opens a page from the disk in a window of that width and waits until all of it is there.
    bool open(const QString &path, int width, bool isDark = false);
    /// "print" or "screen".
    void setMedia(const QString &media, bool isDark);
    /// What an expression of the page's language, or the promise that it gives, comes to.
    QJsonValue evaluate(const QString &expression);
    /// Types into the element that has the focus; names such as "Enter" and "ArrowDown" are keys.
    void type(const QString &text);
    void press(const QString &key, int code);

private:
    QJsonObject call(const QString &method, const QJsonObject &parameters = {});
    QJsonObject read();

    QTemporaryDir m_profile;
    QProcess m_process;
    QByteArray m_buffer;
    QString m_session;
    int m_toBrowser = -1;
    int m_fromBrowser = -1;
    int m_lastCall = 0;
    bool m_isRunning = false;
};
