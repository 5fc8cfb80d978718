// SPDX-License-Identifier: GPL-3.0-or-later

// Corkwheel in the pseudo-translation that the build makes from the template of its texts:
// every text wrapped in "[!! … !!]" and about two fifths longer. The editor, on every panel
// type, and the tray menu must show no text left in English, and no text cut off by its widget
// or running into a neighbour at that length. So must the texts that are drawn or printed
// rather than shown by a widget: panel placeholders and errors, tooltips, the help.

#include "support/FakeMachine.h"
#include "support/MenuTesting.h"
#include "support/PanelFixtures.h"
#include "support/PrivateConfigHome.h"
#include "support/StoreFixture.h"

#include "app/CommandLine.h"
#include "desktop/PanelResizeHandle.h"
#include "desktop/PanelTitleBar.h"
#include "editor/AppOptionsPopover.h"
#include "editor/EditorView.h"
#include "editor/EditorWindow.h"
#include "editor/InspectorView.h"
#include "editor/SidebarView.h"
#include "engine/TextFileReader.h"
#include "render/StatsLayout.h"
#include "render/TextBody.h"
#include "settings/AppSettings.h"
#include "tray/MenuBarView.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDebug>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyleOptionComboBox>
#include <QTest>
#include <QTextEdit>
#include <QToolBar>
#include <QTranslator>

#include <memory>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Widgets that show the user's own data (a panel's name, an installed font's name) or a
// value rather than a text of Corkwheel's.
const QStringList kUserData = {
    QStringLiteral("nameLabel"),      // a sidebar row's panel name
    QStringLiteral("inspectorTitle"), // the selected panel's name
    QStringLiteral("fontPicker"),     // the installed fonts
};

QString listed(const QStringList& problems) {
    return u'\n' + problems.join(u'\n');
}

bool isWrapped(const QString& text) {
    return text.startsWith(QStringLiteral("[!! ")) && text.endsWith(QStringLiteral(" !!]"));
}

// Text in no language at all, such as the stepper's "+" and "−", needs no translation.
bool hasWords(const QString& text) {
    static const QRegularExpression letter(QStringLiteral("\\p{L}"));
    return text.contains(letter);
}

bool showsUserData(const QWidget* widget) {
    for (; widget; widget = widget->parentWidget()) {
        if (kUserData.contains(widget->objectName()))
            return true;
    }
    return false;
}

QString describe(const QWidget* widget, const QString& text) {
    return QStringLiteral("%1 \"%2\" (%3)")
        .arg(QString::fromLatin1(widget->metaObject()->className()), text, widget->objectName());
}

// Every text that `widget` shows, or shows on hover or when opened, or that a screen reader
// reads out for it.
QStringList textsOf(QWidget* widget) {
    QStringList texts{widget->toolTip(), widget->accessibleName(), widget->accessibleDescription()};
    if (widget->isWindow())
        texts << widget->windowTitle();
    if (auto* label = qobject_cast<QLabel*>(widget))
        texts << label->text();
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        texts << button->text();
    if (auto* button = qobject_cast<QPushButton*>(widget); button && button->menu()) {
        for (const QAction* action : button->menu()->actions())
            texts << action->text();
    }
    if (auto* box = qobject_cast<QComboBox*>(widget)) {
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
    }
    if (auto* line = qobject_cast<QLineEdit*>(widget))
        texts << line->placeholderText();
    if (auto* edit = qobject_cast<QPlainTextEdit*>(widget))
        texts << edit->placeholderText();
    if (auto* edit = qobject_cast<QTextEdit*>(widget))
        texts << edit->placeholderText();
    return texts;
}

QList<QWidget*> shownWidgets(QWidget* root) {
    QList<QWidget*> widgets{root};
    for (QWidget* child : root->findChildren<QWidget*>()) {
        if (child->isVisible() && !showsUserData(child))
            widgets << child;
    }
    return widgets;
}

// The texts of `root` and the widgets in it that are still in English.
QStringList untranslated(QWidget* root) {
    QStringList found;
    for (QWidget* widget : shownWidgets(root)) {
        for (const QString& text : textsOf(widget)) {
            if (hasWords(text) && !isWrapped(text))
                found << describe(widget, text);
        }
    }
    return found;
}

