// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// KWin, the compositor a test runs in (scripts/in-kwin-desktop.sh starts it), as it sees its
// windows: their stacking, layers, frames and virtual desktops, read through KWin's scripting
// over the session bus. Without a GPU, KWin draws with QPainter and offers no screenshots, so
// what a user sees is read from what KWin stacks where: the window on top at a point is the
// one seen there.
//
// A script is loaded and run through org.kde.kwin.Scripting; it sends what it found back to
// this process over the same bus, to an object registered here.

#include "support/CorkwheelProcess.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPoint>
#include <QRect>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

namespace corkwheel::test {

// One window as KWin has it.
struct KWinWindow {
    QString resourceClass;
    // Empty for a layer surface, which has no title.
    QString caption;
    // KWin's stacking layer: 0 desktop, 1 below, 2 normal, 3 above, 4 notifications.
    int layer = -1;
    QRect frame;
    // The output it is on.
    QString output;
    bool onAllDesktops = false;
    bool isDock = false;
    bool isDesktop = false;
    qint64 pid = 0;

    static KWinWindow from(const QJsonObject& object) {
        return {object.value(QStringLiteral("resourceClass")).toString(),
                object.value(QStringLiteral("caption")).toString(),
                object.value(QStringLiteral("layer")).toInt(-1),
                QRect(object.value(QStringLiteral("x")).toInt(),
                      object.value(QStringLiteral("y")).toInt(),
                      object.value(QStringLiteral("width")).toInt(),
                      object.value(QStringLiteral("height")).toInt()),
                object.value(QStringLiteral("output")).toString(),
                object.value(QStringLiteral("onAllDesktops")).toBool(),
                object.value(QStringLiteral("dock")).toBool(),
                object.value(QStringLiteral("desktop")).toBool(),
                object.value(QStringLiteral("pid")).toInteger()};
    }
};

class KWinScripting {
public:
    // Evaluates the JavaScript expression in KWin and returns its value, passed through
    // JSON; none when it threw or KWin did not answer. The expression may use describe(w),
    // which makes a window what KWinWindow::from reads.
    static std::optional<QJsonValue> evaluate(const QString& expression) {
        Reports& reports = Reports::instance();
        if (!reports.isRegistered())
            return std::nullopt;
        const QString token = QString::number(++reports.lastToken);
        const QString name = QStringLiteral("corkwheel-test-%1-%2")
                                 .arg(QCoreApplication::applicationPid())
                                 .arg(token);
        const QString path = reports.folder.filePath(name + QStringLiteral(".js"));
        QFile script(path);
        if (!script.open(QIODevice::WriteOnly))
            return std::nullopt;
        script.write(scriptText(expression, token).toUtf8());
        script.close();

        const QDBusMessage loaded =
            call(QStringLiteral("/Scripting"), QStringLiteral("org.kde.kwin.Scripting"),
                 QStringLiteral("loadScript"), {path, name});
        if (loaded.type() != QDBusMessage::ReplyMessage || loaded.arguments().isEmpty() ||
            loaded.arguments().first().toInt() < 0)
            return std::nullopt;
        call(QStringLiteral("/Scripting/Script%1").arg(loaded.arguments().first().toInt()),
             QStringLiteral("org.kde.kwin.Script"), QStringLiteral("run"), {});
        const bool answered =
            QTest::qWaitFor([&] { return reports.answers.contains(token); }, kWait);
        call(QStringLiteral("/Scripting"), QStringLiteral("org.kde.kwin.Scripting"),
             QStringLiteral("unloadScript"), {name});
        QFile::remove(path);
        if (!answered)
            return std::nullopt;
        const QJsonObject answer =
            QJsonDocument::fromJson(reports.answers.take(token).toUtf8()).object();
        if (!answer.contains(QStringLiteral("value")))
            return std::nullopt;
        return answer.value(QStringLiteral("value"));
    }

    static bool isTrue(const QString& expression) {
        return evaluate(expression).value_or(QJsonValue()).toBool();
    }

    // The windows, bottom to top.
    static QList<KWinWindow> windows() {
        return windowList(QStringLiteral("workspace.stackingOrder.map(describe)"));
    }

    // The windows of a process, bottom to top.
    static QList<KWinWindow> windowsOf(qint64 pid) {
        QList<KWinWindow> found;
        for (const KWinWindow& window : windows()) {
            if (window.pid == pid)
                found.append(window);
        }
        return found;
    }

    // The window seen at `at`: the topmost one there that KWin shows on the current virtual
    // desktop; none over the bare background. A window that "show desktop" put away counts
    // as shown here: windowUnderPointer() tells those apart.
    static std::optional<KWinWindow> windowAt(QPoint at) {
        return windowFrom(
            QStringLiteral("describe(workspace.stackingOrder.filter(w => !w.minimized && "
                           "!w.hidden && !w.deleted && shownOnThisDesktop(w) && "
                           "contains(w.frameGeometry, %1, %2)).pop())")
                .arg(at.x())
                .arg(at.y()));
    }

    // The window under the pointer, as KWin finds it for the pointer: the topmost one there
    // that it shows, leaving out those that "show desktop" put away.
    static std::optional<KWinWindow> windowUnderPointer() {
        return windowFrom(
            QStringLiteral("describe(workspace.windowAt(workspace.cursorPos, 1)[0])"));
    }

