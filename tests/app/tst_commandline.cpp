// SPDX-License-Identifier: GPL-3.0-or-later

// What each set of arguments asks for, decided before Corkwheel starts anything.

#include "app/CommandLine.h"

#include <QTest>

using namespace corkwheel;

namespace {

CommandLine parse(const QStringList& options) {
    return CommandLine::parse(QStringList{QStringLiteral("/usr/bin/corkwheel")} + options);
}

} // namespace

class CommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noArgumentsStartCorkwheel() {
        const CommandLine line = parse({});
        QVERIFY(!line.endsAtOnce);
        QVERIFY(!line.action);
    }

    void eachActionOptionAsksForItsAction_data() {
        QTest::addColumn<QString>("option");
        QTest::addColumn<AppAction>("action");
        QTest::newRow("settings") << QStringLiteral("--settings") << AppAction::Settings;
        QTest::newRow("edit-mode") << QStringLiteral("--edit-mode") << AppAction::EditMode;
        QTest::newRow("hide-all") << QStringLiteral("--hide-all") << AppAction::HideAll;
        QTest::newRow("quit") << QStringLiteral("--quit") << AppAction::Quit;
    }

    void eachActionOptionAsksForItsAction() {
        QFETCH(QString, option);
        QFETCH(AppAction, action);
        const CommandLine line = parse({option});
        QVERIFY(!line.endsAtOnce);
        QCOMPARE(line.action, action);
        QVERIFY(line.standardError.isEmpty());
    }

    void helpListsEveryOptionAndEnds_data() {
        QTest::addColumn<QString>("option");
        QTest::newRow("long") << QStringLiteral("--help");
        QTest::newRow("short") << QStringLiteral("-h");
    }

    void helpListsEveryOptionAndEnds() {
        QFETCH(QString, option);
        const CommandLine line = parse({option});
        QVERIFY(line.endsAtOnce);
        QCOMPARE(line.exitCode, 0);
        QVERIFY(line.standardError.isEmpty());
        QVERIFY(line.standardOutput.startsWith(QStringLiteral("Usage: corkwheel [options]\n")));
        for (const char* listed :
             {"--help", "--version", "--settings", "--edit-mode", "--hide-all", "--quit"})
            QVERIFY2(line.standardOutput.contains(QLatin1String(listed)), listed);
    }

    void versionNamesTheReleaseAndEnds() {
        const CommandLine line = parse({QStringLiteral("--version")});
        QVERIFY(line.endsAtOnce);
        QCOMPARE(line.exitCode, 0);
        QCOMPARE(line.standardOutput, QStringLiteral("corkwheel " CORKWHEEL_VERSION "\n"));
        QVERIFY(line.standardError.isEmpty());
    }

    void unknownOptionShowsTheUsageOnStandardErrorAndEndsWith2_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("unknown long") << QStringList{QStringLiteral("--frobnicate")};
        QTest::newRow("unknown short") << QStringList{QStringLiteral("-x")};
        QTest::newRow("stray argument") << QStringList{QStringLiteral("panels.json")};
        QTest::newRow("two actions")
            << QStringList{QStringLiteral("--edit-mode"), QStringLiteral("--quit")};
    }

    void unknownOptionShowsTheUsageOnStandardErrorAndEndsWith2() {
        QFETCH(QStringList, arguments);
        const CommandLine line = parse(arguments);
        QVERIFY(line.endsAtOnce);
        QCOMPARE(line.exitCode, 2);
        QVERIFY(line.standardOutput.isEmpty());
        QVERIFY(line.standardError.startsWith(QStringLiteral("corkwheel: ")));
        QVERIFY(line.standardError.contains(QStringLiteral("Usage: corkwheel [options]\n")));
        QVERIFY(!line.action);
    }
};

QTEST_APPLESS_MAIN(CommandLineTest)
#include "tst_commandline.moc"