// What a label shows: its text without the "&" that marks a shortcut letter.
QString shownText(const QLabel& label) {
    QString text = label.text();
    if (label.textFormat() != Qt::PlainText && label.buddy())
        text.remove(QRegularExpression(QStringLiteral("&(?!&)")));
    return text;
}

// Why the text of `widget` does not show whole within it; empty when it does.
QString cutOff(QWidget* widget) {
    if (auto* label = qobject_cast<QLabel*>(widget)) {
        const QRect inside = label->contentsRect().adjusted(label->margin(), label->margin(),
                                                            -label->margin(), -label->margin());
        if (label->wordWrap()) {
            if (label->heightForWidth(label->width()) > label->height())
                return QStringLiteral("needs more height than it has");
            return {};
        }
        const QFontMetrics metrics(label->font());
        const QStringList lines = shownText(*label).split(u'\n');
        int widest = 0;
        for (const QString& line : lines)
            widest = std::max(widest, metrics.horizontalAdvance(line));
        if (widest > inside.width())
            return QStringLiteral("is %1 px wide in %2 px").arg(widest).arg(inside.width());
        if (metrics.height() * lines.size() > inside.height())
            return QStringLiteral("is %1 px high in %2 px")
                .arg(metrics.height() * lines.size())
                .arg(inside.height());
        return {};
    }
    if (auto* box = qobject_cast<QComboBox*>(widget)) {
        QStyleOptionComboBox option;
        option.initFrom(box);
        option.editable = box->isEditable();
        const QRect field = box->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                         QStyle::SC_ComboBoxEditField, box);
        const int width = box->fontMetrics().horizontalAdvance(box->currentText());
        if (width > field.width())
            return QStringLiteral("is %1 px wide in %2 px").arg(width).arg(field.width());
        return {};
    }
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        if (button->width() < button->sizeHint().width())
            return QStringLiteral("is %1 px wide, needs %2 px")
                .arg(button->width())
                .arg(button->sizeHint().width());
    }
    return {};
}

QStringList cutOffOrOverlapping(QWidget* root) {
    QStringList found;
    for (QWidget* widget : shownWidgets(root)) {
        QString text;
        if (auto* label = qobject_cast<QLabel*>(widget))
            text = label->text();
        else if (auto* button = qobject_cast<QAbstractButton*>(widget))
            text = button->text();
        else if (auto* box = qobject_cast<QComboBox*>(widget))
            text = box->currentText();
        if (!hasWords(text) || widget->isWindow())
            continue;
        if (const QString why = cutOff(widget); !why.isEmpty())
            found << describe(widget, text) + QStringLiteral(" is cut off: it ") + why;
        for (QObject* object : widget->parentWidget()->children()) {
            auto* sibling = qobject_cast<QWidget*>(object);
            if (!sibling || sibling == widget || !sibling->isVisible() || sibling->isWindow())
                continue;
            if (widget->geometry().intersects(sibling->geometry())) {
                found << describe(widget, text) + QStringLiteral(" overlaps ") +
                             describe(sibling, QString()) +
                             QStringLiteral(" (%1 against %2)")
                                 .arg(QDebug::toString(widget->geometry()),
                                      QDebug::toString(sibling->geometry()));
            }
        }
    }
    return found;
}

} // namespace

class PseudoTranslationTest : public QObject {
    Q_OBJECT

