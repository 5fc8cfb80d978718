// SPDX-License-Identifier: GPL-3.0-or-later

// The inspector's Source section: the rows that edit the string each panel type reads.

#include "support/InspectorTesting.h"

#include "editor/FormSection.h"
#include "editor/GrowingTextEdit.h"
#include "editor/InspectorView.h"

#include <QFontDatabase>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

class InspectorSourceTest : public QObject, private InspectorFixture {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { close(); }

    void sourceRowsFollowThePanelType_data() {
        QTest::addColumn<PanelType>("type");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("note");
        QTest::addColumn<bool>("monospaced");
        QTest::addColumn<bool>("growing");
        QTest::newRow("shell") << PanelType::Shell << "commandField"
                               << "Command" << QString() << true << true;
        QTest::newRow("file") << PanelType::File << "filePathField"
                              << "File Path" << QString() << true << false;
        QTest::newRow("text") << PanelType::Text << "templateField"
                              << "Template"
                              << "Use {date:FORMAT} tokens, e.g. {date:EEEE, MMMM d}" << false
                              << true;
        QTest::newRow("clock") << PanelType::Clock << "dateFormatField"
                               << "Date Format"
                               << "Uses ICU date patterns, e.g. h:mm:ss a" << true << false;
        QTest::newRow("image") << PanelType::Image << "imageSourceField"
                               << "Path or URL" << QString() << false << false;
        QTest::newRow("systemStats")
            << PanelType::SystemStats << QString() << QString()
            << "Shows live CPU, memory, and disk usage. No configuration needed." << false << false;
        QTest::newRow("webpage") << PanelType::Webpage << "urlField"
                                 << "URL"
                                 << "Reloads automatically at the refresh interval below." << false
                                 << false;
    }

    void sourceRowsFollowThePanelType() {
        QFETCH(PanelType, type);
        QFETCH(QString, field);
        QFETCH(QString, label);
        QFETCH(QString, note);
        QFETCH(bool, monospaced);
        QFETCH(bool, growing);
        make({quietPanel(type)});
        auto* section = control<FormSection>("sourceSection");
        for (const char* name : {"commandField", "filePathField", "templateField",
                                 "dateFormatField", "imageSourceField", "urlField"}) {
            const bool expected = field == QLatin1String(name);
            QCOMPARE(section->findChild<QWidget*>(QLatin1String(name)) != nullptr, expected);
        }
        if (!field.isEmpty()) {
            auto* widget = section->findChild<QWidget*>(field);
            QCOMPARE(rowLabel(widget), label);
            QCOMPARE(qobject_cast<GrowingTextEdit*>(widget) != nullptr, growing);
            QCOMPARE(qobject_cast<QLineEdit*>(widget) != nullptr, !growing);
            const QString fixedFamily =
                QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
            QCOMPARE(widget->font().family() == fixedFamily, monospaced);
        }
        auto* noteLabel = section->findChild<QLabel*>(QStringLiteral("sourceNote"));
        QCOMPARE(noteLabel != nullptr, !note.isEmpty());
        if (noteLabel) {
            QCOMPARE(noteLabel->text(), note);
            QVERIFY(isDimmed(*noteLabel));
            QVERIFY(QFontInfo(noteLabel->font()).pixelSize() <
                    QFontInfo(section->font()).pixelSize());
        }
        auto* url = section->findChild<QLineEdit*>(QStringLiteral("urlField"));
        if (url)
            QCOMPARE(url->placeholderText(), QStringLiteral("example.com"));
    }

    void sourceFieldsShowAndEditTheirOwnString() {
        Panel clock = quietPanel(PanelType::Clock);
        clock.clockFormat = QStringLiteral("HH:mm");
        clock.textTemplate = QStringLiteral("kept");
        make({clock});
        auto* format = control<QLineEdit>("dateFormatField");
        QCOMPARE(format->text(), QStringLiteral("HH:mm"));
        format->setFocus();
        QTest::keyClick(format, Qt::Key_End);
        QTest::keyClicks(format, QStringLiteral(":ss"));
        QCOMPARE(stored(clock.id).clockFormat, QStringLiteral("HH:mm:ss"));
        QCOMPARE(stored(clock.id).textTemplate, QStringLiteral("kept"));

        Panel text = quietPanel(PanelType::Text);
        make({text});
        auto* templateField = control<GrowingTextEdit>("templateField");
        QCOMPARE(templateField->toPlainText(), QStringLiteral("Today is {date:EEEE, MMMM d}"));
        templateField->moveCursor(QTextCursor::End);
        QTest::keyClicks(templateField, QStringLiteral("!"));
        QCOMPARE(stored(text.id).textTemplate, QStringLiteral("Today is {date:EEEE, MMMM d}!"));
        QCOMPARE(templateField->textCursor().position(), templateField->toPlainText().size());
    }

    void commandFieldGrowsFromOneToSixLines() {
        Panel panel = quietPanel(PanelType::Shell);
        make({panel});
        auto* command = control<GrowingTextEdit>("commandField");
        const int oneLine = command->height();
        QCOMPARE(command->visibleLines(), 1);

        panel.shellCommand = QStringLiteral("a\nb\nc");
        store().update(panel);
        QCOMPARE(command->toPlainText(), panel.shellCommand);
        QCOMPARE(command->visibleLines(), 3);
        const int threeLines = command->height();
        QVERIFY(threeLines > oneLine);

        panel.shellCommand = QStringLiteral("1\n2\n3\n4\n5\n6");
        store().update(panel);
        const int sixLines = command->height();
        QVERIFY(sixLines > threeLines);

        panel.shellCommand = QStringLiteral("1\n2\n3\n4\n5\n6\n7\n8\n9");
        store().update(panel);
        QCOMPARE(command->visibleLines(), 6);
        QCOMPARE(command->height(), sixLines);
    }

    void templateFieldScrollsOnlyPastSixLines() {
        Panel panel = textPanel(QStringLiteral("one line"), kInspectorFrame);
        open({panel});
        auto* field = control<GrowingTextEdit>("templateField");
        QCOMPARE(field->verticalScrollBar()->maximum(), 0);

        panel.textTemplate = QStringLiteral("1\n2\n3\n4\n5\n6");
        store().update(panel);
        QCOMPARE(field->visibleLines(), 6);
        QTRY_COMPARE(field->verticalScrollBar()->maximum(), 0);

        panel.textTemplate = QStringLiteral("1\n2\n3\n4\n5\n6\n7\n8");
        store().update(panel);
        QTRY_VERIFY(field->verticalScrollBar()->maximum() > 0);
    }
};

QTEST_MAIN(InspectorSourceTest)
#include "tst_inspectorsource.moc"
