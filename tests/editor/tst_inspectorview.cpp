// The inspector: a form over one stored panel, driven as a user drives it, with the preview
// that its own runner feeds.

#include "support/PanelFixtures.h"
#include "support/ViewTesting.h"

#include "editor/ColorWell.h"
#include "editor/FontChoices.h"
#include "editor/FormSection.h"
#include "editor/GrowingTextEdit.h"
#include "editor/InspectorView.h"
#include "editor/LabeledField.h"
#include "editor/PreviewStage.h"
#include "editor/StepperLabel.h"
#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"

#include <QCheckBox>
#include <QCollator>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <memory>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const PanelFrame kFrame{40, 40, 360, 80};

// A panel of `type` whose source names nothing, so its runner touches neither a shell nor
// a file nor the network.
Panel quietPanel(PanelType type) {
    Panel panel = Panel::makeDefault(type);
    panel.shellCommand.clear();
    panel.filePath.clear();
    panel.imageSource.clear();
    panel.webpageURL.clear();
    return panel;
}

// The text of the row label that a form gives `field`.
QString rowLabel(QWidget* field) {
    auto* form = qobject_cast<QFormLayout*>(field->parentWidget()->layout());
    if (!form)
        return {};
    auto* label = qobject_cast<QLabel*>(form->labelForField(field));
    return label ? label->text() : QString();
}

QToolButton* button(QWidget* stepper, const char* name) {
    return stepper->findChild<QToolButton*>(QLatin1String(name));
}

bool isDimmed(const QWidget& widget) {
    return widget.palette().color(QPalette::WindowText).alpha() < 255;
}

} // namespace

class InspectorViewTest : public QObject {
    Q_OBJECT

private:
    FakeMachine m_machine;
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<InspectorView> m_inspector;

    PanelStore& store() { return *m_fixture->store; }

    Panel stored(const QUuid& id) {
        for (const Panel& panel : store().panels()) {
            if (panel.id == id)
                return panel;
        }
        return {};
    }

    // An inspector for the first of `panels`, not yet shown: its runner has not started.
    InspectorView& make(const QList<Panel>& panels) {
        m_inspector.reset();
        m_fixture = std::make_unique<StoreFixture>(panels);
        return makeFor(panels.first().id);
    }

    InspectorView& makeFor(const QUuid& id) {
        m_inspector = std::make_unique<InspectorView>(store(), id, m_machine.services());
        m_inspector->resize(640, 1200);
        return *m_inspector;
    }

    // An inspector for the first of `panels`, on screen.
    InspectorView& open(const QList<Panel>& panels) {
        InspectorView& inspector = make(panels);
        inspector.show();
        return inspector;
    }

    template <typename T> T* control(const char* name) {
        return m_inspector->findChild<T*>(QLatin1String(name));
    }

private Q_SLOTS:
    void cleanup() {
        m_inspector.reset();
        m_fixture.reset();
    }

