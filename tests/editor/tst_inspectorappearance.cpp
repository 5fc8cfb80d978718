// SPDX-License-Identifier: GPL-3.0-or-later

// The inspector's Appearance section: font, colours, alignment, background and opacity.

#include "support/InspectorTesting.h"

#include "editor/ColorWell.h"
#include "editor/FontChoices.h"
#include "editor/InspectorView.h"
#include "editor/StepperLabel.h"
#include "render/PanelContentView.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QCollator>
#include <QColorDialog>
#include <QComboBox>
#include <QProcess>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

#include <algorithm>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// What fontconfig's own tool lists: the PostScript name of every installed face but a
// variable font's whole, each once.
QStringList facesListedByFontconfig() {
    QProcess fcList;
    fcList.start(QStringLiteral("fc-list"), {QStringLiteral("--format=%{postscriptname}\\n"),
                                             QStringLiteral(":variable=false")});
    if (!fcList.waitForFinished())
        return {};
    QStringList names = QString::fromUtf8(fcList.readAllStandardOutput())
                            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    names.removeDuplicates();
    return names;
}

// Chooses `name` in the picker's list as a click on it would.
void choose(QComboBox* picker, const QString& name) {
    const int index = picker->findText(name);
    QVERIFY2(index >= 0, qPrintable(name));
    picker->showPopup();
    QAbstractItemView* list = picker->view();
    QTRY_VERIFY(list->isVisible());
    const QModelIndex item = list->model()->index(index, 0);
    list->scrollTo(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(item).center());
    QTRY_VERIFY(!list->isVisible());
}

double inkWidth(QWidget& view) {
    return inkBounds(render(view, 1), isVisible).width();
}

} // namespace

class InspectorAppearanceTest : public QObject, private InspectorFixture {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { close(); }

