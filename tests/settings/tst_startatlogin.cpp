// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/PrivateConfigHome.h"

// The autostart entry behind "Start at login": where it goes, what it says, and that the
// file alone tells whether the option is on.

#include "settings/StartAtLogin.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// The keys and values of an entry's main group.
QHash<QByteArray, QByteArray> mainGroupOf(const QByteArray& entry) {
    QHash<QByteArray, QByteArray> keys;
    bool inMainGroup = false;
    for (const QByteArray& line : entry.split('\n')) {
        if (line.startsWith('['))
            inMainGroup = line == "[Desktop Entry]";
        else if (inMainGroup && line.contains('='))
            keys.insert(line.left(line.indexOf('=')), line.mid(line.indexOf('=') + 1));
    }
    return keys;
}

QByteArray execLine(const QString& executable) {
    return mainGroupOf(StartAtLogin::entryText(executable)).value("Exec");
}

// The desktop entry that is installed, as the launcher shows it.
QHash<QByteArray, QByteArray> installedEntry() {
    QFile file(QStringLiteral(CORKWHEEL_DESKTOP_ENTRY));
    return file.open(QIODevice::ReadOnly) ? mainGroupOf(file.readAll())
                                          : QHash<QByteArray, QByteArray>();
}

} // namespace

class StartAtLoginTest : public QObject {
    Q_OBJECT

private:
    PrivateConfigHome m_configHome;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_configHome.use()); }

    void cleanup() { QFile::remove(StartAtLogin::entryPath()); }

    void entryLivesInTheXdgAutostartFolder() {
        QCOMPARE(StartAtLogin::entryPath(),
                 m_configHome.path() + QStringLiteral("/autostart/corkwheel.desktop"));
    }

    void enablingWritesAnEntryThatStartsCorkwheel() {
        QVERIFY(!StartAtLogin::isEnabled());
        QVERIFY(StartAtLogin::setEnabled(true, QStringLiteral("/usr/bin/corkwheel")));
        QVERIFY(StartAtLogin::isEnabled());
        QFile entry(StartAtLogin::entryPath());
        QVERIFY(entry.open(QIODevice::ReadOnly));
        const QByteArray text = entry.readAll();
        QVERIFY(text.startsWith("[Desktop Entry]\n"));
        QVERIFY(text.contains("\nType=Application\n"));
        QVERIFY(text.contains("\nName=Corkwheel\n"));
        QVERIFY(text.contains("\nExec=/usr/bin/corkwheel\n"));
    }

    void entryIsTheInstalledDesktopEntryStartingTheExecutable() {
        const QHash<QByteArray, QByteArray> installed = installedEntry();
        QVERIFY(!installed.isEmpty());
        QVERIFY(StartAtLogin::setEnabled(true, QStringLiteral("/usr/bin/corkwheel")));
        QFile file(StartAtLogin::entryPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QHash<QByteArray, QByteArray> written = mainGroupOf(file.readAll());
        QCOMPARE(written.value("Name"), installed.value("Name"));
        QCOMPARE(written.value("Icon"), installed.value("Icon"));
        QCOMPARE(written.value("Comment"), installed.value("Comment"));
        // The same program, found by its path rather than on the session's PATH.
        QCOMPARE(written.value("Exec"), QByteArray("/usr/bin/corkwheel"));
        QCOMPARE(QFileInfo(QString::fromUtf8(written.value("Exec"))).fileName().toUtf8(),
                 installed.value("Exec"));
        QCOMPARE(written.value("X-GNOME-Autostart-enabled"), QByteArray("true"));
        // The launcher's actions stay with the launcher.
        QVERIFY(!written.contains("Actions"));
    }

    void disablingRemovesTheEntry() {
        QVERIFY(StartAtLogin::setEnabled(true, QStringLiteral("/usr/bin/corkwheel")));
        QVERIFY(StartAtLogin::setEnabled(false, QStringLiteral("/usr/bin/corkwheel")));
        QVERIFY(!QFile::exists(StartAtLogin::entryPath()));
        QVERIFY(!StartAtLogin::isEnabled());
        // Already off stays off without complaint.
        QVERIFY(StartAtLogin::setEnabled(false, QStringLiteral("/usr/bin/corkwheel")));
    }

    void removingTheEntryByHandTurnsTheOptionOff() {
        QVERIFY(StartAtLogin::setEnabled(true, QStringLiteral("/usr/bin/corkwheel")));
        QVERIFY(QFile::remove(StartAtLogin::entryPath()));
        QVERIFY(!StartAtLogin::isEnabled());
    }

    void executableWithSpacesOrSpecialCharactersIsQuoted() {
        QCOMPARE(execLine(QStringLiteral("/opt/my apps/corkwheel")),
                 QByteArray("\"/opt/my apps/corkwheel\""));
        QCOMPARE(execLine(QStringLiteral("/home/a$b/corkwheel")),
                 QByteArray("\"/home/a\\\\$b/corkwheel\""));
    }

    void entryPassesTheDesktopEntryValidator() {
        const QString validator =
            QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
        if (validator.isEmpty())
            QSKIP("desktop-file-validate is missing: scripts/test.sh installs it");
        QVERIFY(StartAtLogin::setEnabled(true, QStringLiteral("/opt/my apps/corkwheel")));
        QProcess validate;
        validate.start(validator, {StartAtLogin::entryPath()});
        QVERIFY(validate.waitForFinished());
        const QByteArray output =
            validate.readAllStandardOutput() + validate.readAllStandardError();
        QVERIFY2(validate.exitCode() == 0 && !output.contains("error"), output.constData());
    }
};

QTEST_GUILESS_MAIN(StartAtLoginTest)
#include "tst_startatlogin.moc"