    void sectionsAppearInOrder() {
        InspectorView& inspector = open({textPanel(QStringLiteral("Notes"), kFrame)});
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

    void generalRowsShowThePanel() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame, false);
        make({panel});
        QCOMPARE(control<QLineEdit>("nameField")->text(), QStringLiteral("Notes"));
        QCOMPARE(rowLabel(control<QLineEdit>("nameField")), QStringLiteral("Name"));
        QCOMPARE(control<QCheckBox>("enabledToggle")->text(), QStringLiteral("Enabled"));
        QVERIFY(!control<QCheckBox>("enabledToggle")->isChecked());
        // The name heads the inspector, over the form.
        const auto* title = control<QLabel>("inspectorTitle");
        QVERIFY(title->isVisibleTo(m_inspector.get()));
        QCOMPARE(title->text(), QStringLiteral("Notes"));
        QVERIFY(title->mapTo(m_inspector.get(), QPoint()).y() <
                control<QLineEdit>("nameField")->mapTo(m_inspector.get(), QPoint()).y());
        Panel renamed = panel;
        renamed.name = QStringLiteral("Notes for today");
        store().update(renamed);
        QCOMPARE(title->text(), QStringLiteral("Notes for today"));
        // The type is chosen when a panel is added; the only pickers here are the style's.
        QStringList pickers;
        for (QComboBox* picker : m_inspector->findChildren<QComboBox*>())
            pickers << picker->objectName();
        pickers.sort();
        QCOMPARE(pickers,
                 QStringList({QStringLiteral("alignmentPicker"), QStringLiteral("fontPicker")}));
    }

    void fractionalRefreshIntervalIsLabelledTruncated_data() {
        QTest::addColumn<double>("interval");
        QTest::addColumn<QString>("label");
        QTest::newRow("two and a half seconds") << 2.5 << QStringLiteral("Refresh every 2s");
        QTest::newRow("five whole seconds") << 5.0 << QStringLiteral("Refresh every 5s");
        QTest::newRow("just under an hour") << 3599.9 << QStringLiteral("Refresh every 3599s");
    }

    void fractionalRefreshIntervalIsLabelledTruncated() {
        QFETCH(double, interval);
        QFETCH(QString, label);
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
        panel.refreshInterval = interval;
        make({panel});
        QCOMPARE(control<StepperLabel>("refreshStepper")->text(), label);
    }

    void stepperNumbersAreCutTowardZero() {
        QCOMPARE(checkedWholeNumber(2.9), Q_INT64_C(2));
        QCOMPARE(checkedWholeNumber(-2.9), Q_INT64_C(-2));
        QCOMPARE(checkedWholeNumber(0.0), Q_INT64_C(0));
        QCOMPARE(checkedWholeNumber(9.0e18), Q_INT64_C(9000000000000000000));
        QCOMPARE(checkedWholeNumber(-9223372036854775808.0), std::numeric_limits<qint64>::min());
        QCOMPARE(stepperLabelText(QStringLiteral("Size: %1 pt"), 12.99),
                 QStringLiteral("Size: 12 pt"));
    }

    void refreshStepperStepsByOneWithinItsRange() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
        panel.refreshInterval = 5;
        make({panel});
        auto* stepper = control<StepperLabel>("refreshStepper");
        QTest::mouseClick(button(stepper, "incrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 6.0);
        QCOMPARE(stepper->text(), QStringLiteral("Refresh every 6s"));
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 4.0);

        panel = stored(panel.id);
        panel.refreshInterval = 1;
        store().update(panel);
        QVERIFY(!button(stepper, "decrementButton")->isEnabled());
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 1.0);

        panel.refreshInterval = 3600;
        store().update(panel);
        QVERIFY(!button(stepper, "incrementButton")->isEnabled());
        QTest::mouseClick(button(stepper, "incrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 3600.0);
        QTest::mouseClick(button(stepper, "decrementButton"), Qt::LeftButton);
        QCOMPARE(stored(panel.id).refreshInterval, 3599.0);
        QCOMPARE(stepper->text(), QStringLiteral("Refresh every 3599s"));
    }

    void appearanceSteppersShowWholeNumbers() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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
        open({textPanel(QStringLiteral("Notes"), kFrame)});
        QVERIFY(!control<StepperLabel>("cornerRadiusStepper")->isVisible());
        QVERIFY(control<QSlider>("opacitySlider")->isVisible());
    }

    void largePanelPreviewsInA340By180Box() {
        Panel panel = textPanel(QStringLiteral("Notes"), {40, 40, 800, 600});
        InspectorView& inspector = open({panel});
        QCOMPARE(inspector.preview().size(), QSize(340, 180));
        QCOMPARE(inspector.preview().panel().frame.width, 340.0);
        QCOMPARE(inspector.preview().panel().frame.height, 180.0);
        QCOMPARE(stored(panel.id).frame, panel.frame);
        QCOMPARE(inspector.runner().panel().frame, panel.frame);
        auto* stage = control<PreviewStage>("previewStage");
        QVERIFY(stage->width() <= 360 && stage->height() <= 200);
        QCOMPARE(inspector.preview().geometry().center(), stage->rect().center());
    }

    void smallPanelPreviewsAtItsOwnSize() {
        InspectorView& inspector = open({textPanel(QStringLiteral("Notes"), {40, 40, 100, 50})});
        QCOMPARE(inspector.preview().size(), QSize(100, 50));
        auto* stage = control<PreviewStage>("previewStage");
        QCOMPARE(inspector.preview().geometry().center(), stage->rect().center());
        auto* section = control<FormSection>("previewSection");
        const int stageCentre = stage->mapTo(section, stage->rect().center()).x();
        QVERIFY(qAbs(stageCentre - section->rect().center().x()) <= 1);
    }

    void previewStandsOnADarkRoundedGradient() {
        Panel panel = textPanel(QStringLiteral("Notes"), {40, 40, 100, 50});
        panel.textTemplate = QStringLiteral(" ");
        open({panel});
        auto* stage = control<PreviewStage>("previewStage");
        QCOMPARE(stage->size(), QSize(360, 200));
        const QImage image = render(*stage, 1.0);
        const QColor top = colorAt(image, {180, 1});
        const QColor bottom = colorAt(image, {180, 198});
        QCOMPARE(top.red() + top.green() + top.blue(), 0);
        QVERIFY2(qAbs(top.alpha() - 216) <= 3, qPrintable(QString::number(top.alpha())));
        QVERIFY2(qAbs(bottom.alpha() - 154) <= 3, qPrintable(QString::number(bottom.alpha())));
        QCOMPARE(colorAt(image, {0, 0}).alpha(), 0);
        QCOMPARE(colorAt(image, {359, 199}).alpha(), 0);
        QVERIFY(qAbs(colorAt(image, {6, 6}).alpha() - top.alpha()) <= 3);
    }

    void translucentColorIsStoredInAlpha() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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

    void switchingPanelsStartsTheNewRunnerFromTheNewPanel() {
        const Panel alpha = textPanel(QStringLiteral("Alpha"), kFrame);
        const Panel beta = textPanel(QStringLiteral("Beta"), {40, 200, 200, 60});
        open({alpha, beta});
        QCOMPARE(m_inspector->runner().textOutput(), QStringLiteral("Alpha"));
        QCOMPARE(m_inspector->preview().displayedText(), QStringLiteral("Alpha"));

        // What the editor does when another row is picked.
        m_inspector.reset();
        InspectorView& inspector = makeFor(beta.id);
        inspector.show();
        QCOMPARE(inspector.panelID(), beta.id);
        QCOMPARE(inspector.runner().id(), beta.id);
        QCOMPARE(inspector.runner().panel(), beta);
        QVERIFY(inspector.runner().isTimerActive());
        QCOMPARE(inspector.runner().textOutput(), QStringLiteral("Beta"));
        QCOMPARE(inspector.preview().displayedText(), QStringLiteral("Beta"));
        QCOMPARE(inspector.preview().size(), QSize(200, 60));
        QCOMPARE(control<QLineEdit>("nameField")->text(), QStringLiteral("Beta"));
    }

    void previewRunnerStartsWhenFirstShown() {
        InspectorView& inspector = make({textPanel(QStringLiteral("Notes"), kFrame)});
        QVERIFY(!inspector.runner().isTimerActive());
        QVERIFY(inspector.runner().textOutput().isEmpty());
        inspector.show();
        QVERIFY(inspector.runner().isTimerActive());
        QCOMPARE(inspector.runner().textOutput(), QStringLiteral("Notes"));
    }

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
        Panel panel = textPanel(QStringLiteral("one line"), kFrame);
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

    void editingTheNameReachesTheStoreAndTheDocument() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
        open({panel});
        QSignalSpy writes(&store(), &PanelStore::documentWritten);
        auto* name = control<QLineEdit>("nameField");
        name->setFocus();
        QTest::keyClick(name, Qt::Key_End);
        QTest::keyClicks(name, QStringLiteral(" 2"));
        QCOMPARE(stored(panel.id).name, QStringLiteral("Notes 2"));
        QCOMPARE(control<QLabel>("inspectorTitle")->text(), QStringLiteral("Notes 2"));
        QCOMPARE(m_fixture->savedPanels().first().name, QStringLiteral("Notes"));
        QTRY_COMPARE(m_fixture->savedPanels().first().name, QStringLiteral("Notes 2"));
        // Both keystrokes went out in one write.
        QCOMPARE(writes.count(), 1);
    }

    void typingIsNotUndoneByTheStoresEcho() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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

    void positionFieldsEditTheFrame() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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

    void changesFromElsewhereReachFormAndPreview() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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

    void alignmentPickerOffersLeadingCenterTrailing() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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

    void fontChoicesAreSortedIgnoringCase() {
        const QStringList names{QStringLiteral("beta"),  QStringLiteral("Alpha"),
                                QStringLiteral("gamma"), QStringLiteral("alpha"),
                                QStringLiteral("Beta"),  QStringLiteral("Zeta")};
        QCOMPARE(
            sortedFontNames(names, QLocale(QLocale::English)),
            QStringList({QStringLiteral("Alpha"), QStringLiteral("alpha"), QStringLiteral("beta"),
                         QStringLiteral("Beta"), QStringLiteral("gamma"), QStringLiteral("Zeta")}));

        const QStringList& choices = fontChoices();
        QCOMPARE(&fontChoices(), &choices);
        QStringList installed = QFontDatabase::families();
        QStringList sorted = choices;
        std::sort(installed.begin(), installed.end());
        std::sort(sorted.begin(), sorted.end());
        QCOMPARE(sorted, installed);
        QCollator collator;
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        for (qsizetype i = 1; i < choices.size(); ++i)
            QVERIFY2(collator.compare(choices[i - 1], choices[i]) <= 0, qPrintable(choices[i]));
    }

    void fontPickerListsTheChoicesAndKeepsAnUninstalledFont() {
        Panel panel = textPanel(QStringLiteral("Notes"), kFrame);
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

    void missingPanelShowsDefaultTextPanelAndWritesNothing() {
        m_fixture = std::make_unique<StoreFixture>(
            QList<Panel>{textPanel(QStringLiteral("Notes"), kFrame)});
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
        QTest::qWait(PanelStore::kSaveDelayMs + 200);
        QCOMPARE(changes.count(), 0);
        QCOMPARE(writes.count(), 0);
        QCOMPARE(store().panels(), before);
    }
};

QTEST_MAIN(InspectorViewTest)
#include "tst_inspectorview.moc"
