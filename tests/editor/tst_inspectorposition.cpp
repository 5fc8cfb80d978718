// SPDX-License-Identifier: GPL-3.0-or-later

// The inspector's Position & Size section: the panel's frame on the desktop.

#include "support/InspectorTesting.h"

#include "editor/InspectorView.h"
#include "editor/LabeledField.h"
#include "render/PanelContentView.h"

#include <QLineEdit>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

class InspectorPositionTest : public QObject, private InspectorFixture {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { close(); }

    void positionFieldsEditTheFrame() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        InspectorView& inspector = open({panel});
        auto* x = control<LabeledField>("xField");
        auto* y = control<LabeledField>("yField");
        auto* width = control<LabeledField>("widthField");
        auto* height = control<LabeledField>("heightField");
        QCOMPARE(x->label(), QStringLiteral("X"));
        QCOMPARE(y->label(), QStringLiteral("Y"));
        QCOMPARE(width->label(), QStringLiteral("W"));
        QCOMPARE(height->label(), QStringLiteral("H"));
        QCOMPARE(x->labelWidget()->width(), LabeledField::kLabelWidth);
        QVERIFY(isDimmed(*x->labelWidget()));
        QCOMPARE(x->lineEdit()->text(), QStringLiteral("40"));
        QCOMPARE(width->lineEdit()->text(), QStringLiteral("360"));
        QCOMPARE(control<QLabel>("positionNote")->text(),
                 QStringLiteral("Position is measured from the top-left of your main display."));
        QVERIFY(isDimmed(*control<QLabel>("positionNote")));

        width->lineEdit()->setFocus();
        width->lineEdit()->selectAll();
        QTest::keyClicks(width->lineEdit(), QStringLiteral("200"));
        QCOMPARE(stored(panel.id).frame, (PanelFrame{40, 40, 200, 80}));
        QCOMPARE(inspector.preview().size(), QSize(200, 80));

        // Text that is no number writes nothing; leaving the field shows the number again.
        height->lineEdit()->setFocus();
        height->lineEdit()->selectAll();
        QTest::keyClick(height->lineEdit(), Qt::Key_Backspace);
        QCOMPARE(stored(panel.id).frame.height, 80.0);
        QTest::keyClick(height->lineEdit(), Qt::Key_Return);
        QCOMPARE(height->lineEdit()->text(), QStringLiteral("80"));
    }
};

QTEST_MAIN(InspectorPositionTest)
#include "tst_inspectorposition.moc"
