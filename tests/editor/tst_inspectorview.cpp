// SPDX-License-Identifier: GPL-3.0-or-later

// The inspector: a form over one stored panel, driven as a user drives it, with the preview
// that its own runner feeds.

#include "support/InspectorTesting.h"

#include "editor/FormSection.h"
#include "editor/GrowingTextEdit.h"
#include "editor/InspectorView.h"
#include "editor/LabeledField.h"
#include "editor/StepperLabel.h"
#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"
#include "support/MockClock.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace corkwheel;
using namespace corkwheel::test;

class InspectorViewTest : public QObject, private InspectorFixture {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { close(); }

    void sectionsAppearInOrder() {
        InspectorView& inspector = open({textPanel(QStringLiteral("Notes"), kInspectorFrame)});
        QVERIFY(QTest::qWaitForWindowExposed(&inspector));
        QVERIFY(inspector.findChild<QScrollArea*>());
        QList<FormSection*> sections = inspector.findChildren<FormSection*>();
        std::sort(sections.begin(), sections.end(), [&inspector](FormSection* a, FormSection* b) {
            return a->mapTo(&inspector, QPoint()).y() < b->mapTo(&inspector, QPoint()).y();
        });
        QStringList titles;
        for (FormSection* section : sections) {
            auto* header = section->findChild<QLabel*>(QStringLiteral("sectionHeader"));
            QCOMPARE(header->text(), section->title());
            // "Position & Size" keeps its ampersand: plain text, no shortcut marker.
            QCOMPARE(header->textFormat(), Qt::PlainText);
            QVERIFY(header->isVisible());
            titles << section->title();
        }
        QCOMPARE(titles, QStringList({QStringLiteral("Preview"), QStringLiteral("General"),
                                      QStringLiteral("Source"), QStringLiteral("Appearance"),
                                      QStringLiteral("Position & Size")}));
    }

    void typingIsNotUndoneByTheStoresEcho() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        open({panel});
        auto* name = control<QLineEdit>("nameField");
        name->setFocus();
        name->setCursorPosition(0);
        QTest::keyClicks(name, QStringLiteral("My "));
        QCOMPARE(name->text(), QStringLiteral("My Notes"));
        QCOMPARE(name->cursorPosition(), 3);
        QCOMPARE(stored(panel.id).name, QStringLiteral("My Notes"));

        QLineEdit* x = control<LabeledField>("xField")->lineEdit();
        x->setFocus();
        x->selectAll();
        // "05" reads as 5, which the field would write as "5"; the typing stands.
        QTest::keyClicks(x, QStringLiteral("05"));
        QCOMPARE(stored(panel.id).frame.x, 5.0);
        QCOMPARE(x->text(), QStringLiteral("05"));
        QTest::keyClicks(x, QStringLiteral(".25"));
        QCOMPARE(stored(panel.id).frame.x, 5.25);
        QCOMPARE(x->text(), QStringLiteral("05.25"));
    }

    void changesFromElsewhereReachFormAndPreview() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        InspectorView& inspector = open({panel});
        // A drag on the desktop.
        store().updateFrame(panel.id, {75, 90, 300, 70});
        QCOMPARE(control<LabeledField>("xField")->lineEdit()->text(), QStringLiteral("75"));
        QCOMPARE(control<LabeledField>("heightField")->lineEdit()->text(), QStringLiteral("70"));
        QCOMPARE(inspector.runner().panel().frame, (PanelFrame{75, 90, 300, 70}));
        QCOMPARE(inspector.preview().size(), QSize(300, 70));

        Panel changed = stored(panel.id);
        changed.textTemplate = QStringLiteral("Changed");
        changed.name = QStringLiteral("Renamed");
        store().update(changed);
        QCOMPARE(inspector.runner().textOutput(), QStringLiteral("Changed"));
        QCOMPARE(inspector.preview().displayedText(), QStringLiteral("Changed"));
        QCOMPARE(control<QLineEdit>("nameField")->text(), QStringLiteral("Renamed"));
    }

    void togglesWriteTheirFlags() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        open({panel});
        QCOMPARE(control<QCheckBox>("shadowToggle")->text(), QStringLiteral("Text Shadow"));
        QCOMPARE(control<QCheckBox>("glassToggle")->text(), QStringLiteral("Glass Background"));
        control<QCheckBox>("enabledToggle")->click();
        QVERIFY(!stored(panel.id).isEnabled);
        control<QCheckBox>("shadowToggle")->click();
        QVERIFY(!stored(panel.id).style.showShadow);
        control<QCheckBox>("glassToggle")->click();
        QVERIFY(stored(panel.id).style.showGlassBackground);
        QVERIFY(!control<QCheckBox>("enabledToggle")->isChecked());
    }

    void missingPanelShowsDefaultTextPanelAndWritesNothing() {
        test::MockClock saveClock;
        m_fixture = std::make_unique<StoreFixture>(
            QList<Panel>{textPanel(QStringLiteral("Notes"), kInspectorFrame)}, saveClock);
        const QList<Panel> before = store().panels();
        QSignalSpy changes(&store(), &PanelStore::panelsChanged);
        QSignalSpy writes(&store(), &PanelStore::documentWritten);
        InspectorView& inspector = makeFor(QUuid::createUuid());
        inspector.show();
        QCOMPARE(control<QLineEdit>("nameField")->text(), QStringLiteral("Text"));
        QCOMPARE(control<GrowingTextEdit>("templateField")->toPlainText(),
                 QStringLiteral("Today is {date:EEEE, MMMM d}"));
        QCOMPARE(control<StepperLabel>("refreshStepper")->text(),
                 QStringLiteral("Refresh every 60s"));
        QCOMPARE(control<LabeledField>("yField")->lineEdit()->text(), QStringLiteral("360"));
        QCOMPARE(control<LabeledField>("widthField")->lineEdit()->text(), QStringLiteral("320"));
        QCOMPARE(inspector.preview().size(), QSize(320, 60));

        auto* name = control<QLineEdit>("nameField");
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("x"));
        QTest::mouseClick(button(control<StepperLabel>("refreshStepper"), "incrementButton"),
                          Qt::LeftButton);
        control<QCheckBox>("glassToggle")->click();
        saveClock.runFor(10);
        QCOMPARE(changes.count(), 0);
        QCOMPARE(writes.count(), 0);
        QCOMPARE(store().panels(), before);
        m_fixture.reset();
    }
};

QTEST_MAIN(InspectorViewTest)
#include "tst_inspectorview.moc"