    void appearanceSteppersShowWholeNumbers() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        panel.style.fontSize = 13;
        panel.style.cornerRadius = 12;
        panel.style.showGlassBackground = true;
        make({panel});
        auto* size = control<StepperLabel>("fontSizeStepper");
        QCOMPARE(size->text(), QStringLiteral("Size: 13 pt"));
        QCOMPARE(control<StepperLabel>("cornerRadiusStepper")->text(),
                 QStringLiteral("Corner Radius: 12"));
        QTest::mouseClick(button(size, "incrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).style.fontSize, 14.0);
        QCOMPARE(size->text(), QStringLiteral("Size: 14 pt"));

        panel = stored(panel.id);
        panel.style.fontSize = 72;
        panel.style.cornerRadius = 0;
        store().update(panel);
        QVERIFY(!button(size, "incrementButton")->isEnabled());
        auto* radius = control<StepperLabel>("cornerRadiusStepper");
        QVERIFY(!button(radius, "decrementButton")->isEnabled());
        QTest::mouseClick(button(radius, "incrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).style.cornerRadius, 1.0);
    }

    void cornerRadiusRowHidesAtOnceWithoutBackgroundOrGlass() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        panel.style.backgroundColor = {0, 0, 0, 0.5};
        panel.style.showGlassBackground = false;
        panel.style.cornerRadius = 12;
        open({panel});
        auto* radius = control<StepperLabel>("cornerRadiusStepper");
        auto* well = control<ColorWell>("backgroundColorWell");
        QVERIFY(radius->isVisible());
        QCOMPARE(radius->text(), QStringLiteral("Corner Radius: 12"));

        well->setColor(QColor(0, 0, 0, 0));
        QCOMPARE(stored(panel.id).style.backgroundColor.alpha, 0.0);
        QVERIFY(!radius->isVisible());

        well->setColor(QColor::fromRgbF(0, 0, 0, 0.3f));
        QVERIFY(radius->isVisible());
        QCOMPARE(radius->text(), QStringLiteral("Corner Radius: 12"));

        well->setColor(QColor(0, 0, 0, 0));
        QVERIFY(!radius->isVisible());
        control<QCheckBox>("glassToggle")->click();
        QVERIFY(stored(panel.id).style.showGlassBackground);
        QVERIFY(radius->isVisible());
        QCOMPARE(radius->text(), QStringLiteral("Corner Radius: 12"));
    }

    void transparentPanelWithoutGlassHasNoCornerRadiusRow() {
        open({textPanel(QStringLiteral("Notes"), kInspectorFrame)});
        QVERIFY(!control<StepperLabel>("cornerRadiusStepper")->isVisible());
        QVERIFY(control<QSlider>("opacitySlider")->isVisible());
    }

    void translucentColorIsStoredInAlpha() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        open({panel});
        control<ColorWell>("backgroundColorWell")
            ->setColor(QColor::fromRgbF(0.2f, 0.4f, 0.6f, 0.5f));
        const CodableColor background = stored(panel.id).style.backgroundColor;
        QVERIFY(qAbs(background.red - 0.2) < 1e-3);
        QVERIFY(qAbs(background.green - 0.4) < 1e-3);
        QVERIFY(qAbs(background.blue - 0.6) < 1e-3);
        QVERIFY(qAbs(background.alpha - 0.5) < 1e-3);

        // A colour picked in another colour model is stored as its sRGB components.
        control<ColorWell>("textColorWell")->setColor(QColor::fromHsvF(0, 1, 1, 0.25f));
        const CodableColor text = stored(panel.id).style.textColor;
        QCOMPARE(text.red, 1.0);
        QCOMPARE(text.green, 0.0);
        QCOMPARE(text.blue, 0.0);
        QVERIFY(qAbs(text.alpha - 0.25) < 1e-3);
        QVERIFY(qAbs(control<ColorWell>("textColorWell")->color().alphaF() - 0.25) < 1e-3);
    }

    void colorDialogOffersOpacityAndStoresThePick() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        open({panel});
        auto* well = control<ColorWell>("textColorWell");
        QCOMPARE(rowLabel(well), QStringLiteral("Text Color"));
        QCOMPARE(rowLabel(control<ColorWell>("backgroundColorWell")),
                 QStringLiteral("Background Color"));
        QTest::mouseClick(well, Qt::LeftButton);
        QColorDialog* dialog = nullptr;
        QTRY_VERIFY((dialog = well->findChild<QColorDialog*>()) != nullptr);
        QVERIFY(dialog->testOption(QColorDialog::ShowAlphaChannel));
        QCOMPARE(dialog->currentColor(), QColor(Qt::white));
        QCOMPARE(stored(panel.id).style.textColor, (CodableColor{1, 1, 1, 1}));
        dialog->setCurrentColor(QColor(255, 0, 0, 51));
        dialog->accept();
        const CodableColor text = stored(panel.id).style.textColor;
        QCOMPARE(text.red, 1.0);
        QCOMPARE(text.green, 0.0);
        QVERIFY(qAbs(text.alpha - 0.2) < 1e-3);
    }