    // The outputs' geometries, as KWin lays them out.
    static QList<QRect> screens() {
        QList<QRect> screens;
        const QJsonArray found = evaluate(QStringLiteral("workspace.screens.map(s => s.geometry)"))
                                     .value_or(QJsonValue())
                                     .toArray();
        for (const QJsonValue& value : found) {
            const QJsonObject rect = value.toObject();
            screens.append(QRect(rect.value(QStringLiteral("x")).toInt(),
                                 rect.value(QStringLiteral("y")).toInt(),
                                 rect.value(QStringLiteral("width")).toInt(),
                                 rect.value(QStringLiteral("height")).toInt()));
        }
        return screens;
    }

    // The virtual desktop shown, counted from 0; -1 when KWin did not answer.
    static int currentDesktop() {
        return evaluate(QStringLiteral("workspace.desktops.indexOf(workspace.currentDesktop)"))
            .value_or(QJsonValue(-1))
            .toInt(-1);
    }

    // Shows virtual desktop `index` (from 0), as the pager does, and waits until KWin shows it.
    static bool showDesktopNumber(int index) {
        evaluate(QStringLiteral("workspace.currentDesktop = workspace.desktops[%1]").arg(index));
        return QTest::qWaitFor([index] { return currentDesktop() == index; }, kWait);
    }

    // "Show desktop" on or off, as Plasma's applet asks for it. KWin ends it by itself once
    // the connection that asked goes away, so this process keeps asking on its own.
    static void showDesktop(bool showing) {
        call(QStringLiteral("/KWin"), QStringLiteral("org.kde.KWin"), QStringLiteral("showDesktop"),
             {showing});
    }

    static bool isShowingDesktop() {
        QDBusMessage get = QDBusMessage::createMethodCall(
            QString::fromLatin1(kService), QStringLiteral("/KWin"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        get.setArguments({QStringLiteral("org.kde.KWin"), QStringLiteral("showingDesktop")});
        const QDBusMessage reply = QDBusConnection::sessionBus().call(get, QDBus::Block, kWait);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
            return false;
        return reply.arguments().first().value<QDBusVariant>().variant().toBool();
    }

private:
    static constexpr auto kService = "org.kde.KWin";
    static constexpr auto kReportPath = "/io/github/corkwheel/KWinScriptReports";
    static constexpr auto kReportInterface = "io.github.corkwheel.KWinScriptReports";

    // What the scripts send back, each answer under its token.
    class Reports : public QDBusVirtualObject {
    public:
        static Reports& instance() {
            static Reports reports;
            return reports;
        }

        bool isRegistered() const { return m_registered; }

        QString introspect(const QString&) const override { return {}; }

        bool handleMessage(const QDBusMessage& message,
                           const QDBusConnection& connection) override {
            if (message.member() != QStringLiteral("report") || message.arguments().size() != 2)
                return false;
            answers.insert(message.arguments().at(0).toString(),
                           message.arguments().at(1).toString());
            connection.send(message.createReply());
            return true;
        }

        QTemporaryDir folder;
        int lastToken = 0;
        QHash<QString, QString> answers;

    private:
        Reports() {
            m_registered = QDBusConnection::sessionBus().registerVirtualObject(
                QString::fromLatin1(kReportPath), this);
        }

        bool m_registered = false;
    };

    static QString scriptText(const QString& expression, const QString& token) {
        return QStringLiteral(R"JS(
            (function () {
                const describe = w => w ? ({
                    resourceClass: w.resourceClass, caption: w.caption, layer: w.layer,
                    x: w.frameGeometry.x, y: w.frameGeometry.y,
                    width: w.frameGeometry.width, height: w.frameGeometry.height,
                    output: w.output ? w.output.name : '', onAllDesktops: w.onAllDesktops,
                    dock: w.dock, desktop: w.desktopWindow, pid: w.pid}) : null;
                const contains = (r, x, y) =>
                    x >= r.x && x < r.x + r.width && y >= r.y && y < r.y + r.height;
                const shownOnThisDesktop = w => w.onAllDesktops ||
                    w.desktops.some(d => d.id === workspace.currentDesktop.id);
                let answer;
                try {
                    answer = {value: (%1)};
                } catch (error) {
                    answer = {error: String(error)};
                }
                callDBus('%2', '%3', '%4', 'report', '%5', JSON.stringify(answer));
            })();
        )JS")
            .arg(expression, QDBusConnection::sessionBus().baseService(),
                 QString::fromLatin1(kReportPath), QString::fromLatin1(kReportInterface), token);
    }

    static QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                             const QVariantList& arguments) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(QString::fromLatin1(kService), path, interface, method);
        message.setArguments(arguments);
        return QDBusConnection::sessionBus().call(message, QDBus::Block, kWait);
    }

    static std::optional<KWinWindow> windowFrom(const QString& expression) {
        const QJsonValue found = evaluate(expression).value_or(QJsonValue());
        if (!found.isObject())
            return std::nullopt;
        return KWinWindow::from(found.toObject());
    }

    static QList<KWinWindow> windowList(const QString& expression) {
        QList<KWinWindow> list;
        for (const QJsonValue& window : evaluate(expression).value_or(QJsonValue()).toArray())
            list.append(KWinWindow::from(window.toObject()));
        return list;
    }
};

} // namespace corkwheel::test