    PrivateConfigHome m_configHome;
    QTranslator m_pseudo;
    // What the previews read: a made-up machine, so a statistics panel shows figures.
    FakeMachine m_machine;

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_configHome.use());
        QVERIFY2(m_pseudo.load(QStringLiteral(CORKWHEEL_PSEUDO_CATALOGUE)),
                 CORKWHEEL_PSEUDO_CATALOGUE);
        QVERIFY(QCoreApplication::installTranslator(&m_pseudo));
    }

    void editorOnEveryPanelType_data() { addRowPerPanelType(); }

    void editorOnEveryPanelType() {
        QFETCH(PanelType, type);
        Panel panel = Panel::makeDefault(type);
        panel.name = QStringLiteral("Mine");
        // Its source names nothing, so its preview touches neither a shell, a file nor the
        // network.
        panel.shellCommand.clear();
        panel.filePath.clear();
        panel.imageSource.clear();
        panel.webpageURL.clear();
        StoreFixture fixture({panel});
        AppSettings settings;
        EditorWindow window(*fixture.store, settings, m_machine.services());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_VERIFY(window.view().inspector() != nullptr);
        QTRY_VERIFY2(untranslated(&window).isEmpty(), qPrintable(listed(untranslated(&window))));
        QTRY_VERIFY2(cutOffOrOverlapping(&window).isEmpty(),
                     qPrintable(listed(cutOffOrOverlapping(&window))));
        // The toolbar shows every action, none folded away behind its extension button.
        auto* toolbar = window.findChild<QToolBar*>();
        for (QAction* action : toolbar->actions()) {
            QWidget* button = toolbar->widgetForAction(action);
            QVERIFY2(!button || button->isVisible(), qPrintable(action->text()));
        }

        // The menu a row of the sidebar opens.
        auto* sidebar = window.findChild<SidebarView*>();
        const std::unique_ptr<QMenu> rowMenu = sidebar->contextMenuFor(0);
        for (const QAction* action : rowMenu->actions())
            QVERIFY2(isWrapped(action->text()), qPrintable(action->text()));

        window.appOptionsAction()->trigger();
        QTRY_VERIFY(window.showingAppOptions());
        QVERIFY2(untranslated(&window.appOptions()).isEmpty(),
                 qPrintable(listed(untranslated(&window.appOptions()))));
        QTRY_VERIFY2(cutOffOrOverlapping(&window.appOptions()).isEmpty(),
                     qPrintable(listed(cutOffOrOverlapping(&window.appOptions()))));
    }

    void editorWithNothingSelected() {
        StoreFixture fixture({});
        AppSettings settings;
        EditorWindow window(*fixture.store, settings, m_machine.services());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_VERIFY2(untranslated(&window).isEmpty(), qPrintable(listed(untranslated(&window))));
        QTRY_VERIFY2(cutOffOrOverlapping(&window).isEmpty(),
                     qPrintable(listed(cutOffOrOverlapping(&window))));
    }

    void trayMenu() {
        StoreFixture fixture({textPanel(QStringLiteral("Mine"), {40, 40, 200, 80})});
        MenuBarView view(*fixture.store);
        openMenu(*view.menu());
        for (const QAction* action : view.menu()->actions()) {
            if (!action->isSeparator())
                QVERIFY2(isWrapped(action->text()), qPrintable(action->text()));
        }
    }

    void desktopEditModeTooltips() {
        PanelTitleBar titleBar;
        QVERIFY2(isWrapped(titleBar.toolTip()), qPrintable(titleBar.toolTip()));
        PanelResizeHandle handle;
        QVERIFY2(isWrapped(handle.toolTip()), qPrintable(handle.toolTip()));
    }

    void panelPlaceholdersAndErrors() {
        const QStringList texts = {
            TextBody::displayedText(PanelType::Shell, {}, true),
            TextBody::displayedText(PanelType::Shell, {}, false),
            TextBody::displayedText(PanelType::File, {}, false),
            StatsLayout::summaryText(1),
            StatsLayout::summaryText(3),
            TextFileReader::notFoundText(),
            TextFileReader::timedOutText(),
        };
        for (const QString& text : texts)
            QVERIFY2(isWrapped(text), qPrintable(text));
    }

    void commandLineHelp() {
        const CommandLine help =
            CommandLine::parse({QStringLiteral("corkwheel"), QStringLiteral("--help")});
        QVERIFY2(help.standardOutput.startsWith(QStringLiteral("[!! Usage: corkwheel [options]")),
                 qPrintable(help.standardOutput));
        // Without the translated texts (a long one wraps over lines), the options' names and
        // Qt's own heading, which Qt's catalogue translates, nothing is left in any language.
        QString rest = help.standardOutput.simplified();
        rest.remove(QRegularExpression(QStringLiteral("\\[!! .*? !!\\]")));
        rest.remove(QRegularExpression(QStringLiteral("--?[a-z-]+")));
        rest.remove(QStringLiteral("Options:"));
        QVERIFY2(!hasWords(rest), qPrintable(help.standardOutput));

        const CommandLine mistake =
            CommandLine::parse({QStringLiteral("corkwheel"), QStringLiteral("extra")});
        QVERIFY2(mistake.standardError.startsWith(QStringLiteral("corkwheel: [!! unexpected")),
                 qPrintable(mistake.standardError));
    }
};

QTEST_MAIN(PseudoTranslationTest)
#include "tst_pseudotranslation.moc"