    void alignmentPickerOffersLeadingCenterTrailing() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        open({panel});
        auto* picker = control<QComboBox>("alignmentPicker");
        QCOMPARE(rowLabel(picker), QStringLiteral("Alignment"));
        QStringList items;
        for (int i = 0; i < picker->count(); ++i)
            items << picker->itemText(i);
        QCOMPARE(items, QStringList({QStringLiteral("Leading"), QStringLiteral("Center"),
                                     QStringLiteral("Trailing")}));
        QCOMPARE(picker->currentText(), QStringLiteral("Leading"));
        picker->setFocus();
        QTest::keyClick(picker, Qt::Key_Down);
        QCOMPARE(stored(panel.id).style.textAlignment, TextAlignmentOption::Center);
        QTest::keyClick(picker, Qt::Key_Down);
        QCOMPARE(stored(panel.id).style.textAlignment, TextAlignmentOption::Trailing);
    }

    void opacitySliderRunsFromATenthToOne() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        panel.style.opacity = 0.25;
        open({panel});
        auto* slider = control<QSlider>("opacitySlider");
        QCOMPARE(rowLabel(slider), QStringLiteral("Opacity"));
        QCOMPARE(slider->value(), 250);
        slider->triggerAction(QAbstractSlider::SliderToMaximum);
        QCOMPARE(stored(panel.id).style.opacity, 1.0);
        slider->triggerAction(QAbstractSlider::SliderToMinimum);
        QCOMPARE(stored(panel.id).style.opacity, 0.1);
        slider->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(stored(panel.id).style.opacity, 0.101);
    }

    void fontNamesAreSortedIgnoringCase() {
        const QStringList names{QStringLiteral("beta"),  QStringLiteral("Alpha"),
                                QStringLiteral("gamma"), QStringLiteral("alpha"),
                                QStringLiteral("Beta"),  QStringLiteral("Zeta")};
        QCOMPARE(
            sortedFontNames(names, QLocale(QLocale::English)),
            QStringList({QStringLiteral("Alpha"), QStringLiteral("alpha"), QStringLiteral("beta"),
                         QStringLiteral("Beta"), QStringLiteral("gamma"), QStringLiteral("Zeta")}));
    }

    void fontChoicesAreEveryInstalledFaceSortedIgnoringCase() {
        const QStringList& choices = fontChoices();
        QCOMPARE(&fontChoices(), &choices);
        QStringList listed = facesListedByFontconfig();
        QVERIFY(!listed.isEmpty());
        QStringList sorted = choices;
        std::sort(listed.begin(), listed.end());
        std::sort(sorted.begin(), sorted.end());
        QCOMPARE(sorted, listed);
        // Faces, not families: each weight of DejaVu Sans is a name of its own.
        for (const char* face : {"DejaVuSans", "DejaVuSans-Bold", "DejaVuSansMono",
                                 "DejaVuSansMono-Bold", "DejaVuSerif-Bold"})
            QVERIFY2(choices.contains(QLatin1String(face)), face);
        QVERIFY(!choices.contains(QStringLiteral("DejaVu Sans")));
        QCollator collator;
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        for (qsizetype i = 1; i < choices.size(); ++i)
            QVERIFY2(collator.compare(choices[i - 1], choices[i]) <= 0, qPrintable(choices[i]));
    }

    // The picker's face is the face the preview draws: DejaVu Sans's bold face sets the same
    // line wider than its regular one at the same size.
    void faceChosenInThePickerIsDrawnInThePreview() {
        Panel panel = textPanel(QStringLiteral("Notes"), {40, 40, 340, 80});
        panel.textTemplate = QStringLiteral("MMMMMMMM");
        panel.style.fontSize = 24;
        InspectorView& inspector = open({panel});
        QTRY_COMPARE(inspector.preview().displayedText(), QStringLiteral("MMMMMMMM"));
        auto* picker = control<QComboBox>("fontPicker");

        choose(picker, QStringLiteral("DejaVuSans"));
        QCOMPARE(stored(panel.id).style.fontName, QStringLiteral("DejaVuSans"));
        const double regular = inkWidth(inspector.preview());
        QVERIFY(regular > 0);

        choose(picker, QStringLiteral("DejaVuSans-Bold"));
        QCOMPARE(stored(panel.id).style.fontName, QStringLiteral("DejaVuSans-Bold"));
        QCOMPARE(picker->currentText(), QStringLiteral("DejaVuSans-Bold"));
        QTRY_VERIFY2(
            inkWidth(inspector.preview()) > regular + 8,
            qPrintable(QStringLiteral("%1 %2").arg(inkWidth(inspector.preview())).arg(regular)));
    }

    void fontPickerListsTheChoicesAndKeepsAnUninstalledFont() {
        Panel panel = textPanel(QStringLiteral("Notes"), kInspectorFrame);
        panel.style.fontName = QStringLiteral("No Such Font Family");
        m_fixture = std::make_unique<StoreFixture>(QList<Panel>{panel});
        QSignalSpy changes(&store(), &PanelStore::panelsChanged);
        makeFor(panel.id).show();
        auto* picker = control<QComboBox>("fontPicker");
        QCOMPARE(rowLabel(picker), QStringLiteral("Font"));
        QStringList items;
        for (int i = 0; i < picker->count(); ++i)
            items << picker->itemText(i);
        QCOMPARE(items, fontChoices());
        QCOMPARE(picker->currentIndex(), -1);
        QCOMPARE(picker->placeholderText(), QStringLiteral("No Such Font Family"));
        QCOMPARE(changes.count(), 0);
        if (fontChoices().isEmpty())
            QSKIP("No fonts are installed");
        picker->setFocus();
        QTest::keyClick(picker, Qt::Key_Down);
        QCOMPARE(stored(panel.id).style.fontName, fontChoices().first());
        QCOMPARE(picker->currentText(), fontChoices().first());
    }
};

QTEST_MAIN(InspectorAppearanceTest)
#include "tst_inspectorappearance.moc"
